#include "base/SettingsFile.h"
#include "engines/BaiduErrors.h"
#include "engines/BaiduRequest.h"
#include "engines/BaiduSpeech.h"
#include "support/FakeEngineHost.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
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

QByteArray errorReply(int number, const QByteArray &message = "bad")
{
    return R"({"err_no":)" + QByteArray::number(number) + R"(,"err_msg":")" + message + R"(","sn":"1"})";
}

const QByteArray goodReply = R"({"err_no":0,"err_msg":"success.","result":["今天天气","x"],"sn":"1"})";
const QByteArray hoverHint = "提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口";
const QByteArray gap = "\n\n\n\n\n\n\n\n";

} // namespace

class TestBaiduSpeech : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_platform.log.clear();
        m_platform.systemFacts->xpClass = false;
        home.remove("MEVOSetting.ini"_s);
        QDir(home.path("test.pcm"_s)).removeRecursively();
        home.remove("test.pcm"_s);
        m_server = std::make_unique<ScriptedHttp>();
        m_tlsServer = std::make_unique<ScriptedHttp>(ScriptedHttp::Security::Tls);
        m_state.BaiduAccessToken = "the token"_s;
        m_state.BaiDuCurrentVoiceType = "1537"_s;
        m_state.BaiDuNoStreamApi_FastVersion = false;
        m_state.FastEmptyReplies = m_state.FastGoodReplies = 0;
        m_state.BDSR1DUsedQuantity = 0;
        m_state.SimulateDoubleChannel = false;
        m_recorder = RecorderState();
        m_recorder.UseTXASRApi = false;
        m_recorder.BaiDuNoStreamApi = true;
        m_tokens = 0;
        m_host.onFetch = [this] { m_state.BaiduAccessToken = "token %1"_s.arg(++m_tokens); };
        mevo::EngineEndpoints endpoints;
        endpoints.BaiduSpeechHost = m_server->host();
        endpoints.BaiduSpeechHttpsHost = m_tlsServer->host();
        m_speech =
            std::make_unique<BaiduSpeech>(m_state, m_recorder, *m_platform.systemFacts, m_host, endpoints);
    }

    void idleWithoutAnEngine()
    {
        m_recorder.BaiDuNoStreamApi = false;
        QCOMPARE(finish(), qMakePair(false, QString()));
        QCOMPARE(m_server->connections, 0);
        QCOMPARE(m_state.BDSR1DUsedQuantity, 0);
        QVERIFY(m_speech->refreshToken());
    }

    void handsTencentOn()
    {
        m_recorder.UseTXASRApi = true; // first, even when Baidu's flag stands too
        QTest::ignoreMessage(QtWarningMsg,
                             "Tencent: this build has no engine for it; 7 bytes of audio are dropped");
        QCOMPARE(finish(), qMakePair(false, QString()));
        QCOMPARE(m_server->connections, 0);
    }

    void sends_data()
    {
        const Rows<bool, QString, int> row; // fast, voiceType, pid
        row("Mandarin", false, "1537", 1537);
        row("English", false, "1737", 1737);
        row("no language set", false, "", 1537);
        row("an app id in its place", false, "app-7", 1537);
        row("fast", true, "80001", 80001);
        row("fast, whatever the language", true, "1637", 80001);
    }
    void sends()
    {
        const auto [fast, voiceType, pid] = rowOf<bool, QString, int>();
        ScriptedHttp &server = fast ? *m_tlsServer : *m_server;
        m_state.BaiDuNoStreamApi_FastVersion = fast;
        m_state.BaiDuCurrentVoiceType = voiceType;
        m_state.BaiduAccessToken = "to\"ken"_s;
        const QByteArray pcm("\x00\x01\xff\xfe\x7f", 5);
        finish(pcm);
        QCOMPARE(server.requests.size(), 1);
        const ScriptedRequest &request = server.requests.first();
        QCOMPARE(request.method, QByteArray("POST"));
        QCOMPARE(request.target, QByteArray(fast ? "/pro_api" : "/server_api"));
        QCOMPARE(request.headers.value("content-type"), QByteArray("application/json"));
        QJsonObject expected{{"format"_s, "pcm"_s},
                             {"rate"_s, 16000},
                             {"channel"_s, "1"_s},
                             {"token"_s, "to\"ken"_s},
                             {"dev_pid"_s, pid},
                             {"lan"_s, "zh"_s},
                             {"cuid"_s, "test-computer"_s},
                             {"speech"_s, QString::fromLatin1(pcm.toBase64())},
                             {"len"_s, 5}};
        if (fast) {
            expected.insert("scope"_s, "brain_enhanced_asr"_s);
        }
        QCOMPARE(QJsonDocument::fromJson(request.body).object(), expected);
        QCOMPARE(home.read("test.pcm"_s), QByteArray("\x05\x00\x00\x00", 4) + pcm);
        QVERIFY(m_platform.log.calls() == list({"tip window"}));
    }

    void recognises()
    {
        m_server->fallback = ScriptedAnswer::body(goodReply);
        QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);
        QCOMPARE(finish({}), qMakePair(true, "今天天气"_s));
        QCOMPARE(texts.size(), 1);
        QCOMPARE(texts.first().first().toString(), "今天天气__over__"_s);
        QCOMPARE(m_state.BDSR1DUsedQuantity, 1);
        QCOMPARE(sent().value("len"_s).toInt(-1), 0);
    }

    void errors_data()
    {
        const Rows<QByteArray, bool, bool, QByteArray, QStringList>
            row; // reply, xp, regardless, tip, recovery
        const QByteArray microphone =
            "确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，"
            "如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系";
        const QByteArray hint = "\n   如连续多次提示此窗口，建议尝试手动切换其它识别接口！" + gap + hoverHint;
        for (const bool xp : {false, true}) {
            const auto both = [&](const char *name, const QByteArray &reply, const QByteArray &tip,
                                  const RowTexts &recovery = {}) {
                row(QByteArray(name) + (xp ? " on XP" : ""), reply, xp, false, tip, recovery);
            };
            both("3301", errorReply(3301),
                 "\n (错误码:3301)语音质量可能过差，" + microphone + "！ (错误码:3301)\n\n\n" + hoverHint);
            both("3314", errorReply(3314),
                 "\n (错误码:3314)语音长度太短, 下次语音识别将切换语音通道，如仍不行，"
                 "先确认系统是否允许打开麦克风，" +
                     microphone + "！\n\n\n" + hoverHint,
                 {"channels"});
            both("3307", errorReply(3307),
                 "\n(错误码:3307) 语音质量可能过差，" + microphone + gap + hoverHint);
            both("3302", errorReply(3302, "authentication failed."), "authentication failed.(3302)" + hint);
            both("-5", errorReply(-5), "bad(-5)" + hint);
            both("number in a string", R"({"err_no":"3302"})", "(3302)" + hint);
            both("number that is none", R"({"err_no":[1],"err_msg":{}})", "(-1)" + hint);
            both("number too large", R"({"err_no":1e300,"result":["x"]})", "(-1)" + hint);
            both("long message", errorReply(1, QByteArray(100000, 'm')), QByteArray(500, 'm') + "(1)" + hint);
        }
        row("3304", errorReply(3304), false, false,
            " (错误码:3304)将切换到讯飞接口，如还有问题，请手动切换到讯飞语音输入法"
            "或搜狗语音输入法或与产品供应商联系！" +
                gap + hoverHint,
            {"menu 1 1"});
        row("3304 on XP", errorReply(3304), true, true,
            "(错误码:3304)请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！" + gap + hoverHint,
            {});
        row("3305", errorReply(3305), false, false,
            "将切换到讯飞接口，如有问题，请手动切换讯飞或搜狗语音输入法或与产品供应商联系！ (错误码:3305)" +
                gap + hoverHint,
            {"load account", "fetch token", "menu 1 1"});
        row("3305 on XP", errorReply(3305), true, true,
            " (错误码:3305)如连接提示此窗口，请手动切换讯飞语音输入法或搜狗语音输入法或与产品供应商联系！" +
                gap + hoverHint,
            {"load account", "fetch token"});
    }
    void errors()
    {
        const auto [reply, xpClass, regardless, tip, recovery] =
            rowOf<QByteArray, bool, bool, QByteArray, QStringList>();
        m_platform.systemFacts->xpClass = xpClass;
        m_recorder.BaiduTokenRefreshed = m_recorder.BaiduViaSettings = true;
        m_server->fallback = ScriptedAnswer::body(reply);
        QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);

        QCOMPARE(finish(), qMakePair(false, QString::fromUtf8(reply)));
        QVERIFY(texts.isEmpty());
        QCOMPARE(m_state.BDSR1DUsedQuantity, 1);
        const QString shown = "tip %1 "_s.arg(regardless) + QString::fromUtf8(tip);
        QCOMPARE(m_platform.log.calls(), (QStringList{"tip window"_s, shown} + recovery));

        const bool fallen = recovery.contains("menu 1 1"_s);
        QCOMPARE(m_recorder.UseXunFeiWebApi, fallen);
        for (const bool baidus :
             {m_recorder.BaiDuNoStreamApi, m_recorder.BaiduTokenRefreshed, m_recorder.BaiduViaSettings}) {
            QCOMPARE(baidus, !fallen);
        }
        QCOMPARE(stored("UseXunFeiWebApi"), fallen ? "1"_s : QString());
        QCOMPARE(stored("BaiDuNoStreamApi"), fallen ? "0"_s : QString());
    }

    void answersWithoutText_data()
    {
        const Rows<QByteArray> row; // reply
        row("empty object", "{}");
        row("no result", R"({"err_no":0})");
        row("no array", R"({"result":"text"})");
        row("empty array", R"({"result":[]})");
        row("no string in it", R"({"result":[{"a":1}]})");
        row("array at the top", R"(["text"])");
        row("page", "<html>captive portal</html>");
        row("cut JSON", goodReply.left(40));
        row("NUL", QByteArray("\0\0", 2));
        row("deep", QByteArray(100000, '['));
    }
    void answersWithoutText()
    {
        const auto [reply] = rowOf<QByteArray>();
        m_server->fallback = ScriptedAnswer::body(reply);
        QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);
        QCOMPARE(finish(), qMakePair(false, QString::fromUtf8(reply)));
        QVERIFY(texts.isEmpty());
        QCOMPARE(m_platform.log.calls(), list({"tip window"})); // nothing is shown
    }

    void fastVariantFalls_data()
    {
        // replies (e an empty one, g a good one, x an error), fast, empty, good
        const Rows<QString, bool, int, int> row;
        row("one", "e", true, 1, 0);
        row("two", "ee", false, 0, 0);
        row("five good", "eggggg", true, 1, 5);
        row("five good between", "eggggge", false, 0, 0);
        row("six good between", "egggggge", true, 1, 0);
        row("errors are replies too", "exxxxxxe", true, 1, 0);
    }
    void fastVariantFalls()
    {
        const auto [replies, fast, empty, good] = rowOf<QString, bool, int, int>();
        m_state.BaiDuNoStreamApi_FastVersion = true;
        m_state.BaiDuCurrentVoiceType = "80001"_s;
        for (const QChar kind : replies) {
            m_tlsServer->enqueue(kind == u'e'
                                     ? ScriptedAnswer::body({}, 500)
                                     : ScriptedAnswer::body(kind == u'g' ? goodReply : errorReply(3302)));
            finish();
        }
        QCOMPARE(m_state.BaiDuNoStreamApi_FastVersion, fast);
        QCOMPARE(m_state.FastEmptyReplies, empty);
        QCOMPARE(m_state.FastGoodReplies, good);
        QCOMPARE(m_state.BaiDuCurrentVoiceType, fast ? "80001"_s : "1537"_s);
        QCOMPARE(stored("BaiDuCurrentVoiceType"), fast ? QString() : "1537"_s);
        QVERIFY(!SettingsFile().contains("BaiDuNoStreamApi_FastVersion"_s));
    }

    void keepsAChoiceMadeMeanwhile()
    {
        m_state.BaiDuNoStreamApi_FastVersion = true;
        m_state.FastEmptyReplies = 1;
        m_tlsServer->fallback = ScriptedAnswer::body({}, 500);
        m_tlsServer->onRequest = [this](const ScriptedRequest &) {
            m_state.BaiDuNoStreamApi_FastVersion = false;
            m_state.BaiDuCurrentVoiceType = "1637"_s;
        };
        finish();
        QCOMPARE(m_state.BaiDuCurrentVoiceType, "1637"_s);
    }

    /// The user has chosen another engine while the request was open: nothing falls to XunFei any more.
    void lateErrorsOfALeftEngine()
    {
        m_server->enqueue(ScriptedAnswer::body(errorReply(3304)));
        m_server->enqueue(ScriptedAnswer::body(errorReply(3305)));
        m_server->onRequest = [this](const ScriptedRequest &) {
            m_recorder.BaiDuNoStreamApi = false;
            m_recorder.UseTXASRApi = true;
        };
        for (int error = 0; error < 2; ++error) {
            m_recorder.BaiDuNoStreamApi = true;
            m_recorder.UseTXASRApi = false;
            finish();
            QVERIFY(!m_recorder.UseXunFeiWebApi && m_recorder.UseTXASRApi);
            QCOMPARE(m_platform.log.calls().count("tip window"_s), m_platform.log.calls().size());
            QCOMPARE(stored("UseXunFeiWebApi"), QString());
        }
    }

    void aTextDoesNotWaitForALaterSession_data()
    {
        const Rows<QByteArray, int, QStringList> row; // first reply, its status, texts
        row("text", R"({"result":["first"]})", 200, {"first__over__1", "second__over__2"});
        row("no reply", "", 500, {"second__over__2"});
    }
    void aTextDoesNotWaitForALaterSession()
    {
        const auto [reply, status, expected] = rowOf<QByteArray, int, QStringList>();
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(reply, status)));
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(R"({"result":["second"]})")));
        QStringList texts;
        QList<int> ended;
        connect(m_speech.get(), &BaiduSpeech::finishTrans, this, [&](const QString &text, int session) {
            texts.append(text + QString::number(session - m_session + 2));
        });
        connect(m_speech.get(), &BaiduSpeech::sessionEnded, this, [&](int session) {
            ended.append(session);
            m_server->answerHeld(); // only now does the second one get its reply
        });
        m_server->onRequest = [this](const ScriptedRequest &) {
            if (m_server->requests.size() > 1) {
                m_server->answerHeld();
            } else {
                QTimer::singleShot(0, this, [this] { QVERIFY(finish("later").first); });
            }
        };
        QCOMPARE(finish("earlier").first, status == 200);
        QCOMPARE(texts, expected);
        QVERIFY(ended.indexOf(m_session - 1) < ended.indexOf(m_session));
    }

    void swapsChannelsTwice()
    {
        m_server->fallback = ScriptedAnswer::body(errorReply(3314));
        SettingsFile().setValue("SimulateDoubleChannel"_s, 0);
        for (const bool expected : {true, false}) {
            SettingsFile().setValue("UseLeftChannelVoice"_s, 1);
            finish();
            QCOMPARE(m_state.SimulateDoubleChannel, expected);
            QCOMPARE(stored("UseLeftChannelVoice"), "0"_s);
            QCOMPARE(stored("SimulateDoubleChannel"), "0"_s);
        }
    }

    void timesOut()
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
        QCOMPARE(finish(), qMakePair(true, "second"_s));
        QCOMPARE(texts.size(), 1); // the late text never comes
    }

    void fetchesAMissingToken()
    {
        m_state.BaiduAccessToken.clear();
        m_server->fallback = ScriptedAnswer::body(goodReply);
        finish();
        QCOMPARE(m_platform.log.calls(),
                 list({"load account", "fetch token", "load translation", "tip window"}));
        QCOMPARE(sent().value("token"_s).toString(), "token 1"_s);

        // A change of language during the fetch is for the next press.
        m_state.BaiduAccessToken.clear();
        m_host.onFetch = [this] {
            m_state.BaiduAccessToken = "token"_s;
            m_state.BaiDuCurrentVoiceType = "1737"_s;
        };
        finish();
        QCOMPARE(sent().value("dev_pid"_s).toInt(), 1537);
    }

    /// The token is there for all of them, or for none; each is sent all the same.
    void sentencesWaitForOneToken()
    {
        m_state.BaiduAccessToken.clear();
        m_server->fallback = ScriptedAnswer::body(goodReply);
        QSignalSpy texts(m_speech.get(), &BaiduSpeech::finishTrans);
        QSignalSpy ends(m_speech.get(), &BaiduSpeech::sessionEnded);
        m_host.onFetch = [&] {
            finish("later");
            finish("last");
            QVERIFY(ends.isEmpty());
        };
        finish("earlier");
        QTRY_COMPARE(texts.size(), 3);
        QCOMPARE(m_platform.log.calls().count("fetch token"_s), 1);
        QCOMPARE(ends.size(), 4); // the one that did not wait says it twice
    }

    void serviceDiesWhileAnswering()
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

    void isDeletedMeanwhile_data()
    {
        const Rows<QByteArray> row; // token
        row("while the token is fetched", "");
        row("while the reply is awaited", "the token");
    }
    void isDeletedMeanwhile()
    {
        const auto [token] = rowOf<QByteArray>();
        m_state.BaiduAccessToken = QString::fromLatin1(token);
        m_server->fallback = ScriptedAnswer::body(goodReply);
        m_host.onFetch = [this] { m_speech.reset(); };
        m_server->onRequest = [this](const ScriptedRequest &) { m_speech.reset(); };
        QCOMPARE(finish(), qMakePair(false, QString()));
        QVERIFY(!m_speech);
        QCOMPARE(m_state.BDSR1DUsedQuantity, 0);
    }

    void recordingFile()
    {
        m_server->fallback = ScriptedAnswer::body(goodReply);
        finish("a long first recording");
        finish("second");
        QCOMPARE(home.read("test.pcm"_s), QByteArray("\x06\x00\x00\x00second", 10));
        // A folder in its place: the file cannot be written, and the session goes on all the same.
        home.remove("test.pcm"_s);
        QVERIFY(QDir().mkdir(home.path("test.pcm"_s)));
        QVERIFY(finish("third").first);
    }

    void certificates_data()
    {
        const Rows<QString, bool, bool> row; // url, asked, checked
        row("public", "https://vop.baidu.com/pro_api", false, true);
        row("loopback", "https://127.0.0.1:8443/pro_api", false, false);
        row("loopback by name", "https://localhost/pro_api", false, false);
        row("loopback 6", "https://[::1]/pro_api", false, false);
        row("name that begins so", "https://127.0.0.1.example.com/pro_api", false, true);
        row("loopback, asked for", "https://127.0.0.1:8443/pro_api", true, true);
    }
    void certificates()
    {
        const auto [url, asked, checked] = rowOf<QString, bool, bool>();
        mevo::EngineEndpoints endpoints;
        endpoints.VerifyCertificates = asked;
        QCOMPARE(mevo::checksCertificate(endpoints, QUrl(url)), checked);
        endpoints.BaiduSpeechHost = "https://own:1"_s;
        QCOMPARE(mevo::baiduSpeechUrl(endpoints, false), QUrl("https://own:1/server_api"_s));
    }

    void countsToTheReceiverOfThePress()
    {
        m_server->fallback = ScriptedAnswer::body(goodReply);
        m_state.DongleID = "01-01-000001"_s;
        m_server->onRequest = [this](const ScriptedRequest &) { m_state.DongleID = "01-01-000002"_s; };
        finish();
        QCOMPARE(m_state.dayCounts.used(mevo::CountColumn::Baidu), 0);
        m_state.DongleID = "01-01-000001"_s;
        QCOMPARE(m_state.dayCounts.used(mevo::CountColumn::Baidu), 1);
    }

    void longAudio()
    {
        const QByteArray minute(60 * 32000, 'a'); // a minute of samples
        m_server->fallback = ScriptedAnswer::body(goodReply);
        QVERIFY(finish(minute).first);
        QCOMPARE(QByteArray::fromBase64(sent().value("speech"_s).toString().toLatin1()), minute);
        QCOMPARE(sent().value("len"_s).toInt(), minute.size());
    }

