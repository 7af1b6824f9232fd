#pragma once

#include <QtGlobal>

#include <functional>

namespace mevo {

enum class ProcessState {
    Quiet,   ///< it has slept, waiting for something to happen
    Busy,    ///< it has not
    Stopped, ///< it does not run at all, as under a debugger
    Unknown, ///< there is no such process, or not one that may be looked at
};

/// Waits until the main thread of a process has slept without a break for `quietMs`. A program that has input
/// to read does not: it runs, or waits for the processor. Gives up after `limitMs` in which it had one to run
/// on, or else after five times that and 10 s at most; an unknown process is not waited for. `goOn` is called
/// before each look at it, and gives up at once with false.
ProcessState awaitQuiet(qint64 processId, int quietMs, int limitMs, const std::function<bool()> &goOn = {});

/// Whether a process does not run at all; false when there is none, or none that may be looked at.
bool isStopped(qint64 processId);

} // namespace mevo
