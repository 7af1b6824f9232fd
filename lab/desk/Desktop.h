#pragma once

#include <QByteArray>
#include <QPoint>
#include <QRect>
#include <QRegularExpression>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

struct xcb_connection_t;

namespace mevo::lab {

/// Looks at an X display with a window manager, and gives windows the focus there.
class Desktop
{
public:
    using Window = quint32;

    /// The display of DISPLAY; null when there is none (a log line says why).
    static std::unique_ptr<Desktop> open();
    ~Desktop();
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// The windows that the window manager manages, oldest first; without one, the windows on the screen that
    /// would be managed.
    std::vector<Window> clientWindows() const;
    /// A managed window of a process.
    std::optional<Window> windowOfProcess(qint64 processId) const;
    /// A visible window whose title or class matches, managed or not.
    std::optional<Window> findWindow(const QRegularExpression &pattern) const;
    QString title(Window window) const;
    /// Place of a window's upper left corner on the screen.
    QPoint corner(Window window) const;

    /// Its frame-less rectangle on the screen, empty when it is gone.
    QRect rectangle(Window window) const;

    /// The window that has the input focus, 0 when none has.
    Window focusedWindow() const;
    /// Whether the focus is in a window or in one of its children.
    bool hasFocus(Window window) const;
    /// Asks the window manager to raise a window and give it the focus, until it has it; without one does so
    /// itself. False in the end when it never got it.
    bool focus(Window window, int timeoutMs);

    /// Whether some program has all keys for itself, as one with an open menu does.
    bool keyboardIsGrabbed() const;

    /// Writes a picture of the screen, or of what is seen where a window stands; the suffix chooses the
    /// format. False on failure.
    bool screenshot(const QString &file, Window window = 0) const;

private:
    Desktop(xcb_connection_t *connection, int screen);
    quint32 atom(const char *name) const;
    QByteArray property(Window window, quint32 name) const;
    bool hasWindowManager() const;
    std::vector<Window> unmanagedWindows() const;

    xcb_connection_t *m_connection;
    Window m_root = 0;
    quint16 m_width = 0;
    quint16 m_height = 0;
};

} // namespace mevo::lab
