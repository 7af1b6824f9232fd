#include "platform/linux/UdevNotifier.h"

#include "device/ReceiverDiscovery.h"

#include <QDebug>
#include <QFile>
#include <QPointer>
#include <QSocketNotifier>

#include <cstring>
#include <libudev.h>

namespace mevo {

namespace {

constexpr char kHidraw[] = "hidraw";
constexpr int kReceiveBufferBytes = 1024 * 1024; ///< a hub with many devices comes and goes at once

using DevicePtr = std::unique_ptr<udev_device, udev_device *(*)(udev_device *)>;
using EnumeratePtr = std::unique_ptr<udev_enumerate, udev_enumerate *(*)(udev_enumerate *)>;

bool isHidraw(udev_device *device)
{
    const char *subsystem = udev_device_get_subsystem(device);
    return subsystem != nullptr && std::strcmp(subsystem, kHidraw) == 0;
}

QStringList hidrawNames(udev_device *device)
{
    udev_device *hid = udev_device_get_parent_with_subsystem_devtype(device, "hid", nullptr);
    // "BUS:VENDOR:PRODUCT" in hexadecimal
    const char *id = hid != nullptr ? udev_device_get_property_value(hid, "HID_ID") : nullptr;
    const QList<QByteArray> parts = QByteArray(id).split(':');
    bool vendorOk = false;
    bool productOk = false;
    const uint vendor = parts.value(1).toUInt(&vendorOk, 16);
    const uint product = parts.value(2).toUInt(&productOk, 16);
    if (!vendorOk || !productOk) {
        return {};
    }
    udev_device *usb = udev_device_get_parent_with_subsystem_devtype(device, "usb", "usb_interface");
    const char *number = usb != nullptr ? udev_device_get_sysattr_value(usb, "bInterfaceNumber") : nullptr;
    bool numberOk = false;
    const int interfaceNumber = QByteArray(number).trimmed().toInt(&numberOk, 16);

    QFile descriptor(QFile::decodeName(udev_device_get_syspath(hid)) + QLatin1String("/report_descriptor"));
    const int collections =
        descriptor.open(QIODevice::ReadOnly) ? topLevelCollections(descriptor.readAll()) : 0;
    return hidDeviceNames(static_cast<quint16>(vendor), static_cast<quint16>(product),
                          numberOk ? interfaceNumber : -1, collections);
}

QStringList usbNames(udev_device *device)
{
    const QByteArray vendor = udev_device_get_sysattr_value(device, "idVendor");
    const QByteArray product = udev_device_get_sysattr_value(device, "idProduct");
    if (vendor.isEmpty() || product.isEmpty()) {
        return {};
    }
    return {QLatin1String("USB#VID_") + QString::fromLatin1(vendor.toUpper()) + QLatin1String("&PID_") +
            QString::fromLatin1(product.toUpper())};
}

QStringList lookUp(udev_device *device)
{
    return isHidraw(device) ? hidrawNames(device) : usbNames(device);
}

QString kernelName(udev_device *device)
{
    return QString::fromLatin1(QByteArray(udev_device_get_subsystem(device)).toUpper()) + QLatin1Char('#') +
           QString::fromLocal8Bit(udev_device_get_sysname(device));
}

} // namespace

UdevNotifier::UdevNotifier(QObject *parent)
    : QObject(parent)
    , m_udev(nullptr, &udev_unref)
    , m_monitor(nullptr, &udev_monitor_unref)
{
}

UdevNotifier::~UdevNotifier()
{
    UdevNotifier::stop();
}

bool UdevNotifier::start(Handler handler)
{
    stop();
    m_udev.reset(udev_new());
    if (m_udev) {
        m_monitor.reset(udev_monitor_new_from_netlink(m_udev.get(), "udev"));
    }
    if (!m_monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), kHidraw, nullptr) < 0 ||
        udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), "usb", "usb_device") < 0 ||
        udev_monitor_enable_receiving(m_monitor.get()) < 0) {
        qWarning("udev offers no notifications: devices that come and go are not noticed");
        stop();
        return false;
    }
    udev_monitor_set_receive_buffer_size(m_monitor.get(), kReceiveBufferBytes);
    m_handler = std::move(handler);
    remember();
    m_notifier =
        std::make_unique<QSocketNotifier>(udev_monitor_get_fd(m_monitor.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { receive(); });
    return true;
}

void UdevNotifier::stop()
{
    m_handler = nullptr;
    m_changes.clear();
    m_names.clear();
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater(); // stop() may be called from its own signal
    }
    m_monitor.reset();
    m_udev.reset();
}

/// Names what is plugged in already, for its removal.
void UdevNotifier::remember()
{
    const EnumeratePtr scan(udev_enumerate_new(m_udev.get()), &udev_enumerate_unref);
    if (!scan) {
        return;
    }
    udev_enumerate_add_match_subsystem(scan.get(), kHidraw);
    udev_enumerate_add_match_subsystem(scan.get(), "usb");
    udev_enumerate_scan_devices(scan.get());
    for (udev_list_entry *entry = udev_enumerate_get_list_entry(scan.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const DevicePtr device(udev_device_new_from_syspath(m_udev.get(), udev_list_entry_get_name(entry)),
                               &udev_device_unref);
        if (device) {
            const QStringList names = lookUp(device.get());
            if (!names.isEmpty()) {
                m_names.insert(udev_device_get_syspath(device.get()), names);
            }
        }
    }
}

void UdevNotifier::receive()
{
    while (m_monitor) {
        const DevicePtr device(udev_monitor_receive_device(m_monitor.get()), &udev_device_unref);
        if (!device) {
            break;
        }
        const QByteArray action = udev_device_get_action(device.get());
        if (action != "add" && action != "remove") {
            continue;
        }
        const Change change = action == "add" ? Change::Arrival : Change::Removal;
        for (const QString &name : namesFor(device.get(), change)) {
            m_changes.emplace_back(change, name);
        }
    }
    deliver();
}

/// One change at a time: the handler may run an event loop in which the next one comes in, or stop or
/// delete this object.
void UdevNotifier::deliver()
{
    if (m_delivering) {
        return;
    }
    const QPointer<UdevNotifier> self(this);
    m_delivering = true;
    while (self && m_handler && !m_changes.empty()) {
        const auto [change, name] = m_changes.front();
        m_changes.pop_front();
        const Handler handler = m_handler;
        handler(change, name);
    }
    if (self) {
        m_delivering = false;
    }
}

QStringList UdevNotifier::namesFor(udev_device *device, Change change)
{
    const QByteArray path = udev_device_get_syspath(device);
    QStringList names;
    if (change == Change::Arrival) {
        names = lookUp(device);
        if (!names.isEmpty()) {
            m_names.insert(path, names);
        }
    } else {
        names = m_names.take(path);
    }
    return names.isEmpty() ? QStringList(kernelName(device)) : names;
}

} // namespace mevo
