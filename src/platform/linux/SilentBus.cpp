#include "platform/linux/SilentBus.h"

#include <QByteArrayList>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace mevo {

namespace {

using Clock = std::chrono::steady_clock;

constexpr char addressName[] = "DBUS_SESSION_BUS_ADDRESS";

/// A socket of the process, closed at the end.
class Socket
{
public:
    Socket()
        : m_fd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
    }
    ~Socket()
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    Q_DISABLE_COPY(Socket)
    int fd() const { return m_fd; }

private:
    int m_fd;
};

/// Without a pause of its own, an interrupted wait goes on. False at the end of the time.
bool awaitEvent(int fd, short event, Clock::time_point end)
{
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd wait{fd, event, 0};
        const int ready = ::poll(&wait, 1, int(std::max<long long>(0, left)));
        if (ready >= 0 || errno != EINTR) {
            return ready != 0;
        }
    }
}

} // namespace

QByteArray busSocketOf(const QByteArray &address)
{
    for (const QByteArray &server : address.split(';')) {
        const int colon = server.indexOf(':');
        if (server.left(colon) != "unix") {
            continue;
        }
        for (const QByteArray &pair : server.mid(colon + 1).split(',')) {
            const int equals = pair.indexOf('=');
            const QByteArray value = QByteArray::fromPercentEncoding(pair.mid(equals + 1));
            if (pair.left(equals) == "path") {
                return value;
            }
            if (pair.left(equals) == "abstract") {
                return QByteArray(1, '\0') + value;
            }
        }
    }
    return {};
}

bool isSilentBus(const QByteArray &socket, std::chrono::milliseconds limit)
{
    const Socket client;
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    if (client.fd() < 0 || socket.isEmpty() || std::size_t(socket.size()) >= sizeof place.sun_path) {
        return false;
    }
    std::memcpy(place.sun_path, socket.constData(), std::size_t(socket.size()));
    const bool abstract = socket.at(0) == '\0';
    const auto length =
        socklen_t(offsetof(sockaddr_un, sun_path) + std::size_t(socket.size()) + (abstract ? 0 : 1));
    const auto end = Clock::now() + limit;
    const auto *const address = reinterpret_cast<const sockaddr *>(&place); // NOLINT: the call's form
    while (::connect(client.fd(), address, length) != 0) {
        if (errno != EAGAIN) {
            return false;
        }
        // Its queue of connections is full, as it may well be while a session begins.
        if (Clock::now() >= end) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    // The first words of a client: the bus answers whatever they are worth (freedesktop.org, D-Bus,
    // "Authentication Protocol"), with an error at the least.
    constexpr char hello[] = "\0AUTH\r\n";
    if (::send(client.fd(), hello, sizeof hello - 1, MSG_NOSIGNAL) < 0) {
        return false;
    }
    return !awaitEvent(client.fd(), POLLIN, end);
}

SilentBus::SilentBus(std::chrono::milliseconds limit)
    : m_address(qgetenv(addressName))
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    QByteArray socket = busSocketOf(m_address);
    if (m_address.isEmpty() && !folder.isEmpty()) {
        socket = folder + "/bus"; // where clients look without an address
    }
    m_hidden = isSilentBus(socket, limit);
    if (m_hidden) {
        qputenv(addressName, "disabled:");
    }
}

SilentBus::~SilentBus()
{
    if (!m_hidden) {
        return;
    }
    if (m_address.isEmpty()) {
        qunsetenv(addressName);
    } else {
        qputenv(addressName, m_address);
    }
}

} // namespace mevo
