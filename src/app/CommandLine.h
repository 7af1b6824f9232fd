#pragma once

#include "window/InstanceMessage.h"

#include <QString>
#include <QStringList>

namespace mevo {

/// What a command line asks of the program, told before a display is opened.
struct CommandLine
{
    enum class Wish { Run, Print, Refuse };
    Wish wish = Wish::Run;
    QString text;      ///< for standard output (Print) or standard error (Refuse), with its line end
    InstanceCall call; ///< for Run: what is asked of the instance that runs, or of this one when none does

    /// What the process ends with instead of running: 0 after Print, 2 after Refuse.
    int exitCode() const { return wish == Wish::Refuse ? 2 : 0; }
};

/// What the process ends with, besides 0 and what CommandLine tells.
constexpr int noInstanceExitCode = 3; ///< no instance runs that could type a text
constexpr int keptExitCode = 4;       ///< the text could not be typed and waits as undelivered
constexpr int noAnswerExitCode = 5;   ///< the instance that runs cannot do it now, or does not answer

/// Reads the arguments behind the program's name. "--help" and "--version" print, whichever comes first; an
/// option that neither the program nor Qt knows is refused, as is one without its value, a second wish, and a
/// text that is too long for a message. Arguments
/// that are no options, all of them behind "--", are let be: a session or a file manager may add some.
CommandLine readCommandLine(const QStringList &arguments);

} // namespace mevo
