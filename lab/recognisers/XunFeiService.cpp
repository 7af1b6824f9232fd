#include "recognisers/XunFeiService.h"

#include "recognisers/SpeechDecoder.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>
#include <QWebSocket>
#include <QtConcurrent>

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <algorithm>
#include <vector>

namespace lab {

namespace {

constexpr int bytesPerMs = 32;
constexpr int clockSkewSeconds = 300;
constexpr int longestHeaderBytes = 16 * 1024;
constexpr int longestAudioText = 13000; ///< base64 characters of one frame
constexpr int silenceLimitMs = 10000;   ///< without a frame
constexpr int sessionLimitMs = 60000;
constexpr int hugeBytes = 8 * 1024 * 1024;

enum Code {
    Success = 0,
    SessionTimeout = 10114,
    NotJson = 10160,
    BadBase64 = 10161,
    BadParameter = 10163,
    BadHandle = 10165,
    ReadTimeout = 10200,
    BadAppId = 10313,
    NotLicensed = 11200,
};

struct ErrorText
{
    int code;
    const char *text;
};

/// The numbers of the service's public error table.
constexpr ErrorText errorTexts[] = {
    {10105, "illegal access"},
    {10106, "invalid parameter"},
    {10107, "illegal parameter"},
    {10110, "no license"},
    {10114, "session timeout"},
    {10139, "invalid parameter"},
    {10160, "parse request json error"},
    {10161, "parse base64 string error"},
    {10163, "param validate error"},
    {10165, "invalid handle"},
    {10200, "read data timeout"},
    {10222, "context deadline exceeded"},
    {10223, "RemoteLB: can't find valued addr"},
    {10313, "invalid appid"},
    {10317, "invalid version"},
    {10700, "not authority"},
    {10800, "over max connect limit"},
    {11200, "auth no license"},
    {11201, "auth no enough license"},
};

const char *errorText(int code)
{
    for (const ErrorText &row : errorTexts) {
        if (row.code == code) {
            return row.text;
        }
    }
    return "engine error";
}

const QStringList &languages()
{
    static const QStringList known = {
        QStringLiteral("zh_cn"), QStringLiteral("en_us"), QStringLiteral("ja_jp"), QStringLiteral("ko_kr"),
        QStringLiteral("ru-ru"), QStringLiteral("fr_fr"), QStringLiteral("es_es")};
    return known;
}

QByteArray hmacSha256(const QByteArray &key, const QByteArray &text)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    HMAC(EVP_sha256(), key.constData(), key.size(), reinterpret_cast<const unsigned char *>(text.constData()),
         static_cast<std::size_t>(text.size()), digest, &length);
    return QByteArray(reinterpret_cast<const char *>(digest), static_cast<int>(length)).toBase64();
}

/// A value of the query as it came, percent-decoded; a plus sign stays one.
QByteArray queryValue(const QByteArray &query, const QByteArray &name)
{
    for (const QByteArray &item : query.split('&')) {
        if (item.startsWith(name + '=')) {
            return QByteArray::fromPercentEncoding(item.mid(name.size() + 1));
        }
    }
    return {};
}

/// An HTTP date; the blank after the weekday's comma may be missing.
QDateTime httpDate(const QString &text)
{
    const int comma = text.indexOf(QLatin1Char(','));
    if (comma != 3) {
        return {};
    }
    QDateTime date =
        QLocale::c().toDateTime(text.mid(comma + 1).trimmed(), QStringLiteral("dd MMM yyyy HH:mm:ss 'GMT'"));
    date.setTimeSpec(Qt::UTC);
    return date;
}

bool isBase64(const QByteArray &text)
{
    static const QRegularExpression form(QStringLiteral("^[A-Za-z0-9+/]*={0,2}$"));
    return text.size() % 4 == 0 && form.match(QString::fromLatin1(text)).hasMatch();
}

QJsonArray words(const QString &text)
{
    QJsonArray ws;
    for (int i = 0; i < text.size(); i += 2) {
        const QJsonObject word{{QStringLiteral("w"), text.mid(i, 2)}, {QStringLiteral("sc"), 0}};
        ws.append(QJsonObject{{QStringLiteral("bg"), 0}, {QStringLiteral("cw"), QJsonArray{word}}});
    }
    return ws;
}

double nowMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

QJsonObject noteOf(const char *what, int session)
{
    return {{QStringLiteral("service"), QStringLiteral("xunfei")},
            {QStringLiteral("event"), QLatin1String(what)},
            {QStringLiteral("session"), session}};
}

} // namespace