private:
    QPair<bool, QString> finish(const QByteArray &pcm = "samples")
    {
        QByteArray samples = pcm;
        QBuffer buffer(&samples);
        mevo::SessionContext session;
        session.number = ++m_session;
        session.receiver = m_state.dayCounts.receiver();
        session.engine.baidu = m_recorder.BaiDuNoStreamApi;
        session.engine.tencent = m_recorder.UseTXASRApi;
        session.engine.baiduFast = m_state.BaiDuNoStreamApi_FastVersion;
        session.engine.baiduLanguage = m_state.BaiDuCurrentVoiceType;
        return m_speech->finish(&buffer, session);
    }
    QJsonObject sent() const { return QJsonDocument::fromJson(m_server->requests.last().body).object(); }
    QString stored(const char *key) const { return SettingsFile().value(QLatin1String(key)).toString(); }

    int m_session = 0;
    FakePlatform m_platform;
    MainState m_state;
    RecorderState m_recorder;
    FakeEngineHost m_host{m_platform.log};
    int m_tokens = 0;                          ///< fetched so far
    std::unique_ptr<ScriptedHttp> m_server;    ///< the standard variant
    std::unique_ptr<ScriptedHttp> m_tlsServer; ///< the fast variant
    std::unique_ptr<BaiduSpeech> m_speech;
};

QTEST_GUILESS_MAIN(TestBaiduSpeech)
#include "tst_baidu_speech.moc"
