#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// A file of this user's running programs, such as the lock of the one instance: in the user's runtime
/// folder, else below "/tmp" with the user's number in its name.
QString runtimePath(const QString &name, const QString &suffix);

/// Where such a file may be: at runtimePath(), and below "/tmp", where programs that were told no runtime
/// folder have put it before they looked for the user's own. One of these may still be running.
QStringList runtimePaths(const QString &name, const QString &suffix);

/// The runtime folder: that of the session's XDG_RUNTIME_DIR when it can be written, else the one that logind
/// makes for the user, which a job of cron or a login by ssh is told nothing of; it must be the user's own
/// and nobody else's (mode 0700). Empty when there is neither.
QString runtimeFolder(const QString &fromSession, const QString &ofUser);

} // namespace mevo
