#include "service/WebCipher.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "translation/Trans.h"
#include "translation/TranslationLanguages.h"
#include "translation/TranslationReply.h"
#include "translation/TranslationRequest.h"

#include <QElapsedTimer>
#include <QtTest>

#include <memory>

using Result = QPair<bool, QString>;

Q_DECLARE_METATYPE(ScriptedAnswer)

namespace {

ScratchHome home;
const WebCipher cipher;

class FakeTranslationHost : public mevo::TranslationHost
{
public:
    void translationLimitReached(const QString &title, const QString &text) override
    {
        told.append(title + QLatin1Char('|') + text);
    }
    QStringList told;
};

QByteArray translated(const QByteArray &dst)
{
    return R"({"from":"zh","to":"en","trans_result":[{"src":"x","dst":")" + dst + R"("}]})";
}

/// A list written as one text, its parts between "|".
QStringList list(const char *joined)
{
    return QString::fromUtf8(joined).split(QLatin1Char('|'));
}

} // namespace

class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void signs_data();
    void signs();
    void sends_data();
    void sends();
    void readsReplies_data();
    void readsReplies();
    void answers_data();
    void answers();
    void timesOut();
    void offline();
    void certificates_data();
    void certificates();
    void counts_data();
    void counts();
    void accountThatComesLate();
    void askedAgainDuringAWait();
    void goneDuringAWait();
    void receiverChangesDuringAWait();
    void languages_data();
    void languages();
    void everyLanguageInItsPlace();

private:
    std::unique_ptr<Trans> makeTrans(ScriptedHttp &server)
    {
        mevo::EngineEndpoints endpoints;
        endpoints.TranslateHost = server.host();
        auto trans = std::make_unique<Trans>(*m_state, *m_api, m_host, endpoints);
        trans->parser().drawSalt = [](int, int) { return 1435660288; };
        return trans;
    }

    std::unique_ptr<MainState> m_state;
    std::unique_ptr<mevo::WebApi> m_api;
    std::unique_ptr<ScriptedHttp> m_server;
    FakeTranslationHost m_host;
};

void TestTranslation::init()
{
    m_host.told.clear();
    m_server = std::make_unique<ScriptedHttp>();
    m_server->fallback = ScriptedAnswer::body(translated("fine"));
    m_state = std::make_unique<MainState>();
    m_state->IsOnline = true;
    m_state->BaiduTranslateAppId = QStringLiteral("2015063000000001");
    m_state->BaiduTranslateKey = QStringLiteral("12345678");
    m_state->DongleID = QStringLiteral("01-02-030405");
    m_state->SchemaName = QStringLiteral("mevodb");
    m_state->ServerUrl = m_server->url(QStringLiteral("/mevowebapi?")).toString();
    m_api = std::make_unique<mevo::WebApi>(*m_state, cipher);
}

void TestTranslation::signs_data()
{
    QTest::addColumn<QString>("appid");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("salt");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QByteArray>("encoded");

    QTest::newRow("the service's own example") << "2015063000000001"
                                               << "apple" << 1435660288 << "12345678"
                                               << "f89f9594663708c1605f3d736d01d2d4" << QByteArray("apple");
    QTest::newRow("place markers, a line's end and an emoji")
        << "7" << QStringLiteral("一%1%2 %4\n😀") << 42 << "s%3"
        << "b012f82694158f5c3f9d6800145f09ad" << QByteArray("%E4%B8%80%251%252%20%254%0D%F0%9F%98%80");
    QTest::newRow("characters of an address")
        << "20" << QStringLiteral("a+b&q=c#d/é~*(x)") << 2147483646 << "k"
        << "d193461b25bda32db2ecf11bdb058fde" << QByteArray("a%2Bb%26q%3Dc%23d%2F%C3%A9~%2A%28x%29");
    QTest::newRow("right to left") << "9" << QStringLiteral("مرحبا\tשלום") << 1 << QStringLiteral("密")
                                   << "36b2ac3ab285602d1e2498a82fb752cd"
                                   << QByteArray("%D9%85%D8%B1%D8%AD%D8%A8%D8%A7%09%D7%A9%D7%9C%D7%95%D7%9D");
    QTest::newRow("nothing") << ""
                             << "" << 0 << ""
                             << "cfcd208495d565ef66e7dff9f98764da" << QByteArray();
}

