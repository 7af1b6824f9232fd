#include "platform/linux/X11OwnWindows.h"

#include "platform/linux/ScreenPixels.h"

#include <QCoreApplication>
#include <QDebug>
#include <QImage>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>
#include <X11/extensions/shape.h>

#include <algorithm>

namespace mevo {

namespace {

/// What keeps a window out of the desktop's lists. KDE asks for a word of its own.
constexpr const char *unlistedStates[] = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                                          "_KDE_NET_WM_STATE_SKIP_SWITCHER"};

} // namespace

X11OwnWindows::X11OwnWindows()
{
    if (!m_connection || !m_events) {
        return;
    }
    Display *display = m_events.display();
    m_activeWindow = m_events.atom("_NET_ACTIVE_WINDOW");
    m_compositor = m_events.atom(
        QByteArray("_NET_WM_CM_S").append(QByteArray::number(DefaultScreen(display))).constData());
    XSelectInput(display, m_events.root(), PropertyChangeMask);
    int firstError = 0, firstEvent = 0;
    if (XFixesQueryExtension(display, &firstEvent, &firstError) != 0) {
        m_selectionEvent = firstEvent + XFixesSelectionNotify;
        XFixesSelectSelectionInput(display, m_events.root(), m_compositor,
                                   XFixesSetSelectionOwnerNotifyMask |
                                       XFixesSelectionWindowDestroyNotifyMask |
                                       XFixesSelectionClientCloseNotifyMask);
    }
    m_composited = XGetSelectionOwner(display, m_compositor) != None;
    activeWindowChanged();
    auto *notifier = new QSocketNotifier(ConnectionNumber(display), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &X11OwnWindows::readEvents);
    readEvents(); // what the answers above have brought along wakes no notifier
}

bool X11OwnWindows::isReady(WindowId window) const
{
    if (!m_connection) {
        return false;
    }
    m_connection.discardEvents();
    return m_connection.exists(window);
}

void X11OwnWindows::sendToRoot(WindowId window, const char *message,
                               const std::vector<unsigned long> &data) const
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = m_connection.atom(message);
    event.xclient.format = 32;
    for (std::size_t i = 0; i < data.size(); ++i) {
        event.xclient.data.l[i] = long(data[i]);
    }
    XSendEvent(m_connection.display(), m_connection.root(), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XFlush(m_connection.display());
}

void X11OwnWindows::beginSlide(WindowId window, const QImage &look)
{
    m_still.hold(window, look);
    m_sliding.insert(window);
    QCoreApplication::instance()->installNativeEventFilter(this); // once, however often it is said
}

void X11OwnWindows::endSlide(WindowId window)
{
    m_sliding.remove(window);
    if (m_still.isHeld(window)) {
        m_still.release();
    }
}

bool X11OwnWindows::nativeEventFilter(const QByteArray &type, void *message, long *)
{
    if (m_sliding.isEmpty() || type != "xcb_generic_event_t") {
        return false;
    }
    constexpr int withoutSendFlag = 0x7f;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    return (event->response_type & withoutSendFlag) == XCB_CONFIGURE_NOTIFY &&
           m_sliding.contains(reinterpret_cast<const xcb_configure_notify_event_t *>(event)->window);
}

void X11OwnWindows::neverTakeFocus(WindowId window)
{
    if (!isReady(window)) {
        return;
    }
    m_withoutFocus.insert(window);
    setInputHint(window, false);
}

void X11OwnWindows::takeFocus(WindowId window)
{
    if (!isReady(window)) {
        return;
    }
    m_withoutFocus.remove(window);
    setInputHint(window, true);
    if (m_connection.hasProperty(m_connection.root(), m_connection.atom("_NET_SUPPORTING_WM_CHECK"))) {
        constexpr unsigned long fromPager = 2; // the user's own wish, which window managers honour
        sendToRoot(window, "_NET_ACTIVE_WINDOW", {fromPager, CurrentTime});
    } else {
        XSetInputFocus(m_connection.display(), window, RevertToParent, CurrentTime);
        XFlush(m_connection.display());
    }
}

void X11OwnWindows::setInputHint(WindowId window, bool input) const
{
    XWMHints hints{};
    if (XWMHints *present = XGetWMHints(m_connection.display(), window)) {
        hints = *present;
        XFree(present);
    }
    hints.flags |= InputHint;
    hints.input = input ? True : False;
    XSetWMHints(m_connection.display(), window, &hints);
    XSync(m_connection.display(), False); // before the toolkit's own connection shows the window
}

