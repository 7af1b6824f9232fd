#include "platform/linux/X11Poster.h"

#include <QDebug>
#include <QElapsedTimer>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <poll.h>

#include <chrono>
#include <cstring>
#include <thread>

namespace mevo {

namespace {

constexpr int pingTimeoutMs = 2000;
constexpr int drainMs = 40;      ///< before keys are bound anew, where the target answers no ping
constexpr int lastDrainMs = 150; ///< before they are unbound
constexpr int focusSettleMs = 5;
const char keyboardName[] = "mevoinput";

void pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

} // namespace

/// A second master keyboard, whose focus is ours to set: real key events reach a window that the user's
/// own keyboard has left.
struct X11Poster::SecondKeyboard
{
    explicit SecondKeyboard(Display *display_)
        : display(display_)
    {
        int major = 2, minor = 2;
        if (XIQueryVersion(display, &major, &minor) != Success) {
            return;
        }
        find();
        if (master == 0) {
            XIAddMasterInfo add{};
            QByteArray name(keyboardName);
            add.type = XIAddMaster;
            add.name = name.data();
            add.send_core = True;
            add.enable = True;
            XIChangeHierarchy(display, reinterpret_cast<XIAnyHierarchyChangeInfo *>(&add), 1);
            XSync(display, False);
            find();
        }
        if (xtest != 0) {
            device = XOpenDevice(display, static_cast<XID>(xtest));
        }
        if (pointer != 0) {
            XIWarpPointer(display, pointer, None, DefaultRootWindow(display), 0, 0, 0, 0, 99999, 99999);
        }
    }
    ~SecondKeyboard()
    {
        if (device != nullptr) {
            XCloseDevice(display, device);
        }
        if (pointer != 0) {
            XIRemoveMasterInfo remove{};
            remove.type = XIRemoveMaster;
            remove.deviceid = pointer;
            remove.return_mode = XIFloating;
            XIChangeHierarchy(display, reinterpret_cast<XIAnyHierarchyChangeInfo *>(&remove), 1);
            XSync(display, False);
        }
    }
    SecondKeyboard(const SecondKeyboard &) = delete;
    SecondKeyboard &operator=(const SecondKeyboard &) = delete;

    void find()
    {
        int count = 0;
        XIDeviceInfo *devices = XIQueryDevice(display, XIAllDevices, &count);
        const QByteArray base(keyboardName);
        for (int i = 0; i < count; ++i) {
            const QByteArray name(devices[i].name);
            if (name == base + " keyboard") {
                master = devices[i].deviceid;
            } else if (name == base + " XTEST keyboard") {
                xtest = devices[i].deviceid;
            } else if (name == base + " pointer") {
                pointer = devices[i].deviceid;
            }
        }
        if (devices != nullptr) {
            XIFreeDeviceInfo(devices);
        }
    }

    Display *display;
    int master = 0, xtest = 0, pointer = 0;
    XDevice *device = nullptr;
};

X11Poster::X11Poster()
{
    Display *display = m_connection.display();
    int event = 0, error = 0, major = 0, minor = 0, opcode = 0;
    if (display == nullptr || XTestQueryExtension(display, &event, &error, &major, &minor) == False ||
        XkbQueryExtension(display, &opcode, &event, &error, &major, &minor) == False) {
        qWarning() << "Typing: this display lets no keys be injected";
        return;
    }
    XTestGrabControl(display, True);
    m_keys = std::make_unique<X11ScratchKeys>(m_connection);
    m_slots = std::make_unique<ScratchSlots>(m_keys->count());
    m_usable = m_keys->count() > 0;
    m_returnKey = XKeysymToKeycode(display, XK_Return);
    m_tabKey = XKeysymToKeycode(display, XK_Tab);
}

X11Poster::~X11Poster()
{
    m_second.reset();
    m_keys.reset();
}

PostResult X11Poster::post(WindowId window, const QString &text)
{
    PostResult result;
    if (!m_usable || !m_connection.exists(window)) {
        return result;
    }
    const unsigned long top = m_connection.topLevel(window);
    const Atom pingAtom = m_connection.atom("_NET_WM_PING");
    bool answersPing = false;
    Atom *protocols = nullptr;
    int count = 0;
    if (top != 0 && XGetWMProtocols(m_connection.display(), top, &protocols, &count) != 0) {
        for (int i = 0; i < count; ++i) {
            answersPing = answersPing || protocols[i] == pingAtom;
        }
        XFree(protocols);
    }

    answersPing = answersPing && m_silent.count(top) == 0;

    PostingPlan plan(text, *m_slots);
    bool whole = true;
    bool first = true;
    while (!plan.atEnd()) {
        const PostBatch batch = plan.next();
        if (batch.strokes.empty() && batch.rebind.empty()) {
            whole = false;
            break;
        }
        if (!batch.rebind.empty()) {
            if (!first) {
                awaitTranslated(top, answersPing, drainMs);
            }
            m_keys->bind(batch.rebind);
        }
        if (!sendFocused(window, batch) && !sendBySecondKeyboard(window, batch)) {
            whole = false;
            break;
        }
        first = false;
        if (!batch.strokes.empty()) {
            result.posted = batch.strokes.back().end;
        }
    }
    if (!first) {
        awaitTranslated(top, answersPing, lastDrainMs);
    }
    m_slots->clear();
    m_keys->release();
    m_connection.discardEvents();
    result.complete = whole && m_connection.exists(window);
    if (result.complete) {
        result.posted = text.size();
    }
    return result;
}

bool X11Poster::awaitTranslated(unsigned long topLevel, bool &answersPing, int milliseconds)
{
    if (answersPing) {
        answersPing = ping(topLevel);
        if (answersPing) {
            m_answering.insert(topLevel);
        } else if (m_answering.count(topLevel) == 0) {
            m_silent.insert(topLevel); // promises answers and gives none: not waited for again
        }
    }
    if (!answersPing) {
        pause(milliseconds);
    }
    return answersPing;
}

bool X11Poster::ping(unsigned long topLevel)
{
    Display *display = m_connection.display();
    const long serial = 0x4D450000L + (++m_pingSerial & 0xffff);
    // The answer comes to the root window, from GTK with the mask SubstructureNotify and from Qt with
    // StructureNotify; outside the wait nothing that happens there is of interest.
    XSelectInput(display, m_connection.root(), SubstructureNotifyMask | StructureNotifyMask);
    const auto answered = awaitPong(topLevel, serial);
    XSelectInput(display, m_connection.root(), NoEventMask);
    return answered;
}

bool X11Poster::awaitPong(unsigned long topLevel, long serial)
{
    Display *display = m_connection.display();
    const Atom protocols = m_connection.atom("WM_PROTOCOLS");
    const Atom pingAtom = m_connection.atom("_NET_WM_PING");
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = topLevel;
    event.xclient.message_type = protocols;
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(pingAtom);
    event.xclient.data.l[1] = serial;
    event.xclient.data.l[2] = static_cast<long>(topLevel);
    XSendEvent(display, topLevel, False, NoEventMask, &event);
    XFlush(display);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < pingTimeoutMs) {
        while (XPending(display) > 0) {
            XNextEvent(display, &event);
            if (event.type == MappingNotify) {
                XRefreshKeyboardMapping(&event.xmapping);
            } else if (event.type == ClientMessage && event.xclient.message_type == protocols &&
                       static_cast<Atom>(event.xclient.data.l[0]) == pingAtom &&
                       (event.xclient.data.l[1] & 0xffffffffL) == serial) {
                return true;
            }
        }
        if (!m_connection.exists(topLevel)) {
            return false;
        }
        pollfd wait{ConnectionNumber(display), POLLIN, 0};
        poll(&wait, 1, 5);
    }
    return false;
}

