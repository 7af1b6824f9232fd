#include "keypad/KeypadWindow.h"

#include "keypad/KeyButton.h"
#include "keypad/KeypadColours.h"
#include "ui/CompanionWindow.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

namespace mevo::keypad {

namespace {

constexpr int repeatDelayMs = 450;
constexpr int repeatEveryMs = 45;
constexpr int failureMs = 4000;
constexpr double keyTextShare = 0.44; ///< of a key's height
constexpr double rowTextShare = 0.58; ///< of the pinyin row's
constexpr double lettersShare = 0.19; ///< of the pinyin row's width
constexpr int padding = 8;

Glyph glyphOf(KeyKind kind)
{
    switch (kind) {
    case KeyKind::Backspace:
        return Glyph::Backspace;
    case KeyKind::Delete:
        return Glyph::Delete;
    case KeyKind::Tab:
        return Glyph::Tab;
    case KeyKind::Enter:
        return Glyph::Enter;
    case KeyKind::Left:
        return Glyph::Left;
    case KeyKind::Right:
        return Glyph::Right;
    case KeyKind::Up:
        return Glyph::Up;
    case KeyKind::Down:
        return Glyph::Down;
    case KeyKind::Shift:
        return Glyph::Shift;
    case KeyKind::CapsLock:
        return Glyph::CapsLock;
    case KeyKind::Character:
    case KeyKind::Pinyin:
        break;
    }
    return Glyph::None;
}

QString nameOf(KeyKind kind)
{
    switch (kind) {
    case KeyKind::Backspace:
        return KeypadWindow::tr("退格");
    case KeyKind::Delete:
        return KeypadWindow::tr("删除");
    case KeyKind::Tab:
        return KeypadWindow::tr("制表");
    case KeyKind::Enter:
        return KeypadWindow::tr("回车");
    case KeyKind::Left:
        return KeypadWindow::tr("向左");
    case KeyKind::Right:
        return KeypadWindow::tr("向右");
    case KeyKind::Up:
        return KeypadWindow::tr("向上");
    case KeyKind::Down:
        return KeypadWindow::tr("向下");
    case KeyKind::Shift:
        return KeypadWindow::tr("上档");
    case KeyKind::CapsLock:
        return KeypadWindow::tr("大写锁定");
    case KeyKind::Pinyin:
        return KeypadWindow::tr("拼音");
    case KeyKind::Character:
        break;
    }
    return {};
}

/// A text drawn by a letter's height, not by its line's.
QFont sized(QFont font, double pixels)
{
    font.setPixelSize(qMax(9, int(pixels)));
    return font;
}

} // namespace

KeypadWindow::KeypadWindow(KeypadState &state, OwnWindows &desktop, Hands hands)
    : QWidget(nullptr,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
    , m_state(state)
    , m_hands(std::move(hands))
    , m_failure(new QTimer(this))
    , m_colours(&keypadColours(false))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setWindowTitle(tr("屏幕键盘"));
    setAccessibleName(windowTitle());
    m_failure->setSingleShot(true);
    connect(m_failure, &QTimer::timeout, this, qOverload<>(&QWidget::update));
    makeKeys();
    makeRow();
    m_close = new KeyButton(KeyButton::Look::Flat, this);
    m_close->setGlyph(Glyph::Close);
    m_close->setAccessibleName(tr("隐藏键盘"));
    m_close->setToolTip(m_close->accessibleName());
    connect(m_close, &QAbstractButton::clicked, this, [this] { m_hands.hide(); });
    new CompanionWindow(this, desktop);
    refresh();
}

KeypadWindow::~KeypadWindow() = default;

void KeypadWindow::makeKeys()
{
    for (const Key &key : keyLayout()) {
        const bool types = key.kind == KeyKind::Character;
        auto *button = new KeyButton(types ? KeyButton::Look::Key : KeyButton::Look::CommandKey, this);
        button->setGlyph(glyphOf(key.kind));
        if (!types) {
            button->setAccessibleName(nameOf(key.kind));
            button->setToolTip(key.kind == KeyKind::Pinyin ? QString() : nameOf(key.kind));
        }
        button->setAutoRepeat(key.repeats());
        button->setAutoRepeatDelay(repeatDelayMs);
        button->setAutoRepeatInterval(repeatEveryMs);
        connect(button, &QAbstractButton::clicked, this,
                [this, &key] { take([this, &key] { return m_state.press(key); }); });
        m_keys.push_back(button);
    }
}

void KeypadWindow::makeRow()
{
    for (int i = 0; i < PinyinInput::pageSize; ++i) {
        auto *button = new KeyButton(KeyButton::Look::Flat, this);
        connect(button, &QAbstractButton::clicked, this,
                [this, i] { take([this, i] { return m_state.choose(i); }); });
        m_candidates.push_back(button);
    }
    const auto pager = [this](Glyph glyph, const QString &name, int step) {
        auto *button = new KeyButton(KeyButton::Look::Flat, this);
        button->setGlyph(glyph);
        button->setAccessibleName(name);
        button->setToolTip(name);
        connect(button, &QAbstractButton::clicked, this, [this, step] {
            m_state.pinyin().turnPage(step);
            refresh();
        });
        return button;
    };
    m_before = pager(Glyph::Left, tr("上一页"), -1);
    m_after = pager(Glyph::Right, tr("下一页"), 1);
}

void KeypadWindow::take(const std::function<std::vector<Stroke>()> &press)
{
    KeypadState before = m_state;
    const std::vector<Stroke> strokes = press();
    if (!strokes.empty() && !m_hands.type(strokes)) {
        m_state = std::move(before);
        tellFailure();
    }
    refresh();
    if (m_hands.pressed) {
        m_hands.pressed();
    }
}

void KeypadWindow::setWords(const KeyWords &words)
{
    m_words = words;
    refresh();
}

void KeypadWindow::setDark(bool dark)
{
    m_colours = &keypadColours(dark);
    for (KeyButton *button : findChildren<KeyButton *>()) {
        button->setColours(*m_colours);
    }
    update();
}

void KeypadWindow::tellFailure()
{
    m_failure->start(failureMs);
    update();
}

void KeypadWindow::refresh()
{
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        refreshKey(i);
    }
    refreshRow();
    update();
}

