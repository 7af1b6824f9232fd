#pragma once

#include "session/KeyReport.h"
#include "session/SessionPort.h"
#include "state/MainState.h"

#include <QMutex>

#include <optional>
#include <set>

namespace mevo {

namespace pictures {
constexpr char micIdle[] = ":/rec/MicLongPressSpeaking_NoActive.png";
constexpr char micActive[] = ":/rec/MicLongPressSpeaking_Active.png";
constexpr char micSpeak[] = ":/rec/MicSpeakPlease.png";
} // namespace pictures

/// Turns key reports into voice sessions: a press opens the recorder or drives the installed input
/// method, a release closes it. GUI thread only.
class SessionMachine
{
public:
    SessionMachine(MainState &state, SessionPort &port);

    /// Takes a 16-byte key report of the reader or of the tip window; anything else is ignored.
    void process(const char *report);

    /// Stops the recorder and accepts the next press, whatever state the session is in. The key that is held
    /// still counts as held, but for an input method's: the report that this comes instead of may have been
    /// its release.
    void reset();

    /// The window of the custom input method has come, or will not.
    void inputMethodCame();

    /// A click has started the input method. One whose key is tapped listens by itself from then on: the next
    /// press goes on with that, and its release ends it.
    void inputMethodStartedByClick();

    /// Ends a session whose release can no longer come; what was said until now is recognised.
    void endWithoutRelease();

    /// Ends an input method's press whose release can no longer come, as the release would have.
    void endInputMethodPress();

    /// The receiver has gone, and with it the keys that it held: nothing is left of an input method's press.
    void receiverGone();

private:
    void press(const KeyReport &report);
    bool pressInputMethod();
    /// A report that is not taken: the key of an input method does not stay down for it.
    void refuse(const char *report);
    void resetSession();
    void release(const KeyReport &report);
    void startSession(const KeyReport &report);
    /// Ends the session under the lock; true when the recorder is to be stopped.
    bool closeSession(const KeyReport &report);
    void countQuickRelease();

    void pressThirdParty();
    void pressCustomMethod();
    void typeCustomKey();
    bool listensSinceClick();
    bool releaseThirdParty();
    void letHotKeyGo();

    MainState &m_state;
    SessionPort &m_port;
    QMutex SessionMutex;
    int m_sessionKey = 0;            ///< whose press the session that runs has begun with
    std::set<int> m_overtaken;       ///< keys that are held although a later one has ended their session
    int m_methodKey = 0;             ///< whose press went to an input method, 0 once it is released
    bool m_hotKeyHeld = false;       ///< its key is down at the receiver
    bool m_keyAwaitsWindow = false;  ///< its key is typed when its window has come
    std::optional<qint64> m_clicked; ///< when a click has started it, and no press has come since; in ms
};

} // namespace mevo
