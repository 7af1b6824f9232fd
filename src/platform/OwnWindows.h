#pragma once

#include "platform/WindowSystem.h"

#include <QPoint>
#include <QRect>

#include <functional>
#include <optional>
#include <vector>

class QImage;
class QObject;

namespace mevo {

/// What the program asks of the desktop for the windows that stand beside whatever the user works in: the
/// bar, the talk window, the strip. `window` is a native id of ours; an unknown one does nothing.
class OwnWindows
{
public:
    virtual ~OwnWindows() = default;

    /// Makes a window never take the keyboard focus. Where a window manager makes it the active one all the
    /// same, the window that was active before gets that back.
    virtual void neverTakeFocus(WindowId window) = 0;
    /// Gives the keyboard to a window of ours that the user wants to type into, until it is told again never
    /// to take it.
    virtual void takeFocus(WindowId window) = 0;
    /// Keeps a window out of task bars, pagers and window switchers. Window managers forget it when a window
    /// is hidden: to be said before each showing.
    virtual void keepOutOfLists(WindowId window) = 0;
    /// Where a window really stands, in device-independent pixels as QWidget::move() takes them: what the
    /// toolkit believes may have been asked while the window manager was still moving frames about. Null when
    /// it is gone.
    virtual std::optional<QPoint> place(WindowId window) = 0;
    /// Asks for another place, in the same pixels.
    virtual void moveTo(WindowId window, const QPoint &place) = 0;

    /// From now on a window is moved step by step. What the display server tells of each step is not passed
    /// on to the toolkit, which would ask back each time and wait for the answer. `look`, in native pixels,
    /// is what the window shows meanwhile, so that it need not be painted at each step either; null where it
    /// changes.
    virtual void beginSlide(WindowId window, const QImage &look) = 0;
    /// To be said before the last step, of which the toolkit hears again.
    virtual void endSlide(WindowId window) = 0;

    /// Whether something blends windows over each other, so that what is transparent is seen through.
    virtual bool isComposited() = 0;
    /// Calls `handler` on the GUI thread each time that a compositor comes or goes, as long as `context`
    /// lives.
    virtual void whenCompositingChanges(QObject *context, std::function<void()> handler) = 0;
    /// Cuts a window to these rectangles of native pixels; with none it is whole again.
    virtual void setShape(WindowId window, const std::vector<QRect> &rectangles) = 0;
};

} // namespace mevo
