#include "platform/linux/ScreenPixels.h"

#include <QGuiApplication>
#include <QScreen>

namespace mevo {

QPoint toDesktopPixels(const QPoint &native)
{
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QPoint corner = screen->geometry().topLeft();
        const qreal ratio = screen->devicePixelRatio();
        if (QRect(corner, screen->geometry().size() * ratio).contains(native)) {
            return corner + (native - corner) / ratio;
        }
    }
    return native;
}

QPoint toNativePixels(const QPoint &place)
{
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QPoint corner = screen->geometry().topLeft();
        if (screen->geometry().contains(place)) {
            return corner + (place - corner) * screen->devicePixelRatio();
        }
    }
    return place;
}

} // namespace mevo
