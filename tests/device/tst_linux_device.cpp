#include "device/ReceiverDiscovery.h"
#include "platform/linux/HidapiHid.h"
#include "platform/linux/UdevNotifier.h"

#include <QDir>
#include <QtTest>

#undef signals // GLib has a member of that name
#include <umockdev.h>

#include <cstring>
#include <linux/hidraw.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// The real hidapi and libudev on devices of umockdev, which must be preloaded into this process.

namespace {

const QByteArray kUsb = "/devices/pci0000:00/0000:00:14.0/usb1/1-2";
const QByteArray kInterface = kUsb + "/1-2:1.1";
const QByteArray kHid = kInterface + "/0003:258A:1016.0002";
const QByteArray kHidraw = kHid + "/hidraw/hidraw3";
/// A digitizer collection with 15-byte input reports of id 1, a vendor one with feature reports of id 5.
const QByteArray kDescriptor = QByteArray::fromHex("050d0901a101850115002 6ff007508950f09018102c0"
                                                   "0600ff0901a1018505150026ff007508950709 01b102c0");

gboolean answerIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer features)
{
    const gulong request = umockdev_ioctl_client_get_request(client);
    const gsize length = _IOC_SIZE(request);
    g_autoptr(UMockdevIoctlData) data =
        umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0, length, nullptr);
    if (_IOC_TYPE(request) != 'H' || data == nullptr) {
        return FALSE;
    }
    glong result = 0;
    switch (_IOC_NR(request)) {
    case 1: { // size of the descriptor
        const int size = kDescriptor.size();
        std::memcpy(data->data, &size, sizeof size);
        break;
    }
    case 2: // the descriptor
        std::memcpy(reinterpret_cast<hidraw_report_descriptor *>(data->data)->value, kDescriptor.constData(),
                    static_cast<std::size_t>(kDescriptor.size()));
        break;
    case 6: // feature report
        static_cast<QList<QByteArray> *>(features)->append(
            QByteArray(reinterpret_cast<const char *>(data->data), static_cast<int>(length)).toHex(' '));
        result = static_cast<glong>(length);
        break;
    default:
        umockdev_ioctl_client_complete(client, -1, EINVAL);
        return TRUE;
    }
    umockdev_ioctl_client_complete(client, result, 0);
    return TRUE;
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::System | QDir::Files)
        .size();
}

} // namespace

