#include "translation/OnlineReading.h"

#include "base/ApplicationFiles.h"
#include "base/WholeFile.h"
#include "engines/BaiduRequest.h"
#include "service/ProxyChoice.h"
#include "service/QReplyTimeout.h"
#include "service/ReplyWait.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QNetworkProxy>
#include <QSslConfiguration>
#include <QSslSocket>

#include <algorithm>

namespace mevo {

namespace {

constexpr int messageMs = 3000;

/// Replaces the file at one stroke: a reading of the same second may still play from the one before.
bool keepSound(const QString &path, const QByteArray &sound)
{
    QDir().mkpath(QFileInfo(path).path());
    const QString failed = replaceWholeFile(path, sound);
    if (!failed.isEmpty()) {
        qWarning().noquote() << "Reading aloud:" << path << "cannot be written:" << failed;
    }
    return failed.isEmpty();
}

} // namespace

OnlineReading::OnlineReading(const MainState &state, EngineEndpoints endpoints, const Time &time,
                             Notifications &notifications, MakePlayer makePlayer, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_endpoints(std::move(endpoints))
    , m_time(time)
    , m_notifications(notifications)
    , m_makePlayer(std::move(makePlayer))
    , m_folder(QStringLiteral("."))
{
    if (!remakeReadingFolders(m_folder)) {
        m_folder = appFolder();
        remakeReadingFolders(m_folder);
    }
}

OnlineReading::~OnlineReading()
{
    stop();
}

void OnlineReading::read(Pane pane, const QString &text, const ReadingVoice &voice)
{
    const QUrl url = readingUrl(m_endpoints, text, m_state.BaiduTtsAccessToken, voice);
    QNetworkRequest request(url);
    if (!checksCertificate(m_endpoints, url)) {
        QSslConfiguration ssl = request.sslConfiguration();
        ssl.setPeerVerifyMode(QSslSocket::VerifyNone);
        request.setSslConfiguration(ssl);
    }
    auto *manager = new QNetworkAccessManager(this);
    if (const std::optional<QNetworkProxy> proxy = chosenProxy(m_state)) {
        manager->setProxy(*proxy);
    }
    m_managers.push_back(manager);
    connect(manager, &QNetworkAccessManager::finished, this,
            pane == Pane::Source ? &OnlineReading::replyFinished_SourceSynVoice
                                 : &OnlineReading::replyFinished_DestSynVoice);
    QNetworkReply *reply = manager->get(request);
    limitReply(reply);
    new QReplyTimeout(reply, requestTimeoutMs);
}

void OnlineReading::stop()
{
    for (QNetworkAccessManager *manager : m_managers) {
        manager->disconnect(this);
        manager->deleteLater();
    }
    m_managers.clear();
    for (std::unique_ptr<SoundPlayer> &player : m_players) {
        player->disconnect(this);
    }
    m_players.clear();
}

int OnlineReading::activeCount() const
{
    return int(m_managers.size() + m_players.size());
}

void OnlineReading::onReply(Pane pane, QNetworkReply *reply)
{
    QNetworkAccessManager *manager = reply->manager();
    m_managers.erase(std::remove(m_managers.begin(), m_managers.end(), manager), m_managers.end());
    manager->deleteLater(); // and the reply with it
    if (reply->error() != QNetworkReply::NoError) {
        // Not its text, which may hold the address with the token.
        qWarning("Reading aloud: the service failed with error %d", int(reply->error()));
        sayItFailed();
        return;
    }
    const QString path = readingFolder(pane, m_folder) + QLatin1Char('/') + readingFile(m_time.now());
    if (keepSound(path, reply->readAll())) {
        play(QFileInfo(path).absoluteFilePath());
    } else {
        sayItFailed();
    }
}

void OnlineReading::play(const QString &file)
{
    m_players.push_back(m_makePlayer());
    SoundPlayer *player = m_players.back().get();
    connect(player, &SoundPlayer::ended, this, [this, player](SoundEnd end) { onEnded(player, end); });
    player->play(file);
}

void OnlineReading::onEnded(SoundPlayer *player, SoundEnd end)
{
    const auto found = std::find_if(m_players.begin(), m_players.end(),
                                    [player](const auto &one) { return one.get() == player; });
    if (found == m_players.end()) {
        return;
    }
    player->disconnect(this);
    found->release()->deleteLater(); // it is its signal that we are in
    m_players.erase(found);
    if (end == SoundEnd::Unplayable) {
        sayItFailed();
    } else if (end == SoundEnd::NoPlayer) {
        m_notifications.message(QString(), tr("无法播放朗读的声音，请检查声音设备和MP3播放组件！"),
                                MessageIcon::Information, messageMs);
    }
}

void OnlineReading::sayItFailed()
{
    m_notifications.message(QString(), tr("在线朗读失败，如网络正常且一直显示此消息，请与销售商联系！"),
                            MessageIcon::Information, messageMs);
}

} // namespace mevo
