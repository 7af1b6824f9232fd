#include "base/SettingsFile.h"
#include "service/OnlinePoll.h"
#include "service/ProxyChoice.h"
#include "service/ServerAddresses.h"
#include "service/Statements.h"
#include "service/WebApiReply.h"
#include "service/WebApiRequest.h"
#include "state/SettingsTable.h"
#include "support/Rows.h"
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
    return "%1"_s.arg(cipher.size(), 5, 10, QLatin1Char('0')) + cipher;
}

} // namespace

class TestWebApiTexts : public QObject
{
    Q_OBJECT

private slots:
    void cipher_data()
    {
        const Rows<QString> row; // text
        row("empty", "");
        row("one", "a");
        row("fifteen", QString(15, QLatin1Char('a')));
        row("a whole block", QString(16, QLatin1Char('a')));
        row("statement", "select * from orvdb.device_serialid where DongleID='01-02-030405'");
        row("Chinese", "灵犀听写系统，语音识别"_s);
        row("emoji", "好😀"_s);
        row("a zero and marks that are not seen", QChar(0xfeff) + "a"_s + QChar(0) + QChar(0xfeff) + "b"_s);
    }
    void cipher()
    {
        const auto [text] = rowOf<QString>();
        const WebCipher web;
        const QString enciphered = web.EncryptString(text);
        QCOMPARE(enciphered.toLatin1(), openSslHex(text.toUtf8(), "MEVOInput-Lab-Ke"));
        QCOMPARE(enciphered.size(), (text.toUtf8().size() / 16 + 1) * 32);
        QCOMPARE(web.DecryptString(enciphered), text);
        QCOMPARE(web.DecryptString(enciphered.toUpper()), text);
    }

    void keyTexts()
    {
        const QString text = "same text"_s;
        QCOMPARE(WebCipher("0123456789abcdef").EncryptString(text).toLatin1(),
                 openSslHex(text.toUtf8(), "0123456789abcdef"));
        QCOMPARE(WebCipher("abc").EncryptString(text).toLatin1(),
                 openSslHex(text.toUtf8(), "abcabcabcabcabca"));
        QVERIFY_EXCEPTION_THROWN(WebCipher{QByteArray()}, std::string);

        QTest::ignoreMessage(QtInfoMsg, QRegularExpression("^Encrpt: [0-9a-f]{64}$"_s));
        QTest::ignoreMessage(QtInfoMsg, "Decrypt: MEVOInput cipher test");
        mevo::logCipherTest(WebCipher());
    }

    void stripsTrailingControls_data()
    {
        const Rows<QString, QString> row; // text, stripped
        row("tab", "ends in a tab\t", "ends in a tab");
        row("lines", "a\nb\r\n\r\n", "a\nb");
        row("byte 16 goes", "x\x10"_s, "x");
        row("byte 17 stays", "x\x11"_s, "x\x11"_s);
        row("nothing but controls", "\t\t", "");
    }
    void stripsTrailingControls()
    {
        const auto [text, stripped] = rowOf<QString, QString>();
        const WebCipher web;
        const QString result = web.DecryptString(web.EncryptString(text));
        QCOMPARE(result, stripped);
        QVERIFY(!result.isNull());
    }

    void refusesWhatIsNoCipherText_data()
    {
        const Rows<QString> row; // hex
        row("empty", "");
        row("half a block", QString(16, QLatin1Char('a')));
        row("odd length", QString(33, QLatin1Char('a')));
        row("no hex", QString(32, QLatin1Char('g')));
        row("not Latin", QString(32, QChar(0x4f60)));
    }
    void refusesWhatIsNoCipherText()
    {
        const auto [hex] = rowOf<QString>();
        QVERIFY(WebCipher().DecryptString(hex).isNull());
        QVERIFY(!mevo::decipherField(WebCipher(), "005"_s + hex).has_value());
    }

