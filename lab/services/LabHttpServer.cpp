#include "services/LabHttpServer.h"

#include <QSslSocket>
#include <QTimer>

#include <memory>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

namespace lab {

struct LabHttpServer::Connection
{
    QPointer<QTcpSocket> socket;
    QByteArray buffer;
    bool busy = false;
    bool continued = false; ///< the client has been told to go on with its body
};

namespace {

/// A self-signed certificate and its key, as PEM.
bool makeCertificate(QByteArray &certificatePem, QByteArray &keyPem)
{
    EVP_PKEY *key = EVP_RSA_gen(2048);
    X509 *certificate = X509_new();
    bool made = false;
    if (key != nullptr && certificate != nullptr) {
        ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
        X509_gmtime_adj(X509_getm_notBefore(certificate), -3600);
        X509_gmtime_adj(X509_getm_notAfter(certificate), 24 * 3600);
        X509_set_pubkey(certificate, key);
        X509_NAME *name = X509_get_subject_name(certificate);
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char *>("127.0.0.1"), -1, -1, 0);
        X509_set_issuer_name(certificate, name);
        made = X509_sign(certificate, key, EVP_sha256()) != 0;
    }
    const auto pem = [](const std::function<int(BIO *)> &write) {
        BIO *memory = BIO_new(BIO_s_mem());
        write(memory);
        char *data = nullptr;
        const long size = BIO_get_mem_data(memory, &data);
        const QByteArray text(data, int(size));
        BIO_free(memory);
        return text;
    };
    if (made) {
        certificatePem = pem([certificate](BIO *out) { return PEM_write_bio_X509(out, certificate); });
        keyPem = pem([key](BIO *out) {
            return PEM_write_bio_PrivateKey(out, key, nullptr, nullptr, 0, nullptr, nullptr);
        });
    }
    X509_free(certificate);
    EVP_PKEY_free(key);
    return made;
}

} // namespace

LabHttpServer::LabHttpServer(Handler handler, QObject *parent)
    : QTcpServer(parent)
    , m_handler(std::move(handler))
{
}

