#include "translation/TranslationRequest.h"

#include "base/Endpoints.h"

#include <QCryptographicHash>

namespace mevo {

QString translationText(const QString &text)
{
    QString sent = text;
    return sent.replace(QLatin1Char('\n'), QLatin1Char('\r'));
}

QString translationSign(const TranslationRequest &request)
{
    const QString signedText = request.appid + request.text + QString::number(request.salt) + request.secret;
    return QString::fromLatin1(
        QCryptographicHash::hash(signedText.toUtf8(), QCryptographicHash::Md5).toHex());
}

QByteArray translationQuery(const TranslationRequest &request, const QString &sign)
{
    return "sign=" + sign.toUtf8() + "&appid=" + request.appid.toUtf8() +
           "&salt=" + QByteArray::number(request.salt) + "&from=" + request.from.toUtf8() +
           "&to=" + request.to.toUtf8() + "&q=" + QUrl::toPercentEncoding(request.text);
}

QUrl translationAddress(const EngineEndpoints &endpoints)
{
    return serviceUrl("http", endpoints.TranslateHost, "/api/trans/vip/translate");
}

} // namespace mevo
