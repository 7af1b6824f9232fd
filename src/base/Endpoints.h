#pragma once

#include "base/ServiceEndpoints.h"

#include <QString>
#include <QUrl>

namespace mevo {

/// Every service address from "MEVOEndpoints.ini" of the application folder; a key that is absent keeps
/// its compiled default: the backend on loopback, the cloud services' public hosts.
EngineEndpoints loadEndpoints(BackendEndpoints &backend, const QString &path = QString());

/// Whether every address that the program would call lies on this machine, so that no network is needed.
bool allOnThisMachine(const BackendEndpoints &backend, const EngineEndpoints &endpoints);

/// Address of a service from a host of the endpoints: `scheme` counts where the host has none of its own.
QUrl serviceUrl(const char *scheme, const QString &host, const char *path);

} // namespace mevo
