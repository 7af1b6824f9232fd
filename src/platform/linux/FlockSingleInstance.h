#pragma once

#include "platform/SystemServices.h"

#include <memory>

class QLocalServer;

namespace mevo {

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
    /// Another process knocks at a socket beside the lock.
    void whenStartedAgain(std::function<void()> handler) override;

private:
    int m_descriptor = -1;
    QString m_name;
    std::unique_ptr<QLocalServer> m_door;
};

} // namespace mevo
