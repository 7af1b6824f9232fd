#pragma once

#include <QString>

#include <optional>

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

/// The keys that copy what is selected in a window.
using CopyShortcut = PasteShortcut;

/// Ctrl+C, or what the terminal of that window class takes in its place; none where a terminal copies by no
/// key, since Ctrl+C would interrupt what runs in it.
std::optional<CopyShortcut> copyShortcutFor(const QString &windowClass);

} // namespace mevo
