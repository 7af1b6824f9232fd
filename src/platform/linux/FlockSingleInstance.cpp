#include "platform/linux/FlockSingleInstance.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mevo {

namespace {

QString lockPath(const QString &name)
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isWritable()) {
        return QStringLiteral("%1/%2.lock").arg(runtime, name);
    }
    return QStringLiteral("/tmp/%1-%2.lock").arg(name).arg(geteuid());
}

/// In a folder that all users share, the file must be a plain file of our own.
bool isOurs(int descriptor)
{
    struct stat info = {};
    return fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid();
}

} // namespace

FlockSingleInstance::~FlockSingleInstance()
{
    release();
}

bool FlockSingleInstance::acquire(const QString &name)
{
    if (m_descriptor >= 0) {
        return true;
    }
    const QString path = lockPath(name);
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0 || !isOurs(descriptor)) {
        qWarning().noquote() << "Single instance:" << path << "cannot be used:"
                             << (descriptor < 0 ? std::strerror(errno) : "it is another user's");
        if (descriptor >= 0) {
            close(descriptor);
        }
        return true;
    }
    int result = 0;
    do {
        result = flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result == 0) {
        m_descriptor = descriptor;
        return true;
    }
    const int error = errno;
    close(descriptor);
    if (error != EWOULDBLOCK) {
        qWarning().noquote() << "Single instance:" << path << "cannot be locked:" << std::strerror(error);
    }
    return error != EWOULDBLOCK;
}

void FlockSingleInstance::release()
{
    if (m_descriptor >= 0) {
        // The file stays: removing it would let a third process lock a new one beside a second's.
        close(m_descriptor);
        m_descriptor = -1;
    }
}

} // namespace mevo
