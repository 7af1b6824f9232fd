#include "service/WebApi.h"

#include "service/ProxyChoice.h"
#include "service/ReplyWait.h"
#include "service/Statements.h"
#include "service/WebApiReply.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace mevo {

namespace {

/// A request that nobody waits for is given up after this time, so that a dead server collects none.
constexpr int ForgottenTimeoutMs = 15000;
/// A network manager has this many connections to one server at a time; a further request would wait.
constexpr std::size_t ConnectionsPerManager = 6;
const QByteArray FormType = QByteArrayLiteral("application/x-www-form-urlencoded");

QNetworkReply *sendGet(QNetworkAccessManager &manager, const QNetworkRequest &request, const QByteArray &)
{
    return manager.get(request);
}

QNetworkReply *sendPost(QNetworkAccessManager &manager, const QNetworkRequest &request,
                        const QByteArray &body)
{
    return manager.post(request, body);
}

void setProxy(QNetworkAccessManager &manager, const ServiceState &state)
{
    manager.setProxy(chosenProxy(state).value_or(QNetworkProxy(QNetworkProxy::DefaultProxy)));
}

} // namespace

WebApi::WebApi(MainState &state, const WebCipher &cipher, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_cipher(cipher)
    , m_counts([this](const CountWrite &write, const CountWrites::Ended &ended) {
        return sendCount(write, ended);
    })
{
}

int WebApi::BackendGet(const QUrl &url, int timeoutMs, QString &reply, bool checkCertificate)
{
    QNetworkRequest request(url);
    if (!checkCertificate) {
        QSslConfiguration ssl = request.sslConfiguration();
        ssl.setPeerVerifyMode(QSslSocket::VerifyNone);
        request.setSslConfiguration(ssl);
    }
    return call(sendGet, request, {}, timeoutMs, reply, FormType);
}

int WebApi::BackendPost(const QUrl &url, int timeoutMs, const QByteArray &body, QString &reply,
                        const QByteArray &contentType)
{
    return call(sendPost, QNetworkRequest(url), body, timeoutMs, reply, contentType);
}

int WebApi::call(Send send, QNetworkRequest request, const QByteArray &body, int timeoutMs, QString &reply,
                 const QByteArray &contentType)
{
    if (!m_state.IsOnline) {
        return -1;
    }
    if (timeoutMs < ShortestWaitMs) {
        setProxy(m_manager, m_state);
        forget(send(m_manager, request, body));
        return 0;
    }

    const int wait = grantedWait(timeoutMs);
    if (wait < ShortestWaitMs) {
        return -1;
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    QElapsedTimer elapsed;
    elapsed.start();
    const QString host = request.url().host();
    QNetworkAccessManager manager;
    setProxy(manager, m_state);
    const QPointer<WebApi> alive(this);
    const ReplyOutcome outcome = waitForReply(send(manager, request, body), wait);
    // `this` may be gone from here on.
    if (!alive.isNull()) {
        endWait(elapsed.elapsed(), outcome.code == -1 && wait < timeoutMs);
    }
    if (outcome.code != 200) {
        qInfo("Backend: %s gave %d after %lld ms", qPrintable(host), outcome.code, elapsed.elapsed());
    } else {
        reply = QString::fromUtf8(outcome.body);
    }
    return outcome.code;
}

/// The time that a call of `timeoutMs` may wait; less than ShortestWaitMs when it is too late for it.
int WebApi::grantedWait(int timeoutMs)
{
    const int wait = m_budget.granted(timeoutMs);
    if (wait < ShortestWaitMs) {
        ++m_cutOff;
        qInfo("Backend: no time is left for a request; it is put off");
    }
    return wait;
}

void WebApi::endWait(qint64 elapsedMs, bool cutOff)
{
    m_budget.spend(static_cast<int>(elapsedMs));
    m_cutOff += cutOff ? 1 : 0;
}

void WebApi::forget(QNetworkReply *reply)
{
    m_pending.insert(reply);
    limitReply(reply);
    QTimer::singleShot(ForgottenTimeoutMs, reply, &QNetworkReply::abort);
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        m_pending.remove(reply);
        reply->deleteLater();
        if (m_pending.isEmpty()) {
            emit drained();
        }
    });
}

void WebApi::WriteCount(const CountWrite &write)
{
    if (m_state.IsOnline && m_state.BackendReachable) {
        m_counts.add(write);
    }
}

void WebApi::supersedeCount(CountColumn column, int count)
{
    m_counts.supersede(m_state.dayCounts.receiver(), column, count);
}

CountWrites::CallOff WebApi::sendCount(const CountWrite &write, const CountWrites::Ended &ended)
{
    m_state.dayCounts.sent(write.column, write.count, write.receiver);
    setProxy(m_manager, m_state);
    QNetworkReply *const reply =
        m_manager.get(QNetworkRequest(webApiUrl(m_cipher, m_state.ServerUrl, SqlTag, write.statement)));
    // Before forget(): what has waited for it is on its way before this one counts as gone.
    connect(reply, &QNetworkReply::finished, this, [this, reply, write, ended] {
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (reply->error() == QNetworkReply::NoError && status == 200) {
            m_state.dayCounts.told(write.column, write.count, write.receiver);
        } else {
            qInfo("Backend: a day's count has not been taken (%d, %d); the next one makes it good",
                  int(reply->error()), status);
        }
        ended();
    });
    forget(reply);
    return [sent = QPointer<QNetworkReply>(reply)] {
        if (!sent.isNull()) {
            sent->abort();
        }
    };
}