struct XunFeiService::Session
{
    QPointer<QWebSocket> socket;
    QPointer<QTcpSocket> transport;
    int number = 0;
    Account account;
    QString language;
    bool corrects = false; ///< the client takes corrections ("wpgs")
    bool begun = false;
    bool ended = false;
    bool answered = false; ///< with the last result, an error or a fault: nothing else follows
    QByteArray pcm;
    QString text;
    int shown = 0; ///< characters of `text` that partial results have given
    int results = 0;
    Order fault;
    Order error;
    QTimer silence, limit;
    std::vector<double> arrivals; ///< of the sound's blocks, less the time that their end has in the sound
};

XunFeiService::XunFeiService(QList<Account> accounts, QStringList signedHosts, Note note, QObject *parent)
    : QTcpServer(parent)
    , m_accounts(std::move(accounts))
    , m_signedHosts(std::move(signedHosts))
    , m_note(std::move(note))
    , m_webSockets(QStringLiteral("lab"), QWebSocketServer::NonSecureMode)
{
    m_worker.setMaxThreadCount(1);
    connect(&m_webSockets, &QWebSocketServer::newConnection, this, &XunFeiService::accept);
    reset();
}

XunFeiService::~XunFeiService()
{
    m_worker.waitForDone();
}

bool XunFeiService::start(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

void XunFeiService::reset()
{
    m_texts = QStringList{QStringLiteral("今天天气很好，我们去公园。")};
    m_english.clear();
    m_partialsMs = 0;
    m_error = m_refusal = m_fault = {};
    m_errorAtEnd = false;
}

bool XunFeiService::control(const QUrlQuery &query)
{
    const auto value = [&query](const char *name) {
        return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
    };
    const auto has = [&query](const char *name) { return query.hasQueryItem(QLatin1String(name)); };
    static const QStringList faults = {QStringLiteral("handshake-stall"),
                                       QStringLiteral("handshake-delay"),
                                       QStringLiteral("stall"),
                                       QStringLiteral("close"),
                                       QStringLiteral("cut"),
                                       QStringLiteral("garbage"),
                                       QStringLiteral("binary"),
                                       QStringLiteral("huge"),
                                       QStringLiteral("protocol"),
                                       QStringLiteral("after-end"),
                                       QStringLiteral("silence-end")};
    const int count = has("count") ? value("count").toInt() : 1;
    if (has("texts")) {
        m_texts = value("texts").split(QLatin1Char('|'));
    } else if (has("english")) {
        m_english = value("english");
    } else if (has("partials")) {
        m_partialsMs = value("partials").toInt();
    } else if (has("error")) {
        m_error = {value("error"), value("error").toInt(), count};
        m_errorAtEnd = value("at") == QLatin1String("end");
    } else if (has("refuse")) {
        m_refusal = {value("refuse"), value("refuse").toInt(), count};
    } else if (has("fault") && faults.contains(value("fault"))) {
        m_fault = {value("fault"), value("value").toInt(), count};
    } else {
        return false;
    }
    return true;
}

bool XunFeiService::take(Order &order)
{
    if (order.count == 0) {
        return false;
    }
    order.count -= order.count > 0 ? 1 : 0;
    return true;
}

// Handshake

int XunFeiService::verify(const QByteArray &target, const QDateTime &now, QString *reason) const
{
    const auto refuse = [reason](int status, const char *why) {
        *reason = QLatin1String(why);
        return status;
    };
    const int mark = target.indexOf('?');
    if (target.left(mark) != "/v2/iat") {
        return refuse(404, "no route");
    }
    const QByteArray query = target.mid(mark + 1);
    const QByteArray host = queryValue(query, "host");
    const QByteArray date = queryValue(query, "date");
    const QByteArray authorization = queryValue(query, "authorization");
    if (mark < 0 || authorization.isEmpty()) {
        return refuse(401, "Unauthorized");
    }
    const QDateTime moment = httpDate(QString::fromLatin1(date));
    if (!moment.isValid() || std::abs(moment.secsTo(now)) > clockSkewSeconds) {
        return refuse(403, "HMAC signature cannot be verified, a valid date or x-date header is required for "
                           "HMAC Authentication");
    }
    static const QRegularExpression form(
        QStringLiteral("^api_key=\"([^\"]*)\", algorithm=\"hmac-sha256\", "
                       "headers=\"host date request-line\", signature=\"([^\"]*)\"$"));
    const auto parts = form.match(QString::fromUtf8(QByteArray::fromBase64(authorization)));
    if (!isBase64(authorization) || !parts.hasMatch()) {
        return refuse(401, "HMAC signature cannot be verified");
    }
    const auto account = std::find_if(m_accounts.begin(), m_accounts.end(), [&parts](const Account &known) {
        return known.apiKey == parts.captured(1);
    });
    if (account == m_accounts.end()) {
        return refuse(401, "HMAC signature cannot be verified: fail to retrieve credential");
    }
    const QByteArray origin = "host: " + host + "\ndate: " + date + "\nGET /v2/iat HTTP/1.1";
    if (!m_signedHosts.contains(QString::fromLatin1(host)) ||
        hmacSha256(account->apiSecret.toUtf8(), origin) != parts.captured(2).toLatin1()) {
        return refuse(401, "HMAC signature does not match");
    }
    return 0;
}

void XunFeiService::incomingConnection(qintptr descriptor)
{
    auto *socket = new QTcpSocket(this);
    socket->setSocketDescriptor(descriptor);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readHandshake(socket); });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
}

