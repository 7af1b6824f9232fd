#include "Art.h"

#include "Brushwork.h"

#include <QPainterPath>
#include <QtMath>

namespace mevo {

namespace {

enum Look { Resting, Hovered };
enum Orientation { Horizontal, Vertical };

QColor inkOf(const Art &art)
{
    return art.variant == Hovered ? palette::bright : palette::ink;
}

/// The soft plate that lights up behind an icon under the pointer.
void paintPlate(QPainter &painter, const Art &art)
{
    if (art.variant == Hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(palette::white, 0.16));
        painter.drawRoundedRect(QRectF(0, 0, art.width, art.height), 5, 5);
    }
    painter.setPen(stroke(inkOf(art)));
    painter.setBrush(Qt::NoBrush);
}

void paintMic(QPainter &painter, const Art &art)
{
    paintPlate(painter, art);
    const QColor color = art.variant == Hovered ? palette::bright : palette::teal.lighter(125);
    paintMicrophone(painter, QPointF(7.5, 12), 20, color, 1.5, true);
}

void paintKeyPad(QPainter &painter, const Art &art)
{
    paintPlate(painter, art);
    painter.drawRoundedRect(QRectF(2.75, 3.75, 20.5, 12.5), 2.5, 2.5);
    painter.setPen(stroke(inkOf(art), 1.6));
    for (const qreal x : {6.5, 10.8, 15.2, 19.5}) {
        painter.drawPoint(QPointF(x, 7.5));
    }
    for (const qreal x : {6.5, 19.5}) {
        painter.drawPoint(QPointF(x, 12.5));
    }
    painter.drawLine(QPointF(10, 12.5), QPointF(16, 12.5));
}

void paintHandWriter(QPainter &painter, const Art &art)
{
    paintPlate(painter, art);
    const QPolygonF pen({{4.5, 17.5}, {5.4, 13.4}, {14.6, 4.2}, {17.8, 7.4}, {8.6, 16.6}});
    painter.drawPolygon(pen);
    painter.drawLine(QPointF(12.3, 6.5), QPointF(15.5, 9.7));
    painter.drawLine(QPointF(12.5, 17.75), QPointF(18, 17.75));
}

void paintCommandWord(QPainter &painter, const Art &art)
{
    paintPlate(painter, art);
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(2.75, 2.75, 16.5, 12.5), 3.5, 3.5);
    QPainterPath tail;
    tail.addPolygon(QPolygonF({{6, 14}, {6, 19}, {11.5, 14}, {6, 14}}));
    painter.drawPath(bubble.united(tail));
    painter.setPen(stroke(inkOf(art), 0.8));
    painter.setBrush(inkOf(art));
    painter.drawPolygon(
        QPolygonF({{12.2, 4.8}, {7.9, 9.8}, {10.6, 9.8}, {9.6, 13.2}, {14.1, 8.2}, {11.3, 8.2}}));
}

void paintTranslate(QPainter &painter, const Art &art)
{
    paintPlate(painter, art);
    paintCentred(painter, QRectF(1, 1, 13, 13), QStringLiteral("文"), 13);
    painter.setPen(stroke(inkOf(art), 1.6));
    painter.drawPolyline(QPolygonF({{10.8, 19.2}, {14.9, 10.2}, {19, 19.2}}));
    painter.drawLine(QPointF(12.4, 16.2), QPointF(17.4, 16.2));
}

void paintSetting(QPainter &painter, const Art &art)
{
    paintPlate(painter, art);
    constexpr int teeth = 8;
    constexpr qreal step = 2 * M_PI / teeth;
    const QPointF centre(10.5, 10.5);
    QPolygonF gear;
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const auto corner = [&](qreal turn, qreal radius) {
            const qreal angle = (tooth + turn) * step;
            gear << centre + radius * QPointF(qSin(angle), -qCos(angle));
        };
        corner(-0.30, 6.1);
        corner(-0.20, 8.3);
        corner(0.20, 8.3);
        corner(0.30, 6.1);
    }
    painter.setPen(stroke(inkOf(art), 1.4));
    painter.drawPolygon(gear);
    painter.drawEllipse(centre, 2.6, 2.6);
}

/// Eight pixels square: all that fits is a cross, on a red disc while its menu is open.
void paintClose(QPainter &painter, const Art &art)
{
    if (art.variant == Hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::red);
        painter.drawEllipse(QRectF(0, 0, 8, 8));
    }
    const qreal inset = art.variant == Hovered ? 2.4 : 1.5;
    painter.setPen(stroke(art.variant == Hovered ? palette::white : palette::ink, 1.2));
    painter.drawLine(QPointF(inset, inset), QPointF(8 - inset, 8 - inset));
    painter.drawLine(QPointF(8 - inset, inset), QPointF(inset, 8 - inset));
}

/// The ground of the bar. The mark fills the end without buttons, hairlines part the groups of them.
void paintBar(QPainter &painter, const Art &art)
{
    paintGround(painter, QRectF(0, 0, art.width, art.height), 12, 0.88);
    const bool vertical = art.variant == Vertical;
    paintMark(painter, vertical ? QRectF(8.5, 11, 28, 28) : QRectF(12, 8.5, 28, 28));
    painter.setPen(QPen(faded(palette::white, 0.16), 1));
    for (const qreal at : {vertical ? 45.5 : 47.5, vertical ? 228.5 : 230.5}) {
        painter.drawLine(vertical ? QLineF(12, at, 33, at) : QLineF(at, 12, at, 33));
    }
}

struct BarIcon
{
    const char *stem;
    int width;
    int height;
    PaintArt paint;
};

constexpr BarIcon barIcons[] = {
    {"Mic", 15, 24, paintMic},
    {"KeyPad", 26, 20, paintKeyPad},
    {"HandWriter", 22, 22, paintHandWriter},
    {"CommandWord", 22, 22, paintCommandWord},
    {"Translate", 22, 22, paintTranslate},
    {"Setting", 21, 21, paintSetting},
};

} // namespace

void addBarArt(QVector<Art> &table)
{
    table.append({QStringLiteral("mainbk.png"), 260, 45, paintBar, Horizontal, {}});
    table.append({QStringLiteral("mainbkV.png"), 45, 260, paintBar, Vertical, {}});
    for (const BarIcon &icon : barIcons) {
        const QString stem = QLatin1String(icon.stem);
        table.append({stem + QLatin1String("_On.png"), icon.width, icon.height, icon.paint, Resting, {}});
        table.append({stem + QLatin1String("_Hover.png"), icon.width, icon.height, icon.paint, Hovered, {}});
    }
    table.append({QStringLiteral("close_normal.png"), 8, 8, paintClose, Resting, {}});
    table.append({QStringLiteral("close_press.png"), 8, 8, paintClose, Hovered, {}});
}

} // namespace mevo
