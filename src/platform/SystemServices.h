#pragma once

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
    /// Calls `handler` from the event loop each time another process has asked for the lock that this one
    /// holds: the user has started the program once more.
    virtual void whenStartedAgain(std::function<void()> handler) = 0;
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
