#include "platform/linux/HidapiHid.h"
#include "support/Texts.h"

#include <QDir>
#include <QSemaphore>
#include <QtTest>

#include <fcntl.h>
#include <hidapi/hidapi.h>
#include <thread>
#include <unistd.h>

using mevo::HidapiHid;
using mevo::HidHandle;

/// hidapi itself is replaced: a device is an open file, and its calls can be held back. Like the real
/// one on hidraw, hid_exit() closes nothing.
struct hid_device_
{
    int fd = -1;
    bool closed = false;
};

namespace {

std::atomic<int> openDevices{0};
std::atomic<int> exits{0};
std::atomic<int> usesAfterClose{0};
bool holdReads = false;
QSemaphore inRead;
QSemaphore letReadGo;

int use(hid_device *device, int result)
{
    usesAfterClose += device->closed ? 1 : 0;
    return result;
}

int openDescriptors()
{
    return QDir("/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::System | QDir::Files).size();
}

} // namespace

extern "C" {

int hid_init()
{
    return 0;
}

int hid_exit()
{
    ++exits;
    return 0;
}

hid_device *hid_open_path(const char *path)
{
    const int fd = ::open(path, O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        return nullptr;
    }
    ++openDevices;
    auto *device = new hid_device;
    device->fd = fd;
    return device;
}

void hid_close(hid_device *device)
{
    ::close(device->fd);
    --openDevices;
    device->closed = true; // kept, so that a later use is seen
}

const wchar_t *hid_error(hid_device *)
{
    return nullptr;
}

int hid_set_nonblocking(hid_device *device, int)
{
    return use(device, 0);
}

int hid_read(hid_device *device, unsigned char *, size_t)
{
    return use(device, 0);
}

int hid_read_timeout(hid_device *device, unsigned char *data, size_t, int)
{
    if (holdReads) {
        inRead.release();
        letReadGo.acquire();
    }
    data[0] = 1;
    return use(device, 1);
}

int hid_send_feature_report(hid_device *device, const unsigned char *, size_t length)
{
    return use(device, static_cast<int>(length));
}

hid_device_info *hid_enumerate(unsigned short vendor, unsigned short product)
{
    auto *info = new hid_device_info{};
    static char path[] = "/dev/hidraw3";
    info->path = path;
    info->vendor_id = vendor;
    info->product_id = product;
    info->usage_page = 0x000D;
    info->usage = 1;
    return info;
}

void hid_free_enumeration(hid_device_info *devices)
{
    delete devices;
}
}

class TestHidapi : public QObject
{
    Q_OBJECT

private slots:
    void thousandPlugCycles()
    {
        HidapiHid hid;
        QCOMPARE(hid.enumerate(0x258A, 0x1016).front().usagePage, quint16(0x000D));
        const int before = openDescriptors();
        exits = 0;
        QSet<HidHandle> handles;
        for (int cycle = 0; cycle < 1000; ++cycle) {
            QCOMPARE(hid.init(), 0);
            handles.insert(hid.openPath("/dev/null"));
            handles.insert(hid.openPath("/dev/null"));
            QCOMPARE(hid.exit(), 0);
        }
        QCOMPARE(openDevices.load(), 0);
        QCOMPARE(openDescriptors(), before);
        QCOMPARE(exits.load(), 1000);
        QCOMPARE(handles.size(), 2000); // an old handle never means a new device
    }

    void handlesThatAreNone()
    {
        HidapiHid hid;
        unsigned char data[16] = {};
        const HidHandle closed = hid.openPath("/dev/null");
        QCOMPARE(hid.sendFeatureReport(closed, data, 8), 8);
        hid.exit();
        const HidHandle open = hid.openPath("/dev/null");
        for (HidHandle handle : {closed, HidHandle(nullptr), hid.openPath("/no/such/device")}) {
            QCOMPARE(hid.read(handle, data, 16), -1);
            QCOMPARE(hid.readTimeout(handle, data, 16, 10), -1);
            QCOMPARE(hid.sendFeatureReport(handle, data, 8), -1);
            QCOMPARE(hid.setNonBlocking(handle, true), -1);
        }
        QCOMPARE(hid.readTimeout(open, data, 16, 10), 1);
        QCOMPARE(usesAfterClose.load(), 0);
    }

    /// The device is released while the reader is in a read and an injection sends.
    void exitDuringUse()
    {
        HidapiHid hid;
        const HidHandle input = hid.openPath("/dev/null");
        const HidHandle command = hid.openPath("/dev/null");
        holdReads = true;
        int length = 0;
        std::thread reader([&] {
            unsigned char data[16];
            length = hid.readTimeout(input, data, 16, 1000);
        });
        std::thread sender([&] {
            const unsigned char data[8] = {};
            while (hid.sendFeatureReport(command, data, 8) == 8) {
            }
        });
        inRead.acquire();
        unsigned char data[16];
        QCOMPARE(hid.readTimeout(input, data, 16, 1), 0); // a second reader waits its time, no longer
        QCOMPARE(hid.read(input, data, 16), 0);
        hid.exit();
        sender.join();
        QCOMPARE(openDevices.load(), 1); // the one that is being read
        letReadGo.release();
        reader.join();
        QCOMPARE(length, 1);
        QCOMPARE(openDevices.load(), 0);
        QCOMPARE(usesAfterClose.load(), 0);
        holdReads = false;
    }
};

QTEST_APPLESS_MAIN(TestHidapi)
#include "tst_hidapi.moc"
