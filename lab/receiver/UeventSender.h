#pragma once

#include "receiver/DeviceTree.h"

#include <QByteArray>

namespace mevo::lab {

/// The message that libudev's monitor of the "udev" group reads. `properties` is the text of the device's
/// uevent file, `sequence` the event's number.
QByteArray ueventMessage(const QByteArray &action, const DevicePath &device, const QByteArray &properties,
                         quint64 sequence);

/// Sends a message to every monitor that listens in the test bed at `root`. A monitor that is gone or full
/// is passed over, as the kernel would.
void sendUevent(const QByteArray &root, const QByteArray &message);

} // namespace mevo::lab
