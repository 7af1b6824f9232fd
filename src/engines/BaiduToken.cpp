#include "engines/BaiduToken.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

QByteArray baiduTokenBody(const QString &clientId, const QString &clientSecret)
{
    return "grant_type=client_credentials&client_id=" + clientId.toUtf8() +
           "&client_secret=" + clientSecret.toUtf8() + '&';
}

QString baiduTokenOf(const QString &reply)
{
    const QJsonObject object = QJsonDocument::fromJson(reply.toUtf8()).object();
    return object.value(QStringLiteral("access_token")).toString();
}

} // namespace mevo
