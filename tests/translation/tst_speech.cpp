#include "platform/linux/EspeakSpeech.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "translation/ReadingLanguage.h"
#include "translation/WXTextSpeech.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <condition_variable>
#include <memory>
#include <mutex>

using mevo::SpeechEnd;

namespace {

CallLog calls;

/// A barrier that a test closes and opens.
class Gate
{
public:
    void close() { set(true); }
    void open() { set(false); }
    void pass()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_closed; });
    }

private:
    void set(bool closed)
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_closed = closed;
        }
        m_changed.notify_all();
    }
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_closed = false;
};

// The library has functions without an object, so its stand-in has a state without one.
mevo::EspeakLibrary::Callback callback = nullptr; ///< of the speaking thread
std::atomic<int> sampleRate{22050};
std::atomic<int> synthResult{0};
Gate synthGate; ///< passed once by each text

/// Gives a hundred samples, then the end; "endless" goes on until it is told to end.
int synth(const void *text, std::size_t, unsigned, int, unsigned, unsigned, unsigned *, void *)
{
    const QString spoken = QString::fromUtf8(static_cast<const char *>(text));
    calls.add("synth "_s + spoken);
    synthGate.pass();
    short samples[100] = {};
    bool goesOn = true;
    do {
        goesOn = callback(samples, 100, nullptr) == 0;
    } while (goesOn && spoken == QLatin1String("endless"));
    if (goesOn) {
        callback(nullptr, 0, nullptr);
    }
    return synthResult;
}

mevo::EspeakLibrary fakeLibrary()
{
    mevo::EspeakLibrary library{};
    library.initialize = [](int, int, const char *, int) -> int {
        calls.add("initialize"_s);
        return sampleRate;
    };
    library.setSynthCallback = [](mevo::EspeakLibrary::Callback function) { callback = function; };
    library.setVoiceByName = [](const char *name) {
        calls.add("voice "_s + QLatin1String(name));
        return QLatin1String(name) == QLatin1String("xx") ? 2 : 0;
    };
    library.setParameter = [](int parameter, int value, int) {
        calls.add("parameter %1 %2"_s.arg(parameter).arg(value));
        return 0;
    };
    library.synth = synth;
    return library;
}

enum class Sound { Good, None, FailsToWrite, FailsToDrain, Hangs };
std::atomic<Sound> sound{Sound::Good};
Gate soundGate;
std::atomic<int> samplesHeard{0};

class FakeSound : public mevo::SpeechSound
{
public:
    bool write(const short *, int count) override
    {
        if (sound == Sound::Hangs) {
            calls.add("hangs"_s);
            soundGate.pass();
        }
        samplesHeard += count;
        return sound != Sound::FailsToWrite;
    }
    bool drain() override
    {
        calls.add("drain"_s);
        return sound != Sound::FailsToDrain;
    }
    void drop() override { calls.add("drop"_s); }
};

std::unique_ptr<mevo::SpeechSound> makeSound(int rate)
{
    calls.add("sound %1"_s.arg(rate));
    return sound == Sound::None ? nullptr : std::make_unique<FakeSound>();
}

/// A voice with the stand-ins, and the ends that it has told.
struct Voice
{
    Voice()
    {
        opened = speech->open();
        speech->whenStreamEnds([this](SpeechEnd end) { ends.append(int(end)); });
    }
    std::unique_ptr<mevo::EspeakSpeech> speech =
        std::make_unique<mevo::EspeakSpeech>([] { return fakeLibrary(); }, makeSound);
    bool opened = false;
    QList<int> ends;
};

bool waitFor(const QString &call, int count = 1)
{
    return QTest::qWaitFor([&] { return calls.calls(call).size() >= count; }, 20000);
}

/// A list written as one text, its parts between "|".
QStringList list(const char *joined)
{
    return QString::fromUtf8(joined).split(QLatin1Char('|'));
}

} // namespace

