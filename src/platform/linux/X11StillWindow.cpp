#include "platform/linux/X11StillWindow.h"

#include <QImage>
#include <QSysInfo>

#ifdef MEVO_X11_EXTRAS

#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace mevo {

namespace {

constexpr int trueColourDepth = 24;
/// Events that tell of the steps of a move.
constexpr unsigned tellingOfSteps =
    XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

/// Pixels of the visual lie in memory as those of QImage::Format_RGB32 do.
bool hasPixelsOfQt(xcb_connection_t *connection, xcb_visualid_t visual)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST ||
        QSysInfo::ByteOrder != QSysInfo::LittleEndian) {
        return false;
    }
    for (auto screen = xcb_setup_roots_iterator(setup); screen.rem != 0; xcb_screen_next(&screen)) {
        for (auto depth = xcb_screen_allowed_depths_iterator(screen.data); depth.rem != 0;
             xcb_depth_next(&depth)) {
            for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem != 0;
                 xcb_visualtype_next(&type)) {
                if (type.data->visual_id == visual) {
                    return type.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR &&
                           type.data->red_mask == 0xff0000 && type.data->green_mask == 0xff00 &&
                           type.data->blue_mask == 0xff;
                }
            }
        }
    }
    return false;
}

} // namespace

bool X11StillWindow::hold(WindowId window, const QImage &look)
{
    xcb_connection_t *const connection = QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
    if (connection == nullptr || look.isNull()) {
        return false;
    }
    release();
    const auto id = static_cast<xcb_window_t>(window);
    const auto attributesAsked = xcb_get_window_attributes(connection, id);
    const auto geometryAsked = xcb_get_geometry(connection, id);
    const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesAsked, nullptr));
    const ReplyPointer<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, geometryAsked, nullptr));
    const QImage pixels = look.convertToFormat(QImage::Format_RGB32);
    constexpr qint64 requestWords = 8; // those before the pixels, amply
    const qint64 room = (qint64(xcb_get_maximum_request_length(connection)) - requestWords) * 4;
    if (!attributes || !geometry || geometry->depth != trueColourDepth || pixels.sizeInBytes() > room ||
        !hasPixelsOfQt(connection, attributes->visual)) {
        return false;
    }
    const auto width = static_cast<uint16_t>(pixels.width());
    const auto height = static_cast<uint16_t>(pixels.height());
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_pixmap(connection, trueColourDepth, pixmap, id, width, height);
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width, height, 0, 0, 0,
                  trueColourDepth, static_cast<uint32_t>(pixels.sizeInBytes()), pixels.constBits());
    xcb_free_gc(connection, context);
    m_window = window;
    m_eventMask = attributes->your_event_mask;
    const uint32_t values[] = {pixmap, m_eventMask & ~tellingOfSteps};
    xcb_change_window_attributes(connection, id, XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK, values);
    xcb_free_pixmap(connection, pixmap); // the window keeps it
    return true;
}

void X11StillWindow::release()
{
    const auto id = static_cast<xcb_window_t>(std::exchange(m_window, 0));
    if (id == 0 || QX11Info::connection() == nullptr) {
        return;
    }
    const uint32_t values[] = {XCB_BACK_PIXMAP_NONE, m_eventMask};
    xcb_change_window_attributes(QX11Info::connection(), id, XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK, values);
    constexpr uint8_t tellOfIt = 1;
    xcb_clear_area(QX11Info::connection(), tellOfIt, id, 0, 0, 0, 0);
    xcb_flush(QX11Info::connection());
}

} // namespace mevo

#else

namespace mevo {

bool X11StillWindow::hold(WindowId, const QImage &)
{
    return false;
}

void X11StillWindow::release() {}

} // namespace mevo

#endif
