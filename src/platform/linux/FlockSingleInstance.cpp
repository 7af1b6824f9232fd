#include "platform/linux/FlockSingleInstance.h"

#include "base/RuntimePath.h"
#include "platform/linux/InstanceDoor.h"

#include <QDebug>
#include <QFile>

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

QString socketPath(const QString &name)
{
    return runtimePath(name, QStringLiteral(".socket"));
}

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
    const QString path = runtimePath(name, QStringLiteral(".lock"));
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
        m_name = name;
        return true;
    }
    const int error = errno;
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
        m_door = std::make_unique<InstanceDoor>(socketPath(m_name), longest, std::move(handler));
    }
}

void FlockSingleInstance::closeDoor()
{
    m_door.reset();
}

SingleInstance::CallResult FlockSingleInstance::call(const QString &name, const QByteArray &message,
                                                     const CallWaits &waits)
{
    return callInstance(socketPath(name), message, waits);
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