class TestSpeech : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        calls.clear();
        synthGate.open();
        soundGate.open();
        sound = Sound::Good;
        sampleRate = 22050;
        synthResult = 0;
        samplesHeard = 0;
    }

    void oneAfterAnother()
    {
        Voice voice;
        QVERIFY(voice.opened);
        QVERIFY(calls.calls().isEmpty()); // the thread begins with the first text
        for (const char *text : {"one", "two", "three"}) {
            QVERIFY(voice.speech->speak(QLatin1String(text), "en"_s));
        }
        QTRY_COMPARE_WITH_TIMEOUT(voice.ends.size(), 3, 20000);
        QCOMPARE(calls.calls("synth"_s), (list("synth one|synth two|synth three")));
        QCOMPARE(calls.calls("initialize"_s).size(), 1);
        QCOMPARE(calls.calls("drain"_s).size(), 3);
        QCOMPARE(samplesHeard.load(), 300);
    }

    void languageRateAndVolume_data()
    {
        const Rows<QString, int, int, QStringList> add; // language, rate, volume, told
        const auto row = [&](const char *name, const char *language, int rate, int volume, const char *told) {
            add(name, language, rate, volume, QString::fromLatin1(told).split(QLatin1Char('|')));
        };
        row("normal", "ja", 0, 100, "voice ja|parameter 1 175|parameter 2 100");
        row("Mandarin", "cmn", 0, 50, "voice cmn-latn-pinyin|parameter 1 175|parameter 2 50");
        row("half way up", "ko", 5, 0, "voice ko|parameter 1 303|parameter 2 0");
        row("as fast as it can", "en", 10, 100, "voice en|parameter 1 450|parameter 2 100");
        row("as slow as it can", "en", -10, 100, "voice en|parameter 1 80|parameter 2 100");
        row("beyond the ends", "en", 99, 300, "voice en|parameter 1 450|parameter 2 100");
    }
    void languageRateAndVolume()
    {
        const auto [language, rate, volume, told] = rowOf<QString, int, int, QStringList>();
        Voice voice;
        voice.speech->setRate(rate);
        voice.speech->setVolume(volume);
        voice.speech->speak("x"_s, language);
        QTRY_COMPARE_WITH_TIMEOUT(voice.ends, QList<int>{int(SpeechEnd::Spoken)}, 20000);
        QCOMPARE(calls.calls("voice"_s) + calls.calls("parameter"_s), told);
    }

    void failures_data()
    {
        const Rows<QString, int, Sound, SpeechEnd> row; // language, rate, kind, end
        row("no voice of the language", "xx", 22050, Sound::Good, SpeechEnd::NoVoice);
        row("the library has no data", "en", -1, Sound::Good, SpeechEnd::NoVoice);
        row("no sound device", "en", 22050, Sound::None, SpeechEnd::NoSound);
        row("the sound breaks off", "en", 22050, Sound::FailsToWrite, SpeechEnd::NoSound);
        row("its end breaks off", "en", 22050, Sound::FailsToDrain, SpeechEnd::NoSound);
    }
    void failures()
    {
        const auto [language, rate, kind, end] = rowOf<QString, int, Sound, SpeechEnd>();
        sampleRate = rate;
        sound = kind;
        Voice voice;
        voice.speech->speak("x"_s, language);
        voice.speech->speak("y"_s, language);
        QTRY_COMPARE_WITH_TIMEOUT(voice.ends, (QList<int>{int(end), int(end)}), 20000); // and it goes on
    }

    void stopsInTheMiddle()
    {
        Voice voice;
        voice.speech->speak("endless"_s, "en"_s);
        QTRY_VERIFY_WITH_TIMEOUT(samplesHeard > 1000, 20000);
        voice.speech->stop();
        voice.speech->speak("after"_s, "en"_s);
        QTRY_COMPARE_WITH_TIMEOUT(voice.ends.size(), 1, 20000);
        QCOMPARE(calls.calls("drop"_s).size(), 1);
        QCOMPARE(calls.calls("drain"_s).size(), 1); // of the second alone
        QVERIFY(calls.indexOf("drop"_s) < calls.indexOf("synth after"_s));
    }

    void dropsWhatWaits()
    {
        Voice voice;
        synthGate.close();
        for (const char *text : {"first", "second", "third"}) {
            voice.speech->speak(QLatin1String(text), "en"_s);
        }
        QVERIFY(waitFor("synth"_s));
        voice.speech->stop();
        voice.speech->speak("fourth"_s, "en"_s);
        synthGate.open();
        QTRY_COMPARE_WITH_TIMEOUT(voice.ends.size(), 1, 20000);
        QCOMPARE(calls.calls("synth"_s), (list("synth first|synth fourth")));
    }

    /// A text has ended, and before the event loop says so it is stopped: then nobody wants to hear of it.
    void anEndThatComesAfterTheStop()
    {
        Voice voice;
        voice.speech->speak("short"_s, "en"_s);
        voice.speech->speak("endless"_s, "en"_s);
        while (!calls.has("synth endless"_s)) {
            std::this_thread::yield(); // without the event loop, where the end of the first one waits by now
        }
        voice.speech->stop();
        voice.speech->speak("next"_s, "en"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!voice.ends.isEmpty(), 20000);
        QVERIFY(calls.has("synth next"_s));
        QCOMPARE(voice.ends.size(), 1);
    }

    void endsInMidSpeech()
    {
        Voice voice;
        voice.speech->speak("endless"_s, "en"_s);
        voice.speech->speak("waiting"_s, "en"_s);
        QTRY_VERIFY_WITH_TIMEOUT(samplesHeard > 1000, 20000);
        QElapsedTimer elapsed;
        elapsed.start();
        voice.speech.reset();
        QVERIFY(elapsed.elapsed() < 1900); // it was not left behind
        QCOMPARE(calls.calls().last(), "drop"_s);
        QCOMPARE(calls.calls("synth"_s).size(), 1);
        QCoreApplication::processEvents();
        QVERIFY(voice.ends.isEmpty());
    }

    void leavesASoundThatHangs()
    {
        Voice voice;
        sound = Sound::Hangs;
        soundGate.close();
        voice.speech->speak("x"_s, "en"_s);
        QVERIFY(waitFor("hangs"_s));
        QElapsedTimer elapsed;
        elapsed.start();
        voice.speech.reset();
        QVERIFY(elapsed.elapsed() >= 1900);
        soundGate.open(); // the thread ends after all, and touches nothing that has gone
        QVERIFY(waitFor("drop"_s));
        QCoreApplication::processEvents();
        QVERIFY(voice.ends.isEmpty());
    }

    void withoutTheLibrary()
    {
        mevo::EspeakSpeech speech([] { return std::optional<mevo::EspeakLibrary>(); }, makeSound);
        QVERIFY(!speech.open());
        QVERIFY(!speech.speak("x"_s, "en"_s));
        speech.stop();
    }

    void theRealLibrary_data()
    {
        const Rows<QString, QString> add; // text, voice
        const auto row = [&](const char *voice, const char *text) { add(voice, text, voice); };
        row("cmn", "今天天气很好");
        row("yue", "广东话");
        row("en", "good morning");
        row("ja", "おはようございます");
        row("ko", "안녕하세요");
        row("fr", "bonjour");
        row("ru", "доброе утро");
        row("es", "buenos días");
        row("pl", "dzień dobry");
        row("pt", "bom dia");
        row("de", "guten Morgen");
        row("th", "สวัสดี");
        row("cs", "dobré ráno");
        row("ar", "صباح الخير");
        row("vi", "chào buổi sáng");
        row("it", "buongiorno");
        row("el", "καλημέρα");
        row("nl", "goedemorgen");
        row("da", "godmorgen");
        row("sv", "god morgon");
        row("fi", "hyvää huomenta");
        row("hu", "jó reggelt");
        row("ro", "bună dimineața");
        row("bg", "добро утро");
        row("et", "tere hommikust");
        row("sl", "dobro jutro");
    }

    /// The voices of the languages are there under the names that are asked for, and make sound.
    void theRealLibrary()
    {
        const auto [text, voice] = rowOf<QString, QString>();
        static mevo::EspeakSpeech speech(mevo::loadEspeakLibrary, makeSound);
        QVERIFY(speech.open());
        QList<int> ends;
        speech.whenStreamEnds([&ends](SpeechEnd end) { ends.append(int(end)); });
        speech.speak(text, voice);
        QTRY_COMPARE_WITH_TIMEOUT(ends, QList<int>{int(SpeechEnd::Spoken)}, 30000);
        QVERIFY2(samplesHeard > 22050 / 4, qPrintable(QString::number(samplesHeard)));
        speech.whenStreamEnds({});
    }

    void voiceOfAText_data()
    {
        const Rows<QString, QString, QString, bool> add; // text, code, voice, unreadable
        const auto row = [&](const char *name, const char *text, const char *code, const char *voice,
                             bool unreadable = false) { add(name, text, code, voice, unreadable); };
        row("Chinese", "今天天气很好。", "zh", "cmn");
        row("classical", "學而時習之", "wyw", "cmn");
        row("traditional", "臺灣", "cht", "cmn");
        row("Cantonese", "你好呀", "yue", "yue");
        row("French", "ça va", "fra", "fr");
        row("Bulgarian, not Russian", "добро утро", "bul", "bg");
        row("English said to be Chinese", "Good morning everybody", "zh", "en");
        row("Chinese said to be English", "今天天气 very 好", "en", "cmn");
        row("Chinese with a few foreign letters", "请打开 Qt 的窗口设置", "zh", "cmn");
        row("Russian said to be German", "доброе утро", "de", "ru");
        row("kana", "おはようございます", "jp", "ja");
        row("Japanese with Han characters", "今日はいい天気です", "jp", "ja", true);
        row("Han characters alone, said to be Japanese", "東京", "jp", "ja", true);
        row("Japanese said to be English", "これはペンです", "en", "ja");
        row("English said to be Japanese", "good morning", "jp", "en");
        row("by itself: Chinese", "你好", "auto", "cmn");
        row("by itself: Chinese with one kana", "优の良品店铺今天开门", "auto", "cmn");
        row("by itself: Japanese", "私はりんごを食べます", "auto", "ja", true);
        row("by itself: Korean", "안녕하세요", "auto", "ko");
        row("by itself: Thai", "สวัสดี", "auto", "th");
        row("by itself: Arabic", "مرحبا", "auto", "ar");
        row("by itself: Greek", "καλημέρα", "auto", "el");
        row("an unknown code", "hello", "xyz", "en");
        row("digits", "12:30", "kor", "ko");
        row("digits by themselves", "12:30", "auto", "en");
        row("an emoji", "😀", "zh", "cmn");
        row("nothing", " \n", "zh", "");
    }
    void voiceOfAText()
    {
        const auto [text, code, voice, unreadable] = rowOf<QString, QString, QString, bool>();
        const mevo::ReadingLanguage language = mevo::readingLanguage(text, code);
        QCOMPARE(language.voice, voice);
        QCOMPARE(language.unreadable, unreadable);
    }

    void readsAloud()
    {
        FakePlatform platform;
        WXTextSpeech reader(*platform.speech, *platform.notifications);
        QSignalSpy complete(&reader, &WXTextSpeech::speakCompleteSignal);
        platform.speech->available = false;
        QVERIFY(!reader.Init());
        QVERIFY(!reader.Speak("你好"_s, "zh"_s));
        reader.SetRate(1);
        reader.Stop();
        QVERIFY(platform.log.calls().isEmpty()); // nothing, and no message

        platform.speech->available = true;
        QVERIFY(reader.Init());
        reader.SetRate(3);
        reader.SetVolume(50);
        QVERIFY(reader.Speak("你好"_s, "zh"_s));
        QVERIFY(reader.Speak("hello"_s));
        QVERIFY(!reader.Speak(QString(), "zh"_s));
        QVERIFY(reader.isSpeaking());
        reader.dealeventSlot("Word(int,QVariant,int,int)"_s, 4, nullptr);
        QVERIFY(reader.isSpeaking());
        platform.speech->end();
        QVERIFY(!reader.isSpeaking());
        QCOMPARE(complete.size(), 1);
        reader.Stop();
        QCOMPARE(platform.log.calls(),
                 (list("speech rate 3|speech volume 50|speak cmn 你好|speak en hello|speech stop")));
    }

    void messages_data()
    {
        const Rows<QString, SpeechEnd, QString> row; // text, end, message
        row("unreadable", "日本語"_s, SpeechEnd::Spoken, "message 系统语音无法朗读日文中的汉字！ (3000)"_s);
        row("no voice", "さくら"_s, SpeechEnd::NoVoice, "message 系统没有这种语言的语音！ (3000)"_s);
        row("no sound", "さくら"_s, SpeechEnd::NoSound,
            "message 无法播放朗读的声音，请检查声音设备！ (3000)"_s);
    }
    void messages()
    {
        const auto [text, end, message] = rowOf<QString, SpeechEnd, QString>();
        FakePlatform platform;
        WXTextSpeech reader(*platform.speech, *platform.notifications);
        QSignalSpy complete(&reader, &WXTextSpeech::speakCompleteSignal);
        QVERIFY(reader.Init());
        if (reader.Speak(text, "jp"_s)) {
            platform.speech->end(end);
            QCOMPARE(complete.size(), 1);
        }
        QVERIFY(!reader.isSpeaking());
        QCOMPARE(platform.log.calls("message"_s), QStringList{message});
    }

    void fallsSilentWithItsOwner()
    {
        FakePlatform platform;
        {
            WXTextSpeech reader(*platform.speech, *platform.notifications);
            reader.Init();
            reader.Speak("hello"_s);
        }
        QCOMPARE(platform.log.calls().last(), "speech stop"_s);
        platform.speech->end(SpeechEnd::NoSound); // of nobody's concern
        QVERIFY(platform.log.calls("message"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
