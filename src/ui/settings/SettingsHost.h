#pragma once

#include "device/MouseSettings.h"
#include "engines/EngineCatalogue.h"
#include "service/UntoldColumns.h"

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;
struct RecorderState;

namespace mevo {

class AccountsHost;

/// What the settings dialog asks of the program around it. Nothing here waits in an event loop, except for
/// what asks the user something.
class SettingsHost
{
public:
    virtual ~SettingsHost() = default;

    /// The recorder's engine flags; null once the program is ending.
    virtual RecorderState *recorderState() = 0;
    virtual bool isXpClass() const = 0;

    /// Makes an engine the one in force, in memory and in the file, and the menu and the backend follow.
    virtual void chooseEngine(Engine engine) = 0;
    /// The same for an input method, numbered as LocalUseASR3Index. What cannot be set up leaves the engine
    /// that was in force.
    virtual void chooseInputMethod(int index) = 0;
    /// Tencent's own recognition of dialects, or Mandarin.
    virtual void chooseTencentDialect(bool on) = 0;
    /// Shows a text in the tip window, where the settings want such tips.
    virtual void showTip(const QString &text) = 0;
    /// Tells the device record what the user has chosen, now or as soon as the backend can be reached.
    virtual void tellRecord(const RecordChoices &choices) = 0;
    /// Says so, and starts the program anew.
    virtual void restartProgram() = 0;

    /// The path of an input method's program has been stored: what is in force may be there now, or no
    /// longer.
    virtual void inputMethodPathStored() = 0;
    /// Fetches the installer of an input method.
    virtual void downloadInputMethod(int index) = 0;
    /// Starts a tool of XunFei's input method, such as "iFlyIMEConfig.exe".
    virtual void openXunFeiTool(const QString &program) = 0;
    /// Lets XunFei's input method recognise offline only, or no longer, once the user has been asked. The
    /// dialog is refreshed when it is decided.
    virtual void setXunFeiOffline(bool on) = 0;

    /// False when the system refuses.
    virtual bool setRunAsAdministrator(bool on) = 0;
    virtual bool setStartAtLogin(bool on) = 0;

    /// Names of the microphones; empty where they cannot be switched.
    virtual QStringList microphones() = 0;
    /// The default one, by its name in that list; empty when it is not known.
    virtual QString currentMicrophone() = 0;
    /// Makes it the default one; false when it is not there.
    virtual bool switchMicrophone(const QString &name) = 0;
    /// One channel or two are wanted now.
    virtual void channelCountChanged() = 0;
    /// A microphone that was kept ready for the next session waits no longer.
    virtual void letMicrophoneGo() = 0;
    virtual void openSoundSettings() = 0;
    /// Tells the microphone's level, 0 to MicrophoneMeter::highestLevel, until it is called with null.
    virtual void watchMicrophone(std::function<void(int level)> heard) = 0;

    virtual void chooseMouse(const MouseGroup &group, int place) = 0;
    virtual void assignKey(CustomKey key, const QString &shownLabel) = 0;
    /// Reads the receiver's identity (some 300 ms); empty, with a message, without one.
    virtual QString readDongleID() = 0;
    virtual void requestMouseID() = 0;

    /// What asks for an update: the page has been opened, its notice clicked, or its button.
    enum class UpdateWish { Opened, Notice, Button };
    virtual void checkForUpdate(UpdateWish wish) = 0;
    virtual QString versionText() const = 0;
    /// Figures of this run to be shown beside the version; empty for none.
    virtual QString runFigures() const = 0;
    virtual void openWebPage(const QString &address) = 0;
    virtual void openCommandWords() = 0;

    /// The user's own accounts.
    virtual AccountsHost &accounts() = 0;
    /// Opens the window that tells a new user what works and what is missing.
    virtual void openFirstStart() = 0;
};

} // namespace mevo
