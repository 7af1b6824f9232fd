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

#include <algorithm>

namespace mevo::keypad {

namespace {

const QString lockName = QStringLiteral("mevokeypad");
constexpr int longestWord = 64;
constexpr int retryMs = 20;
constexpr int silentVisitorMs = 5000;
const char taken[] = "taken\n";

const QString doorSuffix = QStringLiteral(".words");

QString doorPath()
{
    return runtimePath(lockName, doorSuffix);
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
    const QStringList paths = runtimePaths(lockName, doorSuffix);
    return std::any_of(paths.begin(), paths.end(),
                       [wish, timeoutMs](const QString &path) { return deliverAt(path, wish, timeoutMs); });
}

bool WordDoor::deliverAt(const QString &path, Wish wish, int timeoutMs)
{
    QLocalSocket socket;
    socket.connectToServer(path);
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
        // Later, so that the wishes of one moment come in their order. Answered only then: whose wish finds
        // the door closed tries again.
        QTimer::singleShot(0, visitor, [this, wish, visitor] {
            if (m_server == nullptr) {
                visitor->abort();
                return;
            }
            m_handler(*wish);
            visitor->write(taken);
            visitor->flush();
            visitor->disconnectFromServer();
        });
    };
    QObject::connect(visitor, &QLocalSocket::readyRead, m_server.get(), read);
    QObject::connect(visitor, &QLocalSocket::disconnected, visitor, &QObject::deleteLater);
    QTimer::singleShot(silentVisitorMs, visitor, [visitor] { visitor->abort(); });
    read();
}

void WordDoor::close()
{
    if (m_server != nullptr) {
        m_server->close();
        m_server.release()->deleteLater(); // who wished for this is still to be answered
    }
    m_lock.release();
}

} // namespace mevo::keypad
