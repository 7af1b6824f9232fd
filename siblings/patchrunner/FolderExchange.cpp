#include "patchrunner/FolderExchange.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mevo::patchrunner {

namespace {

bool swapNames(const QString &one, const QString &other)
{
    return renameat2(AT_FDCWD, QFile::encodeName(one).constData(), AT_FDCWD,
                     QFile::encodeName(other).constData(), RENAME_EXCHANGE) == 0;
}

} // namespace

bool syncFileSystem(const QString &folder)
{
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    const bool synced = syncfs(descriptor) == 0 && fsync(descriptor) == 0;
    close(descriptor);
    return synced;
}

QString exchangeFolders(const QString &one, const QString &other)
{
    const QString above = QFileInfo(one).path();
    if (!syncFileSystem(above) || !swapNames(one, other)) {
        return QString::fromLocal8Bit(std::strerror(errno));
    }
    syncFileSystem(above); // what fails here has no undoing, and either version would start
    return {};
}

int exchangeErrorIn(const QString &folder)
{
    const QString one = folder + QStringLiteral("/.update-probe-1");
    const QString other = folder + QStringLiteral("/.update-probe-2");
    const auto make = [](const QString &path) {
        return mkdir(QFile::encodeName(path).constData(), 0700) == 0 || errno == EEXIST;
    };
    const int error = make(one) && make(other) && swapNames(one, other) ? 0 : errno;
    rmdir(QFile::encodeName(one).constData());
    rmdir(QFile::encodeName(other).constData());
    return error;
}

} // namespace mevo::patchrunner
