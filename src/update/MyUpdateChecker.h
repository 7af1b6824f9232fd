#pragma once

#include "state/ServiceState.h"
#include "state/UpdateState.h"
#include "update/DownloadSetting.h"
#include "update/UpdateAddress.h"
#include "update/UpdateHost.h"
#include "update/VersionFile.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

/// Looks up the version file, offers a new version, fetches it and hands over to the updater. One check at a
/// time: one that is asked for while another has not ended does nothing. GUI thread only.
class MyUpdateChecker : public QObject
{
    Q_OBJECT

public:
    /// The states and the host must outlive this object.
    MyUpdateChecker(ServiceState &service, UpdateState &update, mevo::UpdateHost &host, int currentVersion,
                    QString updateKey, QObject *parent = nullptr);
    /// What was fetched and not handed over is removed.
    ~MyUpdateChecker() override;

    /// Starts a check by the flags of the state. Nothing without a network.
    void check();
    /// The same for a user who waits for the answer: there is one in any case, also where a check, a question
    /// or a download is under way already, which is brought to the front. The check is one by hand, as far as
    /// it has not come further, and asks.
    void checkAtWish();
    bool isBusy() const { return m_phase != Phase::Idle; }

    static constexpr int checkTimeoutMs = 10000;
    /// Longest silence of the server within a download.
    static constexpr int downloadSilenceMs = 30000;
    static constexpr qint64 largestArchive = 1LL << 30;

public Q_SLOTS:
    /// A version file has come, or not.
    void on_NetworkReply(QNetworkReply *reply);
    void on_HttpFinished();
    void on_HttpDataRead();
    void on_UpdateDataReadProgress(qint64 received, qint64 total);
    void on_CancelDownload();

private:
    enum class Phase { Idle, Checking, Asking, Downloading, Installing };

    /// The check has come to its end; whoever has asked for it hears how.
    void endCheck(mevo::CheckAnswer answer);
    void end();
    QNetworkReply *get(const QUrl &url, int silenceMs);
    void requestVersionFile(const QString &base);
    void decide();
    void download();
    void finishDownload();
    /// Takes a step of the download, after the user's answer where the question whether to cancel stands.
    void goOn(const std::function<void()> &step);
    /// Runs `check` in a thread of its own, since a large archive takes seconds, and `then` with its result;
    /// not when the download has been given up meanwhile.
    void checkAside(const std::function<bool()> &check, void (MyUpdateChecker::*then)(bool good));
    void takeChecksum(bool good);
    void fetchSignature();
    void takeSignature();
    void takeSignatureCheck(bool good);
    void complete();
    QString placeFetched();
    void removeFetched();
    /// Ends with nothing fetched, and says why unless the text is empty.
    void giveUp(const QString &text);
    QString archivePath() const;
    QString settingPath() const;
    QString folderAbove() const;
    std::optional<mevo::DownloadSetting> earlierDownload() const;
    bool isSomebodyElses(const QString &path) const;
    QString cannotSave(const QString &path, const QString &reason) const;

    ServiceState &m_service;
    UpdateState &m_update;
    mevo::UpdateHost &m_host;
    const int m_currentVersion;
    const QString m_updateKey;
    QNetworkAccessManager m_manager;
    QPointer<QNetworkReply> m_versionReply;
    QPointer<QNetworkReply> m_download;
    QByteArray m_replyText;
    mevo::VersionFile m_found;
    mevo::UpdateMode Mode = mevo::UpdateMode::All;
    mevo::UpdateBases m_bases;
    QString m_base;                ///< that answers
    std::unique_ptr<QFile> m_file; ///< of the download, until it stands under the archive's name
    QByteArray m_signature;
    int m_check = 0;      ///< number of the check whose result counts
    QString m_writeError; ///< empty while everything could be written
    Phase m_phase = Phase::Idle;
    bool m_wished = false; ///< the user waits for the answer of this check
    bool m_secondBase = false;
    bool m_askingToCancel = false;
    std::function<void()> m_next; ///< step that waits for the answer
    bool m_signatureTurn = false; ///< the archive is here, its signature is being fetched
    bool m_fetched = false;       ///< archive and setting stand where the updater looks for them
};
