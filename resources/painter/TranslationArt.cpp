#include "Art.h"

#include "Brushwork.h"

#include <QPainterPath>
#include <QtMath>

namespace mevo {

namespace {

constexpr int windowWidth = 455;
constexpr int closedHeight = 230;
constexpr int openHeight = 555;
constexpr int headHeight = 34;

enum Settings { Closed, VoiceSettings, SelectionSettings };

/// The ground of the translation window. With its settings open the part below the panes is a panel of its
/// own; translating a selection has the other accent and a marked line of text as its sign.
void paintWindow(QPainter &painter, const Art &art)
{
    const QRectF place(0, 0, art.width, art.height);
    const QColor accent = art.variant == SelectionSettings ? palette::amber : palette::teal;
    paintGround(painter, place, 12, 0.97);

    QPainterPath clip;
    clip.addRoundedRect(place.adjusted(1, 1, -1, -1), 11, 11);
    painter.setClipPath(clip);
    QLinearGradient head(0, 0, windowWidth, 0);
    head.setColorAt(0, faded(palette::blue, 0.50));
    head.setColorAt(1, faded(accent, 0.28));
    painter.fillRect(QRectF(1, 1, windowWidth - 2, headHeight - 1), head);
    painter.fillRect(QRectF(1, headHeight, windowWidth - 2, 1), faded(accent, 0.8));
    if (art.variant == Closed) {
        return;
    }
    painter.fillRect(QRectF(1, closedHeight, windowWidth - 2, openHeight - closedHeight),
                     faded(palette::white, 0.06));
    painter.fillRect(QRectF(14, closedHeight, windowWidth - 28, 1), faded(accent, 0.6));
    if (art.variant == SelectionSettings) {
        painter.fillRect(QRectF(1, closedHeight, 3, openHeight - closedHeight), faded(accent, 0.8));
    }
}

enum FlagKind {
    Across,
    Upright,
    Cross,
    Disc,
    China,
    Korea,
    Britain,
    Spain,
    Czechia,
    Emirates,
    Vietnam,
    Greece,
    Thailand,
    Portugal,
    Slovenia
};

struct Flag
{
    const char *country;
    FlagKind kind;
    QRgb colors[3]; ///< bands from the top or left; of crosses: ground, outer cross, inner cross
};

constexpr Flag flags[] = {
    {"CN", China, {0xffde2910, 0xffffde00, 0}},
    {"UK", Britain, {0xff012169, 0xffffffff, 0xffc8102e}},
    {"JP", Disc, {0xffffffff, 0xffbc002d, 0}},
    {"KR", Korea, {0xffffffff, 0xffcd2e3a, 0xff0047a0}},
    {"FR", Upright, {0xff0055a4, 0xffffffff, 0xffef4135}},
    {"RU", Across, {0xffffffff, 0xff0039a6, 0xffd52b1e}},
    {"ES", Spain, {0xffaa151b, 0xfff1bf00, 0xffaa151b}},
    {"PL", Across, {0xffffffff, 0xffdc143c, 0}},
    {"PT", Portugal, {0xff046a38, 0xffda291c, 0xffffe900}},
    {"DE", Across, {0xff000000, 0xffdd0000, 0xffffce00}},
    {"TH", Thailand, {0xffa51931, 0xfff4f5f8, 0xff2d2a4a}},
    {"CZ", Czechia, {0xffffffff, 0xffd7141a, 0xff11457e}},
    {"AE", Emirates, {0xff00732f, 0xffffffff, 0xff000000}},
    {"VN", Vietnam, {0xffda251d, 0xffffff00, 0}},
    {"IT", Upright, {0xff009246, 0xffffffff, 0xffce2b37}},
    {"GR", Greece, {0xff0d5eaf, 0xffffffff, 0}},
    {"NL", Across, {0xffae1c28, 0xffffffff, 0xff21468b}},
    {"DK", Cross, {0xffc8102e, 0xffffffff, 0xffffffff}},
    {"SE", Cross, {0xff006aa7, 0xfffecc00, 0xfffecc00}},
    {"FI", Cross, {0xffffffff, 0xff003580, 0xff003580}},
    {"HU", Across, {0xffcd2a3e, 0xffffffff, 0xff436f4d}},
    {"RO", Upright, {0xff002b7f, 0xfffcd116, 0xffce1126}},
    {"BG", Across, {0xffffffff, 0xff00966e, 0xffd62612}},
    {"EE", Across, {0xff0072ce, 0xff000000, 0xffffffff}},
    {"SI", Slovenia, {0xffffffff, 0xff005da4, 0xffed1c24}},
};

constexpr qreal flagWidth = 20;
constexpr qreal flagHeight = 14;

QPolygonF star(const QPointF &centre, qreal radius)
{
    QPolygonF points;
    for (int i = 0; i < 10; ++i) {
        const qreal angle = M_PI * i / 5;
        points << centre + (i % 2 ? radius * 0.382 : radius) * QPointF(qSin(angle), -qCos(angle));
    }
    return points;
}

void fillBands(QPainter &painter, const Flag &flag, bool across)
{
    const int bands = flag.colors[2] ? 3 : 2;
    for (int i = 0; i < bands; ++i) {
        const qreal from = static_cast<qreal>(i) / bands;
        const qreal share = 1.0 / bands;
        painter.fillRect(across ? QRectF(0, flagHeight * from, flagWidth, flagHeight * share)
                                : QRectF(flagWidth * from, 0, flagWidth * share, flagHeight),
                         QColor::fromRgb(flag.colors[i]));
    }
}

void paintFlagBody(QPainter &painter, const Flag &flag)
{
    const QRectF whole(0, 0, flagWidth, flagHeight);
    const QColor first = QColor::fromRgb(flag.colors[0]);
    const QColor second = QColor::fromRgb(flag.colors[1]);
    const QColor third = QColor::fromRgb(flag.colors[2]);
    painter.setPen(Qt::NoPen);
    painter.setBrush(second);
    switch (flag.kind) {
    case Across:
        fillBands(painter, flag, true);
        break;
    case Upright:
        fillBands(painter, flag, false);
        break;
    case Cross:
        painter.fillRect(whole, first);
        painter.fillRect(QRectF(5.5, 0, 3, flagHeight), second);
        painter.fillRect(QRectF(0, 5.5, flagWidth, 3), second);
        break;
    case Disc:
        painter.fillRect(whole, first);
        painter.drawEllipse(whole.center(), 4.2, 4.2);
        break;
    case China:
        painter.fillRect(whole, first);
        painter.drawPolygon(star(QPointF(4.6, 5), 3.4));
        for (const QPointF &small :
             {QPointF(9.4, 1.8), QPointF(11.2, 3.8), QPointF(11.2, 6.4), QPointF(9.4, 8.4)}) {
            painter.drawPolygon(star(small, 1.2));
        }
        break;
    case Korea: {
        painter.fillRect(whole, first);
        const QRectF disc(whole.center() - QPointF(3.7, 3.7), QSizeF(7.4, 7.4));
        painter.drawPie(disc, 0, 180 * 16);
        painter.setBrush(third);
        painter.drawPie(disc, 180 * 16, 180 * 16);
        painter.drawEllipse(whole.center() + QPointF(1.85, 0), 1.85, 1.85);
        painter.setBrush(second);
        painter.drawEllipse(whole.center() - QPointF(1.85, 0), 1.85, 1.85);
        painter.setPen(QPen(QColor(Qt::black), 1.1));
        for (const QLineF &bar : {QLineF(2.6, 4.2, 5, 1.8), QLineF(15, 1.8, 17.4, 4.2),
                                  QLineF(2.6, 9.8, 5, 12.2), QLineF(15, 12.2, 17.4, 9.8)}) {
            painter.drawLine(bar);
        }
        break;
    }
    case Britain:
        painter.fillRect(whole, first);
        for (const auto &[color, width] : {std::pair(second, 3.0), std::pair(third, 1.2)}) {
            painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
            painter.drawLine(whole.topLeft(), whole.bottomRight());
            painter.drawLine(whole.bottomLeft(), whole.topRight());
        }
        for (const auto &[color, width] : {std::pair(second, 5.0), std::pair(third, 3.0)}) {
            painter.fillRect(QRectF(10 - width / 2, 0, width, flagHeight), color);
            painter.fillRect(QRectF(0, 7 - width / 2, flagWidth, width), color);
        }
        break;
    case Spain:
        painter.fillRect(whole, first);
        painter.fillRect(QRectF(0, 3.5, flagWidth, 7), second);
        painter.setBrush(first);
        painter.drawRoundedRect(QRectF(4.5, 5, 3.2, 4), 1, 1);
        break;
    case Czechia:
        painter.fillRect(QRectF(0, 0, flagWidth, 7), first);
        painter.fillRect(QRectF(0, 7, flagWidth, 7), second);
        painter.setBrush(third);
        painter.drawPolygon(QPolygonF({{0, 0}, {10, 7}, {0, 14}}));
        break;
    case Emirates:
        fillBands(painter, flag, true);
        painter.fillRect(QRectF(0, 0, 5.5, flagHeight), QColor(0xff, 0x00, 0x00));
        break;
    case Vietnam:
        painter.fillRect(whole, first);
        painter.drawPolygon(star(QPointF(10, 7.3), 4.6));
        break;
    case Greece:
        for (int i = 0; i < 9; ++i) {
            painter.fillRect(QRectF(0, i * flagHeight / 9, flagWidth, flagHeight / 9),
                             i % 2 ? second : first);
        }
        painter.fillRect(QRectF(0, 0, 7.8, 7.8), first);
        painter.fillRect(QRectF(3.1, 0, 1.6, 7.8), second);
        painter.fillRect(QRectF(0, 3.1, 7.8, 1.6), second);
        break;
    case Thailand:
        painter.fillRect(whole, first);
        painter.fillRect(QRectF(0, 2.3, flagWidth, 9.4), second);
        painter.fillRect(QRectF(0, 4.6, flagWidth, 4.8), third);
        break;
    case Portugal:
        painter.fillRect(whole, second);
        painter.fillRect(QRectF(0, 0, 8, flagHeight), first);
        painter.setBrush(third);
        painter.drawEllipse(QPointF(8, 7), 3, 3);
        painter.setBrush(second);
        painter.drawRoundedRect(QRectF(6.7, 5.5, 2.6, 3.2), 1, 1);
        break;
    case Slovenia:
        fillBands(painter, flag, true);
        painter.setBrush(second);
        painter.setPen(QPen(third, 0.7));
        painter.drawPolygon(QPolygonF({{3.5, 2.2}, {7.5, 2.2}, {7.5, 6}, {5.5, 8}, {3.5, 6}}));
        painter.setPen(Qt::NoPen);
        painter.setBrush(first);
        painter.drawPolygon(QPolygonF({{4, 6}, {5.5, 3.6}, {7, 6}}));
        break;
    }
}

void paintFlag(QPainter &painter, const Art &art)
{
    QPainterPath clip;
    clip.addRoundedRect(QRectF(0, 0, flagWidth, flagHeight), 2, 2);
    painter.setClipPath(clip);
    paintFlagBody(painter, flags[art.variant]);
    painter.setPen(QPen(QColor(0, 0, 0, 70), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(0.5, 0.5, flagWidth - 1, flagHeight - 1), 1.5, 1.5);
}

} // namespace

void addTranslationArt(QVector<Art> &table)
{
    table.append({QStringLiteral("transbk.png"), windowWidth, closedHeight, paintWindow, Closed, {}});
    table.append(
        {QStringLiteral("transbk_set.png"), windowWidth, openHeight, paintWindow, VoiceSettings, {}});
    table.append({QStringLiteral("transbk_set_delimit.png"),
                  windowWidth,
                  openHeight,
                  paintWindow,
                  SelectionSettings,
                  {}});
    int index = 0;
    for (const Flag &flag : flags) {
        table.append({QStringLiteral("tans/%1.ico").arg(QLatin1String(flag.country)),
                      int(flagWidth),
                      int(flagHeight),
                      paintFlag,
                      index++,
                      {}});
    }
}

} // namespace mevo
