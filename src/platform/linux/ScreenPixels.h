#pragma once

#include <QPoint>

namespace mevo {

/// From native pixels of the desktop to those that QWidget::move() takes. Screens keep their corners when Qt
/// scales them, and only their sizes change.
QPoint toDesktopPixels(const QPoint &native);
/// The way back.
QPoint toNativePixels(const QPoint &place);

} // namespace mevo
