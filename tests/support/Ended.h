#pragma once

#include <QProcess>

/// Whether a started program has ended, by itself and within milliseconds, with this exit code.
/// QProcess::waitForFinished() is false for a program whose end an event loop has seen already.
inline bool hasEnded(QProcess &process, int exitCode = 0, int milliseconds = 30000)
{
    return (process.state() == QProcess::NotRunning || process.waitForFinished(milliseconds)) &&
           process.exitStatus() == QProcess::NormalExit && process.exitCode() == exitCode;
}
