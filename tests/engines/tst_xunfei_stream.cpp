// The streaming session against the lab's WebSocket service, which verifies what it is sent by itself.

#include "audio/AudioRecorder.h"
#include "engines/XunFeiHost.h"
#include "engines/XunFeiStream.h"
#include "recognisers/XunFeiService.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"

#include <QUrlQuery>
#include <QWebSocket>
#include <QtTest>

#include <functional>
#include <memory>
#include <optional>

namespace {

constexpr int First = AudioRecorder::STATUS_FIRST;
constexpr int Middle = AudioRecorder::STATUS_CONTINUE;
constexpr int Last = AudioRecorder::STATUS_LAST;

/// A stream, its service and what the host was asked for.
struct Desk : mevo::XunFeiHost
{
    explicit Desk(std::optional<bool> whole = false)
        : service({{"app1"_s, "key1"_s, "secret1"_s}, {"app2"_s, "key2"_s, "secret2"_s}}, {"localhost"_s},
                  [this](const QJsonObject &note) { notes.append(note); })
    {
        fakes.time->start = QDateTime::currentDateTimeUtc();
        started = service.start(0);
        state.XunFeiAppId = "app1"_s;
        state.XunFeiApiKey = "key1"_s;
        state.XunFeiApiSecret = "secret1"_s;
        state.XunFeiMinorAppId = "app2"_s;
        state.XunFeiMinorApiKey = "key2"_s;
        state.XunFeiMinorApiSecret = "secret2"_s;
        state.XunFeiWebApiCurrentVoiceType = "mandarin"_s;
        mevo::EngineEndpoints endpoints;
        endpoints.XunFeiSignHost = "localhost"_s;
        endpoints.XunFeiSocketHost = "127.0.0.1:%1"_s.arg(service.serverPort());
        endpoints.XunFeiWholeUtterance = whole;
        stream = std::make_unique<mevo::XunFeiStream>(state, *fakes.time, endpoints, *this);
        control("texts", "你好世界"_s);
    }

    bool dynamicCorrection() const override { return correction; }
    void handleXunFeiText(const QString &text) override { take("handle "_s + text); }
    void showXunFeiText(const QString &text) override { take("show "_s + text); }
    void xunFeiAnswered() override { ++answers; }
    void showPartialText(const QString &text) override { calls.append("partial "_s + text); }
    void hidePartialText() override { calls.append("hide"_s); }
    void flushXunFeiCount() override { calls.append("flush"_s); }
    void showXunFeiLanguage() override { calls.append("language "_s + state.XunFeiWebApiCurrentVoiceType); }
    void closeXunFeiRecording() override
    {
        calls.append("end"_s);
        stream->close();
    }
    void take(const QString &call)
    {
        calls.append(call);
        if (whileTaking) {
            whileTaking();
        }
    }

    bool control(const char *key, const QString &value)
    {
        QUrlQuery query;
        query.addQueryItem(QLatin1String(key), value);
        return service.control(query);
    }
    /// Sends a session of `blocks` blocks of 20 ms, as the recorder does: the first block twice.
    bool speak(int blocks = 5)
    {
        stream->ConnectXFWebApi();
        if (!QTest::qWaitFor([this] { return state.XFWebSocketConnected; })) {
            return false;
        }
        stream->sendFrame(QByteArray(640, '\x11'), First);
        for (int i = 0; i < blocks; ++i) {
            stream->sendFrame(QByteArray(640, '\x11'), Middle);
        }
        stream->sendFrame({}, Last);
        return true;
    }
    bool waitFor(const QString &call)
    {
        return QTest::qWaitFor([this, call] { return calls.contains(call); });
    }
    /// Entries of the service's log of one kind, and of one key of theirs.
    QVariantList noted(const char *event, const char *key) const
    {
        QVariantList values;
        for (const QJsonObject &note : notes) {
            if (note.value("event"_s) == QLatin1String(event)) {
                values.append(note.value(QLatin1String(key)).toVariant());
            }
        }
        return values;
    }

