#pragma once

#include <QString>

class QSystemTrayIcon;

namespace mevo {

enum class MessageIcon { None, Information, Warning, Critical };

/// Messages to the user, through the tray icon where the desktop has a tray and through desktop
/// notifications where it has none. May be asked from any thread.
class Notifications
{
public:
    virtual ~Notifications() = default;
    /// The tray icon that messages come from; null when it goes.
    virtual void attach(QSystemTrayIcon *icon) = 0;
    virtual bool trayAvailable() const = 0;
    /// Shows a message for about `milliseconds`. An empty title is allowed.
    virtual void message(const QString &title, const QString &text, MessageIcon icon, int milliseconds) = 0;
};

} // namespace mevo
