#include "base/SettingsFile.h"
#include "engines/BaiduErrors.h"
#include "engines/BaiduRequest.h"
#include "engines/BaiduSpeech.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

using mevo::SettingsFile;
using Relay_Speech::BaiduSpeech;

namespace {

ScratchHome home;

/// Logs what the engine asks for; a fetched token is "token 1", "token 2" and so on.
class FakeHost : public mevo::EngineHost
{
public:
    FakeHost(CallLog &log, MainState &state)
        : m_log(log)
        , m_state(state)
    {
    }
    void loadCurrentBaiduCredentials() override { m_log.add(QStringLiteral("load account")); }
    void fetchBaiduToken() override
    {
        m_log.add(QStringLiteral("fetch token"));
        m_state.BaiduAccessToken = QStringLiteral("token %1").arg(++m_tokens);
        if (duringFetch) {
            duringFetch();
        }
    }
    void loadBaiduTranslateCredentials() override { m_log.add(QStringLiteral("load translation")); }
    void buildAsrLanMenu(bool persist, bool setup) override
    {
        m_log.add(QStringLiteral("menu %1 %2").arg(persist).arg(setup));
    }
    void ensureEngineTip() override { m_log.add(QStringLiteral("tip window")); }
    void showEngineTip(const QString &text, bool regardless) override
    {
        m_log.add(QStringLiteral("tip %1 ").arg(regardless) + text);
    }
    void channelCountChanged() override { m_log.add(QStringLiteral("channels")); }

    std::function<void()> duringFetch;

private:
    CallLog &m_log;
    MainState &m_state;
    int m_tokens = 0;
};

QByteArray errorReply(int number, const QByteArray &message = "bad")
{
    return R"({"err_no":)" + QByteArray::number(number) + R"(,"err_msg":")" + message + R"(","sn":"1"})";
}

const QByteArray goodReply = R"({"err_no":0,"err_msg":"success.","result":["今天天气","x"],"sn":"1"})";
const QString hoverHint = QStringLiteral("提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口");
const QString gap = QStringLiteral("\n\n\n\n\n\n\n\n");

} // namespace

class TestBaiduSpeech : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void idleWithoutAnEngine();
    void handsTencentOn();
    void sends_data();
    void sends();
    void recognises();
    void countsToTheReceiverOfThePress();
    void errors_data();
    void errors();
    void answersWithoutText_data();
    void answersWithoutText();
    void fastVariantFalls_data();
    void fastVariantFalls();
    void keepsAChoiceMadeMeanwhile();
    void lateErrorsOfALeftEngine_data();
    void lateErrorsOfALeftEngine();
    void aTextDoesNotWaitForALaterSession();
    void swapsChannelsTwice();
    void timesOut();
    void fetchesAMissingToken();
    void serviceDiesWhileAnswering();
    void isDeletedMeanwhile_data();
    void isDeletedMeanwhile();
    void recordingFile();
    void certificates_data();
    void certificates();
    void longAudio();

private:
    QPair<bool, QString> finish(const QByteArray &pcm = "samples");
    QJsonObject sent() const { return QJsonDocument::fromJson(m_server->requests.last().body).object(); }
    QString stored(const char *key) const { return SettingsFile().value(QLatin1String(key)).toString(); }

    int m_session = 0;
    FakePlatform m_platform;
    MainState m_state;
    RecorderState m_recorder;
    std::unique_ptr<FakeHost> m_host;
    std::unique_ptr<ScriptedHttp> m_server;    ///< the standard variant
    std::unique_ptr<ScriptedHttp> m_tlsServer; ///< the fast variant
    std::unique_ptr<BaiduSpeech> m_speech;
};

