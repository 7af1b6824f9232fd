#include "engines/Allowance.h"

namespace mevo {

AllowanceStep checkAllowances(MainState &state, const RecorderState &recorder, bool xpClass)
{
    if (state.LocalEnableASR3) {
        return AllowanceStep::GoOn; // the recorder's flags say what would be in force without the input
                                    // method
    }
    bool hit = false;
    if (recorder.BaiDuNoStreamApi) {
        if (state.BDSR1DUsedQuantity < state.BDSR1DMaxUsageQuantity) {
            return AllowanceStep::GoOn;
        }
        hit = state.BaiduQuotaHit = true;
    }
    if (recorder.UseXunFeiWebApi) {
        if (state.XFSR1DUsedQuantity < state.XFSR1DMaxUsageQuantity) {
            return AllowanceStep::GoOn;
        }
        hit = state.XunFeiQuotaHit = true;
    }
    if (recorder.UseTXASRApi) {
        if (state.TXSR1DUsedQuantity < state.TXSR1DMaxUsageQuantity) {
            return AllowanceStep::GoOn;
        }
        state.TencentQuotaHit = true;
        return AllowanceStep::AskUser;
    }
    if (!hit) {
        return AllowanceStep::GoOn;
    }
    if (xpClass || state.TencentQuotaHit) {
        return AllowanceStep::AskUser;
    }
    state.BaiduQuotaHit = state.XunFeiQuotaHit = state.TencentQuotaHit = false;
    return AllowanceStep::UseTencent;
}

void unmarkAllowances(MainState &state)
{
    state.BaiduQuotaHit = state.BaiduQuotaHit && state.BDSR1DUsedQuantity >= state.BDSR1DMaxUsageQuantity;
    state.XunFeiQuotaHit = state.XunFeiQuotaHit && state.XFSR1DUsedQuantity >= state.XFSR1DMaxUsageQuantity;
    state.TencentQuotaHit = state.TencentQuotaHit && state.TXSR1DUsedQuantity >= state.TXSR1DMaxUsageQuantity;
}

void beginAllowanceDay(MainState &state)
{
    state.dayCounts
        .beginDay(); // kept: that of the translations is named after the month and ends with the day
    state.BaiduQuotaHit = state.XunFeiQuotaHit = state.TencentQuotaHit = false;
}

std::vector<SettingWrite> chooseInputMethodAtLimit(EngineState &state, int index)
{
    state.LocalEnableASR3 = state.EnableASR3 = true;
    state.LocalUseASR3Index = state.UseASR3Index = index;
    return {{"LocalEnableASR3", 1}, {"LocalUseASR3Index", index}};
}

} // namespace mevo
