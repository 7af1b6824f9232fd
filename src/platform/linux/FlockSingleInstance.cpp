#include "platform/linux/FlockSingleInstance.h"

#include "base/RuntimePath.h"
#include "platform/linux/InstanceDoor.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace mevo {

namespace {

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

const QString lockSuffix = QStringLiteral(".lock");
const QString socketSuffix = QStringLiteral(".socket");

} // namespace

FlockSingleInstance::FlockSingleInstance() = default;

FlockSingleInstance::~FlockSingleInstance()
{
    release();
}

bool FlockSingleInstance::acquire(const QString &name)
{
    if (m_descriptor >= 0) {
        return true;
    }
    const QString path = runtimePath(name, lockSuffix);
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
    int error = lockNow(descriptor);
    const QStringList paths = runtimePaths(name, lockSuffix);
    if (error == 0 && std::any_of(paths.begin() + 1, paths.end(), isHeld)) {
        error = EWOULDBLOCK; // an older program runs, which looks elsewhere
    }
    if (error == 0) {
        m_descriptor = descriptor;
        m_name = name;
        return true;
    }
    close(descriptor);
    if (error != EWOULDBLOCK) {
        qWarning().noquote() << "Single instance:" << path << "cannot be locked:" << std::strerror(error);
    }
    return error != EWOULDBLOCK;
}

void FlockSingleInstance::whenCalled(
    int longest, std::function<void(const QByteArray &message, CallAnswer answer)> handler)
{
    closeDoor();             // its end would take the place of a new one away
    if (m_descriptor >= 0) { // the place of the socket belongs to the lock's holder
        m_door =
            std::make_unique<InstanceDoor>(runtimePath(m_name, socketSuffix), longest, std::move(handler));
    }
}

void FlockSingleInstance::closeDoor()
{
    m_door.reset();
}

SingleInstance::CallResult FlockSingleInstance::call(const QString &name, const QByteArray &message,
                                                     int waitMs)
{
    for (const QString &path : runtimePaths(name, socketSuffix)) {
        const CallResult result = callInstance(path, message, waitMs);
        if (result.reached) {
            return result;
        }
    }
    return {};
}

void FlockSingleInstance::release()
{
    closeDoor();
    if (m_descriptor >= 0) {
        // The file stays: removing it would let a third process lock a new one beside a second's.
        close(m_descriptor);
        m_descriptor = -1;
    }
}

} // namespace mevo
