#include "device/DeviceCommands.h"
#include "device/GetHIDDataThread.h"
#include "device/SendHWKeyThread.h"

#include "platform/linux/LinuxTime.h"
#include "state/MainState.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QSemaphore>
#include <QtTest>

#include <unistd.h>

namespace {

ScratchHome scratchHome;

QByteArray inputReport(std::initializer_list<int> bytes)
{
    QByteArray report;
    for (const int byte : bytes) {
        report.append(char(byte));
    }
    return report.leftJustified(16, '\0');
}

QByteArray keyReport(int key, int state)
{
    return inputReport({0x01, 0x70, key, state});
}

QByteArray statusReport(int settings, int battery)
{
    return inputReport({0x01, 0x20, 0, 0, 0, settings, 0, battery});
}

/// A receiver that is gone in the worst way: a read on it never comes back.
class HangingHid : public FakeHid
{
public:
    using FakeHid::FakeHid;
    int readTimeout(mevo::HidHandle, unsigned char *, std::size_t, int) override
    {
        hanging.release();
        for (;;) {
            ::pause();
        }
    }
    QSemaphore hanging;
};

/// Holds every key report back until the test lets it go, one at a time.
class GatedHid : public FakeHid
{
public:
    using FakeHid::FakeHid;
    int sendFeatureReport(mevo::HidHandle handle, const unsigned char *data, std::size_t length) override
    {
        if (data[2] == 0x04) {
            atGate.release();
            gate.acquire();
        }
        return FakeHid::sendFeatureReport(handle, data, length);
    }
    QSemaphore atGate;
    QSemaphore gate;
};

/// A reader on a receiver, and what its signals brought to the main thread, in order.
struct Reading : QObject
{
    explicit Reading(mevo::ReaderPacing pacing = mevo::ReaderPacing::Wait, mevo::Hid *hid = nullptr)
        : reader(hid != nullptr ? *hid : *fake.hid, time, state, pacing)
    {
        state.DeviceConnected = true;
        state.VoiceTypeMode = true;
        state.IsOnline = true;
        reader.InputHandle = fake.hid->openPath("/dev/hidraw3");
        const auto key = [this](const QString &to) {
            return [this, to](const char *report) {
                heard.append(to + QString::fromLatin1(QByteArray(report, 16).toHex(' ').mid(6, 5)));
            };
        };
        connect(&reader, &GetHIDDataThread::returnHidKeyResult, this, key("session "_s));
        connect(&reader, &GetHIDDataThread::returnHidKeyResult2Trans, this, key("translation "_s));
        connect(&reader, &GetHIDDataThread::HidKeyRefused, this, key("refused "_s));
        connect(&reader, &GetHIDDataThread::CallMainFunctionSignal, this,
                [this](int index) { heard.append("main %1"_s.arg(index)); });
        connect(&reader, &GetHIDDataThread::CallMicDlgFunctionSignal, this,
                [this](int index) { heard.append("dialog %1"_s.arg(index)); });
        connect(&reader, &GetHIDDataThread::OfflineWarning, this, [this] { heard.append("offline"_s); });
        connect(&reader, &GetHIDDataThread::StartStopRecordTimer, this, [this] { heard.append("timer"_s); });
    }
    ~Reading() override
    {
        if (!reader.isFinished()) {
            reader.StopReader();
        }
    }

    FakePlatform fake;
    mevo::LinuxTime time;
    MainState state;
    QStringList heard;
    GetHIDDataThread reader;
};

} // namespace

