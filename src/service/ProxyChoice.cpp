#include "service/ProxyChoice.h"

#include <limits>

namespace mevo {

std::optional<QNetworkProxy> chosenProxy(const ServiceState &state)
{
    if (!state.UseNetworkProxy) {
        return std::nullopt;
    }
    QNetworkProxy proxy(QNetworkProxy::HttpProxy);
    if (!state.NetworkProxy_IP.isEmpty()) {
        proxy.setHostName(state.NetworkProxy_IP);
    }
    if (state.NetworkProxy_Port >= 0 && state.NetworkProxy_Port <= std::numeric_limits<quint16>::max()) {
        proxy.setPort(static_cast<quint16>(state.NetworkProxy_Port));
    }
    if (!state.NetworkProxy_UserName.isEmpty()) {
        proxy.setUser(state.NetworkProxy_UserName);
    }
    if (!state.NetworkProxy_Password.isEmpty()) {
        proxy.setPassword(state.NetworkProxy_Password);
    }
    return proxy;
}

} // namespace mevo
