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
    /// still counts as held, and an input method's press goes on, unless it is its release that has not been
    /// taken: see refuse().
    void reset();

    /// A report that is not taken, such as one that the reader has not passed on. It does nothing but end
    /// what it is the release of, which has no other: an input method's key would stay down, and a session
    /// would count as running.
    void refuse(const char *report);

    /// The window of an input method that was started has come, or will not.
    void inputMethodCame();

    /// A click has started the input method in force. One whose key is tapped listens by itself from then on:
    /// the next press goes on with that, and its release ends it.
    void inputMethodStartedByClick();

    /// The input method's window has been closed, or another method chosen: what a click had started is over.
    void inputMethodLeft();

    /// Ends a session whose release can no longer come; what was said until now is recognised.
    void endWithoutRelease();

    /// Ends an input method's press whose release can no longer come, as the release would have.
    void endInputMethodPress();

    /// The receiver has gone, and with it the keys that it held. A method whose key was tapped listens on:
    /// the next press goes on with that.
    void receiverGone();

private:
    /// What a press has begun at an input method.
    struct MethodPress
    {
        enum class Doing {
            AwaitsWindow, ///< its key is typed when its window has come
            Held,         ///< its key is down at the receiver
            Listens       ///< until its key is tapped again
        };
        int key = 0;    ///< whose press
        int method = 0; ///< as LocalUseASR3Index
        Doing doing = Doing::Held;
    };
    /// What has started an input method and has no release: a click on the microphone button, or the press of
    /// a receiver that was pulled out.
    struct Click
    {
        int method = 0;      ///< as LocalUseASR3Index
        qint64 ms = 0;       ///< when it was, or when the window that it brings up has come
        bool tapped = false; ///< the method's key was tapped, so it listens
    };

    void press(const KeyReport &report);
    std::optional<MethodPress::Doing> pressInputMethod(int key);
    void release(const KeyReport &report);
    void startSession(const KeyReport &report);
    /// Ends the session under the lock; true when the recorder is to be stopped.
    bool closeSession(const KeyReport &report);
    void countQuickRelease();

    MethodPress::Doing pressThirdParty(int key);
    MethodPress::Doing pressCustomMethod(int key);
    MethodPress::Doing typeCustomKey();
    bool listensToAnotherKey(int key) const;
    bool listensSinceClick(bool byItself);
    bool isInForce(const MethodPress &press) const;
    void endMethodPress();
    void releaseMethod(const MethodPress &press);
    void leaveMethod(const MethodPress &press);
    void overtakeMethodPress(int key);

    MainState &m_state;
    SessionPort &m_port;
    QMutex SessionMutex;
    int m_sessionKey = 0;      ///< whose press the session that runs has begun with
    std::set<int> m_overtaken; ///< keys whose release, should it come, belongs to nothing that runs
    std::optional<MethodPress> m_methodPress; ///< while its key is held
    bool m_windowAwaited = false;             ///< a program has been started, and its window is looked for
    std::optional<Click> m_clicked;           ///< has started an input method, and no press has come since
};

} // namespace mevo
