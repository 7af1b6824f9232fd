#include "keypad/KeyButton.h"

#include <QPainter>

namespace mevo::keypad {

namespace {

constexpr double radius = 5;
constexpr int edgeHeight = 2;
constexpr int cornerMargin = 5;
constexpr double cornerShare = 0.68; ///< of the text's size
constexpr double glyphShare = 1.05;  ///< likewise

} // namespace

KeyButton::KeyButton(Look look, QWidget *parent)
    : QAbstractButton(parent)
    , m_look(look)
    , m_colours(&keypadColours(false))
{
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void KeyButton::setFace(const QString &text, const QString &corner)
{
    if (text != this->text() || corner != m_corner) {
        QString shown = text;
        setText(shown.replace(QLatin1Char('&'), QLatin1String("&&"))); // no shortcut is meant
        m_corner = corner;
        update();
    }
}

void KeyButton::setTextSize(int pixels)
{
    m_textSize = pixels;
    update();
}

void KeyButton::setColours(const KeypadColours &colours)
{
    m_colours = &colours;
    update();
}

void KeyButton::setActive(bool active)
{
    if (active != m_active) {
        m_active = active;
        update();
    }
}

QColor KeyButton::fill() const
{
    if (isDown()) {
        return m_colours->pressed;
    }
    if (m_active) {
        return m_colours->active;
    }
    if (isEnabled() && underMouse()) {
        return m_colours->hover;
    }
    switch (m_look) {
    case Look::Key:
        return m_colours->key;
    case Look::CommandKey:
        return m_colours->commandKey;
    case Look::Flat:
        break;
    }
    return Qt::transparent;
}

void KeyButton::hideEvent(QHideEvent *event)
{
    setDown(false); // which ends its repeating
    QAbstractButton::hideEvent(event);
}

void KeyButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QRectF face = rect();
    if (m_look != Look::Flat) {
        painter.setBrush(m_colours->edge);
        painter.drawRoundedRect(face, radius, radius);
        // A pressed key goes down into its edge.
        face.adjust(0, isDown() ? 1 : 0, 0, isDown() ? 0 : -edgeHeight);
    }
    painter.setBrush(fill());
    painter.drawRoundedRect(face, radius, radius);

    const bool lit = m_active && !isDown();
    const QColor ink = !isEnabled() ? m_colours->border : lit ? m_colours->activeText : m_colours->text;
    if (m_glyph != Glyph::None) {
        const double size = m_textSize * glyphShare;
        const QRectF box(face.center().x() - size / 2, face.center().y() - size / 2, size, size);
        QPen pen(ink, qMax(1.3, m_textSize / 11.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(glyphPath(m_glyph, box));
        return;
    }
    QFont letters = font();
    letters.setPixelSize(m_textSize);
    painter.setFont(letters);
    painter.setPen(ink);
    const QRectF inner = face.adjusted(2, 0, -2, 0);
    QString shown = text();
    shown.replace(QLatin1String("&&"), QLatin1String("&"));
    painter.drawText(inner, Qt::AlignCenter,
                     painter.fontMetrics().elidedText(shown, Qt::ElideRight, int(inner.width())));
    if (!m_corner.isEmpty()) {
        letters.setPixelSize(qMax(8, int(m_textSize * cornerShare)));
        painter.setFont(letters);
        painter.setPen(lit ? m_colours->activeText : m_colours->faint);
        painter.drawText(face.adjusted(cornerMargin, 2, -cornerMargin, 0), Qt::AlignTop | Qt::AlignRight,
                         m_corner);
    }
}

} // namespace mevo::keypad
