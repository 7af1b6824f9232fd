#include "platform/linux/X11Ping.h"

#include "platform/linux/X11Connection.h"

#include <QElapsedTimer>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <poll.h>

namespace mevo {

X11Ping::X11Ping(X11Connection &connection)
    : m_connection(connection)
{
}

bool X11Ping::isOffered(const X11Connection &connection, unsigned long topLevel)
{
    Atom *protocols = nullptr;
    int count = 0;
    bool offered = false;
    if (topLevel != 0 && XGetWMProtocols(connection.display(), topLevel, &protocols, &count) != 0) {
        for (int i = 0; i < count; ++i) {
            offered = offered || protocols[i] == connection.atom("_NET_WM_PING");
        }
        XFree(protocols);
    }
    return offered;
}

void X11Ping::listen(bool on)
{
    // The answer comes to the root window, from GTK with the mask SubstructureNotify and from Qt with
    // StructureNotify.
    XSelectInput(m_connection.display(), m_connection.root(),
                 on ? SubstructureNotifyMask | StructureNotifyMask : NoEventMask);
}

void X11Ping::send(unsigned long topLevel)
{
    Display *display = m_connection.display();
    m_topLevel = topLevel;
    m_serial = 0x4D450000L + ((m_serial + 1) & 0xffff);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = topLevel;
    event.xclient.message_type = m_connection.atom("WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(m_connection.atom("_NET_WM_PING"));
    event.xclient.data.l[1] = m_serial;
    event.xclient.data.l[2] = static_cast<long>(topLevel);
    XSendEvent(display, topLevel, False, NoEventMask, &event);
    XFlush(display);
}

X11Ping::Answer X11Ping::await(int limitMs, const std::function<bool()> &givesUp)
{
    QElapsedTimer clock;
    clock.start();
    while (true) {
        // Before the look: on a loaded machine we may not have run since the answer came.
        const bool last = clock.elapsed() >= limitMs || (givesUp && givesUp());
        if (hasAnswered()) {
            return Answer::Given;
        }
        if (!m_connection.exists(m_topLevel)) {
            return Answer::Gone;
        }
        if (last) {
            return Answer::Silence;
        }
        if (XEventsQueued(m_connection.display(), QueuedAlready) > 0) {
            continue; // the look at the window has read it
        }
        pollfd wait{ConnectionNumber(m_connection.display()), POLLIN, 0};
        poll(&wait, 1, 5);
    }
}

bool X11Ping::hasAnswered()
{
    Display *display = m_connection.display();
    const Atom protocols = m_connection.atom("WM_PROTOCOLS");
    const Atom pingAtom = m_connection.atom("_NET_WM_PING");
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);
        } else if (event.type == ClientMessage && event.xclient.message_type == protocols &&
                   static_cast<Atom>(event.xclient.data.l[0]) == pingAtom &&
                   (event.xclient.data.l[1] & 0xffffffffL) == m_serial) {
            return true;
        }
    }
    return false;
}

} // namespace mevo
