#include "window/AccountCheck.h"

#include "engines/BaiduRequest.h"
#include "engines/BaiduToken.h"
#include "engines/TencentRequest.h"
#include "engines/XunFeiFrames.h"
#include "engines/XunFeiMessage.h"
#include "engines/XunFeiSigning.h"
#include "service/ProxyChoice.h"
#include "service/ReplyWait.h"
#include "translation/TranslationRequest.h"

#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QWebSocket>

#include <utility>

namespace mevo {

namespace {

constexpr int silenceBytes = 16000; ///< half a second of 16 kHz 16-bit mono PCM
constexpr int blockBytes = 1280;    ///< what one frame of XunFei's takes

QByteArray silence(int bytes)
{
    return QByteArray(bytes, '\0');
}

constexpr int shortestSecret = 8; ///< a shorter one would be found in words that have nothing to do with it

/// The services give values back in some of their messages.
QString withoutSecrets(QString text, const OwnAccounts::Values &values)
{
    for (const QString &value : values) {
        if (value.size() >= shortestSecret) {
            text.replace(value, secretHint(value));
        }
    }
    return text;
}

} // namespace

AccountCheck::AccountCheck(const MainState &state, const SystemFacts &facts, const Time &time,
                           EngineEndpoints endpoints, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_facts(facts)
    , m_time(time)
    , m_endpoints(std::move(endpoints))
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] { finish({AccountFault::TimeOut, {}}); });
}

AccountCheck::~AccountCheck()
{
    if (m_socket != nullptr) {
        m_socket->disconnect(this);
        m_socket->abort();
    }
}

void AccountCheck::start(AccountService service, const OwnAccounts::Values &values, Done done)
{
    m_values = values;
    m_done = std::move(done);
    m_limit.start(timeoutMs);
    m_manager.setProxy(chosenProxy(m_state).value_or(QNetworkProxy(QNetworkProxy::DefaultProxy)));
    const int fields = accountFields(service).size();
    for (int field = 0; field < fields; ++field) {
        if (m_values[std::size_t(field)].isEmpty()) {
            QTimer::singleShot(0, this, [this] { finish({AccountFault::Incomplete, {}}); });
            return;
        }
    }
    switch (service) {
    case AccountService::Baidu:
        checkBaidu();
        break;
    case AccountService::Tencent:
        checkTencent();
        break;
    case AccountService::XunFei:
        checkXunFei();
        break;
    case AccountService::BaiduTranslate:
        checkTranslation();
        break;
    }
}

void AccountCheck::finish(AccountVerdict verdict)
{
    m_limit.stop();
    if (m_socket != nullptr) {
        m_socket->disconnect(this);
    }
    verdict.detail = withoutSecrets(verdict.detail, m_values);
    if (const Done done = std::exchange(m_done, nullptr)) {
        done(verdict);
    }
}

void AccountCheck::send(const QNetworkRequest &request, const QByteArray &body, bool checkCertificate,
                        const Answer &answer)
{
    QNetworkRequest sent = request;
    if (!checkCertificate) {
        QSslConfiguration ssl = sent.sslConfiguration();
        ssl.setPeerVerifyMode(QSslSocket::VerifyNone);
        sent.setSslConfiguration(ssl);
    }
    QNetworkReply *const reply = body.isNull() ? m_manager.get(sent) : m_manager.post(sent, body);
    reply->setParent(this);
    limitReply(reply);
    connect(reply, &QNetworkReply::finished, this, [this, reply, answer] {
        reply->deleteLater();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (m_done == nullptr) {
            return; // its time is up
        }
        if (status == 0) {
            finish({AccountFault::NoNetwork, {}});
        } else {
            answer(status, reply->readAll());
        }
    });
}

void AccountCheck::checkBaidu()
{
    const QUrl url = baiduTokenUrl(m_endpoints);
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/x-www-form-urlencoded"));
    send(request, baiduTokenBody(m_values[0], m_values[1]), checksCertificate(m_endpoints, url),
         [this](int status, const QByteArray &body) {
             const AccountVerdict verdict = baiduTokenVerdict(status, body);
             if (verdict.fault == AccountFault::None) {
                 checkBaiduSpeech(baiduTokenOf(QString::fromUtf8(body)));
             } else {
                 finish(verdict);
             }
         });
}

