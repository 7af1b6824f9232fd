#pragma once

#include <QPoint>

namespace mevo {

/// What is to be done about a window that may not stand where it was put.
enum class PlaceStep {
    Nothing,
    Believe, ///< it stands where it should, and the toolkit thinks otherwise
    Move,    ///< it stands elsewhere, and has to be asked for its place once more
    Adopt    ///< the user has moved it: this is its place from now on
};

/// `wanted` is where it was put, `believed` where the toolkit thinks that it stands, `real` where the desktop
/// says so. `settling` is the time after a showing in which the window manager, not the user, moves it.
PlaceStep placeStep(const QPoint &wanted, const QPoint &believed, const QPoint &real, bool settling);

} // namespace mevo
