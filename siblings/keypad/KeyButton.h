#pragma once

#include "keypad/KeyGlyph.h"
#include "keypad/KeypadColours.h"

#include <QAbstractButton>

namespace mevo::keypad {

/// One key, or a character to choose: painted by itself, and never given the focus.
class KeyButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Look { Key, CommandKey, Flat };

    KeyButton(Look look, QWidget *parent);

    /// What stands on it, a text or a picture, and a smaller second sign in its corner.
    void setFace(const QString &text, const QString &corner = QString());
    void setGlyph(Glyph glyph) { m_glyph = glyph; }
    /// Height of the text's letters in device-independent pixels.
    void setTextSize(int pixels);
    void setColours(const KeypadColours &colours);
    /// A key that is switched on, such as Shift.
    void setActive(bool active);
    bool isActive() const { return m_active; }
    QString corner() const { return m_corner; }

protected:
    void paintEvent(QPaintEvent *event) override;
    /// A key that is held down when it goes is let go: its release will not come.
    void hideEvent(QHideEvent *event) override;

private:
    QColor fill() const;

    Look m_look;
    Glyph m_glyph = Glyph::None;
    QString m_corner;
    int m_textSize = 16;
    bool m_active = false;
    const KeypadColours *m_colours;
};

} // namespace mevo::keypad