void KeypadWindow::refreshKey(std::size_t index)
{
    const Key &key = keyLayout()[index];
    KeyButton *button = m_keys[index];
    switch (key.kind) {
    case KeyKind::Shift:
        button->setActive(m_state.isShifted());
        return;
    case KeyKind::CapsLock:
        button->setActive(m_state.isCapsLocked());
        return;
    case KeyKind::Pinyin:
        button->setFace(nameOf(key.kind));
        button->setActive(m_state.isPinyin());
        return;
    case KeyKind::Character:
        break;
    default:
        return;
    }
    const QString text = m_state.textOf(key);
    if (text == QLatin1String(" ")) {
        button->setAccessibleName(tr("空格"));
        return;
    }
    button->setFace(text, key.isLetter() || m_state.isShifted() ? QString() : QString(key.shifted));
    button->setAccessibleName(text);
    const QStringList words = m_words.of(key.plain);
    const QString tip = words.isEmpty() ? QString() : tr("语音词：%1").arg(words.join(QStringLiteral("、")));
    button->setToolTip(tip);
    button->setAccessibleDescription(tip);
}

void KeypadWindow::refreshRow()
{
    const QStringList page = m_state.pinyin().page();
    for (int i = 0; i < int(m_candidates.size()); ++i) {
        KeyButton *button = m_candidates[std::size_t(i)];
        const QString text = page.value(i);
        button->setVisible(!text.isEmpty());
        button->setFace(QStringLiteral("%1 %2").arg(i + 1).arg(text));
        button->setAccessibleName(text);
        button->setToolTip(text.size() > 2 ? text : QString());
    }
    const bool pages = m_state.pinyin().hasPageBefore() || m_state.pinyin().hasPageAfter();
    m_before->setVisible(pages);
    m_after->setVisible(pages);
    m_before->setEnabled(m_state.pinyin().hasPageBefore());
    m_after->setEnabled(m_state.pinyin().hasPageAfter());
    layRow();
}

