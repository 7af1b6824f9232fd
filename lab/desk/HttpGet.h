#pragma once

#include <QByteArray>
#include <QUrl>

namespace mevo::lab {

struct HttpAnswer
{
    int status = 0; ///< 0 when no answer came
    QByteArray body;
    QString error;
};

/// Fetches a URL with the event loop running.
HttpAnswer httpGet(const QUrl &url, int timeoutMs);

} // namespace mevo::lab
