#include "app/MainState.h"
#include "audio/RecorderState.h"
#include "engines/BaiduErrors.h"
#include "engines/BaiduFastVariant.h"
#include "engines/BaiduReply.h"
#include "engines/BaiduRequest.h"
#include "engines/BaiduSpeech.h"
#include "engines/EngineHost.h"
#include "support/CallLog.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

const ScratchHome home;

class RecordingHost : public mevo::EngineHost
{
public:
    CallLog log;
    MainState *state = nullptr;

    void loadCurrentBaiduCredentials() override { log.add(QStringLiteral("account")); }
    void fetchBaiduToken() override
    {
        log.add(QStringLiteral("token"));
        state->BaiduAccessToken = QStringLiteral("fresh");
    }
    void loadBaiduTranslateCredentials() override {}
    void buildAsrLanMenu(bool persist, bool setup) override
    {
        log.add(QStringLiteral("menu %1%2").arg(int(persist)).arg(int(setup)));
    }
    void ensureEngineTip() override {}
    void showEngineTip(const QString &text, bool regardless) override
    {
        log.add(QStringLiteral("tip %1 ").arg(int(regardless)) + text.simplified());
    }
    void channelCountChanged() override { log.add(QStringLiteral("channels")); }
};

struct Desk
{
    ScriptedHttp server;
    MainState state;
    RecorderState recorder;
    FakeSystemFacts facts;
    RecordingHost host;
    std::unique_ptr<Relay_Speech::BaiduSpeech> speech;
    QStringList texts;

    Desk()
    {
        home.write(QStringLiteral("MEVOSetting.ini"), "[MainSetting]\nBaiDuCurrentVoiceType=1537\n");
        host.state = &state;
        recorder.BaiDuNoStreamApi = true;
        recorder.UseTXASRApi = false;
        state.BaiduAccessToken = QStringLiteral("tok");
        state.BaiDuCurrentVoiceType = QStringLiteral("1737");
        mevo::EngineEndpoints endpoints;
        endpoints.BaiduSpeechHost = server.host();
        endpoints.BaiduSpeechHttpsHost = QStringLiteral("http://") + server.host();
        speech = std::make_unique<Relay_Speech::BaiduSpeech>(state, recorder, facts, host, endpoints);
        speech->requestTimeoutMs = 2000;
        QObject::connect(speech.get(), &Relay_Speech::BaiduSpeech::finishTrans,
                         [this](const QString &text) { texts.append(text); });
    }
    QPair<bool, QString> say(const QByteArray &pcm = QByteArray(3200, 'x'))
    {
        QByteArray data = pcm;
        QBuffer buffer(&data);
        return speech->finish(&buffer);
    }
};

QByteArray error(int number)
{
    return "{\"err_no\":" + QByteArray::number(number) + ",\"err_msg\":\"why\"}";
}

} // namespace

Q_DECLARE_METATYPE(ScriptedAnswer)

