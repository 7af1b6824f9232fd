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
    Way way = Way::Nothing;
    QString text;           ///< what is typed, all effects applied
    bool lostFocus = false; ///< the settings ask for posting and there is no window to post to
};

/// Plans a text for the screen from the settings and the session that it belongs to. `translationDialogOpen`
/// and `canPost` (whether this desktop lets characters be posted) choose the way.
SendPlan planSend(const QString &text, const MainState &state, const SessionContext &session,
                  bool translationDialogOpen, bool canPost);

/// The way of a text that is typed unchanged into `window`, which is there.
SendPlan::Way typingWay(const MainState &state, WindowId window, bool translationDialogOpen, bool canPost);

} // namespace mevo
