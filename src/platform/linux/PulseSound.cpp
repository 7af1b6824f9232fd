#include "platform/linux/SpeechSound.h"

#include <QDebug>

#include <pulse/error.h>
#include <pulse/simple.h>

namespace mevo {

namespace {

/// Sound that is on its way: what a stop cuts off, and what may come late without a gap.
constexpr int bufferMs = 200;

class PulseSound : public SpeechSound
{
public:
    explicit PulseSound(pa_simple *stream)
        : m_stream(stream)
    {
    }
    ~PulseSound() override { pa_simple_free(m_stream); }
    PulseSound(const PulseSound &) = delete;
    PulseSound &operator=(const PulseSound &) = delete;

    bool write(const short *samples, int count) override
    {
        int error = 0;
        return worked(pa_simple_write(m_stream, samples, std::size_t(count) * sizeof(short), &error), error);
    }
    bool drain() override
    {
        int error = 0;
        return worked(pa_simple_drain(m_stream, &error), error);
    }
    void drop() override { pa_simple_flush(m_stream, nullptr); }

private:
    static bool worked(int result, int error)
    {
        if (result < 0) {
            qWarning("Speech: the sound server says: %s", pa_strerror(error));
        }
        return result >= 0;
    }

    pa_simple *m_stream;
};

} // namespace

std::unique_ptr<SpeechSound> makePulseSound(int rate)
{
    pa_sample_spec format{};
    format.format = PA_SAMPLE_S16NE;
    format.rate = static_cast<uint32_t>(rate);
    format.channels = 1;
    pa_buffer_attr buffer{};
    buffer.maxlength = buffer.prebuf = buffer.minreq = buffer.fragsize = static_cast<uint32_t>(-1);
    buffer.tlength = static_cast<uint32_t>(pa_usec_to_bytes(bufferMs * 1000, &format));
    int error = 0;
    pa_simple *stream = pa_simple_new(nullptr, "MEVOInput", PA_STREAM_PLAYBACK, nullptr, "Speech", &format,
                                      nullptr, &buffer, &error);
    if (stream == nullptr) {
        qWarning("Speech: no sound: %s", pa_strerror(error));
        return nullptr;
    }
    return std::make_unique<PulseSound>(stream);
}

} // namespace mevo
