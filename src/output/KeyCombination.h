#pragma once

namespace mevo {

/// A key combination for the receiver to type.
struct KeyCombination
{
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    bool win = false;
    bool consumerKey = false; ///< `key` is a 12-bit consumer usage and the modifiers do not count
    int key = 0;              ///< HID keyboard usage, 0 for modifiers alone
};

} // namespace mevo
