#pragma once

#include "platform/SoundInput.h"

#include <QByteArray>

#include <cstddef>
#include <memory>
#include <mutex>

struct pa_context;
struct pa_operation;
struct pa_stream;

namespace mevo {

/// Lets a request to the server go, or none: its answer does not matter, as a server that fails ends the
/// streams as well.
void forget(pa_operation *operation);

/// What a recording has brought, between the sound server's thread, which fills it, and its reader.
class SoundInlet
{
public:
    explicit SoundInlet(SoundInput *reader)
        : m_reader(reader)
    {
    }

    /// The reader hears of it from its event loop.
    void put(const void *data, std::size_t size);
    /// Nothing will come any more. The reader hears of it after what came before.
    void end();
    /// The reader's: it wants to hear of nothing more.
    void leave();
    int take(char *to, int most);

private:
    std::mutex m_mutex;
    SoundInput *m_reader; ///< null once it has left
    QByteArray m_bytes;
    int m_taken = 0;     ///< of the bytes
    bool m_told = false; ///< the reader has not looked since it was called
    bool m_ended = false;
};

/// A stream from the microphone into an inlet. On the sound server's thread only.
class PulseRecording
{
public:
    /// `microphone` is the server's name of it; empty for the server's own choice.
    PulseRecording(pa_context *context, const QByteArray &microphone, const SoundFormat &format,
                   std::shared_ptr<SoundInlet> inlet);
    ~PulseRecording();
    PulseRecording(const PulseRecording &) = delete;
    PulseRecording &operator=(const PulseRecording &) = delete;

    /// The server has it. Only then can it be paused.
    bool isReady() const;
    const SoundInlet *inlet() const { return m_inlet.get(); }
    const SoundFormat &format() const { return m_format; }
    /// Hears nothing until it is resumed, but stays with the server.
    void pause();
    void resume(std::shared_ptr<SoundInlet> inlet);

private:
    void heard();
    void end(const char *why);

    SoundFormat m_format;
    std::shared_ptr<SoundInlet> m_inlet; ///< null while paused
    pa_stream *m_stream;
};

} // namespace mevo
