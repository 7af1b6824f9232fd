#pragma once

#include "keypad/DesktopTheme.h"
#include "keypad/KeyTyper.h"
#include "keypad/KeypadCommand.h"
#include "keypad/KeypadExit.h"
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
    /// What it needs of the desktop; all outlive it.
    KeypadHost(WindowSystem &windows, Keyboard &keyboard, OwnWindows &desktop,
               KeypadExit::Limits limits = KeypadExit::Limits());
    ~KeypadHost() override;

    /// Does what is wished. Once Exit has been wished, the next wish to show or hide drops the syllable that
    /// is waited for, and the others do nothing.
    void carryOut(Wish wish);
    /// Ends without waiting for the user.
    void endSoon() { m_exit.hurry(); }
    bool isShown() const;

Q_SIGNALS:
    void closed(); ///< it ends, and takes no more wishes
    void ended();

private:
    KeypadExit::Hooks exitHooks();
    bool isComposing() const;
    void typeSyllable();
    void takeDown();
    void end();
    void show();
    void hide();
    void place();

    OwnWindows &m_desktop;
    KeypadState m_state;
    KeyTyper m_typer;
    KeypadExit m_exit;
    PlaceMemory m_memory;
    DesktopTheme m_theme;
    KeyWords m_words;
    KeypadTables m_tables;
    std::unique_ptr<KeypadWindow> m_window;
};

} // namespace mevo::keypad
