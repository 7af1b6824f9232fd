#include "device/ReportDispatch.h"

#include "state/MainState.h"

namespace mevo {

namespace {

using Kind = DispatchStep::Kind;

constexpr int kKeyReport = 0x70;

/// What a key asks of the voice mode before the session hears of it.
enum class ModeRequest {
    None,
    Typing,      ///< at press and release, unless typing is on already
    OnlineMode,  ///< at the press; the mode needs a network
    Translation, ///< at press and release; needs a network to be switched on
};

struct KeyRow
{
    unsigned char key;
    ModeRequest request;
    int micDialogCall; ///< voice mode that the tip window switches to
    bool voiceKey;     ///< its press can belong to the translation dialog
};

constexpr std::array<KeyRow, 7> kKeys{{
    {1, ModeRequest::Typing, 1, true},
    {2, ModeRequest::Translation, 2, true},
    {3, ModeRequest::Typing, 1, true},
    {6, ModeRequest::OnlineMode, 6, true},
    {8, ModeRequest::None, 0, true},
    {14, ModeRequest::OnlineMode, 14, true},
    {16, ModeRequest::None, 0, false},
}};

const KeyRow *findKey(unsigned char key)
{
    for (const KeyRow &row : kKeys) {
        if (row.key == key) {
            return &row;
        }
    }
    return nullptr;
}

void addModeChange(const KeyRow &row, bool press, const DispatchFlags &flags, DispatchSteps &steps)
{
    switch (row.request) {
    case ModeRequest::None:
        break;
    case ModeRequest::Typing:
        if (!flags.voiceTypeMode) {
            steps.add(Kind::MicDialogCall, row.micDialogCall);
            steps.add(Kind::MainCall, ReloadEngineChoice);
        }
        break;
    case ModeRequest::OnlineMode:
        if (!flags.online) {
            steps.add(Kind::OfflineWarning);
        }
        if (press) {
            steps.add(Kind::MicDialogCall, row.micDialogCall);
            steps.add(Kind::MainCall, ReloadEngineChoice);
        }
        break;
    case ModeRequest::Translation:
        if (!flags.voiceTranslateMode && !flags.online) {
            steps.add(Kind::OfflineWarning);
        }
        steps.add(Kind::MicDialogCall, row.micDialogCall);
        break;
    }
}

} // namespace

DispatchFlags DispatchFlags::of(const MainState &state)
{
    DispatchFlags flags;
    flags.micLatched = state.MicLatched;
    flags.delimitTranslation = state.DelimitTranslation;
    flags.voiceTypeMode = state.VoiceTypeMode;
    flags.voiceTranslateMode = state.VoiceTranslateMode;
    flags.online = state.IsOnline;
    flags.resultIdle = state.ResultIdle;
    flags.keyDownBusy = state.KeyDownBusy;
    flags.keyUpBusy = state.KeyUpBusy;
    flags.quickReleaseCount = state.QuickReleaseCount;
    return flags;
}

DispatchSteps dispatchKeyReport(const InputReport &report, const DispatchFlags &flags)
{
    DispatchSteps steps;
    const KeyRow *row = report[1] == kKeyReport ? findKey(report[2]) : nullptr;
    if (row == nullptr || report[4] != 0 || flags.micLatched) {
        return steps;
    }
    const bool press = report[3] == 1;
    if (row->voiceKey && flags.delimitTranslation && press) {
        steps.add(Kind::KeyToTranslation);
        return steps;
    }
    addModeChange(*row, press, flags, steps);
    if (flags.delimitTranslation) {
        return steps;
    }
    if (flags.resultIdle && !flags.keyDownBusy && !flags.keyUpBusy) {
        steps.add(Kind::KeyToSession);
        return steps;
    }
    steps.add(Kind::KeyRefused);
    steps.add(Kind::MainCall, ResetSession);
    if (flags.quickReleaseCount >= 2) {
        steps.add(Kind::StartStopRecordTimer);
        steps.add(Kind::MainCall, ResetSession);
    }
    return steps;
}

} // namespace mevo
