#pragma once

#include "platform/WindowSystem.h"

class QImage;

namespace mevo {

/// A window of ours that shows one picture while it is moved in many small steps. The display server paints
/// the parts that come onto the screen from that picture, and the toolkit hears of none of the steps: on its
/// own it would be woken three times for each, to learn where the window stands and to paint a strip of it.
class X11StillWindow
{
public:
    /// Holds the window until release(). `look` is what it shows, in native pixels. False, with nothing done,
    /// where that cannot be: without Qt's X11 extras or on a screen of another kind than true colour.
    bool hold(WindowId window, const QImage &look);
    /// The toolkit hears of the window again, and paints it whole once.
    void release();
    bool isHeld(WindowId window) const { return window != 0 && window == m_window; }

private:
    WindowId m_window = 0;
    unsigned m_eventMask = 0; ///< of the toolkit
};

} // namespace mevo
