// Random key scripts against the whole program on a platform of fakes, with a real microphone: whatever the
// keys, the plug, the tip window and the recogniser have done, the next dictation arrives.
//
// MEVO_SCRIPTS tells how many scripts are run (200), MEVO_SEED with which seed (1).

#include "audio/AudioRecorder.h"
#include "support/ListeningPlatform.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "support/Texts.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"
#include "window/MainWindow.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

const ScratchHome home;
constexpr int voiceKeys[] = {1, 2, 3, 6, 8, 14, 16};
constexpr int typingKey = 3;

QByteArray goodReply(const QString &text)
{
    return R"({"err_no":0,"result":[")" + text.toUtf8() + R"("]})";
}

int number(const char *variable, int fallback)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(variable, &ok);
    return ok ? value : fallback;
}

class Desk
{
public:
    explicit Desk(quint32 seed)
        : m_random(seed)
    {
        home.write("MEVOEndpoints.ini"_s,
                   "[Endpoints]\nBackendUrl=\"http://127.0.0.1:9/mevowebapi?\"\n"
                   "BackendUrlBk1=\"http://127.0.0.1:9/mevowebapi?\"\n"
                   "BackendUrlBk2=\"http://127.0.0.1:9/mevowebapi?\"\nBaiduTokenHost=127.0.0.1:9\n"
                   "TranslateHost=127.0.0.1:9\n"
                   "BaiduSpeechHost=" +
                       m_recogniser.host().toLatin1() + "\n");
        home.write("MEVOSetting.ini"_s,
                   "[MainSetting]\nBaiDuNoStreamApi=1\nUseTXASRApi=0\nBaiDuCurrentVoiceType=1537\n");
        mevo::askHook = [](const mevo::Question &) { return 1; };
        plug();
        window = std::make_unique<MainWindow>(fake.platform);
        window->BaiduAccessToken = "token"_s;
        window->ClickCanASR = true;
        window->VoiceIntervalTime = 20; // of the heartbeat, so that it need not be waited for
        fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
        fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival);
    }
    ~Desk()
    {
        window.reset();
        mevo::askHook = nullptr;
    }

    /// One random script; what it did, for the report of a failure.
    QString run()
    {
        QStringList steps;
        const int count = 4 + below(12);
        for (int i = 0; i < count; ++i) {
            steps.append(step());
        }
        return steps.join(QLatin1Char(' '));
    }

    /// Lets go of everything and lets the recogniser answer.
    void release()
    {
        m_recogniser.onRequest = nullptr;
        m_recogniser.fallback = ScriptedAnswer::body(goodReply("late"_s));
        if (fake.hid->entries.empty()) {
            changePlug();
        }
        if (window->MicLatched) {
            QTest::mousePress(window->micTip(), Qt::RightButton);
        }
        for (const int key : voiceKeys) {
            send(key, false);
        }
        m_recogniser.answerHeld();
    }

    bool isQuiet() const
    {
        return !window->recorder()->isOpen() && !window->MicLatched && window->ResultIdle &&
               !window->HidBusy && window->deviceOpen() && fake.hid->waitingReports() == 0;
    }
    QString state() const
    {
        return " | open %1 latched %2 idle %3 busy %4 device %5 recording %6 pending %7"_s
            .arg(window->recorder()->isOpen())
            .arg(window->MicLatched.load())
            .arg(window->ResultIdle.load())
            .arg(window->HidBusy.load())
            .arg(window->deviceOpen())
            .arg(window->Recording.load())
            .arg(window->PressPending.load());
    }

    bool heartbeatComes()
    {
        fake.log.clear();
        return QTest::qWaitFor([this] { return fake.log.has("hid send 05 81 01 00 00 00 00 00"_s); });
    }

    /// Dictates by the typing key as a patient user does: a press that is ignored after too-short ones is
    /// followed by another.
    bool dictates(const QString &text)
    {
        m_recogniser.fallback = ScriptedAnswer::body(goodReply(text));
        // The translation window would take the text; the button shows a hidden one and closes a visible one.
        for (int press = 0; press < 2 && window->VoiceTranslateMode; ++press) {
            window->pushBuutton_Translate_clicked();
        }
        for (int attempt = 0; attempt < 3; ++attempt) {
            send(typingKey, true);
            const bool records = QTest::qWaitFor([this] { return window->Recording.load(); }, 300);
            fake.time->advance(1500);
            send(typingKey, false);
            if (records) {
                return QTest::qWaitFor([&] { return fake.log.has("post 11 "_s + text); });
            }
            QTest::qWait(20);
        }
        return false;
    }

    ListeningPlatform fake;
    std::unique_ptr<MainWindow> window;

