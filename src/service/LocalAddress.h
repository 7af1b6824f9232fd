#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>

namespace mevo {

/// The address that this computer is known by, of those that it has: the first of IPv4 that leads outside,
/// else the first of IPv6 that does, without its scope. "127.0.0.1" when it has none.
QString localAddress(const QList<QHostAddress> &addresses);

} // namespace mevo