bool WebApi::drain(int maxMs)
{
    if (!m_pending.isEmpty()) {
        const QPointer<WebApi> alive(this);
        QEventLoop loop;
        QTimer::singleShot(maxMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
        connect(this, &WebApi::drained, &loop, &QEventLoop::quit);
        connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
        if (alive.isNull()) {
            return false;
        }
    }
    return m_pending.isEmpty();
}

QString WebApi::RunBackendSql(const QObject *owner, const QString &sql, const QString &baseUrl, int timeoutMs)
{
    if (!m_state.IsOnline || !m_state.BackendReachable) {
        return {};
    }
    const QPointer<const QObject> waiting(owner);
    QString reply;
    const int code = BackendGet(webApiUrl(m_cipher, baseUrl, SqlTag, sql), timeoutMs, reply);
    if (code != 200 || (owner != nullptr && waiting.isNull())) {
        return {};
    }
    return reply;
}

std::vector<QString> WebApi::RunBackendSqls(const QObject *owner, const std::vector<QString> &statements,
                                            const QString &baseUrl, int timeoutMs)
{
    std::vector<QString> answers(statements.size());
    if (statements.empty() || !m_state.IsOnline || !m_state.BackendReachable) {
        return answers;
    }
    const int wait = grantedWait(timeoutMs);
    if (wait < ShortestWaitMs) {
        return answers;
    }
    const QPointer<WebApi> alive(this);
    const QPointer<const QObject> waiting(owner);
    QElapsedTimer elapsed;
    elapsed.start();
    std::vector<std::unique_ptr<QNetworkAccessManager>> managers;
    std::vector<QNetworkReply *> replies;
    for (const QString &statement : statements) {
        if (replies.size() % ConnectionsPerManager == 0) {
            managers.push_back(std::make_unique<QNetworkAccessManager>());
            setProxy(*managers.back(), m_state);
        }
        QNetworkRequest request(webApiUrl(m_cipher, baseUrl, SqlTag, statement));
        request.setHeader(QNetworkRequest::ContentTypeHeader, FormType);
        replies.push_back(managers.back()->get(request));
    }
    const std::vector<ReplyOutcome> outcomes = waitForReplies(replies, wait);
    const bool late = std::any_of(outcomes.begin(), outcomes.end(),
                                  [](const ReplyOutcome &outcome) { return outcome.code == -1; });
    if (!alive.isNull()) {
        endWait(elapsed.elapsed(), late && wait < timeoutMs);
    }
    if (owner != nullptr && waiting.isNull()) {
        return answers;
    }
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (outcomes[i].code == 200) {
            answers[i] = QString::fromUtf8(outcomes[i].body);
        } else {
            qInfo("Backend: statement %d of %d gave %d after %lld ms", int(i) + 1, int(outcomes.size()),
                  outcomes[i].code, elapsed.elapsed());
        }
    }
    return answers;
}

std::optional<QString> WebApi::RunWithFailover(const QString &sql, const FailoverTimeouts &timeouts)
{
    const std::array<QString, 3> bases{m_state.ServerUrl, m_state.ServerUrlBk1, m_state.ServerUrlBk2};
    const QPointer<WebApi> alive(this);
    for (std::size_t i = 0; i < bases.size() && !alive.isNull(); ++i) {
        QString reply;
        if (BackendGet(webApiUrl(m_cipher, bases[i], SqlTag, sql), timeouts[i], reply) == 200) {
            return reply;
        }
    }
    return std::nullopt;
}

int WebApi::ProbeBackend()
{
    const QPointer<WebApi> alive(this);
    QString reply;
    const QUrl url = webApiUrl(m_cipher, m_state.ServerUrl, ProbeTag, QLatin1String(ProbeWord));
    const int code = BackendGet(url, ProbeTimeoutMs, reply);
    if (alive.isNull()) {
        return -1;
    }
    m_state.BackendReachable = code == 200;
    if (code != 200) {
        return -1;
    }
    const std::optional<WebApiReply> unwrapped = unwrapReply(m_cipher, reply);
    if (!unwrapped) {
        return 0;
    }
    m_state.ServerVersion = unwrapped->result;
    return unwrapped->items;
}

int WebApi::WriteDeviceColumn(const QString &assignments)
{
    const QString sql =
        deviceStatement(Statement::WriteDeviceColumns, m_state.SchemaName, {assignments, m_state.DongleID});
    QString reply;
    const QUrl url = webApiUrl(m_cipher, m_state.ServerUrl, ColumnWriteTag, sql);
    return BackendGet(url, ColumnWriteTimeoutMs, reply) == 200 ? 0 : -1;
}

} // namespace mevo
