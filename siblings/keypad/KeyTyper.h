#pragma once

#include "keypad/KeypadState.h"
#include "platform/WindowSystem.h"

#include <deque>
#include <functional>

namespace mevo {
class Keyboard;
}

namespace mevo::keypad {

/// Sends texts and keys to the window that has the focus, in their order: a text takes its time, and a key
/// behind it must not overtake it.
class KeyTyper
{
public:
    /// Told after each text and key whether it has gone; where it has not, what stood behind it for the same
    /// window has not either, and is not told of by itself.
    using Told = std::function<void(bool)>;

    /// Both outlive this. `told` may be null.
    KeyTyper(WindowSystem &windows, Keyboard &keyboard, Told told);

    /// Takes what is to go to the window that has the focus now. All of it or, with a log line, nothing:
    /// where no window has the focus, and where `mostWaiting` wait for a program that does not take them.
    ///
    /// A text goes to its window wherever the focus is by then. A key goes wherever the focus is, and is
    /// dropped when that is another window. What stands behind a key that was dropped or a text that did not
    /// go whole, for the same window, is dropped too: it was meant to follow, and a text with a hole in it is
    /// none. The text's rest is not tried again, as a program that hangs may still take it when it wakes.
    bool type(const std::vector<Stroke> &strokes);
    static constexpr int mostWaiting = 200;

    /// Nothing waits, and nothing is on its way.
    bool isIdle() const { return !m_busy && m_waiting.empty(); }
    /// Texts and keys that wait behind the one on its way.
    int waiting() const { return int(m_waiting.size()); }

private:
    struct Waiting
    {
        Stroke stroke;
        WindowId window = 0;
    };

    void goOn();
    void post(const Waiting &next);
    bool strike(const Waiting &next);
    void dropWaitingFor(WindowId window);
    void tell(bool gone) const;

    WindowSystem &m_windows;
    Keyboard &m_keyboard;
    Told m_told;
    std::deque<Waiting> m_waiting;
    bool m_busy = false; ///< a text is on its way
};

} // namespace mevo::keypad
