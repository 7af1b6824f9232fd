#include "inputmethods/MethodSetup.h"

#include "state/ThirdPartyMethod.h"

namespace mevo {

namespace {

void nameWindow(MainState &state, const Asr3Row &row)
{
    state.ASR3WindowName = row.ASR3WindowName;
    state.ASR3WinClassName = row.ASR3WinClassName;
}

/// Without a network the third generation shows another window.
void nameOfflineWindow(MainState &state)
{
    nameWindow(state, builtInAsr3Row(thirdPartyXunFei, true));
}

} // namespace

SetupStep nextSetupStep(const SetupFacts &facts)
{
    if (!facts.mustClick && !facts.consentAsked) {
        return SetupStep::AskConsent;
    }
    if (facts.found) {
        return SetupStep::Ready;
    }
    if (facts.index == thirdPartyXunFei && facts.offlineWanted && facts.installerHere && !facts.mustClick) {
        return SetupStep::RunInstaller;
    }
    if (!facts.forced) {
        return SetupStep::FallBack;
    }
    return facts.hasAddress ? SetupStep::OfferDownload : SetupStep::NothingToHave;
}

bool wantsThirdGeneration(const MainState &state)
{
    return state.XFVM3 || state.ForceUseXFMore3V || state.OnlyUseXunFeiOfflineASR;
}

void applyAsr3Row(MainState &state, int index, const Asr3Row &row)
{
    nameWindow(state, row);
    state.ASR3ShortCutKey = row.ASR3ShortCutKey;
    state.ASR3Name = row.ASR3Name;
    state.ASR3HoldToTalk = index == thirdPartyXunFei;
    if (index == thirdPartyXunFei && state.XFVM3 && !state.IsOnline) {
        nameOfflineWindow(state);
    }
}

void applyXunFeiInstallation(MainState &state, const XunFeiInstallation &installation, const QString &program,
                             bool online, const Asr3Row *row)
{
    const bool gone = !installation.folder.isEmpty() && program.isEmpty();
    state.XFVM3 = !gone && installation.generation > 2;
    if (!program.isEmpty()) {
        state.LocalASR3XunFeiInstallPath = program;
    }
    if (state.LocalUseASR3Index != thirdPartyXunFei) {
        return;
    }
    if (state.XFVM3 && !online) {
        nameOfflineWindow(state);
    } else if (row != nullptr) {
        const bool third = wantsThirdGeneration(state);
        nameWindow(state, row->thirdGeneration == third ? *row : builtInAsr3Row(thirdPartyXunFei, third));
    }
}

std::vector<SettingWrite> applyCustomMethod(MainState &state, const CustomMethod &method)
{
    state.ASR3CustomCtrlShortCutKey = method.modifiers;
    state.ASR3CustomShortCutKey = method.usage;
    state.ASR3CustomHoldToTalk = method.hold;
    state.ASR3CustomWinClassName = method.windowClass;
    return {{"ASR3CustomCtrlShortCutKey", method.modifiers}, {"ASR3CustomShortCutKey", method.usage}};
}

std::vector<SettingWrite> leaveInputMethod(MainState &state)
{
    state.ThirdPartyActive = false;
    state.LocalEnableASR3 = false;
    state.LocalUseASR3Index = thirdPartyNone;
    return {{"LocalEnableASR3", 0}, {"LocalUseASR3Index", thirdPartyNone}};
}

} // namespace mevo
