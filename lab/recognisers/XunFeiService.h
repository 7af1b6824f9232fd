#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QThreadPool>
#include <QUrlQuery>
#include <QWebSocketServer>

#include <functional>
#include <memory>

class QTcpSocket;
class QWebSocket;

namespace lab {

class SpeechDecoder;

/// XunFei's dictation service over WebSocket (/v2/iat), as strict as the real one: the handshake is verified
/// (signature, clock, host, account), then every frame (order, fields, audio). English is really recognised
/// at the end; for the other languages the texts are the ones that a test has set, in order, the last one
/// stays. Errors and faults come on demand.
class XunFeiService : public QTcpServer
{
    Q_OBJECT

public:
    struct Account
    {
        QString appId, apiKey, apiSecret;
    };
    using Note = std::function<void(const QJsonObject &)>;

    /// `signedHosts` are the hosts that a client may sign for.
    XunFeiService(QList<Account> accounts, QStringList signedHosts, Note note, QObject *parent = nullptr);
    ~XunFeiService() override;
    /// Listens on 127.0.0.1; 0 takes any free port. False when the port is taken.
    bool start(quint16 port);

    /// What the next sessions meet, from a query; each key stands alone:
    /// english=A  text of every English utterance; without it they are listened to, which may take long
    /// texts=A|B  texts of the next utterances
    /// partials=MS  a partial result for each MS of audio; 0 gives the last result only
    /// error=CODE[&count=N]  answered to the first frame, or with at=end to the last one
    /// refuse=STATUS[&count=N]  the handshake is refused
    /// fault=KIND[&count=N][&value=MS]: handshake-stall, handshake-delay, stall (no results), close (after
    /// the first frame), cut (the connection breaks at the last frame), garbage, binary, huge, protocol (a
    /// broken frame), after-end (more results behind the last one), silence-end (closes instead of a result)
    /// False when it is none of these.
    bool control(const QUrlQuery &query);
    /// Back to a service without faults.
    void reset();

    /// Whether a handshake's request target is accepted: 0, or the HTTP status that refuses it, and why.
    int verify(const QByteArray &target, const QDateTime &now, QString *reason) const;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    struct Session;
    struct Order
    {
        QString kind;
        int value = 0;
        int count = 0; ///< sessions it still meets, -1 for all
    };

    void readHandshake(QTcpSocket *socket);
    void accept();
    void takeFrame(const std::shared_ptr<Session> &session, const QString &text);
    int checkFrame(Session &session, const QJsonObject &frame, QByteArray &audio) const;
    int checkFirst(Session &session, const QJsonObject &frame) const;
    void sendPartials(Session &session);
    void finish(const std::shared_ptr<Session> &session);
    void sendLast(Session &session, const QString &text);
    void sendResult(Session &session, const QString &text, int status, const QJsonObject &more = {});
    void sendError(Session &session, int code);
    bool sendFault(Session &session);
    void closed(Session &session);
    static bool take(Order &order);

    QList<Account> m_accounts;
    QStringList m_signedHosts;
    Note m_note;
    QWebSocketServer m_webSockets;
    QHash<quint16, QPointer<QTcpSocket>> m_transports; ///< by the client's port, until the session begins
    QStringList m_texts;
    QString m_english;
    int m_partialsMs = 0;
    Order m_error, m_refusal, m_fault;
    bool m_errorAtEnd = false;
    int m_sessions = 0;
    QThreadPool m_worker;
    std::shared_ptr<SpeechDecoder> m_decoder;
};

} // namespace lab
