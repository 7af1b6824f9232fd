#pragma once

#include <QString>

namespace mevo {

/// The keys that paste the clipboard into a window.
struct PasteShortcut
{
    bool shift = false;
    bool ctrl = false;
    int virtualKey = 0; ///< Win32 virtual key code
    int usage = 0;      ///< the same key as a USB keyboard usage
};

/// Ctrl+V, or what the terminal of that window class takes in its place. The class may be given as
/// "instance.Class" or as either of the two; capitals do not matter.
PasteShortcut pasteShortcutFor(const QString &windowClass);

} // namespace mevo
