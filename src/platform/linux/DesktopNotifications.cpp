#include "platform/linux/DesktopNotifications.h"

#include "base/LogText.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDebug>
#include <QGuiApplication>
#include <QThread>
#include <QVariantMap>

namespace mevo {

namespace {

constexpr int NotifyTimeout = 5000; ///< milliseconds for the service to start and answer

struct IconRow
{
    MessageIcon icon;
    QSystemTrayIcon::MessageIcon tray;
    const char *themeName;
};
constexpr IconRow Icons[] = {
    {MessageIcon::None, QSystemTrayIcon::NoIcon, ""},
    {MessageIcon::Information, QSystemTrayIcon::Information, "dialog-information"},
    {MessageIcon::Warning, QSystemTrayIcon::Warning, "dialog-warning"},
    {MessageIcon::Critical, QSystemTrayIcon::Critical, "dialog-error"},
};

const IconRow &row(MessageIcon icon)
{
    for (const IconRow &candidate : Icons) {
        if (candidate.icon == icon) {
            return candidate;
        }
    }
    return Icons[0];
}

void writeToLog(const QString &text, const QString &reason)
{
    qInfo().noquote().nospace() << "Message: " << text << " (not shown: " << logText(reason) << ")";
}

} // namespace

DesktopNotifications::DesktopNotifications(const QDBusConnection &sessionBus)
    : m_sessionBus(sessionBus)
{
    m_clock.start();
}

bool DesktopNotifications::isGuiThread() const
{
    return QThread::currentThread() == m_context.thread();
}

void DesktopNotifications::attach(QSystemTrayIcon *icon)
{
    if (!isGuiThread()) {
        QMetaObject::invokeMethod(
            &m_context, [this, icon = QPointer<QSystemTrayIcon>(icon)] { attach(icon); },
            Qt::QueuedConnection);
        return;
    }
    m_icon = icon;
    trayAvailable();
}

bool DesktopNotifications::trayAvailable() const
{
    if (isGuiThread()) {
        m_trayAvailable = m_icon && QSystemTrayIcon::isSystemTrayAvailable();
    }
    return m_trayAvailable;
}

void DesktopNotifications::message(const QString &title, const QString &text, MessageIcon icon,
                                   int milliseconds)
{
    if (isGuiThread()) {
        show(title, text, icon, milliseconds);
        return;
    }
    QMetaObject::invokeMethod(
        &m_context, [=] { show(title, text, icon, milliseconds); }, Qt::QueuedConnection);
}

void DesktopNotifications::show(const QString &title, const QString &text, MessageIcon icon, int milliseconds)
{
    // An icon that is hidden for the moment shows nothing either.
    const bool tray = trayAvailable() && m_icon->isVisible() && QSystemTrayIcon::supportsMessages();
    if (!m_standing.take(title, text, icon, milliseconds, m_clock.elapsed(), tray)) {
        return;
    }
    if (tray) {
        m_icon->showMessage(title, text, row(icon).tray, milliseconds);
    } else {
        notify(title, text, icon, milliseconds);
    }
}

void DesktopNotifications::notify(const QString &title, const QString &text, MessageIcon icon,
                                  int milliseconds)
{
    if (!m_sessionBus.isConnected()) {
        m_standing.forget(title, text, icon);
        writeToLog(text, QStringLiteral("no session bus"));
        return;
    }
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/Notifications"), service, QStringLiteral("Notify"));
    const QString application = QCoreApplication::translate("Notifications", "灵犀听写");
    call << application << 0U << QString::fromLatin1(row(icon).themeName)
         << (title.isEmpty() ? application : title) // a notification needs a summary
         << text.toHtmlEscaped() << QStringList() << QVariantMap() << milliseconds;
    auto *watcher = new QDBusPendingCallWatcher(m_sessionBus.asyncCall(call, NotifyTimeout), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [this, title, text, icon](QDBusPendingCallWatcher *done) {
                         if (done->isError()) {
                             m_standing.forget(title, text, icon);
                             writeToLog(text, done->error().message());
                         }
                         done->deleteLater();
                     });
}

} // namespace mevo
