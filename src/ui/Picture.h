#pragma once

#include <QPixmap>

namespace mevo {

/// A picture of the resources, in the version for the screen's scale: QPixmap itself reads the plain one
/// at every scale. Null when there is no such picture.
QPixmap picture(const QString &path);

} // namespace mevo
