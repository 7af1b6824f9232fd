// A computer without sound: both ways of reading aloud say so, and nothing hangs.
#include "platform/linux/EspeakSpeech.h"
#include "platform/linux/PulseInputs.h"
#include "support/Texts.h"
#include "translation/SoundPlayer.h"

#include <QProcess>
#include <QtTest>

#include <memory>

class TestReadingSilent : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("PULSE_SERVER", "unix:/nowhere/pulse.sock"); }

    void byTheSystemsVoice()
    {
        mevo::EspeakSpeech speech;
        QVERIFY(speech.open());
        QList<int> ends;
        speech.whenStreamEnds([&ends](mevo::SpeechEnd end) { ends.append(int(end)); });
        speech.speak("one two three"_s, "en"_s);
        QTRY_COMPARE_WITH_TIMEOUT(ends, QList<int>{int(mevo::SpeechEnd::NoSound)}, 30000);
    }

    void online()
    {
        QTemporaryDir folder;
        const QString mp3 = folder.filePath("one.mp3"_s);
        QProcess::execute("sh"_s,
                          {"-c"_s, "espeak-ng --stdout one two three | lame --quiet - \"$0\""_s, mp3});
        QVERIFY(QFile(mp3).size() > 1000);
        mevo::PulseInputs inputs;
        const std::unique_ptr<mevo::SoundPlayer> player = mevo::makeSoundPlayer(inputs);
        QList<int> sounds;
        connect(player.get(), &mevo::SoundPlayer::ended, this,
                [&sounds](mevo::SoundEnd end) { sounds.append(int(end)); });
        player->play(mp3);
        QTRY_VERIFY_WITH_TIMEOUT(!sounds.isEmpty(), 30000);
        QCOMPARE(sounds, QList<int>{int(mevo::SoundEnd::NoPlayer)});
    }
};

QTEST_MAIN(TestReadingSilent)
#include "tst_reading_silent.moc"
