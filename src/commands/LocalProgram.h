#pragma once

#include <QByteArray>
#include <QStringList>

namespace mevo {

/// The command of a desktop entry's `Exec` line, as the desktop entry format of freedesktop.org
/// splits it, without its field codes. Empty when the text is no entry of an application.
struct DesktopEntryCommand
{
    QStringList words; ///< program and arguments
    bool terminal = false;
};
DesktopEntryCommand parseDesktopEntry(const QByteArray &text);

/// The program and arguments that opening a local file comes to when it is a program: a desktop entry
/// or an executable. Desktops would show such a file rather than run it. Empty for every other file.
QStringList commandOfLocalFile(const QString &path);

} // namespace mevo
