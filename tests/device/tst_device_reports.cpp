#include "device/DeviceReports.h"
#include "device/DeviceStatusStore.h"
#include "device/KeyInjection.h"
#include "device/ReceiverDiscovery.h"
#include "device/ReportDispatch.h"
#include "state/DeviceState.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::FeatureReport;
using mevo::HidEntry;
using mevo::InputReport;
namespace reports = mevo::reports;

namespace {

QString hex(const FeatureReport &report)
{
    return QString::fromLatin1(QByteArray(reinterpret_cast<const char *>(report.data()), 8).toHex(' '));
}

QString hex(const std::optional<FeatureReport> &report)
{
    return report ? hex(*report) : "none"_s;
}

InputReport inputReport(const QByteArray &hexText)
{
    const QByteArray bytes = QByteArray::fromHex(hexText);
    InputReport report{};
    std::copy(bytes.begin(), bytes.end(), report.begin());
    return report;
}

InputReport statusWith(int settings, int battery)
{
    InputReport report{0x01, 0x20, 8, 14};
    report[5] = static_cast<unsigned char>(settings);
    report[7] = static_cast<unsigned char>(battery);
    return report;
}

} // namespace

class TestDeviceReports : public QObject
{
    Q_OBJECT

private slots:
    void featureReports()
    {
        QCOMPARE(hex(reports::dpi(1000)), "none"_s);
        QCOMPARE(hex(reports::dataRate(1000)), "none"_s);
        QCOMPARE(hex(reports::wheelSpeed(3)), "none"_s);
        QCOMPARE(hex(reports::customKey(3, 8)), "none"_s);
        QCOMPARE(hex(reports::customKey(1, 256)), "none"_s);
        QCOMPARE(hex(reports::keyDown(mevo::modifierBits(false, true, false, false), 0x19)),
                 "05 81 04 01 19 00 00 00"_s);
        // The high byte of a key is dropped, a consumer key has twelve bits.
        QCOMPARE(hex(reports::keyDown(mevo::modifierBits(true, true, true, true), 0x128)),
                 "05 81 04 0f 28 00 00 00"_s);
        QCOMPARE(hex(reports::keyDown(mevo::modifierBits(true, false, false, false), 0)),
                 "05 81 04 02 00 00 00 00"_s);
        QCOMPARE(hex(reports::consumerKeyDown(0xF223)), "05 81 06 02 23 00 00 00"_s);
    }

    void identity()
    {
        const auto identity = mevo::parseIdentity(inputReport("010c05 0304 03 00 0a"));
        QVERIFY(identity);
        QCOMPARE(identity->dongleId, "0a-03-040305"_s);
        QCOMPARE(identity->dongleIdDecimal, "10-03-040305"_s);
        QCOMPARE(mevo::parseIdentity(inputReport("010cff ffff ff ff ff"))->dongleIdDecimal,
                 "255-255-2575755"_s);
        QCOMPARE(mevo::parseIdentity(inputReport("010c"))->dongleIdDecimal,
                 QLatin1String(mevo::kZeroIdentityDecimal));
        QVERIFY(!mevo::parseIdentity(inputReport("020c050304")));
        QVERIFY(!mevo::parseIdentity(inputReport("0170080100")));
    }

    void statusFields_data()
    {
        const Rows<int, int, int, int> row; // settings, dpi, rate, wheel
        row("lowest", 0x00, 800, 125, 0);
        row("middle", 0x51, 1600, 250, 1);
        row("highest", 0xA2, 2400, 500, 2);
        row("fields of 3: 2400 and the old values", 0xF3, 2400, 777, 5);
    }
    void statusFields()
    {
        const auto [settings, dpi, rate, wheel] = rowOf<int, int, int, int>();
        DeviceState state;
        state.MouseCurrentDataRate = 777;
        state.MouseCurrentWheelSpeed = 5;
        mevo::BatteryCounter battery;
        const auto status = mevo::parseStatus(statusWith(settings, 3));
        QVERIFY(status);
        QVERIFY(!mevo::storeStatus(*status, battery, state));
        QCOMPARE(state.MouseCurrentDPI.load(), dpi);
        QCOMPARE(state.MouseCurrentDataRate.load(), rate);
        QCOMPARE(state.MouseCurrentWheelSpeed.load(), wheel);
        QCOMPARE(state.MouseCurrentLeftKeyValue.load(), 8);
        QCOMPARE(state.MouseCurrentRightKeyValue.load(), 14);
        QCOMPARE(state.PowerLevel.load(), -1); // the battery is not shown
        QVERIFY(!mevo::parseStatus(inputReport("0220")));
        QVERIFY(!mevo::parseStatus(inputReport("0170")));
    }

