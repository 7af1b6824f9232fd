// The streaming session against the lab's WebSocket service, which verifies what it is sent by itself.

#include "audio/AudioRecorder.h"
#include "engines/XunFeiHost.h"
#include "engines/XunFeiStream.h"
#include "recognisers/XunFeiService.h"
#include "support/FakePlatform.h"

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
        : service({{QStringLiteral("app1"), QStringLiteral("key1"), QStringLiteral("secret1")},
                   {QStringLiteral("app2"), QStringLiteral("key2"), QStringLiteral("secret2")}},
                  {QStringLiteral("localhost")}, [this](const QJsonObject &note) { notes.append(note); })
    {
        fakes.time->start = QDateTime::currentDateTimeUtc();
        started = service.start(0);
        state.XunFeiAppId = QStringLiteral("app1");
        state.XunFeiApiKey = QStringLiteral("key1");
        state.XunFeiApiSecret = QStringLiteral("secret1");
        state.XunFeiMinorAppId = QStringLiteral("app2");
        state.XunFeiMinorApiKey = QStringLiteral("key2");
        state.XunFeiMinorApiSecret = QStringLiteral("secret2");
        state.XunFeiWebApiCurrentVoiceType = QStringLiteral("mandarin");
        mevo::EngineEndpoints endpoints;
        endpoints.XunFeiSignHost = QStringLiteral("localhost");
        endpoints.XunFeiSocketHost = QStringLiteral("127.0.0.1:%1").arg(service.serverPort());
        endpoints.XunFeiWholeUtterance = whole;
        stream = std::make_unique<mevo::XunFeiStream>(state, *fakes.time, endpoints, *this);
        control("texts", QStringLiteral("你好世界"));
    }

    bool dynamicCorrection() const override { return correction; }
    void handleXunFeiText(const QString &text) override { take(QStringLiteral("handle ") + text); }
    void showXunFeiText(const QString &text) override { take(QStringLiteral("show ") + text); }
    void xunFeiAnswered() override { ++answers; }
    void showPartialText(const QString &text) override { calls.append(QStringLiteral("partial ") + text); }
    void hidePartialText() override { calls.append(QStringLiteral("hide")); }
    void flushXunFeiCount() override { calls.append(QStringLiteral("flush")); }
    void showXunFeiLanguage() override
    {
        calls.append(QStringLiteral("language ") + state.XunFeiWebApiCurrentVoiceType);
    }
    void closeXunFeiRecording() override
    {
        calls.append(QStringLiteral("end"));
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
            if (note.value(QStringLiteral("event")) == QLatin1String(event)) {
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
        QTest::addColumn<QVariant>("whole"); // as the file says it, invalid where it says nothing
        QTest::addColumn<bool>("correction");
        QTest::addColumn<int>("partialsMs"); // audio of a session: 120 ms
        QTest::addColumn<QString>("calls");
        QTest::addColumn<int>("count");
        const auto row = [](const char *name, const QVariant &whole, bool correction, int partials,
                            const char *calls, int count) {
            QTest::newRow(name) << whole << correction << partials << QString::fromUtf8(calls) << count;
        };
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
        QFETCH(QVariant, whole);
        QFETCH(bool, correction);
        QFETCH(int, partialsMs);
        Desk desk(whole.isValid() ? std::optional<bool>(whole.toBool()) : std::nullopt);
        QVERIFY(desk.started);
        desk.correction = correction;
        QVERIFY(desk.control("partials", QString::number(partialsMs)));
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QTRY_COMPARE(desk.noted("closed", "closeCode"), QVariantList{1000});
        QTEST(desk.calls.join(QLatin1Char(',')), "calls");
        QTEST(desk.state.XFSR1DUsedQuantity, "count");
        QVERIFY(desk.state.XFWebSocket == nullptr && !desk.state.XFWebSocketConnected);
        for (const QVariant &code : desk.noted("frame", "code")) {
            QCOMPARE(code.toInt(), 0);
        }
        QCOMPARE(desk.noted("closed", "audioBytes"), QVariantList{6 * 640});
    }

    void accounts_data()
    {
        QTest::addColumn<QString>("voiceType");
        QTest::addColumn<QString>("appId");
        QTest::newRow("Mandarin") << "mandarin"
                                  << "app1";
        QTest::newRow("a dialect") << "cantonese"
                                   << "app2";
        QTest::newRow("a language") << "ko_kr"
                                    << "app2";
    }
    void accounts()
    {
        Desk desk;
        QFETCH(QString, voiceType);
        desk.state.XunFeiWebApiCurrentVoiceType = voiceType;
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor(QStringLiteral("handle 你好世界")));
        QTEST(desk.state.XunFeiAppId, "appId");

        Desk without;
        without.state.XunFeiWebApiCurrentVoiceType = voiceType;
        without.state.XunFeiMinorAppId.clear();
        QVERIFY(without.speak());
        QCOMPARE(without.state.XunFeiAppId, QStringLiteral("app1"));
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("wrong");
        QTest::addColumn<int>("status");
        QTest::newRow("secret") << QByteArray("secret") << 401;
        QTest::newRow("key") << QByteArray("key") << 401;
        QTest::newRow("clock ahead") << QByteArray("ahead") << 403;
        QTest::newRow("clock behind") << QByteArray("behind") << 403;
        QTest::newRow("as ordered") << QByteArray("order") << 503;
    }
    void refusals()
    {
        QFETCH(QByteArray, wrong);
        QFETCH(int, status);
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
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QTRY_COMPARE(desk.noted("error", "code"), QVariantList{10165});
        desk.state.XunFeiAppId = QStringLiteral("app2"); // not the key's
        QVERIFY(desk.speak());
        QTRY_COMPARE(desk.noted("error", "code").size(), 2);
        QCOMPARE(desk.noted("error", "code").at(1).toInt(), 10313);
    }

    void errors_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("voiceType");
        QTest::addColumn<QString>("afterwards");
        for (int code : {10105, 10110, 10160, 10161, 10163, 10165, 10313, 10700, 10800, 11201}) {
            QTest::addRow("%d", code) << code << "ko_kr"
                                      << "ko_kr";
        }
        for (const char *minor : {"ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"}) {
            QTest::addRow("11200 %s", minor) << 11200 << minor << "en_us";
        }
        QTest::newRow("11200 English") << 11200 << "en_us"
                                       << "mandarin";
        QTest::newRow("11200 dialect") << 11200 << "lmz"
                                       << "mandarin";
    }
    void errors()
    {
        Desk desk;
        QFETCH(int, code);
        QFETCH(QString, voiceType);
        desk.state.XunFeiWebApiCurrentVoiceType = voiceType;
        QVERIFY(desk.control("error", QString::number(code)));
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QFETCH(QString, afterwards);
        QCOMPARE(desk.state.XunFeiWebApiCurrentVoiceType, afterwards);
        QStringList calls{QStringLiteral("end")};
        if (code == 11200) {
            calls.prepend(QStringLiteral("language ") + afterwards);
        }
        QCOMPARE(desk.calls, calls);
        QCOMPARE(desk.state.XFSR1DUsedQuantity, 0);
    }

    void faults_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("ends"); // by itself; else with the next session
        for (const char *kind : {"garbage", "after-end"}) {
            QTest::newRow(kind) << kind << true;
        }
        for (const char *kind :
             {"handshake-stall", "stall", "close", "cut", "binary", "huge", "protocol", "silence-end"}) {
            QTest::newRow(kind) << kind << false;
        }
    }
    void faults()
    {
        QFETCH(QString, kind);
        QFETCH(bool, ends);
        Desk desk;
        QVERIFY(desk.control("fault", kind));
        if (kind == QLatin1String("binary")) {
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(QStringLiteral(
                                     "^XunFei: a binary frame of \\d+ bytes is not understood$")));
        }
        if (kind == QLatin1String("handshake-stall")) {
            desk.stream->ConnectXFWebApi();
            QTRY_COMPARE(desk.noted("handshake stalled", "session").size(), 1);
        } else {
            QVERIFY(desk.speak());
            if (ends) {
                QVERIFY(desk.waitFor(QStringLiteral("end")));
                QTRY_COMPARE(desk.noted("closed", "closeCode").size(), 1);
            } else if (kind == QLatin1String("stall") || kind == QLatin1String("binary")) {
                QTRY_VERIFY(desk.noted("frame", "status").contains(2));
            } else {
                QTRY_VERIFY(!desk.state.XFWebSocketConnected); // closed by the one or the other side
            }
        }
        QCOMPARE(desk.calls.count(QStringLiteral("end")), ends ? 1 : 0);
        // The next press works, and is answered once.
        desk.calls.clear();
        desk.control("texts", QStringLiteral("好"));
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QCOMPARE(desk.calls.join(QLatin1Char(',')), QStringLiteral("handle 好,flush,end"));
    }

    void aMessageWithoutWordsIsSaid()
    {
        Desk desk;
        QVERIFY(desk.control("texts", QString()));
        QTest::ignoreMessage(QtInfoMsg, "XunFei: a message without words, status 2");
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QCOMPARE(desk.calls.join(QLatin1Char(',')), QStringLiteral("flush,end"));
    }

    void aLateAnswerDoesNotEndTheNextSession()
    {
        Desk desk;
        desk.control("texts", QStringLiteral("一|二"));
        QVERIFY(desk.speak());
        QVERIFY(desk.speak()); // before the first one's answer is read
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QCOMPARE(desk.noted("open", "session").size(), 2);
        QCOMPARE(desk.calls.join(QLatin1Char(',')), QStringLiteral("handle 二,flush,end"));
    }

    void theNextPressWhileATextIsHandled_data()
    {
        QTest::addColumn<bool>("correction");
        QTest::newRow("plain") << false;
        QTest::newRow("corrected") << true;
    }
    void theNextPressWhileATextIsHandled()
    {
        Desk desk;
        QFETCH(bool, correction);
        desk.correction = correction;
        desk.whileTaking = [&desk] {
            desk.whileTaking = nullptr;
            desk.state.XFPartialList.clear();
            desk.stream->ConnectXFWebApi();
        };
        QVERIFY(desk.speak());
        QTRY_VERIFY(desk.noted("open", "session").size() == 2 && desk.state.XFWebSocketConnected);
        QVERIFY(!desk.calls.contains(QStringLiteral("end")));
        QVERIFY(desk.state.XFWebSocket != nullptr);
    }

    void goingAwayWhileATextIsHandled()
    {
        Desk desk;
        desk.whileTaking = [&desk] { desk.stream.reset(); };
        QVERIFY(desk.speak());
        QTRY_VERIFY(!desk.stream);
        QTRY_COMPARE(desk.noted("closed", "closeCode"), QVariantList{1000});
        QCOMPARE(desk.calls, QStringList{QStringLiteral("handle 你好世界")});
        QVERIFY(desk.state.XFWebSocket == nullptr);
    }

    /// What was understood is handed on, whatever keeps the last result away, and once.
    void anUnfinishedUtteranceGivesWhatItHas_data()
    {
        QTest::addColumn<QString>("end");
        QTest::addColumn<bool>("correction");
        QTest::addColumn<QString>("calls");
        for (const bool correction : {false, true}) {
            const QString partials = correction ? QStringLiteral("partial 你,partial 你好,hide,show 你好")
                                                : QStringLiteral("handle 你好");
            const auto row = [&](const char *end, const char *calls) {
                QTest::addRow("%s, %s", end, correction ? "corrected" : "plain")
                    << end << correction << partials + QLatin1String(calls);
            };
            row("cut", ",end");
            row("error", ",end");
            row("garbage", ",end");
            row("next press", "");
            row("silence", "");
        }
    }
    void anUnfinishedUtteranceGivesWhatItHas()
    {
        QFETCH(QString, end);
        QFETCH(bool, correction);
        Desk desk(true);
        desk.correction = correction;
        desk.stream->ConnectXFWebApi();
        QTRY_VERIFY(desk.state.XFWebSocketConnected);
        for (const char *text : {"你", "好"}) {
            desk.stream->onXFWebApiMessageReceived(
                QStringLiteral(R"({"code":0,"data":{"status":1,"result":{"ws":[{"cw":[{"w":"%1"}]}]}}})")
                    .arg(QString::fromUtf8(text)));
        }
        if (end == QLatin1String("cut")) {
            desk.state.XFWebSocket->abort();
        } else if (end == QLatin1String("error")) {
            desk.stream->onXFWebApiMessageReceived(QStringLiteral(R"({"code":10700,"message":"engine"})"));
        } else if (end == QLatin1String("garbage")) {
            desk.stream->onXFWebApiMessageReceived(QStringLiteral("{"));
        } else if (end == QLatin1String("next press")) {
            desk.stream->finishEarly();
        } else {
            desk.stream->giveUp();
        }
        QTEST(desk.calls.join(QLatin1Char(',')), "calls");
        QVERIFY(desk.state.XFWebSocket == nullptr);
        desk.stream->finishEarly();
        desk.stream->giveUp();
        QTEST(desk.calls.join(QLatin1Char(',')), "calls");
    }

    /// The next press comes before any result: both sentences are recognised, each once.
    void theNextPressLeavesTheAnswerItsTime_data()
    {
        QTest::addColumn<bool>("correction");
        QTest::addColumn<bool>("released"); // the last frame has gone already
        for (const bool correction : {false, true}) {
            for (const bool released : {false, true}) {
                QTest::addRow("%s, %s", correction ? "corrected" : "plain",
                              released ? "after the release" : "while the key is held")
                    << correction << released;
            }
        }
    }
    void theNextPressLeavesTheAnswerItsTime()
    {
        QFETCH(bool, correction);
        QFETCH(bool, released);
        Desk desk(std::nullopt);
        desk.correction = correction;
        desk.control("texts", QStringLiteral("一|二"));
        desk.state.DongleID = QStringLiteral("01-01-000001");
        desk.stream->ConnectXFWebApi();
        QTRY_VERIFY(desk.state.XFWebSocketConnected);
        for (const int status : {First, Middle, Middle}) {
            desk.stream->sendFrame(QByteArray(640, '\x11'), status);
        }
        if (released) {
            desk.stream->sendFrame({}, Last);
        }
        QStringList late;
        desk.stream->letGo([&](const QString &text, bool words) {
            late.append(text);
            QCOMPARE(words, !correction);
        });
        QVERIFY(desk.state.XFWebSocket == nullptr && late.isEmpty());
        desk.state.DongleID = QStringLiteral("01-01-000002"); // another receiver takes over
        QVERIFY(desk.speak());
        QVERIFY(desk.waitFor(QStringLiteral("end")));
        QTRY_COMPARE(late, QStringList{QStringLiteral("一")});
        QVERIFY(desk.calls.contains(correction ? QStringLiteral("show 二") : QStringLiteral("handle 二")));
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
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("told");
        QTest::newRow("no connection yet") << "connecting"
                                           << "";
        QTest::newRow("a result is there") << "result"
                                           << "你";
        QTest::newRow("nothing said") << "silent"
                                      << "";
        QTest::newRow("error") << "error"
                               << "";
        QTest::newRow("connection cut") << "cut"
                                        << "";
        QTest::newRow("garbage") << "garbage"
                                 << "";
    }
    void lettingGoIsAnsweredInAnyCase()
    {
        QFETCH(QString, kind);
        Desk desk(true);
        if (kind == QLatin1String("error")) {
            desk.control("error", QStringLiteral("10700"));
        } else if (kind == QLatin1String("cut") || kind == QLatin1String("garbage")) {
            desk.control("fault", kind);
        }
        desk.stream->ConnectXFWebApi();
        if (kind != QLatin1String("connecting")) {
            QTRY_VERIFY(desk.state.XFWebSocketConnected);
        }
        if (kind == QLatin1String("result")) {
            desk.stream->onXFWebApiMessageReceived(
                QStringLiteral(R"({"code":0,"data":{"status":1,"result":{"ws":[{"cw":[{"w":"你"}]}]}}})"));
        } else if (kind != QLatin1String("silent") && kind != QLatin1String("connecting")) {
            desk.stream->sendFrame(QByteArray(640, '\x11'), First);
        }
        QStringList told;
        desk.stream->letGo([&](const QString &text, bool) { told.append(text); });
        QTRY_COMPARE(told.size(), 1);
        QTEST(told.first(), "told");
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
        desk.state.XunFeiWebApiCurrentVoiceType = QStringLiteral("en_us");
        desk.stream->sendFrame(QByteArray(640, '\x11'), First);
        QTRY_COMPARE(desk.noted("frame", "business").size(), 1);
        QCOMPARE(desk.noted("frame", "business").first().toMap().value(QStringLiteral("language")).toString(),
                 QStringLiteral("zh_cn"));
    }
};

QTEST_GUILESS_MAIN(TestXunFeiStream)
#include "tst_xunfei_stream.moc"