void XunFeiService::readHandshake(QTcpSocket *socket)
{
    const QByteArray head = socket->peek(longestHeaderBytes);
    if (!head.contains("\r\n\r\n")) {
        if (head.size() >= longestHeaderBytes) {
            socket->abort();
        }
        return;
    }
    disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
    if (m_fault.kind == QLatin1String("handshake-stall") && take(m_fault)) {
        m_note(noteOf("handshake stalled", 0));
        return;
    }
    QString reason;
    int status =
        verify(head.left(head.indexOf("\r\n")).split(' ').value(1), QDateTime::currentDateTimeUtc(), &reason);
    if (take(m_refusal)) {
        status = m_refusal.value;
        reason = QStringLiteral("as ordered");
    }
    if (status != 0) {
        QJsonObject note = noteOf("handshake refused", 0);
        note.insert(QStringLiteral("status"), status);
        note.insert(QStringLiteral("reason"), reason);
        m_note(note);
        const QByteArray body = "{\"message\":\"" + reason.toUtf8() + "\"}";
        socket->write("HTTP/1.1 " + QByteArray::number(status) + " X\r\nContent-Type: application/json\r\n" +
                      "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
        return;
    }
    disconnect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater); // the WebSocket's now
    m_transports.insert(socket->peerPort(), socket);
    if (m_fault.kind == QLatin1String("handshake-delay") && take(m_fault)) {
        QTimer::singleShot(m_fault.value, socket, [this, socket] { m_webSockets.handleConnection(socket); });
        return;
    }
    m_webSockets.handleConnection(socket);
}

