#pragma once

#include "keypad/KeyWords.h"
#include "keypad/KeypadState.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace mevo {
class OwnWindows;
}

namespace mevo::keypad {

class KeyButton;

/// The keyboard on the screen. What its keys do is `KeypadState`'s business; this draws it, and hands on what
/// is to be typed.
class KeypadWindow : public QWidget
{
    Q_OBJECT

public:
    /// What the window asks for.
    struct Hands
    {
        /// False when it cannot be typed: the key then counts as not pressed.
        std::function<bool(const std::vector<Stroke> &)> type;
        std::function<void()> hide;
        std::function<void(QPoint)> moved; ///< by the user, to this place
        std::function<void()> pressed;     ///< told after each key, may be null
    };

    /// `state` and `desktop` outlive it.
    KeypadWindow(KeypadState &state, OwnWindows &desktop, Hands hands);
    ~KeypadWindow() override;

    /// Draws what the state is now, after a change that did not come from a key of this window.
    void refresh();
    void setWords(const KeyWords &words);
    void setDark(bool dark);
    /// Says for some seconds that nothing could be typed.
    void tellFailure();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void makeKeys();
    void makeRow();
    /// Has the state take a press, and what it gives typed; or leaves the state as it was.
    void take(const std::function<std::vector<Stroke>()> &press);
    void refreshKey(std::size_t index);
    void refreshRow();
    void layRow();
    /// What the pinyin row says where it shows no characters.
    QString rowHint() const;

    KeypadState &m_state;
    Hands m_hands;
    KeyWords m_words;
    std::vector<KeyButton *> m_keys; ///< in the order of keyLayout()
    std::vector<KeyButton *> m_candidates;
    KeyButton *m_before = nullptr;
    KeyButton *m_after = nullptr;
    KeyButton *m_close = nullptr;
    QTimer *m_failure = nullptr; ///< runs while it is said
    const struct KeypadColours *m_colours;
    bool m_dragged = false;
    QPoint m_grip; ///< where the window is held while it is moved
};

} // namespace mevo::keypad
