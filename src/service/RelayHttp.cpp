#include "service/RelayHttp.h"

#include "service/ReplyWait.h"

#include <QEventLoop>
#include <QNetworkProxy>
#include <QSslConfiguration>
#include <QSslSocket>

namespace relay_NetWork {

HTTP::HTTP(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &HTTP::onTimeout);
}

void HTTP::setProxy(const std::optional<QNetworkProxy> &proxy)
{
    m_manager.setProxy(proxy.value_or(QNetworkProxy(QNetworkProxy::DefaultProxy)));
}

void HTTP::setCertificateChecks(bool on)
{
    if (on != m_checkCertificates) {
        m_checkCertificates = on;
        m_manager.clearConnectionCache(); // a kept connection goes on as it was set up
    }
}

QNetworkRequest HTTP::prepared(QNetworkRequest request) const
{
    if (!m_checkCertificates) {
        QSslConfiguration ssl = request.sslConfiguration();
        ssl.setPeerVerifyMode(QSslSocket::VerifyNone);
        request.setSslConfiguration(ssl);
    }
    return request;
}

void HTTP::get(const QUrl &url, int maxTime)
{
    stop();
    begin(m_manager.get(prepared(QNetworkRequest(url))), maxTime);
}

void HTTP::post(const QNetworkRequest &networkRequest, const QByteArray &append, int maxTime)
{
    stop();
    begin(m_manager.post(prepared(networkRequest), append), maxTime);
}

void HTTP::begin(QNetworkReply *reply, int maxTime)
{
    m_reply = reply;
    mevo::limitReply(reply);
    connect(reply, &QNetworkReply::finished, this, &HTTP::onReplyFinished);
    m_timer.start(qMax(1, maxTime));
}

/// Takes the current reply out of the object, so that nothing it still does is heard.
QNetworkReply *HTTP::release()
{
    m_timer.stop();
    QNetworkReply *reply = m_reply.data();
    m_reply.clear();
    if (reply != nullptr) {
        reply->disconnect(this);
        reply->deleteLater();
    }
    return reply;
}

void HTTP::stop()
{
    if (QNetworkReply *reply = release()) {
        reply->abort();
        emit cancelled({});
    }
}

void HTTP::onReplyFinished()
{
    QNetworkReply *reply = release();
    if (reply == nullptr) {
        return;
    }
    if (reply->error() != QNetworkReply::NoError) {
        emit error(reply->error());
    } else {
        emit finished(reply->readAll());
    }
}

void HTTP::onTimeout()
{
    if (QNetworkReply *reply = release()) {
        reply->abort();
        emit error(QNetworkReply::TimeoutError);
    }
}

bool HTTP::get(const QUrl &url, QByteArray &target, int maxTime)
{
    return wait(target, [&] { get(url, maxTime); });
}

bool HTTP::post(const QNetworkRequest &networkRequest, const QByteArray &append, QByteArray &target,
                int maxTime)
{
    return wait(target, [&] { post(networkRequest, append, maxTime); });
}

bool HTTP::wait(QByteArray &target, const std::function<void()> &start)
{
    stop(); // before our own connections, which are for the new call only
    const QPointer<HTTP> alive(this);
    QEventLoop loop;
    bool ended = false;
    bool succeeded = false;
    // A later call on this object emits the same signals while this wait is still on the stack.
    const auto end = [&](bool success) {
        ended = true;
        succeeded = success;
        loop.quit();
    };
    connect(this, &HTTP::finished, &loop, [&](const QByteArray &data) {
        if (!ended) {
            target = data;
            end(true);
        }
    });
    connect(this, &HTTP::error, &loop, [&] {
        if (!ended) {
            end(false);
        }
    });
    connect(this, &HTTP::cancelled, &loop, [&] {
        if (!ended) {
            end(false);
        }
    });
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    start();
    if (!ended) {
        loop.exec();
    }
    if (!ended && !alive.isNull()) {
        stop(); // the application is quitting
    }
    return succeeded;
}

} // namespace relay_NetWork
