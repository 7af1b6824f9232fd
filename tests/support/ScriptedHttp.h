#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QUrl>

#include <functional>

class QTcpSocket;

/// A request as the server got it.
struct ScriptedRequest
{
    QByteArray head; ///< request line and headers as sent, with the empty line
    QByteArray method;
    QByteArray target;
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
};

/// How the server meets a request.
struct ScriptedAnswer
{
    QByteArray bytes;     ///< everything that is sent
    bool held = false;    ///< wait for answerHeld(); forever if that never comes
    bool closing = false; ///< close the connection after the bytes
    qint64 flood = 0;     ///< bytes of filling sent after `bytes`

    /// A whole HTTP answer with this body.
    static ScriptedAnswer body(const QByteArray &body, int status = 200);
    /// An answer that announces more than it sends, and then breaks off.
    static ScriptedAnswer cut(const QByteArray &body, int announced);
    /// Bytes as they are, then the end of the connection.
    static ScriptedAnswer raw(const QByteArray &bytes);
    /// A body of `length` bytes.
    static ScriptedAnswer enormous(qint64 length);
    /// `answer`, not before answerHeld().
    static ScriptedAnswer late(ScriptedAnswer answer);
    static ScriptedAnswer silence();
};

/// An HTTP or HTTPS server on loopback whose every answer a test says. It runs on the test's own event
/// loop. HTTPS uses a certificate of its own making, which nobody trusts.
class ScriptedHttp : public QTcpServer
{
    Q_OBJECT

public:
    enum class Security { Plain, Tls };
    explicit ScriptedHttp(Security security = Security::Plain);

    /// "127.0.0.1:PORT".
    QString host() const;
    QUrl url(const QString &pathAndQuery = QStringLiteral("/")) const;

    /// Answers of the next requests, in order; after them `fallback` is used.
    void enqueue(const ScriptedAnswer &answer) { m_answers.append(answer); }
    /// Sends what has been held back, on the connections that are still open.
    void answerHeld();
    /// Ends as a killed process would: every connection is reset and nobody listens any more.
    void kill();
    void clear();

    ScriptedAnswer fallback = ScriptedAnswer::body("{}");
    /// Where it is set it gives the answers that `fallback` would.
    std::function<ScriptedAnswer(const ScriptedRequest &)> answering;
    /// Called at each request, before it is answered.
    std::function<void(const ScriptedRequest &)> onRequest;
    QList<ScriptedRequest> requests;
    int connections = 0;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void read(QTcpSocket *socket);
    void send(QTcpSocket *socket, const ScriptedAnswer &answer);

    Security m_security;
    QList<ScriptedAnswer> m_answers;
    QHash<QTcpSocket *, QByteArray> m_received;
    QList<QPair<QPointer<QTcpSocket>, ScriptedAnswer>> m_held;
};
