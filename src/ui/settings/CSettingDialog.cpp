#include "ui/settings/CSettingDialog.h"
#include "ui/settings/SettingAccounts.h"

#include "state/MainState.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLayout>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShowEvent>
#include <QTabWidget>

namespace {

constexpr int watchMs = 1000;
const QSize usualSize(780, 660);
constexpr int frameAllowance = 48; ///< about, for the frame that the window manager adds

} // namespace

CSettingDialog::CSettingDialog(MainState &state, mevo::SettingsHost &host, QWidget *parent)
    : QDialog(parent)
    , m_state(state)
    , m_host(host)
    , m_pages(new QTabWidget(this))
{
    const QScopedValueRollback<bool> filling(m_filling, true);
    build();
    m_watch.setInterval(watchMs);
    connect(&m_watch, &QTimer::timeout, this, [this] {
        const QScopedValueRollback<bool> refilling(m_filling, true);
        showBattery();
        if (m_deviceShown != m_state.deviceOpen()) {
            fillHardware();
        }
    });
    updateUI();
}

CSettingDialog::~CSettingDialog()
{
    if (!m_retired) { // else all has been stored, and those that it is stored with may have gone
        storeEdits();
    }
    // A line that is deleted with the keyboard in it says that it has been edited, to a dialog that is gone.
    for (QObject *child : findChildren<QObject *>()) {
        child->disconnect(this);
    }
}

void CSettingDialog::present(const QWidget *nearTo)
{
    if (!m_placed) {
        m_placed = true;
        const QScreen *screen = nearTo != nullptr ? nearTo->screen() : QGuiApplication::primaryScreen();
        const QRect room = screen->availableGeometry();
        resize(usualSize.boundedTo(room.size() - QSize(frameAllowance / 2, frameAllowance)));
        move(room.center() - rect().center());
    }
    showNormal();
    raise();
    activateWindow();
}

void CSettingDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (event->spontaneous()) {
        return;
    }
    m_methodWanted = false;
    fillMicrophones();
    updateUI();
    m_accounts->open();
    m_watch.start();
    watchMicrophone(true);
    m_host.checkForUpdate(mevo::SettingsHost::UpdateWish::Opened);
}

void CSettingDialog::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (event->spontaneous()) {
        return; // minimised
    }
    m_watch.stop();
    watchMicrophone(false);
    storeEdits();
    m_accounts->close();
}

void CSettingDialog::turnTo(const char *name)
{
    QWidget *box = m_groups.value(QLatin1String(name), nullptr);
    if (box == nullptr) {
        box = m_controls.value(QLatin1String(name));
    }
    for (int page = 0; page < m_pages->count(); ++page) {
        auto *area = static_cast<QScrollArea *>(m_pages->widget(page));
        if (!area->isAncestorOf(box)) {
            continue;
        }
        m_pages->setCurrentIndex(page);
        area->widget()->layout()->activate(); // the page may never have been shown
        area->verticalScrollBar()->setValue(box->mapTo(area->widget(), QPoint()).y());
        const QList<QWidget *> inside = QList<QWidget *>{box} + box->findChildren<QWidget *>();
        for (QWidget *widget : inside) {
            if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() && !widget->isHidden()) {
                widget->setFocus();
                return;
            }
        }
    }
}

bool CSettingDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel && qobject_cast<QComboBox *>(watched) != nullptr) {
        event->ignore();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void CSettingDialog::retire()
{
    const QList<QDialog *> children = findChildren<QDialog *>();
    for (QDialog *child : children) {
        child->reject();
    }
    storeEdits();
    hide();
    m_retired = true;
    if (m_slots == 0) {
        deleteLater();
    }
}
