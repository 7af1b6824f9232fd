#pragma once

#include <QColor>

namespace mevo::keypad {

/// What the keyboard is painted with.
struct KeypadColours
{
    QColor background;
    QColor border;
    QColor key;        ///< that types a character
    QColor commandKey; ///< any other
    QColor hover;
    QColor pressed;
    QColor edge; ///< below a key
    QColor text;
    QColor faint;  ///< second signs and hints; still read without effort
    QColor active; ///< a key that is switched on
    QColor activeText;
};

const KeypadColours &keypadColours(bool dark);

} // namespace mevo::keypad
