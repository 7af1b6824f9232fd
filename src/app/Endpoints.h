#pragma once

#include "engines/EngineEndpoints.h"
#include "service/ServiceState.h"

#include <QString>

namespace mevo {

/// Every service address from "MEVOEndpoints.ini" of the application folder; a key that is absent keeps
/// its compiled default: the backend on loopback, the cloud services' public hosts.
EngineEndpoints loadEndpoints(ServiceState &state, const QString &path = QString());

/// Whether every address that the program would call lies on this machine, so that no network is needed.
bool allOnThisMachine(const ServiceState &state, const EngineEndpoints &endpoints);

} // namespace mevo
