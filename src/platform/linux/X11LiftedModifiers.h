#pragma once

#include <array>
#include <vector>

struct _XDisplay;

namespace mevo {

/// The modifier keys that the user holds, let go for as long as this is there. Those that he still holds at
/// its end are down again; one that he has let go meanwhile would stay down for ever.
class X11LiftedModifiers
{
public:
    explicit X11LiftedModifiers(_XDisplay *display);
    ~X11LiftedModifiers();
    X11LiftedModifiers(const X11LiftedModifiers &) = delete;
    X11LiftedModifiers &operator=(const X11LiftedModifiers &) = delete;

private:
    using Keys = std::array<char, 32>; ///< a bit for each keycode
    static bool isDown(const Keys &keys, int keycode)
    {
        return (keys[static_cast<std::size_t>(keycode / 8)] >> (keycode % 8) & 1) != 0;
    }
    /// Those that are down on the keyboards themselves, which injected keys do not change.
    Keys heldByHand() const;

    _XDisplay *m_display;
    std::vector<int> m_lifted;
    Keys m_byHand{};
};

} // namespace mevo