void AccountCheck::checkBaiduSpeech(const QString &token)
{
    const QUrl url = baiduSpeechUrl(m_endpoints, false);
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    const QByteArray body =
        baiduRequestBody({false, QStringLiteral("1537"), token, m_facts.computerId(), silence(silenceBytes)});
    send(request, body, checksCertificate(m_endpoints, url),
         [this](int status, const QByteArray &answer) { finish(baiduSpeechVerdict(status, answer)); });
}

void AccountCheck::checkTencent()
{
    const QByteArray payload =
        tencentPayload({QStringLiteral("16k_zh"), false, false, silence(silenceBytes)});
    const TencentRequest signedRequest = tencentRequest(
        m_endpoints, {m_values[0].toUtf8(), m_values[1].toUtf8()}, payload, m_time.now().toSecsSinceEpoch());
    const QUrl url(QString::fromUtf8(signedRequest.url));
    QNetworkRequest request(url);
    for (const QByteArray &header : signedRequest.headers) {
        const int colon = header.indexOf(": ");
        if (header.size() > colon + 2) { // one without a value is not sent
            request.setRawHeader(header.left(colon), header.mid(colon + 2));
        }
    }
    // As its recognition does, it follows the environment's proxy.
    m_manager.setProxy(QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url)).value(0));
    send(request, payload, m_endpoints.VerifyCertificates,
         [this](int status, const QByteArray &answer) { finish(tencentVerdict(status, answer)); });
}

void AccountCheck::checkXunFei()
{
    const QString date = xunFeiDate(m_time.now());
    const QUrl url = xunFeiUrl(m_endpoints, {m_values[0], m_values[1], m_values[2]}, date, date);
    m_socket = new QWebSocket(QString(), QWebSocketProtocol::Version13, this);
    m_socket->setMaxAllowedIncomingMessageSize(longestXunFeiMessage);
    connect(m_socket, &QWebSocket::connected, this, [this] {
        const QByteArray first =
            xunFeiFirstFrame({m_values[0], QStringLiteral("mandarin"), false, false}, silence(blockBytes));
        m_socket->sendTextMessage(QString::fromLatin1(first));
        m_socket->sendTextMessage(QString::fromLatin1(xunFeiLastFrame()));
    });
    connect(m_socket, &QWebSocket::textMessageReceived, this,
            [this](const QString &message) { finish(xunFeiVerdict(message)); });
    connect(m_socket, &QWebSocket::disconnected, this, [this, url] {
        if (m_done != nullptr) {
            explainXunFei(url);
        }
    });
    m_socket->open(url);
}

/// A socket does not tell what a service that refuses it has said; the same address, asked plainly, does.
void AccountCheck::explainXunFei(const QUrl &url)
{
    QUrl plain = url;
    plain.setScheme(url.scheme() == QLatin1String("wss") ? QStringLiteral("https") : QStringLiteral("http"));
    send(QNetworkRequest(plain), {}, checksCertificate(m_endpoints, plain),
         [this](int status, const QByteArray &body) { finish(xunFeiRefusal(status, body)); });
}

void AccountCheck::checkTranslation()
{
    const TranslationRequest asked{m_values[0],
                                   m_values[1],
                                   int(m_time.now().toSecsSinceEpoch()),
                                   QStringLiteral("hello"),
                                   QStringLiteral("en"),
                                   QStringLiteral("zh")};
    const QByteArray query = translationQuery(asked, translationSign(asked));
    const QUrl url = QUrl::fromEncoded(translationAddress(m_endpoints).toEncoded() + '?' + query);
    send(QNetworkRequest(url), {}, checksCertificate(m_endpoints, url),
         [this](int status, const QByteArray &body) { finish(translationVerdict(status, body)); });
}

} // namespace mevo
