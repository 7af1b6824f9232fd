#include "engines/XunFeiFrames.h"
#include "engines/XunFeiMessage.h"
#include "engines/XunFeiSigning.h"

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
        QCOMPARE(mevo::xunFeiSignature(QStringLiteral("iat-api.xfyun.cn"),
                                       QStringLiteral("Wed, 10 Jul 2019 07:35:43 GMT"),
                                       QStringLiteral("secretxxxxxxxx2df7900c09xxxxxxxx")),
                 QByteArray("Hp3Ty4ZkSBmL8jKyOLpQiv9Sr5nvmeYEH7WsL/ZO2Jg="));
    }

    void date()
    {
        const QDateTime moment(QDate(2019, 7, 10), QTime(7, 35, 43), Qt::UTC);
        const QString expected = QStringLiteral("Wed,10 Jul 2019 07:35:43 GMT");
        QCOMPARE(mevo::xunFeiDate(moment), expected);
        QCOMPARE(mevo::xunFeiDate(moment.toOffsetFromUtc(8 * 3600)), expected);
        QCOMPARE(mevo::xunFeiDate(QDateTime(QDate(2026, 1, 3), QTime(0, 0, 9), Qt::UTC)),
                 QStringLiteral("Sat,03 Jan 2026 00:00:09 GMT"));
    }

    void url_data()
    {
        QTest::addColumn<QString>("signHost");
        QTest::addColumn<QString>("socketHost");
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QByteArray>("host");
        QTest::newRow("as shipped") << mevo::EngineEndpoints().XunFeiSignHost
                                    << mevo::EngineEndpoints().XunFeiSocketHost
                                    << QByteArray("ws://iat-niche-api.xfyun.cn/v2/iat?")
                                    << QByteArray("iat-api.xfyun.cn");
        QTest::newRow("ports") << "localhost:80"
                               << "127.0.0.1:8123" << QByteArray("ws://127.0.0.1:8123/v2/iat?")
                               << QByteArray("localhost");
        QTest::newRow("a scheme") << "wss://a.example"
                                  << "wss://b.example" << QByteArray("wss://b.example/v2/iat?")
                                  << QByteArray("a.example");
    }
    void url()
    {
        QFETCH(QByteArray, start);
        QFETCH(QByteArray, host);
        QFETCH(QString, signHost);
        QFETCH(QString, socketHost);
        mevo::EngineEndpoints endpoints;
        endpoints.XunFeiSignHost = signHost;
        endpoints.XunFeiSocketHost = socketHost;
        const QString date = QStringLiteral("Wed,10 Jul 2019 07:35:43 GMT");
        // Its authorisation, in base64, ends in an equals sign, which stays as it is.
        const mevo::XunFeiAccount account{QStringLiteral("1"), QStringLiteral("keyx"), QStringLiteral("s")};
        const QByteArray text =
            mevo::xunFeiUrl(endpoints, account, date, QStringLiteral("Wed,10 Jul 2019 07:35:44 GMT"))
                .toEncoded();
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
        QTest::addColumn<QString>("voiceType");
        QTest::addColumn<bool>("punctuation");
        QTest::addColumn<bool>("correction");
        QTest::addColumn<QByteArray>("business");
        QTest::newRow("Mandarin") << "mandarin" << true << false
                                  << QByteArray(R"("accent":"mandarin","language":"zh_cn","ptt":1)");
        QTest::newRow("a dialect, corrected")
            << "lmz" << false << true
            << QByteArray(R"("accent":"lmz","dwa":"wpgs","language":"zh_cn","ptt":0)");
        for (const char *code : {"en_us", "ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"}) {
            QTest::newRow(code) << code << false << false
                                << QByteArray("\"language\":\"") + code + "\",\"ptt\":0";
        }
        QTest::newRow("no choice") << "" << false << false
                                   << QByteArray(R"("accent":"","language":"zh_cn","ptt":0)");
    }
    void firstFrame()
    {
        QFETCH(QString, voiceType);
        QFETCH(bool, punctuation);
        QFETCH(bool, correction);
        QFETCH(QByteArray, business);
        const QByteArray expected = R"({"common":{"app_id":"5f"},"business":{"domain":"iat",)" + business +
                                    R"(},"data":{"status":0,"format":"audio/L16;rate=16000",)"
                                    R"("encoding":"raw","audio":"AAH/fw=="}})";
        QVERIFY(!object(expected).isEmpty());
        QCOMPARE(object(mevo::xunFeiFirstFrame({QStringLiteral("5f"), voiceType, punctuation, correction},
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
        QTest::addColumn<QString>("json");
        QTest::addColumn<QString>("read"); // "code status replaces from-to text", or "-" when it is refused
        const auto row = [](const char *name, const QString &json, const char *read) {
            QTest::newRow(name) << json << QString::fromUtf8(read);
        };
        const auto result = [](const char *content) {
            return QString::fromUtf8("{\"code\":0,\"data\":{\"status\":1,\"result\":{%1}}}")
                .arg(QString::fromUtf8(content));
        };
        row("words", result(R"("sn":1,"ls":false,"ws":[{"cw":[{"w":"你"},{"w":"好"}]},{"cw":[{"w":"。"}]}])"),
            "0 1 0 0--1 你好。");
        row("replaces", result(R"("pgs":"rpl","rg":[3,5],"ws":[{"cw":[{"w":"a"}]}])"), "0 1 1 3-5 a");
        row("appends", result(R"("pgs":"apd","rg":[1,2],"ws":[])"), "0 1 0 1-2 ");
        row("an error", QStringLiteral(R"({"code":10105,"message":"illegal access"})"), "10105 0 0 0--1 ");
        row("a range of one", result(R"("pgs":"rpl","rg":[3])"), "0 1 1 0--1 ");
        row("a range of texts", result(R"("pgs":"rpl","rg":["1","2"])"), "0 1 1 0--1 ");
        row("a range of fractions", result(R"("pgs":"rpl","rg":[1.5,2.5])"), "0 1 1 0--1 ");
        row("odd types",
            result(R"("pgs":7,"rg":"x","sn":[],"ls":"yes","ws":[1,{"cw":3},{"cw":[{"w":5},{}]}])"),
            "0 1 0 0--1 ");
        row("a code as text", QStringLiteral(R"({"code":"10105","data":7})"), "10105 0 0 0--1 ");
        for (const char *code : {"1e10", "10105.5", "-0.5", "true", "[0]", "\"zero\"", "\"\"", "{}"}) {
            row(code, QStringLiteral("{\"code\":%1}").arg(QLatin1String(code)), "-1 0 0 0--1 ");
        }
        row("no code", QStringLiteral(R"({"code":null})"), "0 0 0 0--1 ");
        row("a range that is half a fraction", result(R"("pgs":"rpl","rg":[1.5,2])"), "0 1 1 0--1 ");
        row("a range that ends nowhere", result(R"("pgs":"rpl","rg":[1,1e10])"), "0 1 1 0--1 ");
        row("a range of three", result(R"("pgs":"rpl","rg":[1,2,3])"), "0 1 1 0--1 ");
        row("nothing in it", QStringLiteral("{}"), "0 0 0 0--1 ");
        row("empty", QString(), "-");
        row("no object", QStringLiteral("[{\"code\":0}]"), "-");
        row("cut", QStringLiteral("{\"code\":0,\"da"), "-");
        row("control characters", QStringLiteral("\u0001\u0000"), "-");
        row("half a surrogate", QString(QChar(0xd800)) + QStringLiteral("{}"), "-");
        row("deep", QString(100000, QLatin1Char('[')), "-");
        row("too long",
            QStringLiteral("{\"code\":0}") + QString(mevo::longestXunFeiMessage, QLatin1Char(' ')), "-");
    }
    void message()
    {
        QFETCH(QString, json);
        mevo::XunFeiMessage m;
        const bool read = mevo::parseXunFeiMessage(json, m);
        QTEST(read ? QStringLiteral("%1 %2 %3 %4-%5 %6")
                         .arg(m.code)
                         .arg(m.status)
                         .arg(int(m.replaces))
                         .arg(m.from)
                         .arg(m.to)
                         .arg(m.text)
                   : QStringLiteral("-"),
              "read");
        QVERIFY(read || m.text.isEmpty());
    }

    void corrections_data()
    {
        QTest::addColumn<bool>("replaces");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("joined"); // of "abcdef", with "X" appended
        QTest::newRow("append") << false << 1 << 6 << "abcdefX";
        QTest::newRow("three") << true << 3 << 5 << "abfX";
        QTest::newRow("one") << true << 6 << 6 << "abcdeX";
        QTest::newRow("all") << true << 1 << 6 << "X";
        QTest::newRow("beyond the end") << true << 5 << 99 << "abcdX";
        QTest::newRow("wholly beyond") << true << 7 << 9 << "abcdefX";
        QTest::newRow("before the start") << true << -5 << 2 << "cdefX";
        QTest::newRow("zero") << true << 0 << 0 << "abcdefX";
        QTest::newRow("backwards") << true << 5 << 3 << "abcdefX";
        QTest::newRow("extremes") << true << std::numeric_limits<int>::min()
                                  << std::numeric_limits<int>::max() << "X";
    }
    void corrections()
    {
        QFETCH(bool, replaces);
        QFETCH(int, from);
        QFETCH(int, to);
        QStringList results = letters(6).split(QString(), Qt::SkipEmptyParts);
        mevo::XunFeiMessage message;
        message.replaces = replaces;
        message.from = from;
        message.to = to;
        message.text = QStringLiteral("X");
        mevo::applyXunFeiResult(results, message);
        QTEST(results.join(QString()), "joined");
        QCOMPARE(results.size(), 7); // emptied entries stay, so that later numbers still fit
    }
};

QTEST_GUILESS_MAIN(TestXunFei)
#include "tst_xunfei.moc"
