#pragma once

#include "platform/SystemServices.h"

#include <functional>

namespace mevo {

/// Tells the connection from the kernel's routes: by the interface of the default route when there is
/// one; a computer that has none but is told to use a proxy is connected through that.
class RouteNetworkState : public NetworkState
{
public:
    /// `allServicesLocal` says whether every configured service is on loopback: then the computer needs
    /// nothing outside itself and always counts as connected by LAN. `root` stands before "/proc" and
    /// "/sys".
    explicit RouteNetworkState(std::function<bool()> allServicesLocal = {}, const QString &root = {});

    Connection connection() override;

private:
    std::function<bool()> m_allServicesLocal;
    QString m_root;
};

} // namespace mevo
