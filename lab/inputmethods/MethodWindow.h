#pragma once

#include <QString>

struct _XDisplay;
union _XEvent;

namespace lab {

struct Method;

/// The small window of an input method: it takes no focus, stays above the others, and its colour tells
/// whether the method listens (red), recognises (blue) or waits (grey).
class MethodWindow
{
public:
    enum class Colour { Waiting, Listening, Recognising };

    /// Shows it in the screen's lower right corner. The connection must outlive this object.
    MethodWindow(_XDisplay *display, const Method &method);
    ~MethodWindow();
    MethodWindow(const MethodWindow &) = delete;
    MethodWindow &operator=(const MethodWindow &) = delete;

    void show(Colour colour);
    /// Takes an event of the connection; true when the window has been asked to close.
    bool isCloseRequest(_XEvent &event);

private:
    unsigned long atom(const char *name) const;
    void setAtoms(const char *property, const char *value) const;

    _XDisplay *m_display;
    unsigned long m_window = 0;
};

} // namespace lab
