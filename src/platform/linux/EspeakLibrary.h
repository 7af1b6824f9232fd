#pragma once

#include <cstddef>
#include <optional>

/// An event of the library; its content is not looked at.
struct espeak_EVENT;

namespace mevo {

/// The functions of libespeak-ng that are used, as the library exports them (its speak_lib.h describes
/// them). It holds one voice for the process: one thread at a time calls them. It is never terminated: that
/// waits for a thread of the library's own which may have missed its signal, and then for ever (seen
/// with 1.51).
struct EspeakLibrary
{
    /// Takes 16-bit mono samples, null at the end of a text; other than 0 ends the synthesis.
    using Callback = int (*)(short *samples, int count, espeak_EVENT *events);

    /// The sample rate, -1 on failure. The first call counts for all.
    int (*initialize)(int output, int bufferMs, const char *path, int options);
    void (*setSynthCallback)(Callback callback);
    int (*setVoiceByName)(const char *name); ///< 0 when there is such a voice
    int (*setParameter)(int parameter, int value, int relative);
    int (*synth)(const void *text, std::size_t bytes, unsigned position, int positionType,
                 unsigned endPosition, unsigned flags, unsigned *identifier, void *userData);
};

/// Loads the library, which stays until the program's end. Nothing, with a log line, when this system has
/// none.
std::optional<EspeakLibrary> loadEspeakLibrary();

} // namespace mevo
