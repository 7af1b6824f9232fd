#pragma once

#include "platform/WindowSystem.h"

namespace mevo {

/// Whether the window is one of this program's own, message boxes among them. GUI thread only.
bool isOwnWindow(WindowId window);

} // namespace mevo
