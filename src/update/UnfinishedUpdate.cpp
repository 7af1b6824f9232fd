#include "update/UnfinishedUpdate.h"

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

namespace {

QString baseOf(const QString &programFile)
{
    return QDir::cleanPath(QFileInfo(programFile).path() + QStringLiteral("/.."));
}

std::optional<DownloadSetting> settingIn(const QString &base)
{
    const QString path = base + QLatin1Char('/') + downloadSettingFile;
    const QFileInfo file(path);
    if (!file.isFile() || file.ownerId() != geteuid()) {
        return std::nullopt;
    }
    const auto content = readWholeFile(path);
    return content ? parseDownloadSetting(*content) : std::nullopt;
}

} // namespace

bool isUpdateUnfinished(const QString &programFile, int currentVersion)
{
    const QString folder = QFileInfo(programFile).path();
    if (QFile::exists(folder + QLatin1Char('/') + updatePendingFile)) {
        return false;
    }
    const QString base = baseOf(programFile);
    const auto setting = settingIn(base);
    return setting && setting->version > currentVersion &&
           base + QLatin1Char('/') + setting->exeName == QDir::cleanPath(programFile);
}

bool removeUnfinishedUpdate(const QString &programFile)
{
    const QString base = baseOf(programFile);
    const auto setting = settingIn(base);
    if (!setting) {
        return false;
    }
    const QString archive = base + QLatin1Char('/') + setting->updaterName;
    QFile::remove(archive);
    if (!setting->updateKey.isEmpty()) {
        QFile::remove(archive + signatureSuffix);
    }
    const QString beside = base + QLatin1Char('/') + updateFolderBeside;
    if (QFileInfo(beside).isDir() && !QFileInfo(beside).isSymLink()) {
        QDir(beside).removeRecursively();
    }
    if (!QFile::remove(base + QLatin1Char('/') + downloadSettingFile)) {
        qWarning("Update: the rest of an update that was not installed cannot be removed");
        return false;
    }
    qWarning("Update: version %d was not installed, its updater has been killed; the rest is removed",
             setting->version);
    return true;
}

} // namespace mevo