void TestBaiduSpeech::init()
{
    m_platform.log.clear();
    m_platform.systemFacts->xpClass = false;
    home.remove(QStringLiteral("MEVOSetting.ini"));
    QDir(home.path(QStringLiteral("test.pcm"))).removeRecursively();
    home.remove(QStringLiteral("test.pcm"));
    m_server = std::make_unique<ScriptedHttp>();
    m_tlsServer = std::make_unique<ScriptedHttp>(ScriptedHttp::Security::Tls);
    m_state.BaiduAccessToken = QStringLiteral("the token");
    m_state.BaiDuCurrentVoiceType = QStringLiteral("1537");
    m_state.BaiDuNoStreamApi_FastVersion = false;
    m_state.FastEmptyReplies = m_state.FastGoodReplies = 0;
    m_state.BDSR1DUsedQuantity = 0;
    m_state.SimulateDoubleChannel = false;
    m_recorder = RecorderState();
    m_recorder.UseTXASRApi = false;
    m_recorder.BaiDuNoStreamApi = true;
    m_host = std::make_unique<FakeHost>(m_platform.log, m_state);
    mevo::EngineEndpoints endpoints;
    endpoints.BaiduSpeechHost = m_server->host();
    endpoints.BaiduSpeechHttpsHost = m_tlsServer->host();
    m_speech =
        std::make_unique<BaiduSpeech>(m_state, m_recorder, *m_platform.systemFacts, *m_host, endpoints);
}

QPair<bool, QString> TestBaiduSpeech::finish(const QByteArray &pcm)
{
    QByteArray samples = pcm;
    QBuffer buffer(&samples);
    mevo::SessionContext session;
    session.number = ++m_session;
    session.engine.baidu = m_recorder.BaiDuNoStreamApi;
    session.engine.tencent = m_recorder.UseTXASRApi;
    session.engine.baiduFast = m_state.BaiDuNoStreamApi_FastVersion;
    session.engine.baiduLanguage = m_state.BaiDuCurrentVoiceType;
    session.receiver = m_state.dayCounts.receiver();
    return m_speech->finish(&buffer, session);
}

void TestBaiduSpeech::idleWithoutAnEngine()
{
    m_recorder.BaiDuNoStreamApi = false;
    QCOMPARE(finish(), qMakePair(false, QString()));
    QCOMPARE(m_server->connections, 0);
    QCOMPARE(m_state.BDSR1DUsedQuantity, 0);
    QVERIFY(m_speech->refreshToken());
}

void TestBaiduSpeech::handsTencentOn()
{
    m_recorder.UseTXASRApi = true; // first, even when Baidu's flag stands too
    QTest::ignoreMessage(QtWarningMsg,
                         "Tencent: this build has no engine for it; 7 bytes of audio are dropped");
    QCOMPARE(finish(), qMakePair(false, QString()));
    QCOMPARE(m_server->connections, 0);
}

void TestBaiduSpeech::sends_data()
{
    QTest::addColumn<bool>("fast");
    QTest::addColumn<QString>("voiceType");
    QTest::addColumn<int>("pid");
    QTest::newRow("Mandarin") << false << "1537" << 1537;
    QTest::newRow("English") << false << "1737" << 1737;
    QTest::newRow("no language set") << false << "" << 1537;
    QTest::newRow("an app id in its place") << false << "app-7" << 1537;
    QTest::newRow("fast") << true << "80001" << 80001;
    QTest::newRow("fast, whatever the language") << true << "1637" << 80001;
}

