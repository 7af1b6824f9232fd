#pragma once

namespace mevo {

/// Virtual key codes of the arrow keys (Win32 virtual-key codes), for platform/Keyboard.
enum ArrowKey {
    VkLeft = 0x25,
    VkUp = 0x26,
    VkRight = 0x27,
    VkDown = 0x28,
};

} // namespace mevo
