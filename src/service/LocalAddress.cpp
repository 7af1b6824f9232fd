#include "service/LocalAddress.h"

namespace mevo {

QString localAddress(const QList<QHostAddress> &addresses)
{
    for (const auto protocol : {QAbstractSocket::IPv4Protocol, QAbstractSocket::IPv6Protocol}) {
        for (const QHostAddress &address : addresses) {
            if (address.protocol() == protocol && !address.isLoopback() && !address.isLinkLocal()) {
                QHostAddress plain(address);
                plain.setScopeId(QString());
                return plain.toString();
            }
        }
    }
    return QStringLiteral("127.0.0.1");
}

} // namespace mevo