void TestBaiduSpeech::sends()
{
    QFETCH(bool, fast);
    QFETCH(QString, voiceType);
    QFETCH(int, pid);
    ScriptedHttp &server = fast ? *m_tlsServer : *m_server;
    m_state.BaiDuNoStreamApi_FastVersion = fast;
    m_state.BaiDuCurrentVoiceType = voiceType;
    m_state.BaiduAccessToken = QStringLiteral("to\"ken");
    const QByteArray pcm("\x00\x01\xff\xfe\x7f", 5);
    finish(pcm);
    QCOMPARE(server.requests.size(), 1);
    const ScriptedRequest &request = server.requests.first();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.target, QByteArray(fast ? "/pro_api" : "/server_api"));
    QCOMPARE(request.headers.value("content-type"), QByteArray("application/json"));
    QJsonObject expected{{QStringLiteral("format"), QStringLiteral("pcm")},
                         {QStringLiteral("rate"), 16000},
                         {QStringLiteral("channel"), QStringLiteral("1")},
                         {QStringLiteral("token"), QStringLiteral("to\"ken")},
                         {QStringLiteral("dev_pid"), pid},
                         {QStringLiteral("lan"), QStringLiteral("zh")},
                         {QStringLiteral("cuid"), QStringLiteral("test-computer")},
                         {QStringLiteral("speech"), QString::fromLatin1(pcm.toBase64())},
                         {QStringLiteral("len"), 5}};
    if (fast) {
        expected.insert(QStringLiteral("scope"), QStringLiteral("brain_enhanced_asr"));
    }
    QCOMPARE(QJsonDocument::fromJson(request.body).object(), expected);
    QCOMPARE(home.read(QStringLiteral("test.pcm")), QByteArray("\x05\x00\x00\x00", 4) + pcm);
    QVERIFY(m_platform.log.calls() == QStringList{QStringLiteral("tip window")});
}

void TestBaiduSpeech::recognises()
{
    m_server->fallback = ScriptedAnswer::body(goodReply);
    QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);
    QCOMPARE(finish({}), qMakePair(true, QStringLiteral("今天天气")));
    QCOMPARE(texts.size(), 1);
    QCOMPARE(texts.first().first().toString(), QStringLiteral("今天天气__over__"));
    QCOMPARE(m_state.BDSR1DUsedQuantity, 1);
    QCOMPARE(sent().value(QStringLiteral("len")).toInt(-1), 0);
}

void TestBaiduSpeech::countsToTheReceiverOfThePress()
{
    m_server->fallback = ScriptedAnswer::body(goodReply);
    m_state.DongleID = QStringLiteral("01-01-000001");
    m_server->onRequest = [this](const ScriptedRequest &) {
        m_state.DongleID = QStringLiteral("01-01-000002");
    };
    finish();
    QCOMPARE(m_state.dayCounts.used(mevo::CountColumn::Baidu), 0);
    m_state.DongleID = QStringLiteral("01-01-000001");
    QCOMPARE(m_state.dayCounts.used(mevo::CountColumn::Baidu), 1);
}