class TestBaidu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestIsAsTheServiceTakesIt()
    {
        Desk desk;
        desk.server.fallback = ScriptedAnswer::body("{\"err_no\":0,\"result\":[\"你好，\"]}");
        const auto result = desk.say("abcd");
        QVERIFY(result.first);
        QCOMPARE(result.second, QStringLiteral("你好，"));
        QCOMPARE(desk.texts, QStringList{QStringLiteral("你好，__over__")});
        const ScriptedRequest &request = desk.server.requests.first();
        QCOMPARE(request.method, QByteArray("POST"));
        QCOMPARE(request.target, QByteArray("/server_api"));
        QCOMPARE(request.headers.value("content-type"), QByteArray("application/json"));
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        const QJsonObject expected{{QStringLiteral("format"), QStringLiteral("pcm")},
                                   {QStringLiteral("rate"), 16000},
                                   {QStringLiteral("channel"), QStringLiteral("1")},
                                   {QStringLiteral("token"), QStringLiteral("tok")},
                                   {QStringLiteral("dev_pid"), 1737},
                                   {QStringLiteral("lan"), QStringLiteral("zh")},
                                   {QStringLiteral("cuid"), desk.facts.computerId()},
                                   {QStringLiteral("speech"), QStringLiteral("YWJjZA==")},
                                   {QStringLiteral("len"), 4}};
        QCOMPARE(body, expected);
        QCOMPARE(desk.state.BDSR1DUsedQuantity, 1);
        QCOMPARE(home.read(QStringLiteral("test.pcm")), QByteArray("\x04\x00\x00\x00"
                                                                   "abcd",
                                                                   8));
    }

    void variants_data()
    {
        QTest::addColumn<bool>("fast");
        QTest::addColumn<QString>("voiceType");
        QTest::addColumn<int>("devPid");
        QTest::newRow("empty is Mandarin") << false << "" << 1537;
        QTest::newRow("no number is Mandarin") << false << "abc" << 1537;
        QTest::newRow("Sichuanese") << false << "1837" << 1837;
        QTest::newRow("fast knows one language") << true << "1737" << 80001;
    }

    void variants()
    {
        QFETCH(bool, fast);
        QFETCH(QString, voiceType);
        const auto body =
            QJsonDocument::fromJson(mevo::baiduRequestBody({fast, voiceType, {}, {}, {}})).object();
        QTEST(body.value(QStringLiteral("dev_pid")).toInt(), "devPid");
        QCOMPARE(body.value(QStringLiteral("scope")).toString(),
                 fast ? QStringLiteral("brain_enhanced_asr") : QString());
        QCOMPARE(body.value(QStringLiteral("lan")).toString(), QStringLiteral("zh"));
    }

    void errorsAreToldAndMet_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("xpClass");
        QTest::addColumn<QString>("calls"); // with each tip cut to its number
        QTest::addColumn<bool>("xunFei");
        QTest::newRow("quality") << 3301 << false << "tip 0 3301" << false;
        QTest::newRow("too short") << 3314 << false << "tip 0 3314|channels" << false;
        QTest::newRow("rate") << 3304 << false << "tip 0 3304|menu 11" << true;
        QTest::newRow("rate, XP class") << 3304 << true << "tip 1 3304" << false;
        QTest::newRow("not recognised") << 3307 << false << "tip 0 3307" << false;
        QTest::newRow("quota") << 3305 << false << "tip 0 3305|account|token|menu 11" << true;
        QTest::newRow("quota, XP class") << 3305 << true << "tip 1 3305|account|token" << false;
        QTest::newRow("other") << 3302 << false << "tip 0 3302" << false;
        QTest::newRow("negative") << -7 << false << "tip 0 -7" << false;
    }

    void errorsAreToldAndMet()
    {
        QFETCH(int, number);
        QFETCH(bool, xpClass);
        QFETCH(bool, xunFei);
        Desk desk;
        desk.facts.xpClass = xpClass;
        desk.server.fallback = ScriptedAnswer::body(error(number));
        const auto result = desk.say();
        QVERIFY(!result.first);
        QCOMPARE(result.second, QString::fromUtf8(error(number)));
        QVERIFY(desk.texts.isEmpty());
        QStringList calls;
        const QString digits = QString::number(number);
        for (const QString &call : desk.host.log.calls()) {
            if (call.startsWith(QLatin1String("tip "))) {
                QVERIFY2(call.contains(digits), qPrintable(call));
                calls.append(call.left(6) + digits);
            } else {
                calls.append(call);
            }
        }
        QTEST(calls.join(QLatin1Char('|')), "calls");
        QCOMPARE(desk.recorder.UseXunFeiWebApi, xunFei);
        QCOMPARE(desk.recorder.BaiDuNoStreamApi, !xunFei);
    }

    void tooShortSwapsTheChannelsInMemoryAlone()
    {
        Desk desk;
        desk.server.fallback = ScriptedAnswer::body(error(3314));
        desk.say();
        QVERIFY(desk.state.SimulateDoubleChannel);
        desk.say();
        QVERIFY(!desk.state.SimulateDoubleChannel);
        const QByteArray settings = home.read(QStringLiteral("MEVOSetting.ini"));
        QVERIFY(settings.contains("UseLeftChannelVoice=0"));
        QVERIFY(!settings.contains("SimulateDoubleChannel"));
    }

    void fastVariantIsGivenUp_data()
    {
        QTest::addColumn<QString>("replies"); // e empty, g good
        QTest::addColumn<bool>("givenUp");
        QTest::newRow("two in a row") << "ee" << true;
        QTest::newRow("five good ones between") << "egggg"
                                                   "ge"
                                                << true;
        QTest::newRow("six good ones between") << "egggggge" << false;
        QTest::newRow("one") << "ge" << false;
    }

    void fastVariantIsGivenUp()
    {
        QFETCH(QString, replies);
        mevo::BaiduFastVariant variant;
        bool givenUp = false;
        for (const QChar reply : replies) {
            if (reply == QLatin1Char('e')) {
                givenUp = variant.emptyReply() || givenUp;
            } else {
                variant.goodReply();
            }
        }
        QTEST(givenUp, "givenUp");
    }

    void brokenRepliesEndTheCall_data()
    {
        QTest::addColumn<ScriptedAnswer>("answer");
        QTest::newRow("nothing") << ScriptedAnswer::body("");
        QTest::newRow("cut") << ScriptedAnswer::cut("{\"err_no\"", 500);
        QTest::newRow("no HTTP") << ScriptedAnswer::raw("what?\r\n\r\n");
        QTest::newRow("no JSON") << ScriptedAnswer::body("<html>");
        QTest::newRow("an array") << ScriptedAnswer::body("[1,2]");
        QTest::newRow("no result") << ScriptedAnswer::body("{}");
        QTest::newRow("result of another kind") << ScriptedAnswer::body("{\"err_no\":0,\"result\":\"x\"}");
        QTest::newRow("result empty") << ScriptedAnswer::body("{\"err_no\":0,\"result\":[]}");
        QTest::newRow("deep") << ScriptedAnswer::body(QByteArray(100000, '['));
        QTest::newRow("status 500") << ScriptedAnswer::body("{}", 500);
        QTest::newRow("enormous") << ScriptedAnswer::enormous(50 * 1024 * 1024);
        QTest::newRow("silence") << ScriptedAnswer::silence();
    }

    void brokenRepliesEndTheCall()
    {
        QFETCH(ScriptedAnswer, answer);
        Desk desk;
        desk.server.fallback = answer;
        QVERIFY(!desk.say().first);
        QVERIFY(desk.texts.isEmpty());
        desk.server.fallback = ScriptedAnswer::body("{\"err_no\":0,\"result\":[\"好\"]}");
        QVERIFY(desk.say().first);
        QCOMPARE(desk.texts, QStringList{QStringLiteral("好__over__")});
    }

    void anEmptyTokenIsFetchedFirst()
    {
        Desk desk;
        desk.state.BaiduAccessToken.clear();
        desk.server.fallback = ScriptedAnswer::body("{\"result\":[\"好\"]}");
        QVERIFY(desk.say().first);
        QCOMPARE(desk.host.log.calls(), QStringList({QStringLiteral("account"), QStringLiteral("token")}));
        QVERIFY(desk.server.requests.first().body.contains("fresh"));
    }

    void withoutAnEngineNothingIsSent()
    {
        Desk desk;
        desk.recorder.BaiDuNoStreamApi = false;
        QVERIFY(!desk.say().first);
        QVERIFY(desk.server.requests.isEmpty());
    }
};

QTEST_MAIN(TestBaidu)
#include "tst_baidu.moc"
