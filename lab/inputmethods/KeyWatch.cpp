#include "inputmethods/KeyWatch.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput2.h>
#include <X11/keysym.h>

namespace lab {

namespace {

bool refused = false;

int noteRefusal(Display *, XErrorEvent *)
{
    refused = true;
    return 0;
}

} // namespace

KeyWatch::KeyWatch(Display *display, Handler handler)
    : m_display(display)
    , m_handler(std::move(handler))
{
}

bool KeyWatch::watch(unsigned keysym)
{
    m_keycode = XKeysymToKeycode(m_display, keysym);
    if (m_keycode == 0) {
        return false;
    }
    m_raw = IsModifierKey(keysym);
    if (m_raw) {
        return watchRaw();
    }
    XkbSetDetectableAutoRepeat(m_display, True, nullptr);
    refused = false;
    XErrorHandler before = XSetErrorHandler(noteRefusal);
    // Not with any modifier at all: window managers have chords of the same keys.
    for (const unsigned locks : {0U, unsigned(LockMask), unsigned(Mod2Mask), unsigned(LockMask | Mod2Mask)}) {
        XGrabKey(m_display, int(m_keycode), locks, DefaultRootWindow(m_display), False, GrabModeAsync,
                 GrabModeAsync);
    }
    XSync(m_display, False);
    XSetErrorHandler(before);
    return !refused;
}

bool KeyWatch::watchRaw()
{
    int event = 0, error = 0, major = 2, minor = 2;
    if (!XQueryExtension(m_display, "XInputExtension", &m_xi, &event, &error) ||
        XIQueryVersion(m_display, &major, &minor) != Success) {
        return false;
    }
    unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
    XISetMask(bits, XI_RawKeyPress);
    XISetMask(bits, XI_RawKeyRelease);
    XIEventMask mask{XIAllMasterDevices, sizeof bits, bits};
    const bool selected = XISelectEvents(m_display, DefaultRootWindow(m_display), &mask, 1) == Success;
    XFlush(m_display);
    return selected;
}

void KeyWatch::key(unsigned keycode, bool press, qint64 ms)
{
    if (keycode != m_keycode) {
        if (press) {
            m_handler.otherKey();
        }
        return;
    }
    press ? m_handler.down(ms) : m_handler.up(ms);
}

bool KeyWatch::take(XEvent &event)
{
    if (!m_raw && (event.type == KeyPress || event.type == KeyRelease)) {
        if (event.xkey.send_event == False) {
            key(event.xkey.keycode, event.type == KeyPress, qint64(event.xkey.time));
        }
        return true;
    }
    if (!m_raw || event.type != GenericEvent || event.xcookie.extension != m_xi ||
        !XGetEventData(m_display, &event.xcookie)) {
        return false;
    }
    const auto *raw = static_cast<const XIRawEvent *>(event.xcookie.data);
    key(unsigned(raw->detail), event.xcookie.evtype == XI_RawKeyPress, qint64(raw->time));
    XFreeEventData(m_display, &event.xcookie);
    return true;
}

} // namespace lab
