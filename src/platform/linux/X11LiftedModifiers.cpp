#include "platform/linux/X11LiftedModifiers.h"

#include <QByteArray>

#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XTest.h>

namespace mevo {

X11LiftedModifiers::X11LiftedModifiers(Display *display)
    : m_display(display)
{
    Keys keys{};
    XQueryKeymap(m_display, keys.data());
    XModifierKeymap *map = XGetModifierMapping(m_display);
    if (map == nullptr) {
        return;
    }
    for (int i = 0; i < 8 * map->max_keypermod; ++i) {
        const int keycode = map->modifiermap[i];
        if (keycode != 0 && isDown(keys, keycode)) {
            m_lifted.push_back(keycode);
        }
    }
    XFreeModifiermap(map);
    if (m_lifted.empty()) {
        return;
    }
    m_byHand = heldByHand();
    for (const int keycode : m_lifted) {
        XTestFakeKeyEvent(m_display, static_cast<unsigned>(keycode), False, CurrentTime);
    }
}

X11LiftedModifiers::~X11LiftedModifiers()
{
    if (m_lifted.empty()) {
        return;
    }
    const Keys now = heldByHand();
    for (const int keycode : m_lifted) {
        if (!isDown(m_byHand, keycode) || isDown(now, keycode)) {
            XTestFakeKeyEvent(m_display, static_cast<unsigned>(keycode), True, CurrentTime);
        }
    }
}

X11LiftedModifiers::Keys X11LiftedModifiers::heldByHand() const
{
    Keys all{};
    int count = 0;
    XDeviceInfo *const devices = XListInputDevices(m_display, &count);
    for (int i = 0; i < count; ++i) {
        if (devices[i].use != IsXExtensionKeyboard || QByteArray(devices[i].name).contains("XTEST")) {
            continue;
        }
        XDevice *const device = XOpenDevice(m_display, devices[i].id);
        XDeviceState *const state = device != nullptr ? XQueryDeviceState(m_display, device) : nullptr;
        const XInputClass *data = state != nullptr ? state->data : nullptr;
        for (int part = 0; state != nullptr && part < state->num_classes; ++part) {
            if (data->c_class == KeyClass) {
                const char *const keys = reinterpret_cast<const XKeyState *>(data)->keys;
                for (std::size_t byte = 0; byte < all.size(); ++byte) {
                    all[byte] = static_cast<char>(all[byte] | keys[byte]);
                }
            }
            data = reinterpret_cast<const XInputClass *>(reinterpret_cast<const char *>(data) + data->length);
        }
        if (state != nullptr) {
            XFreeDeviceState(state);
        }
        if (device != nullptr) {
            XCloseDevice(m_display, device);
        }
    }
    if (devices != nullptr) {
        XFreeDeviceList(devices);
    }
    return all;
}

} // namespace mevo
