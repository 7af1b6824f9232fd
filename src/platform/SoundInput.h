#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace mevo {

/// How sound is to come: samples of 16 bit, signed, little-endian, the channels interleaved.
struct SoundFormat
{
    int rate = 0; ///< Hz
    int channels = 1;
    int fragmentBytes = 0; ///< that come at a time
};

/// One recording. It hears from its opening until it is stopped or goes. GUI thread only.
class SoundInput : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// Takes at most `most` bytes of what has come and was not read; how many. Does not wait.
    virtual int read(char *to, int most) = 0;
    enum class Afterwards {
        LetGo,
        KeepReady ///< the microphone waits some minutes for the next recording, which begins sooner then
    };
    /// Hears nothing more, and tells nothing; what has come can still be read. Once; the end lets it go.
    virtual void stop(Afterwards afterwards) = 0;

Q_SIGNALS:
    void readyRead();
    /// It could not be opened, or was taken away: nothing will come any more.
    void ended();
};

/// The microphone that the sound server has as its default. It comes and goes with the server: each opening
/// looks for the server anew. The server is asked here, too, whether it has anything to play by.
class SoundInputs
{
public:
    virtual ~SoundInputs() = default;
    /// The server's own name of the microphone; empty when there is none. Waits for a server that has not
    /// answered yet, some tenths of a second at most. GUI thread only.
    virtual QString defaultName() = 0;
    /// Whether there is an output, which a server that does not answer may have. Waits as defaultName() does.
    virtual bool hasOutput() = 0;
    /// Begins to record; null when no server is there. A server that does not answer holds up nothing: the
    /// recording begins when it does. GUI thread only; the input must go before this does.
    virtual std::unique_ptr<SoundInput> open(const SoundFormat &format) = 0;
    /// A microphone that was kept ready waits no longer.
    virtual void letGo() = 0;
};

} // namespace mevo
