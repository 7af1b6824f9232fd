#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace mevo {

/// A place on `screen` for a window of that size that is clear of `taken`: the middle, else the middle of the
/// upper, lower, left or right side, in this order; the middle again when none of them is free.
QPoint clearPlace(const QRect &screen, const QSize &size, const std::vector<QRect> &taken);

/// A place on `screen` for a window of that size that `taken`, which stands over it, does not cover: the
/// middle, else left of `taken`, else above it and less high; the middle again where there is no room.
QRect uncoveredPlace(const QRect &screen, const QSize &size, const QRect &taken);

/// A place on `screen` for a window of that size beside `bar`, which stays in reach: above it, else below it,
/// else at its left or right, always whole on the screen where the screen is large enough.
QPoint besidePlace(const QRect &screen, const QSize &size, const QRect &bar);

} // namespace mevo
