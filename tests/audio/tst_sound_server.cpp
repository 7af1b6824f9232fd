#include "audio/MicrophoneMeter.h"
#include "audio/RecorderFixture.h"
#include "audio/SoundServer.h"
#include "support/Rows.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

namespace {

ScratchHome home;

} // namespace

/// The sound server comes late, goes, hangs and comes back, and the program stays.
class SoundServerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { home.write("MEVOSetting.ini"_s, "[MainSetting]\nUseTXASRApi=1\n"); }

    /// The first, while nothing of this process has seen the server.
    void theServerComesAfterTheProgram()
    {
        m_server.die();
        RecorderFixture f;
        f.state.DeviceConnected = true;
        f.recorder.InitMicDevice();
        QCOMPARE(f.recorder.deviceName(), QString());
        const int told = f.messages().size();
        pressInVain(f);
        QCOMPARE(f.messages().size(), told + 1);

        m_server.startAgain();
        f.press();
        QVERIFY(hears(f));
        f.recorder.InitMicDevice();
        QTRY_VERIFY(!f.recorder.isOpen());
        QCOMPARE(f.recorder.deviceName(), "vmic"_s);
        QCOMPARE(f.messages().size(), told + 2); // that it is not the product's
    }

    /// Whatever is asked for in whatever moment of the conversation is done.
    void manyComeAndGo()
    {
        for (int turn = 0; turn < 300; ++turn) {
            mevo::PulseInputs inputs;
            const std::unique_ptr<mevo::SoundInput> input = inputs.open({16000, 1, 640});
            if (turn % 20 == 0) {
                char sample = 0;
                QTRY_COMPARE(input->read(&sample, 1), 1);
            }
        }
    }

    void theServerDiesInASession()
    {
        RecorderFixture f;
        f.recorder.UseXunFeiWebApi = true; // whose microphone stays open after the stop
        f.press();
        m_server.die();
        QTRY_COMPARE(f.messages().size(), 1);
        f.recorder.OnReadMore();
        f.recorder.OnRecordStop();
        QCOMPARE(f.host.sessions.size(), 1);
        QCOMPARE(f.host.sessions.first().size(), f.bytes); // what was said before is not lost
        f.recorder.DeleyCloseMicTimer();
        pressInVain(f);
        pressInVain(f);
        QCOMPARE(f.messages().size(), 3);

        m_server.startAgain();
        f.press();
        QVERIFY(hears(f));
        QCOMPARE(f.messages().size(), 3);
    }

    /// Also one that was made while there was no server.
    void theMeterHearsTheNewServer()
    {
        mevo::PulseInputs inputs;
        const auto hears = [](mevo::MicrophoneMeter &meter) {
            return std::make_unique<QSignalSpy>(&meter, &mevo::MicrophoneMeter::heard);
        };
        mevo::MicrophoneMeter before(inputs);
        const auto old = hears(before);
        QTRY_VERIFY(!old->isEmpty());
        m_server.die();
        QTRY_COMPARE(inputs.defaultName(), QString());
        mevo::MicrophoneMeter meanwhile(inputs);
        m_server.startAgain();
        mevo::MicrophoneMeter after(inputs);
        for (mevo::MicrophoneMeter *meter : {&before, &meanwhile, &after}) {
            const auto heard = hears(*meter);
            QTRY_VERIFY(heard->size() > 2);
        }
    }

    void aServerThatHangsHoldsNobodyUp_data()
    {
        flagRows("while it was connected", "before it was connected");
    }
    void aServerThatHangsHoldsNobodyUp()
    {
        const auto [connected] = rowOf<bool>();
        mevo::PulseInputs before;
        QCOMPARE(before.defaultName(), "vmic"_s);
        m_server.signal(SIGSTOP);
        mevo::PulseInputs after;
        mevo::PulseInputs &inputs = connected ? before : after;
        QElapsedTimer timer;
        timer.start();
        for (int call = 0; call < 5; ++call) {
            inputs.defaultName();
        }
        const std::unique_ptr<mevo::SoundInput> input = inputs.open({16000, 1, 640});
        const qint64 taken = timer.elapsed();
        m_server.signal(SIGCONT);
        QVERIFY(input != nullptr);
        QVERIFY2(taken < 1000, qPrintable(QString::number(taken)));
        char sample = 0;
        QTRY_COMPARE(input->read(&sample, 1), 1); // it begins when the server answers
    }

    /// Between two sessions nothing is heard, and the second one goes on with the first one's stream.
    void aMicrophoneIsKeptReady()
    {
        RecorderFixture f;
        f.state.KeepMicrophoneReady = true;
        f.press();
        QTRY_COMPARE(outputs("Corked"_s), list({"no"}));
        const QStringList stream = outputs("#"_s);
        f.recorder.OnRecordStop();
        QTRY_COMPARE(outputs("Corked"_s), list({"yes"}));

        mevo::PulseInputs others;
        const std::unique_ptr<mevo::SoundInput> witness = others.open({16000, 1, 640});
        const QByteArray meanwhile(8000, '\x22');
        Player player("vmic_in"_s, 1, meanwhile);
        QByteArray witnessed;
        QTRY_VERIFY_WITH_TIMEOUT((witnessed += allOf(*witness)).contains(meanwhile + QByteArray(2000, '\0')),
                                 10000);
        witness->stop(mevo::SoundInput::Afterwards::LetGo);

        f.press();
        QCOMPARE(outputs("#"_s), stream);
        QVERIFY(hears(f));
        QVERIFY(!f.host.sessions.last().contains('\x22'));
        QTRY_COMPARE(outputs("Corked"_s), list({"yes"}));
        f.state.KeepMicrophoneReady = false;
        f.press();
        f.recorder.OnRecordStop();
        QTRY_COMPARE(outputs("Corked"_s), QStringList());
    }

    void aKeptMicrophoneIsLetGo_data()
    {
        const Rows<int, bool, QString> row; // milliseconds, let go, command
        row("after its time", 100, false, "");
        row("at once where that is asked for", 600000, true, "");
        row("when another one is the default", 600000, false, "set-default-source vmic_in.monitor");
    }
    void aKeptMicrophoneIsLetGo()
    {
        const auto [keepMs, letGo, command] = rowOf<int, bool, QString>();
        mevo::PulseInputs inputs(keepMs);
        const std::unique_ptr<mevo::SoundInput> input = inputs.open({16000, 1, 640});
        char sample = 0;
        QTRY_COMPARE(input->read(&sample, 1), 1);
        input->stop(mevo::SoundInput::Afterwards::KeepReady);
        if (keepMs > 1000) {
            QTRY_COMPARE(outputs("Corked"_s), list({"yes"}));
        }
        if (letGo) {
            inputs.letGo();
        }
        if (!command.isEmpty()) {
            pactl(command);
        }
        QTRY_COMPARE(outputs("Corked"_s), QStringList());
        pactl("set-default-source vmic"_s);
    }

