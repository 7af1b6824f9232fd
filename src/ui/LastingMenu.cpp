#include "ui/LastingMenu.h"

#include <QAction>
#include <QEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QTimer>

namespace mevo {

namespace {
constexpr int noticedMs = 500;
} // namespace

LastingMenu::LastingMenu(QMenu *menu)
    : QObject(menu)
    , m_menu(menu)
{
    menu->installEventFilter(this);
}

bool LastingMenu::eventFilter(QObject *watched, QEvent *event)
{
    const bool active = QGuiApplication::applicationState() == Qt::ApplicationActive;
    if (event->type() == QEvent::Show) {
        m_inDanger = active;
        m_open.start();
    } else if (event->type() == QEvent::Hide && m_inDanger && !active && !m_open.hasExpired(noticedMs)) {
        m_inDanger = false;
        QTimer::singleShot(
            0, m_menu,
            [menu = m_menu, place = m_menu->pos(), row = QPointer<QAction>(m_menu->activeAction())] {
                menu->popup(place);
                menu->setActiveAction(row);
            });
    }
    return QObject::eventFilter(watched, event);
}

} // namespace mevo
