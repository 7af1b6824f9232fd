#include "device/DeviceCommands.h"

#include "base/SettingsFile.h"
#include "device/MouseSettings.h"
#include "state/MainState.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"

#include <QTranslator>
#include <QtTest>

namespace {

ScratchHome scratchHome;

const QByteArray kIdentity = QByteArray::fromHex("010c050304030 00a0000000000000000");
const QByteArray kKey = QByteArray::fromHex("01700801000000000000000000000000");

/// The command class on a fake platform; its timers and messages go to the platform's call log.
struct Link
{
    Link()
        : commands(fake.platform, state,
                   {[this](int interval) {
                        fake.log.add(QStringLiteral("timer start %1").arg(interval));
                        return ++lastTimer;
                    },
                    [this](int id) { fake.log.add(QStringLiteral("timer kill %1").arg(id)); }, say(),
                    [this] { fake.log.add(QStringLiteral("leave")); }})
    {
        fake.hid->entries = FakeHid::receiver();
    }
    decltype(mevo::DeviceLinkHooks::trayMessage) say()
    {
        return [this](const QString &text, mevo::MessageIcon icon, int milliseconds) {
            fake.log.add(QStringLiteral("tray %1 %2 %3").arg(int(icon)).arg(milliseconds).arg(text));
        };
    }
    void open()
    {
        QCOMPARE(commands.OpenHidDevice(), 0);
        fake.log.clear();
    }

    FakePlatform fake;
    MainState state;
    int lastTimer = 0;
    DeviceCommands commands;
};

/// A language in which forward and back are one word.
class SameLabels : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *text, const char *, int) const override
    {
        const QString label = QString::fromUtf8(text);
        return label == QStringLiteral("前进") || label == QStringLiteral("后退") ? QStringLiteral("move")
                                                                                  : QString();
    }
};

} // namespace

class TestDeviceCommands : public QObject
{
    Q_OBJECT

private slots:
    void opening()
    {
        Link link;
        link.state.VoiceIntervalTime = 1500;
        QCOMPARE(link.commands.OpenHidDevice(), 0);
        QVERIFY(link.state.DeviceConnected);
        QVERIFY(link.state.HidInputHandle.load() != nullptr);
        QVERIFY(link.state.HidCommandHandle.load() != nullptr);
        QVERIFY(link.state.HidInputHandle.load() != link.state.HidCommandHandle.load());
        QCOMPARE(link.fake.log.calls(),
                 (QStringList{QStringLiteral("hid init"), QStringLiteral("hid open /dev/hidraw3"),
                              QStringLiteral("hid open /dev/hidraw3"), QStringLiteral("timer start 1500")}));
        QCOMPARE(link.state.HeartbeatTimerId, link.lastTimer);

        link.commands.ReleaseHidDevice();
        QCOMPARE(link.state.HeartbeatTimerId, 0);
        QVERIFY(!link.state.DeviceConnected);
        QVERIFY(link.state.HidInputHandle.load() == nullptr);
        QCOMPARE(link.fake.hid->openHandles.load(), 0);
    }

    void openingFails_data()
    {
        QTest::addColumn<int>("initResult");
        QTest::addColumn<QList<int>>("pages"); ///< usage pages plugged in, each with a path of its own
        QTest::addColumn<int>("unopenablePage");
        QTest::addColumn<int>("result");
        QTest::newRow("library") << -1 << QList<int>{0x0D, 0xFF00} << 0 << -1;
        QTest::newRow("nothing there") << 0 << QList<int>{} << 0 << -2;
        QTest::newRow("no digitizer") << 0 << QList<int>{0xFF00} << 0 << -2;
        QTest::newRow("digitizer refused") << 0 << QList<int>{0x0D, 0xFF00} << 0x0D << -2;
        QTest::newRow("no vendor collection") << 0 << QList<int>{0x0D} << 0 << -1;
        QTest::newRow("vendor collection refused") << 0 << QList<int>{0x0D, 0xFF00} << 0xFF00 << -3;
    }
    void openingFails()
    {
        QFETCH(int, initResult);
        QFETCH(QList<int>, pages);
        QFETCH(int, unopenablePage);
        Link link;
        link.fake.hid->initResult = initResult;
        link.fake.hid->entries.clear();
        for (const int page : pages) {
            link.fake.hid->entries.push_back(
                {QByteArray::number(page), 0x258A, 0x1016, static_cast<quint16>(page), 1});
        }
        link.fake.hid->unopenable = {QByteArray::number(unopenablePage)};
        QTEST(link.commands.OpenHidDevice(), "result");
        QVERIFY(link.state.HidInputHandle.load() == nullptr);
        QVERIFY(link.state.HidCommandHandle.load() == nullptr);
        QCOMPARE(link.fake.hid->openHandles.load(), 0);
        QCOMPARE(link.state.HeartbeatTimerId, 0);
        QCOMPARE(link.state.DeviceConnected.load(), initResult == 0);

        link.fake.hid->initResult = 0; // the next arrival succeeds
        link.fake.hid->unopenable.clear();
        link.fake.hid->entries = FakeHid::receiver();
        QCOMPARE(link.commands.OpenHidDevice(), 0);
    }

