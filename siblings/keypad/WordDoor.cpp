#include "keypad/WordDoor.h"

#include "base/RuntimePath.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>

#include <sys/socket.h>
#include <unistd.h>

namespace mevo::keypad {

namespace {

const QString lockName = QStringLiteral("mevokeypad");
constexpr int longestWord = 64;
constexpr int retryMs = 20;
constexpr int silentVisitorMs = 5000;
const char taken[] = "taken\n";

QString doorPath()
{
    return runtimePath(lockName, QStringLiteral(".words"));
}

/// Where all users share a folder, another one could stand at either end.
bool isOurs(qintptr descriptor)
{
    ucred other{};
    socklen_t size = sizeof other;
    return getsockopt(int(descriptor), SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 && other.uid == geteuid();
}

} // namespace

WordDoor::WordDoor() = default;
WordDoor::~WordDoor() = default;

WordDoor::Outcome WordDoor::enter(Wish wish, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!m_lock.acquire(lockName)) {
        const int left = timeoutMs - int(timer.elapsed());
        if (left > 0 && deliver(wish, left)) {
            return Outcome::Delivered;
        }
        if (timer.hasExpired(timeoutMs)) {
            return Outcome::Unheard;
        }
        QThread::msleep(retryMs);
    }
    return Outcome::First;
}

bool WordDoor::deliver(Wish wish, int timeoutMs)
{
    QLocalSocket socket;
    socket.connectToServer(doorPath());
    if (!socket.waitForConnected(timeoutMs) || !isOurs(socket.socketDescriptor())) {
        return false;
    }
    socket.write(wordOf(wish).toLatin1() + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(timeoutMs)) {
            return false;
        }
    }
    return socket.readLine(longestWord) == taken;
}

bool WordDoor::listen(std::function<void(Wish)> handler)
{
    m_handler = std::move(handler);
    QLocalServer::removeServer(doorPath()); // a killed one has left it; the lock says that it is ours now
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(doorPath())) {
        qWarning().noquote() << "Keypad: cannot listen at" << doorPath() << m_server->errorString();
        return false;
    }
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(), [this] {
        while (QLocalSocket *visitor = m_server->nextPendingConnection()) {
            receive(visitor);
        }
    });
    return true;
}

void WordDoor::receive(QLocalSocket *visitor)
{
    if (!isOurs(visitor->socketDescriptor())) {
        qWarning("Keypad: a word of another user is not taken");
        visitor->deleteLater();
        return;
    }
    visitor->setReadBufferSize(longestWord);
    const auto read = [this, visitor] {
        if (!visitor->canReadLine()) {
            if (visitor->bytesAvailable() >= longestWord) {
                visitor->abort();
            }
            return;
        }
        const QString word = QString::fromLatin1(visitor->readLine(longestWord)).trimmed();
        const std::optional<Wish> wish = wishOf(word);
        if (!wish) {
            qWarning("Keypad: a word that is none has come in");
            visitor->abort();
            return;
        }
        visitor->write(taken);
        visitor->flush();
        visitor->disconnectFromServer();
        // Later, as it may be the wish that closes the door.
        QTimer::singleShot(0, m_server.get(), [this, wish] { m_handler(*wish); });
    };
    QObject::connect(visitor, &QLocalSocket::readyRead, m_server.get(), read);
    QObject::connect(visitor, &QLocalSocket::disconnected, visitor, &QObject::deleteLater);
    QTimer::singleShot(silentVisitorMs, visitor, [visitor] { visitor->abort(); });
    read();
}

void WordDoor::close()
{
    m_server.reset();
    m_lock.release();
}

} // namespace mevo::keypad
