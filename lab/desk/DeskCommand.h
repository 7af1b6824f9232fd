#pragma once

#include <QStringList>

namespace mevo::lab {

/// `mevolab desk SCRIPT`: runs a script of steps. Needs a QCoreApplication. Exit code 0 when every step went
/// well, 1 when one failed, 2 when the script cannot be read.
int runDesk(const QStringList &arguments);

} // namespace mevo::lab
