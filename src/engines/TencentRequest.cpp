#include "engines/TencentRequest.h"

#include "engines/WavImage.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

namespace {

const QByteArray contentType = QByteArrayLiteral("application/json; charset=utf-8");
constexpr char scheme[] = "https://";

} // namespace

QByteArray tencentPayload(const TencentUtterance &utterance)
{
    // None has been chosen where an input method of the computer was the first engine of all.
    const QString language = utterance.voiceType.isEmpty() ? QStringLiteral("16k_zh") : utterance.voiceType;
    QJsonObject fields{
        {QStringLiteral("UsrAudioKey"), QStringLiteral("test")},
        {QStringLiteral("SubServiceType"), 2},
        {QStringLiteral("ProjectId"), 0},
        {QStringLiteral("EngSerViceType"), language},
        {QStringLiteral("VoiceFormat"), QStringLiteral("wav")},
        {QStringLiteral("FilterPunc"), utterance.keepPunctuation ? 0 : 1},
        {QStringLiteral("Data"), QString()},
        {QStringLiteral("SourceType"), 1},
    };
    if (utterance.plainNumbers) {
        fields.insert(QStringLiteral("ConvertNumMode"), 0);
    }
    // The audio needs no escaping and can be megabytes, so it is not sent through the JSON writer: that
    // would take most of the time in which the window is blocked before anything is sent. In a value the
    // quotes of this key would be escaped, so that it is found once.
    const QByteArray json = QJsonDocument(fields).toJson();
    const QByteArray key = QByteArrayLiteral("\"Data\": \"");
    const int at = json.indexOf(key) + key.size();
    const QByteArray audio = wavImage(utterance.pcm).toBase64();
    QByteArray payload;
    payload.reserve(json.size() + audio.size());
    payload += QByteArray::fromRawData(json.constData(), at);
    payload += audio;
    payload += QByteArray::fromRawData(json.constData() + at, json.size() - at);
    return payload;
}

TencentRequest tencentRequest(const EngineEndpoints &endpoints, const Tc3Credential &credential,
                              const QByteArray &payload, qint64 timestamp)
{
    const QByteArray address = endpoints.TencentHost.toUtf8();
    const int schemeEnd = address.indexOf("://");
    const QByteArray host = schemeEnd < 0 ? address : address.mid(schemeEnd + 3);

    Tc3Request toSign;
    toSign.service = QByteArrayLiteral("asr");
    toSign.canonicalHeaders = "content-type:" + contentType + "\nhost:" + host + '\n';
    toSign.signedHeaders = QByteArrayLiteral("content-type;host");
    toSign.timestamp = timestamp;
    toSign.payload = payload;

    TencentRequest request;
    request.url = schemeEnd < 0 ? scheme + host : address;
    request.authorization = tc3Authorization(toSign, credential);
    request.headers = {
        "Authorization: " + request.authorization,
        "Content-Type: " + contentType,
        "Host: " + host,
        QByteArrayLiteral("X-TC-Action: SentenceRecognition"),
        "X-TC-Timestamp: " + QByteArray::number(timestamp),
        QByteArrayLiteral("X-TC-Version: 2019-06-14"),
        QByteArrayLiteral("X-TC-Region: "), // no region: libcurl leaves a header without a value out
    };
    request.payload = payload;
    return request;
}

} // namespace mevo
