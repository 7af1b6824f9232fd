#pragma once

#include <QByteArray>
#include <QNetworkReply>

#include <vector>

namespace mevo {

/// The largest reply body that is taken from any service.
constexpr qint64 MaxReplyBytes = 8LL * 1024 * 1024;

/// Aborts `reply`, with OperationCanceledError, as soon as its body grows past `maxBytes`.
void limitReply(QNetworkReply *reply, qint64 maxBytes = MaxReplyBytes);

/// How a waited-for reply ended.
struct ReplyOutcome
{
    int code = -1;   ///< HTTP status, else a QNetworkReply error code, -1 when nothing came in time
    QByteArray body; ///< empty unless `code` is 200
};

/// Keeps the event loop alive until `reply` has finished or `timeoutMs` have passed; a late reply is
/// aborted. The reply is disposed of. Ends early when the application quits or the reply is deleted.
ReplyOutcome waitForReply(QNetworkReply *reply, int timeoutMs);

/// The same for several replies that are on their way together: waits until all have finished, at most
/// `timeoutMs`. One outcome for each, in their order.
std::vector<ReplyOutcome> waitForReplies(const std::vector<QNetworkReply *> &replies, int timeoutMs);

} // namespace mevo
