#pragma once

namespace mevo {

/// Virtual key codes that the program presses itself (Win32 virtual-key codes).
enum VirtualKey {
    VkBack = 0x08,
    VkTab = 0x09,
    VkReturn = 0x0D,
    VkShift = 0x10,
    VkControl = 0x11,
    VkMenu = 0x12,
    VkLeft = 0x25,
    VkUp = 0x26,
    VkRight = 0x27,
    VkDown = 0x28,
    VkInsert = 0x2D,
    VkDelete = 0x2E,
    VkC = 0x43,
    VkS = 0x53,
    VkV = 0x56,
    VkLWin = 0x5B
};

/// Injected key events, as if typed on a keyboard of this computer.
class Keyboard
{
public:
    virtual ~Keyboard() = default;
    /// Presses and holds a key. A code that this keyboard does not have is ignored, with a log line.
    virtual void keyDown(int virtualKey) = 0;
    virtual void keyUp(int virtualKey) = 0;
};

} // namespace mevo
