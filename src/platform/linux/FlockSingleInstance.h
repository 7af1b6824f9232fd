#pragma once

#include "platform/SystemServices.h"

#include <memory>

namespace mevo {

class InstanceDoor;
class RuntimeLock;

/// A locked file in the user's runtime folder. The lock goes with the process, however it ends, and
/// programs that it starts do not inherit it.
class FlockSingleInstance final : public SingleInstance
{
public:
    FlockSingleInstance();
    ~FlockSingleInstance() override;
    FlockSingleInstance(const FlockSingleInstance &) = delete;
    FlockSingleInstance &operator=(const FlockSingleInstance &) = delete;

    /// True also when no lock file can be made: then nobody can hold it, which the log tells.
    bool acquire(const QString &name) override;
    void release() override;
    /// The others call at a socket beside the lock.
    void whenCalled(int longest,
                    std::function<void(const QByteArray &message, CallAnswer answer)> handler) override;
    void closeDoor() override;
    CallResult call(const QString &name, const QByteArray &message, const CallWaits &waits) override;

private:
    std::unique_ptr<RuntimeLock> m_lock;
    QString m_name;
    std::unique_ptr<InstanceDoor> m_door;
};

} // namespace mevo
