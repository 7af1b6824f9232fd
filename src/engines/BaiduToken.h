#pragma once

#include <QByteArray>
#include <QString>

namespace mevo {

/// The body of a token request. The "&" at its end belongs to it.
QByteArray baiduTokenBody(const QString &clientId, const QString &clientSecret);

/// The token in an answer of the token service, empty when there is none.
QString baiduTokenOf(const QString &reply);

} // namespace mevo
