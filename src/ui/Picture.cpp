#include "ui/Picture.h"

#include <QIcon>

namespace mevo {

QPixmap picture(const QString &path)
{
    const QPixmap plain(path);
    return plain.isNull() ? plain : QIcon(path).pixmap(plain.size());
}

} // namespace mevo
