#include "output/PasteShortcut.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace mevo {

namespace {

constexpr PasteShortcut CtrlV{false, true, 0x56, 0x19};
constexpr PasteShortcut CtrlShiftV{true, true, 0x56, 0x19};
constexpr PasteShortcut ShiftInsert{true, false, 0x2d, 0x49};

struct Terminal
{
    QLatin1String windowClass; ///< in lower case
    PasteShortcut shortcut;
};

// Shift+Insert of a plain xterm and its kin pastes the primary selection: the text has to be there too.
constexpr Terminal terminals[] = {
    {QLatin1String("alacritty"), CtrlShiftV},
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
    {QLatin1String("org.wezfurlong.wezterm"), CtrlShiftV},
    {QLatin1String("qterminal"), CtrlShiftV},
    {QLatin1String("terminator"), CtrlShiftV},
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

} // namespace

PasteShortcut pasteShortcutFor(const QString &windowClass)
{
    const auto terminalOf = [](const QString &name) {
        return std::find_if(std::begin(terminals), std::end(terminals), [&](const Terminal &terminal) {
            return name.compare(terminal.windowClass, Qt::CaseInsensitive) == 0;
        });
    };
    QStringList names{windowClass};
    for (int dot = windowClass.indexOf(QLatin1Char('.')); dot >= 0;
         dot = windowClass.indexOf(QLatin1Char('.'), dot + 1)) {
        names << windowClass.left(dot) << windowClass.mid(dot + 1);
    }
    for (const QString &name : qAsConst(names)) {
        const auto found = terminalOf(name);
        if (found != std::end(terminals)) {
            return found->shortcut;
        }
    }
    return CtrlV;
}

} // namespace mevo
