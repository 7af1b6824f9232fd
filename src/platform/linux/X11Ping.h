#pragma once

#include <functional>

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
    explicit X11Ping(X11Connection &connection);

    /// Whether the window promises answers.
    static bool isOffered(const X11Connection &connection, unsigned long topLevel);
    /// Answers can only be heard while this is on; it costs an event for whatever happens to the windows of
    /// the desktop.
    void listen(bool on);
    void send(unsigned long topLevel);
    /// Waits for the answer to the last send(), at most `limitMs`, and no longer once `givesUp` is true. An
    /// answer that is there by then counts.
    Answer await(int limitMs, const std::function<bool()> &givesUp = {});

private:
    /// Takes what has come in; whether the answer was among it.
    bool hasAnswered();

    X11Connection &m_connection;
    unsigned long m_topLevel = 0;
    long m_serial = 0;
};

} // namespace mevo
