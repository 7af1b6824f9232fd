#pragma once

#include <QRect>
#include <QVector>

#include <optional>

namespace mevo {

/// Where a notice of this height comes to stand: the y behind its last row, at the bottom of `room` or above
/// notices that stand there already (`standing`), in the lowest place that is free. Nothing when there is
/// none; alone it is placed in any case.
std::optional<int> noticeBottom(const QRect &room, int height, const QVector<QRect> &standing);

/// A notice that is open, as the choice of the one that yields sees it.
struct OpenNotice
{
    bool shown = false;
    bool pointerOver = false;
    int stoodSeconds = 0; ///< since the end of its slide
};

/// Which notice a newer one takes the place of, of all in the order in which they came: the oldest one that
/// has stood for a minute, so that it can have been read, and is not under the pointer. -1 while there is
/// none.
int noticeThatYields(const QVector<OpenNotice> &notices);

} // namespace mevo
