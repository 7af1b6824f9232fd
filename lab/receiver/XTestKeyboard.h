#pragma once

#include "receiver/KeyboardPort.h"

#include <QByteArray>

#include <memory>
#include <mutex>

struct xcb_connection_t;

namespace mevo::lab {

/// Keys and wheel of an X display, moved as a USB keyboard and mouse would move them.
class XTestKeyboard : public KeyboardPort
{
public:
    /// The keyboard of `display` (empty: the one of DISPLAY); null when there is none (a log line says why).
    static std::unique_ptr<XTestKeyboard> open(const QByteArray &display = {});
    ~XTestKeyboard() override;
    XTestKeyboard(const XTestKeyboard &) = delete;
    XTestKeyboard &operator=(const XTestKeyboard &) = delete;

    void apply(const KeyboardReport &report) override;
    void turnWheel(int steps) override;
    /// Presses and releases a chord so that no other client's keys come in between.
    void tap(const KeyboardReport &chord);

private:
    explicit XTestKeyboard(xcb_connection_t *connection);
    void move(const KeyboardReport &report);

    std::mutex m_mutex;
    xcb_connection_t *m_connection;
    KeyboardReport m_held;
};

} // namespace mevo::lab
