#include "translation/ReadingRequest.h"

#include "base/Endpoints.h"

namespace mevo {

QByteArray readingQuery(const QString &text, const QString &token, const ReadingVoice &voice)
{
    return "&lan=zh&cuid=***&ctp=1&tok=" + token.toUtf8() + "&spd=" + QByteArray::number(voice.speed) +
           "&pit=" + QByteArray::number(voice.tone) + "&vol=" + QByteArray::number(voice.volume) +
           "&per=" + QByteArray::number(voice.reader) + "&tex=" + QUrl::toPercentEncoding(text);
}

QUrl readingUrl(const EngineEndpoints &endpoints, const QString &text, const QString &token,
                const ReadingVoice &voice)
{
    const QUrl address = serviceUrl("http", endpoints.BaiduTtsHost, "/text2audio");
    return QUrl::fromEncoded(address.toEncoded() + '?' + readingQuery(text, token, voice));
}

} // namespace mevo
