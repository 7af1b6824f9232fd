#pragma once

#include "engines/EngineSelection.h"
#include "state/MainState.h"

#include <vector>

namespace mevo {

/// What a check of the day's allowances asks for.
enum class AllowanceStep {
    GoOn,       ///< the engine in force may be used, or none of ours is
    UseTencent, ///< Tencent takes over, see fallToTencent()
    AskUser     ///< nothing is left: the user is asked to choose an input method
};

/// Looks whether the engines in force have used up their day, Baidu first, then XunFei, then Tencent, and
/// marks those that have. Marks go when Tencent takes over; on an XP-class system it never does.
AllowanceStep checkAllowances(MainState &state, const RecorderState &recorder, bool xpClass);

/// Takes the marks off engines whose use is below their limit, after the record has told new numbers.
void unmarkAllowances(MainState &state);

/// A new day of counting: nothing is used but what the backend has not been told yet, nothing is marked.
void beginAllowanceDay(MainState &state);

/// The user has chosen an input method, numbered as LocalUseASR3Index, because nothing else is left.
std::vector<SettingWrite> chooseInputMethodAtLimit(EngineState &state, int index);

} // namespace mevo
