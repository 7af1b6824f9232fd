#pragma once

#include <QImage>
#include <QRect>

#include <vector>

namespace mevo {

/// The parts of a picture that are more opaque than not, as rectangles of its pixels that do not overlap. A
/// picture without any gives one empty rectangle: a shape of nothing.
std::vector<QRect> opaqueShape(const QImage &picture);

} // namespace mevo
