#pragma once

#include "session/SessionState.h"

namespace mevo {

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

} // namespace mevo
