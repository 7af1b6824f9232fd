#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QObject>
#include <QPointer>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>
#include <QUrl>

#include <functional>

namespace lab {

struct HttpRequest
{
    QByteArray method;
    QByteArray target;                     ///< path and query as they came
    QByteArray head;                       ///< request line and headers as they came
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;

    QByteArray path() const { return target.split('?').first(); }
    QByteArray query() const
    {
        return target.contains('?') ? target.mid(target.indexOf('?') + 1) : QByteArray();
    }
};

struct HttpResponse
{
    int status = 200;
    QByteArray contentType = "application/json";
    QByteArray body;
    QByteArray location = QByteArray(); ///< where the thing asked for has moved to, with a status of 30x
};

/// A fault that a test orders for the requests of one path.
struct Fault
{
    QByteArray kind; ///< delay, trickle, stall, close, cut (in the body), head (cut in the head), garbage,
                     ///< huge, length, empty, status
    int value = 0;   ///< milliseconds, bytes or status, by kind
    int count = 1;   ///< requests it still meets, -1 for all
};

/// A small HTTP/1.1 server on loopback with faults on demand. One handler answers every path, at once or
/// later through the function that it is given.
class LabHttpServer : public QTcpServer
{
    Q_OBJECT

public:
    using Reply = std::function<void(const HttpResponse &)>;
    using Handler = std::function<void(const HttpRequest &, const Reply &)>;

    explicit LabHttpServer(Handler handler, QObject *parent = nullptr);
    /// Listens on 127.0.0.1; 0 takes any free port. False when the port is taken.
    bool start(quint16 port);
    /// Speaks TLS from now on with a certificate made for this run.
    bool useTls();

    void setFault(const QByteArray &path, const Fault &fault) { m_faults[path] = fault; }
    void clearFaults() { m_faults.clear(); }

    static constexpr int MaxHeaderBytes = 64 * 1024;
    static constexpr int MaxBodyBytes = 32 * 1024 * 1024;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    struct Connection;
    void read(const QSharedPointer<Connection> &connection);
    void handle(const QSharedPointer<Connection> &connection, const HttpRequest &request);
    void respond(const QSharedPointer<Connection> &connection, const HttpResponse &response,
                 const Fault &fault);
    void trickle(const QSharedPointer<Connection> &connection, const QByteArray &wire, int totalMs);
    void answered(const QSharedPointer<Connection> &connection);
    Fault takeFault(const QByteArray &path);

    Handler m_handler;
    QHash<QByteArray, Fault> m_faults;
    bool m_tls = false;
    QSslCertificate m_certificate;
    QSslKey m_key;
};

} // namespace lab