void TestBaiduSpeech::errors_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("xpClass");
    QTest::addColumn<bool>("regardless");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("recovery");
    const QStringList none;
    const QStringList fall{QStringLiteral("menu 1 1")};
    const QStringList account{QStringLiteral("load account"), QStringLiteral("fetch token")};
    const QString microphone =
        QStringLiteral("确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，"
                       "如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系");
    for (const bool xp : {false, true}) {
        const QByteArray on = xp ? " on XP" : "";
        const auto row = [&](const char *name) -> QTestData & { return QTest::newRow(name + on); };
        row("3301") << errorReply(3301) << xp << false
                    << QStringLiteral("\n (错误码:3301)语音质量可能过差，") + microphone +
                           QStringLiteral("！ (错误码:3301)\n\n\n") + hoverHint
                    << none;
        row("3314") << errorReply(3314) << xp << false
                    << QStringLiteral("\n (错误码:3314)语音长度太短, 下次语音识别将切换语音通道，如仍不行，"
                                      "先确认系统是否允许打开麦克风，") +
                           microphone + QStringLiteral("！\n\n\n") + hoverHint
                    << QStringList{QStringLiteral("channels")};
        row("3307") << errorReply(3307) << xp << false
                    << QStringLiteral("\n(错误码:3307) 语音质量可能过差，") + microphone + gap + hoverHint
                    << none;
        const QString hint =
            QStringLiteral("\n   如连续多次提示此窗口，建议尝试手动切换其它识别接口！") + gap + hoverHint;
        row("3302") << errorReply(3302, "authentication failed.") << xp << false
                    << QStringLiteral("authentication failed.(3302)") + hint << none;
        row("-5") << errorReply(-5) << xp << false << QStringLiteral("bad(-5)") + hint << none;
        row("number in a string") << QByteArray(R"({"err_no":"3302"})") << xp << false
                                  << QStringLiteral("(3302)") + hint << none;
        row("number that is none") << QByteArray(R"({"err_no":[1],"err_msg":{}})") << xp << false
                                   << QStringLiteral("(-1)") + hint << none;
        row("number too large") << QByteArray(R"({"err_no":1e300,"result":["x"]})") << xp << false
                                << QStringLiteral("(-1)") + hint << none;
        row("long message") << errorReply(1, QByteArray(100000, 'm')) << xp << false
                            << QString(500, QLatin1Char('m')) + QStringLiteral("(1)") + hint << none;
    }
    QTest::newRow("3304") << errorReply(3304) << false << false
                          << QStringLiteral(
                                 " (错误码:3304)将切换到讯飞接口，如还有问题，请手动切换到讯飞语音输入法"
                                 "或搜狗语音输入法或与产品供应商联系！") +
                                 gap + hoverHint
                          << fall;
    QTest::newRow("3304 on XP")
        << errorReply(3304) << true << true
        << QStringLiteral("(错误码:3304)请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！") +
               gap + hoverHint
        << none;
    QTest::newRow("3305") << errorReply(3305) << false << false
                          << QStringLiteral("将切换到讯飞接口，如有问题，请手动切换讯飞或搜狗语音输入法"
                                            "或与产品供应商联系！ (错误码:3305)") +
                                 gap + hoverHint
                          << account + fall;
    QTest::newRow("3305 on XP")
        << errorReply(3305) << true << true
        << QStringLiteral(" (错误码:3305)"
                          "如连接提示此窗口，请手动切换讯飞语音输入法或搜狗语音输入法或与产品供应商联系！") +
               gap + hoverHint
        << account;
}

void TestBaiduSpeech::errors()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, xpClass);
    QFETCH(bool, regardless);
    QFETCH(QString, message);
    QFETCH(QStringList, recovery);
    m_platform.systemFacts->xpClass = xpClass;
    m_recorder.BaiduTokenRefreshed = m_recorder.BaiduViaSettings = true;
    m_server->fallback = ScriptedAnswer::body(reply);
    QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);

    QCOMPARE(finish(), qMakePair(false, QString::fromUtf8(reply)));
    QVERIFY(texts.isEmpty());
    QCOMPARE(m_state.BDSR1DUsedQuantity, 1);
    const QStringList expected =
        QStringList{QStringLiteral("tip window"), QStringLiteral("tip %1 ").arg(regardless) + message} +
        recovery;
    QCOMPARE(m_platform.log.calls(), expected);

    const bool fallen = recovery.contains(QStringLiteral("menu 1 1"));
    QCOMPARE(m_recorder.UseXunFeiWebApi, fallen);
    QCOMPARE(m_recorder.BaiDuNoStreamApi, !fallen);
    QCOMPARE(m_recorder.BaiduTokenRefreshed, !fallen);
    QCOMPARE(m_recorder.BaiduViaSettings, !fallen);
    QCOMPARE(stored("UseXunFeiWebApi"), fallen ? QStringLiteral("1") : QString());
    QCOMPARE(stored("BaiDuNoStreamApi"), fallen ? QStringLiteral("0") : QString());
}

