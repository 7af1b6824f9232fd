#pragma once

#include <QIcon>
#include <QPixmap>

namespace mevo {

/// A picture of the resources, in the version for the screen's scale: QPixmap itself reads the plain one
/// at every scale. Null when there is no such picture.
QPixmap picture(const QString &path);

/// The icon of a file that is not read before the icon is to be seen: for long lists that are seldom opened.
QIcon lateIcon(const QString &file);

} // namespace mevo
