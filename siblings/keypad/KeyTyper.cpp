#include "keypad/KeyTyper.h"

#include "platform/Keyboard.h"

#include <QDebug>

#include <algorithm>

namespace mevo::keypad {

KeyTyper::KeyTyper(WindowSystem &windows, Keyboard &keyboard, Told told)
    : m_windows(windows)
    , m_keyboard(keyboard)
    , m_told(std::move(told))
{
}

bool KeyTyper::type(const std::vector<Stroke> &strokes)
{
    if (strokes.empty()) {
        return true;
    }
    const WindowId window = m_windows.focusedWindow();
    if (window == 0) {
        qWarning("Keypad: no window has the focus, nothing is typed");
        return false;
    }
    if (int(m_waiting.size() + strokes.size()) > mostWaiting) {
        qWarning("Keypad: too much waits to be typed, a key is not taken");
        return false;
    }
    for (const Stroke &stroke : strokes) {
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
    return true;
}

void KeyTyper::goOn()
{
    while (!m_busy && !m_waiting.empty()) {
        const Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (next.stroke.text.isEmpty()) {
            const bool gone = strike(next);
            if (!gone) {
                dropWaitingFor(next.window);
            }
            tell(gone);
        } else {
            post(next);
        }
    }
}

void KeyTyper::post(const Waiting &next)
{
    m_busy = true;
    m_windows.postText(next.window, next.stroke.text, [this, window = next.window](const PostResult &result) {
        m_busy = false;
        if (!result.complete) {
            dropWaitingFor(window);
        }
        tell(result.complete);
        goOn();
    });
}

bool KeyTyper::strike(const Waiting &next)
{
    if (m_windows.focusedWindow() != next.window) {
        qWarning("Keypad: the focus has gone to another window, a key is dropped");
        return false;
    }
    const Stroke &stroke = next.stroke;
    if (stroke.shift) {
        m_keyboard.keyDown(VkShift);
    }
    m_keyboard.keyDown(stroke.virtualKey);
    m_keyboard.keyUp(stroke.virtualKey);
    if (stroke.shift) {
        m_keyboard.keyUp(VkShift);
    }
    return true;
}

void KeyTyper::dropWaitingFor(WindowId window)
{
    const auto first = std::remove_if(m_waiting.begin(), m_waiting.end(),
                                      [window](const Waiting &one) { return one.window == window; });
    const auto count = int(m_waiting.end() - first);
    m_waiting.erase(first, m_waiting.end());
    if (count > 0) {
        qWarning("Keypad: something did not go; dropped behind it: %d", count);
    }
}

void KeyTyper::tell(bool gone) const
{
    if (m_told) {
        m_told(gone);
    }
}

} // namespace mevo::keypad
