#include "base/SettingsFile.h"
#include "service/OnlinePoll.h"
#include "service/ProxyChoice.h"
#include "service/ServerAddresses.h"
#include "service/Statements.h"
#include "service/WebApiReply.h"
#include "service/WebApiRequest.h"
#include "state/SettingsTable.h"
#include "support/ScratchHome.h"

#include <QtTest>

#include <openssl/evp.h>

using mevo::Statement;

namespace {

ScratchHome home;

/// AES-128 in ECB with PKCS padding, from the other side.
QByteArray openSslHex(const QByteArray &plain, const QByteArray &key)
{
    QByteArray result(plain.size() + 32, '\0');
    auto *out = reinterpret_cast<unsigned char *>(result.data());
    int length = 0;
    int rest = 0;
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_128_ecb(), nullptr,
                       reinterpret_cast<const unsigned char *>(key.constData()), nullptr);
    EVP_EncryptUpdate(context, out, &length, reinterpret_cast<const unsigned char *>(plain.constData()),
                      plain.size());
    EVP_EncryptFinal_ex(context, out + length, &rest);
    EVP_CIPHER_CTX_free(context);
    return result.left(length + rest).toHex();
}

QString wrapped(const QString &json)
{
    const QString cipher = WebCipher().EncryptString(json);
    return QStringLiteral("%1").arg(cipher.size(), 5, 10, QLatin1Char('0')) + cipher;
}

} // namespace

class TestWebApiTexts : public QObject
{
    Q_OBJECT

private slots:
    void cipher_data();
    void cipher();
    void keyTexts();
    void stripsTrailingControls_data();
    void stripsTrailingControls();
    void refusesWhatIsNoCipherText_data();
    void refusesWhatIsNoCipherText();
    void fields();
    void requestAddress_data();
    void requestAddress();
    void replies_data();
    void replies();
    void statements();
    void proxy();
    void serverAddresses();
    void onlinePolls();
};

void TestWebApiTexts::cipher_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("one") << "a";
    QTest::newRow("fifteen") << QString(15, QLatin1Char('a'));
    QTest::newRow("a whole block") << QString(16, QLatin1Char('a'));
    QTest::newRow("statement") << "select * from orvdb.device_serialid where DongleID='01-02-030405'";
    QTest::newRow("Chinese") << QStringLiteral("灵犀听写系统，语音识别");
    QTest::newRow("emoji") << QStringLiteral("好😀");
    QTest::newRow("a zero and marks that are not seen")
        << QChar(0xfeff) + QStringLiteral("a") + QChar(0) + QChar(0xfeff) + QStringLiteral("b");
}

void TestWebApiTexts::cipher()
{
    QFETCH(QString, text);
    const WebCipher web;
    const QString enciphered = web.EncryptString(text);
    QCOMPARE(enciphered.toLatin1(), openSslHex(text.toUtf8(), "MEVOInput-Lab-Ke"));
    QCOMPARE(enciphered.size(), (text.toUtf8().size() / 16 + 1) * 32);
    QCOMPARE(web.DecryptString(enciphered), text);
    QCOMPARE(web.DecryptString(enciphered.toUpper()), text);
}

void TestWebApiTexts::keyTexts()
{
    const QString text = QStringLiteral("same text");
    QCOMPARE(WebCipher("0123456789abcdef").EncryptString(text).toLatin1(),
             openSslHex(text.toUtf8(), "0123456789abcdef"));
    QCOMPARE(WebCipher("abc").EncryptString(text).toLatin1(), openSslHex(text.toUtf8(), "abcabcabcabcabca"));
    QVERIFY_EXCEPTION_THROWN(WebCipher{QByteArray()}, std::string);

    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("^Encrpt: [0-9a-f]{64}$")));
    QTest::ignoreMessage(QtInfoMsg, "Decrypt: MEVOInput cipher test");
    mevo::logCipherTest(WebCipher());
}

