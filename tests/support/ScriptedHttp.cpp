#include "support/ScriptedHttp.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

namespace {

struct Identity
{
    QSslCertificate certificate;
    QSslKey key;
};

template <typename Write>
QByteArray pem(Write write)
{
    BIO *bio = BIO_new(BIO_s_mem());
    write(bio);
    char *data = nullptr;
    const long length = BIO_get_mem_data(bio, &data);
    const QByteArray text(data, static_cast<int>(length));
    BIO_free(bio);
    return text;
}

Identity makeIdentity()
{
    EVP_PKEY *key = EVP_RSA_gen(2048);
    X509 *certificate = X509_new();
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -86400);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 86400);
    X509_set_pubkey(certificate, key);
    X509_NAME *name = X509_get_subject_name(certificate);
    const unsigned char host[] = "127.0.0.1";
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, host, -1, -1, 0);
    X509_set_issuer_name(certificate, name);
    X509_sign(certificate, key, EVP_sha256());

    Identity identity;
    identity.certificate =
        QSslCertificate(pem([&](BIO *bio) { PEM_write_bio_X509(bio, certificate); }), QSsl::Pem);
    identity.key =
        QSslKey(pem([&](BIO *bio) {
                    PEM_write_bio_PrivateKey_traditional(bio, key, nullptr, nullptr, 0, nullptr, nullptr);
                }),
                QSsl::Rsa, QSsl::Pem);
    X509_free(certificate);
    EVP_PKEY_free(key);
    return identity;
}

QByteArray headOf(int status, qint64 length)
{
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Scripted\r\nContent-Type: application/json\r\nContent-Length: " + QByteArray::number(length) +
           "\r\n\r\n";
}

} // namespace

ScriptedAnswer ScriptedAnswer::body(const QByteArray &body, int status)
{
    return {headOf(status, body.size()) + body};
}

ScriptedAnswer ScriptedAnswer::cut(const QByteArray &body, int announced)
{
    return {headOf(200, announced) + body, false, true};
}

ScriptedAnswer ScriptedAnswer::raw(const QByteArray &bytes)
{
    return {bytes, false, true};
}

ScriptedAnswer ScriptedAnswer::enormous(qint64 length)
{
    return {headOf(200, length), false, false, length};
}

ScriptedAnswer ScriptedAnswer::late(ScriptedAnswer answer)
{
    answer.held = true;
    return answer;
}

ScriptedAnswer ScriptedAnswer::silence()
{
    return {{}, true};
}

ScriptedHttp::ScriptedHttp(Security security)
    : m_security(security)
{
    if (!listen(QHostAddress::LocalHost)) {
        qFatal("cannot listen: %s", qPrintable(errorString()));
    }
}

QString ScriptedHttp::host() const
{
    return QStringLiteral("127.0.0.1:%1").arg(serverPort());
}

QUrl ScriptedHttp::url(const QString &pathAndQuery) const
{
    return QUrl((m_security == Security::Tls ? QStringLiteral("https://") : QStringLiteral("http://")) +
                host() + pathAndQuery);
}

void ScriptedHttp::incomingConnection(qintptr descriptor)
{
    ++connections;
    auto *socket = new QSslSocket(this);
    socket->setSocketDescriptor(descriptor);
    connect(socket, &QSslSocket::readyRead, this, [this, socket] { read(socket); });
    connect(socket, &QSslSocket::disconnected, this, [this, socket] {
        m_received.remove(socket);
        socket->deleteLater();
    });
    if (m_security == Security::Tls) {
        static const Identity identity = makeIdentity();
        socket->setLocalCertificate(identity.certificate);
        socket->setPrivateKey(identity.key);
        socket->startServerEncryption();
    }
}

void ScriptedHttp::read(QTcpSocket *socket)
{
    QByteArray &received = m_received[socket];
    received += socket->readAll();
    const int headEnd = received.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        return;
    }
    ScriptedRequest request;
    request.head = received.left(headEnd + 4);
    const QList<QByteArray> lines = received.left(headEnd).split('\n');
    const QList<QByteArray> first = lines.first().trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    for (const QByteArray &line : lines.mid(1)) {
        const int colon = line.indexOf(':');
        request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
    }
    const int length = request.headers.value("content-length").toInt();
    if (received.size() < headEnd + 4 + length) {
        return;
    }
    request.body = received.mid(headEnd + 4, length);
    received.remove(0, headEnd + 4 + length);

    requests.append(request);
    const ScriptedAnswer answer = !m_answers.isEmpty() ? m_answers.takeFirst()
                                  : answering          ? answering(request)
                                                       : fallback;
    const QPointer<QTcpSocket> open(socket);
    if (const auto callback = onRequest) { // a copy: it may replace itself
        callback(request);
    }
    if (answer.held) {
        m_held.append({open, answer});
    } else if (open) {
        send(socket, answer);
    }
}

void ScriptedHttp::send(QTcpSocket *socket, const ScriptedAnswer &answer)
{
    socket->write(answer.bytes);
    for (qint64 left = answer.flood; left > 0; left -= 1 << 20) {
        socket->write(QByteArray(static_cast<int>(qMin<qint64>(left, 1 << 20)), 'x'));
    }
    if (answer.closing) {
        socket->disconnectFromHost();
    }
}

void ScriptedHttp::answerHeld()
{
    const auto held = std::move(m_held);
    m_held.clear();
    for (const auto &entry : held) {
        if (entry.first && entry.first->state() == QAbstractSocket::ConnectedState) {
            send(entry.first, entry.second);
        }
    }
}

void ScriptedHttp::kill()
{
    close();
    m_held.clear();
    for (QTcpSocket *socket : m_received.keys()) {
        socket->abort();
    }
}

void ScriptedHttp::clear()
{
    requests.clear();
    m_answers.clear();
    m_held.clear();
    onRequest = nullptr;
    answering = nullptr;
    fallback = ScriptedAnswer::body("{}");
    connections = 0;
}
