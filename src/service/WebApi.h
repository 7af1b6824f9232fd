#pragma once

#include "service/CountWrites.h"
#include "service/WaitBudget.h"
#include "service/WebApiRequest.h"
#include "state/MainState.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUrl>

#include <optional>
#include <vector>

namespace mevo {

/// The backend: every request of the program that is an SQL text, and its plain JSON calls.
/// GUI thread only. A call that waits runs a nested event loop, so that anything may happen during it,
/// the end of this object included: hold no lock across a call.
class WebApi : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object, which may itself end during any of its waits.
    WebApi(MainState &state, const WebCipher &cipher, QObject *parent = nullptr);

    /// Gets `url`. The HTTP status, else a QNetworkReply error code, or -1 on time-out or when offline.
    /// On 200 `reply` is the body. With `timeoutMs` below 11 it is sent without waiting and the result
    /// is 0; see drain().
    int BackendGet(const QUrl &url, int timeoutMs, QString &reply, bool checkCertificate = true);
    /// The same with a POST of `body`.
    int BackendPost(const QUrl &url, int timeoutMs, const QByteArray &body, QString &reply,
                    const QByteArray &contentType = QByteArrayLiteral("application/x-www-form-urlencoded"));

    /// Runs one statement at a server. The raw reply on status 200; a null string otherwise, when
    /// offline, when the backend is not reachable, or when `owner`, whom the answer is for, has gone
    /// meanwhile (null: nobody in particular).
    QString RunBackendSql(const QObject *owner, const QString &sql, const QString &baseUrl, int timeoutMs);

    /// Runs several statements at one server side by side and waits for all of them, at most `timeoutMs`. One
    /// reply for each, in their order and as RunBackendSql() gives it.
    std::vector<QString> RunBackendSqls(const QObject *owner, const std::vector<QString> &statements,
                                        const QString &baseUrl, int timeoutMs);

    /// Asks a statement of the three web API addresses in turn until one answers with status 200, whose
    /// raw reply is given. Nothing when none did. Whether the backend counts as reachable is not looked
    /// at: this is how it is found out.
    std::optional<QString> RunWithFailover(const QString &sql, const FailoverTimeouts &timeouts);

    /// Asks for the server's version and sets `BackendReachable` and `ServerVersion`. -1 when offline or
    /// on failure; else "items" of the reply, 0 when the reply could not be read.
    int ProbeBackend();

    /// Writes columns of this device's record: "NAME='value'" assignments. 0, or -1 on failure.
    int WriteDeviceColumn(const QString &assignments);

    /// Writes a day's count without waiting, behind an older one of its column; nothing when offline or when
    /// the backend is not reachable. DayCounts hears what has become of it.
    void WriteCount(const CountWrite &write);
    /// For the exit: nothing that is stuck holds a newer count back any longer.
    void overtakeCounts() { m_counts.overtake(); }
    /// Before a count of the receiver at hand is written on another way.
    void supersedeCount(CountColumn column, int count);

    /// All waits from now on take `totalMs` together, until endSharedWait(): of those that come late a rest
    /// of their time is left, or none, and then they are answered with -1 without having been sent.
    void shareWait(int totalMs) { m_budget.limit(totalMs); }
    void endSharedWait() { m_budget.lift(); }
    /// Nothing is left of the shared time.
    bool sharedWaitUsedUp() const { return m_budget.granted(ShortestWaitMs) < ShortestWaitMs; }
    /// Calls so far that had no answer because the shared time was short.
    int cutOffCount() const { return m_cutOff; }

    /// Requests sent without waiting whose answer has not come yet.
    int pendingCount() const { return m_pending.size(); }
    /// Gives those requests up to `maxMs` to leave and be answered; for the exit, where no event loop
    /// follows that would carry them. True when none is left.
    bool drain(int maxMs);

    static constexpr int ProbeTimeoutMs = 2000;
    static constexpr int ColumnWriteTimeoutMs = 2000;

signals:
    /// The last request sent without waiting has ended.
    void drained();

private:
    using Send = QNetworkReply *(*)(QNetworkAccessManager &, const QNetworkRequest &, const QByteArray &);
    int grantedWait(int timeoutMs);
    void endWait(qint64 elapsedMs, bool cutOff);
    int call(Send send, QNetworkRequest request, const QByteArray &body, int timeoutMs, QString &reply,
             const QByteArray &contentType);
    void forget(QNetworkReply *reply);
    CountWrites::CallOff sendCount(const CountWrite &write, const CountWrites::Ended &ended);

    MainState &m_state;
    const WebCipher &m_cipher;
    CountWrites m_counts;
    QNetworkAccessManager m_manager; ///< of the requests that nobody waits for
    QSet<QNetworkReply *> m_pending;
    WaitBudget m_budget;
    int m_cutOff = 0;
};

} // namespace mevo
