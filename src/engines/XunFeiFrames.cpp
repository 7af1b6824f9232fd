#include "engines/XunFeiFrames.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

namespace {

enum FrameKind { First = 0, Middle = 1, Last = 2 };

constexpr const char *languages[] = {"en_us", "ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"};

QJsonObject audioData(FrameKind kind, const QByteArray &block)
{
    return {{QStringLiteral("status"), int(kind)},
            {QStringLiteral("format"), QStringLiteral("audio/L16;rate=16000")},
            {QStringLiteral("encoding"), QStringLiteral("raw")},
            {QStringLiteral("audio"), QString::fromLatin1(block.toBase64())}};
}

QByteArray frame(QJsonObject object, FrameKind kind, const QByteArray &block)
{
    object.insert(QStringLiteral("data"), audioData(kind, block));
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject business(const XunFeiSessionRequest &request)
{
    QJsonObject object{{QStringLiteral("domain"), QStringLiteral("iat")},
                       {QStringLiteral("ptt"), request.punctuation ? 1 : 0}};
    for (const char *language : languages) {
        if (request.voiceType == QLatin1String(language)) {
            object.insert(QStringLiteral("language"), request.voiceType);
        }
    }
    if (!object.contains(QStringLiteral("language"))) {
        object.insert(QStringLiteral("language"), QStringLiteral("zh_cn"));
        object.insert(QStringLiteral("accent"), request.voiceType);
    }
    if (request.dynamicCorrection) {
        object.insert(QStringLiteral("dwa"), QStringLiteral("wpgs"));
    }
    return object;
}

} // namespace

QByteArray xunFeiFirstFrame(const XunFeiSessionRequest &request, const QByteArray &block)
{
    return frame({{QStringLiteral("common"), QJsonObject{{QStringLiteral("app_id"), request.appId}}},
                  {QStringLiteral("business"), business(request)}},
                 First, block);
}

QByteArray xunFeiMiddleFrame(const QByteArray &block)
{
    return frame({}, Middle, block);
}

QByteArray xunFeiLastFrame()
{
    return frame({}, Last, {});
}

} // namespace mevo
