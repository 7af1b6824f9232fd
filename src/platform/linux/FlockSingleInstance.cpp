#include "platform/linux/FlockSingleInstance.h"

#include "base/RuntimeLock.h"
#include "base/RuntimePath.h"
#include "platform/linux/InstanceDoor.h"

#include <utility>

namespace mevo {

namespace {

const QString socketSuffix = QStringLiteral(".socket");

} // namespace

FlockSingleInstance::FlockSingleInstance() = default;

FlockSingleInstance::~FlockSingleInstance()
{
    release();
}

bool FlockSingleInstance::acquire(const QString &name)
{
    if (m_lock) {
        return true;
    }
    auto lock = std::make_unique<RuntimeLock>(name);
    if (!lock->acquire(0)) {
        return !lock->isTaken();
    }
    m_lock = std::move(lock);
    m_name = name;
    return true;
}

void FlockSingleInstance::whenCalled(
    int longest, std::function<void(const QByteArray &message, CallAnswer answer)> handler)
{
    closeDoor();  // its end would take the place of a new one away
    if (m_lock) { // the place of the socket belongs to the lock's holder
        m_door =
            std::make_unique<InstanceDoor>(runtimePath(m_name, socketSuffix), longest, std::move(handler));
    }
}

void FlockSingleInstance::closeDoor()
{
    m_door.reset();
}

SingleInstance::CallResult FlockSingleInstance::call(const QString &name, const QByteArray &message,
                                                     const CallWaits &waits)
{
    for (const QString &path : runtimePaths(name, socketSuffix)) {
        const CallResult result = callInstance(path, message, waits);
        if (result.reached) {
            return result;
        }
    }
    return {};
}

void FlockSingleInstance::release()
{
    closeDoor();
    m_lock.reset();
}

} // namespace mevo
