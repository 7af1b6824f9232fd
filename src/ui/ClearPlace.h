#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace mevo {

/// A place on `screen` for a window of that size that is clear of `taken`: the middle, else the middle of the
/// upper, lower, left or right side, in this order; the middle again when none of them is free.
QPoint clearPlace(const QRect &screen, const QSize &size, const std::vector<QRect> &taken);

} // namespace mevo
