#pragma once

#include "platform/Hid.h"

#include <QString>

#include <vector>

namespace mevo {

/// USB identity of the receiver and its two collections that the program opens.
inline constexpr quint16 kReceiverVendor = 0x258A;
inline constexpr quint16 kReceiverProduct = 0x1016;
inline constexpr quint16 kDigitizerPage = 0x000D;
inline constexpr quint16 kVendorPage = 0xFF00;
inline constexpr quint16 kReceiverUsage = 1;

/// What a collection must be; a value of 0 matches anything.
struct CollectionFilter
{
    quint16 vendorId = 0;
    quint16 productId = 0;
    quint16 usagePage = 0;
    quint16 usage = 0;
};

struct FoundCollection
{
    QByteArray path; ///< of the last match, at most 256 bytes; empty without one
    bool secondReceiver = false;
};

/// Walks what the enumeration found. The last match wins; at a second receiver the walk ends and
/// `path` keeps what it held by then. Receivers are counted by the interface text in the path where
/// paths have it, else by the distinct paths that carry a receiver's digitizer collection.
FoundCollection findCollection(const std::vector<HidEntry> &entries, const CollectionFilter &filter);

/// Whether a notification's device name is the receiver's collection that arrival and removal go by.
bool isReceiverName(const QString &deviceName);

/// How many top-level collections a HID report descriptor declares; 0 when it is empty or broken off.
int topLevelCollections(const QByteArray &reportDescriptor);

/// Notification names of one HID interface, such as "HID#VID_258A&PID_1016&MI_01&Col02": one for
/// each collection, or one without a collection when there are fewer than two. `interfaceNumber` is
/// -1 for a device that has none.
QStringList hidDeviceNames(quint16 vendor, quint16 product, int interfaceNumber, int collections);

} // namespace mevo
