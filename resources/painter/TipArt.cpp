#include "Art.h"

#include "Brushwork.h"

#include <QPainterPath>

namespace mevo {

namespace {

constexpr int tipWidth = 149;
constexpr int tipHeight = 170;
constexpr int levels = 6;

/// Levels are drawn by their own number, latched ones from `Latched` on.
enum TipState { Idle = -3, Touched = -2, SpeakPlease = -1, Latched = 10 };

const QPointF micCentre(tipWidth / 2.0, 97);

/// The card, with a tab at the top left on which the three status buttons lie. In latch mode they are hidden,
/// so the tab is too.
void paintCard(QPainter &painter, bool tab, const QColor &rim)
{
    const QRectF card(2, 25, tipWidth - 4, tipHeight - 27);
    paintGround(painter, card, 20, 0.84);
    painter.setPen(QPen(faded(rim, 0.75), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(card.adjusted(0.75, 0.75, -0.75, -0.75), 19.25, 19.25);
    if (tab) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(palette::night, 0.78));
        painter.drawRoundedRect(QRectF(0, 1, 78, 21), 10.5, 10.5);
    }
}

void paintDisc(QPainter &painter, const QColor &from, const QColor &to, qreal radius)
{
    QLinearGradient fill(micCentre - QPointF(radius, radius), micCentre + QPointF(radius, radius));
    fill.setColorAt(0, from);
    fill.setColorAt(1, to);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawEllipse(micCentre, radius, radius);
}

void paintGlow(QPainter &painter, const QColor &color, qreal radius, qreal opacity)
{
    QRadialGradient glow(micCentre, radius);
    glow.setColorAt(0, faded(color, opacity));
    glow.setColorAt(0.5, faded(color, opacity * 0.7));
    glow.setColorAt(1, faded(color, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawEllipse(micCentre, radius, radius);
}

/// Six arcs to the left and to the right of the microphone, `lit` of them alight.
void paintArcs(QPainter &painter, int lit, const QColor &near, const QColor &far)
{
    for (int i = 0; i < levels; ++i) {
        const qreal radius = 34 + 6.4 * i;
        const qreal share = static_cast<qreal>(i) / (levels - 1);
        const QColor on = QColor::fromRgbF(near.redF() + (far.redF() - near.redF()) * share,
                                           near.greenF() + (far.greenF() - near.greenF()) * share,
                                           near.blueF() + (far.blueF() - near.blueF()) * share);
        painter.setPen(stroke(i < lit ? on : faded(palette::white, 0.12), 3.4));
        painter.setBrush(Qt::NoBrush);
        const QRectF ring(micCentre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
        constexpr int half = 36 * 16;
        painter.drawArc(ring, -half, 2 * half);
        painter.drawArc(ring, 180 * 16 - half, 2 * half);
    }
}

void paintLock(QPainter &painter, const QPointF &centre)
{
    painter.setPen(stroke(palette::amber, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(QRectF(centre.x() - 4, centre.y() - 9, 8, 10), 0, 180 * 16);
    painter.drawLine(centre + QPointF(-4, -4), centre + QPointF(-4, -1));
    painter.drawLine(centre + QPointF(4, -4), centre + QPointF(4, -1));
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::amber);
    painter.drawRoundedRect(QRectF(centre.x() - 7, centre.y() - 1.5, 14, 10.5), 2.5, 2.5);
    painter.setBrush(palette::night);
    painter.drawEllipse(centre + QPointF(0, 3.5), 1.6, 1.6);
}

void paintTip(QPainter &painter, const Art &art)
{
    switch (art.variant) {
    case Idle:
        paintCard(painter, true, faded(palette::muted, 0.5));
        paintArcs(painter, 0, {}, {});
        paintDisc(painter, QColor(0x3c, 0x50, 0x62), QColor(0x2c, 0x3f, 0x50), 27);
        paintMicrophone(painter, micCentre, 34, QColor(0xb4, 0xc3, 0xcf), 2.6, true);
        break;
    case Touched:
        paintCard(painter, true, palette::teal);
        paintArcs(painter, 0, {}, {});
        paintGlow(painter, palette::teal, 50, 0.35);
        paintDisc(painter, QColor(0x2c, 0x5c, 0x86), QColor(0x1a, 0x7d, 0x86), 27);
        paintMicrophone(painter, micCentre, 34, palette::white, 2.6, true);
        break;
    case SpeakPlease:
        paintCard(painter, true, palette::bright);
        paintGlow(painter, palette::bright, 70, 0.42);
        painter.setPen(stroke(faded(palette::bright, 0.9), 2.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(micCentre, 37, 37);
        painter.setPen(stroke(faded(palette::bright, 0.4), 2));
        painter.drawEllipse(micCentre, 47, 47);
        paintDisc(painter, palette::blue, palette::teal, 30);
        paintMicrophone(painter, micCentre, 38, palette::white, 2.8, true);
        break;
    default: {
        const bool latched = art.variant >= Latched;
        const int level = latched ? art.variant - Latched : art.variant;
        const QColor accent = latched ? palette::amber : palette::teal;
        paintCard(painter, !latched, accent);
        paintArcs(painter, level, accent.lighter(112), latched ? palette::red : palette::bright);
        paintGlow(painter, accent, 40, 0.25 + 0.05 * level);
        paintDisc(painter, latched ? QColor(0xd9, 0x6c, 0x2a) : palette::blue, accent, 27);
        paintMicrophone(painter, micCentre, 34, palette::white, 2.6, true);
        if (latched) {
            paintLock(painter, QPointF(micCentre.x(), 150));
        }
    }
    }
}

enum Status { TypeMode, CommandMode, SearchMode, ModeOff, UnderPointer };

/// Thirteen pixels square: a coloured disc with one bold sign in it.
void paintStatus(QPainter &painter, const Art &art)
{
    const QRectF disc(0.5, 0.5, 12, 12);
    if (art.variant == ModeOff) {
        painter.setPen(QPen(palette::muted, 1.4));
        painter.setBrush(faded(palette::muted, 0.22));
        painter.drawEllipse(disc.adjusted(1, 1, -1, -1));
        return;
    }
    if (art.variant == UnderPointer) {
        painter.setPen(QPen(palette::white, 1.4));
        painter.setBrush(palette::bright);
        painter.drawEllipse(disc.adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    const QColor grounds[] = {palette::teal, palette::amber, palette::blue};
    painter.setPen(Qt::NoPen);
    painter.setBrush(grounds[art.variant]);
    painter.drawEllipse(QRectF(0, 0, 13, 13));
    painter.setPen(stroke(palette::white, 1.5));
    painter.setBrush(Qt::NoBrush);
    switch (art.variant) {
    case TypeMode:
        painter.drawLine(QPointF(3.75, 3.9), QPointF(9.25, 3.9));
        painter.drawLine(QPointF(6.5, 3.9), QPointF(6.5, 9.6));
        break;
    case CommandMode:
        painter.setPen(stroke(palette::white, 0.6));
        painter.setBrush(palette::white);
        painter.drawPolygon(QPolygonF({{7.6, 2}, {3.4, 7.2}, {6.2, 7.2}, {5.4, 11}, {9.7, 5.7}, {6.8, 5.7}}));
        break;
    default:
        painter.drawEllipse(QPointF(5.8, 5.8), 2.5, 2.5);
        painter.drawLine(QPointF(7.8, 7.8), QPointF(9.8, 9.8));
    }
}

struct Named
{
    const char *name;
    int variant;
};

constexpr Named states[] = {
    {"MicLongPressSpeaking_NoActive.png", Idle},
    {"MicLongPressSpeaking_Active.png", Touched},
    {"MicSpeakPlease.png", SpeakPlease},
};

constexpr Named statuses[] = {
    {"VoiceStatus.png", TypeMode},  {"CommandStatus.png", CommandMode},     {"SearchStatus.png", SearchMode},
    {"DisableStatus.png", ModeOff}, {"StatusMouseHover.png", UnderPointer},
};

} // namespace

void addTipArt(QVector<Art> &table)
{
    for (const Named &row : states) {
        table.append({QLatin1String(row.name), tipWidth, tipHeight, paintTip, row.variant, {}});
    }
    for (int level = 0; level <= levels; ++level) {
        table.append({QStringLiteral("Recorder%1.png").arg(level), tipWidth, tipHeight, paintTip, level, {}});
    }
    for (int level = 0; level <= levels; ++level) {
        table.append({QStringLiteral("Right_Recorder%1.png").arg(level),
                      tipWidth,
                      tipHeight,
                      paintTip,
                      Latched + level,
                      {}});
    }
    for (const Named &row : statuses) {
        table.append({QLatin1String(row.name), 13, 13, paintStatus, row.variant, {}});
    }
}

} // namespace mevo
