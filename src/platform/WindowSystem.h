#pragma once

#include <QRect>
#include <QString>

#include <functional>
#include <optional>

namespace mevo {

/// A window of any program. 0 is no window.
using WindowId = quint64;

/// Why a text did not go into a window to its end.
enum class PostStop {
    AtEnd,           ///< it did
    NoKeys,          ///< this desktop lets no keys be injected, or leaves none free
    Gone,            ///< the window has been closed
    Hidden,          ///< minimised, or on another desktop
    Hung,            ///< its program has not answered in time
    FocusRefused,    ///< it cannot be given the focus
    FocusLeft,       ///< another window has the focus, and the text could only have gone where that is
    NoField,         ///< it is one of ours, and no field for text has the focus there
    ReceiverGone,    ///< the receiver, which was to strike the keys, has not taken them
    KeyboardGrabbed, ///< another program has taken the keyboard for itself: an open menu, a screen locker
    ScreenLocked,
    KeyboardChanged, ///< somebody has changed the keyboard map while the text was on its way
    NotRead,         ///< the paste key was struck, and nobody has read the clipboard
    Untypable,       ///< the program is known to drop the next character when it comes from a keyboard
};

/// How a text went into a window.
struct PostResult
{
    int posted = 0;        ///< UTF-16 code units of the text that the window was seen to take, from its start
    bool complete = false; ///< all of them did
    PostStop stop = PostStop::AtEnd;
};

/// Windows of any program. For what concerns our own alone see OwnWindows.
class WindowSystem
{
public:
    using PostDone = std::function<void(const PostResult &)>;

    virtual ~WindowSystem() = default;

    /// The top-level window in front, 0 if none.
    virtual WindowId foregroundWindow() = 0;
    /// The window that has the keyboard focus, which may be a child of the one in front; 0 if none, or if it
    /// is the desktop, where text would be nowhere.
    virtual WindowId focusedWindow() = 0;
    /// Whether keys that are struck now surely go into no window. False where that cannot be told.
    virtual bool keysGoNowhere() = 0;
    /// Whether the window still exists.
    virtual bool isWindow(WindowId window) = 0;
    /// Types `text` into `window` character by character, even when the focus has moved elsewhere.
    /// Returns at once. Texts go in the order of the calls; `done` is called once for each, on the
    /// GUI thread. A text that could not go whole is reported with what was seen to arrive; what was under
    /// way to a program that hangs may still arrive when it wakes.
    virtual void postText(WindowId window, const QString &text, PostDone done) = 0;
    /// Asks whether the window's program takes what it has been sent so far. Returns at once; in turn with
    /// the texts `done` is called on the GUI thread: AtEnd when it does or when that cannot be known, Hung
    /// when it has given no sign for `limitMs`.
    virtual void askWindow(WindowId window, int limitMs, std::function<void(PostStop)> done) = 0;
    /// Whether characters can be posted at all on this desktop.
    virtual bool canPostText() const = 0;
    /// Brings the window to the front and gives it the focus. False when it is gone.
    virtual bool activate(WindowId window) = 0;
    /// A top-level window by class and title; an empty text matches any. 0 if none.
    virtual WindowId findWindow(const QString &windowClass, const QString &title) = 0;
    /// Asks the window to close as its close button would. False when it is gone.
    virtual bool closeWindow(WindowId window) = 0;
    /// Class and title of the window, empty when it is gone.
    virtual QString windowClass(WindowId window) = 0;
    virtual QString windowTitle(WindowId window) = 0;
    /// The text caret of the focused window, in device-independent pixels of the desktop as QWidget::move()
    /// takes them, when it can be known.
    virtual std::optional<QRect> caretRectangle() = 0;
    /// Stacks a window of ours that no window manager knows right below another one of ours.
    virtual void stackBelow(WindowId window, WindowId other) = 0;
};

} // namespace mevo
