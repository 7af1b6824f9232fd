#include "base/ApplicationFiles.h"

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

void copyShippedFiles(const QString &target)
{
    const QString program = QCoreApplication::applicationDirPath();
    for (const QString &source : {program, program + QStringLiteral("/" MEVO_SHIPPED_FOLDER)}) {
        const QDir shipped(source);
        for (const QString &name : shipped.entryList({QStringLiteral("MEV*.ini")}, QDir::Files)) {
            const QString copy = target + QLatin1Char('/') + name;
            if (!QFile::exists(copy)) {
                QFile::copy(shipped.filePath(name), copy);
                QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
            }
        }
    }
}

QString findFolder()
{
    const QString forced = qEnvironmentVariable("MEVO_HOME");
    if (!forced.isEmpty()) {
        QDir().mkpath(forced);
        copyShippedFiles(forced);
        return QDir(forced).absolutePath();
    }
    const QString program = QCoreApplication::applicationDirPath();
    if (isWritable(program)) {
        copyShippedFiles(program); // of an installation into a folder of the user's own
        return program;
    }
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(data);
    copyShippedFiles(data);
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
