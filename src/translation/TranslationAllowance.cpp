#include "translation/TranslationAllowance.h"

namespace mevo {

namespace {

constexpr int countsPerWrite = 100;

} // namespace

TranslationCount countTranslation(MainState &state, int receiver)
{
    state.dayCounts.count(CountColumn::Translation, receiver);
    if (!state.BackendReachable || !state.dayCounts.isAtHand(receiver)) {
        return {};
    }
    return {!state.CountersLocked && !state.dayCounts.receiverId().isEmpty() &&
                state.BDFY1MUsedQuantity % countsPerWrite == 0,
            state.BDFY1MUsedQuantity >= state.BDFY1MMaxUsageQuantity};
}

} // namespace mevo
