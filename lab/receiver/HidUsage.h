#pragma once

#include "receiver/KeyboardReport.h"

#include <vector>

namespace mevo::lab {

/// X keycode (evdev numbering) of a usage of the keyboard page; 0 when no key has it.
quint8 keycodeOfKeyboardUsage(quint8 usage);
/// X keycode (evdev numbering) of a usage of the consumer page; 0 when it is unknown.
quint8 keycodeOfConsumerUsage(quint16 usage);

/// The keycodes that a report holds down, modifiers first. Unknown usages press nothing.
std::vector<quint8> keycodesOf(const KeyboardReport &report);

struct KeyEvent
{
    quint8 keycode = 0;
    bool press = false;
};

/// What a keyboard does between two reports: keys are released in reverse order, then the new ones are
/// pressed, modifiers before keys.
std::vector<KeyEvent> keyEvents(const KeyboardReport &before, const KeyboardReport &after);

} // namespace mevo::lab
