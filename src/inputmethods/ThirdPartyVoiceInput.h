#pragma once

#include "inputmethods/InstallerHost.h"
#include "state/ServiceState.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QUrl>

#include <memory>

/// Fetches the installer of an input method into the program's folder and opens it. One at a time. GUI
/// thread only.
class ThirdPartyVoiceInput : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object. `folder` is where installers go.
    ThirdPartyVoiceInput(const ServiceState &service, mevo::InstallerHost &host, QString folder,
                         bool verifyCertificates, QObject *parent = nullptr);
    /// What has not come whole is removed.
    ~ThirdPartyVoiceInput() override;

    /// Begins the download; nothing while another one is under way. An installer of an earlier download is
    /// replaced, when the new one is here; any other file of that name stays, and there is no download.
    void Start(const QUrl &url);
    bool isBusy() const { return m_file != nullptr; }

    /// Longest silence of the server.
    static constexpr int silenceMs = 30000;
    static inline qint64 largestInstaller = 1LL << 30;
    static constexpr int mostRedirects = 10;

public Q_SLOTS:
    void on_NetworkReply(QNetworkReply *inReply);
    void on_CancelDownload();
    void on_HttpFinished();
    void on_HttpDataRead();
    void on_UpdateDataReadProgress(qint64 received, qint64 total);
    void DownloadTimerTimeout();

private:
    void request();
    bool openPart();
    void follow(const QUrl &target);
    void complete();
    /// Ends with nothing fetched, and says why unless the text is empty.
    void giveUp(const QString &text);
    QString path() const;
    QString partPath() const;
    QString cannotSave(const QString &error) const;

    const ServiceState &m_service;
    mevo::InstallerHost &m_host;
    const QString m_folder;
    const bool m_verifyCertificates;
    QNetworkAccessManager m_manager;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<QFile> m_file;
    QUrl m_url;
    QString m_name;
    QString m_writeError; ///< empty while everything could be written
    int m_redirects = 0;
    bool Aborted = false;
};
