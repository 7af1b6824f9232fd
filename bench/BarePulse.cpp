#include "BarePulse.h"

#include <pulse/pulseaudio.h>

#include <chrono>
#include <thread>

namespace {

double now()
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

constexpr double PatienceMs = 3000;

/// What has come is thrown away.
bool drain(pa_stream *stream)
{
    bool any = false;
    const void *data = nullptr;
    std::size_t size = 0;
    while (pa_stream_readable_size(stream) > 0 && pa_stream_peek(stream, &data, &size) == 0 && size > 0) {
        any = any || data != nullptr;
        pa_stream_drop(stream);
    }
    return any;
}

} // namespace

BarePulse::BarePulse()
    : m_loop(pa_threaded_mainloop_new())
    , m_context(pa_context_new(pa_threaded_mainloop_get_api(m_loop), "bare"))
{
    const auto wake = [](pa_context *, void *loop) {
        pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop *>(loop), 0);
    };
    pa_context_set_state_callback(m_context, wake, m_loop);
    pa_threaded_mainloop_start(m_loop);
    pa_threaded_mainloop_lock(m_loop);
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) == 0) {
        while (PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)) &&
               pa_context_get_state(m_context) != PA_CONTEXT_READY) {
            pa_threaded_mainloop_wait(m_loop);
        }
        m_connected = pa_context_get_state(m_context) == PA_CONTEXT_READY;
    }
    pa_threaded_mainloop_unlock(m_loop);
}

BarePulse::~BarePulse()
{
    pa_threaded_mainloop_lock(m_loop);
    close();
    pa_context_disconnect(m_context);
    pa_context_unref(m_context);
    pa_threaded_mainloop_unlock(m_loop);
    pa_threaded_mainloop_stop(m_loop);
    pa_threaded_mainloop_free(m_loop);
}

bool BarePulse::open(bool corked)
{
    const pa_sample_spec format{PA_SAMPLE_S16LE, 16000, 1};
    m_stream = pa_stream_new(m_context, "bare", &format, nullptr);
    const auto wake = [](pa_stream *, void *loop) {
        pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop *>(loop), 0);
    };
    pa_stream_set_state_callback(m_stream, wake, m_loop);
    const auto wakeToRead = [](pa_stream *, std::size_t, void *loop) {
        pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop *>(loop), 0);
    };
    pa_stream_set_read_callback(m_stream, wakeToRead, m_loop);
    const auto unset = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr sizes{unset, unset, unset, unset, 640};
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY |
                                                      (corked ? PA_STREAM_START_CORKED : PA_STREAM_NOFLAGS));
    if (pa_stream_connect_record(m_stream, nullptr, &sizes, flags) != 0) {
        return false;
    }
    while (PA_STREAM_IS_GOOD(pa_stream_get_state(m_stream)) &&
           pa_stream_get_state(m_stream) != PA_STREAM_READY) {
        pa_threaded_mainloop_wait(m_loop);
    }
    return pa_stream_get_state(m_stream) == PA_STREAM_READY;
}

void BarePulse::close()
{
    if (m_stream == nullptr) {
        return;
    }
    pa_stream_set_state_callback(m_stream, nullptr, nullptr);
    pa_stream_set_read_callback(m_stream, nullptr, nullptr);
    pa_stream_disconnect(m_stream);
    pa_stream_unref(m_stream);
    m_stream = nullptr;
}

void BarePulse::cork(bool on)
{
    const auto wake = [](pa_stream *, int, void *loop) {
        pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop *>(loop), 0);
    };
    pa_operation *operation = pa_stream_cork(m_stream, on ? 1 : 0, wake, m_loop);
    while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING) {
        pa_threaded_mainloop_wait(m_loop);
    }
    pa_operation_unref(operation);
}

double BarePulse::awaitSample(double from)
{
    while (!drain(m_stream)) {
        if (now() - from > PatienceMs) {
            return -1;
        }
        // Not by the loop's own wait, which has no end where nothing comes.
        pa_threaded_mainloop_unlock(m_loop);
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        pa_threaded_mainloop_lock(m_loop);
    }
    return now() - from;
}

double BarePulse::firstOfNewStream()
{
    pa_threaded_mainloop_lock(m_loop);
    close();
    const double from = now();
    const double taken = open(false) ? awaitSample(from) : -1;
    close();
    pa_threaded_mainloop_unlock(m_loop);
    return taken;
}

double BarePulse::firstOfCorkedStream()
{
    pa_threaded_mainloop_lock(m_loop);
    const bool ready = m_stream != nullptr || open(true);
    double taken = -1;
    if (ready) {
        drain(m_stream); // what had come before it was corked
        const double from = now();
        cork(false);
        taken = awaitSample(from);
        cork(true);
    }
    pa_threaded_mainloop_unlock(m_loop);
    return taken;
}