class TestLinuxDevice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_testbed = umockdev_testbed_new();
        QVERIFY2(umockdev_in_mock_environment(), "umockdev must be preloaded");
        m_ioctl = umockdev_ioctl_base_new();
        g_signal_connect(m_ioctl, "handle-ioctl", G_CALLBACK(&answerIoctl), &m_features);
        QVERIFY(umockdev_testbed_attach_ioctl(m_testbed, "/dev/hidraw3", m_ioctl, nullptr));
    }
    void cleanupTestCase()
    {
        g_clear_object(&m_ioctl);
        g_clear_object(&m_testbed);
    }

    void comingAndGoing()
    {
        mevo::UdevNotifier notifier;
        QStringList heard;
        bool nested = false;
        const auto note = [&](mevo::DeviceNotifier::Change change, const QString &name) {
            QVERIFY(!nested); // a handler with an event loop of its own is not entered again
            nested = true;
            QCoreApplication::processEvents();
            nested = false;
            heard.append((change == mevo::DeviceNotifier::Change::Arrival ? QStringLiteral("+ ")
                                                                          : QStringLiteral("- ")) +
                         name);
        };
        QVERIFY(notifier.start(note));
        const QStringList names{QStringLiteral("HID#VID_258A&PID_1016&MI_01&Col01"),
                                QStringLiteral("HID#VID_258A&PID_1016&MI_01&Col02"),
                                QStringLiteral("USB#VID_258A&PID_1016")};
        const auto expected = [&](const char *prefix) {
            QStringList list;
            for (const QString &name : names) {
                list.append(QLatin1String(prefix) + name);
            }
            return list;
        };
        const auto sorted = [&] {
            QStringList list = heard;
            list.sort();
            return list;
        };
        plug();
        QTRY_COMPARE(sorted(), expected("+ "));
        heard.clear();
        unplug(); // what sysfs said is gone before the notification is read
        QTRY_COMPARE(sorted(), expected("- "));

        heard.clear();
        notifier.stop();
        plug();
        QVERIFY(notifier.start(note)); // now it is there already
        unplug();
        QTRY_COMPARE(sorted(), expected("- "));

        // A device that tells nothing about itself is reported all the same.
        heard.clear();
        umockdev_testbed_add_from_string(
            m_testbed,
            "P: /devices/odd/hidraw/hidraw9\nN: hidraw9\nE: SUBSYSTEM=hidraw\nE: DEVNAME=/dev/hidraw9\n",
            nullptr);
        QTRY_COMPARE(heard, QStringList{QStringLiteral("+ HIDRAW#hidraw9")});
        umockdev_testbed_uevent(m_testbed, "/sys/devices/odd/hidraw/hidraw9", "remove");
        QTRY_COMPARE(heard.last(), QStringLiteral("- HIDRAW#hidraw9"));
        umockdev_testbed_remove_device(m_testbed, "/sys/devices/odd/hidraw/hidraw9");
    }

    void stoppingFromTheHandler()
    {
        auto notifier = std::make_unique<mevo::UdevNotifier>();
        int calls = 0;
        QVERIFY(notifier->start([&](mevo::DeviceNotifier::Change, const QString &) {
            ++calls;
            notifier.reset(); // the program leaves at a second receiver
        }));
        plug();
        QTRY_COMPARE(calls, 1);
        unplug();
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    void receiverOnOneNode()
    {
        plug();
        mevo::HidapiHid hid;
        QCOMPARE(hid.init(), 0);
        const auto entries = hid.enumerate(mevo::kReceiverVendor, mevo::kReceiverProduct);
        const auto path = [&](quint16 page) {
            return mevo::findCollection(
                entries, {mevo::kReceiverVendor, mevo::kReceiverProduct, page, mevo::kReceiverUsage});
        };
        QCOMPARE(path(mevo::kDigitizerPage).path, QByteArray("/dev/hidraw3"));
        QCOMPARE(path(mevo::kVendorPage).path, QByteArray("/dev/hidraw3"));
        QVERIFY(!path(mevo::kDigitizerPage).secondReceiver);

        const mevo::HidHandle input = hid.openPath("/dev/hidraw3");
        const mevo::HidHandle command = hid.openPath("/dev/hidraw3");
        QVERIFY(input != nullptr && command != nullptr);
        const unsigned char heartbeat[8] = {0x05, 0x81, 0x01};
        QCOMPARE(hid.sendFeatureReport(command, heartbeat, 8), 8);
        QCOMPARE(m_features, QList<QByteArray>{"05 81 01 00 00 00 00 00"});

        unsigned char data[16] = {};
        QCOMPARE(hid.setNonBlocking(input, true), 0);
        QCOMPARE(hid.read(input, data, sizeof data), 0);
        QCOMPARE(hid.readTimeout(input, data, sizeof data, 5), 0);
        const QByteArray report = QByteArray::fromHex("01700801000000000000000000000000");
        QCOMPARE(::write(m_device, report.constData(), 16), ssize_t(16));
        QCOMPARE(hid.readTimeout(input, data, sizeof data, 5000), 16);
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(data), 16), report);
        hid.exit();
        QCOMPARE(hid.read(input, data, sizeof data), -1);
        unplug();
        QVERIFY(hid.enumerate(mevo::kReceiverVendor, mevo::kReceiverProduct).empty());
    }

    void thousandCyclesLeaveNoDescriptor()
    {
        plug();
        mevo::HidapiHid hid;
        int before = 0;
        for (int cycle = 0; cycle <= 1000; ++cycle) {
            hid.init();
            QVERIFY(hid.openPath("/dev/hidraw3") != nullptr);
            QVERIFY(hid.openPath("/dev/hidraw3") != nullptr);
            hid.exit();
            before = cycle == 0 ? openDescriptors() : before;
        }
        QTRY_VERIFY(openDescriptors() <= before); // the test bed closes its own ends a little later
        unplug();
    }

private:
    void plug()
    {
        const QByteArray description =
            "P: " + kUsb +
            "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: PRODUCT=258a/1016/110\nA: idVendor=258a\\n\n"
            "A: idProduct=1016\\n\n\n"
            "P: " +
            kInterface +
            "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\nA: bInterfaceNumber=01\\n\n\n"
            "P: " +
            kHid +
            "\nE: SUBSYSTEM=hid\nE: HID_ID=0003:0000258A:00001016\nE: HID_NAME=Receiver\nE: HID_UNIQ=\n"
            "H: report_descriptor=" +
            kDescriptor.toHex().toUpper() +
            "\n\n"
            "P: " +
            kHidraw +
            "\nE: SUBSYSTEM=hidraw\nE: DEVNAME=/dev/hidraw3\n"
            "L: device=../../../0003:258A:1016.0002\n";
        // The node is a terminal of ours: the test bed makes a node of one name only once.
        int program = -1;
        char terminal[128];
        termios raw{};
        ::cfmakeraw(&raw);
        QCOMPARE(::openpty(&m_device, &program, terminal, &raw, nullptr), 0);
        ::close(program);
        QDir().mkpath(QFileInfo(node()).path());
        QVERIFY(QFile::link(QFile::decodeName(terminal), node()));
        QVERIFY(umockdev_testbed_add_from_string(m_testbed, description.constData(), nullptr));
    }
    void unplug()
    {
        const QByteArrayList devices{kHidraw, kHid, kInterface, kUsb};
        for (const QByteArray &device : devices) {
            umockdev_testbed_uevent(m_testbed, ("/sys" + device).constData(), "remove");
        }
        for (const QByteArray &device : devices) {
            umockdev_testbed_remove_device(m_testbed, ("/sys" + device).constData());
        }
        QFile::remove(node());
        ::close(m_device);
    }

    UMockdevTestbed *m_testbed = nullptr;
    UMockdevIoctlBase *m_ioctl = nullptr;
    QString node() const
    {
        g_autofree char *root = umockdev_testbed_get_root_dir(m_testbed);
        return QFile::decodeName(root) + QLatin1String("/dev/hidraw3");
    }

    QList<QByteArray> m_features;
    int m_device = -1;
};

QTEST_GUILESS_MAIN(TestLinuxDevice)
#include "tst_linux_device.moc"
