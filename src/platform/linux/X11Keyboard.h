#pragma once

#include "platform/Keyboard.h"
#include "platform/linux/X11Connection.h"

namespace mevo {

/// Key events injected into an X11 desktop.
class X11Keyboard : public Keyboard
{
public:
    void keyDown(int virtualKey) override { strike(virtualKey, true); }
    void keyUp(int virtualKey) override { strike(virtualKey, false); }

private:
    void strike(int virtualKey, bool down);
    X11Connection m_connection;
};

} // namespace mevo
