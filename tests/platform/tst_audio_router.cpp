#include "platform/linux/PulseAudioRouter.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <csignal>

namespace {

QString pactl(const QString &line)
{
    QProcess process;
    process.start(QStringLiteral("pactl"), line.split(QLatin1Char(' ')));
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void addMicrophone(const QString &name, const QString &description)
{
    pactl(QStringLiteral("load-module module-remap-source master=vmic_in.monitor source_name=%1 "
                         "source_properties=device.description=%2")
              .arg(name, description));
}

} // namespace

class AudioRouterTest : public QObject
{
    Q_OBJECT

private slots:
    void listsMicrophonesOnly()
    {
        mevo::PulseAudioRouter router;
        QCOMPARE(router.inputNames(), QStringList{QStringLiteral("Virtual_Microphone")});
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
        addMicrophone(QStringLiteral("own"), QStringLiteral("QMZ_语音"));
        QVERIFY(router.switchDefault(QStringLiteral("QMZ_语音")));
        QCOMPARE(pactl(QStringLiteral("get-default-source")), QStringLiteral("own"));
        QVERIFY(!router.switchDefault(QStringLiteral("missing")));
        QVERIFY(!router.switchDefault(QStringLiteral("vmic_in.monitor")));
        QCOMPARE(pactl(QStringLiteral("get-default-source")), QStringLiteral("own"));
        QVERIFY(router.switchDefault(QStringLiteral("vmic")));
        QCOMPARE(pactl(QStringLiteral("get-default-source")), QStringLiteral("vmic"));
    }

    void tellsTwinsApart()
    {
        mevo::PulseAudioRouter router;
        addMicrophone(QStringLiteral("twin1"), QStringLiteral("Headset"));
        addMicrophone(QStringLiteral("twin2"), QStringLiteral("Headset"));
        QVERIFY(router.inputNames().contains(QStringLiteral("Headset (twin1)")));
        QVERIFY(router.switchDefault(QStringLiteral("Headset (twin2)")));
        QCOMPARE(pactl(QStringLiteral("get-default-source")), QStringLiteral("twin2"));
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
        const bool switched = router.switchDefault(QStringLiteral("vmic"));
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