    void batteryWarningRepeatsAndEnds()
    {
        DeviceState state;
        state.ShowPowerLevel = true;
        state.ShowPowerLow = true;
        mevo::BatteryCounter battery;
        const auto feed = [&](int level) {
            return mevo::storeStatus(*mevo::parseStatus(statusWith(0, level)), battery, state).value_or(0);
        };
        QList<int> calls;
        for (int report = 1; report <= 6 + 596 + 596; ++report) {
            if (const int call = feed(0)) {
                QCOMPARE(call, 17);
                calls.append(report);
            }
        }
        QCOMPARE(calls, (QList<int>{6, 602, 1198}));
        QCOMPARE(state.PowerLevel.load(), 0);
        QCOMPARE(feed(0xFE), 18); // only two bits are the level
        QCOMPARE(state.PowerLevel.load(), 2);
        QCOMPARE(feed(1), 0);

        for (int report = 0; report < 5; ++report) {
            QCOMPARE(feed(0), 0);
        }
        QCOMPARE(feed(3), 0); // five low readings in a row were not enough
        state.ShowPowerLow = false;
        for (int report = 0; report < 20; ++report) {
            QCOMPARE(feed(0), 0);
        }
        QCOMPARE(state.PowerLevel.load(), 0);
    }

    void sendKeys()
    {
        const auto text = [](const std::vector<mevo::InjectionStep> &steps) {
            QStringList parts;
            for (const mevo::InjectionStep &step : steps) {
                parts.append(hex(step.report).mid(6, 8) + QLatin1String(step.wait ? " wait" : ""));
            }
            return parts.join(QLatin1String(", "));
        };
        QCOMPARE(text(mevo::planSendKeys({true, false, true})),
                 "04 04 16 wait, 04 00 00 wait, 04 00 00 wait, "
                 "04 01 28 wait, 04 00 00 wait, 04 00 00 wait"_s);
        QVERIFY(mevo::planSendKeys({}).empty());
    }

    void findingACollection()
    {
        const mevo::CollectionFilter digitizer{0x258A, 0x1016, 0x000D, 1};
        const std::vector<HidEntry> entries{{"/dev/hidraw1", 0x258A, 0x1016, 0x0001, 2},
                                            {"/dev/hidraw2", 0x258A, 0x1016, 0x000D, 1},
                                            {"/dev/hidraw2", 0x258A, 0x1016, 0xFF00, 1},
                                            {"/dev/hidraw9", 0x1234, 0x1016, 0x000D, 1}};
        QCOMPARE(mevo::findCollection(entries, digitizer).path, QByteArray("/dev/hidraw2"));
        QCOMPARE(mevo::findCollection(entries, {}).path, QByteArray("/dev/hidraw9")); // last match wins
        QVERIFY(mevo::findCollection(entries, {0x258A, 0x1016, 0x000C, 1}).path.isEmpty());
        QVERIFY(mevo::findCollection({}, {}).path.isEmpty());
        const std::vector<HidEntry> longPath{{QByteArray(300, 'x'), 1, 1, 1, 1}};
        QCOMPARE(mevo::findCollection(longPath, {}).path.size(), 256);
    }

    void secondReceiver_data()
    {
        const Rows<QList<QByteArray>, bool> row; // paths, second
        const QByteArray lower = "\\\\?\\hid#vid_258a&pid_1016&mi_01&col01#7&1&0&0000";
        row("one", {"/dev/hidraw1"}, false);
        row("same path twice", {"/dev/hidraw1", "/dev/hidraw1"}, false);
        row("two", {"/dev/hidraw1", "/dev/hidraw2"}, true);
        row("two, interface text", {lower, lower}, true);
        row("two, other case", {lower, lower.toUpper()}, false);
        row("other collection", {lower, "\\\\?\\hid#vid_258a&pid_1016&mi_01&col02#7"}, false);
    }
    void secondReceiver()
    {
        const auto [paths, expectedSecond] = rowOf<QList<QByteArray>, bool>();
        std::vector<HidEntry> entries;
        for (const QByteArray &path : paths) {
            entries.push_back({path, 0x258A, 0x1016, 0x000D, 1});
        }
        const auto found = mevo::findCollection(entries, {0x258A, 0x1016, 0x000D, 1});
        QCOMPARE(found.secondReceiver, expectedSecond);
        if (found.secondReceiver) {
            QCOMPARE(found.path, paths.first()); // the walk ends at the second one
        }
    }

    void deviceNames()
    {
        const QByteArray twoCollections =
            QByteArray::fromHex("050d0901a1018501150026ff007508950f09018102a100c0c0"
                                "fe03aaa1a1a1" // a long item, whose data are no items
                                "0600ff0901a10185057508950709 01b102c0");
        QCOMPARE(mevo::topLevelCollections(twoCollections), 2);
        QCOMPARE(mevo::topLevelCollections({}), 0);
        QCOMPARE(mevo::topLevelCollections(QByteArray::fromHex("c0c0a1")), 1);
        QCOMPARE(mevo::topLevelCollections(QByteArray::fromHex("fe")), 0);

        const QStringList names = mevo::hidDeviceNames(0x258A, 0x1016, 1, 2);
        QCOMPARE(names, list({"HID#VID_258A&PID_1016&MI_01&Col01", "HID#VID_258A&PID_1016&MI_01&Col02"}));
        QVERIFY(!mevo::isReceiverName(names.at(0)));
        QVERIFY(mevo::isReceiverName(names.at(1)));
        QVERIFY(mevo::isReceiverName("\\\\?\\hid#vid_258a&pid_1016&mi_01&col02#7&1"_s));
        QCOMPARE(mevo::hidDeviceNames(0x46D, 0xC52B, -1, 1), list({"HID#VID_046D&PID_C52B"}));
    }
};

QTEST_APPLESS_MAIN(TestDeviceReports)
#include "tst_device_reports.moc"
