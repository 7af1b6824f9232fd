#pragma once

#include "platform/WindowSystem.h"

namespace mevo {

/// Whether the window is one of this program's own, message boxes among them. GUI thread only.
bool isOwnWindow(WindowId window);

/// Keys that are typed into `window` would come to nothing: it is one of ours, and no field for text has the
/// focus there.
bool isOwnWithoutField(WindowId window);

} // namespace mevo
