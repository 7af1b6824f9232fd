#pragma once

#include <QString>

#include <sys/types.h>

namespace mevo::patchrunner {

/// A program that was started, and outlives this process. Its end is seen while this process lives.
class ProgramStart
{
public:
    /// Starts it in a session of its own, in its folder. False when it cannot be started.
    bool start(const QString &program);
    bool hasEnded();
    /// Ends it, by force.
    void kill();

private:
    pid_t m_pid = -1;
};

} // namespace mevo::patchrunner