    void secondReceiverLeaves()
    {
        Link link;
        for (const mevo::HidEntry &entry : FakeHid::receiver("/dev/hidraw7")) {
            link.fake.hid->entries.push_back(entry);
        }
        QCOMPARE(link.commands.OpenHidDevice(), -2);
        QCOMPARE(link.fake.log.calls(QStringLiteral("tray")),
                 QStringList{QStringLiteral("tray 1 5000 您电脑已连接多个本公司产品，暂不能同时支持，"
                                            "请选择一款，在安装配套软件后使用！")});
        QCOMPARE(link.fake.log.calls(QStringLiteral("leave")).size(), 1);
        QCOMPARE(link.fake.log.calls(QStringLiteral("hid open")), QStringList());
    }

    void identity_data()
    {
        QTest::addColumn<QByteArray>("pending"); ///< a report that was read before the reply
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<int>("sendResult");
        QTest::addColumn<QString>("dongleId");
        QTest::addColumn<QString>("stored");
        const QString id = QStringLiteral("0a-03-040305");
        QTest::newRow("reply") << QByteArray() << kIdentity << 8 << id << id;
        QTest::newRow("reply second") << kKey << kIdentity << 8 << id << QString();
        QTest::newRow("wrong replies") << kKey << kKey << 8 << QString() << QString();
        QTest::newRow("silence") << QByteArray() << QByteArray() << 8 << QString() << QString();
        QTest::newRow("send fails") << QByteArray() << kIdentity << -1 << QString() << QString();
    }
    void identity()
    {
        QFETCH(QByteArray, pending);
        QFETCH(QByteArray, reply);
        QFETCH(int, sendResult);
        scratchHome.remove(QStringLiteral("MEVOSetting.ini"));
        Link link;
        link.open();
        link.fake.hid->sendResult = sendResult;
        link.fake.hid->identityReply = reply;
        if (!pending.isEmpty()) {
            link.fake.hid->push(pending);
        }
        link.commands.ReadDeviceIdentity();

        QTEST(link.state.DongleID, "dongleId");
        QTEST(mevo::SettingsFile().value(QStringLiteral("DongleID")).toString(), "stored");
        const bool complete = mevo::SettingsFile().contains(QStringLiteral("DongleIDDecimal"));
        QCOMPARE(link.state.DongleIDDecimal, complete ? QStringLiteral("10-03-040305") : QString());
        QVERIFY(!link.state.DeviceIDBusy);
        QStringList expected{QStringLiteral("timer kill 1"),
                             QStringLiteral("hid send 05 2c 00 00 00 00 00 00")};
        if (sendResult > 0) {
            expected.append(QStringLiteral("sleep 100"));
        }
        QCOMPARE(link.fake.log.calls(), expected + QStringList{QStringLiteral("timer start 1000")});
        QCOMPARE(link.fake.log.calls(QStringLiteral("tray")), QStringList());
    }

    void zeroIdentityIsTold_data()
    {
        QTest::addColumn<bool>("second"); ///< the reply comes behind another report
        QTest::newRow("first reply") << false;
        QTest::newRow("second reply") << true;
    }
    void zeroIdentityIsTold()
    {
        Link link;
        link.open();
        QFETCH(bool, second);
        if (second) {
            link.fake.hid->push(kKey);
        }
        link.fake.hid->identityReply = QByteArray::fromHex("010c");
        link.commands.ReadDeviceIdentity();
        QCOMPARE(link.state.DongleID, QStringLiteral("00-00-000000"));
        QCOMPARE(link.fake.log.calls(QStringLiteral("tray")),
                 QStringList{QStringLiteral("tray 2 3000 请尝试将设备接到到其它USB口再打开软件，如一直显示此"
                                            "信息，请与供货商联系(00-00-000000)")});
    }

    void identityWaitsForTheReader()
    {
        Link link;
        link.open();
        link.state.ReaderInRead = true; // a reader that never leaves its read delays it, but not for ever
        link.fake.hid->identityReply = kIdentity;
        link.commands.ReadDeviceIdentity();
        QCOMPARE(link.fake.log.calls(QStringLiteral("sleep 1")).size(), 100 + 1);
        QCOMPARE(link.state.DongleID, QStringLiteral("0a-03-040305"));
        link.fake.log.clear();
        link.state.DeviceIDBusy = true;
        link.commands.ReadDeviceIdentity();
        QCOMPARE(link.fake.log.calls(), QStringList());
    }

