#include "platform/linux/DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDebug>
#include <QThread>

namespace mevo {

void DesktopNotifications::message(const QString &title, const QString &text, MessageIcon icon,
                                   int milliseconds)
{
    QMetaObject::invokeMethod(
        this, [=] { show(title, text, icon, milliseconds); },
        QThread::currentThread() == thread() ? Qt::DirectConnection : Qt::QueuedConnection);
}

void DesktopNotifications::show(const QString &title, const QString &text, MessageIcon icon, int milliseconds)
{
    qInfo().noquote() << "Message:" << text;
    if (!m_icon.isNull() && trayAvailable()) {
        static constexpr QSystemTrayIcon::MessageIcon icons[] = {
            QSystemTrayIcon::NoIcon, QSystemTrayIcon::Information, QSystemTrayIcon::Warning,
            QSystemTrayIcon::Critical};
        m_icon->showMessage(title, text, icons[static_cast<int>(icon)], milliseconds);
        return;
    }
    static constexpr const char *icons[] = {"", "dialog-information", "dialog-warning", "dialog-error"};
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    call << tr("灵犀听写") << 0U << QString::fromLatin1(icons[static_cast<int>(icon)])
         << (title.isEmpty() ? tr("灵犀听写") : title) << text << QStringList() << QVariantMap()
         << qMax(milliseconds, 1000);
    QDBusConnection::sessionBus().send(call);
}

} // namespace mevo
