#pragma once

#include "output/TypingHabits.h"
#include "platform/WindowSystem.h"

namespace mevo {

class X11Connection;

/// A window that is typed into, and what is known of its program.
struct X11Target
{
    WindowId window = 0;
    unsigned long topLevel = 0; ///< 0 when it is gone
    bool answersPing = false;
    qint64 processId = 0; ///< 0 when it is not told, or the process runs elsewhere
    TypingHabits habits;
};

/// Asks the server about the window.
X11Target x11Target(const X11Connection &connection, WindowId window);

} // namespace mevo
