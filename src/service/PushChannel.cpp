#include "service/PushChannel.h"

#include "base/LogText.h"

#include <QDebug>
#include <QWebSocket>

#include <algorithm>
#include <utility>

namespace mevo {

namespace {

constexpr int firstPauseMs = 1000;
constexpr int longestPauseMs = 5 * 60 * 1000;

} // namespace

int pushPauseMs(int failures)
{
    constexpr int mostDoublings = 9; // 512 s is more than the longest already
    return std::min(firstPauseMs << std::clamp(failures, 0, mostDoublings), longestPauseMs);
}

PushChannel::PushChannel(QWebSocket &socket, Pause pause, int openingMs, int beatMs)
    : m_socket(socket)
    , m_pause(std::move(pause))
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &PushChannel::connectNow);
    m_opening.setSingleShot(true);
    m_opening.setInterval(openingMs);
    connect(&m_opening, &QTimer::timeout, this, &PushChannel::broken);
    m_beat.setInterval(beatMs);
    connect(&m_beat, &QTimer::timeout, this, &PushChannel::beat);
    connect(&m_socket, &QWebSocket::connected, this, &PushChannel::connected);
    connect(&m_socket, &QWebSocket::disconnected, this, &PushChannel::broken);
    // A socket that never was connected may say this alone. Not on the spot: it has not come to rest yet.
    connect(
        &m_socket, QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error), this,
        [this] {
            if (m_socket.state() == QAbstractSocket::UnconnectedState) {
                broken();
            }
        },
        Qt::QueuedConnection);
    connect(&m_socket, &QWebSocket::pong, this, [this] { m_answered = true; });
}

PushChannel::~PushChannel()
{
    close();
}

void PushChannel::open(const QUrl &address)
{
    const bool underWay = m_address == address && !m_retry.isActive();
    if (underWay && m_socket.state() != QAbstractSocket::UnconnectedState) {
        return;
    }
    m_address = address;
    m_failures = 0;
    if (m_online) {
        connectNow();
    }
}

void PushChannel::setOnline(bool online)
{
    if (online == m_online) {
        return;
    }
    m_online = online;
    if (!online) {
        m_retry.stop();
        m_opening.stop();
        m_beat.stop();
        m_socket.abort();
    } else if (!m_address.isEmpty()) {
        m_failures = 0;
        connectNow();
    }
}

void PushChannel::close()
{
    m_address.clear();
    m_socket.disconnect(this);
    m_retry.stop();
    m_opening.stop();
    m_beat.stop();
    m_socket.abort();
}

void PushChannel::connectNow()
{
    m_retry.stop();
    m_beat.stop();
    m_opening.start();
    const QUrl address = std::exchange(m_address, QUrl()); // what abort() says is not about the new one
    m_socket.abort();
    m_address = address;
    m_socket.open(address);
}

void PushChannel::connected()
{
    qInfo("Push: connected");
    m_opening.stop();
    m_retry.stop(); // a server that was given up may answer after all
    m_answered = true;
    m_beat.start();
}

void PushChannel::broken()
{
    if (m_address.isEmpty() || !m_online || m_retry.isActive()) {
        return;
    }
    m_opening.stop();
    m_beat.stop();
    const int pause = m_pause(m_failures++);
    qWarning().noquote() << "Push: no connection:" << logText(m_socket.errorString()) << "- again in"
                         << pause / 1000 << "s";
    m_retry.start(pause);
}

void PushChannel::beat()
{
    if (!std::exchange(m_answered, false)) {
        m_socket.abort(); // which says "disconnected"
        return;
    }
    m_failures = 0; // it has held for a while: the next break is a first one again
    m_socket.ping();
}

} // namespace mevo
