#include "platform/linux/X11SecondKeyboard.h"

#include <QByteArray>
#include <QDebug>

#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
// The protocol header has a member of this name.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <vector>

namespace mevo {

namespace {

constexpr int places = 8; // for programs of ours at one time

QByteArray nameOf(int place)
{
    return "mevoinput" + (place == 0 ? QByteArray() : ' ' + QByteArray::number(place));
}

/// Whoever has a keyboard owns this; the server drops what a program that is gone has owned.
Atom selectionOf(Display *display, int place)
{
    return XInternAtom(display, ("_MEVO_KEYBOARD_" + QByteArray::number(place)).constData(), False);
}

bool isOwned(Display *display, int place)
{
    return XGetSelectionOwner(display, selectionOf(display, place)) != None;
}

bool hasExtension(Display *display)
{
    int major = 2, minor = 2;
    return XIQueryVersion(display, &major, &minor) == Success;
}

/// The device of that name, 0 when there is none.
int deviceCalled(Display *display, const QByteArray &name)
{
    int count = 0, found = 0;
    XIDeviceInfo *devices = XIQueryDevice(display, XIAllDevices, &count);
    for (int i = 0; i < count; ++i) {
        found = name == devices[i].name ? devices[i].deviceid : found;
    }
    if (devices != nullptr) {
        XIFreeDeviceInfo(devices);
    }
    return found;
}

void removeWithPointer(Display *display, int pointer)
{
    XIRemoveMasterInfo remove{};
    remove.type = XIRemoveMaster;
    remove.deviceid = pointer;
    remove.return_mode = XIFloating;
    XIChangeHierarchy(display, reinterpret_cast<XIAnyHierarchyChangeInfo *>(&remove), 1);
    XSync(display, False);
}

} // namespace

X11SecondKeyboard::X11SecondKeyboard(Display *display)
    : m_display(display)
{
    if (!hasExtension(display)) {
        return;
    }
    m_owner = XCreateSimpleWindow(display, DefaultRootWindow(display), -9, -9, 1, 1, 0, 0, 0);
    XGrabServer(display); // so that no other one of us takes the same place
    int place = 0;
    while (place < places && isOwned(display, place)) {
        ++place;
    }
    XSetSelectionOwner(display, selectionOf(display, place), m_owner, CurrentTime);
    QByteArray name = nameOf(place);
    if (deviceCalled(display, name + " pointer") == 0) {
        XIAddMasterInfo add{};
        add.type = XIAddMaster;
        add.name = name.data();
        add.send_core = True;
        add.enable = True;
        XIChangeHierarchy(display, reinterpret_cast<XIAnyHierarchyChangeInfo *>(&add), 1);
    }
    XUngrabServer(display);
    XSync(display, False);
    m_master = deviceCalled(display, name + " keyboard");
    m_xtest = deviceCalled(display, name + " XTEST keyboard");
    m_pointer = deviceCalled(display, name + " pointer");
    if (m_xtest != 0) {
        m_device = XOpenDevice(display, static_cast<XID>(m_xtest));
    }
    if (m_pointer != 0) {
        // Its pointer would be seen, and crossed by windows, in the middle of the screen.
        XIWarpPointer(display, m_pointer, None, DefaultRootWindow(display), 0, 0, 0, 0, 99999, 99999);
    }
}

X11SecondKeyboard::~X11SecondKeyboard()
{
    if (m_device != nullptr) {
        XCloseDevice(m_display, static_cast<XDevice *>(m_device));
    }
    if (m_pointer != 0) {
        removeWithPointer(m_display, m_pointer);
    }
    if (m_owner != 0) {
        XDestroyWindow(m_display, m_owner);
    }
}

void X11SecondKeyboard::removeLeft(Display *display)
{
    if (!hasExtension(display)) {
        return;
    }
    XGrabServer(display);
    for (int place = 0; place < places; ++place) {
        const int pointer = isOwned(display, place) ? 0 : deviceCalled(display, nameOf(place) + " pointer");
        if (pointer != 0) {
            removeWithPointer(display, pointer);
            qInfo() << "Typing: removed the second keyboard that an earlier run had left";
        }
    }
    XUngrabServer(display);
    XFlush(display);
}

bool X11SecondKeyboard::setFocus(unsigned long window)
{
    // A refusal is an error that nobody hears of, and the focus stays where it was.
    XISetFocus(m_display, m_master, window, CurrentTime);
    Window focused = None;
    return XIGetFocus(m_display, m_master, &focused) == Success && focused == window;
}

void X11SecondKeyboard::key(unsigned keycode, bool down)
{
    XTestFakeDeviceKeyEvent(m_display, static_cast<XDevice *>(m_device), keycode, down ? True : False,
                            nullptr, 0, CurrentTime);
}

void X11SecondKeyboard::setGroups(int count)
{
    if (count <= m_groups) {
        return;
    }
    m_groups = count;
    // The server counts the groups of the key that has most.
    constexpr xcb_keycode_t keycode = 255;
    const auto groups = static_cast<uint8_t>(count);
    const std::vector<uint32_t> symbols(groups, XK_a);
    std::vector<unsigned char> key{0, 0, 0, 0, groups, 1, groups, 0};
    const auto *first = reinterpret_cast<const unsigned char *>(symbols.data());
    key.insert(key.end(), first, first + 4 * symbols.size());
    xcb_connection_t *xcb = XGetXCBConnection(m_display);
    XFlush(m_display);
    for (const int device : {m_master, m_xtest}) {
        xcb_xkb_set_map(xcb, static_cast<xcb_xkb_device_spec_t>(device), XCB_XKB_MAP_PART_KEY_SYMS, 0, 8,
                        keycode, 0, 0, keycode, 1, groups, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                        key.data());
    }
}

} // namespace mevo
