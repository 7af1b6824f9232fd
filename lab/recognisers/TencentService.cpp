#include "recognisers/TencentService.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QSet>
#include <QUuid>
#include <QtEndian>

#include <openssl/evp.h>

namespace lab {

namespace {

constexpr int longestAudio = 60 * 32000 + 32000;
constexpr int wavHeader = 44;

using Error = TencentService::Error;

Error error(const char *code, const QString &message = {})
{
    return {QLatin1String(code), message};
}

/// The service's own words for the errors that it is asked for most.
QString messageOf(const QString &code)
{
    static const QHash<QString, QString> messages{
        {QStringLiteral("AuthFailure.SecretIdNotFound"),
         QStringLiteral("The SecretId is not found, please ensure that your SecretId is correct.")},
        {QStringLiteral("AuthFailure.SignatureFailure"),
         QStringLiteral(
             "The provided credentials could not be validated. Please check your signature is correct.")},
        {QStringLiteral("AuthFailure.SignatureExpire"),
         QStringLiteral("The provided signature has expired, please check your local time.")},
        {QStringLiteral("FailedOperation.UserHasNoAmount"), QStringLiteral("账号资源包耗尽。")},
    };
    return messages.value(code, QStringLiteral("The request cannot be handled."));
}

/// HMAC-SHA256 through OpenSSL's signing interface.
QByteArray mac(const QByteArray &key, const QByteArray &text)
{
    EVP_PKEY *const secret = EVP_PKEY_new_raw_private_key(
        EVP_PKEY_HMAC, nullptr, reinterpret_cast<const unsigned char *>(key.constData()), size_t(key.size()));
    EVP_MD_CTX *const context = EVP_MD_CTX_new();
    unsigned char out[EVP_MAX_MD_SIZE];
    size_t length = sizeof out;
    const bool made =
        EVP_DigestSignInit(context, nullptr, EVP_sha256(), nullptr, secret) == 1 &&
        EVP_DigestSign(context, out, &length, reinterpret_cast<const unsigned char *>(text.constData()),
                       size_t(text.size())) == 1;
    EVP_MD_CTX_free(context);
    EVP_PKEY_free(secret);
    return made ? QByteArray(reinterpret_cast<const char *>(out), int(length)) : QByteArray();
}

QByteArray digest(const QByteArray &text)
{
    unsigned char out[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(text.constData(), size_t(text.size()), out, &length, EVP_sha256(), nullptr);
    return QByteArray(reinterpret_cast<const char *>(out), int(length)).toHex();
}

/// The parts of "TC3-HMAC-SHA256 Credential=ID/DATE/SERVICE/tc3_request, SignedHeaders=A;B, Signature=HEX".
struct Authorization
{
    QList<QByteArray> credential;
    QByteArray signedHeaders;
    QByteArray signature;

    static Authorization read(const QByteArray &header)
    {
        Authorization parts;
        const QByteArray scheme = "TC3-HMAC-SHA256 ";
        if (!header.startsWith(scheme)) {
            return parts;
        }
        for (const QByteArray &field : header.mid(scheme.size()).split(',')) {
            const QByteArray text = field.trimmed();
            const QByteArray value = text.mid(text.indexOf('=') + 1);
            if (text.startsWith("Credential=")) {
                parts.credential = value.split('/');
            } else if (text.startsWith("SignedHeaders=")) {
                parts.signedHeaders = value;
            } else if (text.startsWith("Signature=")) {
                parts.signature = value;
            }
        }
        return parts;
    }
};

} // namespace

TencentService::TencentService(QByteArray secretId, QByteArray secretKey, Recogniser recogniser, Note note,
                               QObject *parent)
    : QObject(parent)
    , m_secretId(std::move(secretId))
    , m_secretKey(std::move(secretKey))
    , m_recogniser(std::move(recogniser))
    , m_note(std::move(note))
    , m_texts{QStringLiteral("今天天气很好，我们去公园。")}
{
}

void TencentService::setError(const Error &error, int count)
{
    m_error = error;
    m_errorCount = error.code.isEmpty() ? 0 : count;
}

Error TencentService::checkSignature(const HttpRequest &request) const
{
    if (request.method != "POST" || request.target != "/" ||
        !request.headers.value("content-type").startsWith("application/json")) {
        return error("UnsupportedProtocol",
                     QStringLiteral("POST / with application/json is what is served."));
    }
    for (const char *name : {"authorization", "x-tc-action", "x-tc-version", "x-tc-timestamp"}) {
        if (request.headers.value(name).isEmpty()) {
            return error("MissingParameter",
                         QStringLiteral("The request is missing the header `%1`.").arg(QLatin1String(name)));
        }
    }
    if (request.headers.value("x-tc-version") != "2019-06-14") {
        return error("NoSuchVersion", QStringLiteral("The version does not exist."));
    }
    if (request.headers.value("x-tc-action") != "SentenceRecognition") {
        return error("InvalidAction", QStringLiteral("The action does not exist."));
    }

    const QByteArray stamp = request.headers.value("x-tc-timestamp");
    const qint64 sent = stamp.toLongLong();
    const qint64 now = QDateTime::currentSecsSinceEpoch() + m_clockOffset;
    if (qAbs(now - sent) > ClockTolerance) {
        return error("AuthFailure.SignatureExpire");
    }
    const Authorization given = Authorization::read(request.headers.value("authorization"));
    const QByteArray date =
        QDateTime::fromSecsSinceEpoch(sent, Qt::UTC).date().toString(Qt::ISODate).toLatin1();
    const QList<QByteArray> names = given.signedHeaders.split(';');
    if (given.credential.size() != 4 || given.credential[1] != date || given.credential[2] != "asr" ||
        given.credential[3] != "tc3_request" || !names.contains("content-type") || !names.contains("host")) {
        return error("AuthFailure.InvalidAuthorization",
                     QStringLiteral("The authorization header is not as the scheme has it."));
    }
    if (given.credential[0] != m_secretId) {
        return error("AuthFailure.SecretIdNotFound");
    }
    QByteArray headers;
    for (const QByteArray &name : names) {
        headers += name + ':' + request.headers.value(name).trimmed().toLower() + '\n';
    }
    const QByteArray canonical =
        request.method + "\n/\n\n" + headers + '\n' + given.signedHeaders + '\n' + digest(request.body);
    const QByteArray toSign =
        "TC3-HMAC-SHA256\n" + stamp + '\n' + date + "/asr/tc3_request\n" + digest(canonical);
    const QByteArray key = mac(mac(mac("TC3" + m_secretKey, date), "asr"), "tc3_request");
    return mac(key, toSign).toHex() == given.signature ? Error{} : error("AuthFailure.SignatureFailure");
}

Error TencentService::checkBody(const QJsonObject &body, QByteArray &pcm)
{
    static const QSet<QString> languages{QStringLiteral("16k_zh"),         QStringLiteral("16k_ca"),
                                         QStringLiteral("16k_zh_medical"), QStringLiteral("16k_zh_dialect"),
                                         QStringLiteral("16k_en"),         QStringLiteral("16k_ja")};
    if (body.isEmpty()) {
        return error("InvalidParameter.ErrorParsequest", QStringLiteral("The body is no JSON object."));
    }
    const auto number = [&body](const char *name) { return body.value(QLatin1String(name)).toInt(-1); };
    const auto text = [&body](const char *name) { return body.value(QLatin1String(name)).toString(); };
    if (number("ProjectId") != 0 || number("SubServiceType") != 2 || text("UsrAudioKey").isEmpty()) {
        return error("InvalidParameter.ErrorParamsMissing",
                     QStringLiteral("A parameter is missing or wrong."));
    }
    if (!languages.contains(text("EngSerViceType"))) {
        return error("InvalidParameterValue.ErrorInvalidEngservice",
                     QStringLiteral("The parameter `EngSerViceType` is invalid."));
    }
    if (text("VoiceFormat") != QLatin1String("wav")) {
        return error("InvalidParameterValue.ErrorInvalidVoiceFormat",
                     QStringLiteral("The parameter `VoiceFormat` is invalid."));
    }
    if (number("SourceType") != 1) {
        return error("InvalidParameterValue.ErrorInvalidSourceType",
                     QStringLiteral("The parameter `SourceType` is invalid."));
    }
    const auto audio =
        QByteArray::fromBase64Encoding(text("Data").toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    const QByteArray wav =
        audio.decodingStatus == QByteArray::Base64DecodingStatus::Ok ? *audio : QByteArray();
    const auto at = [&wav](int offset) { return qFromLittleEndian<quint16>(wav.constData() + offset); };
    if (wav.size() < wavHeader || !wav.startsWith("RIFF") || wav.mid(8, 8) != "WAVEfmt " || at(20) != 1 ||
        at(22) != 1 || at(24) != 16000 || at(34) != 16 || wav.mid(36, 4) != "data") {
        return error("InvalidParameterValue.ErrorInvalidVoicedata",
                     QStringLiteral("The audio is no 16 kHz 16-bit mono WAV file."));
    }
    pcm = wav.mid(wavHeader); // the lengths in the header are not looked at: the file ends where it ends
    if (pcm.size() > longestAudio) {
        return error("InvalidParameterValue.ErrorVoicedataTooLong",
                     QStringLiteral("The audio is longer than 60 s."));
    }
    return {};
}

void TencentService::handle(const HttpRequest &request, const LabHttpServer::Reply &reply)
{
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QByteArray pcm;
    Error problem = checkSignature(request);
    if (problem.code.isEmpty()) {
        problem = checkBody(body, pcm);
    }
    if (m_errorCount != 0) {
        problem = m_error;
        m_errorCount -= m_errorCount > 0 ? 1 : 0;
    }
    QJsonObject note{{QStringLiteral("service"), QStringLiteral("tencent")},
                     {QStringLiteral("pcmBytes"), pcm.size()},
                     {QStringLiteral("requestBytes"), request.body.size()}};
    QJsonObject fields = body;
    fields.remove(QStringLiteral("Data"));
    note.insert(QStringLiteral("fields"), fields);
    if (!problem.code.isEmpty()) {
        answer(reply, note, problem, {});
        return;
    }
    if (body.value(QStringLiteral("EngSerViceType")).toString() != QLatin1String("16k_en")) {
        const QString text = m_texts.size() > 1 ? m_texts.takeFirst() : m_texts.value(0);
        answer(reply, note, {}, text);
        return;
    }
    m_recogniser(pcm, [this, reply, note](const QString &text) { answer(reply, note, {}, text); });
}

void TencentService::answer(const LabHttpServer::Reply &reply, QJsonObject note, const Error &error,
                            const QString &text)
{
    note.insert(QStringLiteral("code"), error.code);
    note.insert(QStringLiteral("text"), text);
    m_note(note);
    QJsonObject response{{QStringLiteral("RequestId"), QUuid::createUuid().toString(QUuid::WithoutBraces)}};
    if (error.code.isEmpty()) {
        response.insert(QStringLiteral("Result"), text);
    } else {
        response.insert(QStringLiteral("Error"),
                        QJsonObject{{QStringLiteral("Code"), error.code},
                                    {QStringLiteral("Message"),
                                     error.message.isEmpty() ? messageOf(error.code) : error.message}});
    }
    // Errors too come with status 200.
    reply(
        {200, "application/json",
         QJsonDocument(QJsonObject{{QStringLiteral("Response"), response}}).toJson(QJsonDocument::Compact)});
}

} // namespace lab
