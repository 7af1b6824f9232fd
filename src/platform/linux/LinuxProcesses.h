#pragma once

#include "platform/Processes.h"

namespace mevo {

class LinuxProcesses : public Processes
{
public:
    bool startDetached(const QString &program, const QStringList &arguments) override;
    bool startSibling(const QString &name, const QStringList &arguments, bool hidden) override;
    Captured capture(const QString &program, const QStringList &arguments, int timeoutMs) override;
    bool killByImageName(const QString &imageName) override;
    bool isRunning(const QString &imageName) override;
    bool openElevated(const QString &program, const QStringList &arguments) override;
    bool restartComputer() override;
    bool shutDownComputer() override;

    /// Where a sibling's Windows-style name stands on this system: "\..\HW\PenPadHost.exe" is
    /// "../HW/PenPadHost" below `folder`.
    static QString siblingPath(const QString &folder, const QString &name);
};

} // namespace mevo