void X11OwnWindows::keepOutOfLists(WindowId window)
{
    if (!isReady(window)) {
        return;
    }
    Display *display = m_connection.display();
    XWindowAttributes attributes;
    if (XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state != IsUnmapped) {
        constexpr unsigned long add = 1, fromApplication = 1;
        for (const char *state : unlistedStates) {
            sendToRoot(window, "_NET_WM_STATE", {add, m_connection.atom(state), 0, fromApplication});
        }
        return;
    }
    const Atom property = m_connection.atom("_NET_WM_STATE");
    std::vector<unsigned long> states;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    if (XGetWindowProperty(display, window, property, 0, 64, False, XA_ATOM, &type, &format, &count, &rest,
                           &data) == Success &&
        data != nullptr) {
        const auto *present = reinterpret_cast<const unsigned long *>(data);
        states.assign(present, present + count);
        XFree(data);
    }
    for (const char *name : unlistedStates) {
        const unsigned long state = m_connection.atom(name);
        if (std::find(states.begin(), states.end(), state) == states.end()) {
            states.push_back(state);
        }
    }
    XChangeProperty(display, window, property, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(states.data()), int(states.size()));
    XSync(display, False);
}

std::optional<QPoint> X11OwnWindows::place(WindowId window)
{
    int x = 0, y = 0;
    Window child = None;
    if (!isReady(window) || XTranslateCoordinates(m_connection.display(), window, m_connection.root(), 0, 0,
                                                  &x, &y, &child) == 0) {
        return std::nullopt;
    }
    return toDesktopPixels({x, y});
}

void X11OwnWindows::moveTo(WindowId window, const QPoint &place)
{
    if (!isReady(window)) {
        return;
    }
    const QPoint native = toNativePixels(place);
    XMoveWindow(m_connection.display(), window, native.x(), native.y());
    XFlush(m_connection.display());
}

void X11OwnWindows::setShape(WindowId window, const std::vector<QRect> &rectangles)
{
    if (!isReady(window)) {
        return;
    }
    Display *display = m_connection.display();
    if (rectangles.empty()) {
        XShapeCombineMask(display, window, ShapeBounding, 0, 0, None, ShapeSet);
    } else {
        std::vector<XRectangle> native;
        for (const QRect &rectangle : rectangles) {
            native.push_back({short(rectangle.x()), short(rectangle.y()),
                              static_cast<unsigned short>(rectangle.width()),
                              static_cast<unsigned short>(rectangle.height())});
        }
        XShapeCombineRectangles(display, window, ShapeBounding, 0, 0, native.data(), int(native.size()),
                                ShapeSet, Unsorted);
    }
    XSync(display, False);
}

void X11OwnWindows::whenCompositingChanges(QObject *context, std::function<void()> handler)
{
    m_listeners.push_back({context, std::move(handler)});
}

void X11OwnWindows::readEvents()
{
    Display *display = m_events.display();
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == m_selectionEvent) {
            setComposited(reinterpret_cast<const XFixesSelectionNotifyEvent &>(event).owner != None);
        } else if (event.type == PropertyNotify && event.xproperty.atom == m_activeWindow) {
            activeWindowChanged();
        } else if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);
        }
    }
}

void X11OwnWindows::activeWindowChanged()
{
    const WindowId active = m_events.firstItem(m_events.root(), m_activeWindow);
    if (!m_withoutFocus.contains(active)) {
        m_lastActive = active;
        return;
    }
    // Some window managers make a window active by a click alone, whatever it says of the focus.
    if (m_connection.exists(m_lastActive)) {
        constexpr unsigned long fromPager = 2; // the user's own wish, which window managers honour
        sendToRoot(m_lastActive, "_NET_ACTIVE_WINDOW", {fromPager, CurrentTime});
    }
}

void X11OwnWindows::setComposited(bool composited)
{
    if (composited == m_composited) {
        return;
    }
    m_composited = composited;
    qInfo() << "Desktop: windows are" << (composited ? "composited" : "not composited");
    const std::vector<Listener> listeners = m_listeners;
    for (const Listener &listener : listeners) {
        if (!listener.context.isNull()) {
            listener.handler();
        }
    }
}

} // namespace mevo
