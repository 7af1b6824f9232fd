#pragma once

#include <QRect>
#include <QSize>
#include <QString>

#include <vector>

namespace mevo::keypad {

enum class KeyKind {
    Character, ///< types what stands on it
    Backspace,
    Delete,
    Tab,
    Enter,
    Left,
    Right,
    Up,
    Down,
    Shift,    ///< for the next key
    CapsLock, ///< capitals until it is pressed again
    Pinyin    ///< letters are a syllable until it is pressed again
};

/// A key as it stands on the keyboard.
struct Key
{
    KeyKind kind;
    int row;       ///< from the top
    double left;   ///< from the keyboard's left side, in widths of a plain key
    double width;  ///< likewise
    QChar plain;   ///< what a Character key types
    QChar shifted; ///< with Shift

    bool isLetter() const { return plain >= QLatin1Char('a') && plain <= QLatin1Char('z'); }
    /// Whether it strikes again and again while it is held.
    bool repeats() const;
};

/// All keys, row by row and from left to right.
const std::vector<Key> &keyLayout();

constexpr int keyRows = 5;
constexpr double keyColumns = 15; ///< width of every row in widths of a plain key

/// Where the keys of keyLayout() stand in `area`, in its order: with gaps between them, none at the sides.
std::vector<QRect> keyRects(const QRect &area);

/// What else is on the window: the strip that it is moved by, and the row of the pinyin characters.
struct KeypadGeometry
{
    QRect strip;
    QRect close; ///< button at the strip's right end
    QRect candidates;
    QRect keys;
};

/// The window's size on a screen with `available` room, in device-independent pixels: the usual one, or a
/// smaller one that leaves a part of the screen free.
QSize keypadSize(const QSize &available);
KeypadGeometry keypadGeometry(const QSize &window);

} // namespace mevo::keypad
