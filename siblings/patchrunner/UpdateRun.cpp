#include "patchrunner/UpdateRun.h"

#include "base/RuntimeLock.h"
#include "base/WholeFile.h"
#include "patchrunner/ArchiveUnpacker.h"
#include "patchrunner/FolderExchange.h"
#include "patchrunner/KeptFiles.h"
#include "patchrunner/ProgramStart.h"
#include "update/DownloadSetting.h"
#include "update/StartReport.h"
#include "update/UnfinishedUpdate.h"
#include "update/UpdateSignature.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace mevo::patchrunner {

namespace {

constexpr unsigned long pollMs = 50;

const QString updaterName = QStringLiteral("PatchRunner");

class UpdateRun
{
public:
    UpdateRun(const QString &base, const DownloadSetting &setting, const RunTimes &times)
        : m_base(base)
        , m_setting(setting)
        , m_times(times)
        , m_program(base + QLatin1Char('/') + setting.exeName)
        , m_folder(QFileInfo(m_program).path())
        , m_beside(base + QLatin1Char('/') + updateFolderBeside)
        , m_archive(base + QLatin1Char('/') + setting.updaterName)
    {
    }

    Report run()
    {
        if (!m_lock.acquire(m_times.endMs)) {
            return {Outcome::StillRunning, QStringLiteral("the program has not ended")};
        }
        qInfo("The program has ended");
        // An earlier run may have ended between the exchange and the first start: then the folder beside is
        // the old version, the only one there is, and that run is taken up where it was left.
        if (!QFile::exists(pendingIn(m_folder)) || !QFileInfo(m_beside).isDir()) {
            QFile::remove(pendingIn(m_folder));
            Report report = prepare();
            if (report.outcome == Outcome::Done) {
                report = exchange();
            }
            if (report.outcome != Outcome::Done) {
                return leave(report);
            }
        }
        if (!comesUp()) {
            return takeBack();
        }
        qInfo("The new version has come up");
        renewUpdater();
        removeFetched();
        removeFolder(m_beside);
        return {};
    }

private:
    static QString pendingIn(const QString &folder) { return folder + QLatin1Char('/') + updatePendingFile; }

    static Report bySystem(int error)
    {
        const QString text = QString::fromLocal8Bit(std::strerror(error));
        switch (error) {
        case ENOSPC:
        case EDQUOT:
            return {Outcome::NoSpace, text};
        case EROFS:
        case EACCES:
        case EPERM:
            return {Outcome::ReadOnly, text};
        default:
            return {Outcome::Failed, text};
        }
    }

    /// Builds the new version whole in the folder beside.
    Report prepare()
    {
        const QFileInfo folder(m_folder);
        if (!folder.isDir() || folder.isSymLink()) {
            return {Outcome::Failed, QStringLiteral("there is no program's folder")};
        }
        for (const QString &path : {m_base, m_folder}) {
            if (access(QFile::encodeName(path).constData(), W_OK | X_OK) != 0) {
                return bySystem(errno);
            }
        }
        removeFolder(m_beside);
        const int error = exchangeErrorIn(m_base);
        if (error != 0) {
            const Report report = bySystem(error);
            return report.outcome == Outcome::Failed ? Report{Outcome::NoExchange, report.detail} : report;
        }
        Report report = checkArchive();
        return report.outcome == Outcome::Done ? build() : report;
    }

    Report checkArchive() const
    {
        if (!m_setting.updateKey.isEmpty()) {
            QFile signature(m_archive + signatureSuffix);
            const QByteArray content =
                signature.open(QIODevice::ReadOnly) ? signature.read(largestSignature) : QByteArray();
            if (!isSignedBy(m_archive, content, m_setting.updateKey)) {
                return {Outcome::BadSignature, QStringLiteral("the archive is not signed by the known key")};
            }
        }
        if (!m_setting.sha256.isEmpty() && fileSha256(m_archive) != m_setting.sha256.toLatin1()) {
            return {Outcome::BadArchive, QStringLiteral("the archive's checksum is wrong")};
        }
        return {};
    }

    Report build() const
    {
        if (mkdir(QFile::encodeName(m_beside).constData(), 0755) != 0) {
            return bySystem(errno);
        }
        const Unpacked unpacked = unpackArchive(m_archive, m_beside);
        if (!unpacked.error.isEmpty()) {
            return {unpacked.noSpace ? Outcome::NoSpace : Outcome::BadArchive, unpacked.error};
        }
        const QString program = QFileInfo(m_program).fileName();
        const bool wanted = m_setting.mode == UpdateMode::Part || unpacked.files.contains(program);
        if (!wanted || unpacked.files.isEmpty() || unpacked.files.contains(updatePendingFile)) {
            return {Outcome::BadArchive, QStringLiteral("it is no version of this program")};
        }
        if (!isOffered()) {
            return {Outcome::BadArchive,
                    QStringLiteral("it is not the version that was offered, %1").arg(m_setting.version)};
        }
        const Kept kept = keepFiles(m_folder, m_beside);
        if (!kept.error.isEmpty()) {
            return {kept.noSpace ? Outcome::NoSpace : Outcome::Failed, kept.error};
        }
        const QFileInfo newProgram(m_beside + QLatin1Char('/') + program);
        if (!newProgram.isFile() || !newProgram.isExecutable()) {
            return {Outcome::BadArchive, QStringLiteral("its program cannot be run")};
        }
        const QString error = replaceWholeFile(pendingIn(m_beside), "1\n");
        if (!error.isEmpty()) {
            return {Outcome::NoSpace, error};
        }
        struct stat mode = {};
        if (stat(QFile::encodeName(m_folder).constData(), &mode) == 0) {
            chmod(QFile::encodeName(m_beside).constData(), mode.st_mode & 0777U);
        }
        return {};
    }