void TestWebApiTexts::stripsTrailingControls_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("stripped");
    QTest::newRow("tab") << "ends in a tab\t"
                         << "ends in a tab";
    QTest::newRow("lines") << "a\nb\r\n\r\n"
                           << "a\nb";
    QTest::newRow("byte 16 goes") << QStringLiteral("x\x10") << "x";
    QTest::newRow("byte 17 stays") << QStringLiteral("x\x11") << QStringLiteral("x\x11");
    QTest::newRow("nothing but controls") << "\t\t"
                                          << "";
}

void TestWebApiTexts::stripsTrailingControls()
{
    QFETCH(QString, text);
    QFETCH(QString, stripped);
    const WebCipher web;
    const QString result = web.DecryptString(web.EncryptString(text));
    QCOMPARE(result, stripped);
    QVERIFY(!result.isNull());
}

void TestWebApiTexts::refusesWhatIsNoCipherText_data()
{
    QTest::addColumn<QString>("hex");
    QTest::newRow("empty") << "";
    QTest::newRow("half a block") << QString(16, QLatin1Char('a'));
    QTest::newRow("odd length") << QString(33, QLatin1Char('a'));
    QTest::newRow("no hex") << QString(32, QLatin1Char('g'));
    QTest::newRow("not Latin") << QString(32, QChar(0x4f60));
}

void TestWebApiTexts::refusesWhatIsNoCipherText()
{
    QFETCH(QString, hex);
    QVERIFY(WebCipher().DecryptString(hex).isNull());
    QVERIFY(!mevo::decipherField(WebCipher(), QStringLiteral("005") + hex).has_value());
}

void TestWebApiTexts::fields()
{
    const WebCipher web;
    const QString token(QStringLiteral("24.abc"));
    const QString field = mevo::encipherField(web, token);
    QCOMPARE(field.left(3), QStringLiteral("006"));
    QCOMPARE(mevo::decipherField(web, field).value(), token);
    QCOMPARE(mevo::decipherUnsizedField(web, QStringLiteral("999") + field.mid(3)), token);
    // The length that the field tells cuts the text, and a longer one does no harm.
    QCOMPARE(mevo::decipherField(web, QStringLiteral("004") + field.mid(3)).value(), token.left(4));
    QCOMPARE(mevo::decipherField(web, QStringLiteral("999") + field.mid(3)).value(), token);
    QVERIFY(!mevo::decipherField(web, QStringLiteral("x06") + field.mid(3)).has_value());
    for (const char *digits : {" 06", "+06", "06 ", "-06", "\t06", "0x6"}) {
        QVERIFY(!mevo::decipherField(web, QLatin1String(digits) + field.mid(3)).has_value());
    }
    QVERIFY(!mevo::decipherField(web, QString()).has_value());
}

void TestWebApiTexts::requestAddress_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("prefix");
    QTest::newRow("short") << "newGetNewVer"
                           << "012";
    QTest::newRow("characters, not bytes") << QStringLiteral("语音") << "002";
    QTest::newRow("a thousand") << QString(1000, QLatin1Char('s')) << "1000";
}

void TestWebApiTexts::requestAddress()
{
    QFETCH(QString, statement);
    QFETCH(QString, prefix);
    const QUrl url = mevo::webApiUrl(WebCipher(), QStringLiteral("http://host:19004/mevowebapi?"),
                                     mevo::SqlTag, statement);
    const QString request = QStringLiteral("newsql___") + prefix + WebCipher().EncryptString(statement);
    QCOMPARE(url.toString(), QStringLiteral("http://host:19004/mevowebapi?") + request);
    // What is secret never becomes a part of the host's name.
    const std::pair<const char *, const char *> bases[] = {{"http://host", "http://host/"},
                                                           {"http://host/", "http://host/"},
                                                           {"http://host?", "http://host?"},
                                                           {"http://host:80", "http://host:80/"},
                                                           {"host", "host/"}};
    for (const auto &[base, asked] : bases) {
        QCOMPARE(mevo::webApiUrl(WebCipher(), QLatin1String(base), mevo::SqlTag, statement).toString(),
                 QLatin1String(asked) + request);
    }
}

