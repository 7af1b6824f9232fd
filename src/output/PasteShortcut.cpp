#include "output/PasteShortcut.h"

#include <algorithm>
#include <iterator>

namespace mevo {

namespace {

constexpr PasteShortcut CtrlV{false, true, 0x56, 0x19};
constexpr PasteShortcut CtrlShiftV{true, true, 0x56, 0x19};
constexpr PasteShortcut ShiftInsert{true, false, 0x2d, 0x49};
constexpr CopyShortcut CtrlC{false, true, 0x43, 0x06};
constexpr CopyShortcut CtrlShiftC{true, true, 0x43, 0x06};

struct Terminal
{
    QLatin1String windowClass; ///< in lower case
    PasteShortcut shortcut;
};

// Shift+Insert of a plain xterm and its kin pastes the primary selection: the text has to be there too.
constexpr Terminal terminals[] = {
    {QLatin1String("alacritty"), CtrlShiftV},
    {QLatin1String("com.mitchellh.ghostty"), CtrlShiftV},
    {QLatin1String("cool-retro-term"), CtrlShiftV},
    {QLatin1String("deepin-terminal"), CtrlShiftV},
    {QLatin1String("foot"), CtrlShiftV},
    {QLatin1String("gnome-terminal"), CtrlShiftV},
    {QLatin1String("gnome-terminal-server"), CtrlShiftV},
    {QLatin1String("guake"), CtrlShiftV},
    {QLatin1String("kgx"), CtrlShiftV},
    {QLatin1String("kitty"), CtrlShiftV},
    {QLatin1String("konsole"), CtrlShiftV},
    {QLatin1String("lxterminal"), CtrlShiftV},
    {QLatin1String("mate-terminal"), CtrlShiftV},
    {QLatin1String("org.gnome.console"), CtrlShiftV},
    {QLatin1String("org.gnome.ptyxis"), CtrlShiftV},
    {QLatin1String("org.wezfurlong.wezterm"), CtrlShiftV},
    {QLatin1String("qterminal"), CtrlShiftV},
    {QLatin1String("sakura"), CtrlShiftV},
    {QLatin1String("terminator"), CtrlShiftV},
    {QLatin1String("tilda"), CtrlShiftV},
    {QLatin1String("tilix"), CtrlShiftV},
    {QLatin1String("xfce4-terminal"), CtrlShiftV},
    {QLatin1String("yakuake"), CtrlShiftV},
    {QLatin1String("mlterm"), ShiftInsert},
    {QLatin1String("rxvt"), ShiftInsert},
    {QLatin1String("st-256color"), ShiftInsert},
    {QLatin1String("urxvt"), ShiftInsert},
    {QLatin1String("uxterm"), ShiftInsert},
    {QLatin1String("xterm"), ShiftInsert},
};

/// The terminal of that class, null for any other window.
const Terminal *terminalOf(const QString &windowClass)
{
    // A program chooses its class for itself, of any length and with any number of dots: each terminal's name
    // is looked for where it can stand, and nothing is split.
    const auto isClass = [&](QLatin1String name) {
        return windowClass.compare(name, Qt::CaseInsensitive) == 0;
    };
    const auto isInstance = [&](QLatin1String name) {
        return windowClass.size() > name.size() && windowClass[name.size()] == QLatin1Char('.') &&
               windowClass.startsWith(name, Qt::CaseInsensitive);
    };
    const auto endsAsClass = [&](QLatin1String name) {
        return windowClass.size() > name.size() &&
               windowClass[windowClass.size() - name.size() - 1] == QLatin1Char('.') &&
               windowClass.endsWith(name, Qt::CaseInsensitive);
    };
    const auto find = [](const auto &matches) {
        return std::find_if(std::begin(terminals), std::end(terminals),
                            [&](const Terminal &terminal) { return matches(terminal.windowClass); });
    };
    auto found = find(isClass);
    found = found != std::end(terminals) ? found : find(isInstance);
    found = found != std::end(terminals) ? found : find(endsAsClass);
    return found != std::end(terminals) ? found : nullptr;
}

} // namespace

PasteShortcut pasteShortcutFor(const QString &windowClass)
{
    const Terminal *terminal = terminalOf(windowClass);
    return terminal != nullptr ? terminal->shortcut : CtrlV;
}

std::optional<CopyShortcut> copyShortcutFor(const QString &windowClass)
{
    const Terminal *terminal = terminalOf(windowClass);
    if (terminal == nullptr) {
        return CtrlC;
    }
    // What is selected in xterm and its kin is the primary selection, and nothing more.
    return terminal->shortcut.virtualKey == CtrlShiftV.virtualKey ? std::optional<CopyShortcut>(CtrlShiftC)
                                                                  : std::nullopt;
}

} // namespace mevo
