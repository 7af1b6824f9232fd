#include "platform/linux/PulseAudioRouter.h"
#include "support/Texts.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <csignal>

namespace {

QString pactl(const QString &line)
{
    QProcess process;
    process.start("pactl"_s, line.split(QLatin1Char(' ')));
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void addMicrophone(const QString &name, const QString &description)
{
    pactl("load-module module-remap-source master=vmic_in.monitor source_name=%1 "
          "source_properties=device.description=%2"_s.arg(name, description));
}

} // namespace

class AudioRouterTest : public QObject
{
    Q_OBJECT

private slots:
    void listsMicrophonesOnly()
    {
        mevo::PulseAudioRouter router;
        QCOMPARE(router.inputNames(), QStringList{"Virtual_Microphone"_s});
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 20; ++i) {
            router.inputNames();
        }
        qInfo("a list takes %.1f ms", static_cast<double>(timer.nsecsElapsed()) / 20e6);
    }

    void switchesTheDefault()
    {
        mevo::PulseAudioRouter router;
        addMicrophone("own"_s, "QMZ_语音"_s);
        QVERIFY(router.switchDefault("QMZ_语音"_s));
        QCOMPARE(pactl("get-default-source"_s), "own"_s);
        QVERIFY(!router.switchDefault("missing"_s));
        QVERIFY(!router.switchDefault("vmic_in.monitor"_s));
        QCOMPARE(pactl("get-default-source"_s), "own"_s);
        QVERIFY(router.switchDefault("vmic"_s));
        QCOMPARE(pactl("get-default-source"_s), "vmic"_s);
    }

    void tellsTwinsApart()
    {
        mevo::PulseAudioRouter router;
        addMicrophone("twin1"_s, "Headset"_s);
        addMicrophone("twin2"_s, "Headset"_s);
        QVERIFY(router.inputNames().contains("Headset (twin1)"_s));
        QVERIFY(router.switchDefault("Headset (twin2)"_s));
        QCOMPARE(pactl("get-default-source"_s), "twin2"_s);
    }

    /// Last: it takes the sound server away.
    void waitIsBoundedWithoutAnAnswer()
    {
        const int server = qEnvironmentVariableIntValue("MEVO_DESK_PULSE_PID");
        mevo::PulseAudioRouter router(300);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(kill(server, SIGSTOP), 0);
        const QStringList names = router.inputNames();
        const bool switched = router.switchDefault("vmic"_s);
        const qint64 waited = timer.elapsed();
        QCOMPARE(kill(server, SIGKILL), 0);
        QCOMPARE(names, QStringList());
        QVERIFY(!switched);
        QVERIFY2(waited < 2000, qPrintable(QString::number(waited)));

        QTRY_COMPARE(mevo::PulseAudioRouter().inputNames(), QStringList());
        qputenv("PULSE_SERVER", "unix:/nonexistent/pulse");
        timer.restart();
        QCOMPARE(router.inputNames(), QStringList());
        QVERIFY(timer.elapsed() < 300);
    }
};

QTEST_APPLESS_MAIN(AudioRouterTest)
#include "tst_audio_router.moc"
