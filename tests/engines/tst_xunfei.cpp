#include "engines/XunFeiFrames.h"
#include "engines/XunFeiMessage.h"
#include "engines/XunFeiSigning.h"
#include "support/Rows.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

QString letters(int count)
{
    QString text;
    for (int i = 0; i < count; ++i) {
        text += QChar(u'a' + i);
    }
    return text;
}

QJsonObject object(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

} // namespace

class TestXunFei : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The worked example of the service's public documentation.
    void signature()
    {
        QCOMPARE(mevo::xunFeiSignature("iat-api.xfyun.cn"_s, "Wed, 10 Jul 2019 07:35:43 GMT"_s,
                                       "secretxxxxxxxx2df7900c09xxxxxxxx"_s),
                 QByteArray("Hp3Ty4ZkSBmL8jKyOLpQiv9Sr5nvmeYEH7WsL/ZO2Jg="));
    }

    void date()
    {
        const QDateTime moment(QDate(2019, 7, 10), QTime(7, 35, 43), Qt::UTC);
        const QString expected = "Wed,10 Jul 2019 07:35:43 GMT"_s;
        QCOMPARE(mevo::xunFeiDate(moment), expected);
        QCOMPARE(mevo::xunFeiDate(moment.toOffsetFromUtc(8 * 3600)), expected);
        QCOMPARE(mevo::xunFeiDate(QDateTime(QDate(2026, 1, 3), QTime(0, 0, 9), Qt::UTC)),
                 "Sat,03 Jan 2026 00:00:09 GMT"_s);
    }

    void url_data()
    {
        const Rows<QString, QString, QByteArray, QByteArray> row; // signHost, socketHost, start, host
        row("as shipped", mevo::EngineEndpoints().XunFeiSignHost, mevo::EngineEndpoints().XunFeiSocketHost,
            "ws://iat-niche-api.xfyun.cn/v2/iat?", "iat-api.xfyun.cn");
        row("ports", "localhost:80", "127.0.0.1:8123", "ws://127.0.0.1:8123/v2/iat?", "localhost");
        row("a scheme", "wss://a.example", "wss://b.example", "wss://b.example/v2/iat?", "a.example");
    }
    void url()
    {
        const auto [signHost, socketHost, start, host] = rowOf<QString, QString, QByteArray, QByteArray>();
        mevo::EngineEndpoints endpoints;
        endpoints.XunFeiSignHost = signHost;
        endpoints.XunFeiSocketHost = socketHost;
        const QString date = "Wed,10 Jul 2019 07:35:43 GMT"_s;
        // Its authorisation, in base64, ends in an equals sign, which stays as it is.
        const mevo::XunFeiAccount account{"1"_s, "keyx"_s, "s"_s};
        const QByteArray text =
            mevo::xunFeiUrl(endpoints, account, date, "Wed,10 Jul 2019 07:35:44 GMT"_s).toEncoded();
        const QByteArray authorization =
            ("api_key=\"keyx\", algorithm=\"hmac-sha256\", headers=\"host date request-line\", signature=\"" +
             mevo::xunFeiSignature(QString::fromLatin1(host), date, account.apiSecret) + '"')
                .toBase64();
        QVERIFY(authorization.endsWith('='));
        QCOMPARE(text, start + "date=Wed%2C10%20Jul%202019%2007%3A35%3A44%20GMT&host=" + host +
                           "&authorization=" + authorization);
    }

    void firstFrame_data()
    {
        const Rows<QString, bool, bool, QByteArray> row; // voiceType, punctuation, correction, business
        row("Mandarin", "mandarin", true, false, R"("accent":"mandarin","language":"zh_cn","ptt":1)");
        row("a dialect, corrected", "lmz", false, true,
            R"("accent":"lmz","dwa":"wpgs","language":"zh_cn","ptt":0)");
        for (const char *code : {"en_us", "ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"}) {
            row(code, code, false, false, QByteArray("\"language\":\"") + code + "\",\"ptt\":0");
        }
        row("no choice", "", false, false, R"("accent":"","language":"zh_cn","ptt":0)");
    }
    void firstFrame()
    {
        const auto [voiceType, punctuation, correction, business] = rowOf<QString, bool, bool, QByteArray>();
        const QByteArray expected = R"({"common":{"app_id":"5f"},"business":{"domain":"iat",)" + business +
                                    R"(},"data":{"status":0,"format":"audio/L16;rate=16000",)"
                                    R"("encoding":"raw","audio":"AAH/fw=="}})";
        QVERIFY(!object(expected).isEmpty());
        QCOMPARE(object(mevo::xunFeiFirstFrame({"5f"_s, voiceType, punctuation, correction},
                                               QByteArray::fromHex("0001ff7f"))),
                 object(expected));
    }

    void laterFrames()
    {
        QCOMPARE(object(mevo::xunFeiMiddleFrame(QByteArray::fromHex("0001ff7f"))),
                 object(R"({"data":{"status":1,"format":"audio/L16;rate=16000","encoding":"raw",)"
                        R"("audio":"AAH/fw=="}})"));
        QCOMPARE(object(mevo::xunFeiLastFrame()),
                 object(R"({"data":{"status":2,"format":"audio/L16;rate=16000","encoding":"raw",)"
                        R"("audio":""}})"));
    }

    void message_data()
    {
        // json, read ("code status replaces from-to text", or "-" when it is refused)
        const Rows<QString, QString> row;
        const auto result = [](const char *content) {
            return QString::fromUtf8("{\"code\":0,\"data\":{\"status\":1,\"result\":{%1}}}")
                .arg(QString::fromUtf8(content));
        };
        row("words", result(R"("sn":1,"ls":false,"ws":[{"cw":[{"w":"你"},{"w":"好"}]},{"cw":[{"w":"。"}]}])"),
            "0 1 0 0--1 你好。");
        row("replaces", result(R"("pgs":"rpl","rg":[3,5],"ws":[{"cw":[{"w":"a"}]}])"), "0 1 1 3-5 a");
        row("appends", result(R"("pgs":"apd","rg":[1,2],"ws":[])"), "0 1 0 1-2 ");
        row("an error", R"({"code":10105,"message":"illegal access"})"_s, "10105 0 0 0--1 ");
        row("a range of one", result(R"("pgs":"rpl","rg":[3])"), "0 1 1 0--1 ");
        row("a range of texts", result(R"("pgs":"rpl","rg":["1","2"])"), "0 1 1 0--1 ");
        row("a range of fractions", result(R"("pgs":"rpl","rg":[1.5,2.5])"), "0 1 1 0--1 ");
        row("odd types",
            result(R"("pgs":7,"rg":"x","sn":[],"ls":"yes","ws":[1,{"cw":3},{"cw":[{"w":5},{}]}])"),
            "0 1 0 0--1 ");
        row("a code as text", R"({"code":"10105","data":7})"_s, "10105 0 0 0--1 ");
        for (const char *code : {"1e10", "10105.5", "-0.5", "true", "[0]", "\"zero\"", "\"\"", "{}"}) {
            row(code, "{\"code\":%1}"_s.arg(QLatin1String(code)), "-1 0 0 0--1 ");
        }
        row("no code", R"({"code":null})"_s, "0 0 0 0--1 ");
        row("a range that is half a fraction", result(R"("pgs":"rpl","rg":[1.5,2])"), "0 1 1 0--1 ");
        row("a range that ends nowhere", result(R"("pgs":"rpl","rg":[1,1e10])"), "0 1 1 0--1 ");
        row("a range of three", result(R"("pgs":"rpl","rg":[1,2,3])"), "0 1 1 0--1 ");
        row("nothing in it", "{}"_s, "0 0 0 0--1 ");
        row("empty", QString(), "-");
        row("no object", "[{\"code\":0}]"_s, "-");
        row("cut", "{\"code\":0,\"da"_s, "-");
        row("control characters", "\u0001\u0000"_s, "-");
        row("half a surrogate", QString(QChar(0xd800)) + "{}"_s, "-");
        row("deep", QString(100000, QLatin1Char('[')), "-");
        row("too long", "{\"code\":0}"_s + QString(mevo::longestXunFeiMessage, QLatin1Char(' ')), "-");
    }
    void message()
    {
        const auto [json, expectedRead] = rowOf<QString, QString>();
        mevo::XunFeiMessage m;
        const bool read = mevo::parseXunFeiMessage(json, m);
        QCOMPARE(read ? "%1 %2 %3 %4-%5 %6"_s.arg(m.code)
                            .arg(m.status)
                            .arg(int(m.replaces))
                            .arg(m.from)
                            .arg(m.to)
                            .arg(m.text)
                      : "-"_s,
                 expectedRead);
        QVERIFY(read || m.text.isEmpty());
    }

    void corrections_data()
    {
        // replaces, from, to, joined (of "abcdef", with "X" appended)
        const Rows<bool, int, int, QString> row;
        row("append", false, 1, 6, "abcdefX");
        row("three", true, 3, 5, "abfX");
        row("one", true, 6, 6, "abcdeX");
        row("all", true, 1, 6, "X");
        row("beyond the end", true, 5, 99, "abcdX");
        row("wholly beyond", true, 7, 9, "abcdefX");
        row("before the start", true, -5, 2, "cdefX");
        row("zero", true, 0, 0, "abcdefX");
        row("backwards", true, 5, 3, "abcdefX");
        row("extremes", true, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), "X");
    }
    void corrections()
    {
        const auto [replaces, from, to, joined] = rowOf<bool, int, int, QString>();
        QStringList results = letters(6).split(QString(), Qt::SkipEmptyParts);
        mevo::XunFeiMessage message;
        message.replaces = replaces;
        message.from = from;
        message.to = to;
        message.text = "X"_s;
        mevo::applyXunFeiResult(results, message);
        QCOMPARE(results.join(QString()), joined);
        QCOMPARE(results.size(), 7); // emptied entries stay, so that later numbers still fit
    }
};

QTEST_GUILESS_MAIN(TestXunFei)
#include "tst_xunfei.moc"
