#pragma once

#include <QtGlobal>

#include <tuple>

namespace mevo::lab {

/// What the keyboard half of the receiver holds down at one moment.
struct KeyboardReport
{
    quint8 modifiers =
        0;            ///< USB HID bits: 0x01 left Ctrl, 0x02 left Shift, 0x04 left Alt, 0x08 left GUI, ...
    quint8 usage = 0; ///< usage of the keyboard page, 0 for none
    quint16 consumer = 0; ///< 12-bit usage of the consumer page, 0 for none
};

inline bool operator==(const KeyboardReport &a, const KeyboardReport &b)
{
    return std::tie(a.modifiers, a.usage, a.consumer) == std::tie(b.modifiers, b.usage, b.consumer);
}

} // namespace mevo::lab
