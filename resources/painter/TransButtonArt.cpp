#include "Art.h"

#include "Brushwork.h"

#include <QPainterPath>

namespace mevo {

namespace {

enum Look { Resting, Hovered };

void begin(QPainter &painter, const Art &art)
{
    if (art.variant == Hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(palette::white, 0.16));
        painter.drawRoundedRect(QRectF(0, 0, art.width, art.height), 4, 4);
    }
    painter.setPen(stroke(art.variant == Hovered ? palette::bright : palette::ink));
    painter.setBrush(Qt::NoBrush);
}

/// A loudspeaker with two waves.
void paintRead(QPainter &painter, const Art &art)
{
    begin(painter, art);
    painter.drawPolygon(QPolygonF({{3.5, 8.5}, {6, 8.5}, {9.5, 5}, {9.5, 17}, {6, 13.5}, {3.5, 13.5}}));
    painter.drawArc(QRectF(8.5, 7.5, 6, 7), -60 * 16, 120 * 16);
    painter.drawArc(QRectF(7.5, 4.5, 11, 13), -55 * 16, 110 * 16);
}

/// A rubber over the line that it has cleared.
void paintClear(QPainter &painter, const Art &art)
{
    begin(painter, art);
    painter.drawPolygon(QPolygonF({{4, 12.5}, {11.5, 5}, {16.5, 10}, {9, 17.5}, {7.5, 17.5}, {4, 14}}));
    painter.drawLine(QPointF(7.7, 8.8), QPointF(12.7, 13.8));
    painter.drawLine(QPointF(11, 17.75), QPointF(18, 17.75));
}

/// Two arrows that pass each other.
void paintSwap(QPainter &painter, const Art &art)
{
    begin(painter, art);
    painter.drawPolyline(QPolygonF({{3, 5.5}, {17, 5.5}, {13.5, 2.5}}));
    painter.drawPolyline(QPolygonF({{17, 10.5}, {3, 10.5}, {6.5, 13.5}}));
}

void paintClose(QPainter &painter, const Art &art)
{
    begin(painter, art);
    painter.drawLine(QPointF(6, 6), QPointF(14, 14));
    painter.drawLine(QPointF(14, 6), QPointF(6, 14));
}

/// The arrow of a list that opens downwards.
void paintArrow(QPainter &painter, const Art &)
{
    painter.setPen(stroke(palette::ink, 1.4));
    painter.drawPolyline(QPolygonF({{1.5, 1.5}, {5, 5}, {8.5, 1.5}}));
}

/// A box to tick, `Hovered` with its tick.
void paintTick(QPainter &painter, const Art &art)
{
    const bool ticked = art.variant == Hovered;
    painter.setPen(stroke(ticked ? palette::teal : palette::muted, 1.2));
    painter.setBrush(ticked ? faded(palette::teal, 0.35) : faded(palette::white, 0.06));
    painter.drawRoundedRect(QRectF(0.75, 0.75, 12.5, 12.5), 3, 3);
    if (ticked) {
        painter.setPen(stroke(palette::bright, 1.8));
        painter.drawPolyline(QPolygonF({{3.5, 7.2}, {6, 9.8}, {10.6, 4.4}}));
    }
}

} // namespace

void addTransButtonArt(QVector<Art> &table)
{
    struct Button
    {
        const char *stem;
        int width, height;
        PaintArt paint;
    };
    for (const Button &button :
         {Button{"TransRead", 22, 22, paintRead}, Button{"TransClear", 22, 22, paintClear},
          Button{"TransSwap", 20, 16, paintSwap}, Button{"TransClose", 20, 20, paintClose},
          Button{"TransTick", 14, 14, paintTick}}) {
        const QString stem = QStringLiteral("tans/") + QLatin1String(button.stem);
        table.append(
            {stem + QLatin1String("_On.png"), button.width, button.height, button.paint, Resting, {}});
        table.append(
            {stem + QLatin1String("_Hover.png"), button.width, button.height, button.paint, Hovered, {}});
    }
    table.append({QStringLiteral("tans/TransArrow.png"), 10, 7, paintArrow, Resting, {}});
}

} // namespace mevo