    void commandsNeedADevice()
    {
        Link link;
        const QList<std::function<bool()>> commands{
            [&] { return link.commands.SetMouseDPI(1600); },
            [&] { return link.commands.SetMouseDataRate(500); },
            [&] { return link.commands.SetMouseWheelSpeed(1); },
            [&] { return link.commands.SetMouseKey(2, 15); },
            [&] { return link.commands.MicLatchOn(); },
            [&] { return link.commands.MicLatchOff(); },
            [&] { return link.commands.DeviceGoodbye(); },
            [&] { return link.commands.ResetDeviceKeys(); },
            [&] { return link.commands.RequestMouseID(); },
            [&] { return link.commands.SendHeartbeat(); },
            [&] { return link.commands.SendKeyReport(1, 6); },
        };
        const auto run = [&] {
            int sent = 0;
            for (const auto &command : commands) {
                sent += command() ? 1 : 0;
            }
            return sent;
        };
        QCOMPARE(run(), 0);
        link.commands.ReadDeviceIdentity();
        link.commands.SendHWKey(false, true, false, false, false, 0x19);
        link.commands.SendImmediateKeys();
        QCOMPARE(link.fake.log.calls(), QStringList());
        QVERIFY(!link.state.HidBusy);

        link.open();
        QCOMPARE(run(), commands.size());
        QVERIFY(!link.state.HidBusy);
        QVERIFY(!link.commands.SetMouseDPI(1234));
        link.fake.hid->sendResult = -1;
        QCOMPARE(run(), 0);
    }

    void settingsPage_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::newRow("with a device") << true;
        QTest::newRow("without one all is written, nothing sent") << false;
    }
    void settingsPage()
    {
        QFETCH(bool, connected);
        scratchHome.remove(QStringLiteral("MEVOSetting.ini"));
        Link link;
        link.fake.hid->identityReply = kIdentity;
        if (connected) {
            link.open();
        }
        SameLabels sameLabels;
        QCoreApplication::installTranslator(&sameLabels);
        mevo::MouseSettings page(link.commands, link.state, *link.fake.time, link.say());
        page.choose(mevo::mouseDPI, 0);
        page.choose(mevo::mouseDataRate, 2);
        page.choose(mevo::mouseWheelSpeed, 0);
        page.choose(mevo::mouseWheelSpeed, 3);
        QVERIFY(page.assignKey(mevo::CustomKey::Left, QStringLiteral("move")));
        QVERIFY(page.assignKey(mevo::CustomKey::Right, QStringLiteral("删除")));
        QVERIFY(!page.assignKey(mevo::CustomKey::Right, QStringLiteral("自定义")));
        QCOMPARE(link.fake.hid->sent().size(), connected ? 5 : 0);

        const QList<QPair<const char *, const char *>> written{
            {"MouseCurrentDPI", "800"},
            {"MouseCurrentDataRate", "500"},
            {"MouseCurrentWheelSpeed", "0"},
            {"MouseCurrentLeftKeyString", "move"},
            {"MouseCurrentLeftKeyValue", "11"}, // the later one of the two rows of that name
            {"MouseCurrentRightKeyString", "删除"},
            {"MouseCurrentRightKeyValue", "15"}};
        for (const auto &pair : written) {
            QCOMPARE(mevo::SettingsFile().value(QLatin1String(pair.first)).toString(),
                     QString::fromUtf8(pair.second));
        }
        QCOMPARE(link.state.MouseCurrentDPI.load(), 800);
        QCOMPARE(link.state.MouseCurrentDataRate.load(), 500);
        QCOMPARE(link.state.MouseCurrentWheelSpeed.load(), 0);
        QCOMPARE(link.state.MouseCurrentLeftKeyValue.load(), 11);
        QCOMPARE(link.state.MouseCurrentRightKeyString, QStringLiteral("删除"));

        link.fake.log.clear();
        QCOMPARE(page.showDongleID(), connected ? QStringLiteral("0a-03-040305") : QString());
        QCOMPARE(link.state.DongleID, QString());
        QCOMPARE(link.fake.log.has(QStringLiteral("tray 3 2000 读取DongleID时没有发现设备!")), !connected);
        QCOMPARE(link.fake.log.has(QStringLiteral("sleep 200")), connected);
    }

    void batteryPictures()
    {
        QCOMPARE(mevo::batteryPicture(0), QStringLiteral(":/rec/PowerLevel0.png"));
        QCOMPARE(mevo::batteryPicture(3), QStringLiteral(":/rec/PowerLevel3.png"));
        QCOMPARE(mevo::batteryPicture(-1), QString());
    }

    void heartbeat()
    {
        Link link;
        link.open();
        const int timer = link.state.HeartbeatTimerId;
        link.commands.HeartbeatTimerEvent(timer + 1);
        link.state.DeviceIDBusy = true;
        link.commands.HeartbeatTimerEvent(timer);
        link.state.DeviceIDBusy = false;
        link.state.HidBusy = true;
        link.commands.HeartbeatTimerEvent(timer);
        link.state.HidBusy = false;
        link.state.ASRFuncClosed = true;
        link.commands.HeartbeatTimerEvent(timer);
        link.state.ASRFuncClosed = false;
        QCOMPARE(link.fake.hid->sent(), QStringList());
        link.commands.HeartbeatTimerEvent(timer);
        QCOMPARE(link.fake.hid->sent(), QStringList{QStringLiteral("05 81 01 00 00 00 00 00")});
        QVERIFY(link.state.HeartbeatOK);
        link.fake.hid->sendResult = -1;
        link.commands.HeartbeatTimerEvent(timer);
        QVERIFY(!link.state.HeartbeatOK);
    }
};

QTEST_GUILESS_MAIN(TestDeviceCommands)
#include "tst_device_commands.moc"
