#pragma once

#include "platform/DeviceNotifier.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <deque>
#include <memory>
#include <utility>

struct udev;
struct udev_device;
struct udev_monitor;
class QSocketNotifier;

namespace mevo {

/// Arrival and removal through udev. HID interfaces are named by their collections
/// ("HID#VID_258A&PID_1016&MI_01&Col02"), whole USB devices "USB#VID_258A&PID_1016". What a device was
/// called is remembered, since at its removal nothing can be looked up any more; a removed device that
/// was never named is reported by its kernel name ("HIDRAW#hidraw3").
class UdevNotifier : public QObject, public DeviceNotifier
{
    Q_OBJECT

public:
    explicit UdevNotifier(QObject *parent = nullptr);
    ~UdevNotifier() override;

    bool start(Handler handler) override;
    void stop() override;

private:
    void receive();
    void deliver();
    void remember();
    QStringList namesFor(udev_device *device, Change change);

    std::unique_ptr<udev, udev *(*)(udev *)> m_udev;
    std::unique_ptr<udev_monitor, udev_monitor *(*)(udev_monitor *)> m_monitor;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QHash<QByteArray, QStringList> m_names; ///< by sysfs path
    std::deque<std::pair<Change, QString>> m_changes;
    bool m_delivering = false;
    Handler m_handler;
};

} // namespace mevo
