#pragma once

#include <QString>

#include <memory>

struct _XDisplay;

namespace mevo {

/// A connection of our own to the X server, used by one thread. Errors of the server never end the
/// program: the handler notes them.
class X11Connection
{
public:
    X11Connection();
    ~X11Connection();
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;

    /// Null when there is no X server.
    _XDisplay *display() const { return m_display; }
    explicit operator bool() const { return m_display != nullptr; }
    /// Throws away what has come in: the server tells every client of each change of the keyboard map,
    /// and what nobody takes piles up.
    void discardEvents() const;
    unsigned long root() const;
    unsigned long atom(const char *name) const;

    /// Whether the window has the property at all.
    bool hasProperty(unsigned long window, unsigned long property) const;
    /// The first 32-bit item of a property, 0 when it is absent.
    unsigned long firstItem(unsigned long window, unsigned long property) const;
    /// A text property as UTF-8 or Latin-1; empty when it is absent.
    QString text(unsigned long window, const char *property) const;
    bool exists(unsigned long window) const;
    /// Whether it and all that it stands in are shown, as a window must be to have the focus.
    bool isViewable(unsigned long window) const;
    /// The window that keys go to: the one with the focus, or the one under the pointer where the focus
    /// follows that; 0 if none.
    unsigned long keyboardWindow() const;
    /// The top-level window that holds `window`, 0 when it is gone.
    unsigned long topLevel(unsigned long window) const;
    unsigned long focus() const;
    /// Whether a window is none of a program's, but what a window manager gives the focus to when no window
    /// has it: one that lies outside the screen and that nobody manages. Keys that it gets are nowhere.
    bool isPlaceholder(unsigned long window) const;
    /// Whether it is the desktop itself, the one with the icons: a program's window, but none to type into.
    bool isDesktop(unsigned long window) const;

private:
    _XDisplay *m_display = nullptr;
};

} // namespace mevo
