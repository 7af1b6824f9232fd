#include "audio/LevelMeter.h"
#include "audio/MicrophoneMeter.h"
#include "audio/RecorderFixture.h"
#include "audio/SoundServer.h"
#include "support/Rows.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

ScratchHome home;

/// Samples without a zero byte, no two near ones alike.
QByteArray waveform(int samples, int seed = 0)
{
    QByteArray bytes(samples * 2, '\0');
    for (int i = 0; i < samples; ++i) {
        bytes[2 * i] = static_cast<char>(1 + (i * 7 + seed) % 251);
        bytes[2 * i + 1] = static_cast<char>(1 + (i * 13 + i / 251 + seed) % 60);
    }
    return bytes;
}

QByteArray stereo(const QByteArray &left, const QByteArray &right)
{
    QByteArray both;
    for (int i = 0; i < left.size(); i += 2) {
        both.append(left.mid(i, 2)).append(right.mid(i, 2));
    }
    return both;
}

/// Resident memory in KiB.
int residentKiB()
{
    QFile status("/proc/self/status"_s);
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray("VmRSS: -1");
    return text.mid(text.indexOf("VmRSS:") + 6).trimmed().split(' ').first().toInt();
}

int openDescriptors()
{
    return QDir("/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
}

} // namespace

class AudioRecorderTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { home.write("MEVOSetting.ini"_s, "[MainSetting]\nUseTXASRApi=1\n"); }

    void collectsASessionExactly()
    {
        RecorderFixture f;
        QCOMPARE(f.fakes.log.calls(), list({"token"}));
        f.recorder.OnRecordStart();
        QVERIFY(f.recorder.isOpen());
        QTRY_VERIFY(f.blocks > 0);
        const QByteArray played = waveform(16000);
        Player player("vmic_in"_s, 1, played);
        QTRY_VERIFY_WITH_TIMEOUT(player.hasEnded(), 10000);
        const int after = f.blocks + 5;
        QTRY_VERIFY(f.blocks > after);

        f.recorder.OnRecordStop();
        QVERIFY(f.recorder.isOpen()); // the engine is called before the microphone closes
        QVERIFY(!f.recorder.BufferReady);
        QCOMPARE(f.host.sessions.size(), 1);
        QVERIFY(f.host.sessions.first().contains(played));
        QCOMPARE(f.host.sessions.first().size(), f.bytes);
        QVERIFY(f.longest <= 2560);
        QTRY_VERIFY(!f.recorder.isOpen());
        QVERIFY(f.fakes.log.indexOf("recognise"_s) < f.fakes.log.indexOf("socket close"_s));
        QVERIFY(f.recorder.BufferReady);
    }

    void keepsTheLastWordWhileTheLoopIsBusy()
    {
        RecorderFixture f;
        f.press();
        const QByteArray played = waveform(8000);
        Player player("vmic_in"_s, 1, played);
        QVERIFY(player.waitForFinished(10000)); // no event of the microphone is handled meanwhile
        f.recorder.OnRecordStop();
        // All but what is still on its way from the sink.
        QVERIFY(f.host.sessions.first().contains(played.left(played.size() * 3 / 4)));
    }

    void twoChannelsGiveTheLeftOne()
    {
        pactl("load-module module-null-sink sink_name=two norewinds=1 rate=16000 channels=2 "
              "format=s16le"_s);
        pactl("load-module module-remap-source source_name=twomic master=two.monitor "
              "channels=2 remix=no"_s);
        pactl("set-default-source twomic"_s);
        {
            RecorderFixture f(true);
            QCOMPARE(f.recorder.format().channelCount(), 2);
            // The server tells of its new default a moment later.
            f.state.DeviceConnected = true;
            QTRY_COMPARE((f.recorder.InitMicDevice(), f.recorder.deviceName()), "twomic"_s);
            f.press();
            const QByteArray left = waveform(8000);
            Player player("two"_s, 2, stereo(left, waveform(8000, 99)));
            QTRY_VERIFY_WITH_TIMEOUT(player.hasEnded(), 10000);
            const int after = f.blocks + 5;
            QTRY_VERIFY(f.blocks > after);
            f.recorder.OnRecordStop();

            // Each block ends in a zero sample; all others are the left channel's.
            const QByteArray heard = f.host.sessions.first();
            QCOMPARE(heard.size(), f.bytes);
            QVERIFY(f.longest <= 1280);
            const int start = heard.indexOf(left.left(40));
            QVERIFY(start >= 0);
            int zeros = 0;
            for (int i = 0; i + 1 < left.size(); i += 2) {
                const QByteArray sample = heard.mid(start + i, 2);
                const bool zero = sample == QByteArray(2, '\0');
                zeros += zero;
                QVERIFY(zero || sample == left.mid(i, 2));
            }
            QVERIFY2(zeros <= f.blocks, qPrintable(QString::number(zeros)));
        }
        pactl("set-default-source vmic"_s);
        RecorderFixture f;
        f.state.DeviceConnected = true;
        QTRY_COMPARE((f.recorder.InitMicDevice(), f.recorder.deviceName()), "vmic"_s);
    }

    /// The level of the settings page: silent in silence, and it moves while one speaks.
    void theMeterHearsTheMicrophone()
    {
        mevo::PulseInputs inputs;
        mevo::MicrophoneMeter meter(inputs);
        int loudest = 0;
        int heard = 0;
        connect(&meter, &mevo::MicrophoneMeter::heard, this, [&](int level) {
            ++heard;
            loudest = qMax(loudest, level);
        });
        QTRY_VERIFY_WITH_TIMEOUT(heard > 0, 10000);
        QCOMPARE(loudest, 0);
        Player player("vmic_in"_s, 1, QByteArray(32000, '\x40')); // half of what a sample can be
        QTRY_VERIFY_WITH_TIMEOUT(loudest > 0, 10000);
        QTRY_COMPARE(loudest, 17); // the root of a half, of 24
        QTRY_VERIFY_WITH_TIMEOUT(player.hasEnded(), 10000);
    }

    /// The settings may be closed at any moment of the opening, and nothing happens within their closing.
    void theMeterMayGoAtOnce()
    {
        mevo::PulseInputs inputs;
        for (int waitMs : {0, 0, 1, 20, 60, 120}) {
            bool within = false;
            {
                const mevo::MicrophoneMeter meter(inputs);
                if (waitMs > 0) {
                    QTest::qWait(waitMs);
                }
                QTimer::singleShot(0, this, [&within] { within = true; });
            }
            QVERIFY(!within);
            QTRY_VERIFY(within);
        }
    }

    void meterHearsWithoutAnEngine()
    {
        RecorderFixture f;
        f.recorder.UseTXASRApi = false;
        f.press();
        QCOMPARE(mevo::meterPeak(f.lastBuffer, f.longest, 20), 0);
        Player player("vmic_in"_s, 1, QByteArray(32000, '\x11'));
        QTRY_COMPARE(mevo::meterPeak(f.lastBuffer, f.longest, 20), 0x1111 * 20 / 50);
        f.recorder.OnRecordStop();
        QCOMPARE(f.host.sessions.size(), 1); // what was said is not lost
        QCOMPARE(f.fakes.log.calls("handed over"_s).size(), 0);
        QCOMPARE(f.lastBuffer.size(), 4096);
        player.kill();
        player.waitForFinished();
    }

    void streamsToXunFei()
    {
        RecorderFixture f;
        f.recorder.UseTXASRApi = false;
        f.recorder.UseXunFeiWebApi = true;
        f.recorder.OnRecordStart();
        QVERIFY(f.fakes.log.has("socket open"_s));
        QTRY_VERIFY(f.blocks > 1);
        QVERIFY(f.host.frames.isEmpty()); // not connected: neither sent nor kept
        f.host.connected = true;
        QTRY_VERIFY(f.host.frames.size() >= 4);
        QCOMPARE(f.host.frames.at(0).status, AudioRecorder::STATUS_FIRST);
        QCOMPARE(f.host.frames.at(1).status, AudioRecorder::STATUS_CONTINUE);
        QCOMPARE(f.host.frames.at(0).block, f.host.frames.at(1).block);
        QCOMPARE(f.host.frames.at(3).status, AudioRecorder::STATUS_CONTINUE);
        QVERIFY(f.host.frames.at(3).block.size() > 0);

        f.recorder.OnRecordStop();
        QCOMPARE(f.recorder.FrameStatus, AudioRecorder::STATUS_LAST);
        QTRY_COMPARE(f.recorder.FrameStatus, AudioRecorder::STATUS_CLOSED);
        QCOMPARE(f.host.frames.last().status, AudioRecorder::STATUS_LAST);
        QCOMPARE(f.host.frames.last().block, QByteArray());
        const int sent = f.host.frames.size();
        const int blocks = f.blocks + 3;
        QTRY_VERIFY(f.blocks > blocks); // open until the engine answers
        QCOMPARE(f.host.frames.size(), sent);
        f.recorder.DeleyCloseMicTimer();
        QVERIFY(!f.recorder.isOpen());
        QVERIFY(f.fakes.log.has("socket close"_s));
    }

    void aStreamWithoutAnAnswerLetsTheMicrophoneGo()
    {
        RecorderFixture f;
        f.recorder.UseTXASRApi = false;
        f.recorder.UseXunFeiWebApi = true;
        f.press();
        f.recorder.OnRecordStop();
        QVERIFY(f.recorder.isOpen());
        QTRY_VERIFY_WITH_TIMEOUT(!f.recorder.isOpen(), AudioRecorder::AnswerTimeout + 3000);
        QVERIFY(f.fakes.log.has("give up"_s));
        QVERIFY(!f.fakes.log.has("socket close"_s)); // the answer may still come

        f.recorder.UseXunFeiWebApi = false; // but not into a session of another engine
        f.recorder.OnRecordStart();
        QVERIFY(f.fakes.log.has("socket close"_s));
    }

    void noStreamOnOldSystems()
    {
        RecorderFixture f;
        f.fakes.systemFacts->xpClass = true;
        f.recorder.UseXunFeiWebApi = true;
        f.recorder.OnRecordStart();
        QVERIFY(!f.fakes.log.has("socket open"_s));
    }

    void onlyIdleEndsASession()
    {
        RecorderFixture f;
        f.recorder.OnRecordStart();
        for (QAudio::State state : {QAudio::ActiveState, QAudio::SuspendedState, QAudio::StoppedState}) {
            f.recorder.OnStateChange(state);
        }
        QVERIFY(f.host.sessions.isEmpty());
        f.recorder.OnStateChange(QAudio::IdleState);
        QCOMPARE(f.host.sessions.size(), 1);
        QTRY_VERIFY(!f.recorder.isOpen());
    }

    /// What a session began with is its own: an engine and a channel count that come in the middle are for
    /// the next one, and a second stop has nothing to hand over.
    void aSessionGoesOnAsItBegan_data()
    {
        flagRows("from the stream to the buffer", "from the buffer to the stream");
    }
    void aSessionGoesOnAsItBegan()
    {
        const auto [streams] = rowOf<bool>();
        RecorderFixture f;
        f.host.connected = true;
        f.recorder.UseTXASRApi = !streams;
        f.recorder.UseXunFeiWebApi = streams;
        f.recorder.OnRecordStart();
        QTRY_VERIFY(f.blocks > 1);
        f.recorder.UseTXASRApi = streams;
        f.recorder.UseXunFeiWebApi = !streams;
        f.state.SimulateDoubleChannel = true;
        f.recorder.InitMicDevice();
        const int heard = f.blocks;
        QTRY_VERIFY(f.blocks > heard + 2);
        f.recorder.OnRecordStop();
        QCOMPARE(f.host.sessions.size(), streams ? 0 : 1);
        QCOMPARE(!f.host.frames.isEmpty(), streams);
        if (!streams) {
            QCOMPARE(f.host.sessions.first().size(), f.bytes);
        }
        f.recorder.OnRecordStop();
        QCOMPARE(f.host.sessions.size(), streams ? 0 : 1);
        f.recorder.DeleyCloseMicTimer();
        QVERIFY(!f.recorder.isOpen());
        f.recorder.OnRecordStart();
        QTRY_VERIFY(f.recorder.isOpen());
        QCOMPARE(f.fakes.log.has("socket open"_s), true);
    }

    void pressDuringARecognitionKeepsItsAudio()
    {
        RecorderFixture f;
        f.recorder.OnRecordStart();
        QTRY_VERIFY(f.bytes > 0);
        int atStart = 0;
        f.host.whileRecognising = [&] {
            // A blocking engine: the press comes before the first session's microphone has closed.
            f.host.whileRecognising = nullptr;
            f.recorder.OnRecordStart();
            atStart = f.bytes;
            QEventLoop loop;
            connect(&f.recorder, &AudioRecorder::SendVolume2MicDlg, &loop, [&] {
                if (f.bytes - atStart > 6400) {
                    loop.quit();
                }
            });
            loop.exec();
        };
        f.recorder.OnRecordStop();
        QVERIFY(f.recorder.isOpen());
        const int heard = f.bytes;
        QTRY_VERIFY(f.bytes > heard); // the first session's close has not hit the second
        f.recorder.OnRecordStop();
        QCOMPARE(f.host.sessions.size(), 2);
        QCOMPARE(f.host.sessions.at(1).size(), f.bytes - atStart);
    }

    void firstDataAfterThePress()
    {
        RecorderFixture f;
        qint64 worst = 0;
        for (int press = 0; press < 5; ++press) {
            QElapsedTimer timer;
            timer.start();
            f.press();
            worst = qMax(worst, timer.elapsed());
            f.recorder.OnRecordStop();
            QTRY_VERIFY(!f.recorder.isOpen());
        }
        qInfo("first data after at most %lld ms", worst);
        QVERIFY(worst < 1000);
    }

    void twoHundredSessionsLeaveNothingBehind()
    {
        RecorderFixture f;
        int memory = 0;
        int descriptors = 0;
        for (int press = 0; press < 220; ++press) {
            if (press == 20) { // the sound libraries have made what they keep
                memory = residentKiB();
                descriptors = openDescriptors();
            }
            f.press();
            f.recorder.OnRecordStop();
            f.host.sessions.clear();
            QTRY_VERIFY(!f.recorder.isOpen());
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        qInfo("200 sessions: %+d KiB, %+d descriptors", residentKiB() - memory,
              openDescriptors() - descriptors);
        QVERIFY(openDescriptors() - descriptors <= 1);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which keep freed memory
        QVERIFY(residentKiB() - memory < 2048);
#endif
    }

    void silentSourceIsReportedOnce()
    {
        RecorderFixture f;
        f.press();
        pactl("suspend-source vmic 1"_s);
        QTRY_COMPARE_WITH_TIMEOUT(f.messages().size(), 1, AudioRecorder::SilenceTimeout + 5000);
        QVERIFY(f.messages().first().contains("打开麦克风设备失败"_s));
        f.recorder.OnReadMore();
        f.recorder.OnRecordStop();
        QTRY_VERIFY(!f.recorder.isOpen());
        QCOMPARE(f.messages().size(), 1);
        pactl("suspend-source vmic 0"_s);
        f.press();
    }

    void removedSourceLeavesTheNextPressWorking()
    {
        RecorderFixture f;
        f.press();
        pactl("unload-module module-remap-source"_s);
        const int removed = f.blocks;
        // The sound server moves the session to another source, or leaves it without data.
        QTRY_VERIFY_WITH_TIMEOUT(f.blocks > removed + 3 || !f.messages().isEmpty(), 10000);
        f.recorder.OnRecordStop();
        QTRY_VERIFY(!f.recorder.isOpen());
        pactl("load-module module-remap-source source_name=vmic master=vmic_in.monitor "
              "channels=1 remix=no"_s);
        pactl("set-default-source vmic"_s);
        f.state.DeviceConnected = true;
        QTRY_COMPARE((f.recorder.InitMicDevice(), f.recorder.deviceName()), "vmic"_s);
        f.press();
    }
};

QTEST_GUILESS_MAIN(AudioRecorderTest)
#include "tst_audio_recorder.moc"
