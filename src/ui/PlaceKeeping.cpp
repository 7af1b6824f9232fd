#include "ui/PlaceKeeping.h"

namespace mevo {

namespace {

/// A scaled screen rounds places to a pixel.
bool same(const QPoint &one, const QPoint &other)
{
    const QPoint apart = one - other;
    return qAbs(apart.x()) <= 1 && qAbs(apart.y()) <= 1;
}

} // namespace

PlaceStep placeStep(const QPoint &wanted, const QPoint &believed, const QPoint &real, bool settling)
{
    if (same(real, wanted)) {
        return same(believed, wanted) ? PlaceStep::Nothing : PlaceStep::Believe;
    }
    return settling ? PlaceStep::Move : PlaceStep::Adopt;
}

} // namespace mevo
