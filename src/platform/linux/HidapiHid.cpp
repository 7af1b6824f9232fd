#include "platform/linux/HidapiHid.h"

#include "base/LogText.h"

#include <QDebug>

#include <hidapi/hidapi.h>

namespace mevo {

/// hidapi keeps the text of a device's last error without a lock, hence the mutex: the command
/// collection is used by the GUI thread and by key injections at once. A read that finds the device
/// taken, by a reader that hangs, answers "no report" instead of hanging too.
struct HidapiHid::Device
{
    explicit Device(hid_device *opened)
        : device(opened)
    {
    }
    ~Device() { hid_close(device); }
    Q_DISABLE_COPY(Device)

    hid_device *const device;
    std::mutex mutex;
};

HidapiHid::~HidapiHid()
{
    HidapiHid::exit();
}

int HidapiHid::init()
{
    const std::lock_guard<std::mutex> lock(m_library);
    return hid_init();
}

std::vector<HidEntry> HidapiHid::enumerate(quint16 vendor, quint16 product)
{
    const std::lock_guard<std::mutex> lock(m_library);
    const std::unique_ptr<hid_device_info, decltype(&hid_free_enumeration)> list(
        hid_enumerate(vendor, product), &hid_free_enumeration);
    std::vector<HidEntry> entries;
    for (const hid_device_info *info = list.get(); info != nullptr; info = info->next) {
        entries.push_back({info->path, info->vendor_id, info->product_id, info->usage_page, info->usage});
    }
    return entries;
}

HidHandle HidapiHid::openPath(const QByteArray &path)
{
    const std::lock_guard<std::mutex> library(m_library);
    hid_device *device = hid_open_path(path.constData());
    if (device == nullptr) {
        const wchar_t *reason = hid_error(nullptr);
        qWarning().noquote() << "cannot open" << logText(QString::fromUtf8(path)) + QLatin1Char(':')
                             << logText(reason != nullptr ? QString::fromWCharArray(reason) : QString());
        return nullptr;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto handle = reinterpret_cast<HidHandle>(m_nextHandle++); // NOLINT(performance-no-int-to-ptr)
    m_devices.emplace(handle, std::make_shared<Device>(device));
    return handle;
}

int HidapiHid::setNonBlocking(HidHandle handle, bool nonBlocking)
{
    const auto found = find(handle);
    if (!found) {
        return -1;
    }
    const std::lock_guard<std::mutex> lock(found->mutex);
    return hid_set_nonblocking(found->device, nonBlocking ? 1 : 0);
}

int HidapiHid::read(HidHandle handle, unsigned char *data, std::size_t length)
{
    const auto found = find(handle);
    if (!found) {
        return -1;
    }
    const std::unique_lock<std::mutex> lock(found->mutex, std::try_to_lock);
    return lock.owns_lock() ? hid_read(found->device, data, length) : 0;
}

int HidapiHid::readTimeout(HidHandle handle, unsigned char *data, std::size_t length, int milliseconds)
{
    const auto found = find(handle);
    if (!found) {
        return -1;
    }
    const std::unique_lock<std::mutex> lock(found->mutex, std::try_to_lock);
    return lock.owns_lock() ? hid_read_timeout(found->device, data, length, milliseconds) : 0;
}

int HidapiHid::sendFeatureReport(HidHandle handle, const unsigned char *data, std::size_t length)
{
    const auto found = find(handle);
    if (!found) {
        return -1;
    }
    const std::lock_guard<std::mutex> lock(found->mutex);
    return hid_send_feature_report(found->device, data, length);
}

int HidapiHid::exit()
{
    std::map<HidHandle, std::shared_ptr<Device>> open;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        open.swap(m_devices);
    }
    open.clear();
    const std::lock_guard<std::mutex> lock(m_library);
    return hid_exit();
}

std::shared_ptr<HidapiHid::Device> HidapiHid::find(HidHandle handle) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_devices.find(handle);
    return found == m_devices.end() ? nullptr : found->second;
}

} // namespace mevo