class TestDeviceThreads : public QObject
{
    Q_OBJECT

private slots:
    void reportsBecomeSignals_data()
    {
        const Rows<int> row; // pacing
        row("wait", int(mevo::ReaderPacing::Wait));
        row("poll", int(mevo::ReaderPacing::Poll));
    }
    void reportsBecomeSignals()
    {
        const auto [pacing] = rowOf<int>();
        Reading r(static_cast<mevo::ReaderPacing>(pacing));
        r.state.ShowPowerLevel = true;
        r.state.ShowPowerLow = true;
        r.reader.start(QThread::InheritPriority);
        r.fake.hid->push(keyReport(8, 1));
        r.fake.hid->push(keyReport(8, 0));
        r.fake.hid->push(keyReport(6, 1));
        r.fake.hid->push("\x01"); // a report that breaks off
        for (int i = 0; i < 6; ++i) {
            r.fake.hid->push(statusReport(0x51, 0));
        }
        QTRY_COMPARE(r.heard, list({"session 08 01", "session 08 00", "dialog 6", "main 21", "session 06 01",
                                    "main 17"}));
        QCOMPARE(r.state.MouseCurrentDPI.load(), 1600);
        QVERIFY(r.state.LowPowerShown);

        r.heard.clear();
        r.state.KeyDownBusy = true;
        r.state.QuickReleaseCount = 2;
        r.state.IsOnline = false;
        r.fake.hid->push(keyReport(14, 0));
        QTRY_COMPARE(r.heard, list({"offline", "refused 0e 00", "main 22", "timer", "main 22"}));
        r.state.ResultIdle = false;
        r.state.QuickReleaseRun = 3;
        r.reader.TimeOutStopRecord();
        QVERIFY(r.state.ResultIdle);
        QCOMPARE(r.state.QuickReleaseCount + r.state.QuickReleaseRun, 0);

        r.heard.clear();
        r.state.DelimitTranslation = true;
        r.fake.hid->push(keyReport(1, 1));
        QTRY_COMPARE(r.heard, list({"translation 01 01"}));
        QVERIFY(r.reader.StopReader());
    }

    /// The queued call may run long after its report: many more came, and the reader is gone.
    void reportsOutliveTheReader()
    {
        FakePlatform fake;
        mevo::LinuxTime time;
        MainState state;
        state.DeviceConnected = true;
        auto reader = std::make_unique<GetHIDDataThread>(*fake.hid, time, state);
        reader->InputHandle = fake.hid->openPath("/dev/hidraw3");
        QList<int> states;
        std::atomic<int> read{0};
        QObject receiver;
        connect(reader.get(), &GetHIDDataThread::returnHidKeyResult, &receiver,
                [&](const char *report) { states.append(report[3]); });
        connect(
            reader.get(), &GetHIDDataThread::returnHidKeyResult, reader.get(), [&] { ++read; },
            Qt::DirectConnection);
        QList<int> expected;
        for (int i = 0; i < 200; ++i) {
            fake.hid->push(keyReport(8, i % 100));
            expected.append(i % 100);
        }
        reader->start();
        while (read < 200) {
            QThread::yieldCurrentThread();
        }
        QVERIFY(reader->StopReader());
        reader.reset();
        QTRY_COMPARE(states, expected);
    }

    void staysAwayAndComesBack_data()
    {
        const Rows<QString> row; // why
        for (const char *why : {"no handle", "device gone", "identity is read"}) {
            row(why, QString::fromLatin1(why));
        }
    }
    /// What keeps the reader from reading neither ends it nor makes it spin; it goes on afterwards.
    void staysAwayAndComesBack()
    {
        const auto [why] = rowOf<QString>();
        const bool gone = why == "device gone"_s;
        Reading r;
        const mevo::HidHandle handle = r.reader.InputHandle;
        r.state.DeviceIDBusy = why == "identity is read"_s;
        r.reader.InputHandle = why == "no handle"_s ? nullptr : handle;
        r.fake.hid->gone = gone;
        r.fake.hid->push(keyReport(8, 1));
        QElapsedTimer elapsed;
        elapsed.start();
        r.reader.start();
        if (gone) {
            QTRY_VERIFY(r.fake.hid->reads >= 5);
            QVERIFY(elapsed.elapsed() >= 60); // a pause after each failed read
        }
        QCOMPARE(r.heard, QStringList());
        r.state.DeviceIDBusy = false;
        r.reader.InputHandle = handle;
        r.fake.hid->gone = false;
        QTRY_COMPARE(r.heard, list({"session 08 01"}));
        QVERIFY(r.reader.StopReader());
    }

