#include "Brushwork.h"

#include <QFontMetricsF>
#include <QSvgRenderer>

namespace mevo {

namespace {

QString &family()
{
    static QString name;
    return name;
}

QSvgRenderer &mark()
{
    static QSvgRenderer renderer;
    return renderer;
}

} // namespace

QColor faded(const QColor &color, qreal opacity)
{
    QColor result = color;
    result.setAlphaF(opacity);
    return result;
}

QPen stroke(const QColor &color, qreal width)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void setArtFamily(const QString &name)
{
    family() = name;
}

QFont artFont(qreal pixelSize)
{
    QFont font(family());
    font.setPixelSize(qRound(pixelSize));
    font.setStyleStrategy(QFont::PreferAntialias);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

bool setMark(const QString &svgFile)
{
    return mark().load(svgFile);
}

void paintMark(QPainter &painter, const QRectF &place)
{
    mark().render(&painter, place);
}

void paintMicrophone(QPainter &painter, const QPointF &centre, qreal height, const QColor &color,
                     qreal strokeWidth, bool filled)
{
    const qreal unit = height / 20;
    const qreal half = strokeWidth / 2;
    const qreal top = centre.y() - height / 2;
    const qreal bottom = centre.y() + height / 2 - half;
    const qreal capsuleWidth = 7 * unit;
    const QRectF capsule(centre.x() - capsuleWidth / 2, top, capsuleWidth, 11.5 * unit);
    const qreal radius = 6 * unit;
    const qreal cradleY = top + 8.5 * unit;

    painter.save();
    if (filled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(capsule, capsuleWidth / 2, capsuleWidth / 2);
    } else {
        painter.setPen(stroke(color, strokeWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(capsule.adjusted(half, half, -half, -half), capsuleWidth / 2 - half,
                                capsuleWidth / 2 - half);
    }
    painter.setPen(stroke(color, strokeWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(QRectF(centre.x() - radius, cradleY - radius, 2 * radius, 2 * radius), 180 * 16,
                    180 * 16);
    painter.drawLine(QPointF(centre.x(), cradleY + radius), QPointF(centre.x(), bottom));
    painter.drawLine(QPointF(centre.x() - 3.2 * unit, bottom), QPointF(centre.x() + 3.2 * unit, bottom));
    painter.restore();
}

void paintGround(QPainter &painter, const QRectF &place, qreal radius, qreal opacity)
{
    QLinearGradient light(place.topLeft(), place.bottomLeft());
    light.setColorAt(0, faded(palette::dusk, opacity));
    light.setColorAt(1, faded(palette::night, opacity));
    QLinearGradient rim(place.topLeft(), place.bottomLeft());
    rim.setColorAt(0, faded(palette::white, 0.34));
    rim.setColorAt(0.5, faded(palette::white, 0.14));
    rim.setColorAt(1, faded(palette::teal, 0.45));

    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawRoundedRect(place, radius, radius);
    painter.setPen(QPen(rim, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

void paintCentred(QPainter &painter, const QRectF &place, const QString &text, qreal pixelSize)
{
    const QFont font = artFont(pixelSize);
    const QFontMetricsF metrics(font);
    // Chinese characters fill their em square, whose middle stands 0.38 em above the baseline. Going by it,
    // and not by each character's ink, keeps the characters of a column evenly apart.
    const QPointF origin(place.center().x() - metrics.horizontalAdvance(text) / 2,
                         place.center().y() + 0.38 * pixelSize);
    painter.setFont(font);
    painter.drawText(QPointF(origin.x(), qRound(origin.y())), text);
}

} // namespace mevo
