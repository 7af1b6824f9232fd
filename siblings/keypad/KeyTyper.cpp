#include "keypad/KeyTyper.h"

#include "platform/Keyboard.h"

#include <QDebug>

namespace mevo::keypad {

KeyTyper::KeyTyper(WindowSystem &windows, Keyboard &keyboard, Told told)
    : m_windows(windows)
    , m_keyboard(keyboard)
    , m_told(std::move(told))
{
}

void KeyTyper::type(const std::vector<Stroke> &strokes)
{
    if (strokes.empty()) {
        return;
    }
    const WindowId window = m_windows.focusedWindow();
    if (window == 0) {
        qWarning("Keypad: no window has the focus, nothing is typed");
        tell(false);
        return;
    }
    for (const Stroke &stroke : strokes) {
        if (int(m_waiting.size()) >= mostWaiting) {
            qWarning("Keypad: too much waits to be typed, a key is dropped");
            tell(false);
            break;
        }
        // One text of what waits for the same window: it goes sooner.
        const bool joins = !m_waiting.empty() && !stroke.text.isEmpty() &&
                           !m_waiting.back().stroke.text.isEmpty() && m_waiting.back().window == window;
        if (joins) {
            m_waiting.back().stroke.text += stroke.text;
        } else {
            m_waiting.push_back({stroke, window});
        }
    }
    goOn();
}

void KeyTyper::goOn()
{
    while (!m_busy && !m_waiting.empty()) {
        const Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (next.stroke.text.isEmpty()) {
            strike(next.stroke);
            tell(true);
            continue;
        }
        m_busy = true;
        m_windows.postText(next.window, next.stroke.text, [this](const PostResult &result) {
            m_busy = false;
            tell(result.complete);
            goOn();
        });
    }
}

void KeyTyper::strike(const Stroke &stroke)
{
    if (stroke.shift) {
        m_keyboard.keyDown(VkShift);
    }
    m_keyboard.keyDown(stroke.virtualKey);
    m_keyboard.keyUp(stroke.virtualKey);
    if (stroke.shift) {
        m_keyboard.keyUp(VkShift);
    }
}

void KeyTyper::tell(bool gone) const
{
    if (m_told) {
        m_told(gone);
    }
}

} // namespace mevo::keypad