void TestWebApiTexts::replies_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("rows");
    const QString good =
        wrapped(QStringLiteral(R"({"items":"2","result0":{"F0":"a"},"result1":{"F0":"b"}})"));
    QTest::newRow("two rows") << good << true << 2 << 2;
    QTest::newRow("count as a number")
        << wrapped(QStringLiteral(R"({"items":1,"result0":{}})")) << true << 1 << 1;
    QTest::newRow("no rows") << wrapped(QStringLiteral(R"({"items":0})")) << true << 0 << 0;
    QTest::newRow("more announced than there are")
        << wrapped(QStringLiteral(R"({"items":2147483647,"result0":{}})")) << true << 2147483647 << 1;
    QTest::newRow("negative count") << wrapped(QStringLiteral(R"({"items":-1,"result0":{}})")) << true << -1
                                    << 0;
    QTest::newRow("row that is no object")
        << wrapped(QStringLiteral(R"({"items":2,"result0":"x","result1":{}})")) << true << 2 << 0;
    QTest::newRow("wrong length") << QStringLiteral("00001") + good.mid(5) << false << 0 << 0;
    QTest::newRow("cut") << good.left(good.size() - 1) << false << 0 << 0;
    QTest::newRow("empty") << QString() << false << 0 << 0;
    QTest::newRow("digits only") << "00000" << false << 0 << 0;
    QTest::newRow("four digits") << "0000" << false << 0 << 0;
    const QString none = wrapped(QStringLiteral(R"({"items":0})"));
    QTest::newRow("a short reply") << none << true << 0 << 0;
    QTest::newRow("a blank among the digits") << QStringLiteral("   ") + none.mid(3) << false << 0 << 0;
    QTest::newRow("a sign among the digits") << QStringLiteral("+") + none.mid(1) << false << 0 << 0;
    QTest::newRow("no digits") << "<html><body>502</body></html>" << false << 0 << 0;
    QTest::newRow("no cipher") << "00004zzzz" << false << 0 << 0;
    QTest::newRow("no JSON") << wrapped(QStringLiteral("items=1")) << false << 0 << 0;
    QTest::newRow("array") << wrapped(QStringLiteral("[1,2]")) << false << 0 << 0;
    QTest::newRow("deep") << wrapped(QString(2000, QLatin1Char('['))) << false << 0 << 0;
}

void TestWebApiTexts::replies()
{
    QFETCH(QString, reply);
    QFETCH(bool, accepted);
    QFETCH(int, items);
    QFETCH(int, rows);
    const auto unwrapped = mevo::unwrapReply(WebCipher(), reply);
    QCOMPARE(unwrapped.has_value(), accepted);
    if (accepted) {
        QCOMPARE(unwrapped->items, items);
        QCOMPARE(static_cast<int>(unwrapped->rows.size()), rows);
    }
}

