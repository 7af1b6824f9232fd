#pragma once

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>

class QWebSocket;

namespace mevo {

/// Milliseconds before a broken push socket is opened again, after this many failures in a row: 1 s, doubled
/// each time, never more than 5 minutes.
int pushPauseMs(int failures);

/// Keeps a web socket open: opens it again when it breaks, after growing pauses and when the network comes
/// back, and notices a connection that has died without a word. It needs an event loop and waits nowhere.
class PushChannel : public QObject
{
    Q_OBJECT

public:
    using Pause = std::function<int(int failures)>;

    /// The socket must outlive this; it is nobody else's to open or close. `openingMs` is the patience with a
    /// server that takes the connection and says nothing, `beatMs` the time between two signs of life.
    explicit PushChannel(QWebSocket &socket, Pause pause = pushPauseMs, int openingMs = 15000,
                         int beatMs = 60000);
    ~PushChannel() override;

    /// Connects to this address and stays. One that is connected to it already, or is about to be, goes on;
    /// a pause is cut short.
    void open(const QUrl &address);
    /// Without a network nothing is tried; when it comes back the socket is opened at once.
    void setOnline(bool online);
    /// Closes the socket for good.
    void close();

private:
    void connectNow();
    void connected();
    void broken();
    void beat();

    QWebSocket &m_socket;
    Pause m_pause;
    QUrl m_address;
    bool m_online = true;
    bool m_answered = true; ///< the last ping
    int m_failures = 0;
    QTimer m_retry;
    QTimer m_opening;
    QTimer m_beat;
};

} // namespace mevo
