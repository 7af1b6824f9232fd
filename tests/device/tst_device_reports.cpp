#include "device/DeviceReports.h"
#include "device/DeviceStatusStore.h"
#include "device/KeyInjection.h"
#include "device/ReceiverDiscovery.h"
#include "device/ReportDispatch.h"
#include "state/DeviceState.h"

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
    return report ? hex(*report) : QStringLiteral("none");
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
    void featureReports_data()
    {
        QTest::addColumn<QString>("built");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const std::optional<FeatureReport> &built,
                            const char *expected) {
            QTest::newRow(name) << hex(built) << QString::fromLatin1(expected);
        };
        row("dpi odd", reports::dpi(1000), "none");
        row("rate odd", reports::dataRate(1000), "none");
        row("wheel odd", reports::wheelSpeed(3), "none");
        row("third key", reports::customKey(3, 8), "none");
        row("key function odd", reports::customKey(1, 256), "none");
        row("ctrl+v", reports::keyDown(mevo::modifierBits(false, true, false, false), 0x19),
            "05 81 04 01 19 00 00 00");
        row("all modifiers, high byte of the key dropped",
            reports::keyDown(mevo::modifierBits(true, true, true, true), 0x128), "05 81 04 0f 28 00 00 00");
        row("shift", reports::keyDown(mevo::modifierBits(true, false, false, false), 0),
            "05 81 04 02 00 00 00 00");
        row("consumer, 12 bits", reports::consumerKeyDown(0xF223), "05 81 06 02 23 00 00 00");
    }
    void featureReports()
    {
        QFETCH(QString, built);
        QTEST(built, "expected");
    }

    void identity()
    {
        const auto identity = mevo::parseIdentity(inputReport("010c05 0304 03 00 0a"));
        QVERIFY(identity);
        QCOMPARE(identity->dongleId, QStringLiteral("0a-03-040305"));
        QCOMPARE(identity->dongleIdDecimal, QStringLiteral("10-03-040305"));
        QCOMPARE(mevo::parseIdentity(inputReport("010cff ffff ff ff ff"))->dongleIdDecimal,
                 QStringLiteral("255-255-2575755"));
        QCOMPARE(mevo::parseIdentity(inputReport("010c"))->dongleIdDecimal,
                 QLatin1String(mevo::kZeroIdentityDecimal));
        QVERIFY(!mevo::parseIdentity(inputReport("020c050304")));
        QVERIFY(!mevo::parseIdentity(inputReport("0170080100")));
    }

    void statusFields_data()
    {
        QTest::addColumn<int>("settings");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("wheel");
        QTest::newRow("lowest") << 0x00 << 800 << 125 << 0;
        QTest::newRow("middle") << 0x51 << 1600 << 250 << 1;
        QTest::newRow("highest") << 0xA2 << 2400 << 500 << 2;
        QTest::newRow("fields of 3: 2400 and the old values") << 0xF3 << 2400 << 777 << 5;
    }
    void statusFields()
    {
        QFETCH(int, settings);
        DeviceState state;
        state.MouseCurrentDataRate = 777;
        state.MouseCurrentWheelSpeed = 5;
        mevo::BatteryCounter battery;
        const auto status = mevo::parseStatus(statusWith(settings, 3));
        QVERIFY(status);
        QVERIFY(!mevo::storeStatus(*status, battery, state));
        QTEST(state.MouseCurrentDPI.load(), "dpi");
        QTEST(state.MouseCurrentDataRate.load(), "rate");
        QTEST(state.MouseCurrentWheelSpeed.load(), "wheel");
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
                 QStringLiteral("04 04 16 wait, 04 00 00 wait, 04 00 00 wait, "
                                "04 01 28 wait, 04 00 00 wait, 04 00 00 wait"));
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
        QTest::addColumn<QList<QByteArray>>("paths");
        QTest::addColumn<bool>("second");
        const QByteArray lower = "\\\\?\\hid#vid_258a&pid_1016&mi_01&col01#7&1&0&0000";
        QTest::newRow("one") << QList<QByteArray>{"/dev/hidraw1"} << false;
        QTest::newRow("same path twice") << QList<QByteArray>{"/dev/hidraw1", "/dev/hidraw1"} << false;
        QTest::newRow("two") << QList<QByteArray>{"/dev/hidraw1", "/dev/hidraw2"} << true;
        QTest::newRow("two, interface text") << QList<QByteArray>{lower, lower} << true;
        QTest::newRow("two, other case") << QList<QByteArray>{lower, lower.toUpper()} << false;
        QTest::newRow("other collection")
            << QList<QByteArray>{lower, "\\\\?\\hid#vid_258a&pid_1016&mi_01&col02#7"} << false;
    }
    void secondReceiver()
    {
        QFETCH(QList<QByteArray>, paths);
        std::vector<HidEntry> entries;
        for (const QByteArray &path : paths) {
            entries.push_back({path, 0x258A, 0x1016, 0x000D, 1});
        }
        const auto found = mevo::findCollection(entries, {0x258A, 0x1016, 0x000D, 1});
        QTEST(found.secondReceiver, "second");
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
        QCOMPARE(names, (QStringList{QStringLiteral("HID#VID_258A&PID_1016&MI_01&Col01"),
                                     QStringLiteral("HID#VID_258A&PID_1016&MI_01&Col02")}));
        QVERIFY(!mevo::isReceiverName(names.at(0)));
        QVERIFY(mevo::isReceiverName(names.at(1)));
        QVERIFY(mevo::isReceiverName(QStringLiteral("\\\\?\\hid#vid_258a&pid_1016&mi_01&col02#7&1")));
        QCOMPARE(mevo::hidDeviceNames(0x46D, 0xC52B, -1, 1),
                 QStringList{QStringLiteral("HID#VID_046D&PID_C52B")});
    }
};

QTEST_APPLESS_MAIN(TestDeviceReports)
#include "tst_device_reports.moc"