void XunFeiService::accept()
{
    QWebSocket *const socket = m_webSockets.nextPendingConnection();
    if (socket == nullptr) {
        return;
    }
    const auto session = std::make_shared<Session>();
    session->socket = socket;
    session->number = ++m_sessions;
    session->transport = m_transports.take(socket->peerPort());
    const QByteArray query = socket->requestUrl().query(QUrl::FullyEncoded).toLatin1();
    const QString authorization =
        QString::fromUtf8(QByteArray::fromBase64(queryValue(query, "authorization")));
    for (const Account &account : qAsConst(m_accounts)) {
        if (authorization.contains(QLatin1Char('"') + account.apiKey + QLatin1Char('"'))) {
            session->account = account;
        }
    }
    session->text = m_texts.size() > 1 ? m_texts.takeFirst() : m_texts.value(0);
    if (!m_fault.kind.startsWith(QLatin1String("handshake")) && take(m_fault)) {
        session->fault = m_fault;
    }
    if (take(m_error)) {
        session->error = m_error;
    }
    m_note(noteOf("open", session->number));
    connect(socket, &QWebSocket::textMessageReceived, this,
            [this, session](const QString &text) { takeFrame(session, text); });
    connect(socket, &QWebSocket::binaryMessageReceived, this,
            [this, session] { sendError(*session, NotJson); });
    connect(socket, &QWebSocket::disconnected, this, [this, session] { closed(*session); });
    const auto expire = [this, session](QTimer &timer, int milliseconds, int code) {
        timer.setSingleShot(true);
        connect(&timer, &QTimer::timeout, this, [this, raw = session.get(), code] { sendError(*raw, code); });
        timer.start(milliseconds);
    };
    expire(session->silence, silenceLimitMs, ReadTimeout);
    expire(session->limit, sessionLimitMs, SessionTimeout);
}

void XunFeiService::closed(Session &session)
{
    session.silence.stop();
    session.limit.stop();
    QJsonObject note = noteOf("closed", session.number);
    note.insert(QStringLiteral("closeCode"), int(session.socket->closeCode()));
    note.insert(QStringLiteral("audioBytes"), session.pcm.size());
    if (!session.arrivals.empty()) {
        std::sort(session.arrivals.begin(), session.arrivals.end());
        const std::size_t count = session.arrivals.size();
        const auto late = [&session](std::size_t index) {
            return session.arrivals[index] - session.arrivals.front();
        };
        note.insert(QStringLiteral("blocks"), int(count));
        note.insert(QStringLiteral("lateMsP50"), late(count / 2));
        note.insert(QStringLiteral("lateMsP95"), late(count * 95 / 100));
        note.insert(QStringLiteral("lateMsMax"), late(count - 1));
    }
    m_note(note);
    session.socket->deleteLater();
}

// Frames

int XunFeiService::checkFirst(Session &session, const QJsonObject &frame) const
{
    const QString appId =
        frame.value(QStringLiteral("common")).toObject().value(QStringLiteral("app_id")).toString();
    const QJsonObject business = frame.value(QStringLiteral("business")).toObject();
    session.language = business.value(QStringLiteral("language")).toString();
    session.corrects = business.value(QStringLiteral("dwa")) == QLatin1String("wpgs");
    if (appId != session.account.appId) {
        return BadAppId;
    }
    const bool accent = !business.value(QStringLiteral("accent")).toString().isEmpty();
    const double ptt = business.value(QStringLiteral("ptt")).toDouble(-1);
    const bool chinese = session.language == QLatin1String("zh_cn");
    return business.value(QStringLiteral("domain")) == QLatin1String("iat") &&
                   languages().contains(session.language) && accent == chinese && (ptt == 0.0 || ptt == 1.0)
               ? Success
               : BadParameter;
}

