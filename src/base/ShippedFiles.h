#pragma once

#include <QStringList>

namespace mevo {

/// Brings the shipped files ("MEV*.ini") of the folders `sources`, of which the first that has a name counts,
/// to `target`. A file that stands there stays, unless it is to the byte what has been brought by an earlier
/// version, and the shipped one is another: then the user has not touched it, and gets the new one. What was
/// brought is noted in `target`, as SHA-256 by name in "MEVOShipped.json".
void bringShippedFiles(const QStringList &sources, const QString &target);

} // namespace mevo
