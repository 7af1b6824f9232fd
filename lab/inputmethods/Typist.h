#pragma once

#include "inputmethods/KeyPlan.h"

#include <QString>

struct _XDisplay;

namespace lab {

/// Types into whatever window has the focus, with the keys that the keyboard has.
class Typist
{
public:
    /// The connection must outlive this object.
    explicit Typist(_XDisplay *display);

    /// Returns how many characters of the text could be typed. What the user holds of Shift is let go first
    /// and not pressed again.
    int type(const QString &text);

    /// The keyboard's keys of now, without and with Shift.
    KeyMap keyMap() const;

private:
    _XDisplay *m_display;
};

} // namespace lab
