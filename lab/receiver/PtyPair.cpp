#include "receiver/PtyPair.h"

#include <QLoggingCategory>

#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace mevo::lab {

PtyPair::PtyPair(PtyPair &&other) noexcept
    : m_master(std::exchange(other.m_master, -1))
    , m_slave(std::exchange(other.m_slave, -1))
    , m_slaveName(std::move(other.m_slaveName))
{
}

PtyPair &PtyPair::operator=(PtyPair &&other) noexcept
{
    if (this != &other) {
        close();
        m_master = std::exchange(other.m_master, -1);
        m_slave = std::exchange(other.m_slave, -1);
        m_slaveName = std::move(other.m_slaveName);
    }
    return *this;
}

PtyPair PtyPair::create()
{
    PtyPair pair;
    termios mode{};
    cfmakeraw(&mode);
    mode.c_cflag |= CREAD;
    mode.c_cc[VMIN] = 1;
    char name[128] = "";
    if (openpty(&pair.m_master, &pair.m_slave, name, &mode, nullptr) < 0) {
        qWarning("no pseudo terminal: %s", std::strerror(errno));
        pair.m_master = pair.m_slave = -1;
        return pair;
    }
    for (const int descriptor : {pair.m_master, pair.m_slave}) {
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        fcntl(descriptor, F_SETFL, O_NONBLOCK);
    }
    pair.m_slaveName = name;
    return pair;
}

dev_t PtyPair::slaveDevice() const
{
    struct stat status
    {
    };
    return fstat(m_slave, &status) == 0 ? status.st_rdev : dev_t(0);
}

void PtyPair::ring()
{
    if (write(m_master, "!", 1) != 1)
        qWarning("a report rings no bell: %s", std::strerror(errno));
}

int PtyPair::unring(int count)
{
    int taken = 0;
    char byte;
    while (taken < count && read(m_slave, &byte, 1) == 1)
        ++taken;
    return taken;
}

void PtyPair::close()
{
    if (m_master >= 0)
        ::close(m_master);
    if (m_slave >= 0)
        ::close(m_slave);
    m_master = m_slave = -1;
}

} // namespace mevo::lab
