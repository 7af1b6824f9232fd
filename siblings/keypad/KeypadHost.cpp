#include "keypad/KeypadHost.h"

#include "base/ApplicationFiles.h"
#include "keypad/KeypadWindow.h"
#include "platform/OwnWindows.h"
#include "ui/ScreenWatch.h"

#include <QGuiApplication>
#include <QScreen>

namespace mevo::keypad {

namespace {

std::vector<QRect> freeAreas()
{
    std::vector<QRect> areas;
    const QScreen *first = QGuiApplication::primaryScreen();
    if (first != nullptr) {
        areas.push_back(first->availableGeometry());
    }
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen != first) {
            areas.push_back(screen->availableGeometry());
        }
    }
    return areas;
}

} // namespace

KeypadHost::KeypadHost(WindowSystem &windows, Keyboard &keyboard, OwnWindows &desktop,
                       KeypadExit::Limits limits)
    : m_desktop(desktop)
    , m_typer(windows, keyboard,
              [this](bool gone) {
                  if (!gone && m_window) {
                      m_window->tellFailure();
                  }
                  m_exit.look();
              })
    , m_exit(exitHooks(), limits)
    , m_memory(appFile(QStringLiteral("MEVKeypad.ini")))
    , m_theme([this] {
        if (m_window) {
            m_window->setDark(m_theme.isDark());
        }
    })
    , m_tables([this](const KeypadTables::Content &content) {
        m_state.pinyin().setTable(content.pinyin);
        m_words = content.words;
        if (m_window) {
            m_window->setWords(m_words);
        }
    })
{
    watchScreens(this, [this] {
        if (isShown() && QGuiApplication::primaryScreen() != nullptr) {
            place();
        }
    });
}

KeypadHost::~KeypadHost() = default;

bool KeypadHost::isShown() const
{
    return m_window && m_window->isVisible();
}

bool KeypadHost::isComposing() const
{
    return isShown() && m_state.pinyin().isActive();
}

KeypadExit::Hooks KeypadHost::exitHooks()
{
    KeypadExit::Hooks hooks;
    hooks.isComposing = [this] { return isComposing(); };
    hooks.isTyping = [this] { return !m_typer.isIdle(); };
    hooks.endComposition = [this] { typeSyllable(); };
    hooks.close = [this] { takeDown(); };
    hooks.end = [this] { end(); };
    return hooks;
}

void KeypadHost::carryOut(Wish wish)
{
    if (m_exit.hasBegun()) {
        // Whoever replaces a keyboard wishes the new one hidden soon after: that is none of the user's doing.
        if (wish == Wish::ShowOrHide) {
            hide();
        }
        return;
    }
    switch (effectOf(wish, isShown())) {
    case Effect::Nothing:
        break;
    case Effect::Show:
        show();
        break;
    case Effect::Hide:
        hide();
        break;
    case Effect::End:
        m_exit.ask();
        break;
    }
}

void KeypadHost::show()
{
    if (!m_window) {
        KeypadWindow::Hands hands;
        hands.type = [this](const std::vector<Stroke> &strokes) { return m_typer.type(strokes); };
        hands.hide = [this] { hide(); };
        hands.moved = [this](QPoint to) { m_memory.save(to); };
        hands.pressed = [this] { m_exit.look(); };
        m_window = std::make_unique<KeypadWindow>(m_state, m_desktop, std::move(hands));
        m_window->setWords(m_words);
        m_window->setDark(m_theme.isDark());
    }
    place();
    m_window->show();
    m_window->raise();
}

void KeypadHost::hide()
{
    if (isShown()) {
        m_window->hide();
        m_exit.look();
    }
}

void KeypadHost::typeSyllable()
{
    const KeypadState before = m_state;
    if (!m_typer.type(m_state.leave())) {
        m_state = before; // takeDown() tells of it
    }
}

void KeypadHost::takeDown()
{
    if (m_state.pinyin().isActive()) {
        qWarning("Keypad: ends with a syllable of %d letters that was not chosen from",
                 int(m_state.pinyin().letters().size()));
    }
    if (isShown()) {
        m_window->hide();
    }
    Q_EMIT closed();
}

void KeypadHost::end()
{
    if (!m_typer.isIdle()) {
        qWarning("Keypad: ends while a text is on its way; dropped behind it: %d", m_typer.waiting());
    }
    Q_EMIT ended();
}

void KeypadHost::place()
{
    const std::optional<QPoint> kept = m_memory.load();
    const std::vector<QRect> areas = freeAreas();
    const QScreen *screen = kept ? QGuiApplication::screenAt(*kept) : nullptr;
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    const QSize size = keypadSize(screen != nullptr ? screen->availableSize() : QSize(1280, 720));
    m_window->setFixedSize(size);
    m_window->move(keypadPlace(kept, size, areas));
}

} // namespace mevo::keypad
