#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <optional>

namespace relay_NetWork {

/// One HTTP call at a time, answered by signals or waited for in a nested event loop. A new call cancels
/// the one before it. Bodies above 8 MiB end in an error. Safe to delete during a wait.
class HTTP : public QObject
{
    Q_OBJECT

public:
    explicit HTTP(QObject *parent = nullptr);

    /// The proxy of the calls from now on; nothing for the system's own.
    void setProxy(const std::optional<QNetworkProxy> &proxy);
    /// Whether the certificates of servers are checked, as they are unless told otherwise.
    void setCertificateChecks(bool on);

signals:
    void finished(QByteArray data);
    /// The call failed; TimeoutError (4) when its time ran out.
    void error(QNetworkReply::NetworkError error);
    /// The call was given up by stop() or by a call after it.
    void cancelled(QPrivateSignal);

public slots:
    /// Starts a call of at most `maxTime` milliseconds; one of the first two signals ends it.
    void get(const QUrl &url, int maxTime);
    void post(const QNetworkRequest &networkRequest, const QByteArray &append, int maxTime);
    /// Gives the call up; neither signal comes.
    void stop();

    /// Waits for the call. True with the body in `target`, false on error or when it was given up.
    bool get(const QUrl &url, QByteArray &target, int maxTime);
    bool post(const QNetworkRequest &networkRequest, const QByteArray &append, QByteArray &target,
              int maxTime);

private:
    QNetworkRequest prepared(QNetworkRequest request) const;
    void begin(QNetworkReply *reply, int maxTime);
    void onReplyFinished();
    void onTimeout();
    bool wait(QByteArray &target, const std::function<void()> &start);
    QNetworkReply *release();

    QNetworkAccessManager m_manager;
    QPointer<QNetworkReply> m_reply;
    QTimer m_timer;
    bool m_checkCertificates = true;
};

} // namespace relay_NetWork
