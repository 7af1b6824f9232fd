#pragma once

#include "state/MainState.h"

namespace mevo {

/// What follows from one more translation.
struct TranslationCount
{
    bool written = false;      ///< the count goes to the device record
    bool limitReached = false; ///< the allowance is used up
};

/// Counts a translation, whatever came of it, to the receiver of this number, for which it was asked. Every
/// hundredth count is written, unless the counters are locked; both are only looked at while the backend
/// answers, since the count of the record is not known otherwise, and for the receiver at hand.
TranslationCount countTranslation(MainState &state, int receiver);

} // namespace mevo
