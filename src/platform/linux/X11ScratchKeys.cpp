#include "platform/linux/X11ScratchKeys.h"

#include "platform/linux/X11Connection.h"

#include <QDebug>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
// The protocol header has a member of this name.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <cstdlib>
#include <map>

namespace mevo {

namespace {

constexpr int lowestUsableKeycode = 9; // some programs drop 8, which no keyboard sends

/// One key of the map as the protocol carries it: 8 bytes, then its symbols.
void appendKey(std::vector<unsigned char> &out, KeySymbol symbol)
{
    const auto byte = [symbol](int shift) { return static_cast<unsigned char>(symbol >> shift); };
    if (symbol == 0) {
        out.insert(out.end(), {0, 0, 0, 0, 0, 0, 0, 0});
    } else {
        out.insert(out.end(), {0, 0, 0, 0, 1, 1, 1, 0, byte(0), byte(8), byte(16), byte(24)});
    }
}

} // namespace

X11ScratchKeys::X11ScratchKeys(X11Connection &connection)
    : m_connection(connection)
{
    Display *display = m_connection.display();
    m_owner = XCreateSimpleWindow(display, m_connection.root(), -9, -9, 1, 1, 0, 0, 0);
    recover();
    findFree();
}

X11ScratchKeys::~X11ScratchKeys()
{
    release();
    XDestroyWindow(m_connection.display(), m_owner);
}

void X11ScratchKeys::findFree()
{
    m_keycodes.clear();
    m_symbols.clear();
    XkbDescPtr map = XkbGetMap(m_connection.display(), XkbAllMapComponentsMask, XkbUseCoreKbd);
    if (map == nullptr) {
        return;
    }
    for (int key = std::max<int>(map->min_key_code, lowestUsableKeycode); key <= map->max_key_code; ++key) {
        bool empty = map->map->modmap == nullptr || map->map->modmap[key] == 0;
        for (int group = 0; group < XkbKeyNumGroups(map, key) && empty; ++group) {
            for (int level = 0; level < XkbKeyGroupWidth(map, key, group) && empty; ++level) {
                empty = XkbKeySymEntry(map, key, level, group) == NoSymbol;
            }
        }
        if (empty) {
            m_keycodes.push_back(key);
        }
    }
    m_symbols.assign(m_keycodes.size(), 0);
    XkbFreeKeyboard(map, 0, True);
}

void X11ScratchKeys::recover()
{
    Display *display = m_connection.display();
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    const Atom property = m_connection.atom("_MEVO_SCRATCH_KEYCODES");
    if (XGetWindowProperty(display, m_connection.root(), property, 0, 300, False, XA_CARDINAL, &type, &format,
                           &count, &rest, &data) != Success ||
        data == nullptr) {
        return;
    }
    // The server drops the selection of a dead owner by itself.
    if (XGetSelectionOwner(display, m_connection.atom("_MEVO_SCRATCH_OWNER")) == None && format == 32) {
        const auto *keys = reinterpret_cast<const unsigned long *>(data);
        KeySym none = NoSymbol;
        for (unsigned long i = 0; i < count; ++i) {
            XChangeKeyboardMapping(display, static_cast<int>(keys[i]), 1, &none, 1);
        }
        XDeleteProperty(display, m_connection.root(), property);
        XSync(display, False);
        qInfo() << "Typing: unbound" << count << "keys that an earlier run had left bound";
    }
    XFree(data);
}

void X11ScratchKeys::mark(bool on)
{
    if (on == m_marked) {
        return;
    }
    m_marked = on;
    Display *display = m_connection.display();
    const Atom property = m_connection.atom("_MEVO_SCRATCH_KEYCODES");
    const Atom selection = m_connection.atom("_MEVO_SCRATCH_OWNER");
    if (on) {
        std::vector<unsigned long> keys(m_keycodes.begin(), m_keycodes.end());
        XSetSelectionOwner(display, selection, m_owner, CurrentTime);
        XChangeProperty(display, m_connection.root(), property, XA_CARDINAL, 32, PropModeReplace,
                        reinterpret_cast<unsigned char *>(keys.data()), static_cast<int>(keys.size()));
    } else {
        XDeleteProperty(display, m_connection.root(), property);
        XSetSelectionOwner(display, selection, None, CurrentTime);
    }
}

void X11ScratchKeys::bind(const std::vector<ScratchSlots::Binding> &bindings)
{
    if (bindings.empty()) {
        return;
    }
    mark(true);
    std::vector<std::pair<int, KeySymbol>> symbols;
    for (const ScratchSlots::Binding &binding : bindings) {
        symbols.emplace_back(keycode(binding.slot), binding.symbol);
        m_symbols[static_cast<std::size_t>(binding.slot)] = binding.symbol;
    }
    setMap(symbols);
}

bool X11ScratchKeys::checkMap()
{
    XkbDescPtr map = XkbGetMap(m_connection.display(), XkbAllClientInfoMask, XkbUseCoreKbd);
    if (map == nullptr) {
        return true;
    }
    bool whole = true;
    for (std::size_t slot = 0; slot < m_keycodes.size(); ++slot) {
        const int key = m_keycodes[slot];
        const bool empty = XkbKeyNumSyms(map, key) == 0 || XkbKeySymsPtr(map, key)[0] == NoSymbol;
        const bool asBound = m_symbols[slot] == 0 ? empty
                                                  : XkbKeyNumSyms(map, key) == 1 &&
                                                        XkbKeySymsPtr(map, key)[0] == m_symbols[slot];
        if (!asBound) {
            m_symbols[slot] = 0; // somebody else's now
            whole = false;
        }
    }
    XkbFreeKeyboard(map, 0, True);
    if (!whole) {
        qInfo() << "Typing: the keyboard map has been changed";
        release();
        findFree();
    }
    return whole;
}

void X11ScratchKeys::release()
{
    std::vector<std::pair<int, KeySymbol>> symbols;
    for (std::size_t slot = 0; slot < m_keycodes.size(); ++slot) {
        if (m_symbols[slot] != 0) {
            symbols.emplace_back(m_keycodes[slot], 0);
            m_symbols[slot] = 0;
        }
    }
    if (!symbols.empty()) {
        setMap(symbols);
    }
    mark(false);
    XSync(m_connection.display(), False);
}

void X11ScratchKeys::setMap(const std::vector<std::pair<int, KeySymbol>> &symbols)
{
    // One request for the whole range: the keys between ours are written back as they were read, with the
    // server grabbed so that no other change gets lost in between.
    std::map<int, KeySymbol> wanted(symbols.begin(), symbols.end());
    const auto first = static_cast<xcb_keycode_t>(wanted.begin()->first);
    const auto last = static_cast<xcb_keycode_t>(wanted.rbegin()->first);
    Display *display = m_connection.display();
    XGrabServer(display);
    XFlush(display);
    xcb_connection_t *xcb = XGetXCBConnection(display);
    const auto device = static_cast<xcb_xkb_device_spec_t>(XkbUseCoreKbd);
    auto *reply = xcb_xkb_get_map_reply(xcb,
                                        xcb_xkb_get_map(xcb, device, 0, XCB_XKB_MAP_PART_KEY_SYMS, 0, 0,
                                                        first, static_cast<uint8_t>(last - first + 1), 0, 0,
                                                        0, 0, 0, 0, 0, 0, 0, 0, 0),
                                        nullptr);
    if (reply != nullptr) {
        const auto *key = static_cast<const unsigned char *>(xcb_xkb_get_map_map(reply));
        std::vector<unsigned char> out;
        unsigned total = 0;
        for (int i = 0; i < reply->nKeySyms; ++i) {
            const unsigned count = key[6] | unsigned(key[7]) << 8;
            const std::size_t size = 8 + 4 * count;
            const auto found = wanted.find(reply->firstKeySym + i);
            if (found == wanted.end()) {
                out.insert(out.end(), key, key + size);
                total += count;
            } else {
                appendKey(out, found->second);
                total += found->second != 0 ? 1 : 0;
            }
            key += size;
        }
        xcb_xkb_set_map(xcb, device, XCB_XKB_MAP_PART_KEY_SYMS, 0, reply->minKeyCode, reply->maxKeyCode, 0, 0,
                        reply->firstKeySym, reply->nKeySyms, static_cast<uint16_t>(total), 0, 0, 0, 0, 0, 0,
                        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, out.data());
        free(reply);
    }
    XUngrabServer(display);
    XSync(display, False);
}

} // namespace mevo
