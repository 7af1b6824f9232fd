#pragma once

#include "engines/EngineCatalogue.h"
#include "inputmethods/Asr3Row.h"
#include "inputmethods/CustomMethod.h"
#include "inputmethods/EntryPrograms.h"
#include "platform/WindowSystem.h"
#include "state/MainState.h"
#include "state/ThirdPartyMethod.h"

#include <QString>

#include <memory>
#include <optional>

class MainWindow;
class ThirdPartyVoiceInput;

namespace mevo {

class InputMethodHands;
enum class WindowLeave;

/// Input methods of the computer: choosing one, setting it up, having it fetched, bringing its window up and
/// leaving it. Its keys are the session's. Methods are numbered as LocalUseASR3Index.
class InputMethods
{
public:
    explicit InputMethods(MainWindow &window);
    ~InputMethods();
    InputMethods(const InputMethods &) = delete;
    InputMethods &operator=(const InputMethods &) = delete;

    /// Reads which XunFei is installed and where.
    void readXunFei();
    /// What is missing for a method to be used, as the user is told; empty when its program is there or can
    /// be had.
    QString missing(int index) const;

    /// A row of the menu: the record is told, and the method is set up. Waits for both.
    void chooseOfMenu(const LanguageRow &row);
    /// A choice of the settings: it is set up from the event loop, and the record hears of it when the user
    /// has answered what the set-up asks.
    void chooseOfSettings(int index);
    /// Such a choice has neither been set up nor given up.
    bool isChoicePending() const { return m_choicePending; }
    /// The user has chosen an engine since.
    void choiceOvertaken();
    /// The method of the day's limit: the engine that it takes the place of is remembered.
    void rememberEngine();
    /// The path of a method's program has been stored: what is in force may be there now, or no longer.
    void pathStored();

    /// See MainWindow::SetupAsr3().
    void setUp();
    /// The method of the settings needs the administrator's rights.
    bool wantsElevation() const { return m_elevationWanted; }

    /// Fetches the installer of a method.
    void download(int index);
    void cancelDownload();
    /// What the user reads of the method that is fetched.
    QString downloadName() const { return m_downloadName; }
    /// A download has come to its end, whichever.
    void downloadOver();
    void endDownload();
    /// After an installer has been opened: the set-up goes on when the program is there.
    void watchForInstallation();

    /// See MainWindow::ConfigureXunFeiIme().
    int configureXunFei();
    void useOfflineOnly(bool always);
    /// Starts a program of XunFei's, such as "iFlyIMEConfig.exe".
    void openTool(const QString &fileName);

    void startXunFeiWindow();
    /// At a change of engine, before the method's number changes.
    void leaveAtChoice();
    /// When the receiver or the program goes, and when a press goes to an own engine.
    void leaveWithoutKeys();
    void clickOnMicrophone();

private:
    static constexpr int messageMs = 3000;
    /// Set once the user has answered whether input methods may be called without a click.
    static constexpr char consentKey[] = "ThirdPartyConsentAsked";
    /// Set while the question has been closed without an answer: no yes, but no answer that lasts either.
    static constexpr char consentClosedKey[] = "ThirdPartyConsentClosed";

    bool beginChoice(int index);
    void settleChoice();
    bool restoreEngine();

    Asr3Row builtInRow(int index) const;
    Asr3Row askForRow(int index);
    const Asr3Row *knownRow(int index) const;
    void askAgainAboutClosedConsent();
    bool isSetUpFor(int setup, int index) const;
    void continueSetUp();
    std::optional<CustomMethod> customMethodOfSettings() const;
    void setUpCustom();
    bool asksForRow(int index) const;
    QString findProgram(int index) const;
    QString bundledInstaller() const;
    QString installerAddress(const Asr3Row &row) const;
    /// The method's name; a built-in one as the user reads it.
    static QString nameToRead(const Asr3Row &row);
    /// A file of XunFei's own folder.
    QString xunFeiFile(const char *name) const;
    void use(const QString &program);
    void fallBack(const QString &text);
    void askConsent();
    void offer();
    void refuse();
    void look(int looks);
    void askToRestartComputer();
    void tellHowToSetXunFei();

    void endPress();
    void leaveWindow(WindowLeave how, WindowId window);
    QString programInForce() const;

    MainWindow &m_window;
    MainState &m_state;
    std::unique_ptr<InputMethodHands> m_hands;
    std::unique_ptr<ThirdPartyVoiceInput> m_installer;
    mutable EntryPrograms m_entries; ///< the menu asks for its rows whenever it is built
    Asr3Row m_row;                   ///< of the method that was set up last
    int m_rowIndex = thirdPartyNone; ///< whose row that is
    QString m_downloadName;
    int m_downloadIndex = thirdPartyNone;    ///< the method that is fetched, or was last
    Engine m_engineBefore = Engine::Tencent; ///< in force before a method took its place
    int m_setup = 0;                         ///< counts the set-ups; the last one holds
    int m_setUpIndex = thirdPartyNone;       ///< the method that is set up
    bool m_choicePending = false;
    bool m_boxOpen = false;             ///< the user is being asked about a method
    bool m_startAtSetUp = false;        ///< the user has chosen a method: its window comes with the set-up
    bool m_installerTried = false;      ///< the one beside the program, in this run
    bool m_watchesInstallation = false; ///< looks whether the method has been installed
    bool m_elevationWanted = false;
};

} // namespace mevo
