#include "ui/NoticePlace.h"

#include <algorithm>
#include <functional>

namespace mevo {

std::optional<int> noticeBottom(const QRect &room, int height, const QVector<QRect> &standing)
{
    const int lowest = room.bottom() + 1;
    if (standing.isEmpty()) {
        return lowest;
    }
    QVector<int> bottoms{lowest};
    for (const QRect &other : standing) {
        bottoms.append(other.top());
    }
    std::sort(bottoms.begin(), bottoms.end(), std::greater<int>());
    for (const int bottom : bottoms) {
        const int top = bottom - height;
        const bool isFree = std::none_of(standing.begin(), standing.end(), [&](const QRect &other) {
            return top <= other.bottom() && other.top() < bottom;
        });
        if (isFree && top >= room.top() && bottom <= lowest) {
            return bottom;
        }
    }
    return std::nullopt;
}

int noticeThatYields(const QVector<OpenNotice> &notices)
{
    constexpr int readSeconds = 60;
    const auto found = std::find_if(notices.begin(), notices.end(), [](const OpenNotice &notice) {
        return notice.shown && !notice.pointerOver && notice.stoodSeconds >= readSeconds;
    });
    return found == notices.end() ? -1 : int(found - notices.begin());
}

} // namespace mevo
