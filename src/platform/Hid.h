#pragma once

#include <QByteArray>

#include <cstddef>
#include <vector>

namespace mevo {

/// An open HID collection. Opaque: only the Hid that gave it knows what it is.
using HidHandle = struct HidHandleTag *;

/// One top-level collection as the enumeration found it.
struct HidEntry
{
    QByteArray path; ///< what Hid::openPath takes; collections of one node share it on Linux
    quint16 vendorId = 0;
    quint16 productId = 0;
    quint16 usagePage = 0;
    quint16 usage = 0;
};

/// USB HID access. Calls may come from any thread, one handle from one thread at a time.
class Hid
{
public:
    virtual ~Hid() = default;

    /// Prepares the library. 0, or -1 on failure.
    virtual int init() = 0;
    /// Every collection that matches; a filter of 0 matches anything.
    virtual std::vector<HidEntry> enumerate(quint16 vendor, quint16 product) = 0;
    /// Opens a collection; null on failure (the reason goes to the log).
    virtual HidHandle openPath(const QByteArray &path) = 0;
    /// Chooses whether read() waits for a report. 0, or -1 on failure.
    virtual int setNonBlocking(HidHandle handle, bool nonBlocking) = 0;
    /// Reads one input report with its id. Length read, 0 when there is none, -1 when the device is gone.
    virtual int read(HidHandle handle, unsigned char *data, std::size_t length) = 0;
    /// read() that waits at most `milliseconds` for a report, whatever setNonBlocking() said.
    virtual int readTimeout(HidHandle handle, unsigned char *data, std::size_t length, int milliseconds) = 0;
    /// Sends a feature report, id first. Bytes sent, or -1.
    virtual int sendFeatureReport(HidHandle handle, const unsigned char *data, std::size_t length) = 0;
    /// Releases the library and closes every handle that is still open. 0, or -1.
    virtual int exit() = 0;
};

} // namespace mevo
