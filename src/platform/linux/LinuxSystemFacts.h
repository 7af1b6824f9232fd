#pragma once

#include "platform/SystemServices.h"

namespace mevo {

/// Facts about this Linux machine.
class LinuxSystemFacts : public SystemFacts
{
public:
    /// `machineIdFiles` are asked in order for the machine's id; when none has one, a random id is made
    /// once and kept in `ownIdFile`, by default below the user's configuration.
    explicit LinuxSystemFacts(
        const QStringList &machineIdFiles = {QStringLiteral("/etc/machine-id"),
                                             QStringLiteral("/var/lib/dbus/machine-id")},
        const QString &ownIdFile = defaultOwnIdFile());

    bool isXpClass() const override { return false; }
    int localeId() const override;
    qint64 freeSpaceMiB() const override;
    /// On the volume of a folder. One that is full lets no folder be made at the first start: then where it
    /// would be.
    static qint64 freeSpaceMiB(const QString &folder);
    /// The router speaks to the sound server itself and needs no runtime.
    bool compilerRuntimeInstalled() const override { return true; }
    /// 32 hex digits. The machine's own id is hashed, as it should not leave the machine.
    QString computerId() const override;
    /// Those of packages that keep to themselves: "~/.local/opt" and "/opt".
    QStringList programFolders() const override;

private:
    static QString defaultOwnIdFile();

    QStringList m_machineIdFiles;
    QString m_ownIdFile;
};

} // namespace mevo
