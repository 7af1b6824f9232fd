#pragma once

#include <QPainterPath>
#include <QRectF>

namespace mevo::keypad {

/// Pictures of the keys without a character, as lines that are crisp at any scale.
enum class Glyph { None, Backspace, Delete, Tab, Enter, Shift, CapsLock, Left, Right, Up, Down, Close };

/// The lines of a picture inside `box`, to be drawn with a pen.
QPainterPath glyphPath(Glyph glyph, const QRectF &box);

} // namespace mevo::keypad