void TestBaiduSpeech::answersWithoutText_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("no result") << QByteArray(R"({"err_no":0})");
    QTest::newRow("no array") << QByteArray(R"({"result":"text"})");
    QTest::newRow("empty array") << QByteArray(R"({"result":[]})");
    QTest::newRow("no string in it") << QByteArray(R"({"result":[{"a":1}]})");
    QTest::newRow("array at the top") << QByteArray(R"(["text"])");
    QTest::newRow("page") << QByteArray("<html>captive portal</html>");
    QTest::newRow("cut JSON") << goodReply.left(40);
    QTest::newRow("NUL") << QByteArray("\0\0", 2);
    QTest::newRow("deep") << QByteArray(100000, '[');
}

void TestBaiduSpeech::answersWithoutText()
{
    QFETCH(QByteArray, reply);
    m_server->fallback = ScriptedAnswer::body(reply);
    QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);
    QCOMPARE(finish(), qMakePair(false, QString::fromUtf8(reply)));
    QVERIFY(texts.isEmpty());
    QCOMPARE(m_platform.log.calls(), QStringList{QStringLiteral("tip window")}); // nothing is shown
}

void TestBaiduSpeech::fastVariantFalls_data()
{
    QTest::addColumn<QString>("replies"); // e an empty one, g a good one, x an error
    QTest::addColumn<bool>("fast");
    QTest::addColumn<int>("empty");
    QTest::addColumn<int>("good");
    QTest::newRow("one") << "e" << true << 1 << 0;
    QTest::newRow("two") << "ee" << false << 0 << 0;
    QTest::newRow("five good") << "eggggg" << true << 1 << 5;
    QTest::newRow("five good between") << "eggggge" << false << 0 << 0;
    QTest::newRow("six good between") << "egggggge" << true << 1 << 0;
    QTest::newRow("errors are replies too") << "exxxxxxe" << true << 1 << 0;
}

void TestBaiduSpeech::fastVariantFalls()
{
    QFETCH(QString, replies);
    QFETCH(bool, fast);
    QFETCH(int, empty);
    QFETCH(int, good);
    m_state.BaiDuNoStreamApi_FastVersion = true;
    m_state.BaiDuCurrentVoiceType = QStringLiteral("80001");
    for (const QChar kind : replies) {
        if (kind == QLatin1Char('e')) {
            m_tlsServer->enqueue(ScriptedAnswer::body({}, 500));
        } else if (kind == QLatin1Char('g')) {
            m_tlsServer->enqueue(ScriptedAnswer::body(goodReply));
        } else {
            m_tlsServer->enqueue(ScriptedAnswer::body(errorReply(3302)));
        }
        finish();
    }
    QCOMPARE(m_state.BaiDuNoStreamApi_FastVersion, fast);
    QCOMPARE(m_state.FastEmptyReplies, empty);
    QCOMPARE(m_state.FastGoodReplies, good);
    QCOMPARE(m_state.BaiDuCurrentVoiceType, fast ? QStringLiteral("80001") : QStringLiteral("1537"));
    QCOMPARE(stored("BaiDuCurrentVoiceType"), fast ? QString() : QStringLiteral("1537"));
    QVERIFY(!SettingsFile().contains(QStringLiteral("BaiDuNoStreamApi_FastVersion")));
}

void TestBaiduSpeech::keepsAChoiceMadeMeanwhile()
{
    m_state.BaiDuNoStreamApi_FastVersion = true;
    m_state.FastEmptyReplies = 1;
    m_tlsServer->fallback = ScriptedAnswer::body({}, 500);
    m_tlsServer->onRequest = [this](const ScriptedRequest &) {
        m_state.BaiDuNoStreamApi_FastVersion = false;
        m_state.BaiDuCurrentVoiceType = QStringLiteral("1637");
    };
    finish();
    QCOMPARE(m_state.BaiDuCurrentVoiceType, QStringLiteral("1637"));
}

void TestBaiduSpeech::lateErrorsOfALeftEngine_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("3304") << 3304;
    QTest::newRow("3305") << 3305;
}

