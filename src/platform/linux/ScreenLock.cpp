#include "platform/linux/ScreenLock.h"

namespace mevo {

namespace {

// KDE, light-locker and others; GNOME; MATE; Cinnamon; Xfce.
const char *const screenSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                    "org.mate.ScreenSaver", "org.cinnamon.ScreenSaver",
                                    "org.xfce.ScreenSaver"};

} // namespace

ScreenLock::ScreenLock(const QDBusConnection &sessionBus)
{
    QDBusConnection bus(sessionBus);
    if (!bus.isConnected()) {
        return;
    }
    for (const char *interface : screenSavers) {
        bus.connect({}, {}, QLatin1String(interface), QStringLiteral("ActiveChanged"), this,
                    SLOT(activeChanged(bool, QDBusMessage)));
    }
    m_watcher.setConnection(bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString &screenSaver) { setActive(screenSaver, false); });
}

void ScreenLock::activeChanged(bool active, const QDBusMessage &signal)
{
    setActive(signal.service(), active);
}

void ScreenLock::setActive(const QString &screenSaver, bool active)
{
    // A screen saver that has crashed says no more that it is off.
    if (active) {
        m_active.insert(screenSaver);
        m_watcher.addWatchedService(screenSaver);
    } else {
        m_active.remove(screenSaver);
        m_watcher.removeWatchedService(screenSaver);
    }
    m_locked = !m_active.isEmpty();
}

} // namespace mevo
