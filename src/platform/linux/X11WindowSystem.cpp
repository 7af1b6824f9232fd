#include "platform/linux/X11WindowSystem.h"

#include "platform/linux/ScreenPixels.h"
#include "platform/linux/X11Poster.h"

#include <QDebug>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <iterator>

namespace mevo {

/// Lives on the typing thread.
class X11WindowSystem::Worker : public QObject
{
public:
    bool start(const ScreenLock &lock)
    {
        m_poster = std::make_unique<X11Poster>(lock);
        m_rest = std::make_unique<QTimer>();
        m_rest->setSingleShot(true);
        connect(m_rest.get(), &QTimer::timeout, this, [this] {
            if (!m_poster->rest()) {
                m_rest->start(X11Poster::restAfterMs);
            }
        });
        return m_poster->isUsable();
    }
    /// From any thread: texts that have not been begun stay untyped, and the one under way is waited for no
    /// longer than WaitEnd::lastMs.
    void endSoon() { m_poster->waits().endSoon(); }
    void finish()
    {
        m_rest.reset();
        m_poster.reset();
    }
    PostResult post(WindowId window, const QString &text)
    {
        if (m_poster->waits().end().hasBegun()) {
            qWarning() << "Typing:" << text.size() << "characters are not typed any more, the program ends";
            return {};
        }
        const PostResult result = m_poster->post(window, text);
        m_rest->start(X11Poster::restAfterMs);
        return result;
    }

    PostStop ask(WindowId window, int limitMs) { return m_poster->ask(window, limitMs); }

private:
    std::unique_ptr<QTimer> m_rest;
    std::unique_ptr<X11Poster> m_poster;
};

X11WindowSystem::X11WindowSystem()
    : m_worker(new Worker)
{
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("typing"));
    m_thread.start();
    QMetaObject::invokeMethod(
        m_worker, [this] { m_canPost = m_worker->start(m_lock); }, Qt::BlockingQueuedConnection);
}

