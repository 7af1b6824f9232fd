#pragma once

#include "platform/Notifications.h"

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>

namespace mevo {

/// Messages by the tray icon, or by the desktop's notification service where there is no tray, and in
/// the log in any case. Made on the GUI thread; may be asked from any.
class DesktopNotifications : public QObject, public Notifications
{
    Q_OBJECT

public:
    void attach(QSystemTrayIcon *icon) override { m_icon = icon; }
    bool trayAvailable() const override { return QSystemTrayIcon::isSystemTrayAvailable(); }
    void message(const QString &title, const QString &text, MessageIcon icon, int milliseconds) override;

private:
    void show(const QString &title, const QString &text, MessageIcon icon, int milliseconds);

    QPointer<QSystemTrayIcon> m_icon;
};

} // namespace mevo
