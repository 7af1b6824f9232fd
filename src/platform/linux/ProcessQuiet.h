#pragma once

#include <QtGlobal>

#include <functional>

namespace mevo {

enum class ProcessState {
    Quiet,   ///< it has slept, waiting for something to happen
    Busy,    ///< it never did
    Stopped, ///< it does not run at all, as under a debugger
    Unknown, ///< there is no such process, or not one that may be looked at
};

/// Waits until the main thread of a process has slept without a break for `quietMs`. A program that has input
/// to read does not: it runs, or waits for the processor. Gives up after `limitMs` in which it had one to run
/// on, and after five times that; an unknown process is not waited for. `beforeLook` is called before each
/// look at it.
ProcessState awaitQuiet(qint64 processId, int quietMs, int limitMs,
                        const std::function<void()> &beforeLook = {});

} // namespace mevo
