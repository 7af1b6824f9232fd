#include "recognisers/BaiduService.h"

#include "recognisers/SpeechDecoder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrlQuery>
#include <QUuid>
#include <QtConcurrent>

#include <algorithm>

namespace lab {

namespace {

constexpr int bytesPerSecond = 32000;
constexpr int english = 1737;

int peakOf(const QByteArray &pcm)
{
    int peak = 0;
    for (int i = 0; i + 1 < pcm.size(); i += 2) {
        const auto sample = qint16(quint8(pcm[i]) | quint8(pcm[i + 1]) << 8);
        peak = std::max(peak, std::abs(int(sample)));
    }
    return peak;
}

const char *errorText(int number)
{
    switch (number) {
    case 3300:
        return "param error";
    case 3301:
        return "speech quality error.";
    case 3302:
        return "Access token invalid or no longer valid";
    case 3304:
        return "Open api qps request limit reached";
    case 3305:
        return "Open api daily request limit reached";
    case 3307:
        return "recognition error.";
    case 3308:
        return "speech too long";
    case 3314:
        return "speech too short";
    default:
        return "json speech error";
    }
}

} // namespace

BaiduService::BaiduService(QString clientId, QString clientSecret, Note note, QObject *parent)
    : QObject(parent)
    , m_clientId(std::move(clientId))
    , m_clientSecret(std::move(clientSecret))
    , m_note(std::move(note))
    , m_texts{QStringLiteral("今天天气很好，我们去公园。")}
    , m_decoder(std::make_shared<SpeechDecoder>())
{
    m_worker.setMaxThreadCount(1);
}

BaiduService::~BaiduService()
{
    m_worker.waitForDone();
}

void BaiduService::setError(int number, int count)
{
    m_error = number;
    m_errorCount = count;
}

void BaiduService::handleToken(const HttpRequest &request, const LabHttpServer::Reply &reply)
{
    const QUrlQuery form(QString::fromUtf8(request.body));
    const bool known =
        form.queryItemValue(QStringLiteral("grant_type")) == QLatin1String("client_credentials") &&
        form.queryItemValue(QStringLiteral("client_id")) == m_clientId &&
        form.queryItemValue(QStringLiteral("client_secret")) == m_clientSecret && request.method == "POST";
    m_note({{QStringLiteral("service"), QStringLiteral("baidu token")}, {QStringLiteral("accepted"), known}});
    if (!known) {
        const bool knownId = form.queryItemValue(QStringLiteral("client_id")) == m_clientId;
        reply({401, "application/json",
               knownId ? R"({"error":"invalid_client","error_description":"Client authentication failed"})"
                       : R"({"error":"invalid_client","error_description":"unknown client id"})"});
        return;
    }
    const QString token = QStringLiteral("24.") + QUuid::createUuid().toString(QUuid::Id128);
    m_tokens.insert(token);
    reply({200, "application/json",
           QJsonDocument(
               QJsonObject{{QStringLiteral("access_token"), token}, {QStringLiteral("expires_in"), 2592000}})
               .toJson(QJsonDocument::Compact)});
}

int BaiduService::checkSpeech(const QJsonObject &request, bool fast, const QSet<QString> &tokens,
                              QByteArray &pcm)
{
    const QString speech = request.value(QStringLiteral("speech")).toString();
    pcm = QByteArray::fromBase64(speech.toLatin1());
    static const QSet<int> languages = {1537, 1637, 1737, 1837, 1936};
    const int language = request.value(QStringLiteral("dev_pid")).toInt();
    if (request.value(QStringLiteral("format")).toString() != QLatin1String("pcm") ||
        request.value(QStringLiteral("rate")).toInt() != 16000 ||
        request.value(QStringLiteral("channel")).toVariant().toInt() != 1 ||
        request.value(QStringLiteral("cuid")).toString().isEmpty() ||
        (fast ? language != 80001 : !languages.contains(language)) ||
        request.value(QStringLiteral("len")).toInt(-1) != pcm.size()) {
        return 3300;
    }
    if (!tokens.contains(request.value(QStringLiteral("token")).toString())) {
        return 3302;
    }
    if (pcm.size() < bytesPerSecond * 3 / 10) {
        return 3314;
    }
    if (pcm.size() > 60 * bytesPerSecond + bytesPerSecond) {
        return 3308;
    }
    return peakOf(pcm) < 100 ? 3301 : 0;
}

void BaiduService::handleSpeech(const HttpRequest &request, const LabHttpServer::Reply &reply)
{
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QByteArray pcm;
    int error = request.method == "POST" && !body.isEmpty()
                    ? checkSpeech(body, request.path() == "/pro_api", m_tokens, pcm)
                    : 3300;
    if (m_error != 0 && m_errorCount != 0) {
        error = m_error;
        m_errorCount -= m_errorCount > 0 ? 1 : 0;
    }
    const int language = body.value(QStringLiteral("dev_pid")).toInt();
    QJsonObject note{{QStringLiteral("service"), QStringLiteral("baidu speech")},
                     {QStringLiteral("path"), QString::fromLatin1(request.path())},
                     {QStringLiteral("dev_pid"), language},
                     {QStringLiteral("lan"), body.value(QStringLiteral("lan"))},
                     {QStringLiteral("pcmBytes"), pcm.size()},
                     {QStringLiteral("requestBytes"), request.body.size()}};
    if (error != 0) {
        answer(reply, note, error, {});
        return;
    }
    if (language != english) {
        const QString text = m_texts.size() > 1 ? m_texts.takeFirst() : m_texts.value(0);
        answer(reply, note, 0, text);
        return;
    }
    recognise(pcm, [this, reply, note](const QString &text) {
        answer(reply, note, text.isEmpty() ? 3307 : 0, text);
    });
}

void BaiduService::recognise(const QByteArray &pcm, const std::function<void(const QString &)> &done)
{
    // Decoding takes a fraction of the speech's length.
    QtConcurrent::run(&m_worker, [this, decoder = m_decoder, pcm, done] {
        const QString text = decoder->recognise(pcm);
        QMetaObject::invokeMethod(
            this, [done, text] { done(text); }, Qt::QueuedConnection);
    });
}

void BaiduService::answer(const LabHttpServer::Reply &reply, const QJsonObject &note, int error,
                          const QString &text)
{
    QJsonObject noted = note;
    noted.insert(QStringLiteral("err_no"), error);
    noted.insert(QStringLiteral("text"), text);
    m_note(noted);
    QJsonObject body{{QStringLiteral("err_no"), error},
                     {QStringLiteral("err_msg"),
                      error == 0 ? QStringLiteral("success.") : QLatin1String(errorText(error))},
                     {QStringLiteral("sn"), QStringLiteral("lab")}};
    if (error == 0) {
        body.insert(QStringLiteral("result"), QJsonArray{text});
    }
    reply({200, "application/json", QJsonDocument(body).toJson(QJsonDocument::Compact)});
}

} // namespace lab
