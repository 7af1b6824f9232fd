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
    /// Told after each text and key: whether it has gone.
    using Told = std::function<void(bool)>;

    /// Both outlive this. `told` may be null.
    KeyTyper(WindowSystem &windows, Keyboard &keyboard, Told told);

    /// Texts go to the window that has the focus now. Where none has, and when more than `mostWaiting` wait
    /// for a program that does not take them, they are dropped.
    void type(const std::vector<Stroke> &strokes);
    static constexpr int mostWaiting = 200;

private:
    struct Waiting
    {
        Stroke stroke;
        WindowId window = 0;
    };

    void goOn();
    void strike(const Stroke &stroke);
    void tell(bool gone) const;

    WindowSystem &m_windows;
    Keyboard &m_keyboard;
    Told m_told;
    std::deque<Waiting> m_waiting;
    bool m_busy = false; ///< a text is on its way
};

} // namespace mevo::keypad
