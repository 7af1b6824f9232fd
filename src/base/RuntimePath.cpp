#include "base/RuntimePath.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace mevo {

namespace {

/// A folder of this user that nobody else reaches into.
bool isPrivateFolder(const QString &path)
{
    constexpr mode_t ownerOnly = 0700;
    struct stat info = {};
    return lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
           info.st_uid == geteuid() && (info.st_mode & 0777) == ownerOnly;
}

/// In the folder that all users share.
QString sharedPath(const QString &name, const QString &suffix)
{
    return QStringLiteral("/tmp/%1-%2%3").arg(name).arg(geteuid()).arg(suffix);
}

} // namespace

QString runtimeFolder(const QString &fromSession, const QString &ofUser)
{
    if (!fromSession.isEmpty() && QFileInfo(fromSession).isWritable()) {
        return fromSession;
    }
    return isPrivateFolder(ofUser) ? ofUser : QString();
}

QString runtimePath(const QString &name, const QString &suffix)
{
    const QString folder =
        runtimeFolder(qEnvironmentVariable("XDG_RUNTIME_DIR"), QStringLiteral("/run/user/%1").arg(geteuid()));
    if (!folder.isEmpty()) {
        return QStringLiteral("%1/%2%3").arg(folder, name, suffix);
    }
    return sharedPath(name, suffix);
}

QStringList runtimePaths(const QString &name, const QString &suffix)
{
    QStringList paths{runtimePath(name, suffix), sharedPath(name, suffix)};
    paths.removeDuplicates();
    return paths;
}

} // namespace mevo
