#include "platform/linux/RouteNetworkState.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <net/route.h>
#include <vector>

namespace mevo {

namespace {

constexpr qint64 MaxTableBytes = 4 << 20; // a router's full table; nobody else comes near

struct Route
{
    QByteArray interface;
    uint metric = 0;
    bool isDefault = false;
};

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(MaxTableBytes) : QByteArray();
}

bool isUsable(uint flags)
{
    return (flags & RTF_UP) != 0 && (flags & RTF_REJECT) == 0;
}

/// Routes of "/proc/net/route": interface, destination, gateway, flags, counts, metric (decimal), mask.
void addIpv4(const QByteArray &table, std::vector<Route> &routes)
{
    for (const QByteArray &line : table.split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() < 8 || !isUsable(columns[3].toUInt(nullptr, 16))) {
            continue;
        }
        const bool isDefault = columns[1] == "00000000" && columns[7] == "00000000";
        routes.push_back({columns[0], columns[6].toUInt(), isDefault});
    }
}

/// Routes of "/proc/net/ipv6_route": destination, its length, source, its length, next hop, metric
/// (hexadecimal), counts, flags, interface.
void addIpv6(const QByteArray &table, std::vector<Route> &routes)
{
    for (const QByteArray &line : table.split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() < 10 || !isUsable(columns[8].toUInt(nullptr, 16))) {
            continue;
        }
        const bool isDefault = columns[0] == QByteArray(32, '0') && columns[1] == "00";
        // Every interface has a route for its link-local addresses, connected or not.
        if (isDefault) {
            routes.push_back({columns[9], columns[5].toUInt(nullptr, 16), isDefault});
        }
    }
}

bool isModem(const QByteArray &interface)
{
    return interface.startsWith("ppp") || interface.startsWith("wwan") || interface.startsWith("wwp");
}

bool proxyConfigured()
{
    for (const char *name :
         {"http_proxy", "HTTP_PROXY", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
        if (!qEnvironmentVariableIsEmpty(name)) {
            return true;
        }
    }
    return false;
}

} // namespace

RouteNetworkState::RouteNetworkState(std::function<bool()> allServicesLocal, const QString &root)
    : m_allServicesLocal(std::move(allServicesLocal))
    , m_root(root)
{
}

NetworkState::Connection RouteNetworkState::connection()
{
    if (m_allServicesLocal && m_allServicesLocal()) {
        return Connection::Lan;
    }
    std::vector<Route> routes;
    addIpv4(readFile(m_root + QStringLiteral("/proc/net/route")), routes);
    addIpv6(readFile(m_root + QStringLiteral("/proc/net/ipv6_route")), routes);
    const auto isDead = [this](const Route &route) {
        const QByteArray state = readFile(QStringLiteral("%1/sys/class/net/%2/operstate")
                                              .arg(m_root, QString::fromLatin1(route.interface)))
                                     .trimmed();
        return route.interface == "lo" || state == "down" || state == "lowerlayerdown";
    };
    routes.erase(std::remove_if(routes.begin(), routes.end(), isDead), routes.end());
    if (routes.empty()) {
        return Connection::None;
    }
    // Default routes first, the preferred one of them in front.
    const Route &best = *std::min_element(routes.begin(), routes.end(), [](const Route &a, const Route &b) {
        return a.isDefault != b.isDefault ? a.isDefault : a.metric < b.metric;
    });
    if (best.isDefault) {
        return isModem(best.interface) ? Connection::Modem : Connection::Lan;
    }
    return proxyConfigured() ? Connection::Proxy : Connection::None;
}

} // namespace mevo
