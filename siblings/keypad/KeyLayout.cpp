#include "keypad/KeyLayout.h"

#include <algorithm>
#include <cmath>

namespace mevo::keypad {

namespace {

constexpr int usualKeyWidth = 46;
constexpr int usualKeyHeight = 42;
constexpr int smallestKeyWidth = 18;
constexpr int smallestKeyHeight = 18;
constexpr int gap = 4;
constexpr int margin = 6;
constexpr double widestShare = 0.98;  ///< of the screen
constexpr double highestShare = 0.62; ///< what is typed into should still be seen

constexpr int stripShare = 60;      ///< heights in hundredths of a key's
constexpr int candidatesShare = 86; ///< likewise

void addCharacters(std::vector<Key> &keys, int row, double left, const char *plain, const char *shifted)
{
    for (; *plain != '\0'; ++plain, ++shifted, left += 1) {
        keys.push_back({KeyKind::Character, row, left, 1, QLatin1Char(*plain), QLatin1Char(*shifted)});
    }
}

std::vector<Key> makeLayout()
{
    std::vector<Key> keys;
    const auto add = [&keys](KeyKind kind, int row, double left, double width) {
        keys.push_back({kind, row, left, width, {}, {}});
    };
    addCharacters(keys, 0, 0, "`1234567890-=", "~!@#$%^&*()_+");
    add(KeyKind::Backspace, 0, 13, 2);
    add(KeyKind::Tab, 1, 0, 1.5);
    addCharacters(keys, 1, 1.5, "qwertyuiop[]", "QWERTYUIOP{}");
    keys.push_back({KeyKind::Character, 1, 13.5, 1.5, QLatin1Char('\\'), QLatin1Char('|')});
    add(KeyKind::CapsLock, 2, 0, 1.75);
    addCharacters(keys, 2, 1.75, "asdfghjkl;'", "ASDFGHJKL:\"");
    add(KeyKind::Enter, 2, 12.75, 2.25);
    add(KeyKind::Shift, 3, 0, 2);
    addCharacters(keys, 3, 2, "zxcvbnm,./", "ZXCVBNM<>?");
    add(KeyKind::Up, 3, 12, 1);
    add(KeyKind::Shift, 3, 13, 2);
    add(KeyKind::Pinyin, 4, 0, 2);
    keys.push_back({KeyKind::Character, 4, 2, 9, QLatin1Char(' '), QLatin1Char(' ')});
    add(KeyKind::Left, 4, 11, 1);
    add(KeyKind::Down, 4, 12, 1);
    add(KeyKind::Right, 4, 13, 1);
    add(KeyKind::Delete, 4, 14, 1);
    return keys;
}

int heightFor(int keyHeight)
{
    return 3 * margin + keyHeight * stripShare / 100 + keyHeight * candidatesShare / 100 +
           keyRows * keyHeight;
}

} // namespace

bool Key::repeats() const
{
    switch (kind) {
    case KeyKind::Backspace:
    case KeyKind::Delete:
    case KeyKind::Left:
    case KeyKind::Right:
    case KeyKind::Up:
    case KeyKind::Down:
        return true;
    case KeyKind::Character:
        return plain == QLatin1Char(' ');
    default:
        return false;
    }
}

const std::vector<Key> &keyLayout()
{
    static const std::vector<Key> keys = makeLayout();
    return keys;
}

std::vector<QRect> keyRects(const QRect &area)
{
    // Both sides of a gap are rounded from the same place, so that gaps are equal however wide a key is.
    const double column = (area.width() + gap) / keyColumns;
    const double row = (area.height() + gap) / double(keyRows);
    std::vector<QRect> rects;
    rects.reserve(keyLayout().size());
    for (const Key &key : keyLayout()) {
        const int left = int(std::lround(key.left * column));
        const int right = int(std::lround((key.left + key.width) * column)) - gap;
        const int top = int(std::lround(key.row * row));
        const int bottom = int(std::lround((key.row + 1) * row)) - gap;
        rects.emplace_back(area.left() + left, area.top() + top, right - left, bottom - top);
    }
    return rects;
}

QSize keypadSize(const QSize &available)
{
    const int widest = int((available.width() * widestShare - 2 * margin) / keyColumns);
    const int keyWidth = std::clamp(widest, smallestKeyWidth, usualKeyWidth);
    int keyHeight = usualKeyHeight;
    while (keyHeight > smallestKeyHeight && heightFor(keyHeight) > available.height() * highestShare) {
        --keyHeight;
    }
    return {int(keyWidth * keyColumns) + 2 * margin, heightFor(keyHeight)};
}

KeypadGeometry keypadGeometry(const QSize &window)
{
    const int shares = stripShare + candidatesShare + 100 * keyRows;
    const int room = window.height() - 3 * margin;
    const int strip = room * stripShare / shares;
    const int candidates = room * candidatesShare / shares;
    const int width = window.width() - 2 * margin;
    KeypadGeometry geometry;
    geometry.strip = QRect(0, 0, window.width(), strip + margin);
    const int close = strip + margin - 4;
    geometry.close = QRect(window.width() - margin - 2 * close + close / 2, 3, close + close / 2, close);
    geometry.candidates = QRect(margin, strip + margin, width, candidates);
    const int top = strip + candidates + 2 * margin;
    geometry.keys = QRect(margin, top, width, window.height() - margin - top);
    return geometry;
}

} // namespace mevo::keypad
