#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPen>

namespace mevo {

/// The colours of all pictures.
namespace palette {
const QColor night(0x0f, 0x1c, 0x29);  // ground of bar, card and windows
const QColor dusk(0x1b, 0x2f, 0x42);   // its lighter end
const QColor ink(0xd5, 0xe3, 0xee);    // icons at rest
const QColor bright(0x6f, 0xf0, 0xe2); // icons under the pointer
const QColor teal(0x1f, 0xb9, 0xae);   // on, connected, level
const QColor blue(0x2a, 0x82, 0xda);   // the other end of accent gradients
const QColor amber(0xf5, 0xa6, 0x3c);  // latched, warning
const QColor red(0xe5, 0x4f, 0x4b);    // low, cut off
const QColor muted(0x7d, 0x92, 0xa3);  // off, idle; legible on light and dark
const QColor white(0xff, 0xff, 0xff);
} // namespace palette

QColor faded(const QColor &color, qreal opacity);

/// A round-capped, round-joined line.
QPen stroke(const QColor &color, qreal width = 1.5);

/// The font of words in pictures; set once before painting.
void setArtFamily(const QString &family);
QFont artFont(qreal pixelSize);

/// The application's mark, a square SVG; set once before painting.
bool setMark(const QString &svgFile);
void paintMark(QPainter &painter, const QRectF &place);

/// A microphone of the given height around a centre: capsule, cradle, stem and foot.
/// The stroke's width is in pixels, whatever the height.
void paintMicrophone(QPainter &painter, const QPointF &centre, qreal height, const QColor &color,
                     qreal strokeWidth, bool filled);

/// The dark, softly lit ground that bar and card have in common, inside `place`.
void paintGround(QPainter &painter, const QRectF &place, qreal radius, qreal opacity);

/// One line of Chinese text, its em squares centred in `place`.
void paintCentred(QPainter &painter, const QRectF &place, const QString &text, qreal pixelSize);

} // namespace mevo
