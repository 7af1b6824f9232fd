#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QObject;

namespace mevo {

/// Facts about the machine.
class SystemFacts
{
public:
    virtual ~SystemFacts() = default;
    /// A system of the class of Windows XP, where streaming recognition is not offered.
    virtual bool isXpClass() const = 0;
    /// The user's language as a Windows locale id, such as 0x0804 for simplified Chinese.
    virtual int localeId() const = 0;
    /// Free space for the user on the volume of the application files, in MiB; -1 when unknown.
    virtual qint64 freeSpaceMiB() const = 0;
    /// Whether the compiler runtime that the audio router needs is installed.
    virtual bool compilerRuntimeInstalled() const = 0;
    /// A stable identifier of this computer.
    virtual QString computerId() const = 0;
    /// The folders below which installed programs have a folder each.
    virtual QStringList programFolders() const = 0;
};

/// A mark that makes the program run with the administrator's rights for this user.
class Elevation
{
public:
    virtual ~Elevation() = default;
    virtual bool isSet() const = 0;
    /// False when the mark could not be written.
    virtual bool set() = 0;
    virtual bool clear() = 0;
};

/// The entry that starts the program at login, carried under `name`.
class StartupEntry
{
public:
    virtual ~StartupEntry() = default;
    virtual bool exists(const QString &name) const = 0;
    virtual bool set(const QString &name) = 0;
    virtual bool clear(const QString &name) = 0;
};

/// Read access to the system's registry of installed programs.
class Registry
{
public:
    virtual ~Registry() = default;
    virtual std::optional<QString> value(const QString &path, const QString &name) const = 0;
};

/// The computer's microphones.
class AudioRouter
{
public:
    virtual ~AudioRouter() = default;
    /// Names of the input devices, the default one first; empty when there are none or no server answers.
    /// May be called from any thread.
    virtual QStringList inputNames() = 0;
    /// Makes the named device the default input. False when it is not there.
    virtual bool switchDefault(const QString &name) = 0;
};

/// The computer's connection to a network.
class NetworkState
{
public:
    enum class Connection { None = 0, Modem = 1, Lan = 2, Proxy = 4 };
    virtual ~NetworkState() = default;
    virtual Connection connection() = 0;
};

/// One instance per user.
class SingleInstance
{
public:
    virtual ~SingleInstance() = default;
    /// Takes the named lock for the life of this object. False when another process holds it.
    virtual bool acquire(const QString &name) = 0;
    /// Gives the lock back early, for a restart of the program.
    virtual void release() = 0;
    /// Answers one call, once, from the GUI thread; nothing when the caller has gone.
    using CallAnswer = std::function<void(const QByteArray &answer)>;
    /// Calls `handler` from the event loop with each message of another process of this user to the one that
    /// holds the lock, which must be this one. A message is a line of at most `longest` bytes, without its
    /// end; what is none is refused with a log line.
    virtual void whenCalled(int longest,
                            std::function<void(const QByteArray &message, CallAnswer answer)> handler) = 0;
    /// The handler is not called any more: who waits for an answer, and who calls from now on, finds the door
    /// closed. The lock stays.
    virtual void closeDoor() = 0;

    struct CallResult
    {
        bool reached = false; ///< somebody of this user is there
        QByteArray answer;    ///< a line without its end; empty when none has come
        bool closed = false;  ///< none has come, and none will: the holder is going, or gone
        bool taken = false;   ///< the holder has read the message; else it will not act on it any more
    };
    /// Milliseconds that a caller waits at most: until its message has been taken, which a holder that lives
    /// does at once, and from then on for the answer.
    struct CallWaits
    {
        int taken = 0;
        int answer = 0;
    };
    /// Hands a message, which has no line ends, to the process that holds the named lock, and waits for its
    /// answer. Runs no event loop.
    virtual CallResult call(const QString &name, const QByteArray &message, const CallWaits &waits) = 0;
};

/// Clock and waiting.
class Time
{
public:
    virtual ~Time() = default;
    virtual QDateTime now() const = 0;
    /// Milliseconds of a clock that never jumps.
    virtual qint64 monotonicMs() const = 0;
    /// Blocks the calling thread.
    virtual void sleepMs(int milliseconds) = 0;
    virtual void sleepUs(int microseconds) = 0;
    /// Calls `action` once from this thread's event loop, `milliseconds` from now; never when `context`,
    /// which must belong to this thread, has gone by then.
    virtual void callAfter(int milliseconds, QObject *context, std::function<void()> action) = 0;
};

} // namespace mevo
