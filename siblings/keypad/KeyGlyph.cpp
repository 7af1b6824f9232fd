#include "keypad/KeyGlyph.h"

#include <QTransform>

#include <initializer_list>

namespace mevo::keypad {

namespace {

/// Lines in a box from -1 to 1 in both directions.
void line(QPainterPath &path, std::initializer_list<QPointF> points)
{
    auto point = points.begin();
    path.moveTo(*point);
    while (++point != points.end()) {
        path.lineTo(*point);
    }
}

void arrow(QPainterPath &path, double turn)
{
    QPainterPath pointingRight;
    line(pointingRight, {{-0.7, 0}, {0.7, 0}});
    line(pointingRight, {{0.15, -0.5}, {0.7, 0}, {0.15, 0.5}});
    path.addPath(QTransform().rotate(turn).map(pointingRight));
}

/// The frame of a key that removes a character, with a cross in it.
void eraser(QPainterPath &path, double direction)
{
    QPainterPath left;
    line(left, {{-1, 0}, {-0.45, -0.6}, {1, -0.6}, {1, 0.6}, {-0.45, 0.6}, {-1, 0}});
    line(left, {{0, -0.25}, {0.5, 0.25}});
    line(left, {{0.5, -0.25}, {0, 0.25}});
    path.addPath(QTransform::fromScale(direction, 1).map(left));
}

void shiftArrow(QPainterPath &path, double bottom)
{
    line(path, {{0, -0.85},
                {0.8, 0},
                {0.38, 0},
                {0.38, bottom},
                {-0.38, bottom},
                {-0.38, 0},
                {-0.8, 0},
                {0, -0.85}});
}

} // namespace

QPainterPath glyphPath(Glyph glyph, const QRectF &box)
{
    QPainterPath path;
    switch (glyph) {
    case Glyph::None:
        break;
    case Glyph::Backspace:
        eraser(path, 1);
        break;
    case Glyph::Delete:
        eraser(path, -1);
        break;
    case Glyph::Tab:
        line(path, {{-0.9, 0}, {0.6, 0}});
        line(path, {{0.15, -0.45}, {0.6, 0}, {0.15, 0.45}});
        line(path, {{0.9, -0.6}, {0.9, 0.6}});
        break;
    case Glyph::Enter:
        line(path, {{0.8, -0.65}, {0.8, 0.1}, {-0.8, 0.1}});
        line(path, {{-0.35, -0.35}, {-0.8, 0.1}, {-0.35, 0.55}});
        break;
    case Glyph::Shift:
        shiftArrow(path, 0.75);
        break;
    case Glyph::CapsLock:
        shiftArrow(path, 0.45);
        line(path, {{-0.38, 0.85}, {0.38, 0.85}});
        break;
    case Glyph::Left:
        arrow(path, 180);
        break;
    case Glyph::Right:
        arrow(path, 0);
        break;
    case Glyph::Up:
        arrow(path, 270);
        break;
    case Glyph::Down:
        arrow(path, 90);
        break;
    case Glyph::Close:
        line(path, {{-0.6, -0.6}, {0.6, 0.6}});
        line(path, {{0.6, -0.6}, {-0.6, 0.6}});
        break;
    }
    const double half = qMin(box.width(), box.height()) / 2;
    return QTransform::fromTranslate(box.center().x(), box.center().y()).scale(half, half).map(path);
}

} // namespace mevo::keypad
