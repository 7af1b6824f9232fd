#pragma once

#include "output/PostingPlan.h"
#include "platform/WindowSystem.h"
#include "platform/linux/X11Behind.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11ScratchKeys.h"
#include "platform/linux/X11SecondKeyboard.h"
#include "platform/linux/X11Waits.h"

#include <QElapsedTimer>

#include <memory>

namespace mevo {

class ScreenLock;

/// Types texts into windows by injected key events, one text at a time, on the thread that it was made
/// on. The keys are bound in batches; before a key is bound anew the target has translated what it was
/// sent before. Keys that a program which hangs has yet to take stay as they are, whoever is typed to
/// meanwhile, as long as there are others.
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
    /// waited for up to 10 s (X11Waits::takenLimitMs).
    PostResult post(WindowId window, const QString &text);
    /// Whether the window's program takes what it has been sent: AtEnd, or Hung after `limitMs`.
    PostStop ask(WindowId window, int limitMs);
    /// Takes down what is kept up for the next text. To be called when none has come for restAfterMs. False
    /// when a window that hung may still take what it was sent, which needs it: to be called again.
    bool rest();
    static constexpr int restAfterMs = 5000;
    /// How long programs are waited for, and that the end of ours does not wait for them.
    X11Waits &waits() { return m_waits; }

private:
    /// `taken` is how much of the text was seen to be taken.
    PostStop typeInto(const X11Target &target, const QString &text, int &taken);
    /// Why nothing may be sent to the window; AtEnd when something may.
    PostStop refusal(const X11Target &target) const;
    /// Sends the text, batch by batch, to a target that has been asked. `answered` is false while its answer
    /// is still to come.
    PostStop typeBatches(const X11Target &target, const QString &text, bool answered, int &taken);
    /// Binds the batch's keys, and sends it once the target has answered and done what it had to. `answered`
    /// is as above. KeyboardChanged when nothing has been sent because keys yield something else.
    PostStop typeBatch(const X11Target &target, const PostBatch &batch, bool &answered);
    /// Waits until the target has translated what it was sent.
    PostStop awaitTaken(const X11Target &target, int drain);
    /// Holds the keys that programs have yet to take.
    void holdSlots();
    /// Forgets the programs that have caught up.
    void lookBehind();
    /// Sees to it that some keys can be bound, and that more can when there are few.
    void findFreeSlots();
    /// Looks whether the keyboard map is still as we left it, and begins with no key bound when it is not.
    void checkMap();
    /// None of the keys is bound any more.
    void startSlots();
    bool isFocused(const X11Target &target) const;
    /// Sends a batch, once nobody else has the keyboard.
    PostStop send(const X11Target &target, const PostBatch &batch);
    PostStop sendAtOnce(const X11Target &target, const PostBatch &batch);
    bool isKeyboardGrabbed() const;
    /// Takes the second keyboard's focus off the target, and has the window manager know again where the
    /// user's is.
    void giveFocusBack();
    /// Finds the keys that the map has for line ends and tabs now; false when the batch has some and the map
    /// has no key for them. To be called with the server grabbed.
    bool findOwnKeys(const PostBatch &batch);
    int keycodeOf(const PostStroke &stroke) const;
    X11KeyState stateOf(const PostStroke &stroke) const;
    /// Locks the user's keyboard, and the second one too, to `state` when it was locked to `before`.
    void lock(bool second, const X11KeyState &before, const X11KeyState &state);
    /// Strikes the keys on the user's keyboard or on the second one.
    void strike(const PostBatch &batch, bool second);
    /// Uses those slots alone that need no state of the keyboard, or all again.
    void limitStates(bool oneState);

    const ScreenLock &m_lock;
    X11Connection m_connection;
    X11Waits m_waits;
    std::unique_ptr<X11ScratchKeys> m_keys;
    ScratchSlots m_slots{0};
    bool m_oneState = false;
    std::unique_ptr<X11SecondKeyboard> m_second;
    bool m_usable = false;
    X11Behind m_behind;
    QElapsedTimer m_lastLook;        ///< at it
    std::vector<int> m_underWay;     ///< slots that the target was sent keys of, and was not seen to take
    unsigned long m_neverShown = 0;  ///< a window that asks for the keyboard and can never get it
    unsigned long m_asideWindow = 0; ///< has the second keyboard's focus while nobody is typed to
    int m_returnKey = 0;
    int m_tabKey = 0;
};

} // namespace mevo
