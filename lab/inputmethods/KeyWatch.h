#pragma once

#include <QtGlobal>

#include <functional>

struct _XDisplay;
union _XEvent;

namespace lab {

/// Sees one key wherever the focus is, and takes its presses away from the other programs; a modifier is only
/// watched. Keys that a program merely sends to a window are not seen.
class KeyWatch
{
public:
    /// What has happened to the key; times are the server's, in milliseconds.
    struct Handler
    {
        std::function<void(qint64 ms)> down;
        std::function<void(qint64 ms)> up;
        std::function<void()> otherKey; ///< only beside a modifier
    };

    /// The connection must outlive this object.
    KeyWatch(_XDisplay *display, Handler handler);

    /// From now on. False when no key has the symbol, or another program has taken it.
    bool watch(unsigned keysym);
    /// Takes an event of the connection; true when it was this object's.
    bool take(_XEvent &event);

private:
    bool watchRaw();
    void key(unsigned keycode, bool press, qint64 ms);

    _XDisplay *m_display;
    Handler m_handler;
    unsigned m_keycode = 0;
    int m_xi = 0; ///< major opcode of the input extension
    bool m_raw = false;
};

} // namespace lab
