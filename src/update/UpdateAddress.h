#pragma once

#include "base/ServiceEndpoints.h"

#include <QUrl>

namespace mevo {

/// Where a check looks, and where it looks once more when that fails.
struct UpdateBases
{
    QString first;
    QString second;
};

/// `serverVersion` is the text of the backend's last probe, which names a download server of its own unless
/// it is empty.
UpdateBases updateBases(const QString &serverVersion, bool manual, const BackendEndpoints &endpoints);

/// A file for programs of `version` below a base. Invalid when the base is no http or https address.
QUrl updateUrl(const QString &base, int version, const QString &fileName);

/// The file that tells the newest version.
extern const QString versionFileName;

} // namespace mevo
