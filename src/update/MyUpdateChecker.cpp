#include "update/MyUpdateChecker.h"

#include "base/LogText.h"
#include "base/RunAside.h"
#include "base/WholeFile.h"
#include "service/ProxyChoice.h"
#include "service/ReplyWait.h"
#include "update/UnfinishedUpdate.h"
#include "update/UpdateQuestion.h"
#include "update/UpdateSignature.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

constexpr int statusOk = 200;
constexpr int statusNotFound = 404;

int statusOf(const QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

} // namespace

MyUpdateChecker::MyUpdateChecker(ServiceState &service, UpdateState &update, mevo::UpdateHost &host,
                                 int currentVersion, QString updateKey, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_update(update)
    , m_host(host)
    , m_currentVersion(currentVersion)
    , m_updateKey(std::move(updateKey))
{
    connect(&m_manager, &QNetworkAccessManager::finished, this, [this](QNetworkReply *reply) {
        if (reply == m_versionReply) {
            on_NetworkReply(reply);
        }
    });
}

MyUpdateChecker::~MyUpdateChecker()
{
    m_manager.disconnect(this);
    if (m_download) {
        m_download->disconnect(this);
        m_download->abort();
    }
    if (m_file) {
        m_file->remove();
    }
    if (m_fetched) {
        removeFetched();
    }
}

QNetworkReply *MyUpdateChecker::get(const QUrl &url, int silenceMs)
{
    const auto proxy = mevo::chosenProxy(m_service);
    m_manager.setProxy(proxy ? *proxy : QNetworkProxy(QNetworkProxy::DefaultProxy));
    QNetworkRequest request(url);
    request.setTransferTimeout(silenceMs);
    return m_manager.get(request);
}

void MyUpdateChecker::check()
{
    if (isBusy() || !m_service.IsOnline) {
        return;
    }
    m_phase = Phase::Checking;
    m_secondBase = false;
    m_bases = mevo::updateBases(m_service.ServerVersion, m_update.ManualCheck, m_service);
    requestVersionFile(m_bases.first);
}

void MyUpdateChecker::checkAtWish()
{
    using mevo::CheckAnswer;
    switch (m_phase) {
    case Phase::Idle:
    case Phase::Checking:
        m_update.ManualCheck = true;
        m_update.UpdateNotified = true;
        if (isBusy()) {
            m_wished = true;
            m_host.tellAboutCheck(CheckAnswer::Checking);
        } else if (!m_service.IsOnline) {
            m_host.tellAboutCheck(CheckAnswer::Offline);
        } else {
            m_wished = true;
            check();
        }
        break;
    case Phase::Asking:
        m_host.tellAboutCheck(CheckAnswer::Asking);
        m_host.raiseUpdateQuestion();
        break;
    case Phase::Downloading:
        m_host.tellAboutCheck(CheckAnswer::Downloading);
        if (m_askingToCancel) {
            m_host.raiseUpdateQuestion();
        } else {
            m_host.showDownload(m_found.fileName);
        }
        break;
    case Phase::Installing:
        m_host.tellAboutCheck(CheckAnswer::Installing);
        break;
    }
}

void MyUpdateChecker::end()
{
    m_phase = Phase::Idle;
    m_wished = false;
}

void MyUpdateChecker::endCheck(mevo::CheckAnswer answer)
{
    // A server that is away is told about whenever the check is one by hand, the rest only where it was asked
    // for by name.
    const bool told = m_wished || (answer == mevo::CheckAnswer::NoServer && m_update.ManualCheck);
    end();
    if (told) {
        m_host.tellAboutCheck(answer);
    }
}

void MyUpdateChecker::requestVersionFile(const QString &base)
{
    m_base = base;
    m_replyText.clear();
    // An address that is none fails like one that does not answer.
    m_versionReply = get(mevo::updateUrl(base, m_currentVersion, mevo::versionFileName), checkTimeoutMs);
    mevo::limitReply(m_versionReply, mevo::largestVersionFile);
}

void MyUpdateChecker::on_NetworkReply(QNetworkReply *reply)
{
    m_versionReply = nullptr;
    reply->deleteLater();
    if (reply->error() == QNetworkReply::NoError && statusOf(reply) == statusOk) {
        m_replyText = reply->read(mevo::largestVersionFile + 1);
        decide();
        return;
    }
    qWarning().noquote() << "Update: no version file:" << mevo::logText(reply->errorString());
    if (!m_secondBase) {
        m_secondBase = true;
        requestVersionFile(m_bases.second);
        return;
    }
    endCheck(mevo::CheckAnswer::NoServer);
}

void MyUpdateChecker::decide()
{
    const auto file = mevo::parseVersionFile(m_replyText);
    if (!file) {
        qWarning("Update: the version file cannot be used");
        endCheck(mevo::CheckAnswer::NoVersion);
        return;
    }
    m_found = *file;
    Mode = file->mode;
    switch (mevo::updateStep(*file, m_currentVersion, m_update.ManualCheck, m_update.UpdateNotified)) {
    case mevo::UpdateStep::Nothing:
        endCheck(mevo::CheckAnswer::UpToDate);
        return;
    case mevo::UpdateStep::ClearNotice:
        m_update.UpdateNotified = false;
        m_host.setUpdateNotice(false);
        endCheck(mevo::CheckAnswer::UpToDate);
        return;
    case mevo::UpdateStep::ShowNotice:
        end();
        m_update.UpdateNotified = true;
        m_host.setUpdateNotice(true);
        return;
    case mevo::UpdateStep::Ask:
        break;
    }
    qInfo("Update: version %d is offered", m_found.version);
    m_phase = Phase::Asking;
    m_wished = false;
    const bool forced = m_service.ForceUpdate == 1;
    m_host.askForUpdate(mevo::updateQuestion(m_found, forced, m_service.SWName, !m_updateKey.isEmpty()),
                        forced, [checker = QPointer<MyUpdateChecker>(this)](bool now) {
                            if (checker.isNull()) {
                                return;
                            }
                            qInfo("Update: the question is answered: %s", now ? "now" : "not now");
                            if (now && !checker->m_host.isForeignInstallation()) {
                                checker->download();
                                return;
                            }
                            checker->end();
                            if (now) {
                                checker->m_host.openDownloadPage();
                            }
                        });
}

QString MyUpdateChecker::folderAbove() const
{
    return QDir::cleanPath(QFileInfo(m_host.programFile()).path() + QStringLiteral("/.."));
}

QString MyUpdateChecker::archivePath() const
{
    return folderAbove() + QLatin1Char('/') + m_found.fileName;
}

QString MyUpdateChecker::settingPath() const
{
    return folderAbove() + QLatin1Char('/') + mevo::downloadSettingFile;
}

/// What a download that was not installed has left, if anything.
std::optional<mevo::DownloadSetting> MyUpdateChecker::earlierDownload() const
{
    const auto content = mevo::readWholeFile(settingPath());
    return content ? mevo::parseDownloadSetting(*content) : std::nullopt;
}

/// A file that stands under the name of the archive or its signature and that no earlier download of ours has
/// left: the name is a stranger's choice, and the folder may hold the user's own files.
bool MyUpdateChecker::isSomebodyElses(const QString &path) const
{
    const QFileInfo file(path);
    if (!file.exists() && !file.isSymLink()) {
        return false;
    }
    const auto earlier = earlierDownload();
    if (!earlier) {
        return true;
    }
    const QString name = file.fileName();
    const bool ourSignature =
        !earlier->updateKey.isEmpty() && name == earlier->updaterName + mevo::signatureSuffix;
    return name != earlier->updaterName && !ourSignature;
}

QString MyUpdateChecker::cannotSave(const QString &path, const QString &reason) const
{
    return tr("不能保存文件 %1: %2.").arg(QDir::toNativeSeparators(path), reason);
}

void MyUpdateChecker::download()
{
    m_phase = Phase::Downloading;
    m_writeError.clear();
    m_signatureTurn = false;
    m_signature.clear();
    QStringList names{archivePath()};
    if (!m_updateKey.isEmpty()) {
        names.append(archivePath() + mevo::signatureSuffix);
    }
    for (const QString &name : names) {
        if (isSomebodyElses(name)) {
            giveUp(cannotSave(name, tr("文件已存在")));
            return;
        }
    }
    if (mevo::isUpdaterAtWork()) { // on what an earlier download has fetched; it waits for this program's end
        giveUp(tr("另一个更新正在安装，请稍后再试。"));
        return;
    }
    const QString path = folderAbove() + QLatin1Char('/') + mevo::updatePartFile;
    QFile::remove(path); // opening what stands there could write through a link
    m_file = std::make_unique<QFile>(path);
    if (!m_file->open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        const QString error = m_file->errorString();
        m_file.reset();
        giveUp(cannotSave(archivePath(), error));
        return;
    }
    m_host.showDownload(m_found.fileName);
    m_download = get(mevo::updateUrl(m_base, m_currentVersion, m_found.fileName), downloadSilenceMs);
    connect(m_download, &QNetworkReply::readyRead, this, &MyUpdateChecker::on_HttpDataRead);
    connect(m_download, &QNetworkReply::downloadProgress, this, &MyUpdateChecker::on_UpdateDataReadProgress);
    connect(m_download, &QNetworkReply::finished, this, &MyUpdateChecker::on_HttpFinished);
}

void MyUpdateChecker::on_HttpDataRead()
{
    if (!m_download || !m_file || !m_writeError.isEmpty()) {
        return;
    }
    const QByteArray chunk = m_download->readAll();
    if (m_file->pos() + chunk.size() > largestArchive) {
        m_writeError = tr("文件太大");
    } else if (m_file->write(chunk) != chunk.size() || !m_file->flush()) {
        m_writeError = m_file->errorString();
    }
    if (!m_writeError.isEmpty()) {
        m_download->abort();
    }
}

void MyUpdateChecker::on_UpdateDataReadProgress(qint64 received, qint64 total)
{
    if (m_download && !m_askingToCancel) {
        m_host.moveDownload(received, total);
    }
}

void MyUpdateChecker::on_CancelDownload()
{
    if (!isBusy() || m_askingToCancel || (!m_download && !m_file)) {
        return;
    }
    m_askingToCancel = true;
    const QPointer<MyUpdateChecker> self(this);
    const bool cancel = m_host.confirmCancel();
    if (self.isNull()) {
        return; // the program has ended meanwhile
    }
    m_askingToCancel = false;
    if (cancel) {
        if (m_download) {
            m_download->disconnect(this);
            m_download->abort();
            m_download->deleteLater();
            m_download = nullptr;
        }
        m_next = nullptr;
        qInfo("Update: the download is cancelled");
        giveUp({});
    } else if (m_next) {
        std::exchange(m_next, nullptr)();
    } else if (isBusy()) {
        m_host.showDownload(m_found.fileName);
    }
}

void MyUpdateChecker::on_HttpFinished()
{
    if (!m_download) {
        return;
    }
    if (!m_signatureTurn) {
        on_HttpDataRead();
    }
    goOn([this] { finishDownload(); });
}

void MyUpdateChecker::goOn(const std::function<void()> &step)
{
    if (m_askingToCancel) {
        m_next = step;
    } else {
        step();
    }
}

void MyUpdateChecker::finishDownload()
{
    if (m_signatureTurn) {
        takeSignature();
        return;
    }
    QNetworkReply *const reply = m_download;
    m_download = nullptr;
    reply->deleteLater();
    if (!m_writeError.isEmpty()) {
        giveUp(cannotSave(archivePath(), m_writeError));
    } else if (statusOf(reply) == statusNotFound) {
        giveUp(tr("文件  %1 不存在.").arg(m_found.fileName));
    } else if (reply->error() != QNetworkReply::NoError) {
        giveUp(tr("下载错误: %1.").arg(reply->errorString()));
    } else if (statusOf(reply) != statusOk) {
        giveUp(tr("下载错误: %1.").arg(QStringLiteral("HTTP %1").arg(statusOf(reply))));
    } else if (!m_found.sha256.isEmpty()) {
        checkAside(
            [path = m_file->fileName(), sha256 = m_found.sha256] { return mevo::fileSha256(path) == sha256; },
            &MyUpdateChecker::takeChecksum);
    } else {
        takeChecksum(true);
    }
}

void MyUpdateChecker::checkAside(const std::function<bool()> &check, void (MyUpdateChecker::*then)(bool))
{
    const auto good = std::make_shared<bool>(false);
    mevo::runAside(
        this, [check, good] { *good = check(); },
        [this, then, good, number = ++m_check] {
            if (number == m_check) {
                goOn([this, then, good] { (this->*then)(*good); });
            }
        });
}

void MyUpdateChecker::takeChecksum(bool good)
{
    if (!good) {
        giveUp(tr("下载错误: %1.").arg(tr("校验和不符")));
    } else if (m_updateKey.isEmpty()) {
        complete();
    } else {
        fetchSignature();
    }
}

void MyUpdateChecker::fetchSignature()
{
    m_signatureTurn = true;
    m_download = get(mevo::updateUrl(m_base, m_currentVersion, m_found.fileName + mevo::signatureSuffix),
                     checkTimeoutMs);
    mevo::limitReply(m_download, mevo::largestSignature);
    connect(m_download, &QNetworkReply::finished, this, &MyUpdateChecker::on_HttpFinished);
}

void MyUpdateChecker::takeSignature()
{
    QNetworkReply *const reply = m_download;
    m_download = nullptr;
    reply->deleteLater();
    const bool came = reply->error() == QNetworkReply::NoError && statusOf(reply) == statusOk;
    m_signature = came ? reply->readAll() : QByteArray();
    checkAside([path = m_file->fileName(), signature = m_signature,
                key = m_updateKey] { return mevo::isSignedBy(path, signature, key); },
               &MyUpdateChecker::takeSignatureCheck);
}

void MyUpdateChecker::takeSignatureCheck(bool good)
{
    if (!good) {
        qWarning("Update: the archive has no good signature");
        giveUp(tr("更新文件没有有效的数字签名，已拒绝安装。"));
        return;
    }
    complete();
}

void MyUpdateChecker::complete()
{
    const QString error = placeFetched();
    if (!error.isEmpty()) {
        giveUp(error);
        return;
    }
    m_phase = Phase::Installing;
    m_host.hideDownload();
    qInfo("Update: the archive is here");
    m_host.handOver([checker = QPointer<MyUpdateChecker>(this)](bool started) {
        if (checker.isNull()) {
            return;
        }
        checker->end();
        if (!started) {
            checker->removeFetched();
        }
        checker->m_fetched = false; // it is the updater's now
    });
}

/// Puts what was fetched where the updater looks for it. The setting comes first: it is what tells a later
/// download that the files are ours, also when this program does not get any further. Gives what went wrong.
QString MyUpdateChecker::placeFetched()
{
    const QFileInfo program(m_host.programFile());
    const mevo::DownloadSetting setting{m_found.fileName,
                                        Mode,
                                        program.dir().dirName() + QLatin1Char('/') + program.fileName(),
                                        QString::fromLatin1(m_found.sha256),
                                        m_updateKey,
                                        m_found.version};
    const QString archive = archivePath();
    const QString signature = archive + mevo::signatureSuffix;
    for (const QString &path : {archive, signature}) {
        if (isSomebodyElses(path) && (path == archive || !m_updateKey.isEmpty())) {
            return cannotSave(path, tr("文件已存在")); // it has come during the download
        }
    }
    if (earlierDownload()) {
        removeFetched();
    }
    const QString error = mevo::replaceWholeFile(settingPath(), mevo::downloadSettingText(setting));
    if (!error.isEmpty()) {
        return cannotSave(settingPath(), error);
    }
    m_fetched = true;
    m_file->close();
    if (!m_file->rename(archive)) {
        return cannotSave(archive, m_file->errorString());
    }
    m_file.reset();
    if (!m_updateKey.isEmpty()) {
        const QString failure = mevo::replaceWholeFile(signature, m_signature);
        return failure.isEmpty() ? QString() : cannotSave(signature, failure);
    }
    return {};
}

/// Removes the files that the setting names, and the setting.
void MyUpdateChecker::removeFetched()
{
    if (const auto fetched = earlierDownload()) {
        const QString archive = folderAbove() + QLatin1Char('/') + fetched->updaterName;
        QFile::remove(archive);
        if (!fetched->updateKey.isEmpty()) {
            QFile::remove(archive + mevo::signatureSuffix);
        }
    }
    QFile::remove(settingPath());
}

void MyUpdateChecker::giveUp(const QString &text)
{
    m_host.hideDownload();
    ++m_check;
    if (m_file) {
        m_file->close();
        m_file->remove();
        m_file.reset();
    }
    if (std::exchange(m_fetched, false)) {
        removeFetched();
    }
    end();
    if (!text.isEmpty()) {
        qWarning("Update: the download has failed");
        m_host.tellAboutUpdate(text);
    }
}
