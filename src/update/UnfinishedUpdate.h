#pragma once

#include <QString>

namespace mevo {

/// Beside the program's folder: the new version before the exchange, the old one after it.
extern const QString updateFolderBeside;

/// An updater that was to install a newer version than this one has ended without a word, before it had
/// exchanged anything: its "DownloadSetting.ini" still stands above the folder of `programFile`. Not where
/// the updater has started this program, where the setting is about another one, or where it is another
/// user's.
bool isUpdateUnfinished(const QString &programFile, int currentVersion);

/// Removes the archive, its signature, what was unpacked and the setting. False, with a log line, when the
/// setting cannot be removed.
bool removeUnfinishedUpdate(const QString &programFile);

} // namespace mevo
