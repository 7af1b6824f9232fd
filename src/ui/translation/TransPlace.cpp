#include "ui/translation/TransPlace.h"

#include <algorithm>

namespace mevo {

namespace {

int sharedArea(const QRect &screen, const QRect &window)
{
    const QRect shared = screen.intersected(window);
    return shared.isEmpty() ? 0 : shared.width() * shared.height();
}

/// The screen that has most of the window; the first one when none has any of it.
QRect screenOf(const std::vector<QRect> &screens, const QRect &window)
{
    const auto most =
        std::max_element(screens.begin(), screens.end(), [&window](const QRect &a, const QRect &b) {
            return sharedArea(a, window) < sharedArea(b, window);
        });
    return most == screens.end() ? QRect() : *most;
}

int inside(int wanted, int length, int from, int room)
{
    return std::max(from, std::min(wanted, from + room - length));
}

} // namespace

QPoint transWindowMiddle(const std::vector<QRect> &screens, const QRect &bar, const QSize &window)
{
    const QRect screen = screenOf(screens, bar);
    const QPoint middle(screen.x() + (screen.width() - window.width()) / 2,
                        screen.y() + (screen.height() - window.height()) / 2);
    return transWindowInside(screens, {middle, window});
}

QPoint transWindowInside(const std::vector<QRect> &screens, const QRect &window)
{
    const QRect screen = screenOf(screens, window);
    if (screen.isEmpty()) {
        return window.topLeft();
    }
    return {inside(window.x(), window.width(), screen.x(), screen.width()),
            inside(window.y(), window.height(), screen.y(), screen.height())};
}

} // namespace mevo
