#pragma once

struct pa_context;
struct pa_stream;
struct pa_threaded_mainloop;

/// A client of the sound server with nothing around it, to measure the recorder against: records 16 kHz mono
/// in fragments of 640 bytes from the default source.
class BarePulse
{
public:
    BarePulse();
    ~BarePulse();
    BarePulse(const BarePulse &) = delete;
    BarePulse &operator=(const BarePulse &) = delete;

    bool isConnected() const { return m_connected; }
    /// Milliseconds until the first sample of a new stream, which is closed afterwards; negative on failure.
    double firstOfNewStream();
    /// The same of one stream that is corked in between.
    double firstOfCorkedStream();

private:
    bool open(bool corked);
    void close();
    void cork(bool on);
    double awaitSample(double from);

    pa_threaded_mainloop *m_loop;
    pa_context *m_context;
    pa_stream *m_stream = nullptr;
    bool m_connected = false;
};
