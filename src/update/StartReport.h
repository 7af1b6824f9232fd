#pragma once

#include <QString>

namespace mevo {

/// A file in the program's folder that stands there from the exchange of an update on until the new version
/// has come up. The program removes it when it has.
extern const QString updatePendingFile;

/// The program is up: an update that waited for it is done.
void reportStart(const QString &programFolder);

} // namespace mevo
