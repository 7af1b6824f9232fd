#include "patchrunner/ProgramStart.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mevo::patchrunner {

bool ProgramStart::start(const QString &program)
{
    const QByteArray path = QFile::encodeName(program);
    const QByteArray folder = QFile::encodeName(QFileInfo(program).path());
    char *arguments[] = {const_cast<char *>(path.constData()), nullptr};
    int channel[2]; // closed by a successful start
    if (pipe2(channel, O_CLOEXEC) != 0) {
        return false;
    }
    m_pid = fork();
    if (m_pid == 0) {
        sigset_t none; // what is blocked here is no matter of the program's: it must hear that it is to end
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        setsid();
        if (chdir(folder.constData()) == 0) {
            execv(path.constData(), arguments);
        }
        const char failed = 1;
        const ssize_t written = write(channel[1], &failed, 1);
        _exit(written == 1 ? 126 : 127);
    }
    close(channel[1]);
    char failed = 0;
    ssize_t got = 0;
    do {
        got = read(channel[0], &failed, 1);
    } while (got < 0 && errno == EINTR);
    close(channel[0]);
    return m_pid > 0 && got == 0;
}

bool ProgramStart::hasEnded()
{
    if (m_pid > 0 && waitpid(m_pid, nullptr, WNOHANG) != 0) {
        m_pid = -1;
    }
    return m_pid <= 0;
}

void ProgramStart::kill()
{
    if (!hasEnded()) {
        ::kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
        m_pid = -1;
    }
}

} // namespace mevo::patchrunner
