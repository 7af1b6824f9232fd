#pragma once

#include "state/ServiceState.h"

#include <QNetworkProxy>

#include <optional>

namespace mevo {

/// The HTTP proxy of the settings, host, port, user and password each when present; nothing when it is
/// switched off.
std::optional<QNetworkProxy> chosenProxy(const ServiceState &state);

} // namespace mevo
