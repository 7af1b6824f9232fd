#include "platform/linux/X11ScratchKeys.h"

#include "platform/linux/X11Connection.h"

#include <QByteArray>
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
#include <memory>
#include <numeric>

namespace mevo {

namespace {

constexpr int lowestUsableKeycode = 9; // some programs drop 8, which no keyboard sends

constexpr unsigned maxGroups = 4;

constexpr int maxMarks = 8; // of programs at one time, and of those that have left keys bound

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

X11ScratchKeys::Mark X11ScratchKeys::markOf(int index) const
{
    const QByteArray end = index == 0 ? QByteArray() : '_' + QByteArray::number(index);
    return {m_connection.atom(QByteArray("_MEVO_SCRATCH_KEYCODES" + end).constData()),
            m_connection.atom(QByteArray("_MEVO_SCRATCH_OWNER" + end).constData())};
}

bool X11ScratchKeys::isOwned(const Mark &mark) const
{
    // The server drops the selection of a dead owner by itself.
    return XGetSelectionOwner(m_connection.display(), mark.selection) != None;
}

std::vector<int> X11ScratchKeys::keysOf(const Mark &mark) const
{
    std::vector<int> keys;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    if (XGetWindowProperty(m_connection.display(), m_connection.root(), mark.property, 0, 300, False,
                           XA_CARDINAL, &type, &format, &count, &rest, &data) == Success &&
        data != nullptr) {
        const auto *items = reinterpret_cast<const unsigned long *>(data);
        for (unsigned long i = 0; i < count && format == 32; ++i) {
            keys.push_back(static_cast<int>(items[i] & 0xff));
        }
        XFree(data);
    }
    return keys;
}

X11ScratchKeys::Mark X11ScratchKeys::freeMark() const
{
    for (int i = 0; i < maxMarks; ++i) {
        const Mark mark = markOf(i);
        if (!isOwned(mark) && !m_connection.hasProperty(m_connection.root(), mark.property)) {
            return mark;
        }
    }
    return markOf(maxMarks - 1);
}

void X11ScratchKeys::recover()
{
    std::vector<int> left;
    std::vector<Mark> marks;
    for (int i = 0; i < maxMarks; ++i) {
        const Mark mark = markOf(i);
        if (!isOwned(mark)) {
            const std::vector<int> keys = keysOf(mark);
            left.insert(left.end(), keys.begin(), keys.end());
            marks.push_back(mark);
        }
    }
    if (!left.empty()) {
        m_keycodes = left;
        m_symbols.assign(m_keycodes.size(), 0);
        const ServerGrab grab(m_connection.display());
        setMap(allKeys());
        qInfo() << "Typing: unbound" << left.size() << "keys that an earlier run had left bound";
    }
    for (const Mark &mark : marks) {
        XDeleteProperty(m_connection.display(), m_connection.root(), mark.property);
    }
    XSync(m_connection.display(), False);
}

void X11ScratchKeys::mark(const std::vector<int> &keycodes)
{
    if (keycodes == m_marked) {
        return;
    }
    Display *display = m_connection.display();
    if (!keycodes.empty()) {
        const std::vector<unsigned long> items(keycodes.begin(), keycodes.end());
        const ServerGrab grab(display); // so that no other one of us takes the same mark
        if (m_marked.empty()) {
            m_mark = freeMark();
            XSetSelectionOwner(display, m_mark.selection, m_owner, CurrentTime);
        }
        XChangeProperty(display, m_connection.root(), m_mark.property, XA_CARDINAL, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(items.data()),
                        static_cast<int>(items.size()));
    } else {
        XDeleteProperty(display, m_connection.root(), m_mark.property);
        XSetSelectionOwner(display, m_mark.selection, None, CurrentTime);
    }
    m_marked = keycodes;
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
    mark(m_keycodes);
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
    for (const ScratchSlots::Binding &binding : bindings) {
        m_symbols[static_cast<std::size_t>(binding.slot)] = binding.symbol;
    }
    setMap(keys);
    if (areAsLeft(keys)) {
        return true;
    }
    unbind(keys);
    return false;
}

void X11ScratchKeys::unbind(const std::vector<int> &keys)
{
    for (const int key : keys) {
        for (auto slot = static_cast<std::size_t>(key); slot < m_symbols.size(); slot += m_keycodes.size()) {
            m_symbols[slot] = 0;
        }
    }
    setMap(keys);
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

std::vector<KeySymbol> X11ScratchKeys::foundOn(const XkbDescRec &map, int key) const
{
    std::vector<KeySymbol> found;
    for (int i = 0; i < XkbKeyNumSyms(&map, keycode(key)); ++i) {
        found.push_back(static_cast<KeySymbol>(XkbKeySymsPtr(&map, keycode(key))[i]));
    }
    if (std::all_of(found.begin(), found.end(), [](KeySymbol symbol) { return symbol == 0; })) {
        found.clear(); // a map may give a free key places for symbols
    }
    return found;
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
                        return foundOn(*map, key) == expectedOn(key);
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
    if (m_marked.empty()) {
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
    std::vector<int> keptKeycodes;
    {
        const ServerGrab grab(m_connection.display());
        const KeyMap map = readMap(m_connection.display());
        std::vector<int> ours;
        for (const int key : allKeys()) {
            const std::vector<KeySymbol> found = map ? foundOn(*map, key) : std::vector<KeySymbol>();
            const bool others = !found.empty() && found != expectedOn(key);
            bool keeps = false, unbinds = false;
            for (auto slot = static_cast<std::size_t>(key); slot < m_symbols.size();
                 slot += m_keycodes.size()) {
                const bool keep =
                    !others && std::find(kept.begin(), kept.end(), static_cast<int>(slot)) != kept.end();
                keeps = keeps || (keep && m_symbols[slot] != 0);
                unbinds = unbinds || (!keep && !others && m_symbols[slot] != 0);
                m_symbols[slot] = keep ? m_symbols[slot] : 0;
            }
            if (keeps) {
                keptKeycodes.push_back(keycode(key));
            }
            if (unbinds) {
                ours.push_back(key);
            }
        }
        if (!ours.empty()) {
            setMap(ours);
        }
    }
    mark(keptKeycodes);
    XSync(m_connection.display(), False);
}

void X11ScratchKeys::setMap(const std::vector<int> &keys)
{
    // One request for the whole range: the keys between ours are written back as they were read, under
    // the grab so that no other change gets lost in between.
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
