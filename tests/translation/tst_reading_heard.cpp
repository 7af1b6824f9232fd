// What is read aloud really comes out of the speaker: it is recorded there and compared with what was to be
// heard.
#include "audio/SoundServer.h"
#include "platform/linux/EspeakSpeech.h"
#include "platform/linux/PulseInputs.h"
#include "services/LabHttpServer.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/Texts.h"
#include "translation/OnlineReading.h"
#include "translation/TtsService.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

#include <cmath>
#include <cstring>
#include <memory>

using mevo::SpeechEnd;

namespace {

ScratchHome home;
constexpr int sampleRate = 22050; ///< of the voice, in which the speaker is recorded as well
constexpr int frame = sampleRate / 50;
const QString sentence = "please send the report before noon"_s;
const QString another = "no, I have not seen any of the green bicycles"_s;

using Samples = QVector<short>;

Samples samplesOf(const QByteArray &pcm)
{
    Samples samples(pcm.size() / int(sizeof(short)));
    std::memcpy(samples.data(), pcm.constData(), std::size_t(samples.size()) * sizeof(short));
    return samples;
}

/// Loudness of each 20 ms.
QVector<double> envelopeOf(const Samples &samples)
{
    QVector<double> envelope;
    for (int at = 0; at + frame <= samples.size(); at += frame) {
        double sum = 0;
        for (int i = 0; i < frame; ++i) {
            sum += double(samples[at + i]) * samples[at + i];
        }
        envelope.append(std::sqrt(sum / frame));
    }
    return envelope;
}

/// How like `expected` the best place of `heard` is: the correlation of their loudness, 1 for the same.
double likeness(const Samples &heard, const Samples &expected)
{
    const QVector<double> a = envelopeOf(heard);
    const QVector<double> b = envelopeOf(expected);
    double best = 0;
    for (int lag = 0; lag + b.size() <= a.size(); ++lag) {
        double sa = 0, sb = 0, saa = 0, sbb = 0, sab = 0;
        for (int i = 0; i < b.size(); ++i) {
            const double x = a[lag + i];
            const double y = b[i];
            sa += x;
            sb += y;
            saa += x * x;
            sbb += y * y;
            sab += x * y;
        }
        const double n = b.size();
        const double spread = (saa - sa * sa / n) * (sbb - sb * sb / n);
        best = std::max(best, spread > 0 ? (sab - sa * sb / n) / std::sqrt(spread) : 0);
    }
    return best;
}

/// Records what the speaker plays.
class Speaker
{
public:
    Speaker()
    {
        m_recorder.start("parec"_s, {"-d"_s, "spk.monitor"_s, "--raw"_s, "--rate=22050"_s, "--channels=1"_s,
                                     "--format=s16le"_s, "--latency-msec=20"_s});
    }
    ~Speaker()
    {
        m_recorder.kill();
        m_recorder.waitForFinished();
    }
    bool records()
    {
        return QTest::qWaitFor([this] { return !heard().isEmpty(); }, 30000);
    }
    const Samples &heard()
    {
        m_pcm += m_recorder.readAllStandardOutput();
        m_samples = samplesOf(m_pcm);
        return m_samples;
    }
    /// Waits until the last `ms` were silent, behind something that was not.
    bool fallsSilent(int ms)
    {
        return QTest::qWaitFor(
            [this, ms] {
                const QVector<double> loud = envelopeOf(heard());
                const int frames = ms / 20;
                const auto isLoud = [](double level) { return level > 50; };
                return loud.size() > frames && std::any_of(loud.begin(), loud.end(), isLoud) &&
                       std::none_of(loud.end() - frames, loud.end(), isLoud);
            },
            60000);
    }

private:
    QProcess m_recorder;
    QByteArray m_pcm;
    Samples m_samples;
};

/// A sound that keeps what it is given.
class KeptSound : public mevo::SpeechSound
{
public:
    explicit KeptSound(Samples &kept)
        : m_kept(kept)
    {
    }
    bool write(const short *samples, int count) override
    {
        for (int i = 0; i < count; ++i) {
            m_kept.append(samples[i]);
        }
        return true;
    }
    bool drain() override { return true; }
    void drop() override {}

private:
    Samples &m_kept;
};

/// What a text sounds like, by the voice of the system.
Samples spoken(const QString &text)
{
    Samples kept;
    bool ended = false;
    {
        mevo::EspeakSpeech speech(mevo::loadEspeakLibrary,
                                  [&kept](int) { return std::make_unique<KeptSound>(kept); });
        speech.open();
        speech.whenStreamEnds([&ended](SpeechEnd) { ended = true; });
        speech.speak(text, "en"_s);
        (void)QTest::qWaitFor([&ended] { return ended; }, 30000);
    }
    return ended ? kept : Samples();
}

} // namespace

