#include "inputmethods/MethodWindow.h"

#include "inputmethods/MethodTable.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <unistd.h>

namespace lab {

namespace {

constexpr int width = 160, height = 44, margin = 40;
constexpr unsigned long colours[] = {0x808080, 0xd02020, 0x2060d0};

} // namespace

MethodWindow::MethodWindow(Display *display, const Method &method)
    : m_display(display)
{
    const int screen = DefaultScreen(display);
    const int x = DisplayWidth(display, screen) - width - margin;
    const int y = DisplayHeight(display, screen) - height - margin;
    m_window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), x, y, width, height, 0, 0, colours[0]);

    const QByteArray title(method.windowTitle);
    XChangeProperty(display, m_window, atom("_NET_WM_NAME"), atom("UTF8_STRING"), 8, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(title.constData()), title.size());
    QByteArray name(method.windowClass), className(method.windowClass);
    XClassHint hint{name.data(), className.data()};
    XSetClassHint(display, m_window, &hint);
    const long processId = getpid();
    XChangeProperty(display, m_window, atom("_NET_WM_PID"), XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(&processId), 1);
    setAtoms("_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_UTILITY");
    setAtoms("_NET_WM_STATE", "_NET_WM_STATE_ABOVE");
    Atom protocols[] = {atom("WM_DELETE_WINDOW"), atom("_NET_WM_PING")};
    XSetWMProtocols(display, m_window, protocols, 2);
    XWMHints focus{};
    focus.flags = InputHint;
    focus.input = False;
    XSetWMHints(display, m_window, &focus);
    XSizeHints place{};
    place.flags = USPosition | PMinSize | PMaxSize;
    place.min_width = place.max_width = width;
    place.min_height = place.max_height = height;
    XSetWMNormalHints(display, m_window, &place);
    XMapWindow(display, m_window);
    XFlush(display);
}

MethodWindow::~MethodWindow()
{
    XDestroyWindow(m_display, m_window);
    XFlush(m_display);
}

unsigned long MethodWindow::atom(const char *name) const
{
    return XInternAtom(m_display, name, False);
}

void MethodWindow::setAtoms(const char *property, const char *value) const
{
    const Atom atoms[] = {atom(value)};
    XChangeProperty(m_display, m_window, atom(property), XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(atoms), 1);
}

void MethodWindow::show(Colour colour)
{
    XSetWindowBackground(m_display, m_window, colours[int(colour)]);
    XClearWindow(m_display, m_window);
    XFlush(m_display);
}

bool MethodWindow::isCloseRequest(XEvent &event)
{
    if (event.type != ClientMessage || event.xclient.message_type != atom("WM_PROTOCOLS")) {
        return false;
    }
    const auto protocol = Atom(event.xclient.data.l[0]);
    if (protocol == atom("_NET_WM_PING")) {
        const Window root = DefaultRootWindow(m_display);
        event.xclient.window = root;
        XSendEvent(m_display, root, False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
        XFlush(m_display);
        return false;
    }
    return protocol == atom("WM_DELETE_WINDOW");
}

} // namespace lab
