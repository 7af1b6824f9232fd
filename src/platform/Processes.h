#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// Other programs and the computer's own power state. Nothing goes through a shell.
class Processes
{
public:
    /// What a finished command left.
    struct Captured
    {
        bool finished = false; ///< started and ended within the time
        int exitCode = -1;
        QString output; ///< standard output and error, local 8-bit decoded
    };

    virtual ~Processes() = default;

    /// Starts a program on its own. False when it cannot be started.
    virtual bool startDetached(const QString &program, const QStringList &arguments) = 0;
    /// Starts a program on its own with the rights that it needs here to type into the windows of every other
    /// program, without arguments. False when it cannot be started.
    virtual bool startToType(const QString &program) = 0;
    /// Starts a sibling program by its name below the program's folder, such as "\KeypadHost.exe" or
    /// "\..\HW\PenPadHost.exe"; the platform's own separators and suffix apply. `hidden` asks for no
    /// window at start. False, with a log line, when it is not installed.
    virtual bool startSibling(const QString &name, const QStringList &arguments, bool hidden) = 0;
    /// Whether a sibling of that name is installed.
    virtual bool hasSibling(const QString &name) = 0;
    /// Runs a program and waits at most `timeoutMs` for its end.
    virtual Captured capture(const QString &program, const QStringList &arguments, int timeoutMs) = 0;
    /// Ends every process of that executable name on this desktop by force, and waits at most 3 s for their
    /// end. False when there was none.
    virtual bool killByImageName(const QString &imageName) = 0;
    /// Whether a process of that executable name runs on this desktop.
    virtual bool isRunning(const QString &imageName) = 0;
    /// Starts a program with the administrator's rights, asking the user as the system does. A name that
    /// begins with a backslash is a sibling's, as for startSibling(). False, with a log line, when there is
    /// no such program or no way to ask.
    virtual bool openElevated(const QString &program, const QStringList &arguments) = 0;
    virtual bool restartComputer() = 0;
    virtual bool shutDownComputer() = 0;
};

} // namespace mevo
