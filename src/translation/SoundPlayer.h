#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

namespace mevo {

/// How the sound of a reading ended.
enum class SoundEnd {
    Played,
    Unplayable, ///< what came is no sound
    NoPlayer,   ///< the system cannot play it
};

/// A sound that plays until it is destroyed.
class SoundPlayer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    virtual void play(const QString &file) = 0;

signals:
    /// Comes once, from the event loop.
    void ended(mevo::SoundEnd end);
};

/// Whether these bytes begin as MP3 does: a tag (ID3) or a frame's header.
bool beginsAsMp3(const QByteArray &bytes);

class SoundInputs;

/// The player of this system: QMediaPlayer. `inputs`, which outlive it, tell whether there is an output.
std::unique_ptr<SoundPlayer> makeSoundPlayer(SoundInputs &inputs);

} // namespace mevo
