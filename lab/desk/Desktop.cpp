#include "desk/Desktop.h"

#include "receiver/WaitUntil.h"

#include <QImage>
#include <QLoggingCategory>
#include <QRect>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

namespace mevo::lab {

namespace {

constexpr quint32 longestProperty = 4096; // in units of 4 bytes
constexpr int focusRetryMs = 500;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> owned(Reply *reply)
{
    return Owned<Reply>(reply, &std::free);
}

} // namespace

std::unique_ptr<Desktop> Desktop::open()
{
    int screen = 0;
    xcb_connection_t *connection = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(connection)) {
        qWarning("no X display");
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<Desktop>(new Desktop(connection, screen));
}

Desktop::Desktop(xcb_connection_t *connection, int screen)
    : m_connection(connection)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0; --screen)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    m_width = screens.data->width_in_pixels;
    m_height = screens.data->height_in_pixels;
}

Desktop::~Desktop()
{
    xcb_disconnect(m_connection);
}

quint32 Desktop::atom(const char *name) const
{
    const auto cookie = xcb_intern_atom(m_connection, 0, quint16(std::strlen(name)), name);
    const auto reply = owned(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? reply->atom : quint32(XCB_ATOM_NONE);
}

QByteArray Desktop::property(Window window, quint32 name) const
{
    const auto cookie =
        xcb_get_property(m_connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
    const auto reply = owned(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

bool Desktop::hasWindowManager() const
{
    return !property(m_root, atom("_NET_SUPPORTING_WM_CHECK")).isEmpty();
}

std::vector<Desktop::Window> Desktop::unmanagedWindows() const
{
    std::vector<Window> windows;
    const auto tree =
        owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr));
    const Window *children = tree ? xcb_query_tree_children(tree.get()) : nullptr;
    for (int i = 0; children != nullptr && i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes = owned(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, children[i]), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && !attributes->override_redirect)
            windows.push_back(children[i]);
    }
    return windows;
}

std::vector<Desktop::Window> Desktop::clientWindows() const
{
    if (!hasWindowManager())
        return unmanagedWindows();
    const QByteArray list = property(m_root, atom("_NET_CLIENT_LIST"));
    std::vector<Window> windows(size_t(list.size()) / sizeof(Window));
    if (!windows.empty())
        std::memcpy(windows.data(), list.constData(), windows.size() * sizeof(Window));
    return windows;
}

std::optional<Desktop::Window> Desktop::windowOfProcess(qint64 processId) const
{
    for (const Window window : clientWindows()) {
        const QByteArray value = property(window, atom("_NET_WM_PID"));
        quint32 owner = 0;
        if (value.size() == int(sizeof owner)) {
            std::memcpy(&owner, value.constData(), sizeof owner);
            if (qint64(owner) == processId)
                return window;
        }
    }
    return std::nullopt;
}

std::optional<Desktop::Window> Desktop::findWindow(const QRegularExpression &pattern) const
{
    std::vector<Window> pending{m_root};
    while (!pending.empty()) {
        const Window parent = pending.back();
        pending.pop_back();
        const auto tree =
            owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, parent), nullptr));
        if (!tree)
            continue;
        const Window *children = xcb_query_tree_children(tree.get());
        for (int index = xcb_query_tree_children_length(tree.get()); index-- > 0;) {
            const Window child = children[index];
            const auto attributes = owned(xcb_get_window_attributes_reply(
                m_connection, xcb_get_window_attributes(m_connection, child), nullptr));
            if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
                continue;
            const QByteArray className = property(child, XCB_ATOM_WM_CLASS).replace('\0', ' ');
            if (pattern.match(title(child)).hasMatch() ||
                pattern.match(QString::fromLatin1(className)).hasMatch())
                return child;
            pending.push_back(child);
        }
    }
    return std::nullopt;
}

QString Desktop::title(Window window) const
{
    const QByteArray utf8 = property(window, atom("_NET_WM_NAME"));
    return utf8.isEmpty() ? QString::fromLatin1(property(window, XCB_ATOM_WM_NAME)) : QString::fromUtf8(utf8);
}

QPoint Desktop::corner(Window window) const
{
    const auto reply = owned(xcb_translate_coordinates_reply(
        m_connection, xcb_translate_coordinates(m_connection, window, m_root, 0, 0), nullptr));
    return reply ? QPoint(reply->dst_x, reply->dst_y) : QPoint();
}

Desktop::Window Desktop::focusedWindow() const
{
    const auto reply =
        owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus : 0;
}

QRect Desktop::rectangle(Window window) const
{
    const auto size =
        owned(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
    return size ? QRect(corner(window), QSize(size->width, size->height)) : QRect();
}

bool Desktop::hasFocus(Window window) const
{
    for (Window candidate = focusedWindow(); candidate != 0 && candidate != m_root;) {
        if (candidate == window)
            return true;
        const auto tree =
            owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, candidate), nullptr));
        candidate = tree ? tree->parent : 0;
    }
    return false;
}

bool Desktop::focus(Window window, int timeoutMs)
{
    const auto focused = [this, window] { return hasFocus(window); };
    if (!hasWindowManager()) {
        constexpr quint32 above[] = {XCB_STACK_MODE_ABOVE};
        xcb_configure_window(m_connection, window, XCB_CONFIG_WINDOW_STACK_MODE, above);
        xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        xcb_flush(m_connection);
        return waitUntil(focused, timeoutMs);
    }
    for (int waited = 0; waited < timeoutMs && !focused(); waited += focusRetryMs) {
        constexpr quint32 fromPager = 2;
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = atom("_NET_ACTIVE_WINDOW");
        event.data.data32[0] = fromPager;
        xcb_send_event(m_connection, 0, m_root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&event));
        xcb_flush(m_connection);
        waitUntil(focused, focusRetryMs);
    }
    return focused();
}

bool Desktop::keyboardIsGrabbed() const
{
    // Tried, and given back before anybody else has a turn.
    xcb_grab_server(m_connection);
    const auto reply =
        owned(xcb_grab_keyboard_reply(m_connection,
                                      xcb_grab_keyboard(m_connection, 0, m_root, XCB_CURRENT_TIME,
                                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                      nullptr));
    if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS)
        xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    xcb_ungrab_server(m_connection);
    xcb_flush(m_connection);
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool Desktop::screenshot(const QString &file, Window window) const
{
    QRect area(0, 0, m_width, m_height);
    if (window != 0) {
        const QRect place = rectangle(window);
        if (place.isEmpty())
            return false;
        area = area.intersected(place);
    }
    const auto cookie =
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, 0, 0, m_width, m_height, ~0u);
    const auto reply = owned(xcb_get_image_reply(m_connection, cookie, nullptr));
    constexpr int bytesPerPixel = 4;
    if (!reply || xcb_get_image_data_length(reply.get()) < m_width * m_height * bytesPerPixel)
        return false;
    const QImage image(xcb_get_image_data(reply.get()), m_width, m_height, QImage::Format_RGB32);
    return image.copy(area).save(file);
}

} // namespace mevo::lab
