#include "platform/linux/AtspiCaret.h"

#include <QDebug>

// GLib has members of this name.
#undef signals
#include <atspi/atspi.h>

namespace mevo {

namespace {

constexpr int callTimeoutMs = 100;
constexpr int startTimeoutMs = 1000; ///< for programs that have just come onto the bus

struct Unref
{
    void operator()(void *object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

struct FreeRect
{
    void operator()(AtspiRect *rect) const { g_free(rect); }
};

/// The outcome of a call that failed is none; programs come and go, which is nothing to tell.
class IgnoredError
{
public:
    ~IgnoredError() { g_clear_error(&m_error); }
    GError **out()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    bool failed() const { return m_error != nullptr; }

private:
    GError *m_error = nullptr;
};

/// A character's place; none for one without a size, such as the place behind the last one.
std::optional<QRect> extents(AtspiText *text, int offset)
{
    IgnoredError error;
    const std::unique_ptr<AtspiRect, FreeRect> rect(
        atspi_text_get_character_extents(text, offset, ATSPI_COORD_TYPE_SCREEN, error.out()));
    if (error.failed() || !rect || rect->height <= 0) {
        return std::nullopt;
    }
    return QRect(rect->x, rect->y, std::max(1, rect->width), rect->height);
}

} // namespace

class AtspiCaret::Listener
{
public:
    Listener()
    {
        const int started = atspi_init(); // 0 now, 1 before, 2 no bus
        if (started > 1) {
            qInfo("Caret: no accessibility bus; the pointer's place is taken instead");
            return;
        }
        atspi_set_timeout(callTimeoutMs, startTimeoutMs);
        m_listener = atspi_event_listener_new(&Listener::onEvent, this, nullptr);
        for (const char *event : {"object:state-changed:focused", "object:text-caret-moved"}) {
            IgnoredError error;
            if (!atspi_event_listener_register(m_listener, event, error.out())) {
                qInfo("Caret: the accessibility bus refuses %s", event);
            }
        }
    }
    ~Listener()
    {
        if (m_listener == nullptr) {
            return;
        }
        for (const char *event : {"object:state-changed:focused", "object:text-caret-moved"}) {
            IgnoredError error;
            atspi_event_listener_deregister(m_listener, event, error.out());
        }
        g_object_unref(m_listener);
    }

    AtspiAccessible *current() const { return m_current.get(); }

private:
    static void onEvent(AtspiEvent *event, void *self)
    {
        const bool lostFocus = g_str_has_prefix(event->type, "object:state-changed") && event->detail1 == 0;
        if (event->source != nullptr && !lostFocus) {
            static_cast<Listener *>(self)->m_current.reset(
                static_cast<AtspiAccessible *>(g_object_ref(event->source)));
        }
        g_boxed_free(ATSPI_TYPE_EVENT, event);
    }

    AtspiEventListener *m_listener = nullptr;
    Owned<AtspiAccessible> m_current;
};

AtspiCaret::AtspiCaret() = default;
AtspiCaret::~AtspiCaret() = default;

std::optional<QRect> AtspiCaret::rectangle()
{
    if (!m_listener) {
        m_listener = std::make_unique<Listener>();
    }
    if (m_listener->current() == nullptr) {
        return std::nullopt;
    }
    const Owned<AtspiText> text(atspi_accessible_get_text_iface(m_listener->current()));
    if (!text) {
        return std::nullopt;
    }
    IgnoredError error;
    const int offset = atspi_text_get_caret_offset(text.get(), error.out());
    if (error.failed() || offset < 0) {
        return std::nullopt;
    }
    if (const auto here = extents(text.get(), offset)) {
        return QRect(here->topLeft(), QSize(1, here->height()));
    }
    if (offset > 0) {
        if (const auto before = extents(text.get(), offset - 1)) {
            return QRect(before->topRight(), QSize(1, before->height()));
        }
    }
    return std::nullopt;
}

} // namespace mevo
