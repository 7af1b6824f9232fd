#pragma once

#include <QString>

#include <utility>

namespace mevo {

/// A lock between programs of one user, by its name: "mevoinput" is held by the running program, and while
/// somebody else holds it no start of the program goes on; "mevoupdate" is held by an updater that works.
/// Given back with the object, or however this process ends; programs that it starts do not inherit it. The
/// file is in the user's runtime folder; a lock in any of the places of runtimePaths() counts.
class RuntimeLock
{
public:
    explicit RuntimeLock(QString name)
        : m_name(std::move(name))
    {
    }
    ~RuntimeLock() { release(); }
    RuntimeLock(const RuntimeLock &) = delete;
    RuntimeLock &operator=(const RuntimeLock &) = delete;

    /// Waits until nobody else holds it. False when somebody does after `timeoutMs`, or the lock cannot be
    /// had, which the log tells.
    bool acquire(int timeoutMs);
    void release();
    /// The last acquire() found it held by somebody else.
    bool isTaken() const { return m_taken; }

private:
    const QString m_name;
    int m_descriptor = -1;
    bool m_taken = false;
};

extern const QString programLockName;
extern const QString updaterLockName;

} // namespace mevo
