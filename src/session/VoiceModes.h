#pragma once

#include "state/SessionState.h"

namespace mevo {

class TranslationPort;

/// Turns one of type, command and search on and the two others off.
void enterMode(SessionState &state, std::atomic<bool> SessionState::*mode);

/// Copies the three flags to their Last... copies, and back.
void saveLastModes(SessionState &state);
void restoreLastModes(SessionState &state);

enum class ModeChange {
    None,             ///< the number asks for no mode
    Changed,          ///< the flags have been set
    TranslationOpened ///< the same, and the translation dialog is wanted
};

/// Sets the mode that a device key asks for: 1 type, 2 translate, 6 command, 14 search.
ModeChange changeModeByKey(SessionState &state, int key);

/// Shows the translation dialog, made first when there is none. VoiceTranslateMode is left on only with a
/// dialog: without one nobody would take the text.
void openTranslation(SessionState &state, TranslationPort &dialog);
/// What the translate button does: opens the dialog and turns VoiceTranslateMode on, or takes a visible
/// one away and turns it off.
void toggleTranslation(SessionState &state, TranslationPort &dialog);

} // namespace mevo
