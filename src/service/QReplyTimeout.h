#pragma once

#include <QNetworkReply>
#include <QObject>

/// Aborts a reply that has not finished within its time. Lives as long as the reply.
class QReplyTimeout : public QObject
{
    Q_OBJECT

public:
    /// `milliseconds` from now.
    QReplyTimeout(QNetworkReply *reply, int milliseconds);

signals:
    /// The reply has been aborted.
    void timeout();

public slots:
    void onTimeout();
};