    void stopsAtOnceWithoutADevice()
    {
        Reading r;
        r.state.DeviceConnected = false;
        r.fake.hid->push(keyReport(8, 1));
        QElapsedTimer elapsed;
        elapsed.start();
        r.reader.start();
        QVERIFY(r.reader.StopReader());
        QVERIFY(elapsed.elapsed() < 900); // the pause for a missing device lasts 1000 ms
        QCOMPARE(r.fake.hid->reads.load(), 0);
    }

    void stopWhileReadHangs()
    {
        // Never freed: a terminated thread gives the thread sanitizer no sign that it has ended.
        auto &hid = *new HangingHid(*new CallLog);
        auto &r = *new Reading(mevo::ReaderPacing::Wait, &hid);
        r.reader.start();
        QVERIFY(hid.hanging.tryAcquire(1, 5000));
        QVERIFY(r.state.ReaderInRead);
        QTest::ignoreMessage(QtWarningMsg, "the device reader hangs in a read and is terminated");
        QVERIFY(r.reader.StopReader(100));
        QVERIFY(r.reader.isFinished());
        QVERIFY(!r.state.ReaderInRead);
    }

    void identityIsNotReadAway()
    {
        Reading r;
        DeviceCommands commands(r.fake.platform, r.state,
                                {[](int) { return 1; }, [](int) {},
                                 [](const QString &, mevo::MessageIcon, int) {}, [] {},
                                 [&r](const mevo::InputReport &report) { r.reader.takeOver(report); }});
        r.fake.hid->entries = FakeHid::receiver();
        QCOMPARE(commands.OpenHidDevice(), 0);
        r.reader.InputHandle = r.state.HidInputHandle.load();
        r.reader.start();
        r.fake.platform.time = std::make_unique<mevo::LinuxTime>(); // waiting for the reader takes real time
        r.fake.hid->identityReply = QByteArray::fromHex("010c050304030 00a");
        for (int i = 0; i < 5; ++i) {
            r.state.DongleID.clear();
            commands.ReadDeviceIdentity();
            QCOMPARE(r.state.DongleID, "0a-03-040305"_s);
        }
        r.fake.hid->push(keyReport(8, 1));
        QTRY_COMPARE(r.heard, list({"session 08 01"}));
        r.fake.hid->identityReply = keyReport(8, 0); // nor is a key that goes up meanwhile
        commands.ReadDeviceIdentity();
        QTRY_COMPARE(r.heard, list({"session 08 01", "session 08 00"}));
    }

    void typedCombination_data()
    {
        // consumer, key, immediateSend, clipboardFilled, sent, waits
        const Rows<bool, int, bool, bool, QStringList, int> row;
        const QString up = "05 81 04 00 00 00 00 00"_s;
        const QString consumerUp = "05 81 06 00 00 00 00 00"_s;
        const QStringList paste{"05 81 04 01 19 00 00 00"_s, up, up};
        const QStringList enter{"05 81 04 00 28 00 00 00"_s, up, up};
        row("paste", false, 0x19, false, true, paste, 2);
        row("paste and send", false, 0x19, true, true, paste + enter, 5);
        row("empty clipboard", false, 0x19, false, false, paste, 2);
        row("modifiers alone", false, 0, true, true, {"05 81 04 01 00 00 00 00", up, up}, 3);
        row("consumer key", true, 0x1B6, true, true, {"05 81 06 01 b6 00 00 00", consumerUp, consumerUp}, 3);
    }
    void typedCombination()
    {
        const auto [consumer, key, immediateSend, clipboardFilled, sent, expectedWaits] =
            rowOf<bool, int, bool, bool, QStringList, int>();
        FakePlatform fake;
        MainState state;
        state.DeviceConnected = true;
        state.Asr2ScreenIntervalTime = 70;
        state.VoiceImmediateSend = immediateSend;
        state.VoiceImmediateSend_Enter = true;
        if (clipboardFilled) {
            fake.clipboard->setText("text"_s);
        }
        fake.log.clear();
        const auto queue = std::make_shared<mevo::KeyInjectionQueue>(state.HidBusy);
        SendHWKeyThread thread(fake.platform, state, queue,
                               mevo::KeyCombination{false, true, false, false, consumer, key});
        std::atomic<bool> busyAtSignal{true};
        connect(
            &thread, &SendHWKeyThread::HeartbeatWanted, &thread, [&] { busyAtSignal = state.HidBusy.load(); },
            Qt::DirectConnection);
        QVERIFY(state.HidBusy);
        thread.start(QThread::InheritPriority);
        QVERIFY(thread.wait());
        QVERIFY(!busyAtSignal);
        QVERIFY(!state.HidBusy);

        QCOMPARE(fake.hid->sent(), sent);
        QStringList waits = fake.log.calls("sleep "_s);
        QCOMPARE(fake.log.calls().first(), "sleep 70"_s);
        waits.removeFirst();
        QCOMPARE(waits.size(), expectedWaits);
        int total = 70;
        for (const QString &wait : waits) {
            const int milliseconds = wait.mid(6).toInt();
            QVERIFY2(milliseconds >= 50 && milliseconds <= 59, qPrintable(wait));
            total += milliseconds;
        }
        // 101 polls of the clipboard at 10 microseconds when it stays empty
        QCOMPARE(fake.time->monotonicMs(), qint64(total + (clipboardFilled ? 0 : 1)));
        // every report but one that nothing follows is followed by its pause
        const QStringList calls = fake.log.calls();
        QVERIFY(calls.at(1).startsWith(QLatin1String("hid send")));
        QVERIFY(calls.at(2).startsWith(QLatin1String("sleep")));
    }

