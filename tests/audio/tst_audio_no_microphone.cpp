#include "audio/RecorderFixture.h"
#include "support/Rows.h"

#include <QTest>

namespace {
ScratchHome home;
}

/// A computer without a sound server.
class NoMicrophoneTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { home.remove("MEVOSetting.ini"_s); }

    void pressTellsTheUserAndEnds()
    {
        RecorderFixture f;
        QVERIFY(f.recorder.format().isValid());
        for (int press = 1; press <= 2; ++press) {
            f.recorder.UseTXASRApi = true;
            f.recorder.OnRecordStart();
            QCOMPARE(f.messages().size(), press);
            QVERIFY(f.messages().last().contains("打开麦克风设备失败"_s));
            QVERIFY(f.messages().last().endsWith("(3000)"_s));
            f.recorder.OnReadMore();
            f.recorder.OnRecordStop();
            QTRY_VERIFY(!f.recorder.isOpen());
            QCOMPARE(f.host.sessions.size(), press); // the engine is asked all the same
            QCOMPARE(f.host.sessions.last(), QByteArray());
        }
    }

    void engineFlagsFromSettings()
    {
        home.write("MEVOSetting.ini"_s,
                   "[MainSetting]\nBaiDuNoStreamApi=1\nUseTXASRApi=0\nUseXunFeiWebApi=true\n"
                   "EnableXunFeiWebApiDwa=1\n");
        RecorderFixture f;
        QVERIFY(f.recorder.BaiDuNoStreamApi);
        QVERIFY(!f.recorder.UseTXASRApi);
        QVERIFY(f.recorder.UseXunFeiWebApi);
        QVERIFY(f.recorder.EnableXunFeiWebApiDwa);
        QCOMPARE(f.recorder.FrameStatus, AudioRecorder::STATUS_FIRST);
        QVERIFY(f.recorder.BaiduTokenRefreshed);
    }

    void tokenIsFetchedAgainOnlyForBaidu()
    {
        RecorderFixture f;
        f.recorder.BaiduTokenRefreshed = false;
        f.fakes.log.clear();
        f.recorder.OnRecordStart();
        QVERIFY(!f.fakes.log.has("token"_s));
        f.recorder.BaiDuNoStreamApi = true;
        f.recorder.OnRecordStart();
        f.recorder.OnRecordStart();
        QCOMPARE(f.fakes.log.calls("token"_s).size(), 1);
        QVERIFY(!f.recorder.RecordStarting);
    }

    void firstRun_data()
    {
        const Rows<bool, bool, bool> row; // device, online, backend
        row("all there", true, true, true);
        row("backend away", true, true, false);
        row("no device", false, true, true);
        row("no network", true, false, true);
    }
    void firstRun()
    {
        const auto [device, online, backend] = rowOf<bool, bool, bool>();
        home.write("MEVOSetting.ini"_s,
                   "[MainSetting]\nFirstRunApp=1\nUseXunFeiWebApi=1\nLocalEnableASR3=1\n");
        FakePlatform fakes;
        FakeHost host(fakes.log);
        MainState state;
        state.FirstRunApp = true;
        state.DeviceConnected = device;
        state.IsOnline = online;
        state.BackendReachable = backend;
        state.LocalEnableASR3 = true;
        state.LocalUseASR3Index = 2;
        state.SchemaName = "s"_s;
        AudioRecorder recorder(state, fakes.platform, host);

        const bool applied = device && online;
        const QByteArray settings = home.read("MEVOSetting.ini"_s);
        QCOMPARE(recorder.UseTXASRApi, applied);
        QCOMPARE(recorder.UseXunFeiWebApi, !applied);
        QCOMPARE(state.LocalEnableASR3, !applied);
        QCOMPARE(state.LocalUseASR3Index, applied ? -1 : 2);
        QCOMPARE(settings.contains("FirstRunApp=0"), applied);
        QCOMPARE(settings.contains("LocalUseASR3Index=-1"), applied);
        QCOMPARE(fakes.log.has("administrator clear"_s), applied);
        QCOMPARE(fakes.log.calls("sql update s.device_serialid"_s).size(), applied && backend ? 1 : 0);
    }

    void productMicrophoneIsMadeDefault_data()
    {
        const Rows<bool, bool, int> row; // wanted, xpClass, switches
        row("wanted", true, false, 1);
        row("not wanted", false, false, 0);
        row("old system", true, true, 0);
    }
    void productMicrophoneIsMadeDefault()
    {
        const auto [wanted, xpClass, switches] = rowOf<bool, bool, int>();
        home.write("MEVOSetting.ini"_s,
                   wanted ? "[MainSetting]\nOnlyUseOurDeviceMic=1\n" : "[MainSetting]\n");
        FakePlatform fakes;
        FakeHost host(fakes.log);
        MainState state;
        fakes.systemFacts->xpClass = xpClass;
        fakes.audioRouter->names = list({"Built-in", "QMZ mic"});
        AudioRecorder recorder(state, fakes.platform, host);
        QCOMPARE(fakes.log.calls("audio switch QMZ mic"_s).size(), switches);
        QCOMPARE(recorder.switchMicrophone("Built-in"_s), !xpClass);
        QVERIFY(!recorder.switchMicrophone("missing"_s));
    }

    void foreignMicrophoneIsNamedOnlyWithADevice()
    {
        RecorderFixture f;
        QCOMPARE(f.messages().size(), 0);
        f.state.DeviceConnected = true;
        f.recorder.InitMicDevice();
        QCOMPARE(f.messages().size(), 1);
        QVERIFY(f.messages().last().contains("正在使用电脑自带麦克风"_s));
        QVERIFY(f.messages().last().endsWith("(2000)"_s));
    }
};

int main(int argc, char *argv[])
{
    qputenv("PULSE_SERVER", "unix:/nonexistent/pulse");
    qputenv("PULSE_CLIENTCONFIG", "/dev/null");
    QCoreApplication application(argc, argv);
    NoMicrophoneTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_audio_no_microphone.moc"
