#include "service/ReplyWait.h"

#include <QDebug>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

namespace mevo {

void limitReply(QNetworkReply *reply, qint64 maxBytes)
{
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, maxBytes] {
        if (reply->bytesAvailable() > maxBytes) {
            qWarning("Network: a reply of %s is larger than %lld bytes and was dropped",
                     qPrintable(reply->url().host()), maxBytes);
            reply->abort();
        }
    });
}

ReplyOutcome waitForReply(QNetworkReply *reply, int timeoutMs)
{
    const QPointer<QNetworkReply> alive(reply);
    limitReply(reply);
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QObject::destroyed, &loop, &QEventLoop::quit);
    if (!reply->isFinished()) {
        timer.start(timeoutMs);
        loop.exec();
    }
    if (alive.isNull()) {
        return {};
    }

    ReplyOutcome outcome;
    reply->disconnect(&loop);
    reply->deleteLater();
    if (!reply->isFinished()) {
        reply->abort();
    } else if (reply->error() != QNetworkReply::NoError) {
        outcome.code = reply->error();
    } else {
        outcome.code = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (outcome.code == 200) {
            outcome.body = reply->readAll();
        }
    }
    return outcome;
}

} // namespace mevo