/// The user has chosen another engine while the request was open: nothing falls to XunFei any more.
void TestBaiduSpeech::lateErrorsOfALeftEngine()
{
    QFETCH(int, number);
    m_server->fallback = ScriptedAnswer::body(errorReply(number));
    m_server->onRequest = [this](const ScriptedRequest &) {
        m_recorder.BaiDuNoStreamApi = false;
        m_recorder.UseTXASRApi = true;
    };
    finish();
    QVERIFY(!m_recorder.UseXunFeiWebApi && m_recorder.UseTXASRApi);
    QCOMPARE(m_platform.log.calls(), QStringList{QStringLiteral("tip window")});
    QCOMPARE(stored("UseXunFeiWebApi"), QString());
}

void TestBaiduSpeech::aTextDoesNotWaitForALaterSession()
{
    m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(R"({"result":["first"]})")));
    m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(R"({"result":["second"]})")));
    QStringList texts;
    QList<int> ended;
    connect(m_speech.get(), &BaiduSpeech::finishTrans, this, [&](const QString &text, int session) {
        texts.append(text + QString::number(session - m_session + 2));
        m_server->answerHeld(); // only now does the second one get its reply
    });
    connect(m_speech.get(), &BaiduSpeech::sessionEnded, this, [&](int session) { ended.append(session); });
    m_server->onRequest = [this](const ScriptedRequest &) {
        if (m_server->requests.size() > 1) {
            m_server->answerHeld();
        } else {
            QTimer::singleShot(0, this, [this] { QVERIFY(finish("later").first); });
        }
    };
    QVERIFY(finish("earlier").first);
    QCOMPARE(texts, (QStringList{QStringLiteral("first__over__1"), QStringLiteral("second__over__2")}));
    QVERIFY(ended.indexOf(m_session - 1) < ended.indexOf(m_session));
}

void TestBaiduSpeech::swapsChannelsTwice()
{
    m_server->fallback = ScriptedAnswer::body(errorReply(3314));
    SettingsFile().setValue(QStringLiteral("SimulateDoubleChannel"), 0);
    for (const bool expected : {true, false}) {
        SettingsFile().setValue(QStringLiteral("UseLeftChannelVoice"), 1);
        finish();
        QCOMPARE(m_state.SimulateDoubleChannel, expected);
        QCOMPARE(stored("UseLeftChannelVoice"), QStringLiteral("0"));
        QCOMPARE(stored("SimulateDoubleChannel"), QStringLiteral("0"));
    }
}

void TestBaiduSpeech::timesOut()
{
    m_speech->requestTimeoutMs = 50;
    m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(goodReply)));
    QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);
    QCOMPARE(finish(), qMakePair(false, QString()));
    QCOMPARE(m_state.BDSR1DUsedQuantity, 1);
    QCOMPARE(m_state.FastEmptyReplies, 0); // the standard variant does not count
    m_server->answerHeld();
    m_speech->requestTimeoutMs = 5000;
    m_server->fallback = ScriptedAnswer::body(R"({"result":["second"]})");
    QCOMPARE(finish(), qMakePair(true, QStringLiteral("second")));
    QCOMPARE(texts.size(), 1); // the late text never comes
}

void TestBaiduSpeech::fetchesAMissingToken()
{
    m_state.BaiduAccessToken.clear();
    m_server->fallback = ScriptedAnswer::body(goodReply);
    finish();
    QCOMPARE(m_platform.log.calls(),
             (QStringList{QStringLiteral("load account"), QStringLiteral("fetch token"),
                          QStringLiteral("load translation"), QStringLiteral("tip window")}));
    QCOMPARE(sent().value(QStringLiteral("token")).toString(), QStringLiteral("token 1"));

    // A change of language during the fetch is for the next press.
    m_state.BaiduAccessToken.clear();
    m_host->duringFetch = [this] { m_state.BaiDuCurrentVoiceType = QStringLiteral("1737"); };
    finish();
    QCOMPARE(sent().value(QStringLiteral("dev_pid")).toInt(), 1537);
}

