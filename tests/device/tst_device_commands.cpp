#include "device/DeviceCommands.h"

#include "base/SettingsFile.h"
#include "device/MouseSettings.h"
#include "state/MainState.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
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
                        fake.log.add("timer start %1"_s.arg(interval));
                        return ++lastTimer;
                    },
                    [this](int id) { fake.log.add("timer kill %1"_s.arg(id)); }, say(),
                    [this] { fake.log.add("leave"_s); },
                    [this](const mevo::InputReport &) { fake.log.add("other report"_s); }})
    {
        fake.hid->entries = FakeHid::receiver();
    }
    decltype(mevo::DeviceLinkHooks::trayMessage) say()
    {
        return [this](const QString &text, mevo::MessageIcon icon, int milliseconds) {
            fake.log.add("tray %1 %2 %3"_s.arg(int(icon)).arg(milliseconds).arg(text));
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
        return label == "前进"_s || label == "后退"_s ? "move"_s : QString();
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
        QVERIFY(link.fake.log.has("timer start 1500"_s));
        QCOMPARE(link.state.HeartbeatTimerId, link.lastTimer);

        link.commands.ReleaseHidDevice();
        QCOMPARE(link.state.HeartbeatTimerId, 0);
        QVERIFY(!link.state.DeviceConnected);
        QVERIFY(link.state.HidInputHandle.load() == nullptr);
        QCOMPARE(link.fake.hid->openHandles.load(), 0);
    }

    void openingFails_data()
    {
        // initResult, pages (usage pages plugged in, each with a path of its own), unopenablePage, result
        const Rows<int, QList<int>, int, int> row;
        row("library", -1, {0x0D, 0xFF00}, 0, -1);
        row("nothing there", 0, {}, 0, -2);
        row("no digitizer", 0, {0xFF00}, 0, -2);
        row("digitizer refused", 0, {0x0D, 0xFF00}, 0x0D, -2);
        row("no vendor collection", 0, {0x0D}, 0, -1);
        row("vendor collection refused", 0, {0x0D, 0xFF00}, 0xFF00, -3);
    }
    void openingFails()
    {
        const auto [initResult, pages, unopenablePage, result] = rowOf<int, QList<int>, int, int>();
        Link link;
        link.fake.hid->initResult = initResult;
        link.fake.hid->entries.clear();
        for (const int page : pages) {
            link.fake.hid->entries.push_back(
                {QByteArray::number(page), 0x258A, 0x1016, static_cast<quint16>(page), 1});
        }
        link.fake.hid->unopenable = {QByteArray::number(unopenablePage)};
        QCOMPARE(link.commands.OpenHidDevice(), result);
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
        QCOMPARE(link.fake.log.calls(), list({"hid init",
                                              "tray 1 5000 您电脑已连接多个本公司产品，暂不能同时支持，"
                                              "请选择一款，在安装配套软件后使用！",
                                              "leave", "hid exit"}));
    }

    void identity_data()
    {
        // pending (a report that was read before the reply), reply, sendResult, dongleId, stored, took
        // (milliseconds), told
        const Rows<QByteArray, QByteArray, int, QString, QString, qint64, QString> row;
        const QString id = "0a-03-040305"_s;
        const QString zeros = "00-00-000000"_s;
        const QString told = "tray 2 3000 请尝试将设备接到到其它USB口再打开软件，如一直显示此信息，"
                             "请与供货商联系(00-00-000000)"_s;
        row("reply", "", kIdentity, 8, id, id, qint64(100), "");
        row("reply second", kKey, kIdentity, 8, id, "", qint64(100), "");
        row("wrong replies", kKey, kKey, 8, "", "", qint64(100), "");
        row("silence", "", "", 8, "", "", qint64(600), "");
        row("send fails", "", kIdentity, -1, "", "", qint64(0), "");
        row("zeros", "", kZeros, 8, zeros, zeros, qint64(100), told);
        row("zeros second", kKey, kZeros, 8, zeros, "", qint64(100), told);
    }
    void identity()
    {
        const auto [pending, reply, sendResult, dongleId, stored, took, told] =
            rowOf<QByteArray, QByteArray, int, QString, QString, qint64, QString>();
        scratchHome.remove("MEVOSetting.ini"_s);
        Link link;
        link.open();
        link.fake.hid->sendResult = sendResult;
        link.fake.hid->identityReply = reply;
        if (!pending.isEmpty()) {
            link.fake.hid->push(pending);
        }
        link.commands.ReadDeviceIdentity();

        QCOMPARE(link.state.DongleID, dongleId);
        QCOMPARE(mevo::SettingsFile().value("DongleID"_s).toString(), stored);
        QCOMPARE(mevo::SettingsFile().value("DongleIDDecimal"_s).toString(), link.state.DongleIDDecimal);
        QCOMPARE(link.state.DongleIDDecimal.isEmpty(),
                 mevo::SettingsFile().value("DongleID"_s).toString().isEmpty());
        QVERIFY(!link.state.DeviceIDBusy);
        QCOMPARE(link.fake.hid->sent(), list({"05 2c 00 00 00 00 00 00"}));
        QCOMPARE(link.fake.time->monotonicMs(), took);
        QCOMPARE(link.fake.log.calls("timer"_s), list({"timer kill 1", "timer start 1000"}));
        QCOMPARE(link.fake.log.calls("tray"_s).join(QString()), told);
        QCOMPARE(link.fake.log.calls("other report"_s).size(), (pending == kKey) + (reply == kKey));
    }

    /// Without blocking: attempts until there is an identity, or nobody wants it any more.
    void identityInTheBackground_data()
    {
        // answersFrom (the attempt that the receiver answers, 0 for none), wantedFor (milliseconds),
        // attempts, took
        const Rows<int, int, int, qint64> row;
        row("at once", 1, 10000, 1, qint64(100));
        row("third attempt", 3, 10000, 3, qint64(2 * 650 + 100));
        row("never", 0, 10000, 4, qint64(4 * 600 + 3 * 50));
        row("not wanted", 1, -1, 0, qint64(0));
        row("no longer wanted", 0, 700, 2, qint64(750));
        row("no longer wanted between two", 2, 620, 1, qint64(650));
    }
    void identityInTheBackground()
    {
        const auto [answersFrom, wantedFor, attempts, took] = rowOf<int, int, int, qint64>();
        Link link;
        link.open();
        const auto sent = [&link] { return link.fake.hid->sent().size(); };
        int done = 0;
        link.commands.ReadDeviceIdentity(
            4, 50,
            [&, from = answersFrom, until = wantedFor] {
                link.fake.hid->identityReply = sent() + 1 == from ? kIdentity : QByteArray();
                return link.fake.time->monotonicMs() <= until;
            },
            [&done] { ++done; });
        while (link.fake.time->pendingCalls() > 0) {
            QCOMPARE(done, 0);
            QCoreApplication::processEvents();
        }
        QCOMPARE(done, 1);
        QCOMPARE(sent(), attempts);
        QCOMPARE(link.fake.time->monotonicMs(), took);
        QCOMPARE(link.fake.log.calls("sleep"_s), QStringList());
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
        QCOMPARE(link.fake.log.calls("sleep 1"_s).size(), 100 + 1);
        QCOMPARE(link.state.DongleID, "0a-03-040305"_s);
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

    void settingsPage_data() { flagRows("with a device", "without one all is written, nothing sent"); }
    void settingsPage()
    {
        const auto [connected] = rowOf<bool>();
        scratchHome.remove("MEVOSetting.ini"_s);
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
        QVERIFY(page.assignKey(mevo::CustomKey::Left, "move"_s));
        QVERIFY(page.assignKey(mevo::CustomKey::Right, "删除"_s));
        QVERIFY(!page.assignKey(mevo::CustomKey::Right, "自定义"_s));
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
        QCOMPARE(link.state.MouseCurrentRightKeyString, "删除"_s);

        link.fake.log.clear();
        QCOMPARE(page.showDongleID(), connected ? "0a-03-040305"_s : QString());
        QCOMPARE(link.state.DongleID, QString());
        QCOMPARE(link.fake.log.has("tray 3 2000 读取DongleID时没有发现设备!"_s), !connected);
        QCOMPARE(link.fake.log.has("sleep 200"_s), connected);
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
        QCOMPARE(link.fake.hid->sent(), list({"05 81 01 00 00 00 00 00"}));
        QVERIFY(link.state.HeartbeatOK);
        link.fake.hid->sendResult = -1;
        link.commands.HeartbeatTimerEvent(timer);
        QVERIFY(!link.state.HeartbeatOK);
    }
};

QTEST_GUILESS_MAIN(TestDeviceCommands)
#include "tst_device_commands.moc"
