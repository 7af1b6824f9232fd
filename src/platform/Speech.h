#pragma once

#include <QString>

#include <functional>

namespace mevo {

/// How a text that the system's voice was given came to its end.
enum class SpeechEnd {
    Spoken,
    NoVoice, ///< the system has no voice for its language
    NoSound, ///< the sound could not be played
};

/// The system's voice. GUI thread only; it speaks on a thread of its own.
class Speech
{
public:
    using Ended = std::function<void(SpeechEnd)>;

    /// Ends what is spoken.
    virtual ~Speech() = default;
    /// Makes the voice ready. False when this system has none.
    virtual bool open() = 0;
    /// Speaks a text after those that were given before it, and returns at once. `language` is a BCP 47 tag
    /// such as "cmn" or "ja". False when the voice is not open.
    virtual bool speak(const QString &text, const QString &language) = 0;
    /// -10 (a third as fast) to 10 (three times as fast), 0 is normal. Holds for the texts given from now on.
    virtual void setRate(int rate) = 0;
    /// 0 (silent) to 100, which is where it starts. Holds for the texts given from now on.
    virtual void setVolume(int volume) = 0;
    /// Ends what is spoken and drops what waits; no end is told of them.
    virtual void stop() = 0;
    /// Called from the event loop for each text that has come to its end, in their order.
    virtual void whenStreamEnds(Ended handler) = 0;
};

} // namespace mevo
