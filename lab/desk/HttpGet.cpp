#include "desk/HttpGet.h"

#include "receiver/WaitUntil.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>

#include <memory>

namespace mevo::lab {

HttpAnswer httpGet(const QUrl &url, int timeoutMs)
{
    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy::NoProxy);
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    HttpAnswer answer;
    if (!waitUntil([&reply] { return reply->isFinished(); }, timeoutMs)) {
        answer.error = QStringLiteral("no answer in %1 ms").arg(timeoutMs);
        return answer;
    }
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    if (reply->error() != QNetworkReply::NoError)
        answer.error = reply->errorString();
    return answer;
}

} // namespace mevo::lab
