#pragma once

#include "platform/Processes.h"

#include <QCoreApplication>
#include <QDBusConnection>

namespace mevo {

/// Programs through QProcess, running programs through /proc, power state through logind.
class LinuxProcesses : public Processes
{
public:
    /// Output that capture() keeps; what a program says beyond it is dropped.
    static constexpr int MaxCapturedBytes = 1024 * 1024;

    /// Siblings are looked for from `programFolder` on; `systemBus` is where logind answers.
    explicit LinuxProcesses(const QString &programFolder = QCoreApplication::applicationDirPath(),
                            const QDBusConnection &systemBus = QDBusConnection::systemBus());

    bool startDetached(const QString &program, const QStringList &arguments) override;
    bool startToType(const QString &program) override;
    /// `hidden` has no counterpart here: the siblings are told by their arguments.
    bool startSibling(const QString &name, const QStringList &arguments, bool hidden) override;
    bool hasSibling(const QString &name) override { return !installedSibling(name).isEmpty(); }
    Captured capture(const QString &program, const QStringList &arguments, int timeoutMs) override;
    /// Ends them at once, as far as they are this user's own.
    bool killByImageName(const QString &imageName) override;
    bool isRunning(const QString &imageName) override;
    bool openElevated(const QString &program, const QStringList &arguments) override;
    /// True when logind lets this user do it, perhaps after asking; it is on its way then.
    bool restartComputer() override;
    bool shutDownComputer() override;

private:
    QString installedSibling(const QString &name) const; ///< its path, or empty and a log line
    bool askLogind(const QString &question, const QString &command);

    QString m_programFolder;
    QDBusConnection m_systemBus;
};

/// Where a sibling stands: "\..\HW\PenPadHost.exe" below "/opt/mevo/bin" is "/opt/mevo/HW/PenPadHost".
QString siblingPath(const QString &programFolder, const QString &name);

} // namespace mevo
