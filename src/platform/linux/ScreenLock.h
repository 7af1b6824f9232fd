#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>

#include <atomic>

namespace mevo {

/// Whether the screen is locked, as the desktop's screen saver tells it on the session bus. Lives on a thread
/// with an event loop; without a bus the screen counts as open.
class ScreenLock : public QObject
{
    Q_OBJECT

public:
    explicit ScreenLock(const QDBusConnection &sessionBus = QDBusConnection::sessionBus());

    /// Readable from any thread.
    bool isLocked() const { return m_locked; }

private Q_SLOTS:
    void activeChanged(bool active, const QDBusMessage &signal);

private:
    void setActive(const QString &screenSaver, bool active);

    QDBusServiceWatcher m_watcher;
    QSet<QString> m_active; ///< bus names of the screen savers that are on
    std::atomic<bool> m_locked{false};
};

} // namespace mevo
