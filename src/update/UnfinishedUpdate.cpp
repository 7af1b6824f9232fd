#include "update/UnfinishedUpdate.h"

#include "base/RuntimeLock.h"
#include "base/WholeFile.h"
#include "update/DownloadSetting.h"
#include "update/StartReport.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace mevo {

const QString updateFolderBeside = QStringLiteral(".update-new");
const QString updatePartFile = QStringLiteral(".update-part");

namespace {

/// That of another user may be one that is under way.
bool isOwnFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.ownerId() == geteuid();
}

std::optional<DownloadSetting> settingIn(const QString &base)
{
    const QString path = base + QLatin1Char('/') + downloadSettingFile;
    const auto content = isOwnFile(path) ? readWholeFile(path) : std::nullopt;
    return content ? parseDownloadSetting(*content) : std::nullopt;
}

/// The archive, its signature, the folder beside and the setting, which goes last: until then the next start
/// comes back to it. False when it stays.
bool removeHandedOver(const QString &base, const DownloadSetting &setting)
{
    const QString archive = base + QLatin1Char('/') + setting.updaterName;
    QFile::remove(archive);
    if (!setting.updateKey.isEmpty()) {
        QFile::remove(archive + signatureSuffix);
    }
    const QString beside = base + QLatin1Char('/') + updateFolderBeside;
    if (QFileInfo(beside).isDir() && !QFileInfo(beside).isSymLink()) {
        QDir(beside).removeRecursively();
    }
    return QFile::remove(base + QLatin1Char('/') + downloadSettingFile);
}

} // namespace

std::optional<UnfinishedUpdate> clearUpdateRest(const QString &programFile, int currentVersion)
{
    RuntimeLock updater(updaterLockName);
    if (!updater.acquire(0)) {
        return std::nullopt;
    }
    const QString folder = QFileInfo(programFile).path();
    const QString base = QDir::cleanPath(folder + QStringLiteral("/.."));
    std::optional<UnfinishedUpdate> unfinished;
    const QString part = base + QLatin1Char('/') + updatePartFile;
    if (isOwnFile(part) && QFile::remove(part)) {
        qWarning("Update: the rest of a download is removed");
        unfinished = UnfinishedUpdate();
    }
    const auto setting = settingIn(base);
    if (!setting || QFile::exists(folder + QLatin1Char('/') + updatePendingFile) ||
        base + QLatin1Char('/') + setting->exeName != QDir::cleanPath(programFile)) {
        return unfinished;
    }
    if (!removeHandedOver(base, *setting)) {
        qWarning("Update: the rest of version %d cannot be removed", setting->version);
        return unfinished;
    }
    if (setting->version <= currentVersion) {
        qInfo("Update: its updater has ended before it had tidied up, which is done now");
        return unfinished;
    }
    qWarning("Update: version %d was not installed, its updater has ended early; the rest is removed",
             setting->version);
    return UnfinishedUpdate{setting->version};
}

bool isUpdaterAtWork()
{
    RuntimeLock updater(updaterLockName);
    return !updater.acquire(0) && updater.isTaken();
}

} // namespace mevo
