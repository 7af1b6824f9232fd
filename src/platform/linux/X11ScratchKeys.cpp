#include "platform/linux/X11ScratchKeys.h"

#include "platform/linux/X11Connection.h"

#include <QDebug>

#include <X11/XKBlib.h>
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
#include <memory>
#include <numeric>

namespace mevo {

namespace {

constexpr int lowestUsableKeycode = 9; // some programs drop 8, which no keyboard sends

constexpr unsigned maxGroups = 4;

/// Nobody else changes anything while it stands. Not to be nested: the inner one's end is the end of both.
class ServerGrab
{
public:
    explicit ServerGrab(Display *display)
        : m_display(display)
    {
        XGrabServer(display);
    }
    ~ServerGrab()
    {
        XUngrabServer(m_display);
        XFlush(m_display);
    }
    ServerGrab(const ServerGrab &) = delete;
    ServerGrab &operator=(const ServerGrab &) = delete;

private:
    Display *m_display;
};

struct FreeMap
{
    void operator()(XkbDescPtr map) const { XkbFreeKeyboard(map, 0, True); }
};
using KeyMap = std::unique_ptr<XkbDescRec, FreeMap>;

/// What its clients know of the user's keyboard; none when the server does not say.
KeyMap readMap(Display *display)
{
    return KeyMap(XkbGetMap(display, XkbAllClientInfoMask, XkbUseCoreKbd));
}

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

/// What a key yields; nothing when it is free.
std::vector<KeySymbol> symbolsOn(const XkbDescRec &map, int keycode)
{
    std::vector<KeySymbol> symbols;
    for (int i = 0; i < XkbKeyNumSyms(&map, keycode); ++i) {
        symbols.push_back(static_cast<KeySymbol>(XkbKeySymsPtr(&map, keycode)[i]));
    }
    if (std::all_of(symbols.begin(), symbols.end(), [](KeySymbol symbol) { return symbol == 0; })) {
        symbols.clear(); // a map may give a free key places for symbols
    }
    return symbols;
}

} // namespace

X11ScratchKeys::X11ScratchKeys(X11Connection &connection)
    : m_connection(connection)
    , m_mark(connection)
{
    recover();
    findFree();
}

X11ScratchKeys::~X11ScratchKeys()
{
    release(m_keptAtEnd);
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
    const ServerGrab grab(m_connection.display());
    const KeyMap map = readMap(m_connection.display());
    if (!map) {
        return;
    }
    m_keycodes.clear();
    for (const X11ScratchMark::Key &key : m_mark.left()) {
        if (key.keycode >= map->min_key_code && key.keycode <= map->max_key_code &&
            symbolsOn(*map, key.keycode) == key.symbols) {
            m_keycodes.push_back(key.keycode); // else somebody else has bound it since
        }
    }
    if (!m_keycodes.empty()) {
        m_symbols.assign(m_keycodes.size(), 0);
        setMap(allKeys());
        qInfo() << "Typing: unbound" << m_keycodes.size() << "keys that an earlier run had left bound";
    }
    m_mark.removeLeft();
}

std::vector<int> X11ScratchKeys::allKeys() const
{
    std::vector<int> keys(m_keycodes.size());
    std::iota(keys.begin(), keys.end(), 0);
    return keys;
}

bool X11ScratchKeys::bind(const std::vector<ScratchSlots::Binding> &bindings)
{
    if (bindings.empty()) {
        return true;
    }
    std::vector<int> keys;
    for (const ScratchSlots::Binding &binding : bindings) {
        keys.push_back(binding.slot % keyCount());
    }
    bool asLeft = false;
    {
        const ServerGrab grab(m_connection.display());
        asLeft = areAsLeft(keys);
        if (asLeft && writeKeys(keys, bindings)) {
            return true;
        }
    }
    if (asLeft) {
        qWarning() << "Typing: the server does not bind the free keys as it should";
        m_useStates = false;
    } else {
        qInfo() << "Typing: the keyboard map has been changed";
    }
    release();
    findFree();
    return false;
}

bool X11ScratchKeys::writeKeys(const std::vector<int> &keys,
                               const std::vector<ScratchSlots::Binding> &bindings)
{
    std::vector<KeySymbol> symbols = m_symbols;
    for (const ScratchSlots::Binding &binding : bindings) {
        symbols[static_cast<std::size_t>(binding.slot)] = binding.symbol;
    }
    rebind(keys, symbols);
    if (areAsLeft(keys)) {
        return true;
    }
    for (std::size_t slot = 0; slot < symbols.size(); ++slot) {
        const int key = static_cast<int>(slot) % keyCount();
        symbols[slot] = std::find(keys.begin(), keys.end(), key) != keys.end() ? 0 : symbols[slot];
    }
    rebind(keys, symbols);
    return false;
}

void X11ScratchKeys::rebind(const std::vector<int> &keys, std::vector<KeySymbol> symbols)
{
    std::vector<X11ScratchMark::Key> marked = boundKeys();
    m_symbols = std::move(symbols);
    for (X11ScratchMark::Key &key : boundKeys()) {
        if (std::find(marked.begin(), marked.end(), key) == marked.end()) {
            marked.push_back(std::move(key));
        }
    }
    m_mark.write(marked); // whenever a crash comes, a key is as the mark has it
    setMap(keys);
}

std::vector<X11ScratchMark::Key> X11ScratchKeys::boundKeys() const
{
    std::vector<X11ScratchMark::Key> bound;
    for (const int key : allKeys()) {
        std::vector<KeySymbol> symbols = expectedOn(key);
        if (!symbols.empty()) {
            bound.push_back({keycode(key), std::move(symbols)});
        }
    }
    return bound;
}

std::vector<KeySymbol> X11ScratchKeys::expectedOn(int key) const
{
    std::vector<unsigned char> bound;
    appendKey(bound, symbolsOf(static_cast<std::size_t>(key)));
    std::vector<KeySymbol> expected((bound.size() - 8) / 4);
    for (std::size_t i = 0; i < bound.size() - 8; ++i) {
        expected[i / 4] |= KeySymbol(bound[8 + i]) << (8 * (i % 4));
    }
    return expected;
}

bool X11ScratchKeys::typeStands(const XkbDescRec &map) const
{
    return m_type.mask == 0 || (m_type.index < map.map->num_types && map.map->modmap != nullptr &&
                                levelsChosenBy(map.map->types[m_type.index], m_type.mask) == m_type.second &&
                                choosesSymbolsAlone(map, m_type.mask));
}

bool X11ScratchKeys::areAsLeft(const std::vector<int> &keys) const
{
    const KeyMap map = readMap(m_connection.display());
    return !map || (typeStands(*map) && std::all_of(keys.begin(), keys.end(), [&](int key) {
                        return symbolsOn(*map, keycode(key)) == expectedOn(key);
                    }));
}

bool X11ScratchKeys::yield(const std::vector<int> &some) const
{
    std::vector<int> keys;
    for (const int slot : some) {
        if (slot >= 0) {
            keys.push_back(slot % keyCount());
        }
    }
    return keys.empty() || areAsLeft(keys);
}

bool X11ScratchKeys::checkMap()
{
    if (boundKeys().empty()) {
        findFree(); // layouts may have come or gone
        return false;
    }
    if (areAsLeft(allKeys())) {
        return true;
    }
    qInfo() << "Typing: the keyboard map has been changed";
    release();
    findFree();
    return false;
}

void X11ScratchKeys::release(const std::vector<int> &kept)
{
    const ServerGrab grab(m_connection.display());
    const KeyMap map = readMap(m_connection.display());
    std::vector<KeySymbol> symbols(m_symbols.size(), 0);
    for (const int slot : kept) {
        if (slot >= 0 && slot < count()) {
            symbols[static_cast<std::size_t>(slot)] = m_symbols[static_cast<std::size_t>(slot)];
        }
    }
    std::vector<int> ours;
    for (const int key : allKeys()) {
        const std::vector<KeySymbol> found = map ? symbolsOn(*map, keycode(key)) : std::vector<KeySymbol>();
        const bool others = !found.empty() && found != expectedOn(key);
        bool unbinds = false;
        for (auto slot = static_cast<std::size_t>(key); slot < symbols.size(); slot += m_keycodes.size()) {
            symbols[slot] = others ? 0 : symbols[slot];
            unbinds = unbinds || (!others && symbols[slot] != m_symbols[slot]);
        }
        if (unbinds) {
            ours.push_back(key);
        }
    }
    rebind(ours, std::move(symbols));
    m_mark.write(boundKeys());
    XSync(m_connection.display(), False);
}

void X11ScratchKeys::setMap(const std::vector<int> &keys)
{
    // One request for the whole range: the keys between ours are written back as they were read, under
    // the grab so that no other change gets lost in between.
    if (keys.empty()) {
        return;
    }
    std::map<int, std::vector<KeySymbol>> wanted;
    for (const int key : keys) {
        wanted[keycode(key)] = symbolsOf(static_cast<std::size_t>(key));
    }
    const auto first = static_cast<xcb_keycode_t>(wanted.begin()->first);
    const auto last = static_cast<xcb_keycode_t>(wanted.rbegin()->first);
    Display *display = m_connection.display();
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
    XSync(display, False);
}

} // namespace mevo
