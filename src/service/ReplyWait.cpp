#include "service/ReplyWait.h"

#include <QDebug>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <algorithm>

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

namespace {

ReplyOutcome outcomeOf(QNetworkReply &reply)
{
    ReplyOutcome outcome;
    if (!reply.isFinished()) {
        reply.abort();
    } else if (reply.error() != QNetworkReply::NoError) {
        outcome.code = reply.error();
    } else {
        outcome.code = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (outcome.code == 200) {
            outcome.body = reply.readAll();
        }
    }
    return outcome;
}

} // namespace

ReplyOutcome waitForReply(QNetworkReply *reply, int timeoutMs)
{
    return waitForReplies({reply}, timeoutMs).front();
}

std::vector<ReplyOutcome> waitForReplies(const std::vector<QNetworkReply *> &replies, int timeoutMs)
{
    const std::vector<QPointer<QNetworkReply>> alive(replies.begin(), replies.end());
    const auto allEnded = [&alive] {
        return std::all_of(alive.begin(), alive.end(), [](const QPointer<QNetworkReply> &reply) {
            return reply.isNull() || reply->isFinished();
        });
    };
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    const auto leaveAtTheEnd = [&] {
        if (allEnded()) {
            loop.quit();
        }
    };
    for (QNetworkReply *reply : replies) {
        limitReply(reply);
        QObject::connect(reply, &QNetworkReply::finished, &loop, leaveAtTheEnd);
        QObject::connect(reply, &QObject::destroyed, &loop, leaveAtTheEnd);
    }
    if (!allEnded()) {
        timer.start(timeoutMs);
        loop.exec();
    }
    std::vector<ReplyOutcome> outcomes(replies.size());
    for (std::size_t i = 0; i < alive.size(); ++i) {
        if (!alive[i].isNull()) {
            alive[i]->disconnect(&loop);
            alive[i]->deleteLater();
            outcomes[i] = outcomeOf(*alive[i]);
        }
    }
    return outcomes;
}

} // namespace mevo
