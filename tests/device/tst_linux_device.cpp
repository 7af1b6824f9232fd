#include "base/SettingsFile.h"
#include "device/MouseSettings.h"
#include "device/ReceiverDiscovery.h"
#include "platform/linux/HidapiHid.h"
#include "platform/linux/UdevNotifier.h"
#include "receiver/VirtualReceiver.h"
#include "state/MainState.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/Texts.h"

#include <QRegularExpression>
#include <QtTest>

/// The real hidapi and libudev at the lab's virtual receiver, in one process: umockdev must be preloaded.

using mevo::lab::LoggedReport;
using mevo::lab::ReceiverFirmware;
using mevo::lab::VirtualReceiver;

namespace {

ScratchHome scratchHome;

/// Writes down what the receiver types.
class Keyboard : public mevo::lab::KeyboardPort
{
public:
    void apply(const mevo::lab::KeyboardReport &report) override
    {
        log.add("%1 %2"_s.arg(report.modifiers, 0, 16).arg(report.usage, 0, 16));
    }
    void turnWheel(int) override {}
    CallLog log;
};

/// The program's device commands at the plugged receiver, whose clock stands still unless it is moved.
struct Link
{
    explicit Link(mevo::lab::TestBed &bed)
        : receiver(bed, &keyboard)
        , commands(fake.platform, state, {[](int) { return 1; }, [](int) {}, say, [] {}})
        , settings(commands, state, *fake.time, say)
    {
        fake.platform.hid = std::make_unique<mevo::HidapiHid>();
        receiver.setClock([this] { return clock.load(); });
        receiver.configure([](ReceiverFirmware &firmware) { firmware.options.statusIntervalMs = 0; });
        receiver.plug();
        commands.OpenHidDevice();
    }
    ~Link() { commands.ReleaseHidDevice(); }

    /// The feature reports that came since the last call.
    QStringList received()
    {
        QStringList reports;
        const std::vector<LoggedReport> news = receiver.log().since(m_seen);
        m_seen += news.size();
        for (const LoggedReport &report : news) {
            if (report.kind == LoggedReport::Feature) {
                reports.append(QString::fromLatin1(report.bytes.toHex(' ')));
            }
        }
        return reports;
    }
    ReceiverFirmware firmware()
    {
        ReceiverFirmware copy;
        receiver.configure([&copy](ReceiverFirmware &firmware) { copy = firmware; });
        return copy;
    }
    /// Key number of the next key report, as the program reads it; -1 when none comes.
    int nextKey()
    {
        unsigned char data[16] = {};
        while (fake.platform.hid->readTimeout(state.HidInputHandle, data, sizeof data, 2000) > 0) {
            if (data[1] == 0x70) {
                return data[2];
            }
        }
        return -1;
    }

    const decltype(mevo::DeviceLinkHooks::trayMessage) say = [](const QString &, mevo::MessageIcon, int) {};
    FakePlatform fake;
    MainState state;
    Keyboard keyboard;
    std::atomic<qint64> clock{0};
    VirtualReceiver receiver;
    DeviceCommands commands;
    mevo::MouseSettings settings;

private:
    std::size_t m_seen = 0;
};

} // namespace

class TestLinuxDevice : public QObject
{
    Q_OBJECT

private slots:
    void comingAndGoing()
    {
        VirtualReceiver receiver(m_bed, nullptr);
        mevo::UdevNotifier notifier;
        QStringList heard;
        bool nested = false;
        const auto note = [&](mevo::DeviceNotifier::Change change, const QString &name) {
            QVERIFY(!nested); // a handler with an event loop of its own is not entered again
            nested = true;
            QCoreApplication::processEvents();
            nested = false;
            heard.append((change == mevo::DeviceNotifier::Change::Arrival ? "+ "_s : "- "_s) + name);
        };
        QVERIFY(notifier.start(note));
        const QStringList names{"HID#VID_258A&PID_1016&MI_01&Col01"_s, "HID#VID_258A&PID_1016&MI_01&Col02"_s,
                                "USB#VID_258A&PID_1016"_s};
        const auto expected = [&](const char *prefix) {
            QStringList list;
            for (const QString &name : names) {
                list.append(QLatin1String(prefix) + name);
            }
            return list;
        };
        const auto sorted = [&](const char *prefix) {
            QStringList list = heard.filter(
                QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(QLatin1String(prefix))));
            list.sort();
            if (*prefix == '+') {
                list.removeDuplicates(); // the test bed tells of an addition by itself as well
            }
            return list;
        };
        receiver.plug();
        QTRY_COMPARE(sorted("+ "), expected("+ "));
        receiver.unplug(); // what sysfs said is gone before the notification is read
        QTRY_COMPARE(sorted("- "), expected("- "));

        heard.clear();
        notifier.stop();
        receiver.plug();
        QVERIFY(notifier.start(note)); // now it is there already
        receiver.unplug();
        QTRY_COMPARE(sorted("- "), expected("- "));

