#include "ui/CompanionWindow.h"

#include "platform/OwnWindows.h"
#include "ui/OpaqueShape.h"
#include "ui/PlaceKeeping.h"

#include <QEvent>
#include <QPixmap>
#include <QScopedValueRollback>

namespace mevo {

namespace {
constexpr int settleMs[] = {40, 160, 800}; ///< from one look after a showing to the next
constexpr int mostMoves = 4;               ///< a window manager that insists on another place gets its way
} // namespace

CompanionWindow::CompanionWindow(QWidget *window, OwnWindows &desktop)
    : QObject(window)
    , m_window(window)
    , m_desktop(desktop)
{
    m_settle.setSingleShot(true);
    m_settle.callOnTimeout(this, [this] {
        checkPlace();
        m_desktop.keepOutOfLists(m_window->winId()); // a late answer to the last hiding may have cleared it
        m_settling = ++m_checks < int(std::size(settleMs));
        if (m_settling) {
            m_settle.start(settleMs[m_checks]);
        }
    });
    m_shapeSoon.setSingleShot(true);
    m_shapeSoon.callOnTimeout(this, &CompanionWindow::shape);
    desktop.whenCompositingChanges(this, [this] { shape(); });
    window->installEventFilter(this);
    if (window->isVisible()) {
        aboutToShow();
    }
}

bool CompanionWindow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (!event->spontaneous()) {
            aboutToShow();
        }
        break;
    case QEvent::Hide:
        m_settle.stop();
        m_settling = false;
        break;
    case QEvent::Move:
        if (!event->spontaneous()) {
            m_wanted = m_window->geometry().topLeft();
            m_placed = true;
        } else if (m_window->isVisible()) {
            QMetaObject::invokeMethod(this, &CompanionWindow::checkPlace, Qt::QueuedConnection);
        }
        break;
    case QEvent::Enter:
    case QEvent::MouseButtonPress:
        checkPlace(); // menus and tips are placed by what the toolkit believes
        break;
    case QEvent::Paint:
        if (!m_painting && !m_desktop.isComposited()) {
            m_shapeSoon.start(0);
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void CompanionWindow::aboutToShow()
{
    const WindowId window = m_window->winId();
    m_desktop.neverTakeFocus(window);
    m_desktop.keepOutOfLists(window);
    if (m_placed && m_window->geometry().topLeft() != m_wanted) {
        m_window->move(m_wanted); // where it stood before it was hidden is the user's, not a frame's, doing
    }
    m_wanted = m_window->geometry().topLeft();
    m_placed = true;
    m_checks = 0;
    m_moves = 0;
    m_settling = true;
    m_settle.start(settleMs[0]);
    m_shape.clear(); // the window may be a new one
    shape();
}

void CompanionWindow::checkPlace()
{
    const WindowId window = m_window->internalWinId();
    if (!m_window->isVisible() || window == 0) {
        return;
    }
    const std::optional<QPoint> real = m_desktop.place(window);
    if (!real) {
        return;
    }
    const QPoint believed = m_window->geometry().topLeft();
    switch (placeStep(m_wanted, believed, *real, m_settling)) {
    case PlaceStep::Nothing:
        break;
    case PlaceStep::Move:
        if (++m_moves > mostMoves) {
            break;
        }
        m_window->setGeometry(QRect(m_wanted, m_window->size()));
        m_desktop.moveTo(window, m_wanted); // the toolkit asks for nothing when it believes to be there
        break;
    case PlaceStep::Believe:
        m_window->setGeometry(QRect(m_wanted, m_window->size()));
        break;
    case PlaceStep::Adopt:
        m_wanted = *real;
        if (believed != *real) {
            m_window->setGeometry(QRect(*real, m_window->size()));
        }
        break;
    }
}

void CompanionWindow::shape()
{
    std::vector<QRect> wanted;
    if (!m_desktop.isComposited() && m_window->testAttribute(Qt::WA_TranslucentBackground)) {
        const QScopedValueRollback<bool> painting(m_painting, true);
        wanted = opaqueShape(m_window->grab().toImage());
    }
    if (wanted != m_shape) {
        m_shape = wanted;
        m_desktop.setShape(m_window->winId(), m_shape);
    }
}

} // namespace mevo
