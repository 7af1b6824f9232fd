#include "platform/linux/X11Target.h"

#include "platform/linux/X11Connection.h"
#include "platform/linux/X11Ping.h"

#include <QSysInfo>

namespace mevo {

X11Target x11Target(const X11Connection &connection, WindowId window)
{
    X11Target target;
    target.window = window;
    target.topLevel = connection.topLevel(window);
    target.answersPing = X11Ping::isOffered(connection, target.topLevel);
    if (connection.text(target.topLevel, "WM_CLIENT_MACHINE") == QSysInfo::machineHostName()) {
        target.processId = qint64(connection.firstItem(target.topLevel, connection.atom("_NET_WM_PID")));
    }
    target.habits =
        typingHabits(connection.text(target.topLevel, "WM_CLASS").split(QChar(0), Qt::SkipEmptyParts));
    return target;
}

} // namespace mevo
