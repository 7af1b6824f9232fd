#include "platform/linux/X11Keyboard.h"

#include <QDebug>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace mevo {

namespace {

KeySym keysymOf(int virtualKey)
{
    static constexpr struct
    {
        int virtualKey;
        KeySym keysym;
    } keys[] = {
        {VkBack, XK_BackSpace},    {VkTab, XK_Tab},    {VkReturn, XK_Return}, {VkShift, XK_Shift_L},
        {VkControl, XK_Control_L}, {VkMenu, XK_Alt_L}, {VkInsert, XK_Insert}, {VkDelete, XK_Delete},
        {VkLWin, XK_Super_L},      {VkLeft, XK_Left},  {VkUp, XK_Up},         {VkRight, XK_Right},
        {VkDown, XK_Down},
    };
    for (const auto &key : keys) {
        if (key.virtualKey == virtualKey) {
            return key.keysym;
        }
    }
    const bool letter = virtualKey >= 'A' && virtualKey <= 'Z';
    const bool digit = virtualKey >= '0' && virtualKey <= '9';
    return letter ? KeySym(virtualKey - 'A' + XK_a) : digit ? KeySym(virtualKey) : NoSymbol;
}

} // namespace

void X11Keyboard::strike(int virtualKey, bool down)
{
    Display *display = m_connection.display();
    const KeySym keysym = keysymOf(virtualKey);
    const KeyCode keycode =
        display != nullptr && keysym != NoSymbol ? XKeysymToKeycode(display, keysym) : KeyCode(0);
    if (keycode == 0) {
        qWarning() << "Keyboard: no key for the virtual key code" << virtualKey;
        return;
    }
    XTestFakeKeyEvent(display, keycode, down ? True : False, CurrentTime);
    XSync(display, False); // what is typed next may go by another connection
    m_connection.discardEvents();
}

} // namespace mevo