int XunFeiService::checkFrame(Session &session, const QJsonObject &frame, QByteArray &audio) const
{
    const QJsonObject data = frame.value(QStringLiteral("data")).toObject();
    const QJsonValue status = data.value(QStringLiteral("status"));
    const QByteArray text = data.value(QStringLiteral("audio")).toString().toLatin1();
    static const QRegularExpression format(QStringLiteral("^audio/L16;rate=(8000|16000)$"));
    if (!status.isDouble() || status.toInt(-1) < 0 || status.toInt() > 2 || text.size() > longestAudioText ||
        (status.toInt() != 2 &&
         (!format.match(data.value(QStringLiteral("format")).toString()).hasMatch() ||
          data.value(QStringLiteral("encoding")) != QLatin1String("raw") || text.isEmpty()))) {
        return BadParameter;
    }
    if (!isBase64(text)) {
        return BadBase64;
    }
    audio = QByteArray::fromBase64(text);
    if (session.ended || (status.toInt() == 0) == session.begun) {
        return BadHandle; // a first frame in the middle, or any other before it
    }
    if (!session.begun) {
        session.begun = true;
        return checkFirst(session, frame);
    }
    return frame.contains(QStringLiteral("common")) ? BadParameter : Success;
}

void XunFeiService::takeFrame(const std::shared_ptr<Session> &session, const QString &text)
{
    const double arrival = nowMs();
    session->silence.start();
    QJsonParseError parsed{};
    const QJsonObject frame = QJsonDocument::fromJson(text.toUtf8(), &parsed).object();
    QByteArray audio;
    const int status =
        frame.value(QStringLiteral("data")).toObject().value(QStringLiteral("status")).toInt(-1);
    int code = frame.isEmpty() ? int(NotJson) : checkFrame(*session, frame, audio);
    session->pcm += audio;
    if (code == Success && status == 1) {
        session->arrivals.push_back(arrival - double(session->pcm.size()) / bytesPerMs);
    }
    QJsonObject note = noteOf("frame", session->number);
    note.insert(QStringLiteral("status"), status);
    note.insert(QStringLiteral("bytes"), audio.size());
    note.insert(QStringLiteral("audioBytes"), session->pcm.size());
    if (frame.contains(QStringLiteral("business"))) {
        note.insert(QStringLiteral("business"), frame.value(QStringLiteral("business")));
    }
    note.insert(QStringLiteral("code"), code);
    m_note(note);

    if (session->error.value != 0 && (!m_errorAtEnd || status == 2)) {
        code = session->error.value;
    }
    if (code != Success) {
        sendError(*session, code);
        return;
    }
    if (status == 0 && session->fault.kind == QLatin1String("close")) {
        session->answered = true;
        session->socket->close(QWebSocketProtocol::CloseCodeGoingAway);
        return;
    }
    if (status == 2) {
        session->ended = true;
        finish(session);
    } else if (session->fault.kind != QLatin1String("stall")) {
        sendPartials(*session);
    }
}

// Results

void XunFeiService::sendPartials(Session &session)
{
    if (m_partialsMs <= 0 || session.answered) {
        return;
    }
    // Two characters each; the last ones are left for the end.
    const int due = session.pcm.size() / bytesPerMs / m_partialsMs;
    while (session.results < due && session.shown + 2 < session.text.size()) {
        const QString piece = session.text.mid(session.shown, 2);
        if (!session.corrects) {
            session.shown += 2;
            sendResult(session, piece, 1);
        } else if (session.results % 2 == 0) { // a guess, whose second character is wrong
            sendResult(session, piece.left(1) + QStringLiteral("？"), 1,
                       {{QStringLiteral("pgs"), QStringLiteral("apd")}});
        } else {
            session.shown += 2;
            sendResult(session, piece, 1,
                       {{QStringLiteral("pgs"), QStringLiteral("rpl")},
                        {QStringLiteral("rg"), QJsonArray{session.results, session.results}}});
        }
    }
}

