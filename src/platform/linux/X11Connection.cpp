#include "platform/linux/X11Connection.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace mevo {

namespace {

// Xlib's own handler ends the program; windows of other programs vanish at any time.
int ignoreError(Display *, XErrorEvent *)
{
    return 0;
}

} // namespace

X11Connection::X11Connection()
{
    XInitThreads();
    m_display = XOpenDisplay(nullptr);
    XSetErrorHandler(ignoreError);
}

X11Connection::~X11Connection()
{
    if (m_display != nullptr) {
        XCloseDisplay(m_display);
    }
}

void X11Connection::discardEvents() const
{
    while (XPending(m_display) > 0) {
        XEvent event;
        XNextEvent(m_display, &event);
        if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);
        }
    }
}

unsigned long X11Connection::root() const
{
    return DefaultRootWindow(m_display);
}

unsigned long X11Connection::atom(const char *name) const
{
    return XInternAtom(m_display, name, False);
}

bool X11Connection::hasProperty(unsigned long window, unsigned long property) const
{
    Atom type = None;
    int format = 0;
    unsigned long items = 0, rest = 0;
    unsigned char *data = nullptr;
    const bool answered = XGetWindowProperty(m_display, window, property, 0, 0, False, AnyPropertyType, &type,
                                             &format, &items, &rest, &data) == Success;
    if (data != nullptr) {
        XFree(data);
    }
    return answered && type != None;
}

unsigned long X11Connection::firstItem(unsigned long window, unsigned long property) const
{
    Atom type = None;
    int format = 0;
    unsigned long items = 0, rest = 0, value = 0;
    unsigned char *data = nullptr;
    if (XGetWindowProperty(m_display, window, property, 0, 1, False, AnyPropertyType, &type, &format, &items,
                           &rest, &data) == Success &&
        data != nullptr) {
        if (format == 32 && items > 0) {
            value = *reinterpret_cast<unsigned long *>(data);
        }
        XFree(data);
    }
    return value;
}

QString X11Connection::text(unsigned long window, const char *property) const
{
    Atom type = None;
    int format = 0;
    unsigned long items = 0, rest = 0;
    unsigned char *data = nullptr;
    QString value;
    if (XGetWindowProperty(m_display, window, atom(property), 0, 1024, False, AnyPropertyType, &type, &format,
                           &items, &rest, &data) == Success &&
        data != nullptr) {
        if (format == 8) {
            const auto *bytes = reinterpret_cast<const char *>(data);
            value = type == XA_STRING ? QString::fromLatin1(bytes, int(items))
                                      : QString::fromUtf8(bytes, int(items));
        }
        XFree(data);
    }
    return value;
}

bool X11Connection::exists(unsigned long window) const
{
    XWindowAttributes attributes;
    return window != 0 && XGetWindowAttributes(m_display, window, &attributes) != 0;
}

bool X11Connection::isViewable(unsigned long window) const
{
    XWindowAttributes attributes;
    return window != 0 && XGetWindowAttributes(m_display, window, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

unsigned long X11Connection::topLevel(unsigned long window) const
{
    const Atom state = atom("WM_STATE");
    while (window > 1 && window != root()) {
        if (hasProperty(window, state)) {
            return window;
        }
        Window top = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        if (XQueryTree(m_display, window, &top, &parent, &children, &count) == 0) {
            return 0;
        }
        if (children != nullptr) {
            XFree(children);
        }
        if (parent == top) {
            return window;
        }
        window = parent;
    }
    return 0;
}

unsigned long X11Connection::focus() const
{
    discardEvents();
    Window window = 0;
    int revert = 0;
    XGetInputFocus(m_display, &window, &revert);
    return window > 1 ? window : 0; // None and PointerRoot are no windows
}

bool X11Connection::isPlaceholder(unsigned long window) const
{
    const unsigned long top = topLevel(window);
    XWindowAttributes attributes;
    if (top == 0 || hasProperty(top, atom("WM_STATE")) ||
        XGetWindowAttributes(m_display, top, &attributes) == 0) {
        return false;
    }
    const int screen = DefaultScreen(m_display);
    return attributes.x + attributes.width <= 0 || attributes.y + attributes.height <= 0 ||
           attributes.x >= DisplayWidth(m_display, screen) ||
           attributes.y >= DisplayHeight(m_display, screen);
}

bool X11Connection::isDesktop(unsigned long window) const
{
    const unsigned long top = topLevel(window);
    return top != 0 && firstItem(top, atom("_NET_WM_WINDOW_TYPE")) == atom("_NET_WM_WINDOW_TYPE_DESKTOP");
}

unsigned long X11Connection::keyboardWindow() const
{
    discardEvents();
    Window window = 0;
    int revert = 0;
    XGetInputFocus(m_display, &window, &revert);
    if (window != PointerRoot && window != root()) {
        return window;
    }
    Window top = 0, under = 0;
    int x = 0, y = 0, insideX = 0, insideY = 0;
    unsigned mask = 0;
    XQueryPointer(m_display, root(), &top, &under, &x, &y, &insideX, &insideY, &mask);
    return under;
}

} // namespace mevo
