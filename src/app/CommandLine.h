#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// What a command line asks of the program, told before a display is opened.
struct CommandLine
{
    enum class Wish { Run, Print, Refuse };
    Wish wish = Wish::Run;
    QString text; ///< for standard output (Print) or standard error (Refuse), with its line end

    /// What the process ends with instead of running: 0 after Print, 2 after Refuse.
    int exitCode() const { return wish == Wish::Refuse ? 2 : 0; }
};

/// Reads the arguments behind the program's name. "--help" and "--version" print, whichever comes first; an
/// option that neither the program nor Qt knows is refused, as is one of Qt's without its value. Arguments
/// that are no options, all of them behind "--", are let be: a session or a file manager may add some.
CommandLine readCommandLine(const QStringList &arguments);

} // namespace mevo
