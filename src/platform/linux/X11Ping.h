#pragma once

namespace mevo {

class X11Connection;

/// Asks a top-level window for a sign that its program has taken every event sent to it before.
class X11Ping
{
public:
    enum class Answer {
        Given,
        Silence, ///< not in time: the program hangs
        Gone,    ///< the window has been closed
    };
    static constexpr int timeoutMs = 2000;

    explicit X11Ping(X11Connection &connection);

    /// Whether the window promises answers.
    bool isOffered(unsigned long topLevel) const;
    /// Answers can only be heard while this is on; it costs an event for whatever happens to the windows of
    /// the desktop.
    void listen(bool on);
    void send(unsigned long topLevel);
    /// Waits for the answer to the last send(), at most `limitMs`.
    Answer await(int limitMs = timeoutMs);

private:
    X11Connection &m_connection;
    unsigned long m_topLevel = 0;
    long m_serial = 0;
};

} // namespace mevo
