#include "platform/linux/X11ScratchKeys.h"

#include "platform/linux/X11Connection.h"

#include <QDebug>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>
// The protocol header has a member of this name.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <cstdlib>
#include <map>
#include <numeric>

namespace mevo {

namespace {

constexpr int lowestUsableKeycode = 9; // some programs drop 8, which no keyboard sends

constexpr unsigned maxGroups = 4;

/// Whether a modifier does nothing but choose among the symbols of keys.
bool choosesSymbolsAlone(const XkbDescRec &map, unsigned modifier)
{
    bool found = false;
    for (int key = map.min_key_code; key <= map.max_key_code; ++key) {
        if ((map.map->modmap[key] & modifier) == 0) {
            continue;
        }
        for (int i = 0; i < XkbKeyNumSyms(&map, key); ++i) {
            const KeySym symbol = XkbKeySymsPtr(&map, key)[i];
            if (symbol != NoSymbol && symbol != XK_ISO_Level3_Shift && symbol != XK_Mode_switch) {
                return false;
            }
            found = found || symbol != NoSymbol;
        }
    }
    return found;
}

int levelOf(const XkbKeyTypeRec &type, unsigned modifiers)
{
    for (int i = 0; i < type.map_count; ++i) {
        if (type.map[i].active != 0 && type.map[i].mods.mask == modifiers) {
            return type.map[i].level;
        }
    }
    return 0;
}

/// By level, whether `modifier` chooses it; empty where some level comes with it and without.
std::vector<bool> levelsChosenBy(const XkbKeyTypeRec &type, unsigned modifier)
{
    std::vector<bool> with(type.num_levels), without(type.num_levels);
    for (unsigned modifiers = 0; modifiers < 256; ++modifiers) {
        if ((modifiers & ~unsigned(type.mods.mask)) == 0) {
            const auto level = static_cast<std::size_t>(levelOf(type, modifiers));
            if (level >= with.size()) {
                return {};
            }
            ((modifiers & modifier) != 0 ? with : without)[level] = true;
        }
    }
    for (std::size_t level = 0; level < with.size(); ++level) {
        if (with[level] && without[level]) {
            return {};
        }
    }
    return with;
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
    release(m_keptAtEnd);
    XDestroyWindow(m_connection.display(), m_owner);
}

void X11ScratchKeys::findFree()
{
    m_keycodes.clear();
    m_states.assign(1, {});
    m_type = {};
    m_symbols.clear();
    XkbDescPtr map = XkbGetMap(m_connection.display(), XkbAllMapComponentsMask, XkbUseCoreKbd);
    if (map == nullptr) {
        return;
    }
    for (int key = std::max<int>(map->min_key_code, lowestUsableKeycode); key <= map->max_key_code; ++key) {
        bool empty = map->map->modmap == nullptr || map->map->modmap[key] == 0;
        for (int i = 0; i < XkbKeyNumSyms(map, key) && empty; ++i) {
            empty = XkbKeySymsPtr(map, key)[i] == NoSymbol;
        }
        if (empty) {
            m_keycodes.push_back(key);
        }
    }
    if (m_useStates && map->map->modmap != nullptr) {
        findStates(*map);
    }
    m_symbols.assign(static_cast<std::size_t>(count()), 0);
    XkbFreeKeyboard(map, 0, True);
}

void X11ScratchKeys::findStates(const XkbDescRec &map)
{
    constexpr unsigned level3 = Mod5Mask; // where every map of the usual collection has it
    for (int i = XkbLastRequiredType + 1; i < map.map->num_types && choosesSymbolsAlone(map, level3); ++i) {
        const XkbKeyTypeRec &type = map.map->types[i];
        const std::vector<bool> second = levelsChosenBy(type, level3);
        const bool smaller = m_type.mask == 0 || second.size() < m_type.second.size();
        if (smaller && std::find(second.begin(), second.end(), true) != second.end()) {
            m_type = {i, level3, second};
        }
    }
    // A user with several layouts has the others as groups: what he types meanwhile would come from another.
    unsigned groups = maxGroups;
    for (int key = map.min_key_code; key <= map.max_key_code; ++key) {
        groups = XkbKeyNumGroups(&map, key) > 1 ? 1 : groups;
    }
    m_states.clear();
    for (unsigned group = 0; group < groups; ++group) {
        m_states.push_back({group, false});
        if (m_type.mask != 0) {
            m_states.push_back({group, true});
        }
    }
}

std::vector<KeySymbol> X11ScratchKeys::symbolsOf(std::size_t key) const
{
    std::vector<KeySymbol> symbols;
    for (std::size_t slot = key; slot < m_symbols.size(); slot += m_keycodes.size()) {
        symbols.push_back(m_symbols[slot]);
    }
    return symbols;
}

/// Appends a key of the map as the protocol carries it: 8 bytes, then its symbols, group by group.
void X11ScratchKeys::appendKey(std::vector<unsigned char> &out, const std::vector<KeySymbol> &symbols) const
{
    unsigned groups = 0;
    bool level3 = false;
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        if (symbols[i] != 0) {
            groups = std::max(groups, m_states[i].group + 1);
            level3 = level3 || m_states[i].level3;
        }
    }
    const std::size_t width = level3 ? m_type.second.size() : groups != 0 ? 1 : 0;
    for (unsigned group = 0; group < maxGroups; ++group) {
        out.push_back(static_cast<unsigned char>(level3 && group < groups ? m_type.index : XkbOneLevelIndex));
    }
    const std::size_t count = groups * width;
    out.insert(out.end(), {static_cast<unsigned char>(groups), static_cast<unsigned char>(width),
                           static_cast<unsigned char>(count), static_cast<unsigned char>(count >> 8)});
    for (unsigned group = 0; group < groups; ++group) {
        for (std::size_t level = 0; level < width; ++level) {
            const X11KeyState state{group, level3 && m_type.second[level]};
            const auto found = std::find(m_states.begin(), m_states.end(), state);
            const KeySymbol symbol = symbols[static_cast<std::size_t>(found - m_states.begin())];
            for (int shift = 0; shift < 32; shift += 8) {
                out.push_back(static_cast<unsigned char>(symbol >> shift));
            }
        }
    }
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
        std::vector<int> all;
        for (unsigned long i = 0; i < count; ++i) {
            m_keycodes.push_back(static_cast<int>(keys[i] & 0xff));
            all.push_back(static_cast<int>(i));
        }
        m_symbols.assign(m_keycodes.size(), 0);
        if (!all.empty()) {
            setMap(all);
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

bool X11ScratchKeys::bind(const std::vector<ScratchSlots::Binding> &bindings)
{
    if (bindings.empty()) {
        return true;
    }
    mark(true);
    std::vector<int> keys;
    for (const ScratchSlots::Binding &binding : bindings) {
        keys.push_back(binding.slot % keyCount());
        m_symbols[static_cast<std::size_t>(binding.slot)] = binding.symbol;
    }
    setMap(keys);
    if (changedKeys(keys).empty()) {
        return true;
    }
    qWarning() << "Typing: the server does not bind the free keys as it should";
    m_useStates = false;
    release();
    findFree();
    return false;
}

std::vector<std::size_t> X11ScratchKeys::changedKeys(const std::vector<int> &keys) const
{
    std::vector<std::size_t> changed;
    XkbDescPtr map = XkbGetMap(m_connection.display(), XkbAllClientInfoMask, XkbUseCoreKbd);
    if (map == nullptr) {
        return changed;
    }
    for (const int key : keys) {
        std::vector<unsigned char> bound;
        appendKey(bound, symbolsOf(static_cast<std::size_t>(key)));
        std::vector<KeySymbol> expected((bound.size() - 8) / 4);
        for (std::size_t i = 0; i < bound.size() - 8; ++i) {
            expected[i / 4] |= KeySymbol(bound[8 + i]) << (8 * (i % 4));
        }
        std::vector<KeySymbol> found;
        for (int i = 0; i < XkbKeyNumSyms(map, keycode(key)); ++i) {
            found.push_back(static_cast<KeySymbol>(XkbKeySymsPtr(map, keycode(key))[i]));
        }
        if (std::all_of(found.begin(), found.end(), [](KeySymbol symbol) { return symbol == 0; })) {
            found.clear(); // a map may give a free key places for symbols
        }
        if (found != expected) {
            changed.push_back(static_cast<std::size_t>(key));
        }
    }
    XkbFreeKeyboard(map, 0, True);
    return changed;
}

bool X11ScratchKeys::checkMap()
{
    if (!m_marked) {
        findFree(); // layouts may have come or gone
        return false;
    }
    std::vector<int> keys(m_keycodes.size());
    std::iota(keys.begin(), keys.end(), 0);
    const std::vector<std::size_t> changed = changedKeys(keys);
    if (changed.empty()) {
        return true;
    }
    for (const std::size_t key : changed) {
        for (std::size_t slot = key; slot < m_symbols.size(); slot += m_keycodes.size()) {
            m_symbols[slot] = 0; // somebody else's now
        }
    }
    qInfo() << "Typing: the keyboard map has been changed";
    release();
    findFree();
    return false;
}

void X11ScratchKeys::release(const std::vector<int> &kept)
{
    std::vector<int> keys;
    bool keepsAny = false;
    for (std::size_t slot = 0; slot < m_symbols.size(); ++slot) {
        if (m_symbols[slot] == 0) {
            continue;
        }
        if (std::find(kept.begin(), kept.end(), static_cast<int>(slot)) != kept.end()) {
            keepsAny = true;
        } else {
            keys.push_back(static_cast<int>(slot) % keyCount());
            m_symbols[slot] = 0;
        }
    }
    if (!keys.empty()) {
        setMap(keys);
    }
    mark(keepsAny);
    XSync(m_connection.display(), False);
}

void X11ScratchKeys::setMap(const std::vector<int> &keys)
{
    // One request for the whole range: the keys between ours are written back as they were read, with the
    // server grabbed so that no other change gets lost in between.
    std::map<int, std::vector<KeySymbol>> wanted;
    for (const int key : keys) {
        wanted[keycode(key)] = symbolsOf(static_cast<std::size_t>(key));
    }
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
                const std::size_t before = out.size();
                appendKey(out, found->second);
                total += static_cast<unsigned>((out.size() - before - 8) / 4);
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
