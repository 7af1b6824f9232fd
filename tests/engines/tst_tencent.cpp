#include "engines/Tc3Signature.h"
#include "engines/TencentCredentials.h"
#include "engines/TencentReply.h"
#include "engines/TencentRequest.h"
#include "engines/WavImage.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using Kind = mevo::TencentReply::Kind;
Q_DECLARE_METATYPE(Kind)

class TestTencent : public QObject
{
    Q_OBJECT

private slots:
    /// The worked example of Tencent Cloud's documentation of the scheme.
    void signature()
    {
        mevo::Tc3Request request;
        request.service = "cvm";
        request.canonicalHeaders =
            "content-type:application/json; charset=utf-8\nhost:cvm.tencentcloudapi.com\n";
        request.signedHeaders = "content-type;host";
        request.timestamp = 1551113065;
        request.payload =
            R"({"Limit": 1, "Filters": [{"Values": ["\u672a\u547d\u540d"], "Name": "instance-name"}]})";
        QCOMPARE(mevo::sha256Hex(request.payload),
                 QByteArray("35e9c5b0e3ae67532d3c9f17ead6c90222632e5b1ff7f6e89887f1398934f064"));
        QCOMPARE(mevo::sha256Hex(mevo::tc3CanonicalRequest(request)),
                 QByteArray("5ffe6a04c0664d6b969fab9a13bdab201d63ee709638e2749d62a09ca18d7031"));
        QCOMPARE(mevo::tc3Authorization(
                     request, {"AKIDz8krbsJ5yKBZQpn74WFkmLPx3EXAMPLE", "Gu5t9xGARNpq86cd98joQYCN3EXAMPLE"}),
                 QByteArray("TC3-HMAC-SHA256 "
                            "Credential=AKIDz8krbsJ5yKBZQpn74WFkmLPx3EXAMPLE/2019-02-25/cvm/tc3_request, "
                            "SignedHeaders=content-type;host, "
                            "Signature=72e494ea809ad7a8c8f7a4507b9bddcbaa8e581f516e8da2f66e2c5a96525168"));
    }

    void dates()
    {
        QCOMPARE(mevo::tc3Date(0), QByteArray("1970-01-01"));
        QCOMPARE(mevo::tc3Date(1709251199), QByteArray("2024-02-29")); // a second before midnight in UTC
        QCOMPARE(mevo::tc3Date(1709251200), QByteArray("2024-03-01"));
    }

