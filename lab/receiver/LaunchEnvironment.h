#pragma once

#include <QProcessEnvironment>
#include <QStringList>

namespace mevo::lab {

/// The sanitizer libraries in the output of `ldd PROGRAM`. They must stand first in LD_PRELOAD, or the
/// sanitizer refuses to run.
QStringList sanitizerRuntimes(const QByteArray &lddOutput);

/// `base` with UMOCKDEV_DIR and LD_PRELOAD set, so that `program` sees the test bed at `root` as its machine.
QProcessEnvironment launchEnvironment(const QByteArray &root, const QString &program,
                                      QProcessEnvironment base = QProcessEnvironment::systemEnvironment());

} // namespace mevo::lab
