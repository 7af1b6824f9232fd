#include "platform/linux/FlockSingleInstance.h"

#include "base/RuntimePath.h"

#include <QDebug>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mevo {

namespace {

constexpr int knockTimeoutMs = 500;

/// Tells the holder of the lock that it is wanted. One that is still starting does not listen yet, and will
/// show itself anyway.
void knock(const QString &name)
{
    QLocalSocket socket;
    socket.connectToServer(runtimePath(name, QStringLiteral(".socket")));
    socket.waitForConnected(knockTimeoutMs);
}

/// In a folder that all users share, the file must be a plain file of our own.
bool isOurs(int descriptor)
{
    struct stat info = {};
    return fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid();
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
    if (error == EWOULDBLOCK) {
        knock(name);
        return false;
    }
    return true;
}

void FlockSingleInstance::whenStartedAgain(std::function<void()> handler)
{
    if (m_descriptor < 0) {
        return;
    }
    const QString path = runtimePath(m_name, QStringLiteral(".socket"));
    QLocalServer::removeServer(path); // a killed holder has left it; the lock says that it is ours now
    m_door = std::make_unique<QLocalServer>();
    m_door->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_door->listen(path)) {
        qWarning().noquote() << "Single instance:" << path << m_door->errorString();
    }
    QObject::connect(m_door.get(), &QLocalServer::newConnection, m_door.get(),
                     [door = m_door.get(), handler = std::move(handler)] {
                         while (QLocalSocket *visitor = door->nextPendingConnection()) {
                             visitor->deleteLater();
                         }
                         handler();
                     });
}

void FlockSingleInstance::release()
{
    m_door.reset();
    if (m_descriptor >= 0) {
        // The file stays: removing it would let a third process lock a new one beside a second's.
        close(m_descriptor);
        m_descriptor = -1;
    }
}

} // namespace mevo
