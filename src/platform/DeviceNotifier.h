#pragma once

#include <QString>

#include <functional>

namespace mevo {

/// Arrival and removal of HID collections.
class DeviceNotifier
{
public:
    enum class Change { Arrival, Removal };
    /// `name` has the form "HID#VID_258A&PID_1016&MI_01&Col02", one call for each collection.
    using Handler = std::function<void(Change change, const QString &name)>;

    virtual ~DeviceNotifier() = default;

    /// Starts watching; `handler` is called on the thread of the event loop that called this.
    /// False when the system offers no notifications (the reason goes to the log).
    virtual bool start(Handler handler) = 0;
    /// Ends the watching; the handler is not called any more.
    virtual void stop() = 0;
};

} // namespace mevo