    void wav_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QByteArray>("riffSize");
        QTest::addColumn<QByteArray>("dataSize");
        QTest::newRow("nothing") << 0 << QByteArray("20000000") << QByteArray("00000000");
        QTest::newRow("half a sample") << 1 << QByteArray("21000000") << QByteArray("01000000");
        QTest::newRow("a sample") << 2 << QByteArray("22000000") << QByteArray("02000000");
        QTest::newRow("the longest with a right length")
            << 65534 << QByteArray("1e000100") << QByteArray("feff0000");
        QTest::newRow("16 bits are over") << 65536 << QByteArray("20000100") << QByteArray("00000000");
        QTest::newRow("longer") << 70000 << QByteArray("90110100") << QByteArray("70110000");
    }

    void wav()
    {
        QFETCH(int, length);
        QFETCH(QByteArray, riffSize);
        QFETCH(QByteArray, dataSize);
        QByteArray pcm(length, '\x7f');
        if (length > 0) {
            pcm[0] = '\0';
        }
        const QByteArray header = QByteArray::fromHex("52494646" + riffSize +
                                                      "57415645666d7420100000000100010"
                                                      "0803e0000007d00000200100064617461" +
                                                      dataSize);
        QCOMPARE(header.size(), 44);
        QCOMPARE(mevo::wavImage(pcm), header + pcm);
    }

    void payload_data()
    {
        QTest::addColumn<bool>("plainNumbers");
        QTest::addColumn<bool>("keepPunctuation");
        QTest::newRow("as shipped") << false << false;
        QTest::newRow("numbers stay words") << true << false;
        QTest::newRow("with punctuation") << false << true;
    }

    void payload()
    {
        QFETCH(bool, plainNumbers);
        QFETCH(bool, keepPunctuation);
        const QByteArray pcm("\x01\x02\xff", 3);
        const QByteArray data = mevo::wavImage(pcm).toBase64();
        // The service signs bytes, so that the form counts: indented by four, keys in order.
        const QByteArray expected =
            "{\n" + QByteArray(plainNumbers ? "    \"ConvertNumMode\": 0,\n" : "") + "    \"Data\": \"" +
            data +
            "\",\n    \"EngSerViceType\": \"16k_zh\",\n    \"FilterPunc\": " + (keepPunctuation ? "0" : "1") +
            ",\n    \"ProjectId\": 0,\n    \"SourceType\": 1,\n    \"SubServiceType\": 2,\n"
            "    \"UsrAudioKey\": \"test\",\n    \"VoiceFormat\": \"wav\"\n}\n";
        QCOMPARE(mevo::tencentPayload({QStringLiteral("16k_zh"), plainNumbers, keepPunctuation, pcm}),
                 expected);
    }

    void request_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("host");
        QTest::newRow("host") << "asr.example.com" << QByteArray("https://asr.example.com")
                              << QByteArray("asr.example.com");
        QTest::newRow("port") << "127.0.0.1:7" << QByteArray("https://127.0.0.1:7")
                              << QByteArray("127.0.0.1:7");
        QTest::newRow("scheme") << "http://asr.example.com" << QByteArray("http://asr.example.com")
                                << QByteArray("asr.example.com");
    }

    void request()
    {
        QFETCH(QString, address);
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, host);
        mevo::EngineEndpoints endpoints;
        endpoints.TencentHost = address;
        const mevo::TencentRequest request =
            mevo::tencentRequest(endpoints, {"AKID", "secret"}, "{}", 1700000000);
        QCOMPARE(request.url, url);
        QCOMPARE(request.payload, QByteArray("{}"));
        QVERIFY(request.authorization.startsWith(
            "TC3-HMAC-SHA256 Credential=AKID/2023-11-14/asr/tc3_request, SignedHeaders=content-type;host, "));
        QCOMPARE(request.headers,
                 (QList<QByteArray>{"Authorization: " + request.authorization,
                                    "Content-Type: application/json; charset=utf-8", "Host: " + host,
                                    "X-TC-Action: SentenceRecognition", "X-TC-Timestamp: 1700000000",
                                    "X-TC-Version: 2019-06-14", "X-TC-Region: "}));
    }

    void credentials_data()
    {
        QTest::addColumn<QString>("recordIds");
        QTest::addColumn<QString>("recordKeys");
        QTest::addColumn<QString>("drawn");
        QTest::addColumn<int>("firstBound");
        QTest::newRow("the deployment's") << ""
                                          << ""
                                          << "id/key" << 0;
        QTest::newRow("the record's") << "r1"
                                      << "k1"
                                      << "r1/k1" << 0;
        QTest::newRow("half of each") << "r1"
                                      << ""
                                      << "r1/key" << 0;
        QTest::newRow("a list's last is never drawn") << "r1;r2;r3"
                                                      << "k1;k2"
                                                      << "r2/k1" << 2;
    }

    void credentials()
    {
        QFETCH(QString, recordIds);
        QFETCH(QString, recordKeys);
        QFETCH(QString, drawn);
        QFETCH(int, firstBound);
        EngineState state;
        state.TXSCD = recordIds;
        state.TXSCK = recordKeys;
        mevo::EngineEndpoints endpoints;
        endpoints.TencentSecretIds = QStringLiteral("id");
        endpoints.TencentSecretKeys = QStringLiteral("key");
        QList<int> bounds;
        const auto highest = [&bounds](int low, int high) {
            bounds.append(high);
            return qMax(low, high - 1);
        };
        const mevo::Tc3Credential credential = mevo::drawTencentCredential(state, endpoints, highest);
        QCOMPARE(QString::fromUtf8(credential.secretId + '/' + credential.secretKey), drawn);
        QCOMPARE(bounds.size(), 2); // each list on its own
        QCOMPARE(bounds.first(), firstBound);
    }

    void nobodyGaveCredentials()
    {
        const mevo::Tc3Credential credential = mevo::drawTencentCredential({}, {}, RandomInRange);
        QVERIFY(credential.secretId.isEmpty() && credential.secretKey.isEmpty());
    }

    void replies_data()
    {
        QTest::addColumn<QByteArray>("chunk");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("text"); ///< or code and message
        QTest::newRow("text") << QByteArray(R"({"Response":{"RequestId":"1","Result":"今天。"}})")
                              << Kind::Text << "今天。";
        QTest::newRow("silence") << QByteArray(R"({"Response":{"Result":""}})") << Kind::Text << "";
        QTest::newRow("no result") << QByteArray(R"({"Response":{"RequestId":"1"}})") << Kind::Text << "";
        QTest::newRow("result is no text") << QByteArray(R"({"Response":{"Result":7}})") << Kind::Text << "";
        QTest::newRow("error") << QByteArray(
                                      R"({"Response":{"Error":{"Code":"A.B","Message":"m"},"Result":"x"}})")
                               << Kind::Error << "A.B|m";
        QTest::newRow("error without end")
            << QByteArray(R"({"Response":{"Error":{"Code":")" + QByteArray(9999, 'c') + R"(","Message":")" +
                          QByteArray(9999, 'm') + R"("}}})")
            << Kind::Error << QString(100, u'c') + u'|' + QString(500, u'm');
        QTest::newRow("error without a message")
            << QByteArray(R"({"Response":{"Error":{"Code":"A.B"}}})") << Kind::Error << "A.B|";
        QTest::newRow("error without a code")
            << QByteArray(R"({"Response":{"Error":{"Code":"","Message":"m"},"Result":"x"}})") << Kind::Text
            << "x";
        QTest::newRow("error is no object")
            << QByteArray(R"({"Response":{"Error":[1],"Result":"x"}})") << Kind::Text << "x";
        QTest::newRow("NUL after it")
            << QByteArray("{\"Response\":{\"Result\":\"x\"}}\0rubbish", 34) << Kind::Text << "x";
        QTest::newRow("NUL in it") << QByteArray("{\"Response\":{\"Result\":\"x\0\"}}", 27)
                                   << Kind::Unreadable << "";
        QTest::newRow("NUL first") << QByteArray("\0{}", 3) << Kind::Unreadable << "";
        QTest::newRow("array") << QByteArray(R"([{"Response":{"Result":"x"}}])") << Kind::Unreadable << "";
        QTest::newRow("another object") << QByteArray("{}") << Kind::Unreadable << "";
        QTest::newRow("response is no object") << QByteArray(R"({"Response":"x"})") << Kind::Unreadable << "";
        QTest::newRow("half") << QByteArray("{\"Response\":{\"Result\":\"x") << Kind::Unreadable << "";
        QTest::newRow("page") << QByteArray("<html>") << Kind::Unreadable << "";
        QTest::newRow("nothing") << QByteArray() << Kind::Unreadable << "";
        QTest::newRow("deep") << QByteArray(5000, '[') << Kind::Unreadable << "";
    }

    void replies()
    {
        QFETCH(QByteArray, chunk);
        QFETCH(Kind, kind);
        QFETCH(QString, text);
        const mevo::TencentReply reply = mevo::parseTencentReply(chunk);
        QCOMPARE(reply.kind, kind);
        QCOMPARE(kind == Kind::Error ? reply.code + QLatin1Char('|') + reply.message : reply.text, text);
    }

    void errorMessage()
    {
        mevo::TencentReply reply;
        reply.code = QStringLiteral("AuthFailure.SignatureExpire");
        reply.message = QStringLiteral("late");
        const QString message = mevo::tencentErrorMessage(reply);
        QCOMPARE(message,
                 QStringLiteral("腾讯语音识别错误返回信息：(如无法解决，请与供货商联系，鼠标放在此窗口"
                                "上，该窗口不会消失):\nAuthFailure.SignatureExpire\nlate"));
        QVERIFY(mevo::saysClockIsWrong(message));
        reply.code = QStringLiteral("AuthFailure.SignatureFailure");
        QVERIFY(!mevo::saysClockIsWrong(mevo::tencentErrorMessage(reply)));
    }
};

QTEST_GUILESS_MAIN(TestTencent)
#include "tst_tencent.moc"
