#pragma once

#include <QRect>
#include <QVector>

#include <optional>

namespace mevo {

/// Where a notice of this height comes to stand: the y behind its last row, at the bottom of `room` or above
/// notices that stand there already (`standing`), in the lowest place that is free. Nothing when there is
/// none; alone it is placed in any case.
std::optional<int> noticeBottom(const QRect &room, int height, const QVector<QRect> &standing);

} // namespace mevo
