#pragma once

#include <QString>

#include <optional>

namespace mevo {

/// Beside the program's folder: the new version before the exchange, the old one after it.
extern const QString updateFolderBeside;
/// The archive while it is being fetched, in the folder above the program's: a name of the program's own, so
/// that what stands under it at a start is a rest of an earlier download.
extern const QString updatePartFile;

/// What was to be installed and is not.
struct UnfinishedUpdate
{
    int version = 0; ///< that was offered; 0 when not even its archive has come
};

/// Clears what an update has left above the folder of `programFile` that nobody works on any more: half a
/// download, an archive whose updater has been killed or did not start, the old version where the updater was
/// killed after the exchange. Gives what the user is to be told, once: nothing is told of what could not be
/// cleared, which a log line names. Nothing is touched while an updater is at work, and where the rest is
/// another user's or another program's.
///
/// It takes its time from the event loop, and must come before any download of this program's own.
std::optional<UnfinishedUpdate> clearUpdateRest(const QString &programFile, int currentVersion);

/// An updater is at work: it waits for the program's end, or for its start.
bool isUpdaterAtWork();

} // namespace mevo