void TestTranslation::signs()
{
    QFETCH(QString, appid);
    QFETCH(QString, text);
    QFETCH(int, salt);
    QFETCH(QString, key);
    QFETCH(QString, sign);
    QFETCH(QByteArray, encoded);
    const mevo::TranslationRequest request{
        appid, key, salt, mevo::translationText(text), QStringLiteral("zh"), QStringLiteral("en")};
    QCOMPARE(mevo::translationSign(request), sign);
    QCOMPARE(mevo::translationQuery(request, sign), "sign=" + sign.toLatin1() + "&appid=" + appid.toUtf8() +
                                                        "&salt=" + QByteArray::number(salt) +
                                                        "&from=zh&to=en&q=" + encoded);
}

void TestTranslation::sends_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("target");
    const QByteArray path = "/api/trans/vip/translate?sign=";
    QTest::newRow("both languages") << list("apple|zh|en")
                                    << path + "f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001"
                                              "&salt=1435660288&from=en&to=zh&q=apple";
    QTest::newRow("its own language is recognised")
        << list("apple|jp")
        << path + "f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001"
                  "&salt=1435660288&from=auto&to=jp&q=apple";
    QTest::newRow("nothing said of languages")
        << list("apple")
        << path + "f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001"
                  "&salt=1435660288&from=auto&to=auto&q=apple";
    QTest::newRow("two lines") << list("一 %41\n二/?|en|zh")
                               << path + "ac7bd57312554d7b0271e3bc8a10f34c&appid=2015063000000001"
                                         "&salt=1435660288&from=zh&to=en"
                                         "&q=%E4%B8%80%20%2541%0D%E4%BA%8C%2F%3F";
}

void TestTranslation::sends()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, target);
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    const Result result = arguments.size() == 3   ? trans->translate(arguments[0], arguments[1], arguments[2])
                          : arguments.size() == 2 ? trans->translate(arguments[0], arguments[1])
                                                  : trans->translate(arguments[0]);
    QCOMPARE(result, Result(true, QStringLiteral("fine")));
    QCOMPARE(m_server->requests.size(), 1);
    QCOMPARE(m_server->requests[0].method, QByteArray("GET"));
    QCOMPARE(m_server->requests[0].target, target);
    QCOMPARE(m_server->requests[0].headers.value("content-type"),
             QByteArray("application/x-www-form-urlencoded"));
}

void TestTranslation::readsReplies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("good");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QString &reply, bool good, const QString &text) {
        QTest::newRow(name) << reply << good << text;
    };
    row("nothing", {}, false, QStringLiteral("given"));
    row("one segment", QStringLiteral(R"({"trans_result":[{"dst":"你好"}]})"), true, QStringLiteral("你好"));
    row("escapes", QStringLiteral(R"({"trans_result":[{"dst":"\u4f60\ud83d\ude00\n\"x\""}]})"), true,
        QStringLiteral("你😀\n\"x\""));
    row("only the first of several", QStringLiteral(R"({"trans_result":[{"dst":"a"},{"dst":"b"}]})"), true,
        QStringLiteral("a"));
    row("an empty translation", QStringLiteral(R"({"trans_result":[{"dst":""}]})"), true, {});
    row("no segment", QStringLiteral(R"({"trans_result":[]})"), false, {});
    row("a segment without dst", QStringLiteral(R"({"trans_result":[{"src":"a"},{"dst":"b"}]})"), false, {});
    row("a dst that is no text", QStringLiteral(R"({"trans_result":[{"dst":{"a":1}}]})"), false, {});
    row("segments that are no list", QStringLiteral(R"({"trans_result":{"dst":"a"}})"), false, {});
    row("a segment that is no object", QStringLiteral(R"({"trans_result":["dst"]})"), false, {});
    row("an error", QStringLiteral(R"({"error_code":"54001","error_msg":"Invalid Sign"})"), false, {});
    row("an error by number", QStringLiteral(R"({"error_code":52003})"), false, {});
    row("a list", QStringLiteral(R"([{"trans_result":[{"dst":"a"}]}])"), false, {});
    row("half of it", QStringLiteral(R"({"trans_result":[{"dst":"a)"), false, {});
    row("a page", QStringLiteral("<html>502</html>"), false, {});
    row("a blank", QStringLiteral(" "), false, {});
}