void TestWebApiTexts::statements()
{
    // Every statement as it goes out, with the schema "db" and further values "a", "b" and on; the table is
    // `device_serialid` but for the last ones.
    const char *const texts[] = {
        "select * from db.device_serialid where DongleID='a'",
        "select * from db.productrecord where CustomIndex=a and ProductionIndex=b",
        "insert into db.device_serialid (DongleID,LastLoginDateTime,CurrentVersion,CurrentSubVer,"
        "DefaultRecEngine) VALUES ('a','b',c,'d','e')",
        "update db.device_serialid set a where DongleID='b'",
        "update db.device_serialid set CurrentVersion=a where DongleID='b'",
        "update db.device_serialid set DefaultRecEngine=10, UseBDAPIPara ='0',ShowTXI='1', UseXFSDKPara = "
        "'0', "
        "UseTXAPIPara='1', UseXFWAPIPara='0' , EnableASR3='0', UseASR3Index='-1',UseBDFstPara = 'a' "
        "where DongleID='b'",
        "update db.device_serialid set DefaultRecEngine=10, UseBDAPIPara ='1', UseXFSDKPara = '0', "
        "UseXFWAPIPara='0' , EnableASR3='0', UseASR3Index='-1',UseBDFstPara = 'a' where DongleID='b'",
        "update db.device_serialid set DefaultRecEngine=10, UseTXAPIPara= '0', UseBDAPIPara ='1', "
        "UseXFSDKPara = '0', UseXFWAPIPara='0'  where DongleID='a'",
        "update db.device_serialid set DefaultRecEngine=10, UseTXAPIPara= '1', UseBDAPIPara ='0', "
        "UseXFSDKPara = '0', UseXFWAPIPara='0'  where DongleID='a'",
        "update db.device_serialid set DefaultRecEngine=10, UseTXAPIPara= '0', UseBDAPIPara ='0', "
        "UseXFSDKPara = '1', UseXFWAPIPara='0'  where DongleID='a'",
        "update db.device_serialid set EnableASR3=a,MustClickRunASR3=b where DongleID='c'",
        "update db.device_serialid set EnableASR3=a,MustClickRunASR3=b,UseASR3Index=c where DongleID='d'",
        "update db.device_serialid set EnableASR3=a,MustClickRunASR3=b,UseASR3Index=c,CurrentVersion=d,"
        "CurrentSubVer='e' where DongleID='f'",
        "select * from db.a where ASR3Index=b",
        "update db.device_serialid set MustClickRunASR3=a where DongleID='b'",
        "update db.device_serialid set EnableThirdpatyVoiceInput=a where DongleID='b'",
        "update db.device_serialid set BDSR1DUsedQuantity=a,LatestLoginTime='b',CurrentVersion=c,"
        "CurrentSubVer='d' where DongleID='e'",
        "update db.device_serialid set TXSR1DUsedQuantity=a,LatestLoginTime='b',CurrentVersion=c,"
        "CurrentSubVer='d' where DongleID='e'",
        "update db.device_serialid set XFSR1DUsedQuantity=a,LatestLoginTime='b',CurrentVersion=c,"
        "CurrentSubVer='d' where DongleID='e'",
        "update db.device_serialid set BDSR1DUsedQuantity=a where DongleID='b'",
        "update db.device_serialid set TXSR1DUsedQuantity=a where DongleID='b'",
        "update db.device_serialid set XFSR1DUsedQuantity=a where DongleID='b'",
        "update db.device_serialid set LatestLoginTime='a'  where DongleID='b'",
        "update db.device_serialid set BDSR1DUsedQuantity=a, TXSR1DUsedQuantity=b,XFSR1DUsedQuantity=c,"
        "BDFY1MUsedQuantity=d,LastLoginDateTime='e'  where DongleID='f'",
        "select F0,F1,F2 from db.wxfasrid where F3 = 1",
        "select F0,F1,F2 from db.wxfasrid where F3 = 1 and F4 = 1",
        "select F0,F1,F2 from db.bdasrid where F3 = 1 and sbj = 1",
        "select F0,F1,F2 from db.bdasrid where F3 = 1 and zbb = 1",
        "select F0,F1,F2 from db.bdasrid where F3 = 1 and yby = 1",
        "select F0,F1,F2 from db.bdasrid where F3 = 1 and nbe = 1",
        "select F0,F1,F2 from db.bdasrid where F3 = 1 and chbs = 1",
        "select F0,F1,F2 from db.bdasrttsid where F3 = 1",
        "select F0,F1 from db.bdasrfyid where F2 = 1",
    };
    QCOMPARE(std::size(texts), std::size_t(Statement::BaiduTranslateAccounts) + 1);
    const QStringList letters = QStringLiteral("a b c d e f").split(u' ');
    for (std::size_t i = 0; i < std::size(texts); ++i) {
        const auto id = static_cast<Statement>(i);
        const QString text = QLatin1String(texts[i]);
        const int values = mevo::statementRow(id).values;
        const QString schema = QStringLiteral("db");
        QCOMPARE(text.contains(QLatin1String("device_serialid"))
                     ? mevo::deviceStatement(id, schema, letters.mid(0, values - 2))
                     : mevo::statementText(id, QStringList{schema} + letters.mid(0, values - 1)),
                 text);
    }
    QCOMPARE(mevo::statementText(Statement::WriteDeviceColumns, {QStringLiteral("%4"), QStringLiteral("%1"),
                                                                 QStringLiteral("%%3"), QString()}),
             QStringLiteral("update %4.%1 set %%3 where DongleID=''")); // values are not filled in turn
    QVERIFY(mevo::statementText(Statement::XunFeiAccounts, {}).isEmpty());
}

