#pragma once

#include "platform/WindowSystem.h"
#include "translation/ReadingFolders.h"
#include "translation/ReadingRequest.h"
#include "ui/translation/SpokenText.h"

#include <QPair>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace mevo {

/// How a pane is read aloud.
struct PaneReading
{
    bool online = false; ///< by the service, else by the system's voice
    ReadingVoice voice;  ///< of the service
    QString language;    ///< code of the pane's language
};

/// A translation that is to be typed.
struct SentTranslation
{
    QString text;
    WindowId front = 0; ///< is brought to the front first; 0 when another program's window is there
    /// The only window that it may go into, whichever has the focus by then; 0 for the one in front.
    WindowId own = 0;
    std::optional<SessionContext>
        session;         ///< of a sentence: its mode decides, over all else the one in force
    bool byHand = false; ///< the user has asked for it: no mode stands in its way
};

/// What the translation window asks of the rest of the program.
class TransWindowHost
{
public:
    virtual ~TransWindowHost() = default;

    /// Translates a text; true and the translation, or false. Waits in an event loop, in which the window can
    /// close and other texts come.
    virtual QPair<bool, QString> translate(const QString &text, const QString &to, const QString &from) = 0;

    /// The session of the sentence that the window is being told just now.
    virtual SessionContext sentenceSession() const = 0;
    /// No recognised text is being dealt with.
    virtual bool resultIdle() const = 0;
    /// The window in front, of whichever program; 0 if none.
    virtual WindowId foregroundWindow() = 0;
    /// Types a translation, in the order of the calls.
    virtual void typeText(const SentTranslation &translation) = 0;
    /// Keeps a spoken text that cannot be typed, for the user to fetch; tells so.
    virtual void keepText(const QString &text) = 0;
    /// Gives the keyboard to the translation window, or lets it have it no longer.
    virtual void takeFocus() = 0;
    virtual void neverTakeFocus() = 0;
    /// Brings a window of another program to the front.
    virtual void giveFocusTo(WindowId window) = 0;

    /// The voice keys copy what is selected instead of opening the microphone. Ends a session that runs, and
    /// may wait for its text in an event loop, in which the window can close.
    virtual void setDelimitTranslation(bool on) = 0;
    /// A text that was selected, an empty one when there is nothing, and the window that it is from.
    using Copied = std::function<void(const QString &text, WindowId from)>;
    /// Copies what is selected in the window in front (`front` is brought there first, unless it is 0) and
    /// hands it on. With `emptied` the clipboard has been emptied on purpose, and what is copied stays there;
    /// else its text is put back. `copied` comes later and once, not at all when the window has gone or
    /// another copying is under way.
    virtual void copySelection(bool emptied, WindowId front, const Copied &copied) = 0;
    virtual void clearClipboard() = 0;

    /// Reads a text aloud, an empty one too; waits for nothing, and tells of failures itself.
    virtual void readAloud(Pane pane, const QString &text, const PaneReading &reading) = 0;
    /// Ends all that is read.
    virtual void stopReading() = 0;

    /// Shows a message that has to be confirmed; waits for nothing.
    virtual void tell(const QString &title, const QString &text) = 0;
    /// The window is about to close by the user's wish: nothing is translated any more. `untold` are spoken
    /// texts that have not been typed, translated where the translation had come.
    virtual void closing(const std::vector<SpokenText> &untold) = 0;
    /// It has closed and can be destroyed.
    virtual void closed() = 0;
};

} // namespace mevo
