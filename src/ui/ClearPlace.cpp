#include "ui/ClearPlace.h"

#include <algorithm>
#include <array>

namespace mevo {

namespace {
constexpr int frame = 48; ///< what a window manager may put around the window, its title above all
}

QPoint clearPlace(const QRect &screen, const QSize &size, const std::vector<QRect> &taken)
{
    QRect window(QPoint(), size);
    window.moveCenter(screen.center());
    const QRect middle = window;
    const int reachX = std::max(0, (screen.width() - size.width()) / 2 - frame);
    const int reachY = std::max(0, (screen.height() - size.height()) / 2 - frame);
    const std::array<QPoint, 5> steps{QPoint(0, 0), QPoint(0, -reachY), QPoint(0, reachY), QPoint(-reachX, 0),
                                      QPoint(reachX, 0)};
    for (const QPoint &step : steps) {
        const QRect framed = middle.translated(step).adjusted(-frame, -frame, frame, frame);
        if (std::none_of(taken.begin(), taken.end(),
                         [&framed](const QRect &other) { return other.intersects(framed); })) {
            return middle.topLeft() + step;
        }
    }
    return middle.topLeft();
}

QRect uncoveredPlace(const QRect &screen, const QSize &size, const QRect &taken)
{
    constexpr int leastHeight = 360;
    constexpr int edge = 8; // of the frame below and beside
    QRect middle(QPoint(), size.boundedTo(screen.size()));
    middle.moveCenter(screen.center());
    if (!middle.intersects(taken)) {
        return middle;
    }
    QRect left = middle;
    left.moveRight(taken.left() - 1 - edge);
    if (left.left() >= screen.left()) {
        return left;
    }
    QRect above = middle;
    above.setTop(screen.top() + frame);
    above.setBottom(taken.top() - 1 - edge);
    return above.height() >= leastHeight ? above : middle;
}

QPoint besidePlace(const QRect &screen, const QSize &size, const QRect &bar)
{
    const QSize framed(size.width(), size.height() + frame);
    const int above = bar.top() - framed.height();
    const int below = bar.bottom() + 1;
    int x = bar.center().x() - framed.width() / 2;
    int y = above;
    if (above < screen.top()) {
        y = below;
        if (below + framed.height() > screen.bottom() + 1) { // beside it
            x = bar.left() - framed.width();
            x = x >= screen.left() ? x : bar.right() + 1;
            y = bar.top();
        }
    }
    const auto within = [](int place, int length, int from, int to) {
        return std::max(from, std::min(place, to - length));
    };
    return {within(x, framed.width(), screen.left(), screen.right() + 1),
            within(y, framed.height(), screen.top(), screen.bottom() + 1)};
}

} // namespace mevo