X11WindowSystem::~X11WindowSystem()
{
    // Whoever ends has kept what is still on its way: nobody is told any more what becomes of it.
    m_worker->endSoon();
    QMetaObject::invokeMethod(
        m_worker, [this] { m_worker->finish(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
    delete m_worker;
}

void X11WindowSystem::postText(WindowId window, const QString &text, PostDone done)
{
    QPointer<X11WindowSystem> self(this);
    QMetaObject::invokeMethod(
        m_worker,
        [this, self, window, text, done = std::move(done)] {
            const PostResult result = m_worker->post(window, text);
            if (done) {
                QMetaObject::invokeMethod(
                    this,
                    [self, done, result] {
                        if (!self.isNull()) {
                            done(result);
                        }
                    },
                    Qt::QueuedConnection);
            }
        },
        Qt::QueuedConnection);
}

void X11WindowSystem::askWindow(WindowId window, int limitMs, std::function<void(PostStop)> done)
{
    QPointer<X11WindowSystem> self(this);
    QMetaObject::invokeMethod(
        m_worker,
        [this, self, window, limitMs, done = std::move(done)] {
            const PostStop stop = m_worker->ask(window, limitMs);
            QMetaObject::invokeMethod(
                this,
                [self, done, stop] {
                    if (!self.isNull()) {
                        done(stop);
                    }
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

WindowId X11WindowSystem::foregroundWindow()
{
    if (!m_connection) {
        return 0;
    }
    if (!hasWindowManager()) {
        return m_connection.topLevel(m_connection.keyboardWindow()); // nobody is there who would tell
    }
    return m_connection.firstItem(m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"));
}

WindowId X11WindowSystem::focusedWindow()
{
    const WindowId focused = m_connection ? m_connection.focus() : 0;
    return takesNoText(focused) ? 0 : focused;
}

bool X11WindowSystem::keysGoNowhere()
{
    // Windows that are not of X have the keyboard unseen.
    if (!m_connection || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        return false;
    }
    const WindowId window = m_connection.keyboardWindow();
    return window == 0 || takesNoText(window);
}

bool X11WindowSystem::takesNoText(WindowId window) const
{
    return window != 0 && (m_connection.isPlaceholder(window) || m_connection.isDesktop(window));
}

bool X11WindowSystem::isWindow(WindowId window)
{
    return m_connection && m_connection.exists(window);
}

bool X11WindowSystem::sendToRoot(WindowId window, const char *message, long first, long second)
{
    if (!isWindow(window)) {
        return false;
    }
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = m_connection.atom(message);
    event.xclient.format = 32;
    event.xclient.data.l[0] = first;
    event.xclient.data.l[1] = second;
    XSendEvent(m_connection.display(), m_connection.root(), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XFlush(m_connection.display());
    return true;
}

bool X11WindowSystem::hasWindowManager() const
{
    return m_connection.hasProperty(m_connection.root(), m_connection.atom("_NET_SUPPORTING_WM_CHECK"));
}

bool X11WindowSystem::activate(WindowId window)
{
    if (m_connection && !hasWindowManager()) {
        if (!isWindow(window)) {
            return false;
        }
        XRaiseWindow(m_connection.display(), window); // nobody is there who would do it for us
        XSetInputFocus(m_connection.display(), window, RevertToParent, CurrentTime);
        XFlush(m_connection.display());
        return true;
    }
    constexpr long fromPager = 2; // the user's own wish, which window managers honour
    return sendToRoot(m_connection ? m_connection.topLevel(window) : 0, "_NET_ACTIVE_WINDOW", fromPager,
                      CurrentTime);
}

bool X11WindowSystem::closeWindow(WindowId window)
{
    const unsigned long top = isWindow(window) ? m_connection.topLevel(window) : 0;
    if (top != 0 && hasWindowManager() && m_connection.hasProperty(top, m_connection.atom("WM_STATE"))) {
        return sendToRoot(top, "_NET_CLOSE_WINDOW", CurrentTime, 1);
    }
    return top != 0 && askToClose(top);
}

/// Says itself what a window manager would, to a window that none looks after.
bool X11WindowSystem::askToClose(WindowId window)
{
    const Atom wanted = m_connection.atom("WM_DELETE_WINDOW");
    Atom *protocols = nullptr;
    int count = 0;
    if (XGetWMProtocols(m_connection.display(), window, &protocols, &count) == 0) {
        return false;
    }
    const bool understands = std::find(protocols, protocols + count, wanted) != protocols + count;
    XFree(protocols);
    if (understands) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = m_connection.atom("WM_PROTOCOLS");
        event.xclient.format = 32;
        event.xclient.data.l[0] = long(wanted);
        XSendEvent(m_connection.display(), window, False, NoEventMask, &event);
        XFlush(m_connection.display());
    }
    return understands;
}

/// The windows that a window manager looks after, oldest first, and behind them those on the screen that none
/// does, as a window may ask for, or as all are where there is none.
std::vector<WindowId> X11WindowSystem::topLevelWindows()
{
    std::vector<WindowId> windows;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    if (XGetWindowProperty(m_connection.display(), m_connection.root(), m_connection.atom("_NET_CLIENT_LIST"),
                           0, 4096, False, XA_WINDOW, &type, &format, &count, &rest, &data) == Success &&
        data != nullptr) {
        const auto *managed = reinterpret_cast<const unsigned long *>(data);
        windows.assign(managed, managed + count);
        XFree(data);
    }
    Window root = 0, parent = 0, *children = nullptr;
    unsigned childCount = 0;
    if (XQueryTree(m_connection.display(), m_connection.root(), &root, &parent, &children, &childCount) !=
            0 &&
        children != nullptr) {
        std::copy_if(children, children + childCount, std::back_inserter(windows),
                     [this](Window window) { return m_connection.isViewable(window); });
        XFree(children);
    }
    return windows;
}

WindowId X11WindowSystem::findWindow(const QString &wantedClass, const QString &title)
{
    if (!m_connection) {
        return 0;
    }
    for (const WindowId window : topLevelWindows()) {
        const bool classFits =
            wantedClass.isEmpty() || windowClass(window).split(QLatin1Char('.')).contains(wantedClass);
        if (classFits && (title.isEmpty() || windowTitle(window) == title)) {
            return window;
        }
    }
    return 0;
}

QString X11WindowSystem::windowClass(WindowId window)
{
    if (!isWindow(window)) {
        return {};
    }
    XClassHint hint{};
    const unsigned long top = m_connection.topLevel(window);
    if (top == 0 || XGetClassHint(m_connection.display(), top, &hint) == 0) {
        return {};
    }
    const QString text =
        QString::fromLatin1(hint.res_name) + QLatin1Char('.') + QString::fromLatin1(hint.res_class);
    XFree(hint.res_name);
    XFree(hint.res_class);
    return text;
}

QString X11WindowSystem::windowTitle(WindowId window)
{
    if (!isWindow(window)) {
        return {};
    }
    const unsigned long top = m_connection.topLevel(window);
    const QString title = m_connection.text(top, "_NET_WM_NAME");
    return title.isEmpty() ? m_connection.text(top, "WM_NAME") : title;
}

std::optional<QRect> X11WindowSystem::caretRectangle()
{
    const std::optional<QRect> caret = m_caret.rectangle();
    if (!caret) {
        return caret;
    }
    const QPoint corner = toDesktopPixels(caret->topLeft());
    return QRect(corner, toDesktopPixels(caret->bottomRight()));
}

void X11WindowSystem::stackBelow(WindowId window, WindowId other)
{
    if (!isWindow(other)) {
        return;
    }
    // The sibling that counts is the frame that the window manager has put around the other one.
    ::Window frame = other;
    ::Window root = 0;
    for (::Window parent = other; parent != root;) {
        ::Window *children = nullptr;
        unsigned count = 0;
        frame = parent;
        if (XQueryTree(m_connection.display(), frame, &root, &parent, &children, &count) == 0) {
            return;
        }
        XFree(children);
    }
    XWindowChanges changes{};
    changes.sibling = frame;
    changes.stack_mode = Below;
    XConfigureWindow(m_connection.display(), window, CWSibling | CWStackMode, &changes);
    XFlush(m_connection.display());
}

} // namespace mevo
