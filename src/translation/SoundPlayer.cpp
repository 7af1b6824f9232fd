#include "translation/SoundPlayer.h"

#include "platform/SoundInput.h"

#include <QDebug>
#include <QFile>
#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>

namespace mevo {

namespace {

/// A player that has neither moved on nor ended for so long will not any more.
constexpr int stillstandMs = 10000;

class MediaPlayer : public SoundPlayer
{
public:
    explicit MediaPlayer(SoundInputs &inputs)
        : m_inputs(inputs)
    {
        m_stillstand.setSingleShot(true);
        m_stillstand.setInterval(stillstandMs);
        m_player.setNotifyInterval(200);
        connect(&m_stillstand, &QTimer::timeout, this,
                [this] { end(SoundEnd::NoPlayer, "it stands still"); });
        // It is also told while nothing moves.
        connect(&m_player, &QMediaPlayer::positionChanged, this, [this](qint64 position) {
            if (position != m_position) {
                m_position = position;
                m_stillstand.start();
            }
        });
        connect(&m_player, qOverload<QMediaPlayer::Error>(&QMediaPlayer::error), this, [this] { fail(); });
        connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
            if (status == QMediaPlayer::EndOfMedia) {
                end(SoundEnd::Played, "");
            } else if (status == QMediaPlayer::InvalidMedia) {
                fail();
            }
        });
    }

    void play(const QString &file) override
    {
        QFile sound(file);
        m_isSound = sound.open(QIODevice::ReadOnly) && beginsAsMp3(sound.peek(4));
        if (m_player.availability() != QMultimedia::Available) {
            end(SoundEnd::NoPlayer, "there is no media player");
            return;
        }
        // Without a device the player would play the whole file into nothing, and be content. Qt's own list
        // of devices stays empty when the sound server comes after the first look at it.
        if (!m_inputs.hasOutput()) {
            end(SoundEnd::NoPlayer, "there is no sound device");
            return;
        }
        m_stillstand.start();
        m_player.setMedia(QUrl::fromLocalFile(file));
        m_player.play();
    }

private:
    /// Sound that cannot be played is the system's fault, anything else the service's.
    void fail()
    {
        end(m_isSound ? SoundEnd::NoPlayer : SoundEnd::Unplayable, qPrintable(m_player.errorString()));
    }

    void end(SoundEnd how, const char *why)
    {
        if (m_ended) {
            return;
        }
        m_ended = true;
        m_stillstand.stop();
        if (how != SoundEnd::Played) {
            qWarning("Reading aloud: %s cannot be played: %s", m_isSound ? "the sound" : "what came", why);
        }
        QTimer::singleShot(0, this, [this, how] { emit ended(how); });
    }

    SoundInputs &m_inputs;
    QMediaPlayer m_player;
    QTimer m_stillstand;
    qint64 m_position = 0; ///< milliseconds
    bool m_isSound = false;
    bool m_ended = false;
};

} // namespace

bool beginsAsMp3(const QByteArray &bytes)
{
    if (bytes.startsWith("ID3")) {
        return true;
    }
    // Eleven bits that are set, then the version, of which one value is none, then layer III.
    return bytes.size() >= 2 && quint8(bytes[0]) == 0xff && (quint8(bytes[1]) & 0xe0) == 0xe0 &&
           (quint8(bytes[1]) & 0x18) != 0x08 && (quint8(bytes[1]) & 0x06) == 0x02;
}

std::unique_ptr<SoundPlayer> makeSoundPlayer(SoundInputs &inputs)
{
    return std::make_unique<MediaPlayer>(inputs);
}

} // namespace mevo
