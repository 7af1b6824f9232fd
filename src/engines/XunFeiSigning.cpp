#include "engines/XunFeiSigning.h"

#include <QLocale>
#include <QMessageAuthenticationCode>

namespace mevo {

namespace {

constexpr char requestLine[] = "GET /v2/iat HTTP/1.1";

QUrl addressOf(const QString &host, const char *scheme)
{
    return QUrl(host.contains(QLatin1String("://")) ? host
                                                    : QLatin1String(scheme) + QLatin1String("://") + host);
}

} // namespace

QString xunFeiDate(const QDateTime &moment)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    return english.toString(moment.toUTC(), QStringLiteral("ddd,dd MMM yyyy HH:mm:ss")) +
           QLatin1String(" GMT");
}

QString xunFeiSignHost(const EngineEndpoints &endpoints)
{
    return addressOf(endpoints.XunFeiSignHost, "ws").host();
}

QByteArray xunFeiSignature(const QString &host, const QString &date, const QString &apiSecret)
{
    const QByteArray origin = "host: " + host.toUtf8() + "\ndate: " + date.toUtf8() + '\n' + requestLine;
    return QMessageAuthenticationCode::hash(origin, apiSecret.toUtf8(), QCryptographicHash::Sha256)
        .toBase64();
}

QUrl xunFeiUrl(const EngineEndpoints &endpoints, const XunFeiAccount &account, const QString &signedDate,
               const QString &sentDate)
{
    const QString host = xunFeiSignHost(endpoints);
    const QByteArray authorization = "api_key=\"" + account.apiKey.toUtf8() +
                                     "\", algorithm=\"hmac-sha256\", headers=\"host date request-line\", "
                                     "signature=\"" +
                                     xunFeiSignature(host, signedDate, account.apiSecret) + '"';
    // The other host on purpose: the service that takes the audio knows the standard one's signature.
    QUrl url = addressOf(endpoints.XunFeiSocketHost, "ws");
    url.setPath(QStringLiteral("/v2/iat"));
    url.setQuery(QString::fromLatin1("date=" + QUrl::toPercentEncoding(sentDate) + "&host=" + host.toUtf8() +
                                     "&authorization=" + authorization.toBase64()));
    return url;
}

} // namespace mevo
