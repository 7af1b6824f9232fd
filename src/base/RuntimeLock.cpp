#include "base/RuntimeLock.h"

#include "base/RuntimePath.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mevo {

const QString programLockName = QStringLiteral("mevoinput");
const QString updaterLockName = QStringLiteral("mevoupdate");

namespace {

constexpr unsigned long pollMs = 20;

} // namespace

bool RuntimeLock::acquire(int timeoutMs)
{
    m_taken = false;
    if (m_descriptor >= 0) {
        return true;
    }
    const QString path = runtimePath(m_name, QStringLiteral(".lock"));
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    struct stat info = {};
    if (descriptor < 0 || fstat(descriptor, &info) != 0 || info.st_uid != geteuid()) {
        if (descriptor >= 0) {
            close(descriptor);
        }
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (timer.hasExpired(timeoutMs)) {
            m_taken = errno == EWOULDBLOCK;
            close(descriptor);
            return false;
        }
        QThread::msleep(pollMs);
    }
    m_descriptor = descriptor;
    return true;
}

void RuntimeLock::release()
{
    if (m_descriptor >= 0) {
        close(m_descriptor);
        m_descriptor = -1;
    }
}

} // namespace mevo
