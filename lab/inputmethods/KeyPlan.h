#pragma once

#include <QHash>
#include <QString>

#include <vector>

namespace lab {

/// A key, and whether Shift goes with it.
struct KeyStroke
{
    quint8 keycode = 0;
    bool shift = false;
};

inline bool operator==(const KeyStroke &a, const KeyStroke &b)
{
    return a.keycode == b.keycode && a.shift == b.shift;
}

/// The keys of a keyboard by their keysyms.
using KeyMap = QHash<quint32, KeyStroke>;

/// The keysym of a character: its own number in Latin-1, Return and Tab, else the Unicode range.
quint32 keysymOf(char32_t character);

/// The keys that type a text. Characters that the keyboard does not have are left out, and counted.
struct KeyPlan
{
    std::vector<KeyStroke> strokes;
    int untypable = 0;
};
KeyPlan planKeys(const QString &text, const KeyMap &keys);

} // namespace lab
