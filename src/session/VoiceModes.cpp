#include "session/VoiceModes.h"

#include "session/KeyReport.h"
#include "session/TranslationPort.h"

namespace mevo {

void enterMode(SessionState &state, std::atomic<bool> SessionState::*mode)
{
    for (const auto flag : {&SessionState::VoiceTypeMode, &SessionState::VoiceCommandWordMode,
                            &SessionState::VoiceSearchMode}) {
        state.*flag = flag == mode;
    }
}

void saveLastModes(SessionState &state)
{
    state.LastVoiceTypeMode = state.VoiceTypeMode;
    state.LastVoiceCommandWordMode = state.VoiceCommandWordMode;
    state.LastVoiceSearchMode = state.VoiceSearchMode;
}

void restoreLastModes(SessionState &state)
{
    state.VoiceTypeMode = state.LastVoiceTypeMode;
    state.VoiceCommandWordMode = state.LastVoiceCommandWordMode;
    state.VoiceSearchMode = state.LastVoiceSearchMode;
}

ModeChange changeModeByKey(SessionState &state, int key)
{
    switch (key) {
    case KeyVoice:
        enterMode(state, &SessionState::VoiceTypeMode);
        return ModeChange::Changed;
    case KeyTranslate: {
        const bool opened = !state.VoiceTranslateMode.exchange(true);
        enterMode(state, &SessionState::VoiceTypeMode);
        return opened ? ModeChange::TranslationOpened : ModeChange::Changed;
    }
    case KeyCommand:
        saveLastModes(state);
        enterMode(state, &SessionState::VoiceCommandWordMode);
        return ModeChange::Changed;
    case KeySearch:
        saveLastModes(state);
        enterMode(state, &SessionState::VoiceSearchMode);
        return ModeChange::Changed;
    default:
        return ModeChange::None;
    }
}

void openTranslation(SessionState &state, TranslationPort &dialog)
{
    if (dialog.exists() || dialog.create()) {
        dialog.show();
    } else {
        state.VoiceTranslateMode = false;
    }
}

void toggleTranslation(SessionState &state, TranslationPort &dialog)
{
    const bool opens = !dialog.isVisible();
    state.VoiceTranslateMode = opens;
    if (opens) {
        openTranslation(state, dialog);
    } else {
        dialog.destroy();
    }
}

} // namespace mevo
