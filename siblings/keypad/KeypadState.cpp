#include "keypad/KeypadState.h"

#include "platform/Keyboard.h"

#include <utility>

namespace mevo::keypad {

namespace {

/// As keyboards for Chinese have them. Quotation marks are left as they are: which one it is depends on the
/// text before.
QString chineseSign(QChar sign)
{
    static constexpr std::pair<char16_t, const char16_t *> signs[] = {
        {u',', u"\uff0c"},  {u'.', u"\u3002"},       {u'?', u"\uff1f"}, {u'!', u"\uff01"},
        {u':', u"\uff1a"},  {u';', u"\uff1b"},       {u'(', u"\uff08"}, {u')', u"\uff09"},
        {u'\\', u"\u3001"}, {u'^', u"\u2026\u2026"}, {u'<', u"\u300a"}, {u'>', u"\u300b"},
        {u'[', u"\u3010"},  {u']', u"\u3011"},       {u'$', u"\uffe5"}, {u'_', u"\u2014\u2014"},
    };
    for (const auto &[plain, chinese] : signs) {
        if (sign == QChar(plain)) {
            return QString::fromUtf16(chinese);
        }
    }
    return sign;
}

int virtualKeyOf(KeyKind kind)
{
    switch (kind) {
    case KeyKind::Backspace:
        return VkBack;
    case KeyKind::Delete:
        return VkDelete;
    case KeyKind::Tab:
        return VkTab;
    case KeyKind::Enter:
        return VkReturn;
    case KeyKind::Left:
        return VkLeft;
    case KeyKind::Right:
        return VkRight;
    case KeyKind::Up:
        return VkUp;
    case KeyKind::Down:
        return VkDown;
    default:
        return 0;
    }
}

std::vector<Stroke> typed(const QString &text)
{
    return text.isEmpty() ? std::vector<Stroke>() : std::vector<Stroke>{{text, 0, false}};
}

} // namespace

QString KeypadState::textOf(const Key &key) const
{
    if (key.isLetter()) {
        return isCapital() ? key.shifted : key.plain;
    }
    const QChar sign = m_shift ? key.shifted : key.plain;
    return m_pinyinOn ? chineseSign(sign) : QString(sign);
}

QString KeypadState::takeLetters()
{
    const QString letters = m_pinyin.letters();
    m_pinyin.clear();
    return letters;
}

QString KeypadState::takeFirst()
{
    QString text = m_pinyin.choose(0);
    return text + takeLetters(); // those that it does not stand for are not lost
}

std::vector<Stroke> KeypadState::choose(int index)
{
    return typed(m_pinyin.choose(index));
}

std::vector<Stroke> KeypadState::leave()
{
    return typed(takeLetters());
}

std::vector<Stroke> KeypadState::press(const Key &key)
{
    switch (key.kind) {
    case KeyKind::Shift:
        m_shift = !m_shift;
        return {};
    case KeyKind::CapsLock:
        m_capsLock = !m_capsLock;
        return {};
    case KeyKind::Pinyin:
        m_pinyinOn = !m_pinyinOn;
        return typed(takeLetters());
    default:
        break;
    }
    std::vector<Stroke> strokes = m_pinyin.isActive() ? pressWhileComposing(key) : pressCharacter(key);
    m_shift = false;
    return strokes;
}

std::vector<Stroke> KeypadState::pressCharacter(const Key &key)
{
    if (key.kind != KeyKind::Character) {
        return {{QString(), virtualKeyOf(key.kind), m_shift}};
    }
    if (key.isLetter() && composes()) {
        m_pinyin.addLetter(key.plain);
        return {};
    }
    return typed(textOf(key));
}

std::vector<Stroke> KeypadState::pressWhileComposing(const Key &key)
{
    switch (key.kind) {
    case KeyKind::Character:
        break;
    case KeyKind::Backspace:
        m_pinyin.removeLetter();
        return {};
    case KeyKind::Delete:
        m_pinyin.clear();
        return {};
    case KeyKind::Left:
    case KeyKind::Up:
        m_pinyin.turnPage(-1);
        return {};
    case KeyKind::Right:
    case KeyKind::Down:
        m_pinyin.turnPage(1);
        return {};
    default: // Enter and Tab
        return typed(takeLetters());
    }
    if (key.isLetter()) {
        if (composes()) {
            m_pinyin.addLetter(key.plain);
            return {};
        }
        const QString letters = takeLetters();
        return typed(letters + textOf(key));
    }
    if (key.plain == QLatin1Char(' ')) {
        return typed(m_pinyin.page().isEmpty() ? takeLetters() : m_pinyin.choose(0));
    }
    const bool chooses = !m_shift && key.plain >= QLatin1Char('1') && key.plain <= QLatin1Char('9');
    if (chooses) {
        return choose(key.plain.unicode() - '1');
    }
    if (!m_shift && (key.plain == QLatin1Char('-') || key.plain == QLatin1Char('='))) {
        m_pinyin.turnPage(key.plain == QLatin1Char('-') ? -1 : 1);
        return {};
    }
    const QString text = takeFirst();
    return typed(text + textOf(key));
}

} // namespace mevo::keypad
