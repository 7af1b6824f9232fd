#include "inputmethods/ThirdPartyVoiceInput.h"

#include "base/LogText.h"
#include "base/SettingsFile.h"
#include "inputmethods/InstallerAddress.h"
#include "service/ProxyChoice.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSslConfiguration>
#include <QTimer>

namespace {

constexpr int statusOk = 200;
constexpr int installerShownMs = 3000;
/// Name of the last installer that was begun: the file of that name is ours to replace.
const QString installerKey = QStringLiteral("InstallerFile");

bool exists(const QString &path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

/// A program that the system itself can run once it is allowed to.
bool isProgram(const QString &path)
{
    QFile file(path);
    const QByteArray begin = file.open(QIODevice::ReadOnly) ? file.read(4) : QByteArray();
    return begin.startsWith("#!") || begin == QByteArray("\x7f"
                                                         "ELF");
}

} // namespace

ThirdPartyVoiceInput::ThirdPartyVoiceInput(const ServiceState &service, mevo::InstallerHost &host,
                                           QString folder, bool verifyCertificates, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_host(host)
    , m_folder(std::move(folder))
    , m_verifyCertificates(verifyCertificates)
{
    connect(&m_manager, &QNetworkAccessManager::finished, this, &ThirdPartyVoiceInput::on_NetworkReply);
}

ThirdPartyVoiceInput::~ThirdPartyVoiceInput()
{
    m_manager.disconnect(this);
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
    if (m_file) {
        m_file->remove();
    }
}

QString ThirdPartyVoiceInput::path() const
{
    return m_folder + QLatin1Char('/') + m_name;
}

QString ThirdPartyVoiceInput::partPath() const
{
    return path() + QStringLiteral(".part");
}

QString ThirdPartyVoiceInput::cannotSave(const QString &error) const
{
    return tr("Impossible to save the file %1: %2.").arg(QDir::toNativeSeparators(path()), error);
}

void ThirdPartyVoiceInput::Start(const QUrl &url)
{
    if (isBusy()) {
        return;
    }
    Aborted = false;
    m_redirects = 0;
    m_writeError.clear();
    m_url = url;
    m_name = mevo::installerFileName(mevo::installerUrl(url.toString(QUrl::FullyEncoded)));
    if (m_name.isEmpty()) {
        giveUp(
            tr("File %1 is not present.").arg(url.toDisplayString(QUrl::RemoveQuery | QUrl::RemoveUserInfo)));
        return;
    }
    mevo::SettingsFile settings;
    if ((exists(path()) || exists(partPath())) && settings.value(installerKey).toString() != m_name) {
        giveUp(cannotSave(tr("文件已存在"))); // the name is a stranger's choice, the file may be anybody's
        return;
    }
    settings.setValue(installerKey, m_name);
    if (!openPart()) {
        return;
    }
    qInfo("Input method: its installer is being fetched");
    m_host.showDownload();
    request();
}

bool ThirdPartyVoiceInput::openPart()
{
    QFile::remove(partPath()); // opening what stands there could write through a link
    auto file = std::make_unique<QFile>(partPath());
    if (!file->open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        giveUp(cannotSave(file->errorString()));
        return false;
    }
    m_file = std::move(file);
    return true;
}

void ThirdPartyVoiceInput::request()
{
    const auto proxy = mevo::chosenProxy(m_service);
    m_manager.setProxy(proxy ? *proxy : QNetworkProxy(QNetworkProxy::DefaultProxy));
    QNetworkRequest request(m_url);
    if (!m_verifyCertificates) {
        QSslConfiguration ssl = QSslConfiguration::defaultConfiguration();
        ssl.setPeerVerifyMode(QSslSocket::VerifyNone);
        ssl.setProtocol(QSsl::TlsV1SslV3);
        request.setSslConfiguration(ssl);
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/x-www-form-urlencoded"));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(silenceMs);
    m_reply = m_manager.get(request);
    connect(m_reply, &QNetworkReply::readyRead, this, &ThirdPartyVoiceInput::on_HttpDataRead);
    connect(m_reply, &QNetworkReply::downloadProgress, this,
            &ThirdPartyVoiceInput::on_UpdateDataReadProgress);
    connect(m_reply, &QNetworkReply::finished, this, &ThirdPartyVoiceInput::on_HttpFinished);
}

void ThirdPartyVoiceInput::on_NetworkReply(QNetworkReply *inReply)
{
    inReply->deleteLater();
}

void ThirdPartyVoiceInput::on_HttpDataRead()
{
    if (!m_reply || !m_file || Aborted || !m_writeError.isEmpty()) {
        return;
    }
    const QByteArray chunk = m_reply->readAll();
    if (m_file->pos() + chunk.size() > largestInstaller) {
        m_writeError = tr("文件太大");
    } else if (m_file->write(chunk) != chunk.size() || !m_file->flush()) {
        m_writeError = m_file->errorString();
    }
    if (!m_writeError.isEmpty()) {
        m_reply->abort();
    }
}

void ThirdPartyVoiceInput::on_UpdateDataReadProgress(qint64 received, qint64 total)
{
    if (Aborted || !m_file) {
        return;
    }
    if (total > largestInstaller && m_writeError.isEmpty()) {
        m_writeError = tr("文件太大");
        m_reply->abort();
        return;
    }
    m_host.moveDownload(received, total);
}

void ThirdPartyVoiceInput::on_CancelDownload()
{
    if (!m_file || Aborted) {
        return;
    }
    Aborted = true;
    qInfo("Input method: the download is cancelled");
    if (m_reply) {
        m_reply->abort(); // ends in on_HttpFinished()
    } else {
        giveUp({});
    }
    m_host.downloadCancelled();
}

void ThirdPartyVoiceInput::on_HttpFinished()
{
    if (!m_reply || !m_file) {
        return;
    }
    on_HttpDataRead();
    QNetworkReply *const reply = m_reply;
    m_reply = nullptr;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (Aborted) {
        giveUp({});
    } else if (!m_writeError.isEmpty()) {
        giveUp(cannotSave(m_writeError));
    } else if (reply->error() != QNetworkReply::NoError) {
        giveUp(tr("Download failed: %1.").arg(reply->errorString()));
    } else if (!target.isEmpty()) {
        follow(m_url.resolved(target));
    } else if (status != statusOk || m_file->size() == 0) {
        giveUp(
            tr("Download failed: %1.").arg(QStringLiteral("HTTP %1, %2 B").arg(status).arg(m_file->size())));
    } else {
        complete();
    }
}

void ThirdPartyVoiceInput::follow(const QUrl &target)
{
    const bool web = target.scheme() == QLatin1String("http") || target.scheme() == QLatin1String("https");
    const bool lessSafe = m_url.scheme() == QLatin1String("https") && target.scheme() != m_url.scheme();
    if (!web || lessSafe || target.host().isEmpty() || ++m_redirects > mostRedirects) {
        qWarning().noquote() << "Input method: a redirect of the download is refused";
        giveUp(tr("Download failed: %1.").arg(mevo::logText(target.toDisplayString(QUrl::RemoveQuery))));
        return;
    }
    m_url = target;
    m_file->seek(0);
    if (!m_file->resize(0)) {
        giveUp(cannotSave(m_file->errorString()));
        return;
    }
    request();
}

void ThirdPartyVoiceInput::complete()
{
    m_host.hideDownload();
    m_file->close();
    QFile::remove(path());
    if (!m_file->rename(path())) {
        giveUp(cannotSave(m_file->errorString()));
        return;
    }
    m_file.reset();
    if (isProgram(path())) {
        QFile::setPermissions(path(), QFile::permissions(path()) | QFile::ExeOwner | QFile::ExeUser);
    }
    qInfo("Input method: its installer is here and is opened");
    m_host.openInstaller(path());
    QTimer::singleShot(installerShownMs, this, &ThirdPartyVoiceInput::DownloadTimerTimeout);
}

void ThirdPartyVoiceInput::DownloadTimerTimeout()
{
    m_host.installerOpened();
}

void ThirdPartyVoiceInput::giveUp(const QString &text)
{
    m_host.hideDownload();
    if (m_file) {
        m_file->close();
        m_file->remove();
        m_file.reset();
    }
    if (!text.isEmpty()) {
        qWarning("Input method: the download has failed");
        m_host.tellAboutDownload(text);
    }
}
