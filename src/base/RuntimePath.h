#pragma once

#include <QString>

namespace mevo {

/// A file of this user's running programs, such as the lock of the one instance: in the user's runtime
/// folder, else below "/tmp" with the user's number in its name.
QString runtimePath(const QString &name, const QString &suffix);

} // namespace mevo
