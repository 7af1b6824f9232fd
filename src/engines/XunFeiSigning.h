#pragma once

#include "base/ServiceEndpoints.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

namespace mevo {

/// One account of XunFei's dictation service; never logged.
struct XunFeiAccount
{
    QString appId;
    QString apiKey;
    QString apiSecret;
};

/// A moment as the service is told it: in GMT, "Wed,10 Jul 2019 07:35:43 GMT", without a blank after the
/// comma.
QString xunFeiDate(const QDateTime &moment);

/// The host that is signed: the standard endpoint's, without scheme and port.
QString xunFeiSignHost(const EngineEndpoints &endpoints);

/// HMAC-SHA256 over host, date and request line, keyed with the account's secret, in base64.
QByteArray xunFeiSignature(const QString &host, const QString &date, const QString &apiSecret);

/// The signed address of a session. `signedDate` and `sentDate` are two readings of the clock; the service
/// refuses the session when a second has passed between them.
QUrl xunFeiUrl(const EngineEndpoints &endpoints, const XunFeiAccount &account, const QString &signedDate,
               const QString &sentDate);

} // namespace mevo
