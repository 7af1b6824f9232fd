#pragma once

#include <QString>

namespace mevo::patchrunner {

/// Everything written so far in the file system of this folder reaches the disk. False when that is not
/// known.
bool syncFileSystem(const QString &folder);

/// Exchanges two folders of one folder in one step: at every moment each name leads to one of them whole. The
/// content of both is on the disk before, the exchange itself after. Gives what went wrong, empty when
/// nothing did; then nothing has changed.
QString exchangeFolders(const QString &one, const QString &other);

/// Whether the file system of `folder` can do that, found out with two folders made for it: 0, or the number
/// of the system's error.
int exchangeErrorIn(const QString &folder);

} // namespace mevo::patchrunner