bool X11Poster::sendFocused(WindowId window, const PostBatch &batch)
{
    // Under the grab nobody can move the focus between the look and the keys.
    Display *display = m_connection.display();
    XGrabServer(display);
    const bool focused = m_connection.focus() == window;
    if (focused) {
        const std::vector<int> held = liftModifiers();
        strike(batch, nullptr);
        putBackModifiers(held);
    }
    XUngrabServer(display);
    XSync(display, False);
    return focused;
}

bool X11Poster::sendBySecondKeyboard(WindowId window, const PostBatch &batch)
{
    if (!m_connection.exists(window)) {
        return false;
    }
    Display *display = m_connection.display();
    if (!m_second) {
        m_second = std::make_unique<SecondKeyboard>(display);
    }
    if (m_second->device == nullptr) {
        return false;
    }
    XISetFocus(display, m_second->master, window, CurrentTime);
    XSync(display, False);
    pause(focusSettleMs);
    strike(batch, m_second->device);
    XSync(display, False);
    return m_connection.exists(window);
}

int X11Poster::keycodeOf(const PostStroke &stroke) const
{
    return stroke.slot == PostStroke::Return ? m_returnKey
           : stroke.slot == PostStroke::Tab  ? m_tabKey
                                             : m_keys->keycode(stroke.slot);
}

void X11Poster::strike(const PostBatch &batch, void *device)
{
    Display *display = m_connection.display();
    for (const PostStroke &stroke : batch.strokes) {
        const auto keycode = static_cast<unsigned>(keycodeOf(stroke));
        for (const Bool down : {True, False}) {
            if (device != nullptr) {
                XTestFakeDeviceKeyEvent(display, static_cast<XDevice *>(device), keycode, down, nullptr, 0,
                                        CurrentTime);
            } else {
                XTestFakeKeyEvent(display, keycode, down, CurrentTime);
            }
        }
    }
}

std::vector<int> X11Poster::liftModifiers()
{
    Display *display = m_connection.display();
    char keys[32] = {};
    XQueryKeymap(display, keys);
    std::vector<int> held;
    XModifierKeymap *map = XGetModifierMapping(display);
    if (map == nullptr) {
        return held;
    }
    for (int i = 0; i < 8 * map->max_keypermod; ++i) {
        const int keycode = map->modifiermap[i];
        if (keycode != 0 && (keys[keycode / 8] >> (keycode % 8) & 1) != 0) {
            XTestFakeKeyEvent(display, static_cast<unsigned>(keycode), False, CurrentTime);
            held.push_back(keycode);
        }
    }
    XFreeModifiermap(map);
    return held;
}

void X11Poster::putBackModifiers(const std::vector<int> &keycodes)
{
    for (const int keycode : keycodes) {
        XTestFakeKeyEvent(m_connection.display(), static_cast<unsigned>(keycode), True, CurrentTime);
    }
}

} // namespace mevo
