#include "engines/BaiduRequest.h"

#include "base/Endpoints.h"

#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

namespace {

constexpr int FastPid = 80001;
constexpr int MandarinPid = 1537;
/// Audio is encoded in pieces, a multiple of three bytes each, so that the text is not in memory twice:
/// touching fresh memory is what takes the time.
constexpr int Base64Piece = 3 * 16384;

int standardPid(const QString &voiceType)
{
    bool isNumber = false;
    const int pid = voiceType.toInt(&isNumber);
    return isNumber ? pid : MandarinPid;
}

} // namespace

QUrl baiduSpeechUrl(const EngineEndpoints &endpoints, bool fast)
{
    return fast ? serviceUrl("https", endpoints.BaiduSpeechHttpsHost, "/pro_api")
                : serviceUrl("http", endpoints.BaiduSpeechHost, "/server_api");
}

QUrl baiduTokenUrl(const EngineEndpoints &endpoints)
{
    return serviceUrl("http", endpoints.BaiduTokenHost, "/oauth/2.0/token?");
}

QByteArray baiduRequestBody(const BaiduRequest &request)
{
    QJsonObject fields{
        {QStringLiteral("format"), QStringLiteral("pcm")},
        {QStringLiteral("rate"), 16000},
        {QStringLiteral("channel"), QStringLiteral("1")},
        {QStringLiteral("token"), request.token},
        {QStringLiteral("dev_pid"), request.fast ? FastPid : standardPid(request.voiceType)},
        {QStringLiteral("lan"), QStringLiteral("zh")},
        {QStringLiteral("cuid"), request.cuid},
        {QStringLiteral("len"), request.pcm.size()},
    };
    if (request.fast) {
        fields.insert(QStringLiteral("scope"), QStringLiteral("brain_enhanced_asr"));
    }
    // The audio needs no escaping and can be megabytes, so it is not sent through the JSON writer.
    QByteArray body = QJsonDocument(fields).toJson(QJsonDocument::Compact);
    body.reserve(body.size() + 16 + (request.pcm.size() / 3 + 1) * 4);
    body.chop(1);
    body += R"(,"speech":")";
    for (int at = 0; at < request.pcm.size(); at += Base64Piece) {
        const int length = qMin(Base64Piece, request.pcm.size() - at);
        body += QByteArray::fromRawData(request.pcm.constData() + at, length).toBase64();
    }
    body += "\"}";
    return body;
}

bool checksCertificate(const EngineEndpoints &endpoints, const QUrl &url)
{
    const QString host = url.host();
    const bool here = host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
    return endpoints.VerifyCertificates || !here;
}

bool writeRecording(const QString &path, const QByteArray &pcm)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        QDataStream stream(&file);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream.setVersion(QDataStream::Qt_5_4);
        stream << pcm;
        file.close();
        if (stream.status() == QDataStream::Ok && file.error() == QFileDevice::NoError) {
            return true;
        }
    }
    qWarning("Recording: %s cannot be written: %s", qPrintable(path), qPrintable(file.errorString()));
    return false;
}

} // namespace mevo
