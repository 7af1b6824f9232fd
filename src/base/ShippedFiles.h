#pragma once

#include <QStringList>

namespace mevo {

/// Brings the shipped files ("MEV*.ini") of the folders `sources`, of which the first that has a name counts,
/// to `target`. A file that stands there stays, unless it is to the byte what has been brought by an earlier
/// version, and the shipped one is another: then the user has not touched it, and gets the new one. What was
/// brought is noted in `target`, as SHA-256 by name in "MEVOShipped.json". A shipped file that is empty or
/// cannot be read whole is passed over. Of several programs that come at once one does it and the others
/// wait, at "MEVOShipped.lock", for `lockWaitMs` at most.
void bringShippedFiles(const QStringList &sources, const QString &target, int lockWaitMs = 5000);

} // namespace mevo
