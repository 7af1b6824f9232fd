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
    void statements_data();
    void statements();
    void statementsFillInAnyValue();
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
    QVERIFY(!mevo::decipherField(web, QStringLiteral("-06") + field.mid(3)).has_value());
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
    QCOMPARE(url.toString(), QStringLiteral("http://host:19004/mevowebapi?newsql___") + prefix +
                                 WebCipher().EncryptString(statement));
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

void TestWebApiTexts::statements_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, Statement id, const QStringList &values, const char *text) {
        QTest::newRow(name) << static_cast<int>(id) << values << QString::fromLatin1(text);
    };
    row("read", Statement::ReadDeviceRecord, {QStringLiteral("ID")},
        "select * from db.device_serialid where DongleID='ID'");
    row("columns", Statement::WriteDeviceColumns,
        {QStringLiteral("IPRecord='1.2.3.4'"), QStringLiteral("ID")},
        "update db.device_serialid set IPRecord='1.2.3.4' where DongleID='ID'");
    row("first run", Statement::FirstRunTencent, {QStringLiteral("0"), QStringLiteral("ID")},
        "update db.device_serialid set DefaultRecEngine=10, UseBDAPIPara ='0',ShowTXI='1', UseXFSDKPara = "
        "'0',"
        " UseTXAPIPara='1', UseXFWAPIPara='0' , EnableASR3='0', UseASR3Index='-1',UseBDFstPara = '0' "
        "where DongleID='ID'");
    row("XunFei", Statement::UseXunFei, {QStringLiteral("ID")},
        "update db.device_serialid set DefaultRecEngine=10, UseTXAPIPara= '0', UseBDAPIPara ='0', "
        "UseXFSDKPara = '1', UseXFWAPIPara='0'  where DongleID='ID'");
    row("count", Statement::CountXunFei,
        {QStringLiteral("7"), QStringLiteral("2026-11-24 09:00:00"), QStringLiteral("107"),
         QStringLiteral("1.0.7"), QStringLiteral("ID")},
        "update db.device_serialid set XFSR1DUsedQuantity=7,LatestLoginTime='2026-11-24 09:00:00',"
        "CurrentVersion=107,CurrentSubVer='1.0.7' where DongleID='ID'");
    row("exit", Statement::CountBaiduAtExit, {QStringLiteral("7"), QStringLiteral("ID")},
        "update db.device_serialid set BDSR1DUsedQuantity=7 where DongleID='ID'");
}

void TestWebApiTexts::statements()
{
    QFETCH(int, id);
    QFETCH(QStringList, values);
    QFETCH(QString, text);
    QCOMPARE(mevo::deviceStatement(static_cast<Statement>(id), QStringLiteral("db"), values), text);
}

void TestWebApiTexts::statementsFillInAnyValue()
{
    // Every text takes as many values as its row says, no more and no less, and keeps them as they are.
    for (int i = 0; i <= static_cast<int>(Statement::BaiduTranslateAccounts); ++i) {
        const mevo::StatementRow &row = mevo::statementRow(static_cast<Statement>(i));
        QStringList values;
        for (int v = 1; v <= row.values; ++v) {
            values.append(QStringLiteral("<%%1>").arg(v % row.values + 1));
        }
        const QString text = mevo::statementText(row.id, values);
        for (const QString &value : values) {
            QCOMPARE(text.count(value), 1);
        }
        QCOMPARE(text.count(QLatin1Char('%')), row.values);
        QVERIFY(mevo::statementText(row.id, values.mid(1)).isEmpty());
    }
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
