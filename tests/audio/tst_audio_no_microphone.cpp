#include "audio/RecorderFixture.h"

#include <QTest>

namespace {
ScratchHome home;
}

/// A computer without a sound server.
class NoMicrophoneTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { home.remove(QStringLiteral("MEVOSetting.ini")); }

    void pressTellsTheUserAndEnds()
    {
        RecorderFixture f;
        QVERIFY(f.recorder.format().isValid());
        for (int press = 1; press <= 2; ++press) {
            f.recorder.UseTXASRApi = true;
            f.recorder.OnRecordStart();
            QCOMPARE(f.messages().size(), press);
            QVERIFY(f.messages().last().contains(QStringLiteral("打开麦克风设备失败")));
            QVERIFY(f.messages().last().endsWith(QStringLiteral("(3000)")));
            f.recorder.OnReadMore();
            f.recorder.OnRecordStop();
            QTRY_VERIFY(!f.recorder.isOpen());
            QCOMPARE(f.host.sessions.size(), press); // the engine is asked all the same
            QCOMPARE(f.host.sessions.last(), QByteArray());
        }
    }

    void engineFlagsFromSettings()
    {
        home.write(QStringLiteral("MEVOSetting.ini"),
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
        QVERIFY(!f.fakes.log.has(QStringLiteral("token")));
        f.recorder.BaiDuNoStreamApi = true;
        f.recorder.OnRecordStart();
        f.recorder.OnRecordStart();
        QCOMPARE(f.fakes.log.calls(QStringLiteral("token")).size(), 1);
        QVERIFY(!f.recorder.RecordStarting);
    }

    void firstRun_data()
    {
        QTest::addColumn<bool>("device");
        QTest::addColumn<bool>("online");
        QTest::addColumn<bool>("backend");
        QTest::newRow("all there") << true << true << true;
        QTest::newRow("backend away") << true << true << false;
        QTest::newRow("no device") << false << true << true;
        QTest::newRow("no network") << true << false << true;
    }
    void firstRun()
    {
        QFETCH(bool, device);
        QFETCH(bool, online);
        QFETCH(bool, backend);
        home.write(QStringLiteral("MEVOSetting.ini"),
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
        state.SchemaName = QStringLiteral("s");
        AudioRecorder recorder(state, fakes.platform, host);

        const bool applied = device && online;
        const QByteArray settings = home.read(QStringLiteral("MEVOSetting.ini"));
        QCOMPARE(recorder.UseTXASRApi, applied);
        QCOMPARE(recorder.UseXunFeiWebApi, !applied);
        QCOMPARE(state.LocalEnableASR3, !applied);
        QCOMPARE(state.LocalUseASR3Index, applied ? -1 : 2);
        QCOMPARE(settings.contains("FirstRunApp=0"), applied);
        QCOMPARE(settings.contains("LocalUseASR3Index=-1"), applied);
        QCOMPARE(fakes.log.has(QStringLiteral("administrator clear")), applied);
        QCOMPARE(fakes.log.calls(QStringLiteral("sql update s.device_serialid")).size(),
                 applied && backend ? 1 : 0);
    }

    void productMicrophoneIsMadeDefault_data()
    {
        QTest::addColumn<bool>("wanted");
        QTest::addColumn<bool>("xpClass");
        QTest::addColumn<int>("switches");
        QTest::newRow("wanted") << true << false << 1;
        QTest::newRow("not wanted") << false << false << 0;
        QTest::newRow("old system") << true << true << 0;
    }
    void productMicrophoneIsMadeDefault()
    {
        QFETCH(bool, wanted);
        QFETCH(bool, xpClass);
        home.write(QStringLiteral("MEVOSetting.ini"),
                   wanted ? "[MainSetting]\nOnlyUseOurDeviceMic=1\n" : "[MainSetting]\n");
        FakePlatform fakes;
        FakeHost host(fakes.log);
        MainState state;
        fakes.systemFacts->xpClass = xpClass;
        fakes.audioRouter->names = QStringList{QStringLiteral("Built-in"), QStringLiteral("QMZ mic")};
        AudioRecorder recorder(state, fakes.platform, host);
        QTEST(fakes.log.calls(QStringLiteral("audio switch QMZ mic")).size(), "switches");
        QCOMPARE(recorder.switchMicrophone(QStringLiteral("Built-in")), !xpClass);
        QVERIFY(!recorder.switchMicrophone(QStringLiteral("missing")));
    }

    void foreignMicrophoneIsNamedOnlyWithADevice()
    {
        RecorderFixture f;
        QCOMPARE(f.messages().size(), 0);
        f.state.DeviceConnected = true;
        f.recorder.InitMicDevice();
        QCOMPARE(f.messages().size(), 1);
        QVERIFY(f.messages().last().contains(QStringLiteral("正在使用电脑自带麦克风")));
        QVERIFY(f.messages().last().endsWith(QStringLiteral("(2000)")));
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
