#include "platform/linux/X11ScratchMark.h"

#include "platform/linux/X11Connection.h"

#include <QByteArray>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace mevo {

namespace {

constexpr int places = 8;           // for programs at one time, and for those that have left keys bound
constexpr long longest = 64 * 1024; // items; all keycodes in all states are less

} // namespace

X11ScratchMark::X11ScratchMark(X11Connection &connection)
    : m_connection(connection)
    , m_owner(XCreateSimpleWindow(m_connection.display(), m_connection.root(), -9, -9, 1, 1, 0, 0, 0))
{
}

X11ScratchMark::~X11ScratchMark()
{
    XDestroyWindow(m_connection.display(), m_owner);
}

X11ScratchMark::Place X11ScratchMark::place(int index) const
{
    const QByteArray end = index == 0 ? QByteArray() : '_' + QByteArray::number(index);
    return {m_connection.atom(QByteArray("_MEVO_SCRATCH_KEYS" + end).constData()),
            m_connection.atom(QByteArray("_MEVO_SCRATCH_OWNER" + end).constData())};
}

bool X11ScratchMark::isOwned(const Place &place) const
{
    // The server drops the selection of a dead owner by itself.
    return XGetSelectionOwner(m_connection.display(), place.selection) != None;
}

X11ScratchMark::Place X11ScratchMark::freePlace() const
{
    for (int i = 0; i < places; ++i) {
        const Place free = place(i);
        if (!isOwned(free) && !m_connection.hasProperty(m_connection.root(), free.property)) {
            return free;
        }
    }
    return place(places - 1);
}

void X11ScratchMark::write(const std::vector<Key> &keys)
{
    if (keys == m_written) {
        return;
    }
    Display *display = m_connection.display();
    if (keys.empty()) {
        XDeleteProperty(display, m_connection.root(), m_place.property);
        XSetSelectionOwner(display, m_place.selection, None, CurrentTime);
    } else {
        if (m_written.empty()) {
            m_place = freePlace();
            XSetSelectionOwner(display, m_place.selection, m_owner, CurrentTime);
        }
        std::vector<unsigned long> items; // by key: its code, how many symbols, the symbols
        for (const Key &key : keys) {
            items.push_back(static_cast<unsigned long>(key.keycode));
            items.push_back(key.symbols.size());
            items.insert(items.end(), key.symbols.begin(), key.symbols.end());
        }
        XChangeProperty(display, m_connection.root(), m_place.property, XA_CARDINAL, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(items.data()),
                        static_cast<int>(items.size()));
    }
    m_written = keys;
}

std::vector<X11ScratchMark::Key> X11ScratchMark::read(const Place &place) const
{
    std::vector<Key> keys;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    if (XGetWindowProperty(m_connection.display(), m_connection.root(), place.property, 0, longest, False,
                           XA_CARDINAL, &type, &format, &count, &rest, &data) == Success &&
        data != nullptr) {
        const auto *item = reinterpret_cast<const unsigned long *>(data);
        const unsigned long *const end = item + (format == 32 ? count : 0);
        while (end - item >= 2 && item[1] <= static_cast<unsigned long>(end - item - 2)) {
            Key key{static_cast<int>(item[0] & 0xff), {}};
            key.symbols.assign(item + 2, item + 2 + item[1]);
            item += 2 + item[1];
            keys.push_back(std::move(key));
        }
        XFree(data);
    }
    return keys;
}

std::vector<X11ScratchMark::Key> X11ScratchMark::left() const
{
    std::vector<Key> all;
    for (int i = 0; i < places; ++i) {
        if (!isOwned(place(i))) {
            const std::vector<Key> keys = read(place(i));
            all.insert(all.end(), keys.begin(), keys.end());
        }
    }
    return all;
}

void X11ScratchMark::removeLeft()
{
    for (int i = 0; i < places; ++i) {
        if (!isOwned(place(i))) {
            XDeleteProperty(m_connection.display(), m_connection.root(), place(i).property);
        }
    }
}

} // namespace mevo
