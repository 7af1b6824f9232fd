#include "base/RuntimeLock.h"

#include "base/RuntimePath.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mevo {

const QString programLockName = QStringLiteral("mevoinput");
const QString updaterLockName = QStringLiteral("mevoupdate");

namespace {

constexpr unsigned long pollMs = 20;
const QString lockSuffix = QStringLiteral(".lock");

/// In a folder that all users share, the file must be a plain file of our own.
bool isOurs(int descriptor)
{
    struct stat info = {};
    return fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid();
}

/// 0 when the lock has been taken, else why not.
int lockNow(int descriptor)
{
    int result = 0;
    do {
        result = flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result == 0 ? 0 : errno;
}

/// Whether somebody holds the lock of an existing file of ours.
bool isHeld(const QString &path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    const bool held = descriptor >= 0 && isOurs(descriptor) && lockNow(descriptor) == EWOULDBLOCK;
    if (descriptor >= 0) {
        close(descriptor);
    }
    return held;
}

/// The same of the first of these paths, whose file is open; a lock of a program that looks elsewhere counts.
int lockNow(int descriptor, const QStringList &paths)
{
    const int error = lockNow(descriptor);
    if (error == 0 && std::any_of(paths.begin() + 1, paths.end(), isHeld)) {
        flock(descriptor, LOCK_UN);
        return EWOULDBLOCK;
    }
    return error;
}

} // namespace

bool RuntimeLock::acquire(int timeoutMs)
{
    m_taken = false;
    if (m_descriptor >= 0) {
        return true;
    }
    const QStringList paths = runtimePaths(m_name, lockSuffix);
    const int descriptor =
        open(QFile::encodeName(paths.first()).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0 || !isOurs(descriptor)) {
        qWarning().noquote() << "Lock:" << paths.first() << "cannot be used:"
                             << (descriptor < 0 ? std::strerror(errno) : "it is no file of this user's");
        if (descriptor >= 0) {
            close(descriptor);
        }
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    int error = lockNow(descriptor, paths);
    while (error == EWOULDBLOCK && !timer.hasExpired(timeoutMs)) {
        QThread::msleep(pollMs);
        error = lockNow(descriptor, paths);
    }
    if (error == 0) {
        m_descriptor = descriptor;
        return true;
    }
    close(descriptor);
    m_taken = error == EWOULDBLOCK;
    if (!m_taken) {
        qWarning().noquote() << "Lock:" << paths.first() << "cannot be locked:" << std::strerror(error);
    }
    return false;
}

void RuntimeLock::release()
{
    if (m_descriptor >= 0) {
        // The file stays: removing it would let a third process lock a new one beside a second's.
        close(m_descriptor);
        m_descriptor = -1;
    }
}

} // namespace mevo
