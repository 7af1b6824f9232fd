#include "platform/linux/PulseRecording.h"

#include <QDebug>
#include <QMetaObject>

#include <algorithm>
#include <cstring>
#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/operation.h>
#include <pulse/stream.h>
#include <utility>

namespace mevo {

void forget(pa_operation *operation)
{
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

void SoundInlet::put(const void *data, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_reader == nullptr) {
        return;
    }
    m_bytes.append(static_cast<const char *>(data), static_cast<int>(size));
    if (std::exchange(m_told, true)) {
        return;
    }
    // The reader lives as long as it has not left, and a call that is queued goes with it.
    QMetaObject::invokeMethod(
        m_reader,
        [this, reader = m_reader] {
            {
                const std::lock_guard<std::mutex> again(m_mutex);
                m_told = false;
                if (m_reader == nullptr) {
                    return;
                }
            }
            Q_EMIT reader->readyRead();
        },
        Qt::QueuedConnection);
}

void SoundInlet::end()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_reader == nullptr || std::exchange(m_ended, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        m_reader,
        [this, reader = m_reader] {
            {
                const std::lock_guard<std::mutex> again(m_mutex);
                if (m_reader == nullptr) {
                    return;
                }
            }
            Q_EMIT reader->ended();
        },
        Qt::QueuedConnection);
}

void SoundInlet::leave()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_reader = nullptr;
}

int SoundInlet::take(char *to, int most)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const int count = std::min(most, m_bytes.size() - m_taken);
    if (count <= 0) {
        return 0;
    }
    std::memcpy(to, m_bytes.constData() + m_taken, static_cast<std::size_t>(count));
    m_taken += count;
    if (m_taken == m_bytes.size()) {
        m_bytes.clear();
        m_taken = 0;
    }
    return count;
}

PulseRecording::PulseRecording(pa_context *context, const QByteArray &microphone, const SoundFormat &format,
                               std::shared_ptr<SoundInlet> inlet)
    : m_format(format)
    , m_inlet(std::move(inlet))
{
    pa_sample_spec samples{};
    samples.format = PA_SAMPLE_S16LE;
    samples.rate = static_cast<std::uint32_t>(format.rate);
    samples.channels = static_cast<std::uint8_t>(format.channels);
    m_stream = pa_stream_new(context, "Dictation", &samples, nullptr);
    if (m_stream == nullptr) {
        end(pa_strerror(pa_context_errno(context)));
        return;
    }
    pa_stream_set_state_callback(
        m_stream,
        [](pa_stream *stream, void *self) {
            if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream))) {
                static_cast<PulseRecording *>(self)->end(
                    pa_strerror(pa_context_errno(pa_stream_get_context(stream))));
            }
        },
        this);
    pa_stream_set_read_callback(
        m_stream, [](pa_stream *, std::size_t, void *self) { static_cast<PulseRecording *>(self)->heard(); },
        this);
    // The server's own choice of the size would be some tenths of a second.
    const auto unset = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr sizes{unset, unset, unset, unset, static_cast<std::uint32_t>(format.fragmentBytes)};
    if (pa_stream_connect_record(m_stream, microphone.isEmpty() ? nullptr : microphone.constData(), &sizes,
                                 PA_STREAM_ADJUST_LATENCY) < 0) {
        end(pa_strerror(pa_context_errno(context)));
    }
}

PulseRecording::~PulseRecording()
{
    if (m_stream != nullptr) {
        pa_stream_set_state_callback(m_stream, nullptr, nullptr);
        pa_stream_set_read_callback(m_stream, nullptr, nullptr);
        pa_stream_disconnect(m_stream);
        pa_stream_unref(m_stream);
    }
    if (m_inlet) {
        m_inlet->end();
    }
}

bool PulseRecording::isReady() const
{
    return m_stream != nullptr && pa_stream_get_state(m_stream) == PA_STREAM_READY;
}

void PulseRecording::pause()
{
    m_inlet.reset();
    forget(pa_stream_cork(m_stream, 1, nullptr, nullptr));
    forget(pa_stream_flush(m_stream, nullptr, nullptr)); // the rest is not for the next reader
}

void PulseRecording::resume(std::shared_ptr<SoundInlet> inlet)
{
    m_inlet = std::move(inlet);
    forget(pa_stream_cork(m_stream, 0, nullptr, nullptr));
}

void PulseRecording::heard()
{
    const void *data = nullptr;
    std::size_t size = 0;
    while (pa_stream_readable_size(m_stream) > 0 && pa_stream_peek(m_stream, &data, &size) == 0 && size > 0) {
        if (data != nullptr && m_inlet) { // else a gap
            m_inlet->put(data, size);
        }
        pa_stream_drop(m_stream);
    }
}

void PulseRecording::end(const char *why)
{
    if (m_inlet) {
        qWarning("Microphone: the sound server says: %s", why);
        m_inlet->end();
    }
}

} // namespace mevo
