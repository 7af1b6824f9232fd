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
const QByteArray kZeros = QByteArray::fromHex("010c");
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
        QVERIFY(link.state.deviceOpen() && link.state.HidInputHandle.load() != nullptr);
        QVERIFY(link.state.HidInputHandle.load() != link.state.HidCommandHandle.load());
        QVERIFY(link.fake.log.has(QStringLiteral("timer start 1500")));
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
        QCOMPARE(link.commands.unopenedPath(),
                 unopenablePage == 0 ? QByteArray() : QByteArray::number(unopenablePage));
        QVERIFY(link.state.HidInputHandle.load() == nullptr);
        QVERIFY(link.state.HidCommandHandle.load() == nullptr);
        QCOMPARE(link.fake.hid->openHandles.load(), 0);
        QCOMPARE(link.state.HeartbeatTimerId, 0);
        QCOMPARE(link.state.DeviceConnected.load(), initResult == 0);

        link.fake.hid->initResult = 0; // the next arrival succeeds
        link.fake.hid->unopenable.clear();
        link.fake.hid->entries = FakeHid::receiver();
        QCOMPARE(link.commands.OpenHidDevice(), 0);
        QCOMPARE(link.commands.unopenedPath(), QByteArray());
    }

    void secondReceiverLeaves()
    {
        Link link;
        for (const mevo::HidEntry &entry : FakeHid::receiver("/dev/hidraw7")) {
            link.fake.hid->entries.push_back(entry);
        }
        QCOMPARE(link.commands.OpenHidDevice(), -2);
        QCOMPARE(link.fake.log.calls(),
                 (QStringList{QStringLiteral("hid init"),
                              QStringLiteral("tray 1 5000 您电脑已连接多个本公司产品，暂不能同时支持，"
                                             "请选择一款，在安装配套软件后使用！"),
                              QStringLiteral("leave"), QStringLiteral("hid exit")}));
    }

    void identity_data()
    {
        QTest::addColumn<QByteArray>("pending"); ///< a report that was read before the reply
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<int>("sendResult");
        QTest::addColumn<QString>("dongleId");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<qint64>("took"); ///< milliseconds
        QTest::addColumn<QString>("told");
        const QString id = QStringLiteral("0a-03-040305");
        const QString zeros = QStringLiteral("00-00-000000");
        const QString told =
            QStringLiteral("tray 2 3000 请尝试将设备接到到其它USB口再打开软件，如一直显示此信息，"
                           "请与供货商联系(00-00-000000)");
        QTest::newRow("reply") << QByteArray() << kIdentity << 8 << id << id << qint64(100) << QString();
        QTest::newRow("reply second")
            << kKey << kIdentity << 8 << id << QString() << qint64(100) << QString();
        QTest::newRow("wrong replies")
            << kKey << kKey << 8 << QString() << QString() << qint64(100) << QString();
        QTest::newRow("silence") << QByteArray() << QByteArray() << 8 << QString() << QString() << qint64(600)
                                 << QString();
        QTest::newRow("send fails") << QByteArray() << kIdentity << -1 << QString() << QString() << qint64(0)
                                    << QString();
        QTest::newRow("zeros") << QByteArray() << kZeros << 8 << zeros << zeros << qint64(100) << told;
        QTest::newRow("zeros second") << kKey << kZeros << 8 << zeros << QString() << qint64(100) << told;
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
        QCOMPARE(mevo::SettingsFile().value(QStringLiteral("DongleIDDecimal")).toString(),
                 link.state.DongleIDDecimal);
        QCOMPARE(link.state.DongleIDDecimal.isEmpty(),
                 mevo::SettingsFile().value(QStringLiteral("DongleID")).toString().isEmpty());
        QVERIFY(!link.state.DeviceIDBusy);
        QCOMPARE(link.fake.hid->sent(), QStringList{QStringLiteral("05 2c 00 00 00 00 00 00")});
        QTEST(link.fake.time->monotonicMs(), "took");
        QCOMPARE(link.fake.log.calls(QStringLiteral("timer")),
                 (QStringList{QStringLiteral("timer kill 1"), QStringLiteral("timer start 1000")}));
        QTEST(link.fake.log.calls(QStringLiteral("tray")).join(QString()), "told");
    }

    /// Without blocking: attempts until there is an identity, or nobody wants it any more.
    void identityInTheBackground_data()
    {
        QTest::addColumn<int>("answersFrom"); ///< the attempt that the receiver answers, 0 for none
        QTest::addColumn<int>("wantedFor");   ///< milliseconds
        QTest::addColumn<int>("attempts");
        QTest::addColumn<qint64>("took");
        QTest::newRow("at once") << 1 << 10000 << 1 << qint64(100);
        QTest::newRow("third attempt") << 3 << 10000 << 3 << qint64(2 * 650 + 100);
        QTest::newRow("never") << 0 << 10000 << 4 << qint64(4 * 600 + 3 * 50);
        QTest::newRow("not wanted") << 1 << -1 << 0 << qint64(0);
        QTest::newRow("no longer wanted") << 0 << 700 << 2 << qint64(750);
        QTest::newRow("no longer wanted between two") << 2 << 620 << 1 << qint64(650);
    }
    void identityInTheBackground()
    {
        QFETCH(int, answersFrom);
        QFETCH(int, wantedFor);
        QFETCH(int, attempts);
        Link link;
        link.open();
        const auto sent = [&link] { return link.fake.hid->sent().size(); };
        int done = 0;
        link.commands.ReadDeviceIdentity(
            4, 50,
            [&] {
                link.fake.hid->identityReply = sent() + 1 == answersFrom ? kIdentity : QByteArray();
                return link.fake.time->monotonicMs() <= wantedFor;
            },
            [&done] { ++done; });
        while (link.fake.time->pendingCalls() > 0) {
            QCOMPARE(done, 0);
            QCoreApplication::processEvents();
        }
        QCOMPARE(done, 1);
        QCOMPARE(sent(), attempts);
        QTEST(link.fake.time->monotonicMs(), "took");
        QCOMPARE(link.fake.log.calls(QStringLiteral("sleep")), QStringList());
        QCOMPARE(link.state.DongleID.isEmpty(), answersFrom == 0 || attempts < answersFrom);
        QVERIFY(!link.state.DeviceIDBusy && link.state.HeartbeatTimerId != 0);
    }

    void identityReadEndsWithTheDevice()
    {
        Link link;
        link.open();
        link.commands.ReadDeviceIdentity(
            4, 50, [] { return true; }, [] { QFAIL("the reading was stopped"); });
        QVERIFY(link.state.DeviceIDBusy);
        link.commands.ReleaseHidDevice();
        while (link.fake.time->pendingCalls() > 0) {
            QCoreApplication::processEvents();
        }
        QVERIFY(!link.state.DeviceIDBusy && link.state.HeartbeatTimerId == 0);
        QCOMPARE(link.fake.hid->sent().size(), 1);
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
