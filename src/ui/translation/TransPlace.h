#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace mevo {

/// The translation window as it is placed: its whole width, and its heights with the settings away and open.
constexpr int transWindowWidth = 455;
constexpr int transWindowHeight = 230;
constexpr int transWindowHeightOpen = 555;

/// Where the window comes up: the middle of the screen that `bar` is on, of the first one when it is on none.
QPoint transWindowMiddle(const std::vector<QRect> &screens, const QRect &bar, const QSize &window);

/// The place nearest to where the window stands that is on a screen as a whole; its top left corner stays in
/// reach where the screen is too small for it.
QPoint transWindowInside(const std::vector<QRect> &screens, const QRect &window);

} // namespace mevo