void TestTranslation::readsReplies()
{
    QFETCH(QString, reply);
    QFETCH(bool, good);
    QFETCH(QString, text);
    QCOMPARE(mevo::translationResult(reply, QStringLiteral("given")), Result(good, text));
}

void TestTranslation::answers_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<bool>("good");
    QTest::addColumn<QString>("text");
    const QString given = QStringLiteral("两行\n文字");
    QTest::newRow("translated") << ScriptedAnswer::body(translated("two lines")) << true << "two lines";
    QTest::newRow("an error of the service")
        << ScriptedAnswer::body(R"({"error_code":"54003","error_msg":"Invalid Access Limit"})") << false
        << "";
    QTest::newRow("no segments") << ScriptedAnswer::body(R"({"trans_result":[]})") << false << "";
    QTest::newRow("status 500") << ScriptedAnswer::body(translated("x"), 500) << false << given;
    QTest::newRow("status 204") << ScriptedAnswer::body("", 204) << false << given;
    QTest::newRow("an empty body") << ScriptedAnswer::body("") << false << given;
    QTest::newRow("cut short") << ScriptedAnswer::cut(translated("x"), 4000) << false << given;
    QTest::newRow("no HTTP") << ScriptedAnswer::raw("\x00\xff garbage") << false << given;
    QTest::newRow("endless") << ScriptedAnswer::enormous(20LL * 1024 * 1024) << false << given;
}

void TestTranslation::answers()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(bool, good);
    QFETCH(QString, text);
    m_server->fallback = answer;
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    QCOMPARE(trans->translate(QStringLiteral("两行\n文字"), QStringLiteral("en")), Result(good, text));
    QCOMPARE(m_state->BDFY1MUsedQuantity, 1); // whatever came of it
}

void TestTranslation::timesOut()
{
    m_server->fallback = ScriptedAnswer::silence();
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    QElapsedTimer elapsed;
    elapsed.start();
    bool lives = false;
    QTimer::singleShot(0, this, [&lives] { lives = true; });
    QCOMPARE(trans->translate(QStringLiteral("abc")), Result(false, QStringLiteral("abc")));
    QVERIFY(elapsed.elapsed() >= 1990);
    QVERIFY(lives);
}

void TestTranslation::offline()
{
    m_state->IsOnline = false;
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    QCOMPARE(trans->translate(QStringLiteral("abc")), Result(false, QStringLiteral("abc")));
    QVERIFY(m_server->requests.isEmpty());
}

void TestTranslation::certificates_data()
{
    QTest::addColumn<bool>("verify");
    QTest::newRow("of this computer, unchecked") << false;
    QTest::newRow("of this computer, checked") << true;
}

void TestTranslation::certificates()
{
    QFETCH(bool, verify);
    ScriptedHttp secure(ScriptedHttp::Security::Tls);
    secure.fallback = ScriptedAnswer::body(translated("fine"));
    mevo::EngineEndpoints endpoints;
    endpoints.TranslateHost = QStringLiteral("https://") + secure.host();
    endpoints.VerifyCertificates = verify;
    Trans trans(*m_state, *m_api, m_host, endpoints);
    QCOMPARE(trans.translate(QStringLiteral("abc")).first, !verify);
}