void KeypadWindow::resizeEvent(QResizeEvent *)
{
    const KeypadGeometry geometry = keypadGeometry(size());
    const std::vector<QRect> rects = keyRects(geometry.keys);
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        m_keys[i]->setGeometry(rects[i]);
        const bool words = keyLayout()[i].kind == KeyKind::Pinyin;
        m_keys[i]->setTextSize(int(rects[i].height() * (words ? keyTextShare * 0.85 : keyTextShare)));
    }
    m_close->setGeometry(geometry.close);
    m_close->setTextSize(int(geometry.close.height() * 0.6));
    layRow();
}

void KeypadWindow::layRow()
{
    const QRect row = keypadGeometry(size()).candidates;
    const int letters = int(row.width() * lettersShare);
    const int pager = row.height();
    const int room = row.width() - letters - 2 * pager;
    const int text = int(row.height() * rowTextShare);
    const QStringList page = m_state.pinyin().page();
    int taken = 0;
    for (int i = 0; i < int(m_candidates.size()); ++i) {
        const int left = row.left() + letters + room * taken / PinyinInput::pageWidth;
        taken += PinyinInput::widthOf(page.value(i));
        const int right = row.left() + letters + room * taken / PinyinInput::pageWidth;
        m_candidates[std::size_t(i)]->setGeometry(left, row.top(), right - left, row.height());
        m_candidates[std::size_t(i)]->setTextSize(text);
    }
    m_before->setGeometry(row.right() - 2 * pager + 1, row.top(), pager, row.height());
    m_after->setGeometry(row.right() - pager + 1, row.top(), pager, row.height());
    m_before->setTextSize(text);
    m_after->setTextSize(text);
}

QString KeypadWindow::rowHint() const
{
    if (m_failure->isActive()) {
        return tr("没有能输入文字的窗口");
    }
    if (!m_state.isPinyin()) {
        return tr("按“拼音”键输入汉字");
    }
    if (!m_state.pinyin().hasTable()) {
        return tr("拼音表是空的，请在命令词设置中添加");
    }
    if (!m_state.pinyin().isActive()) {
        return tr("请输入拼音");
    }
    return m_state.pinyin().page().isEmpty() ? tr("没有这个读音的字") : QString();
}

void KeypadWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), m_colours->background);
    painter.setPen(QPen(m_colours->border, 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));

    const KeypadGeometry geometry = keypadGeometry(size());
    painter.setPen(m_colours->faint);
    painter.setFont(sized(font(), geometry.strip.height() * 0.46));
    painter.drawText(geometry.strip.adjusted(padding + 4, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     windowTitle());

    QRect letters = geometry.candidates;
    const QString hint = rowHint();
    if (m_state.pinyin().isActive()) {
        letters.setWidth(int(letters.width() * lettersShare));
        painter.setPen(m_colours->text);
        painter.setFont(sized(font(), letters.height() * rowTextShare * 0.9));
        const QRect inner = letters.adjusted(padding, 0, -4, 0);
        painter.drawText(
            inner, Qt::AlignVCenter | Qt::AlignLeft,
            painter.fontMetrics().elidedText(m_state.pinyin().letters(), Qt::ElideLeft, inner.width()));
    }
    if (!hint.isEmpty()) {
        const int left = m_state.pinyin().isActive() ? letters.right() : letters.left();
        QRect place = geometry.candidates;
        place.setLeft(left + padding);
        painter.setPen(m_failure->isActive() ? m_colours->text : m_colours->faint);
        painter.setFont(sized(font(), place.height() * 0.44));
        painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft, hint);
    }
}

void KeypadWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_dragged = true;
        m_grip = event->globalPos() - pos();
    }
}

void KeypadWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragged && (event->buttons() & Qt::LeftButton) != 0) {
        move(event->globalPos() - m_grip);
    }
}

void KeypadWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_dragged && event->button() == Qt::LeftButton) {
        m_dragged = false;
        m_hands.moved(pos());
    }
}

void KeypadWindow::closeEvent(QCloseEvent *event)
{
    event->ignore(); // the next wish to show it comes to this process
    m_hands.hide();
}

} // namespace mevo::keypad
