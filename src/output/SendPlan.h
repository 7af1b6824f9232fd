#pragma once

#include "output/KeyCombination.h"
#include "state/MainState.h"

#include <QString>

#include <vector>

namespace mevo {

/// What sending one text to the screen comes to.
struct SendPlan
{
    enum class Way {
        Nothing,  ///< the text is not typed
        Post,     ///< characters posted to the focus window
        Clipboard ///< clipboard and paste key
    };

    std::vector<KeyCombination> keys; ///< mapped words' keys, typed first
    bool keysDropped = false;         ///< there were some, which would have gone into another window
    Way way = Way::Nothing;
    QString text;           ///< what is typed, all effects applied
    bool lostFocus = false; ///< the settings ask for posting and there is no window to post to
};

/// Plans a text for the screen from the settings and the session that it belongs to. `translationDialogOpen`
/// and `canPost` (whether this desktop lets characters be posted) choose the way. `focusElsewhere`: it may go
/// into its own window alone, and another has the focus.
SendPlan planSend(const QString &text, const MainState &state, const SessionContext &session,
                  bool translationDialogOpen, bool canPost, bool focusElsewhere = false);

/// The only window that a recognised text may go into, 0 for the one that its way leads to: beside the
/// translation window texts are pasted, and the paste key goes to whatever has the focus.
WindowId onlyWindowOf(const MainState &state, const SessionContext &session, bool translationDialogOpen);

/// What a translation keeps of the session of its text, or of what is in force where it has none. `spoken`:
/// it is a sentence's. `byHand`: the user has asked for it, and no mode stands in its way; one of a text that
/// no input method has heard is left to none.
SessionContext translationContext(SessionContext session, bool spoken, bool byHand);

/// The way of a text that is typed unchanged into `window`, which is there.
SendPlan::Way typingWay(const MainState &state, WindowId window, bool translationDialogOpen, bool canPost);

} // namespace mevo
