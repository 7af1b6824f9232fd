#pragma once

#include <QString>

namespace mevo::patchrunner {

enum class Outcome {
    Done,
    NothingToDo,  ///< no "DownloadSetting.ini", or one that cannot be used
    AnotherRuns,  ///< another updater is at work
    StillRunning, ///< the program did not end in time
    ReadOnly,     ///< the folders cannot be changed
    NoExchange,   ///< the file system cannot exchange folders in one step
    BadArchive,
    BadSignature,
    NoSpace,
    NotStarted,  ///< the new version did not come up, and the old one is back
    Unconfirmed, ///< the new version is in place and runs, and has not come up in time
    Failed
};

struct Report
{
    Outcome outcome = Outcome::Done;
    QString detail; ///< for the log, in English
};

struct RunTimes
{
    int endMs = 60000;      ///< how long the program has for its end
    int startMs = 60000;    ///< and the new version to come up
    int endAgainMs = 10000; ///< and to end when it has not
    int updaterMs = 5000;   ///< and another updater to come to its end
};

/// One at a time. The update that "DownloadSetting.ini" in `base` describes: waits for the program's end,
/// builds the new folder beside the old one, exchanges the two, starts the new version, and takes everything
/// back when it does not come up. Whatever happens, this process killed at any moment included, the program's
/// folder holds the old or the new version whole. Unless it still runs, or another updater does this, the
/// program has been started at the end, also where there is nothing to be installed.
Report runUpdate(const QString &base, const RunTimes &times = {});

} // namespace mevo::patchrunner
