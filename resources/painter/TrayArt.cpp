#include "Art.h"

#include "Brushwork.h"

#include <QPainterPath>

namespace mevo {

namespace {

enum Tray { Connected, Disconnected, NoNetwork, LowPower, WithoutDevice };

constexpr int traySize = 32;

/// Cuts a round hole at the lower right, so that a badge stands clear of the sign behind it.
QPointF clearBadge(QPainter &painter)
{
    const QPointF centre(23.5, 23.5);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(centre, 9.5, 9.5);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    return centre;
}

void paintDisc(QPainter &painter, const QColor &top, const QColor &bottom)
{
    QLinearGradient fill(0, 0, 0, traySize);
    fill.setColorAt(0, top);
    fill.setColorAt(1, bottom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawEllipse(QRectF(1, 1, 30, 30));
}

void paintTray(QPainter &painter, const Art &art)
{
    const QPointF middle(16, 16);
    switch (art.variant) {
    case Connected:
        paintDisc(painter, palette::blue, palette::teal);
        paintMicrophone(painter, middle, 23, palette::white, 2.6, true);
        break;
    case Disconnected: {
        paintDisc(painter, palette::muted, palette::muted.darker(125));
        paintMicrophone(painter, middle, 23, palette::white, 2.6, true);
        const QLineF slash(5.5, 5.5, 26.5, 26.5);
        painter.setPen(stroke(palette::muted.darker(115), 7));
        painter.drawLine(slash);
        painter.setPen(stroke(palette::red, 3.6));
        painter.drawLine(slash);
        break;
    }
    case NoNetwork: {
        paintDisc(painter, palette::blue, palette::teal);
        paintMicrophone(painter, QPointF(13.5, 15), 22, palette::white, 2.6, true);
        const QPointF badge = clearBadge(painter);
        painter.setBrush(palette::amber);
        painter.drawEllipse(badge, 8, 8);
        painter.setPen(stroke(palette::night, 2.8));
        painter.drawLine(badge + QPointF(0, -4), badge + QPointF(0, 0.8));
        painter.drawPoint(badge + QPointF(0, 4.4));
        break;
    }
    case LowPower: {
        paintDisc(painter, palette::red.lighter(108), palette::red.darker(125));
        painter.setPen(stroke(palette::white, 2.4));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(5.7, 10.2, 18.6, 11.6), 2.6, 2.6);
        painter.drawLine(QPointF(27, 14.2), QPointF(27, 17.8));
        painter.fillRect(QRectF(8.5, 13, 3.8, 6), palette::white);
        break;
    }
    default: {
        painter.setPen(stroke(palette::teal, 2.6));
        painter.setBrush(palette::night);
        painter.drawEllipse(QRectF(2.3, 2.3, 27.4, 27.4));
        paintMicrophone(painter, middle, 20, palette::bright, 2.4, true);
    }
    }
}

/// A lying battery with 0 to 3 bars. It stands in a dialog of any colour, so its outline is a middle grey.
void paintPower(QPainter &painter, const Art &art)
{
    const QColor fills[] = {palette::red, palette::amber, palette::teal, palette::teal};
    const QColor color = fills[art.variant];
    painter.setPen(stroke(art.variant == 0 ? palette::red : palette::muted.darker(112), 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(1.5, 2.5, 32, 15), 3.5, 3.5);
    painter.drawLine(QPointF(37.2, 7.5), QPointF(37.2, 12.5));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    for (int bar = 0; bar < art.variant; ++bar) {
        painter.drawRoundedRect(QRectF(4.5 + 9 * bar, 5.5, 8, 9), 1.5, 1.5);
    }
    if (art.variant == 0) {
        painter.setPen(stroke(palette::red, 2));
        painter.drawLine(QPointF(17.5, 6), QPointF(17.5, 10.8));
        painter.drawPoint(QPointF(17.5, 14));
    }
}

void paintApplication(QPainter &painter, const Art &art)
{
    paintMark(painter, QRectF(0, 0, art.width, art.height));
}

struct TrayIcon
{
    const char *name;
    Tray tray;
};

constexpr TrayIcon trayIcons[] = {
    {"ORDeviceConnect.png", Connected}, {"ORDeviceDisConnect.png", Disconnected},
    {"ORNoNetwork.png", NoNetwork},     {"ORLowPower.png", LowPower},
    {"NoORDevice.png", WithoutDevice},
};

} // namespace

void addTrayArt(QVector<Art> &table)
{
    for (const TrayIcon &row : trayIcons) {
        table.append({QLatin1String(row.name), traySize, traySize, paintTray, row.tray, {}});
    }
    for (int level = 0; level <= 3; ++level) {
        table.append({QStringLiteral("PowerLevel%1.png").arg(level), 40, 20, paintPower, level, {}});
    }
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        table.append({QStringLiteral("app/%1.png").arg(size), size, size, paintApplication, 0, {}});
    }
    table.append({QStringLiteral("app.png"), 128, 128, paintApplication, 0, {}});
    table.append({QStringLiteral("logo.ico"), 16, 16, paintApplication, 0, {}});
}

} // namespace mevo