private:
    int below(int bound) { return int(m_random.bounded(quint32(bound))); }

    void plug()
    {
        fake.hid->entries = FakeHid::receiver();
        fake.hid->identityReply = QByteArray::fromHex("010c5713000100020000000000000000");
    }
    void changePlug()
    {
        if (fake.hid->entries.empty()) {
            plug();
            fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival);
        } else {
            fake.hid->entries.clear();
            fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
        }
    }
    void send(int key, bool pressed, char fourth = 0)
    {
        QByteArray report(16, '\0');
        report[0] = 1;
        report[1] = 0x70;
        report[2] = char(key);
        report[3] = pressed ? 1 : 0;
        report[4] = fourth;
        fake.hid->push(report);
    }
    void setRecogniser()
    {
        const ScriptedAnswer good = ScriptedAnswer::body(goodReply("words"_s));
        switch (below(6)) {
        case 0:
            m_recogniser.fallback = ScriptedAnswer::late(good);
            break;
        case 1:
            m_recogniser.fallback = ScriptedAnswer::body(R"({"err_no":3314,"err_msg":"short"})");
            break;
        case 2:
            m_recogniser.fallback = ScriptedAnswer::body(R"({"err_no":3301,"err_msg":"bad"})");
            break;
        case 3:
            m_recogniser.fallback = ScriptedAnswer::cut("{\"err", 100);
            break;
        default:
            m_recogniser.fallback = good;
            break;
        }
    }

    QString step()
    {
        switch (below(16)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4: {
            const int key = voiceKeys[below(int(std::size(voiceKeys)))];
            send(key, true);
            return "+%1"_s.arg(key);
        }
        case 5:
        case 6:
        case 7:
        case 8: {
            const int key = voiceKeys[below(int(std::size(voiceKeys)))];
            send(key, false);
            return "-%1"_s.arg(key);
        }
        case 9: {
            QByteArray report(16, '\0');
            for (char &byte : report) {
                byte = char(below(4) == 0 ? below(256) : below(3));
            }
            fake.hid->push(report);
            return "odd:"_s + QString::fromLatin1(report.left(8).toHex());
        }
        case 10:
            changePlug();
            return "plug"_s;
        case 11:
            QTest::mousePress(window->micTip(), Qt::RightButton);
            return "latch"_s;
        case 12:
            window->CallMainFunctionSlot(22);
            return "reset"_s;
        case 13:
            m_recogniser.answerHeld();
            return "answer"_s;
        case 14:
            setRecogniser();
            return "recogniser"_s;
        default: {
            const int held = below(2000);
            fake.time->advance(held);
            QTest::qWait(below(40));
            return "%1ms"_s.arg(held);
        }
        }
    }

    ScriptedHttp m_recogniser;
    QRandomGenerator m_random;
};

} // namespace

class TestRandomKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNextDictationArrives()
    {
        const int scripts = number("MEVO_SCRIPTS", 200);
        Desk desk(quint32(number("MEVO_SEED", 1)));
        for (int i = 0; i < scripts; ++i) {
            const QString what = "script %1: %2"_s.arg(i).arg(desk.run());
            desk.release();
            QVERIFY2(QTest::qWaitFor([&] { return desk.isQuiet(); }, 15000), qPrintable(what + desk.state()));
            QVERIFY2(desk.heartbeatComes(), qPrintable(what + desk.state()));
            QVERIFY2(desk.dictates("dictation%1"_s.arg(i)), qPrintable(what + desk.state()));
            QVERIFY2(QTest::qWaitFor([&] { return desk.isQuiet(); }), qPrintable(what + desk.state()));
        }
    }
};

QTEST_MAIN(TestRandomKeys)
#include "tst_random_keys.moc"
