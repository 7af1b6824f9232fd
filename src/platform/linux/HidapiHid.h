#pragma once

#include "platform/Hid.h"

#include <map>
#include <memory>
#include <mutex>

namespace mevo {

/// HID through hidapi (hidraw). Handles are numbers that are never used twice, so that a handle which
/// outlives exit() answers -1 instead of reaching freed memory or another device.
class HidapiHid : public Hid
{
public:
    HidapiHid() = default;
    ~HidapiHid() override;
    HidapiHid(const HidapiHid &) = delete;
    HidapiHid &operator=(const HidapiHid &) = delete;

    int init() override;
    std::vector<HidEntry> enumerate(quint16 vendor, quint16 product) override;
    HidHandle openPath(const QByteArray &path) override;
    int setNonBlocking(HidHandle handle, bool nonBlocking) override;
    int read(HidHandle handle, unsigned char *data, std::size_t length) override;
    int readTimeout(HidHandle handle, unsigned char *data, std::size_t length, int milliseconds) override;
    int sendFeatureReport(HidHandle handle, const unsigned char *data, std::size_t length) override;
    /// hidapi's own exit leaves devices open; this closes them. One that another thread is just using
    /// is closed when that call returns.
    int exit() override;

private:
    struct Device;
    std::shared_ptr<Device> find(HidHandle handle) const;

    std::mutex m_library; ///< hidapi keeps its last error of its own without a lock
    mutable std::mutex m_mutex;
    std::map<HidHandle, std::shared_ptr<Device>> m_devices;
    quintptr m_nextHandle = 1;
};

} // namespace mevo
