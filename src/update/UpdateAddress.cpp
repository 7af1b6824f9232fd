#include "update/UpdateAddress.h"

#include "base/WebPage.h"

namespace mevo {

const QString versionFileName = QStringLiteral("ORVAppVer.txt");

UpdateBases updateBases(const QString &serverVersion, bool manual, const BackendEndpoints &endpoints)
{
    UpdateBases bases{manual ? endpoints.ManualDownloadUrl : endpoints.VersionCheckUrl,
                      manual ? endpoints.ManualDownloadUrl1 : endpoints.VersionCheckUrl1};
    if (!serverVersion.isEmpty()) {
        bases.first =
            serverVersion + (manual ? QStringLiteral("/NewVersion_Manual") : QStringLiteral("/NewVersion"));
    }
    return bases;
}

QUrl updateUrl(const QString &base, int version, const QString &fileName)
{
    const QUrl url(QStringLiteral("%1/Update/Z19/%2/PenPad/%3").arg(base).arg(version).arg(fileName));
    return isWebPage(url) ? url : QUrl();
}

} // namespace mevo
