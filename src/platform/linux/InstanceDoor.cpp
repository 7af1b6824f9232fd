#include "platform/linux/InstanceDoor.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QLocalSocket>
#include <QPointer>
#include <QTimer>

#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace mevo {

namespace {

constexpr int connectMs = 500;
constexpr int longestAnswer = 4096;

/// The process at the other end runs as this one's user (SO_PEERCRED of unix(7)).
bool isSameUser(const QLocalSocket &socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer, &size) ==
               0 &&
           peer.uid == geteuid();
}

/// The process at the other end has not closed the connection; what it has sent may still wait to be read.
bool isThere(const QLocalSocket &socket)
{
    char next = 0;
    return socket.state() == QLocalSocket::ConnectedState &&
           recv(static_cast<int>(socket.socketDescriptor()), &next, 1, MSG_PEEK | MSG_DONTWAIT) != 0;
}

QByteArray lineOf(QLocalSocket &socket, int longest)
{
    QByteArray line = socket.readLine(longest + 2);
    if (line.endsWith('\n')) {
        line.chop(1);
    }
    return line;
}

} // namespace

InstanceDoor::InstanceDoor(const QString &path, int longest, Handler handler)
    : m_longest(longest)
    , m_handler(std::move(handler))
{
    QLocalServer::removeServer(path);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(path)) {
        qWarning().noquote() << "Single instance:" << path << m_server.errorString();
    }
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            receive(caller);
        }
    });
}

void InstanceDoor::receive(QLocalSocket *caller)
{
    QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
    if (!isSameUser(*caller)) {
        refuse(caller, "it is another user's");
        return;
    }
    if (m_server.findChildren<QLocalSocket *>(QString(), Qt::FindDirectChildrenOnly).size() > mostCallers) {
        refuse(caller, "there are too many");
        return;
    }
    caller->setReadBufferSize(m_longest + 1);
    QObject::connect(caller, &QLocalSocket::readyRead, caller, [this, caller] { read(caller); });
    auto *const time = new QTimer(caller);
    time->setSingleShot(true);
    QObject::connect(time, &QTimer::timeout, caller, [caller] { refuse(caller, "no message has come"); });
    time->start(callerTimeMs);
    read(caller);
}

void InstanceDoor::read(QLocalSocket *caller)
{
    if (!caller->canReadLine()) {
        if (caller->bytesAvailable() > m_longest) {
            refuse(caller, "its message is too long");
        }
        return;
    }
    // One message each: what follows is not looked at.
    QObject::disconnect(caller, &QLocalSocket::readyRead, nullptr, nullptr);
    delete caller->findChild<QTimer *>();
    const QByteArray message = lineOf(*caller, m_longest);
    if (!isThere(*caller)) {
        refuse(caller, "it has gone meanwhile");
        return;
    }
    caller->write("\n");
    caller->flush(); // what is asked for may take its time
    m_handler(message, [caller = QPointer<QLocalSocket>(caller)](const QByteArray &answer) {
        if (caller && caller->state() == QLocalSocket::ConnectedState) {
            caller->write(answer + '\n');
            caller->flush(); // the program may be about to end
            caller->disconnectFromServer();
        }
    });
}

void InstanceDoor::refuse(QLocalSocket *caller, const char *why)
{
    qWarning("Single instance: a caller is turned away: %s", why);
    caller->disconnect(); // not heard again
    caller->abort();
    caller->deleteLater();
}

SingleInstance::CallResult callInstance(const QString &path, const QByteArray &message,
                                        const SingleInstance::CallWaits &waits)
{
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(connectMs)) {
        return {};
    }
    if (!isSameUser(socket)) {
        qWarning().noquote() << "Single instance:" << path << "is another user's";
        return {};
    }
    QDeadlineTimer deadline(waits.taken);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    const auto lineComes = [&socket, &left] {
        while (!socket.canReadLine() && socket.bytesAvailable() <= longestAnswer &&
               socket.waitForReadyRead(left())) {
        }
        return socket.canReadLine();
    };
    SingleInstance::CallResult result;
    result.reached = true;
    socket.write(message + '\n');
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(left())) {
    }
    result.taken = lineComes();
    if (result.taken) {
        result.answer = lineOf(socket, longestAnswer); // at once, where the holder is of an older version
    }
    if (result.taken && result.answer.isEmpty()) {
        deadline.setRemainingTime(waits.answer);
        if (lineComes()) {
            result.answer = lineOf(socket, longestAnswer);
        }
    }
    result.closed = result.answer.isEmpty() && socket.state() != QLocalSocket::ConnectedState;
    return result;
}

} // namespace mevo
