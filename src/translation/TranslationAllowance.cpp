#include "translation/TranslationAllowance.h"

namespace mevo {

namespace {

constexpr int countsPerWrite = 100;

} // namespace

TranslationCount countTranslation(MainState &state)
{
    ++state.BDFY1MUsedQuantity;
    if (!state.BackendReachable) {
        return {};
    }
    return {!state.CountersLocked && state.BDFY1MUsedQuantity % countsPerWrite == 0,
            state.BDFY1MUsedQuantity >= state.BDFY1MMaxUsageQuantity};
}

} // namespace mevo
