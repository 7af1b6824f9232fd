#pragma once

struct _XDisplay;

namespace mevo {

/// A second master keyboard, whose focus is ours to set: real key events reach a window that the user's own
/// keyboard has left. It is there as long as the object. Each program of ours has one of its own.
class X11SecondKeyboard
{
public:
    explicit X11SecondKeyboard(_XDisplay *display);
    ~X11SecondKeyboard();
    X11SecondKeyboard(const X11SecondKeyboard &) = delete;
    X11SecondKeyboard &operator=(const X11SecondKeyboard &) = delete;

    /// Removes those of programs of ours that are gone. Chromium and its kin take none of the user's keys
    /// while there is one.
    static void removeLeft(_XDisplay *display);

    /// Whether the server has given us one.
    bool isUsable() const { return m_device != nullptr; }
    /// Gives a window, or none (0), this keyboard's focus. False when it does not have it then, as when it
    /// cannot be seen.
    bool setFocus(unsigned long window);
    void key(unsigned keycode, bool down);
    /// The device whose state the keys are struck in.
    unsigned device() const { return static_cast<unsigned>(m_master); }
    /// Lets it be locked to that many groups: it has a map of its own, in which no program looks a key up.
    void setGroups(int count);

private:
    _XDisplay *m_display;
    int m_master = 0, m_xtest = 0, m_pointer = 0;
    unsigned long m_owner = 0; ///< a window, for the server to know that we are there
    int m_groups = 1;
    void *m_device = nullptr; ///< the XDevice that strikes its keys
};

} // namespace mevo
