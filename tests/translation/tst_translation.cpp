#include "service/WebCipher.h"
#include "support/Rows.h"
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
    void init()
    {
        m_host.told.clear();
        m_server = std::make_unique<ScriptedHttp>();
        m_server->fallback = ScriptedAnswer::body(translated("fine"));
        m_state = std::make_unique<MainState>();
        m_state->IsOnline = true;
        m_state->BaiduTranslateAppId = "2015063000000001"_s;
        m_state->BaiduTranslateKey = "12345678"_s;
        m_state->DongleID = "01-02-030405"_s;
        m_state->SchemaName = "mevodb"_s;
        m_state->ServerUrl = m_server->url("/mevowebapi?"_s).toString();
        m_api = std::make_unique<mevo::WebApi>(*m_state, cipher);
    }

    void signs_data()
    {
        // appid, text, salt, key, sign, encoded
        const Rows<QString, QString, int, QString, QString, QByteArray> row;

        row("the service's own example", "2015063000000001", "apple", 1435660288, "12345678",
            "f89f9594663708c1605f3d736d01d2d4", QByteArray("apple"));
        row("place markers, a line's end and an emoji", "7", "一%1%2 %4\n😀"_s, 42, "s%3",
            "b012f82694158f5c3f9d6800145f09ad", QByteArray("%E4%B8%80%251%252%20%254%0D%F0%9F%98%80"));
        row("characters of an address", "20", "a+b&q=c#d/é~*(x)"_s, 2147483646, "k",
            "d193461b25bda32db2ecf11bdb058fde", QByteArray("a%2Bb%26q%3Dc%23d%2F%C3%A9~%2A%28x%29"));
        row("right to left", "9", "مرحبا\tשלום"_s, 1, "密"_s, "36b2ac3ab285602d1e2498a82fb752cd",
            QByteArray("%D9%85%D8%B1%D8%AD%D8%A8%D8%A7%09%D7%A9%D7%9C%D7%95%D7%9D"));
        row("nothing", "", "", 0, "", "cfcd208495d565ef66e7dff9f98764da", QByteArray());
    }
    void signs()
    {
        const auto [appid, text, salt, key, sign, encoded] =
            rowOf<QString, QString, int, QString, QString, QByteArray>();
        const mevo::TranslationRequest request{appid, key, salt, mevo::translationText(text), "zh"_s, "en"_s};
        QCOMPARE(mevo::translationSign(request), sign);
        QCOMPARE(mevo::translationQuery(request, sign),
                 "sign=" + sign.toLatin1() + "&appid=" + appid.toUtf8() +
                     "&salt=" + QByteArray::number(salt) + "&from=zh&to=en&q=" + encoded);
    }

    void sends_data()
    {
        const Rows<QStringList, QByteArray> row; // arguments, target
        const QByteArray path = "/api/trans/vip/translate?sign=";
        row("both languages", list("apple|zh|en"),
            path + "f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001"
                   "&salt=1435660288&from=en&to=zh&q=apple");
        row("its own language is recognised", list("apple|jp"),
            path + "f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001"
                   "&salt=1435660288&from=auto&to=jp&q=apple");
        row("nothing said of languages", list("apple"),
            path + "f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001"
                   "&salt=1435660288&from=auto&to=auto&q=apple");
        row("two lines", list("一 %41\n二/?|en|zh"),
            path + "ac7bd57312554d7b0271e3bc8a10f34c&appid=2015063000000001"
                   "&salt=1435660288&from=zh&to=en"
                   "&q=%E4%B8%80%20%2541%0D%E4%BA%8C%2F%3F");
    }
    void sends()
    {
        const auto [arguments, target] = rowOf<QStringList, QByteArray>();
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        const Result result = arguments.size() == 3
                                  ? trans->translate(arguments[0], arguments[1], arguments[2])
                              : arguments.size() == 2 ? trans->translate(arguments[0], arguments[1])
                                                      : trans->translate(arguments[0]);
        QCOMPARE(result, Result(true, "fine"_s));
        QCOMPARE(m_server->requests.size(), 1);
        QCOMPARE(m_server->requests[0].method, QByteArray("GET"));
        QCOMPARE(m_server->requests[0].target, target);
        QCOMPARE(m_server->requests[0].headers.value("content-type"),
                 QByteArray("application/x-www-form-urlencoded"));
    }

    void readsReplies_data()
    {
        const Rows<QString, bool, QString> row; // reply, good, text
        row("nothing", {}, false, "given"_s);
        row("one segment", R"({"trans_result":[{"dst":"你好"}]})"_s, true, "你好"_s);
        row("escapes", "{\"trans_result\":[{\"dst\":\"\\u4f60\\ud83d\\ude00\\n\\\"x\\\"\"}]}"_s, true,
            "你😀\n\"x\""_s);
        row("only the first of several", R"({"trans_result":[{"dst":"a"},{"dst":"b"}]})"_s, true, "a"_s);
        row("an empty translation", R"({"trans_result":[{"dst":""}]})"_s, true, {});
        row("no segment", R"({"trans_result":[]})"_s, false, {});
        row("a segment without dst", R"({"trans_result":[{"src":"a"},{"dst":"b"}]})"_s, false, {});
        row("a dst that is no text", R"({"trans_result":[{"dst":{"a":1}}]})"_s, false, {});
        row("segments that are no list", R"({"trans_result":{"dst":"a"}})"_s, false, {});
        row("a segment that is no object", R"({"trans_result":["dst"]})"_s, false, {});
        row("an error", R"({"error_code":"54001","error_msg":"Invalid Sign"})"_s, false, {});
        row("an error by number", R"({"error_code":52003})"_s, false, {});
        row("a list", R"([{"trans_result":[{"dst":"a"}]}])"_s, false, {});
        row("half of it", "{\"trans_result\":[{\"dst\":\"a"_s, false, {});
        row("a page", "<html>502</html>"_s, false, {});
        row("a blank", " "_s, false, {});
    }
    void readsReplies()
    {
        const auto [reply, good, text] = rowOf<QString, bool, QString>();
        QCOMPARE(mevo::translationResult(reply, "given"_s), Result(good, text));
    }

    void answers_data()
    {
        const Rows<ScriptedAnswer, bool, QString> row; // answer, good, text
        const QString given = "两行\n文字"_s;
        row("translated", ScriptedAnswer::body(translated("two lines")), true, "two lines");
        row("an error of the service",
            ScriptedAnswer::body(R"({"error_code":"54003","error_msg":"Invalid Access Limit"})"), false, "");
        row("no segments", ScriptedAnswer::body(R"({"trans_result":[]})"), false, "");
        row("status 500", ScriptedAnswer::body(translated("x"), 500), false, given);
        row("status 204", ScriptedAnswer::body("", 204), false, given);
        row("an empty body", ScriptedAnswer::body(""), false, given);
        row("cut short", ScriptedAnswer::cut(translated("x"), 4000), false, given);
        row("no HTTP", ScriptedAnswer::raw("\x00\xff garbage"), false, given);
        row("endless", ScriptedAnswer::enormous(20LL * 1024 * 1024), false, given);
    }
    void answers()
    {
        const auto [answer, good, text] = rowOf<ScriptedAnswer, bool, QString>();
        m_server->fallback = answer;
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        QCOMPARE(trans->translate("两行\n文字"_s, "en"_s), Result(good, text));
        QCOMPARE(m_state->BDFY1MUsedQuantity, 1); // whatever came of it
    }

    void timesOut()
    {
        m_server->fallback = ScriptedAnswer::silence();
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        QElapsedTimer elapsed;
        elapsed.start();
        bool lives = false;
        QTimer::singleShot(0, this, [&lives] { lives = true; });
        QCOMPARE(trans->translate("abc"_s), Result(false, "abc"_s));
        QVERIFY(elapsed.elapsed() >= 1990);
        QVERIFY(lives);
    }

    void offline()
    {
        m_state->IsOnline = false;
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        QCOMPARE(trans->translate("abc"_s), Result(false, "abc"_s));
        QVERIFY(m_server->requests.isEmpty());
    }

    void certificates_data() { flagRows("of this computer, checked", "of this computer, unchecked"); }
    void certificates()
    {
        const auto [verify] = rowOf<bool>();
        ScriptedHttp secure(ScriptedHttp::Security::Tls);
        secure.fallback = ScriptedAnswer::body(translated("fine"));
        mevo::EngineEndpoints endpoints;
        endpoints.TranslateHost = "https://"_s + secure.host();
        endpoints.VerifyCertificates = verify;
        Trans trans(*m_state, *m_api, m_host, endpoints);
        QCOMPARE(trans.translate("abc"_s).first, !verify);
    }

    void counts_data()
    {
        const Rows<int, int, bool, bool, bool, bool> row; // before, limit, reachable, locked, written, told
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
    void counts()
    {
        const auto [before, limit, reachable, locked, written, told] =
            rowOf<int, int, bool, bool, bool, bool>();
        m_state->BDFY1MUsedQuantity = before;
        m_state->BDFY1MMaxUsageQuantity = limit;
        m_state->BackendReachable = reachable;
        m_state->CountersLocked = locked;
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        QCOMPARE(trans->translate("abc"_s), Result(true, "fine"_s));
        QCOMPARE(m_state->BDFY1MUsedQuantity, before + 1);
        QCOMPARE(m_api->pendingCount(), written ? 1 : 0);
        if (written) {
            QTRY_COMPARE(m_server->requests.size(), 2);
            const QString statement = "update mevodb.device_serialid set BDFY1MUsedQuantity=%1 where "
                                      "DongleID='01-02-030405'"_s.arg(before + 1);
            const QByteArray target = m_server->requests[1].target;
            QVERIFY(target.startsWith("/mevowebapi?newsql___"));
            QCOMPARE(cipher.DecryptString(QString::fromLatin1(target.mid(24))), statement);
        }
        const QString message =
            "超出限量|已超出该接口每月限制使用次数(1万字符），请尝试重启软件或错开时间重启软件！("
            "f001)(01-02-030405)"_s;
        QCOMPARE(m_host.told, told ? QStringList{message} : QStringList());
    }

    void accountThatComesLate()
    {
        m_state->BaiduTranslateAppId.clear();
        m_state->BaiduTranslateKey.clear();
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        trans->translate("apple"_s);
        QVERIFY(m_server->requests[0].target.contains("&appid=&"));
        m_state->BaiduTranslateAppId = "2015063000000001"_s;
        m_state->BaiduTranslateKey = "12345678"_s;
        trans->translate("apple"_s);
        m_state->BaiduTranslateAppId = "another"_s;
        trans->translate("apple"_s);
        // The one that was taken stays.
        for (int i = 1; i < 3; ++i) {
            QVERIFY(m_server->requests[i].target.contains(
                "sign=f89f9594663708c1605f3d736d01d2d4&appid=2015063000000001&"));
        }
    }

    void askedAgainDuringAWait()
    {
        const std::unique_ptr<Trans> trans = makeTrans(*m_server);
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(translated("first"))));
        m_server->enqueue(ScriptedAnswer::body(translated("second")));
        Result second;
        m_server->onRequest = [&](const ScriptedRequest &) {
            m_server->onRequest = {};
            QTimer::singleShot(0, this, [&] {
                second = trans->translate("two"_s);
                m_server->answerHeld();
            });
        };
        QCOMPARE(trans->translate("one"_s), Result(true, "first"_s));
        QCOMPARE(second, Result(true, "second"_s));
        QCOMPARE(m_state->BDFY1MUsedQuantity, 2);
    }

    /// The window may be closed while it waits: the answer that comes then reaches nobody, and nothing is
    /// touched.
    void goneDuringAWait()
    {
        std::unique_ptr<Trans> trans = makeTrans(*m_server);
        m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(translated("late")));
        m_server->onRequest = [&](const ScriptedRequest &) {
            QTimer::singleShot(0, this, [&] {
                trans.reset();
                m_server->answerHeld();
            });
        };
        QCOMPARE(trans->translate("abc"_s), Result(true, "late"_s));
        QCOMPARE(m_state->BDFY1MUsedQuantity, 0);
    }

    /// The receiver goes, or another one comes, while the answer is awaited: it is its own count that goes
    /// on, and the other one's is not touched.
    void receiverChangesDuringAWait()
    {
        const QString receiver = m_state->DongleID;
        mevo::DayCounts &counts = m_state->dayCounts;
        counts.take(mevo::CountColumn::Translation, 99); // the next one would be written
        for (const QString &next : {QString(), "09-09-090909"_s}) {
            m_state->DongleID = receiver;
            const int used = counts.used(mevo::CountColumn::Translation);
            const std::unique_ptr<Trans> trans = makeTrans(*m_server);
            m_server->onRequest = [&](const ScriptedRequest &) {
                m_state->DongleID = next;
                next.isEmpty() ? counts.receiverLeft() : counts.follow();
                m_state->CountersLocked = false;
            };
            trans->translate("abc"_s);
            QCOMPARE(counts.used(mevo::CountColumn::Translation), 0);
            QCOMPARE(m_api->pendingCount(), 0);
            m_state->DongleID = receiver;
            QCOMPARE(counts.used(mevo::CountColumn::Translation), used + 1);
        }
    }

    void languages_data()
    {
        const Rows<QString, QString, QString, QString> row; // code, row, label, flag
        row("recognised by itself", "auto", "自动(auto)", "自动", ":/rec/tans/CN.ico");
        row("one name in the list, another above the pane", "en", "英语(en)", "英文", ":/rec/tans/UK.ico");
        row("Chinese of another kind", "wyw", "文言文(wyw)", "文言文", ":/rec/tans/CN.ico");
        row("a code of its own kind", "jp", "日语(jp)", "日语", ":/rec/tans/JP.ico");
        row("three letters", "ara", "阿拉伯语(ara)", "阿拉伯语", ":/rec/tans/AE.ico");
        row("the last", "slo", "斯洛文尼亚语(slo)", "斯洛文尼亚语", ":/rec/tans/SI.ico");
    }
    void languages()
    {
        const auto [code, row, label, flag] = rowOf<QString, QString, QString, QString>();
        const mevo::TranslationLanguage *language = mevo::translationLanguage(code);
        QVERIFY(language != nullptr);
        QCOMPARE(mevo::languageRowText(*language), row);
        QCOMPARE(mevo::codeInBrackets(row), code);
        QCOMPARE(mevo::languageLabel(code), label);
        QCOMPARE(mevo::languageFlag(*language), flag);
    }

    void everyLanguageInItsPlace()
    {
        const QStringList codes =
            "auto zh wyw yue cht en jp kor fra ru spa pl pt de th cs ara vie it el nl dan swe fin hu "
            "rom bul est slo"_s.split(QLatin1Char(' '));
        QStringList found;
        for (const mevo::TranslationLanguage &language : mevo::translationLanguages()) {
            found.append(QLatin1String(language.code));
        }
        QCOMPARE(found, codes);
        QCOMPARE(codes.mid(0, mevo::VoiceSourceLanguages).last(), "en"_s);
        QVERIFY(mevo::translationLanguage("EN"_s) == nullptr);
        QCOMPARE(mevo::languageLabel("xx"_s), QString());
        QCOMPARE(mevo::codeInBrackets("无括号"_s), QString());
        QCOMPARE(mevo::codeInBrackets("半(a"_s), QString());
    }

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

QTEST_GUILESS_MAIN(TestTranslation)
#include "tst_translation.moc"
