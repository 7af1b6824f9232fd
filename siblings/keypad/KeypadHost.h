#pragma once

#include "keypad/DesktopTheme.h"
#include "keypad/KeyTyper.h"
#include "keypad/KeypadCommand.h"
#include "keypad/KeypadPlace.h"
#include "keypad/KeypadState.h"
#include "keypad/KeypadTables.h"

#include <QObject>

#include <memory>

namespace mevo {
class OwnWindows;
}

namespace mevo::keypad {

class KeypadWindow;

/// The running keyboard: carries out what is wished, and holds together what it is made of. The window is
/// made when it is first shown.
class KeypadHost : public QObject
{
    Q_OBJECT

public:
    /// What it needs of the desktop; both outlive it.
    KeypadHost(WindowSystem &windows, Keyboard &keyboard, OwnWindows &desktop);
    ~KeypadHost() override;

    void carryOut(Wish wish);
    bool isShown() const;

private:
    void show();
    void hide();
    void place();
    void watchScreens();

    OwnWindows &m_desktop;
    KeypadState m_state;
    KeyTyper m_typer;
    PlaceMemory m_memory;
    DesktopTheme m_theme;
    KeyWords m_words;
    KeypadTables m_tables;
    std::unique_ptr<KeypadWindow> m_window;
};

} // namespace mevo::keypad