void TestTranslation::counts_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("limit");
    QTest::addColumn<bool>("reachable");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<bool>("written");
    QTest::addColumn<bool>("told");
    const auto row = [](const char *name, int before, int limit, bool reachable, bool locked, bool written,
                        bool told) {
        QTest::newRow(name) << before << limit << reachable << locked << written << told;
    };
    row("the hundredth", 99, 5000, true, false, true, false);
    row("the three hundredth", 299, 5000, true, false, true, false);
    row("the ninety-ninth", 98, 5000, true, false, false, false);
    row("the hundred and first", 100, 5000, true, false, false, false);
    row("locked", 99, 5000, true, true, false, false);
    row("without the backend", 99, 100, false, false, false, false);
    row("one below the limit", 4998, 5000, true, false, false, false);
    row("the limit", 4999, 5000, true, false, true, true);
    row("past the limit", 7000, 5000, true, false, false, true);
    row("locked at the limit", 4999, 5000, true, true, false, true);
}

void TestTranslation::counts()
{
    QFETCH(int, before);
    QFETCH(int, limit);
    QFETCH(bool, reachable);
    QFETCH(bool, locked);
    QFETCH(bool, written);
    QFETCH(bool, told);
    m_state->BDFY1MUsedQuantity = before;
    m_state->BDFY1MMaxUsageQuantity = limit;
    m_state->BackendReachable = reachable;
    m_state->CountersLocked = locked;
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    QCOMPARE(trans->translate(QStringLiteral("abc")), Result(true, QStringLiteral("fine")));
    QCOMPARE(m_state->BDFY1MUsedQuantity, before + 1);
    QCOMPARE(m_api->pendingCount(), written ? 1 : 0);
    if (written) {
        QTRY_COMPARE(m_server->requests.size(), 2);
        const QString statement =
            QStringLiteral("update mevodb.device_serialid set BDFY1MUsedQuantity=%1 where "
                           "DongleID='01-02-030405'")
                .arg(before + 1);
        const QByteArray target = m_server->requests[1].target;
        QVERIFY(target.startsWith("/mevowebapi?newsql___"));
        QCOMPARE(cipher.DecryptString(QString::fromLatin1(target.mid(24))), statement);
    }
    const QString message =
        QStringLiteral("超出限量|已超出该接口每月限制使用次数(1万字符），请尝试重启软件或错开时间重启软件！("
                       "f001)(01-02-030405)");
    QCOMPARE(m_host.told, told ? QStringList{message} : QStringList());
}

void TestTranslation::accountThatComesLate()
{
    m_state->BaiduTranslateAppId.clear();
    m_state->BaiduTranslateKey.clear();
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    trans->translate(QStringLiteral("apple"));
    QVERIFY(m_server->requests[0].target.contains("&appid=&"));
    m_state->BaiduTranslateAppId = QStringLiteral("2015063000000001");
    m_state->BaiduTranslateKey = QStringLiteral("12345678");
    trans->translate(QStringLiteral("apple"));
    m_state->BaiduTranslateAppId = QStringLiteral("another");
    trans->translate(QStringLiteral("apple"));
    // The one that was taken stays.
    for (int i = 1; i < 3; ++i) {
        QVERIFY(m_server->requests[i].target.contains(
            "sign=f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001&"));
    }
}

void TestTranslation::askedAgainDuringAWait()
{
    const std::unique_ptr<Trans> trans = makeTrans(*m_server);
    m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(translated("first"))));
    m_server->enqueue(ScriptedAnswer::body(translated("second")));
    Result second;
    m_server->onRequest = [&](const ScriptedRequest &) {
        m_server->onRequest = {};
        QTimer::singleShot(0, this, [&] {
            second = trans->translate(QStringLiteral("two"));
            m_server->answerHeld();
        });
    };
    QCOMPARE(trans->translate(QStringLiteral("one")), Result(true, QStringLiteral("first")));
    QCOMPARE(second, Result(true, QStringLiteral("second")));
    QCOMPARE(m_state->BDFY1MUsedQuantity, 2);
}

/// The window may be closed while it waits: the answer that comes then reaches nobody, and nothing is
/// touched.
void TestTranslation::goneDuringAWait()
{
    std::unique_ptr<Trans> trans = makeTrans(*m_server);
    m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(translated("late")));
    m_server->onRequest = [&](const ScriptedRequest &) {
        QTimer::singleShot(0, this, [&] {
            trans.reset();
            m_server->answerHeld();
        });
    };
    QCOMPARE(trans->translate(QStringLiteral("abc")), Result(true, QStringLiteral("late")));
    QCOMPARE(m_state->BDFY1MUsedQuantity, 0);
}

