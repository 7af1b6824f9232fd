#include "receiver/XTestKeyboard.h"

#include "receiver/HidUsage.h"

#include <QLoggingCategory>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>

namespace mevo::lab {

namespace {

constexpr quint8 wheelUpButton = 4;
constexpr quint8 wheelDownButton = 5;

void fake(xcb_connection_t *connection, int type, quint8 detail)
{
    xcb_test_fake_input(connection, quint8(type), detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

} // namespace

std::unique_ptr<XTestKeyboard> XTestKeyboard::open(const QByteArray &display)
{
    xcb_connection_t *connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr);
    const xcb_query_extension_reply_t *extension =
        xcb_connection_has_error(connection) ? nullptr : xcb_get_extension_data(connection, &xcb_test_id);
    if (!extension || !extension->present) {
        qWarning("no X display with XTest: the receiver types nowhere");
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<XTestKeyboard>(new XTestKeyboard(connection));
}

XTestKeyboard::XTestKeyboard(xcb_connection_t *connection)
    : m_connection(connection)
{
}

XTestKeyboard::~XTestKeyboard()
{
    apply({});
    // A round trip, so that the last release is not lost with the connection.
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    xcb_disconnect(m_connection);
}

void XTestKeyboard::move(const KeyboardReport &report)
{
    for (const KeyEvent &event : keyEvents(m_held, report))
        fake(m_connection, event.press ? XCB_KEY_PRESS : XCB_KEY_RELEASE, event.keycode);
    m_held = report;
}

void XTestKeyboard::apply(const KeyboardReport &report)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    move(report);
    xcb_flush(m_connection);
}

void XTestKeyboard::turnWheel(int steps)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const quint8 button = steps > 0 ? wheelUpButton : wheelDownButton;
    for (int step = std::abs(steps); step > 0; --step) {
        fake(m_connection, XCB_BUTTON_PRESS, button);
        fake(m_connection, XCB_BUTTON_RELEASE, button);
    }
    xcb_flush(m_connection);
}

void XTestKeyboard::tap(const KeyboardReport &chord)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    xcb_grab_server(m_connection);
    const KeyboardReport before = m_held;
    move(chord);
    move(before);
    xcb_ungrab_server(m_connection);
    xcb_flush(m_connection);
}

} // namespace mevo::lab