void TestBaiduSpeech::serviceDiesWhileAnswering()
{
    m_server->fallback = ScriptedAnswer::cut(goodReply.left(30), goodReply.size());
    QCOMPARE(finish(), qMakePair(false, QString()));
    m_server->fallback = ScriptedAnswer::silence();
    m_server->onRequest = [this](const ScriptedRequest &) {
        QTimer::singleShot(0, m_server.get(), [this] { m_server->kill(); });
    };
    QCOMPARE(finish(), qMakePair(false, QString()));
    QCOMPARE(finish(), qMakePair(false, QString())); // and now nobody listens
    QCOMPARE(m_state.BDSR1DUsedQuantity, 3);
}

void TestBaiduSpeech::isDeletedMeanwhile_data()
{
    QTest::addColumn<QByteArray>("token");
    QTest::newRow("while the token is fetched") << QByteArray();
    QTest::newRow("while the reply is awaited") << QByteArray("the token");
}

void TestBaiduSpeech::isDeletedMeanwhile()
{
    QFETCH(QByteArray, token);
    m_state.BaiduAccessToken = QString::fromLatin1(token);
    m_server->fallback = ScriptedAnswer::body(goodReply);
    m_host->duringFetch = [this] { m_speech.reset(); };
    m_server->onRequest = [this](const ScriptedRequest &) { m_speech.reset(); };
    QCOMPARE(finish(), qMakePair(false, QString()));
    QVERIFY(!m_speech);
    QCOMPARE(m_state.BDSR1DUsedQuantity, 0);
}

void TestBaiduSpeech::recordingFile()
{
    m_server->fallback = ScriptedAnswer::body(goodReply);
    finish("a long first recording");
    finish("second");
    QCOMPARE(home.read(QStringLiteral("test.pcm")), QByteArray("\x06\x00\x00\x00second", 10));
    // A folder in its place: the file cannot be written, and the session goes on all the same.
    home.remove(QStringLiteral("test.pcm"));
    QVERIFY(QDir().mkdir(home.path(QStringLiteral("test.pcm"))));
    QVERIFY(finish("third").first);
}

void TestBaiduSpeech::certificates_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("checked");
    QTest::newRow("public") << "https://vop.baidu.com/pro_api" << false << true;
    QTest::newRow("loopback") << "https://127.0.0.1:8443/pro_api" << false << false;
    QTest::newRow("loopback by name") << "https://localhost/pro_api" << false << false;
    QTest::newRow("loopback 6") << "https://[::1]/pro_api" << false << false;
    QTest::newRow("name that begins so") << "https://127.0.0.1.example.com/pro_api" << false << true;
    QTest::newRow("loopback, asked for") << "https://127.0.0.1:8443/pro_api" << true << true;
}

void TestBaiduSpeech::certificates()
{
    QFETCH(QString, url);
    QFETCH(bool, asked);
    QFETCH(bool, checked);
    mevo::EngineEndpoints endpoints;
    endpoints.VerifyCertificates = asked;
    QCOMPARE(mevo::checksCertificate(endpoints, QUrl(url)), checked);
    endpoints.BaiduSpeechHost = QStringLiteral("https://own:1");
    QCOMPARE(mevo::baiduSpeechUrl(endpoints, false), QUrl(QStringLiteral("https://own:1/server_api")));
}

void TestBaiduSpeech::longAudio()
{
    const QByteArray minute(60 * 32000, 'a'); // a minute of samples
    m_server->fallback = ScriptedAnswer::body(goodReply);
    QVERIFY(finish(minute).first);
    QCOMPARE(QByteArray::fromBase64(sent().value(QStringLiteral("speech")).toString().toLatin1()), minute);
    QCOMPARE(sent().value(QStringLiteral("len")).toInt(), minute.size());
}

QTEST_GUILESS_MAIN(TestBaiduSpeech)
#include "tst_baidu_speech.moc"
