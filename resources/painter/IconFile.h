#pragma once

#include <QByteArray>
#include <QVector>

class QImage;

namespace mevo {

/// The bytes of an ICO file with one PNG entry for each image. Sides are 1 to 256 pixels.
QByteArray iconFile(const QVector<QImage> &images);

} // namespace mevo
