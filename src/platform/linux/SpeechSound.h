#pragma once

#include <functional>
#include <memory>

namespace mevo {

/// Where synthesised speech goes: one text's sound. Used by one thread, whose calls wait for the sound.
class SpeechSound
{
public:
    virtual ~SpeechSound() = default;
    /// 16-bit mono samples; waits until nearly all have been played. False when it cannot be played.
    virtual bool write(const short *samples, int count) = 0;
    /// Waits until all has been played.
    virtual bool drain() = 0;
    /// Falls silent at once.
    virtual void drop() = 0;
};

/// Makes the sound of a text at a sample rate; null when nothing can be played.
using MakeSpeechSound = std::function<std::unique_ptr<SpeechSound>(int rate)>;

/// By the sound server.
std::unique_ptr<SpeechSound> makePulseSound(int rate);

} // namespace mevo