bool LabHttpServer::start(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

bool LabHttpServer::useTls()
{
    QByteArray certificate, key;
    if (!makeCertificate(certificate, key)) {
        return false;
    }
    m_certificate = QSslCertificate(certificate);
    m_key = QSslKey(key, QSsl::Rsa);
    m_tls = !m_certificate.isNull() && !m_key.isNull();
    return m_tls;
}

void LabHttpServer::incomingConnection(qintptr descriptor)
{
    QTcpSocket *socket = nullptr;
    if (m_tls) {
        auto *tls = new QSslSocket(this);
        tls->setSocketDescriptor(descriptor);
        tls->setLocalCertificate(m_certificate);
        tls->setPrivateKey(m_key);
        tls->setPeerVerifyMode(QSslSocket::VerifyNone);
        tls->startServerEncryption();
        socket = tls;
    } else {
        socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
    }
    auto connection = QSharedPointer<Connection>::create();
    connection->socket = socket;
    connect(socket, &QTcpSocket::readyRead, this, [this, connection] { read(connection); });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
}

void LabHttpServer::read(const QSharedPointer<Connection> &connection)
{
    if (connection->socket.isNull()) {
        return;
    }
    connection->buffer += connection->socket->readAll();
    if (connection->busy) {
        return; // pipelined: its turn comes after the answer under way
    }
    const int headerEnd = connection->buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0) {
        if (connection->buffer.size() > MaxHeaderBytes) {
            connection->socket->abort();
        }
        return;
    }
    const QList<QByteArray> lines = connection->buffer.left(headerEnd).split('\n');
    const QList<QByteArray> start = lines.first().trimmed().split(' ');
    HttpRequest request;
    request.head = connection->buffer.left(headerEnd + 2);
    bool numeric = true;
    if (start.size() == 3) {
        request.method = start[0];
        request.target = start[1];
    }
    for (int i = 1; i < lines.size(); ++i) {
        const int colon = lines[i].indexOf(':');
        if (colon > 0) {
            request.headers.insert(lines[i].left(colon).trimmed().toLower(),
                                   lines[i].mid(colon + 1).trimmed());
        }
    }
    const QByteArray announced = request.headers.value("content-length", "0");
    const int length = announced.toInt(&numeric);
    if (start.size() != 3 || !numeric || length < 0 || length > MaxBodyBytes ||
        request.headers.contains("transfer-encoding")) {
        connection->socket->write(
            "HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        connection->socket->disconnectFromHost();
        return;
    }
    if (connection->buffer.size() < headerEnd + 4 + length) {
        if (!connection->continued && request.headers.value("expect").toLower() == "100-continue") {
            connection->continued = true;
            connection->socket->write("HTTP/1.1 100 Continue\r\n\r\n");
        }
        return;
    }
    connection->continued = false;
    request.body = connection->buffer.mid(headerEnd + 4, length);
    connection->buffer.remove(0, headerEnd + 4 + length);
    connection->busy = true;
    handle(connection, request);
}

Fault LabHttpServer::takeFault(const QByteArray &path)
{
    const auto found = m_faults.find(path);
    if (found == m_faults.end()) {
        return {};
    }
    const Fault fault = *found;
    if (found->count > 0 && --found->count == 0) {
        m_faults.erase(found);
    }
    return fault;
}

void LabHttpServer::handle(const QSharedPointer<Connection> &connection, const HttpRequest &request)
{
    const Fault fault = takeFault(request.path());
    if (fault.kind == "close") {
        connection->socket->abort();
        return;
    }
    if (fault.kind == "stall") {
        return; // the answer never comes; the client gives up
    }
    m_handler(request, [this, connection, fault](const HttpResponse &response) {
        if (fault.kind == "delay") {
            QTimer::singleShot(fault.value, this,
                               [this, connection, response] { respond(connection, response, {}); });
        } else {
            respond(connection, response, fault);
        }
    });
}

void LabHttpServer::respond(const QSharedPointer<Connection> &connection, const HttpResponse &response,
                            const Fault &fault)
{
    if (connection->socket.isNull()) {
        return;
    }
    HttpResponse sent = response;
    int announced = -1;
    int cutAt = -1;
    if (fault.kind == "status") {
        sent.status = fault.value;
    } else if (fault.kind == "garbage") {
        sent.body = QByteArray("\x00\xff{]\"garbage\xfe", 13);
    } else if (fault.kind == "huge") {
        sent.body = QByteArray(fault.value > 0 ? fault.value : 50 * 1024 * 1024, 'x');
    } else if (fault.kind == "length") {
        announced = sent.body.size() + fault.value;
    } else if (fault.kind == "cut") {
        cutAt = fault.value;
    } else if (fault.kind == "empty") {
        sent.body.clear();
    }
    QByteArray wire =
        "HTTP/1.1 " + QByteArray::number(sent.status) + " X\r\nContent-Type: " + sent.contentType +
        (sent.location.isEmpty() ? QByteArray() : "\r\nLocation: " + sent.location) +
        "\r\nContent-Length: " + QByteArray::number(announced >= 0 ? announced : sent.body.size()) +
        "\r\n\r\n" + sent.body;
    if (cutAt >= 0) {
        wire.truncate(wire.size() - sent.body.size() + cutAt);
    }
    if (fault.kind == "trickle") {
        trickle(connection, wire, fault.value);
        return;
    }
    const bool headOnly = fault.kind == "head";
    if (headOnly) {
        wire.truncate(fault.value);
    }
    connection->socket->write(wire);
    if (cutAt >= 0 || announced >= 0 || headOnly) {
        connection->socket->disconnectFromHost();
        return;
    }
    answered(connection);
}

/// Sends an answer in small pieces that take `totalMs` together.
void LabHttpServer::trickle(const QSharedPointer<Connection> &connection, const QByteArray &wire, int totalMs)
{
    constexpr int pieces = 20;
    auto *timer = new QTimer(connection->socket);
    const auto sent = std::make_shared<int>(0);
    timer->callOnTimeout([this, connection, wire, timer, sent] {
        const int end = ++*sent * wire.size() / pieces;
        const int start = (*sent - 1) * wire.size() / pieces;
        connection->socket->write(wire.mid(start, end - start));
        if (*sent == pieces) {
            timer->deleteLater();
            timer->stop();
            answered(connection);
        }
    });
    timer->start(qMax(1, totalMs / pieces));
}

/// The connection's next request may have its turn.
void LabHttpServer::answered(const QSharedPointer<Connection> &connection)
{
    connection->busy = false;
    if (!connection->buffer.isEmpty()) {
        QTimer::singleShot(0, this, [this, connection] { read(connection); });
    }
}

} // namespace lab