        // A device that tells nothing about itself is reported all the same.
        heard.clear();
        QVERIFY(m_bed.add("P: /devices/odd/hidraw/hidraw9\nN: hidraw9\nE: SUBSYSTEM=hidraw\n"
                          "E: DEVNAME=/dev/hidraw9\n"));
        QTRY_COMPARE(heard, list({"+ HIDRAW#hidraw9"}));
    }

    void stoppingFromTheHandler()
    {
        VirtualReceiver receiver(m_bed, nullptr);
        auto notifier = std::make_unique<mevo::UdevNotifier>();
        int calls = 0;
        QVERIFY(notifier->start([&](mevo::DeviceNotifier::Change, const QString &) {
            ++calls;
            notifier.reset(); // the program leaves at a second receiver
        }));
        receiver.plug();
        QTRY_COMPARE(calls, 1);
        receiver.unplug();
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    void everyCommandArrivesAsItIsMeant()
    {
        Link link(m_bed);
        QVERIFY(link.state.HidCommandHandle.load() != nullptr);
        DeviceCommands &device = link.commands;
        const auto expect = [&link](const char *name, const QStringList &reports) {
            const QStringList received = link.received();
            QVERIFY2(received == reports,
                     qPrintable(QLatin1String(name) + ": "_s + received.join(QLatin1Char(','))));
        };
        device.ReadDeviceIdentity();
        expect("identity", {"05 2c 00 00 00 00 00 00"_s});
        QCOMPARE(link.state.DongleID, "02-01-001357"_s);
        QVERIFY(device.RequestMouseID());
        expect("mouse id", {"05 2d 00 00 00 00 00 00"_s});
        QVERIFY(device.ResetDeviceKeys() && device.SendHeartbeat() && device.SendKeyReport(1, 6));
        expect("keys and heartbeat",
               {"05 81 04 00 00 00 00 00"_s, "05 81 01 00 00 00 00 00"_s, "05 81 04 01 06 00 00 00"_s});
        QVERIFY(device.MicLatchOn());
        QVERIFY(link.firmware().microphoneLatched());
        QVERIFY(device.MicLatchOff());
        QVERIFY(!link.firmware().microphoneLatched());
        expect("latch", {"05 20 0c 00 00 00 00 00"_s, "05 20 08 00 00 00 00 00"_s});

        struct Group
        {
            const mevo::MouseGroup &group;
            const char *report;
            quint8 ReceiverFirmware::Settings::*field;
        };
        const Group groups[] = {
            {mevo::mouseDPI, "05 20 10 00 00 0%1 00 00", &ReceiverFirmware::Settings::dpi},
            {mevo::mouseDataRate, "05 20 20 00 00 00 0%1 00", &ReceiverFirmware::Settings::rate},
            {mevo::mouseWheelSpeed, "05 20 40 00 00 00 00 0%1", &ReceiverFirmware::Settings::wheel},
        };
        for (const Group &row : groups) {
            for (const int place : {2, 1, 0}) {
                link.settings.choose(row.group, place);
                expect(row.group.key, {QString::fromLatin1(row.report).arg(place)});
                QCOMPARE(int(link.firmware().settings.*row.field), place);
            }
        }

        link.keyboard.log.clear();
        device.SendHWKey(false, true, false, false, false, 0x19);
        QTRY_VERIFY(!link.state.HidBusy);
        QCOMPARE(link.keyboard.log.calls(), list({"1 19", "0 0", "0 0"}));

        link.receiver.refuse({});
        QVERIFY(!device.SendHeartbeat() && !link.state.HeartbeatOK && !device.MicLatchOff());
    }

    void customKeysReportTheirFunction()
    {
        Link link(m_bed);
        const QList<int> voiceKeys{1, 8, 3, 14, 6, 2};
        for (const mevo::CustomKeyFunction &function : mevo::customKeyFunctions) {
            for (const auto key : {mevo::CustomKey::Left, mevo::CustomKey::Right}) {
                const bool left = key == mevo::CustomKey::Left;
                QVERIFY(link.settings.assignKey(key, QString::fromUtf8(function.label)));
                QCOMPARE(link.received(), QStringList{"05 71 0%1 %2 00 00 00 00"_s.arg(int(key)).arg(
                                              function.value, 2, 16, QLatin1Char('0'))});
                const auto custom =
                    left ? VirtualReceiver::CustomKey::Left : VirtualReceiver::CustomKey::Right;
                QCOMPARE(link.receiver.customKey(custom, true), VirtualReceiver::KeyFate::Sent);
                if (voiceKeys.contains(function.value)) {
                    QCOMPARE(link.nextKey(), function.value);
                }
                link.receiver.customKey(custom, false);
                if (voiceKeys.contains(function.value)) {
                    QCOMPARE(link.nextKey(), function.value);
                }
            }
        }
    }

private:
    mevo::lab::TestBed m_bed;
};

QTEST_GUILESS_MAIN(TestLinuxDevice)
#include "tst_linux_device.moc"
