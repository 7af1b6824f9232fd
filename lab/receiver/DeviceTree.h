#pragma once

#include <QByteArray>

#include <sys/types.h>

#include <vector>

namespace mevo::lab {

/// The HID report descriptor: a digitizer collection with 16-byte input reports (id 1) and a vendor
/// collection with 8-byte feature reports (id 5), both on one hidraw node.
QByteArray reportDescriptor();

constexpr quint16 receiverVendor = 0x258A;
constexpr quint16 receiverProduct = 0x1016;
constexpr char receiverName[] = "RadioCo 2.4G Receiver";

/// One device of the receiver's chain in sysfs.
struct DevicePath
{
    QByteArray path; ///< below /sys
    QByteArray subsystem;
    QByteArray devtype; ///< may be empty
};

/// Where a receiver stands in the device tree, and how it looks there.
class DeviceTree
{
public:
    /// `usbPort` 1 to 9 on the root hub; `hidrawNumber` gives the node its name.
    DeviceTree(int usbPort, int hidrawNumber);

    QByteArray nodePath() const; ///< "/dev/hidrawN"
    QByteArray physicalPath() const;
    /// From the USB device down to the hidraw node.
    std::vector<DevicePath> chain() const;
    /// The whole chain in umockdev's description language; `node` is the device number behind the node.
    QByteArray description(dev_t node) const;

private:
    QByteArray m_port;
    QByteArray m_node;
};

} // namespace mevo::lab