bool XunFeiService::sendFault(Session &session)
{
    const QString &kind = session.fault.kind;
    if (kind == QLatin1String("cut")) {
        session.socket->abort();
    } else if (kind == QLatin1String("garbage")) {
        session.socket->sendTextMessage(QStringLiteral("{\"code\":0,\"data\":[\u0001"));
    } else if (kind == QLatin1String("binary")) {
        session.socket->sendBinaryMessage(QByteArray("\x00\xff\xfe\x7f", 4));
    } else if (kind == QLatin1String("huge")) {
        session.socket->sendTextMessage(QString(hugeBytes, QLatin1Char('x')));
    } else if (kind == QLatin1String("protocol") && session.transport != nullptr) {
        session.transport->write(QByteArray::fromHex("b3ff7fffffffffffffff")); // reserved bits, absurd length
        session.transport->flush();
    } else if (kind == QLatin1String("silence-end")) {
        session.socket->close();
    } else if (kind != QLatin1String("stall")) {
        return false;
    }
    session.answered = true;
    return true;
}

void XunFeiService::finish(const std::shared_ptr<Session> &session)
{
    if (session->answered || sendFault(*session)) {
        return;
    }
    if (session->language != QLatin1String("en_us")) {
        sendLast(*session, session->text);
        return;
    }
    if (!m_english.isEmpty()) {
        sendLast(*session, m_english);
        return;
    }
    if (!m_decoder) {
        m_decoder = std::make_shared<SpeechDecoder>();
    }
    QtConcurrent::run(&m_worker, [this, session, decoder = m_decoder, pcm = session->pcm] {
        const QString text = decoder->recognise(pcm);
        QMetaObject::invokeMethod(
            this, [this, session, text] { sendLast(*session, text); }, Qt::QueuedConnection);
    });
}

void XunFeiService::sendLast(Session &session, const QString &text)
{
    if (session.answered) {
        return;
    }
    QJsonObject more;
    if (session.corrects) {
        more.insert(QStringLiteral("pgs"), QStringLiteral("apd"));
        if (session.results % 2 == 1) { // the last guess is still open
            more.insert(QStringLiteral("pgs"), QStringLiteral("rpl"));
            more.insert(QStringLiteral("rg"), QJsonArray{session.results, session.results});
        }
    }
    sendResult(session, text.mid(session.shown), 2, more);
    session.answered = true;
    if (session.fault.kind == QLatin1String("after-end")) {
        for (int i = 0; i < 3; ++i) {
            sendResult(session, QStringLiteral("多余"), 2);
        }
    }
}

void XunFeiService::sendResult(Session &session, const QString &text, int status, const QJsonObject &more)
{
    QJsonObject result{{QStringLiteral("sn"), ++session.results},
                       {QStringLiteral("ls"), status == 2},
                       {QStringLiteral("bg"), 0},
                       {QStringLiteral("ed"), 0},
                       {QStringLiteral("ws"), words(text)}};
    for (auto item = more.begin(); item != more.end(); ++item) {
        result.insert(item.key(), item.value());
    }
    const QJsonObject data{{QStringLiteral("status"), status}, {QStringLiteral("result"), result}};
    const QJsonObject message{{QStringLiteral("code"), int(Success)},
                              {QStringLiteral("message"), QStringLiteral("success")},
                              {QStringLiteral("sid"), QStringLiteral("iat%1@lab").arg(session.number)},
                              {QStringLiteral("data"), data}};
    if (session.socket.isNull()) {
        return; // the client did not wait for it
    }
    session.socket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    QJsonObject note = noteOf("result", session.number);
    note.insert(QStringLiteral("status"), status);
    note.insert(QStringLiteral("text"), text);
    m_note(note);
}

void XunFeiService::sendError(Session &session, int code)
{
    if (session.answered) {
        return;
    }
    session.answered = true;
    const QJsonObject message{{QStringLiteral("code"), code},
                              {QStringLiteral("message"), QLatin1String(errorText(code))},
                              {QStringLiteral("sid"), QStringLiteral("iat%1@lab").arg(session.number)}};
    session.socket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    QJsonObject note = noteOf("error", session.number);
    note.insert(QStringLiteral("code"), code);
    m_note(note);
    session.socket->close();
}

} // namespace lab
