#pragma once

#include "base/ServiceEndpoints.h"
#include "platform/Notifications.h"
#include "platform/SystemServices.h"
#include "state/MainState.h"
#include "translation/ReadingFolders.h"
#include "translation/ReadingRequest.h"
#include "translation/SoundPlayer.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace mevo {

/// Reads texts aloud by Baidu's speech synthesis. GUI thread only. Readings do not wait for each other: one
/// that is asked for while another plays plays over it. All end with this object, or with stop().
class OnlineReading : public QObject
{
    Q_OBJECT

public:
    using MakePlayer = std::function<std::unique_ptr<SoundPlayer>()>;

    /// Empties the two folders of readings, which are made below the working folder, or below the
    /// application's where that one cannot be written. All but `endpoints` must outlive this object.
    OnlineReading(const MainState &state, EngineEndpoints endpoints, const Time &time,
                  Notifications &notifications, MakePlayer makePlayer, QObject *parent = nullptr);
    ~OnlineReading() override;

    /// Asks for the sound of a text, an empty one too, with the token of now, and plays it when it has come.
    /// A failure is told by a message.
    void read(Pane pane, const QString &text, const ReadingVoice &voice);
    /// Ends what plays and what is asked for, without a message.
    void stop();

    /// Readings that are asked for or play.
    int activeCount() const;

    int requestTimeoutMs = 15000;

private slots:
    void replyFinished_SourceSynVoice(QNetworkReply *reply) { onReply(Pane::Source, reply); }
    void replyFinished_DestSynVoice(QNetworkReply *reply) { onReply(Pane::Destination, reply); }

private:
    void onReply(Pane pane, QNetworkReply *reply);
    void play(const QString &file);
    void onEnded(SoundPlayer *player, SoundEnd end);
    void sayItFailed();

    const MainState &m_state;
    EngineEndpoints m_endpoints;
    const Time &m_time;
    Notifications &m_notifications;
    MakePlayer m_makePlayer;
    QString m_folder;                                ///< in which the folders of the panes stand
    std::vector<QNetworkAccessManager *> m_managers; ///< one for each reading that is asked for
    std::vector<std::unique_ptr<SoundPlayer>> m_players;
};

} // namespace mevo