    void fields()
    {
        const WebCipher web;
        const QString token("24.abc"_s);
        const QString field = mevo::encipherField(web, token);
        QCOMPARE(field.left(3), "006"_s);
        QCOMPARE(mevo::decipherField(web, field).value(), token);
        QCOMPARE(mevo::decipherUnsizedField(web, "999"_s + field.mid(3)), token);
        // The length that the field tells cuts the text, and a longer one does no harm.
        QCOMPARE(mevo::decipherField(web, "004"_s + field.mid(3)).value(), token.left(4));
        QCOMPARE(mevo::decipherField(web, "999"_s + field.mid(3)).value(), token);
        QVERIFY(!mevo::decipherField(web, "x06"_s + field.mid(3)).has_value());
        for (const char *digits : {" 06", "+06", "06 ", "-06", "\t06", "0x6"}) {
            QVERIFY(!mevo::decipherField(web, QLatin1String(digits) + field.mid(3)).has_value());
        }
        QVERIFY(!mevo::decipherField(web, QString()).has_value());
    }

    void requestAddress_data()
    {
        const Rows<QString, QString> row; // statement, prefix
        row("short", "newGetNewVer", "012");
        row("characters, not bytes", "语音"_s, "002");
        row("a thousand", QString(1000, QLatin1Char('s')), "1000");
    }
    void requestAddress()
    {
        const auto [statement, prefix] = rowOf<QString, QString>();
        const QUrl url =
            mevo::webApiUrl(WebCipher(), "http://host:19004/mevowebapi?"_s, mevo::SqlTag, statement);
        const QString request = "newsql___"_s + prefix + WebCipher().EncryptString(statement);
        QCOMPARE(url.toString(), "http://host:19004/mevowebapi?"_s + request);
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

    void replies_data()
    {
        const Rows<QString, bool, int, int> row; // reply, accepted, items, rows
        const QString good =
            wrapped(QStringLiteral(R"({"items":"2","result0":{"F0":"a"},"result1":{"F0":"b"}})"));
        row("two rows", good, true, 2, 2);
        row("count as a number", wrapped(QStringLiteral(R"({"items":1,"result0":{}})")), true, 1, 1);
        row("no rows", wrapped(QStringLiteral(R"({"items":0})")), true, 0, 0);
        row("more announced than there are", wrapped(QStringLiteral(R"({"items":2147483647,"result0":{}})")),
            true, 2147483647, 1);
        row("negative count", wrapped(QStringLiteral(R"({"items":-1,"result0":{}})")), true, -1, 0);
        row("row that is no object", wrapped(QStringLiteral(R"({"items":2,"result0":"x","result1":{}})")),
            true, 2, 0);
        row("wrong length", "00001"_s + good.mid(5), false, 0, 0);
        row("cut", good.left(good.size() - 1), false, 0, 0);
        row("empty", QString(), false, 0, 0);
        row("digits only", "00000", false, 0, 0);
        row("four digits", "0000", false, 0, 0);
        const QString none = wrapped(QStringLiteral(R"({"items":0})"));
        row("a short reply", none, true, 0, 0);
        row("a blank among the digits", "   "_s + none.mid(3), false, 0, 0);
        row("a sign among the digits", "+"_s + none.mid(1), false, 0, 0);
        row("no digits", "<html><body>502</body></html>", false, 0, 0);
        row("no cipher", "00004zzzz", false, 0, 0);
        row("no JSON", wrapped("items=1"_s), false, 0, 0);
        row("array", wrapped("[1,2]"_s), false, 0, 0);
        row("deep", wrapped(QString(2000, QLatin1Char('['))), false, 0, 0);
    }
    void replies()
    {
        const auto [reply, accepted, items, rows] = rowOf<QString, bool, int, int>();
        const auto unwrapped = mevo::unwrapReply(WebCipher(), reply);
        QCOMPARE(unwrapped.has_value(), accepted);
        if (accepted) {
            QCOMPARE(unwrapped->items, items);
            QCOMPARE(static_cast<int>(unwrapped->rows.size()), rows);
        }
    }

    void statements()
    {
        // Every statement as it goes out, with the schema "db" and further values "a", "b" and on; the table
        // is `device_serialid` but for the last ones.
        const char *const texts[] = {
            "select * from db.device_serialid where DongleID='a'",
            "select * from db.productrecord where CustomIndex=a and ProductionIndex=b",
            "insert into db.device_serialid (DongleID,LastLoginDateTime,CurrentVersion,CurrentSubVer,"
            "DefaultRecEngine) VALUES ('a','b',c,'d','e')",
            "update db.device_serialid set a where DongleID='b'",
            "update db.device_serialid set CurrentVersion=a where DongleID='b'",
            "update db.device_serialid set DefaultRecEngine=10, UseBDAPIPara ='0',ShowTXI='1', UseXFSDKPara "
            "= "
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
        const QStringList letters = "a b c d e f"_s.split(u' ');
        for (std::size_t i = 0; i < std::size(texts); ++i) {
            const auto id = static_cast<Statement>(i);
            const QString text = QLatin1String(texts[i]);
            const int values = mevo::statementRow(id).values;
            const QString schema = "db"_s;
            QCOMPARE(text.contains(QLatin1String("device_serialid"))
                         ? mevo::deviceStatement(id, schema, letters.mid(0, values - 2))
                         : mevo::statementText(id, QStringList{schema} + letters.mid(0, values - 1)),
                     text);
        }
        QCOMPARE(mevo::statementText(Statement::WriteDeviceColumns, {"%4"_s, "%1"_s, "%%3"_s, QString()}),
                 "update %4.%1 set %%3 where DongleID=''"_s); // values are not filled in turn
        QVERIFY(mevo::statementText(Statement::XunFeiAccounts, {}).isEmpty());
    }

    void proxy()
    {
        ServiceState state;
        QVERIFY(!mevo::chosenProxy(state).has_value());
        state.UseNetworkProxy = true;
        state.NetworkProxy_IP = "10.0.0.1"_s;
        QCOMPARE(mevo::chosenProxy(state)->port(), quint16(0));
        state.NetworkProxy_Port = 3128;
        state.NetworkProxy_UserName = "user"_s;
        state.NetworkProxy_Password = "secret"_s;
        const QNetworkProxy proxy = mevo::chosenProxy(state).value();
        QCOMPARE(int(proxy.type()), 3);
        QCOMPARE(proxy.hostName(), "10.0.0.1"_s);
        QCOMPARE(proxy.port(), quint16(3128));
        QCOMPARE(proxy.user(), "user"_s);
        QCOMPARE(proxy.password(), "secret"_s);
        state.NetworkProxy_Port = 70000;
        QCOMPARE(mevo::chosenProxy(state)->port(), quint16(0));

        mevo::dropEmptyProxy(state);
        QVERIFY(state.UseNetworkProxy);
        ServiceState empty;
        empty.UseNetworkProxy = true;
        mevo::dropEmptyProxy(empty);
        QVERIFY(!empty.UseNetworkProxy);
    }

    void serverAddresses()
    {
        const WebCipher web;
        {
            mevo::SettingsFile settings;
            settings.setValue("TKS"_s, mevo::encipherField(web, "http://own:19004/mevowebapi?"_s));
            settings.setValue("ORVDB"_s, QString());
            settings.setValue("VAD"_s, "012rubbish"_s);
        }
        ServiceState state;
        state.SchemaName = "mydb"_s;
        state.VersionCheckUrl = "http://127.0.0.1:19004/NewVersion"_s;
        state.PushSocketUrl = "ws://127.0.0.1:19006"_s;
        mevo::loadServerAddresses(state, mevo::SettingsFile(), web);
        QCOMPARE(state.ServerUrl, "http://own:19004/mevowebapi?"_s);
        QCOMPARE(state.SchemaName, "mydb"_s);
        QCOMPARE(state.VersionCheckUrl, "http://127.0.0.1:19004/NewVersion"_s);
        QCOMPARE(state.PushSocketUrl, "ws://127.0.0.1:19006"_s);
    }

    void onlinePolls()
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
};

QTEST_GUILESS_MAIN(TestWebApiTexts)
#include "tst_webapi_texts.moc"
