#pragma once

#include "platform/Notifications.h"
#include "platform/linux/StandingMessages.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>

#include <atomic>

namespace mevo {

/// Messages from the tray icon where it is shown in a tray; else as desktop notifications; where those
/// fail too, as lines of the log. One that still stands is not shown once more. Nothing of it waits. To be
/// made on the GUI thread; calls from other threads are carried out there.
class DesktopNotifications : public Notifications
{
public:
    explicit DesktopNotifications(const QDBusConnection &sessionBus = QDBusConnection::sessionBus());

    void attach(QSystemTrayIcon *icon) override;
    /// From another thread than the GUI's, what was true at the last call there.
    bool trayAvailable() const override;
    void message(const QString &title, const QString &text, MessageIcon icon, int milliseconds) override;

private:
    bool isGuiThread() const;
    void show(const QString &title, const QString &text, MessageIcon icon, int milliseconds);
    void notify(const QString &title, const QString &text, MessageIcon icon, int milliseconds);

    QObject m_context; ///< lives on the GUI thread; calls that wait for that thread end with it
    QDBusConnection m_sessionBus;
    QPointer<QSystemTrayIcon> m_icon;
    mutable std::atomic<bool> m_trayAvailable{false};
    StandingMessages m_standing;
    QElapsedTimer m_clock;
};

} // namespace mevo