private:
    /// What the server says, under a name, of each recording of ours.
    static QStringList outputs(const QString &name)
    {
        QStringList found;
        const QString all = QString::fromUtf8(pactl("list source-outputs"_s));
        for (const QString &output : all.split("Source Output "_s)) {
            if (output.contains("\"MEVOInput\""_s)) {
                found.append(output.section(name, 1).section(u'\n', 0, 0).remove(u':').trimmed());
            }
        }
        return found;
    }
    static QByteArray allOf(mevo::SoundInput &input)
    {
        QByteArray all(1 << 20, '\0');
        all.truncate(input.read(all.data(), all.size()));
        return all;
    }
    /// A session that hears nothing, because nothing is there.
    static void pressInVain(RecorderFixture &f)
    {
        const int told = f.messages().size();
        f.recorder.OnRecordStart();
        QCOMPARE(f.messages().size(), told + 1);
        QVERIFY(f.messages().last().contains("打开麦克风设备失败"_s));
        f.recorder.OnRecordStop();
        f.recorder.DeleyCloseMicTimer();
    }
    /// The open session takes what is said, and ends.
    static bool hears(RecorderFixture &f)
    {
        const QByteArray said(8000, '\x11');
        Player player("vmic_in"_s, 1, said);
        if (!QTest::qWaitFor([&] { return player.hasEnded(); }, 10000)) {
            return false;
        }
        const int after = f.blocks + 5;
        const bool comes = QTest::qWaitFor([&] { return f.blocks > after; });
        f.recorder.OnRecordStop();
        f.recorder.DeleyCloseMicTimer();
        return comes && f.host.sessions.last().contains(said);
    }

    SoundServer m_server;
};

QTEST_GUILESS_MAIN(SoundServerTest)
#include "tst_sound_server.moc"
