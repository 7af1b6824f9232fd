#pragma once

#include <QStringList>

namespace mevo::lab {

/// `mevolab receiver`: commands from standard input and a socket, one line each, answered by one line each.
/// Needs a QCoreApplication. The exit code, which is the program's when one is started along.
int runReceiver(const QStringList &arguments);

} // namespace mevo::lab
