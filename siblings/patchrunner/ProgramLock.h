#pragma once

namespace mevo::patchrunner {

/// The lock that the running program holds. While this one holds it no other start of the program goes on.
/// Given back with the object, or however this process ends; programs that it starts do not inherit it.
class ProgramLock
{
public:
    ProgramLock() = default;
    ~ProgramLock() { release(); }
    ProgramLock(const ProgramLock &) = delete;
    ProgramLock &operator=(const ProgramLock &) = delete;

    /// Waits for the program's end. False when it still runs after `timeoutMs`, or the lock cannot be had.
    bool acquire(int timeoutMs);
    void release();

private:
    int m_descriptor = -1;
};

} // namespace mevo::patchrunner
