#include "platform/linux/X11SecondKeyboard.h"

#include <QByteArray>

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

const char keyboardName[] = "mevoinput";

} // namespace

X11SecondKeyboard::X11SecondKeyboard(Display *display)
    : m_display(display)
{
    int major = 2, minor = 2;
    if (XIQueryVersion(display, &major, &minor) != Success) {
        return;
    }
    find();
    if (m_master == 0) {
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
        XIRemoveMasterInfo remove{};
        remove.type = XIRemoveMaster;
        remove.deviceid = m_pointer;
        remove.return_mode = XIFloating;
        XIChangeHierarchy(m_display, reinterpret_cast<XIAnyHierarchyChangeInfo *>(&remove), 1);
        XSync(m_display, False);
    }
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

void X11SecondKeyboard::find()
{
    int count = 0;
    XIDeviceInfo *devices = XIQueryDevice(m_display, XIAllDevices, &count);
    const QByteArray base(keyboardName);
    for (int i = 0; i < count; ++i) {
        const QByteArray name(devices[i].name);
        if (name == base + " keyboard") {
            m_master = devices[i].deviceid;
        } else if (name == base + " XTEST keyboard") {
            m_xtest = devices[i].deviceid;
        } else if (name == base + " pointer") {
            m_pointer = devices[i].deviceid;
        }
    }
    if (devices != nullptr) {
        XIFreeDeviceInfo(devices);
    }
}

} // namespace mevo
