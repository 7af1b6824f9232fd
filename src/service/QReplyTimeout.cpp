#include "service/QReplyTimeout.h"

#include <QPointer>
#include <QTimer>

QReplyTimeout::QReplyTimeout(QNetworkReply *reply, int milliseconds)
    : QObject(reply)
{
    QTimer::singleShot(milliseconds, this, &QReplyTimeout::onTimeout);
}

void QReplyTimeout::onTimeout()
{
    auto *reply = static_cast<QNetworkReply *>(parent());
    if (!reply->isRunning()) {
        return;
    }
    const QPointer<QReplyTimeout> alive(this);
    reply->abort();
    if (!alive.isNull()) {
        emit timeout();
    }
}