class TestReadingHeard : public QObject
{
    Q_OBJECT

private slots:
    void online()
    {
        QTemporaryDir folder;
        QDir::setCurrent(folder.path());
        lab::TtsService service([](const QString &token) { return token == QLatin1String("known"); },
                                [](const QJsonObject &) {});
        lab::LabHttpServer server(
            [&](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
                service.handle(request, reply);
            });
        QVERIFY(server.start(0));
        MainState state;
        state.BaiduTtsAccessToken = "known"_s;
        mevo::EngineEndpoints endpoints;
        endpoints.BaiduTtsHost = "127.0.0.1:%1"_s.arg(server.serverPort());
        mevo::OnlineReading reading(state, endpoints, *m_platform.time, *m_platform.notifications,
                                    [this] { return mevo::makeSoundPlayer(m_inputs); });
        // The sound server comes after the first text: that one is said to be silent, the next one is heard.
        m_server.die();
        reading.read(mevo::Pane::Destination, another, {5, 5, 5, 0});
        QTRY_COMPARE(m_platform.log.calls("message"_s).size(), 1);
        m_platform.log.clear();
        m_server.startAgain();
        Speaker speaker;
        QVERIFY(speaker.records());
        reading.read(mevo::Pane::Source, sentence, {5, 5, 5, 0});
        QVERIFY(QTest::qWaitFor([&reading] { return reading.activeCount() == 0; }, 60000));
        QCOMPARE(m_platform.log.calls("message"_s), QStringList());
        QVERIFY(speaker.fallsSilent(500));

        const QString mp3 = QDir("SourceSynVoice"_s).entryList(QDir::Files).value(0);
        QProcess lame;
        lame.start("lame"_s, {"--quiet"_s, "--decode"_s, "-t"_s, "SourceSynVoice/"_s + mp3, "-"_s});
        QVERIFY(lame.waitForFinished(30000));
        const Samples expected = samplesOf(lame.readAllStandardOutput());
        QVERIFY(expected.size() > sampleRate);
        QVERIFY2(likeness(speaker.heard(), expected) > 0.9,
                 qPrintable(QString::number(likeness(speaker.heard(), expected))));
        QDir::setCurrent(QDir::rootPath());
    }

    void byTheSystemsVoice()
    {
        const Samples expected = spoken(sentence);
        const Samples other = spoken(another);
        QVERIFY(expected.size() > sampleRate);
        Speaker speaker;
        QVERIFY(speaker.records());
        mevo::EspeakSpeech speech;
        QVERIFY(speech.open());
        QList<int> ends;
        speech.whenStreamEnds([&ends](SpeechEnd end) { ends.append(int(end)); });
        speech.speak(sentence, "en"_s);
        QTRY_COMPARE_WITH_TIMEOUT(ends, QList<int>{int(SpeechEnd::Spoken)}, 60000);
        QVERIFY(speaker.fallsSilent(500));
        const double like = likeness(speaker.heard(), expected);
        QVERIFY2(like > 0.9, qPrintable(QString::number(like)));
        QVERIFY2(likeness(speaker.heard(), other) < 0.7, "any sentence would do");
    }

    void stopIsHeard()
    {
        Speaker speaker;
        QVERIFY(speaker.records());
        mevo::EspeakSpeech speech;
        QVERIFY(speech.open());
        speech.speak(QString(another + ". "_s).repeated(50), "en"_s);
        const auto hearsSomething = [&speaker] {
            const QVector<double> loud = envelopeOf(speaker.heard());
            return std::any_of(loud.begin(), loud.end(), [](double level) { return level > 50; });
        };
        QVERIFY(QTest::qWaitFor(hearsSomething, 30000));
        speech.stop();
        QVERIFY(speaker.fallsSilent(1000)); // long before the two minutes of the text are over
    }

    /// An error of the service that was kept as a file does not play, and is told apart from sound.
    void whatIsNoSound()
    {
        QTemporaryDir folder;
        QFile json(folder.filePath("error.mp3"_s));
        QVERIFY(json.open(QIODevice::WriteOnly));
        json.write(R"({"err_no":502,"err_msg":"authentication failed."})");
        json.close();
        const std::unique_ptr<mevo::SoundPlayer> player = mevo::makeSoundPlayer(m_inputs);
        QList<int> sounds;
        connect(player.get(), &mevo::SoundPlayer::ended, this,
                [&sounds](mevo::SoundEnd end) { sounds.append(int(end)); });
        player->play(json.fileName());
        QTRY_COMPARE_WITH_TIMEOUT(sounds, QList<int>{int(mevo::SoundEnd::Unplayable)}, 60000);
    }

private:
    FakePlatform m_platform;
    SoundServer m_server;
    mevo::PulseInputs m_inputs;
};

QTEST_MAIN(TestReadingHeard)
#include "tst_reading_heard.moc"
