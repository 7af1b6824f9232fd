#pragma once

#include "platform/SystemServices.h"

#include <QLocalServer>

#include <functional>

class QLocalSocket;

namespace mevo {

/// The socket at which other processes of this user call the one that holds the lock: a line from them, an
/// empty line back as soon as it has been read, then a line that answers it. Who has gone before that is not
/// heard. Other users, whoever says too much or too little, and more callers than a user would make are
/// turned away with a log line.
class InstanceDoor
{
public:
    using Handler = std::function<void(const QByteArray &message, SingleInstance::CallAnswer answer)>;

    /// Callers who are there at the same time, and how long each may take for its line, in milliseconds.
    static constexpr int mostCallers = 64;
    static inline int callerTimeMs = 5000;

    /// Listens at `path`; a file that a killed process has left there is replaced.
    InstanceDoor(const QString &path, int longest, Handler handler);
    InstanceDoor(const InstanceDoor &) = delete;
    InstanceDoor &operator=(const InstanceDoor &) = delete;

private:
    void receive(QLocalSocket *caller);
    void read(QLocalSocket *caller);
    static void refuse(QLocalSocket *caller, const char *why);

    QLocalServer m_server;
    int m_longest;
    Handler m_handler;
};

/// Calls the process that listens at `path`, see SingleInstance::call().
SingleInstance::CallResult callInstance(const QString &path, const QByteArray &message,
                                        const SingleInstance::CallWaits &waits);

} // namespace mevo