/// The receiver goes, or another one comes, while the answer is awaited: it is its own count that goes on,
/// and the other one's is not touched.
void TestTranslation::receiverChangesDuringAWait()
{
    const QString receiver = m_state->DongleID;
    mevo::DayCounts &counts = m_state->dayCounts;
    counts.take(mevo::CountColumn::Translation, 99); // the next one would be written
    for (const QString &next : {QString(), QStringLiteral("09-09-090909")}) {
        m_state->DongleID = receiver;
        const int used = counts.used(mevo::CountColumn::Translation);
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        m_server->onRequest = [&](const ScriptedRequest &) {
            m_state->DongleID = next;
            next.isEmpty() ? counts.receiverLeft() : counts.follow();
            m_state->CountersLocked = false;
        };
        trans->translate(QStringLiteral("abc"));
        QCOMPARE(counts.used(mevo::CountColumn::Translation), 0);
        QCOMPARE(m_api->pendingCount(), 0);
        m_state->DongleID = receiver;
        QCOMPARE(counts.used(mevo::CountColumn::Translation), used + 1);
    }
}

void TestTranslation::languages_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("flag");
    QTest::newRow("recognised by itself") << "auto"
                                          << "自动(auto)"
                                          << "自动"
                                          << ":/rec/tans/CN.ico";
    QTest::newRow("one name in the list, another above the pane") << "en"
                                                                  << "英语(en)"
                                                                  << "英文"
                                                                  << ":/rec/tans/UK.ico";
    QTest::newRow("Chinese of another kind") << "wyw"
                                             << "文言文(wyw)"
                                             << "文言文"
                                             << ":/rec/tans/CN.ico";
    QTest::newRow("a code of its own kind") << "jp"
                                            << "日语(jp)"
                                            << "日语"
                                            << ":/rec/tans/JP.ico";
    QTest::newRow("three letters") << "ara"
                                   << "阿拉伯语(ara)"
                                   << "阿拉伯语"
                                   << ":/rec/tans/AE.ico";
    QTest::newRow("the last") << "slo"
                              << "斯洛文尼亚语(slo)"
                              << "斯洛文尼亚语"
                              << ":/rec/tans/SI.ico";
}

void TestTranslation::languages()
{
    QFETCH(QString, code);
    QFETCH(QString, row);
    QFETCH(QString, label);
    QFETCH(QString, flag);
    const mevo::TranslationLanguage *language = mevo::translationLanguage(code);
    QVERIFY(language != nullptr);
    QCOMPARE(mevo::languageRowText(*language), row);
    QCOMPARE(mevo::codeInBrackets(row), code);
    QCOMPARE(mevo::languageLabel(code), label);
    QCOMPARE(mevo::languageFlag(*language), flag);
}

void TestTranslation::everyLanguageInItsPlace()
{
    const QStringList codes =
        QStringLiteral(
            "auto zh wyw yue cht en jp kor fra ru spa pl pt de th cs ara vie it el nl dan swe fin hu "
            "rom bul est slo")
            .split(QLatin1Char(' '));
    QStringList found;
    for (const mevo::TranslationLanguage &language : mevo::translationLanguages()) {
        found.append(QLatin1String(language.code));
    }
    QCOMPARE(found, codes);
    QCOMPARE(codes.mid(0, mevo::VoiceSourceLanguages).last(), QStringLiteral("en"));
    QVERIFY(mevo::translationLanguage(QStringLiteral("EN")) == nullptr);
    QCOMPARE(mevo::languageLabel(QStringLiteral("xx")), QString());
    QCOMPARE(mevo::codeInBrackets(QStringLiteral("无括号")), QString());
    QCOMPARE(mevo::codeInBrackets(QStringLiteral("半(a")), QString());
}

QTEST_GUILESS_MAIN(TestTranslation)
#include "tst_translation.moc"