    /// Combinations that run at once take turns in the order they were asked for, HidBusy lasts until
    /// the last has ended, and the receiver hears a heartbeat afterwards.
    void combinationsTakeTurns()
    {
        FakePlatform fake;
        auto gated = std::make_unique<GatedHid>(fake.log);
        GatedHid &hid = *gated;
        hid.entries = FakeHid::receiver();
        fake.platform.hid = std::move(gated);
        MainState state;
        auto commands = std::make_unique<DeviceCommands>(
            fake.platform, state,
            mevo::DeviceLinkHooks{[](int) { return 1; }, [](int) {},
                                  [](const QString &, mevo::MessageIcon, int) {}, [] {}});
        QCOMPARE(commands->OpenHidDevice(), 0);
        QStringList expected;
        for (int key = 0x10; key < 0x1A; ++key) {
            commands->SendHWKey(false, true, false, false, false, key);
            expected << "05 81 04 01 %1 00 00 00"_s.arg(key, 2, 16, QLatin1Char('0'))
                     << "05 81 04 00 00 00 00 00"_s
                     << "05 81 04 00 00 00 00 00"_s;
        }
        for (int report = 0; report < expected.size(); ++report) {
            QVERIFY(hid.atGate.tryAcquire(1, 5000));
            QVERIFY(state.HidBusy);
            QVERIFY(!commands->SendHeartbeat());
            QVERIFY(!hid.atGate.tryAcquire(1, 0)); // nobody else is at the device
            hid.gate.release();
        }
        const QString heartbeat = "05 81 01 00 00 00 00 00"_s;
        QTRY_VERIFY(hid.sent().contains(heartbeat));
        QVERIFY(!state.HidBusy);
        QStringList sent = hid.sent();
        sent.removeAll(heartbeat);
        QCOMPARE(sent, expected);

        state.VoiceImmediateSend_AltS = true;
        commands->SendImmediateKeys();
        QVERIFY(hid.atGate.tryAcquire(1, 5000));
        state.DeviceConnected = false; // pulled out between two reports: the rest is left out
        hid.gate.release(3);
        commands.reset(); // waits for the injection, which uses the platform
        QVERIFY(!state.HidBusy);
        QCOMPARE(hid.sent().last(), "05 81 04 04 16 00 00 00"_s);
    }

    void injectionThatNeverRan()
    {
        FakePlatform fake;
        MainState state;
        const auto queue = std::make_shared<mevo::KeyInjectionQueue>(state.HidBusy);
        {
            SendHWKeyThread thread(fake.platform, state, queue, mevo::KeyCombination{});
            QVERIFY(state.HidBusy);
            QVERIFY(!queue->waitIdle(1));
        }
        QVERIFY(!state.HidBusy);
        QVERIFY(queue->waitIdle(0));
    }
};

QTEST_GUILESS_MAIN(TestDeviceThreads)
#include "tst_device_threads.moc"
