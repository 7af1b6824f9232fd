#pragma once

#include "keypad/KeypadCommand.h"
#include "platform/linux/FlockSingleInstance.h"

#include <functional>
#include <memory>

class QLocalServer;
class QLocalSocket;

namespace mevo::keypad {

/// One keyboard for each user: the first start keeps the door, a further one hands its wish in.
class WordDoor
{
public:
    WordDoor();
    ~WordDoor();
    WordDoor(const WordDoor &) = delete;
    WordDoor &operator=(const WordDoor &) = delete;

    enum class Outcome {
        First,     ///< nobody else runs
        Delivered, ///< another one runs, and has carried the wish out
        Unheard    ///< another one runs, and has not answered in time
    };

    /// Tries to be the first, and else to hand `wish` in, until one of both succeeds or `timeoutMs` have
    /// passed: another start may be beginning or ending just now. Waits without an event loop.
    Outcome enter(Wish wish, int timeoutMs);
    /// As the first: calls `handler` from the event loop for each wish that comes, and answers when it has
    /// returned. Only those of this user's processes are taken. False, with a log line, when it cannot
    /// listen: no wish would ever come.
    bool listen(std::function<void(Wish)> handler);
    /// Hears nobody any more, and lets another one be the first.
    void close();

private:
    static bool deliver(Wish wish, int timeoutMs);
    static bool deliverAt(const QString &path, Wish wish, int timeoutMs);
    void receive(QLocalSocket *visitor);

    FlockSingleInstance m_lock;
    std::unique_ptr<QLocalServer> m_server;
    std::function<void(Wish)> m_handler;
};

} // namespace mevo::keypad