    /// Before anything of the old folder is in the new one.
    bool isOffered() const
    {
        const auto content = readWholeFile(m_beside + QLatin1Char('/') + archiveVersionFile);
        return content && parseArchiveVersion(*content) == m_setting.version;
    }

    Report exchange() const
    {
        const QString error = exchangeFolders(m_folder, m_beside);
        if (!error.isEmpty()) {
            return {Outcome::Failed, error};
        }
        qInfo("The folders are exchanged");
        return {};
    }

    bool comesUp()
    {
        m_lock.release(); // the new version takes it
        if (!m_start.start(m_program)) {
            return false;
        }
        QElapsedTimer timer;
        timer.start();
        while (QFile::exists(pendingIn(m_folder))) {
            // One that the user has started meanwhile is as good: ours has ended then, and the lock is taken.
            if (timer.hasExpired(m_times.startMs) || (m_start.hasEnded() && m_lock.acquire(0))) {
                return !QFile::exists(pendingIn(m_folder));
            }
            QThread::msleep(pollMs);
        }
        return true;
    }

    Report takeBack()
    {
        m_start.kill();
        if (!m_lock.acquire(m_times.endAgainMs)) {
            return {Outcome::Unconfirmed, QStringLiteral("the new version neither came up nor ended")};
        }
        const QString error = exchangeFolders(m_folder, m_beside);
        if (!error.isEmpty()) {
            m_lock.release();
            m_start.start(m_program); // better the new one once more than none
            return {Outcome::Failed, QStringLiteral("the old version cannot be brought back: ") + error};
        }
        qWarning("The new version has not come up: the old one is back");
        return leave({Outcome::NotStarted, QStringLiteral("the new version did not come up")});
    }

    /// The old version runs on, and nothing of the update is left.
    Report leave(const Report &report)
    {
        removeFetched();
        removeFolder(m_beside);
        m_lock.release();
        if (!m_start.start(m_program)) {
            qWarning("The program cannot be started");
        }
        return report;
    }

    void removeFetched() const
    {
        QFile::remove(m_base + QLatin1Char('/') + downloadSettingFile);
        QFile::remove(m_archive);
        if (!m_setting.updateKey.isEmpty()) {
            QFile::remove(m_archive + signatureSuffix);
        }
    }

    /// A new version may bring a new updater, which stands above the program's folder.
    void renewUpdater() const
    {
        const QString brought = m_folder + QLatin1Char('/') + updaterName;
        const QString own = m_base + QLatin1Char('/') + updaterName;
        const QString fresh = m_base + QStringLiteral("/.PatchRunner.new");
        const QFileInfo info(brought);
        if (!info.isFile() || info.isSymLink() || !info.isExecutable() ||
            fileSha256(brought) == fileSha256(own)) {
            return;
        }
        QFile::remove(fresh);
        if (!QFile::copy(brought, fresh) || !syncFileSystem(m_base) ||
            rename(QFile::encodeName(fresh).constData(), QFile::encodeName(own).constData()) != 0) {
            qWarning("The updater itself could not be renewed");
            QFile::remove(fresh);
        }
    }

    const QString m_base;
    const DownloadSetting m_setting;
    const RunTimes m_times;
    const QString m_program;
    const QString m_folder; ///< of the program
    const QString m_beside; ///< the new version before the exchange, the old one after it
    const QString m_archive;
    RuntimeLock m_lock{programLockName};
    ProgramStart m_start;
};

/// The program where it is installed: one folder down, and there only once. Empty when it is not to be found.
QString programBelow(const QString &base)
{
    QStringList found;
    for (const QString &folder : QDir(base).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QFileInfo program(base + QLatin1Char('/') + folder + QStringLiteral("/mevoinput"));
        if (program.isFile() && program.isExecutable()) {
            found.append(program.filePath());
        }
    }
    return found.size() == 1 ? found.first() : QString();
}

/// The program has ended for an update that is not there: it goes on.
void startAgain(const QString &base, int endMs)
{
    const QString program = programBelow(base);
    RuntimeLock lock(programLockName);
    if (program.isEmpty() || !lock.acquire(endMs)) {
        qWarning("The program is not started: it runs, or is not to be found");
        return;
    }
    lock.release();
    if (!ProgramStart().start(program)) {
        qWarning("The program cannot be started");
    }
}

} // namespace

Report runUpdate(const QString &base, const RunTimes &times)
{
    RuntimeLock updater(updaterLockName);
    if (!updater.acquire(times.updaterMs)) {
        return {Outcome::AnotherRuns, QStringLiteral("another updater is at work")};
    }
    const auto content = readWholeFile(base + QLatin1Char('/') + downloadSettingFile);
    const auto setting = content ? parseDownloadSetting(*content) : std::nullopt;
    if (!setting) {
        startAgain(base, times.endMs);
        return {Outcome::NothingToDo, QStringLiteral("there is no update to be installed")};
    }
    return UpdateRun(base, *setting, times).run();
}

} // namespace mevo::patchrunner
