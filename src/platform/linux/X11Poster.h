#pragma once

#include "output/PostingPlan.h"
#include "platform/WindowSystem.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11Ping.h"
#include "platform/linux/X11ScratchKeys.h"
#include "platform/linux/X11SecondKeyboard.h"

#include <memory>

namespace mevo {

class ScreenLock;

/// Types texts into windows by injected key events, one text at a time, on the thread that it was made
/// on. The keys are bound in batches; before a key is bound anew the target has translated what it was
/// sent before.
class X11Poster
{
public:
    /// `lock` outlives it.
    explicit X11Poster(const ScreenLock &lock);
    ~X11Poster();

    /// Whether this server lets keys be injected and bound.
    bool isUsable() const { return m_usable; }
    /// Types the text and says what the window was seen to take. A window that hangs, or a keyboard that
    /// somebody else has grabbed, is waited for up to 2 s; what has been sent cannot be taken back, and is
    /// waited for up to takenLimitMs.
    PostResult post(WindowId window, const QString &text);
    /// Takes down what is kept up for the next text. To be called when none has come for restAfterMs. False
    /// when a window that hung may still take what it was sent, which needs it: to be called again.
    bool rest();
    static constexpr int restAfterMs = 5000;
    int takenLimitMs = 10000;

private:
    struct Target
    {
        WindowId window = 0;
        unsigned long topLevel = 0;
        bool answersPing = false;
        qint64 processId = 0; ///< 0 when it is not told, or the process runs elsewhere
        TypingHabits habits;
    };
    PostStop typeInto(const Target &target, const QString &text, int &taken);
    PostStop awaitAnswer(int limitMs);
    /// Waits until the target has translated what it was sent.
    PostStop awaitTaken(const Target &target, int drainMs);
    /// Waits until it also has nothing left to do with it.
    static PostStop awaitSettled(const Target &target);
    Target targetOf(WindowId window) const;
    bool isFocused(const Target &target) const;
    /// Sends a batch, once nobody else has the keyboard.
    PostStop send(const Target &target, const PostBatch &batch);
    PostStop sendAtOnce(const Target &target, const PostBatch &batch);
    bool isKeyboardGrabbed() const;
    /// Takes the second keyboard's focus off the target, and has the window manager know again where the
    /// user's is.
    void giveFocusBack();
    int keycodeOf(const PostStroke &stroke) const;
    X11KeyState stateOf(const PostStroke &stroke) const;
    /// Locks the user's keyboard, and the second one too, to `state` when it was locked to `before`.
    void lock(bool second, const X11KeyState &before, const X11KeyState &state);
    /// Strikes the keys on the user's keyboard or on the second one.
    void strike(const PostBatch &batch, bool second);
    /// Keeps to the slots that need no state of the keyboard, or does no longer.
    void limitStates(bool oneState);
    std::vector<int> liftModifiers();
    void putBackModifiers(const std::vector<int> &keycodes);

    const ScreenLock &m_lock;
    X11Connection m_connection;
    X11Ping m_ping;
    std::unique_ptr<X11ScratchKeys> m_keys;
    std::unique_ptr<ScratchSlots> m_slots;
    bool m_oneState = false;
    std::unique_ptr<X11SecondKeyboard> m_second;
    bool m_usable = false;
    unsigned long m_behind = 0;      ///< a window that hung with keys of ours on their way
    unsigned long m_neverShown = 0;  ///< a window that asks for the keyboard and can never get it
    unsigned long m_asideWindow = 0; ///< has the second keyboard's focus while nobody is typed to
    int m_returnKey = 0;
    int m_tabKey = 0;
};

} // namespace mevo