    QList<QJsonObject> notes;
    lab::XunFeiService service;
    FakePlatform fakes;
    MainState state;
    std::unique_ptr<mevo::XunFeiStream> stream;
    QStringList calls;
    int answers = 0;
    std::function<void()> whileTaking;
    bool correction = false;
    bool started = false;
};

} // namespace

class TestXunFeiStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void session_data()
    {
        // whole (as the file says it, invalid where it says nothing), correction, partialsMs (audio of a
        // session: 120 ms), calls, count
        const Rows<QVariant, bool, int, QString, int> row;
        row("plain", false, false, 0, "handle 你好世界,flush,end", 1);
        row("corrected", false, true, 0, "hide,show 你好世界,flush,end", 1);
        row("the first partial text ends it", false, false, 40, "handle 你好,end", 1);
        row("the first corrected one too", false, true, 40, "partial 你？,show 你？,end,hide", 1);
        row("nothing said, plain", QVariant(), false, 40, "handle 你好,end", 1);
        row("nothing said, corrected", QVariant(), true, 40,
            "partial 你？,partial 你好,hide,show 你好世界,flush,end", 3);
        row("whole, plain", true, false, 40, "handle 你好世界,flush,end", 2);
        row("whole, corrected", true, true, 40, "partial 你？,partial 你好,hide,show 你好世界,flush,end", 3);
    }
    void session()
    {
        const auto [whole, correction, partialsMs, calls, count] = rowOf<QVariant, bool, int, QString, int>();
        Desk desk(whole.isValid() ? std::optional<bool>(whole.toBool()) : std::nullopt);
        QVERIFY(desk.started);
        desk.correction = correction;
        QVERIFY(desk.control("partials", QString::number(partialsMs)));
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor("end"_s));
        QTRY_COMPARE(desk.noted("closed", "closeCode"), QVariantList{1000});
        QCOMPARE(desk.calls.join(QLatin1Char(',')), calls);
        QCOMPARE(desk.state.XFSR1DUsedQuantity, count);
        QVERIFY(desk.state.XFWebSocket == nullptr && !desk.state.XFWebSocketConnected);
        for (const QVariant &code : desk.noted("frame", "code")) {
            QCOMPARE(code.toInt(), 0);
        }
        QCOMPARE(desk.noted("closed", "audioBytes"), QVariantList{6 * 640});
    }

    void accounts_data()
    {
        const Rows<QString, QString> row; // voiceType, appId
        row("Mandarin", "mandarin", "app1");
        row("none chosen yet", "", "app1");
        row("a dialect", "cantonese", "app2");
        row("a language", "ko_kr", "app2");
    }
    void accounts()
    {
        Desk desk;
        const auto [voiceType, appId] = rowOf<QString, QString>();
        desk.state.XunFeiWebApiCurrentVoiceType = voiceType;
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor("handle 你好世界"_s));
        QCOMPARE(desk.state.XunFeiAppId, appId);

        Desk without;
        without.state.XunFeiWebApiCurrentVoiceType = voiceType;
        without.state.XunFeiMinorAppId.clear();
        QVERIFY(without.speak());
        QCOMPARE(without.state.XunFeiAppId, "app1"_s);
    }

    void refusals_data()
    {
        const Rows<QByteArray, int> row; // wrong, status
        row("secret", "secret", 401);
        row("key", "key", 401);
        row("clock ahead", "ahead", 403);
        row("clock behind", "behind", 403);
        row("as ordered", "order", 503);
    }
    void refusals()
    {
        const auto [wrong, status] = rowOf<QByteArray, int>();
        Desk desk;
        if (wrong == "secret") {
            desk.state.XunFeiApiSecret += QLatin1Char('x');
        } else if (wrong == "key") {
            desk.state.XunFeiApiKey += QLatin1Char('x');
        } else if (wrong == "ahead") {
            desk.fakes.time->advance(310 * 1000);
        } else if (wrong == "behind") {
            desk.fakes.time->start = desk.fakes.time->start.addSecs(-310);
        } else {
            QVERIFY(desk.control("refuse", QString::number(status)));
        }
        desk.stream->ConnectXFWebApi();
        QTRY_COMPARE(desk.noted("handshake refused", "status"), QVariantList{status});
        QTRY_VERIFY(desk.state.XFWebSocket->state() == QAbstractSocket::UnconnectedState);
        QVERIFY(!desk.state.XFWebSocketConnected);
        desk.stream->sendFrame(QByteArray(640, '\0'), First); // goes nowhere
        QVERIFY(desk.calls.isEmpty());
    }

    /// What the service checks of a stream that is signed well.
    void badFrames()
    {
        Desk desk;
        desk.stream->ConnectXFWebApi();
        QTRY_VERIFY(desk.state.XFWebSocketConnected);
        desk.stream->sendFrame({}, Last); // a release before the connection
        QVERIFY(desk.waitFor("end"_s));
        QTRY_COMPARE(desk.noted("error", "code"), QVariantList{10165});
        desk.state.XunFeiAppId = "app2"_s; // not the key's
        QVERIFY(desk.speak());
        QTRY_COMPARE(desk.noted("error", "code").size(), 2);
        QCOMPARE(desk.noted("error", "code").at(1).toInt(), 10313);
    }

    void errors_data()
    {
        const Rows<int, QString, QString> row; // code, voiceType, afterwards
        for (int code : {10105, 10110, 10160, 10161, 10163, 10165, 10313, 10700, 10800, 11201}) {
            row(QByteArray::number(code), code, "ko_kr", "ko_kr");
        }
        row("11200 in a language", 11200, "ru-ru", "en_us");
        row("11200 in English", 11200, "en_us", "mandarin");
    }
    void errors()
    {
        Desk desk;
        const auto [code, voiceType, afterwards] = rowOf<int, QString, QString>();
        desk.state.XunFeiWebApiCurrentVoiceType = voiceType;
        QVERIFY(desk.control("error", QString::number(code)));
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor("end"_s));
        QCOMPARE(desk.state.XunFeiWebApiCurrentVoiceType, afterwards);
        QStringList calls{"end"_s};
        if (code == 11200) {
            calls.prepend("language "_s + afterwards);
        }
        QCOMPARE(desk.calls, calls);
        QCOMPARE(desk.state.XFSR1DUsedQuantity, 0);
    }

    void faults_data()
    {
        const Rows<QString, bool> row; // kind, ends (by itself; else with the next session)
        for (const char *kind : {"garbage", "after-end"}) {
            row(kind, kind, true);
        }
        for (const char *kind :
             {"handshake-stall", "stall", "close", "cut", "binary", "huge", "protocol", "silence-end"}) {
            row(kind, kind, false);
        }
    }
    void faults()
    {
        const auto [kind, ends] = rowOf<QString, bool>();
        Desk desk;
        QVERIFY(desk.control("fault", kind));
        if (kind == "binary"_s) {
            QTest::ignoreMessage(
                QtWarningMsg,
                QRegularExpression("^XunFei: a binary frame of \\d+ bytes is not understood$"_s));
        }
        if (kind == "handshake-stall"_s) {
            desk.stream->ConnectXFWebApi();
            QTRY_COMPARE(desk.noted("handshake stalled", "session").size(), 1);
        } else {
            QVERIFY(desk.speak());
            if (ends) {
                QVERIFY(desk.waitFor("end"_s));
                QTRY_COMPARE(desk.noted("closed", "closeCode").size(), 1);
            } else if (kind == "stall"_s || kind == "binary"_s) {
                QTRY_VERIFY(desk.noted("frame", "status").contains(2));
            } else {
                QTRY_VERIFY(!desk.state.XFWebSocketConnected); // closed by the one or the other side
            }
        }
        QCOMPARE(desk.calls.count("end"_s), ends ? 1 : 0);
        // The next press works, and is answered once.
        desk.calls.clear();
        desk.control("texts", "好"_s);
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor("end"_s));
        QCOMPARE(desk.calls.join(QLatin1Char(',')), "handle 好,flush,end"_s);
    }

    void aMessageWithoutWordsIsSaid()
    {
        Desk desk;
        QVERIFY(desk.control("texts", QString()));
        QTest::ignoreMessage(QtInfoMsg, "XunFei: a message without words, status 2");
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor("end"_s));
        QCOMPARE(desk.calls.join(QLatin1Char(',')), "flush,end"_s);
    }

    void aLateAnswerDoesNotEndTheNextSession()
    {
        Desk desk;
        desk.control("texts", "一|二"_s);
        QVERIFY(desk.speak());
        QVERIFY(desk.speak()); // before the first one's answer is read
        QVERIFY(desk.waitFor("end"_s));
        QCOMPARE(desk.noted("open", "session").size(), 2);
        QCOMPARE(desk.calls.join(QLatin1Char(',')), "handle 二,flush,end"_s);
    }

    void theNextPressWhileATextIsHandled_data() { flagRows("corrected", "plain"); }
    void theNextPressWhileATextIsHandled()
    {
        Desk desk;
        const auto [correction] = rowOf<bool>();
        desk.correction = correction;
        desk.whileTaking = [&desk] {
            desk.whileTaking = nullptr;
            desk.state.XFPartialList.clear();
            desk.stream->ConnectXFWebApi();
        };
        QVERIFY(desk.speak());
        QTRY_VERIFY(desk.noted("open", "session").size() == 2 && desk.state.XFWebSocketConnected);
        QVERIFY(!desk.calls.contains("end"_s));
        QVERIFY(desk.state.XFWebSocket != nullptr);
    }

    void goingAwayWhileATextIsHandled()
    {
        Desk desk;
        desk.whileTaking = [&desk] { desk.stream.reset(); };
        QVERIFY(desk.speak());
        QTRY_VERIFY(!desk.stream);
        QTRY_COMPARE(desk.noted("closed", "closeCode"), QVariantList{1000});
        QCOMPARE(desk.calls, list({"handle 你好世界"}));
        QVERIFY(desk.state.XFWebSocket == nullptr);
    }

    /// What was understood is handed on, whatever keeps the last result away, and once.
    void anUnfinishedUtteranceGivesWhatItHas_data()
    {
        const Rows<QByteArray, bool, bool> row; // end, ended, correction
        for (const char *end : {"cut", "error", "garbage", "next press", "silence"}) {
            const bool ended = qstrcmp(end, "next press") != 0 && qstrcmp(end, "silence") != 0;
            row(end, end, ended, false);
            row(end + QByteArray(", corrected"), end, ended, true);
        }
    }
    void anUnfinishedUtteranceGivesWhatItHas()
    {
        const auto [end, ended, correction] = rowOf<QByteArray, bool, bool>();
        Desk desk(true);
        desk.correction = correction;
        desk.stream->ConnectXFWebApi();
        QTRY_VERIFY(desk.state.XFWebSocketConnected);
        for (const char *text : {"你", "好"}) {
            desk.stream->onXFWebApiMessageReceived(
                R"({"code":0,"data":{"status":1,"result":{"ws":[{"cw":[{"w":"%1"}]}]}}})"_s.arg(
                    QString::fromUtf8(text)));
        }
        if (end == "cut") {
            desk.state.XFWebSocket->abort();
        } else if (end == "error") {
            desk.stream->onXFWebApiMessageReceived(R"({"code":10700,"message":"engine"})"_s);
        } else if (end == "garbage") {
            desk.stream->onXFWebApiMessageReceived("{"_s);
        } else if (end == "next press") {
            desk.stream->finishEarly();
        } else {
            desk.stream->giveUp();
        }
        const QString calls = (correction ? "partial 你,partial 你好,hide,show 你好"_s : "handle 你好"_s) +
                              QLatin1String(ended ? ",end" : "");
        QCOMPARE(desk.calls.join(u','), calls);
        QVERIFY(desk.state.XFWebSocket == nullptr);
        desk.stream->finishEarly();
        desk.stream->giveUp();
        QCOMPARE(desk.calls.join(u','), calls);
    }

    /// The next press comes before any result: both sentences are recognised, each once.
    void theNextPressLeavesTheAnswerItsTime_data()
    {
        const Rows<bool, bool> row; // correction, released (the last frame has gone already)
        for (const bool correction : {false, true}) {
            const QByteArray kind = correction ? "corrected" : "plain";
            row(kind + ", while the key is held", correction, false);
            row(kind + ", after the release", correction, true);
        }
    }
    void theNextPressLeavesTheAnswerItsTime()
    {
        const auto [correction, released] = rowOf<bool, bool>();
        Desk desk(std::nullopt);
        desk.correction = correction;
        desk.control("texts", "一|二"_s);
        desk.state.DongleID = "01-01-000001"_s;
        desk.stream->ConnectXFWebApi();
        QTRY_VERIFY(desk.state.XFWebSocketConnected);
        for (const int status : {First, Middle, Middle}) {
            desk.stream->sendFrame(QByteArray(640, '\x11'), status);
        }
        if (released) {
            desk.stream->sendFrame({}, Last);
        }
        QStringList late;
        desk.stream->letGo([&late, plain = !correction](const QString &text, bool words) {
            late.append(text);
            QCOMPARE(words, plain);
        });
        QVERIFY(desk.state.XFWebSocket == nullptr && late.isEmpty());
        desk.state.DongleID = "01-01-000002"_s; // another receiver takes over
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor("end"_s));
        QTRY_COMPARE(late, list({"一"}));
        QVERIFY(desk.calls.contains(correction ? "show 二"_s : "handle 二"_s));
        QTRY_COMPARE(desk.noted("closed", "closeCode"), (QVariantList{1000, 1000}));
        QCOMPARE(desk.noted("frame", "status").count(2), 2);
        for (const char *receiver : {"01-01-000002", "01-01-000001"}) { // each counts its own
            desk.state.DongleID = QLatin1String(receiver);
            QCOMPARE(desk.state.dayCounts.used(mevo::CountColumn::XunFei), 1);
        }
    }

    /// What is known at once is told at once, and a service that goes or fails keeps nobody waiting.
    void lettingGoIsAnsweredInAnyCase_data()
    {
        const Rows<QString, QString> row; // kind, told
        for (const char *kind : {"connecting", "silent", "error", "cut", "garbage"}) {
            row(kind, kind, "");
        }
        row("a result is there", "result", "你");
    }
    void lettingGoIsAnsweredInAnyCase()
    {
        const auto [kind, expectedTold] = rowOf<QString, QString>();
        Desk desk(true);
        if (kind == "error"_s) {
            desk.control("error", "10700"_s);
        } else if (kind == "cut"_s || kind == "garbage"_s) {
            desk.control("fault", kind);
        }
        desk.stream->ConnectXFWebApi();
        if (kind != "connecting"_s) {
            QTRY_VERIFY(desk.state.XFWebSocketConnected);
        }
        if (kind == "result"_s) {
            desk.stream->onXFWebApiMessageReceived(
                R"({"code":0,"data":{"status":1,"result":{"ws":[{"cw":[{"w":"你"}]}]}}})"_s);
        } else if (kind != "silent"_s && kind != "connecting"_s) {
            desk.stream->sendFrame(QByteArray(640, '\x11'), First);
        }
        QStringList told;
        desk.stream->letGo([&](const QString &text, bool) { told.append(text); });
        QTRY_COMPARE(told.size(), 1);
        QCOMPARE(told.first(), expectedTold);
        QVERIFY(desk.state.XFWebSocket == nullptr && desk.calls.isEmpty());
    }

    /// A service that has said nothing yet may still be late.
    void silenceWithoutAnyResultKeepsTheSocket()
    {
        Desk desk;
        desk.stream->ConnectXFWebApi();
        desk.stream->giveUp();
        QVERIFY(desk.state.XFWebSocket != nullptr && desk.calls.isEmpty());
    }

    void aSessionKeepsTheLanguageOfItsPress()
    {
        Desk desk;
        desk.stream->ConnectXFWebApi();
        QTRY_VERIFY(desk.state.XFWebSocketConnected);
        desk.state.XunFeiWebApiCurrentVoiceType = "en_us"_s;
        desk.stream->sendFrame(QByteArray(640, '\x11'), First);
        QTRY_COMPARE(desk.noted("frame", "business").size(), 1);
        QCOMPARE(desk.noted("frame", "business").first().toMap().value("language"_s).toString(), "zh_cn"_s);
    }
};

QTEST_GUILESS_MAIN(TestXunFeiStream)
#include "tst_xunfei_stream.moc"
