#pragma once

#include "service/ServiceState.h"

#include <QNetworkProxy>

#include <optional>

namespace mevo {

/// The HTTP proxy of the settings, host, port, user and password each when present; nothing when it is
/// switched off.
std::optional<QNetworkProxy> chosenProxy(const ServiceState &state);

/// Switches a proxy off of which nothing is set.
void dropEmptyProxy(ServiceState &state);

} // namespace mevo
