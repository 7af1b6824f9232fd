#include "push/PushService.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QWebSocket>

#include <algorithm>

namespace lab {

namespace {

constexpr int largestHuge = 64 << 20;

bool take(int &count)
{
    const bool taken = count != 0;
    count -= count > 0 ? 1 : 0;
    return taken;
}

QByteArray contentType(const QString &name)
{
    return name.endsWith(QLatin1String(".html")) ? "text/html; charset=utf-8" : "application/octet-stream";
}

} // namespace

PushService::PushService(const LabCipher &cipher, QDir folder, Note note, QObject *parent)
    : QTcpServer(parent)
    , m_cipher(cipher)
    , m_folder(std::move(folder))
    , m_note(std::move(note))
    , m_server(QStringLiteral("lab"), QWebSocketServer::NonSecureMode)
{
    connect(&m_server, &QWebSocketServer::newConnection, this, &PushService::accept);
}

bool PushService::start(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

void PushService::reset()
{
    m_refuse = m_stall = 0;
}

void PushService::note(const char *event, const QString &text)
{
    QJsonObject entry{{QStringLiteral("service"), QStringLiteral("push")},
                      {QStringLiteral("event"), QLatin1String(event)}};
    if (!text.isNull()) {
        entry.insert(QStringLiteral("text"), text);
    }
    m_note(entry);
}

void PushService::handle(const HttpRequest &request, const LabHttpServer::Reply &reply) const
{
    const QString name = QFileInfo(QUrl::fromPercentEncoding(request.path())).fileName();
    QFile file(m_folder.filePath(name));
    m_note({{QStringLiteral("service"), QStringLiteral("web")}, {QStringLiteral("file"), name}});
    if (!file.open(QIODevice::ReadOnly)) {
        reply({404, "text/plain", {}});
        return;
    }
    reply({200, contentType(name), file.readAll()});
}

void PushService::incomingConnection(qintptr descriptor)
{
    auto *transport = new QTcpSocket(this);
    transport->setSocketDescriptor(descriptor);
    connect(transport, &QTcpSocket::disconnected, transport, &QObject::deleteLater);
    if (take(m_refuse)) {
        note("refused");
        transport->abort();
        transport->deleteLater();
    } else if (take(m_stall)) {
        note("stalled");
    } else {
        m_handshakes.append(transport);
        m_server.handleConnection(transport);
    }
}

void PushService::accept()
{
    while (QWebSocket *const socket = m_server.nextPendingConnection()) {
        socket->setParent(this);
        Client client{nullptr, socket};
        for (const QPointer<QTcpSocket> &transport : qAsConst(m_handshakes)) {
            if (transport && transport->peerPort() == socket->peerPort()) {
                client.transport = transport;
            }
        }
        m_handshakes.removeAll(client.transport);
        m_handshakes.removeAll(nullptr);
        m_clients.append(client);
        note("connected");
        connect(socket, &QWebSocket::textMessageReceived, this,
                [this](const QString &text) { note("message", text); });
        connect(socket, &QWebSocket::disconnected, this, [this, socket] {
            note("disconnected");
            m_clients.erase(std::remove_if(m_clients.begin(), m_clients.end(),
                                           [socket](const Client &each) { return each.socket == socket; }),
                            m_clients.end());
            socket->deleteLater();
        });
    }
}

QString PushService::withPlaces(QString text) const
{
    text.replace(QLatin1String("lab:/"), m_webAddress);
    static const QRegularExpression size(QStringLiteral("size:([^;/]+)"));
    for (QRegularExpressionMatch match; (match = size.match(text)).hasMatch();) {
        const qint64 bytes = QFileInfo(m_folder.filePath(match.captured(1))).size();
        text.replace(match.capturedStart(), match.capturedLength(), QString::number(bytes));
    }
    return text;
}

bool PushService::sendToAll(const std::function<void(const Client &client)> &send)
{
    const QList<Client> clients = m_clients;
    for (const Client &client : clients) {
        if (client.socket) {
            send(client);
        }
    }
    return !clients.isEmpty();
}

void PushService::breakAll(const QString &how)
{
    sendToAll([&how](const Client &client) {
        if (how == QLatin1String("close")) {
            client.socket->close();
        } else if (how == QLatin1String("reset") && client.transport) {
            client.transport->abort();
        } else if (client.transport) {
            client.transport->write("\xff\xff\xff\xff"); // reserved bits, an unknown kind
        }
    });
}

bool PushService::control(const QUrlQuery &query)
{
    const auto value = [&query](const char *name) {
        return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
    };
    const auto has = [&query](const char *name) { return query.hasQueryItem(QLatin1String(name)); };
    const auto sendText = [this](const QString &text) {
        return sendToAll([&text](const Client &client) { client.socket->sendTextMessage(text); });
    };
    if (has("text")) {
        const QByteArray cipher = m_cipher.encrypt(withPlaces(value("text")).toUtf8());
        const QString digits =
            has("digits") ? value("digits") : QString::asprintf("%05d", int(cipher.size()));
        return sendText(digits + QString::fromLatin1(cipher));
    }
    if (has("raw")) {
        return sendText(value("raw"));
    }
    if (has("huge")) {
        return sendText(QString(qBound(0, value("huge").toInt(), largestHuge), QLatin1Char('a')));
    }
    if (has("binary")) {
        const QByteArray bytes = value("binary").toUtf8();
        return sendToAll([&bytes](const Client &client) { client.socket->sendBinaryMessage(bytes); });
    }
    if (has("break")) {
        breakAll(value("break"));
    } else if (has("refuse")) {
        m_refuse = value("refuse").toInt();
    } else if (has("stall")) {
        m_stall = value("stall").toInt();
    } else {
        return false;
    }
    return true;
}

} // namespace lab
