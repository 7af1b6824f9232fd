#include "base/ApplicationFiles.h"

#include "base/ShippedFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>

namespace mevo {

namespace {

/// A full disk is no reason to look elsewhere: the user's files stand here.
bool isWritable(const QString &folder)
{
    // The permission bits say nothing on a read-only mount, so the answer is asked of the system.
    QFile probe(folder + QStringLiteral("/.mevo-write-probe-%1").arg(QCoreApplication::applicationPid()));
    errno = 0;
    if (!probe.open(QIODevice::WriteOnly)) {
        return errno == ENOSPC || errno == EDQUOT;
    }
    probe.remove();
    return true;
}

/// What stands beside the program is the user's own where the installation has a folder for what it ships.
void bringShippedFilesTo(const QString &target)
{
    const QString program = QCoreApplication::applicationDirPath();
    const QString shipped = program + QStringLiteral("/" MEVO_SHIPPED_FOLDER);
    bringShippedFiles({QFileInfo(shipped).isDir() ? shipped : program}, target);
}

QString findFolder()
{
    const QString forced = qEnvironmentVariable("MEVO_HOME");
    if (!forced.isEmpty()) {
        QDir().mkpath(forced);
        bringShippedFilesTo(forced);
        return QDir(forced).absolutePath();
    }
    const QString program = QCoreApplication::applicationDirPath();
    if (isWritable(program)) {
        bringShippedFilesTo(program); // of an installation into a folder of the user's own
        return program;
    }
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(data);
    bringShippedFilesTo(data);
    return data;
}

} // namespace

QString appFolder()
{
    static const QString folder = findFolder();
    return folder;
}

QString appFile(const QString &name)
{
    return appFolder() + QLatin1Char('/') + name;
}

} // namespace mevo
