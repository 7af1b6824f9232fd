#pragma once

#include "platform/SystemServices.h"

namespace mevo {

/// Starts the program at login through an XDG autostart entry. The entry carries the name that a link
/// would have: "NAME.lnk" becomes "NAME.desktop". An entry that the desktop's own settings have
/// switched off counts as absent.
class XdgStartupEntry : public StartupEntry
{
public:
    explicit XdgStartupEntry(const QString &folder = defaultFolder(),
                             const QString &program = defaultProgram());

    bool exists(const QString &name) const override;
    bool set(const QString &name) override;
    /// Also true when there was no entry.
    bool clear(const QString &name) override;

private:
    static QString defaultFolder();
    static QString defaultProgram();

    QString m_folder;
    QString m_program;
};

/// `program` as the value of the key Exec of a desktop entry: quoted and escaped.
QString desktopEntryExec(const QString &program);

} // namespace mevo
