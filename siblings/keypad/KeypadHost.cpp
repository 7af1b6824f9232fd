#include "keypad/KeypadHost.h"

#include "base/ApplicationFiles.h"
#include "keypad/KeypadWindow.h"
#include "platform/OwnWindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

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

KeypadHost::KeypadHost(WindowSystem &windows, Keyboard &keyboard, OwnWindows &desktop)
    : m_desktop(desktop)
    , m_typer(windows, keyboard,
              [this](bool gone) {
                  if (!gone && m_window) {
                      m_window->tellFailure();
                  }
              })
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
    watchScreens();
}

KeypadHost::~KeypadHost() = default;

bool KeypadHost::isShown() const
{
    return m_window && m_window->isVisible();
}

void KeypadHost::carryOut(Wish wish)
{
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
        QCoreApplication::quit();
        break;
    }
}

void KeypadHost::show()
{
    if (!m_window) {
        KeypadWindow::Hands hands;
        hands.type = [this](const std::vector<Stroke> &strokes) { m_typer.type(strokes); };
        hands.hide = [this] { hide(); };
        hands.moved = [this](QPoint to) { m_memory.save(to); };
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
    }
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

void KeypadHost::watchScreens()
{
    auto *soon = new QTimer(this); // several signals come for one change
    soon->setSingleShot(true);
    soon->setInterval(200);
    connect(soon, &QTimer::timeout, this, [this] {
        if (isShown() && QGuiApplication::primaryScreen() != nullptr) {
            place();
        }
    });
    const auto watch = [soon](QScreen *screen) {
        connect(screen, &QScreen::availableGeometryChanged, soon, [soon] { soon->start(); });
    };
    for (QScreen *screen : QGuiApplication::screens()) {
        watch(screen);
    }
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    connect(application, &QGuiApplication::screenAdded, this, [soon, watch](QScreen *screen) {
        watch(screen);
        soon->start();
    });
    connect(application, &QGuiApplication::screenRemoved, soon, [soon] { soon->start(); });
}

} // namespace mevo::keypad