void TestWebApiTexts::proxy()
{
    ServiceState state;
    QVERIFY(!mevo::chosenProxy(state).has_value());
    state.UseNetworkProxy = true;
    state.NetworkProxy_IP = QStringLiteral("10.0.0.1");
    QCOMPARE(mevo::chosenProxy(state)->port(), quint16(0));
    state.NetworkProxy_Port = 3128;
    state.NetworkProxy_UserName = QStringLiteral("user");
    state.NetworkProxy_Password = QStringLiteral("secret");
    const QNetworkProxy proxy = mevo::chosenProxy(state).value();
    QCOMPARE(int(proxy.type()), 3);
    QCOMPARE(proxy.hostName(), QStringLiteral("10.0.0.1"));
    QCOMPARE(proxy.port(), quint16(3128));
    QCOMPARE(proxy.user(), QStringLiteral("user"));
    QCOMPARE(proxy.password(), QStringLiteral("secret"));
    state.NetworkProxy_Port = 70000;
    QCOMPARE(mevo::chosenProxy(state)->port(), quint16(0));

    mevo::dropEmptyProxy(state);
    QVERIFY(state.UseNetworkProxy);
    ServiceState empty;
    empty.UseNetworkProxy = true;
    mevo::dropEmptyProxy(empty);
    QVERIFY(!empty.UseNetworkProxy);
}

void TestWebApiTexts::serverAddresses()
{
    const WebCipher web;
    {
        mevo::SettingsFile settings;
        settings.setValue(QStringLiteral("TKS"),
                          mevo::encipherField(web, QStringLiteral("http://own:19004/mevowebapi?")));
        settings.setValue(QStringLiteral("ORVDB"), QString());
        settings.setValue(QStringLiteral("VAD"), QStringLiteral("012rubbish"));
    }
    ServiceState state;
    state.SchemaName = QStringLiteral("mydb");
    state.VersionCheckUrl = QStringLiteral("http://127.0.0.1:19004/NewVersion");
    state.PushSocketUrl = QStringLiteral("ws://127.0.0.1:19006");
    mevo::loadServerAddresses(state, mevo::SettingsFile(), web);
    QCOMPARE(state.ServerUrl, QStringLiteral("http://own:19004/mevowebapi?"));
    QCOMPARE(state.SchemaName, QStringLiteral("mydb"));
    QCOMPARE(state.VersionCheckUrl, QStringLiteral("http://127.0.0.1:19004/NewVersion"));
    QCOMPARE(state.PushSocketUrl, QStringLiteral("ws://127.0.0.1:19006"));
}

void TestWebApiTexts::onlinePolls()
{
    using Connection = mevo::NetworkState::Connection;
    const struct
    {
        Connection connection;
        int reported;
        int nextInMs;
    } polls[] = {
        {Connection::None, -1, 500},  {Connection::Modem, 1, 5000}, {Connection::Lan, 2, 5000},
        {Connection::Proxy, 4, 5000}, {Connection::None, 1, 500},   {Connection::None, -1, 500},
    };
    int last = -1;
    for (const auto &poll : polls) {
        const mevo::OnlinePoll result = mevo::pollOnline(poll.connection, last);
        QCOMPARE(result.reported, poll.reported);
        QCOMPARE(result.nextInMs, poll.nextInMs);
        QCOMPARE(result.connected, poll.connection != Connection::None);
        last = result.last;
    }
}

QTEST_GUILESS_MAIN(TestWebApiTexts)
#include "tst_webapi_texts.moc"
