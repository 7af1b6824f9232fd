#include "engines/Tc3Signature.h"
#include "engines/TencentCredentials.h"
#include "engines/TencentReply.h"
#include "engines/TencentRequest.h"
#include "engines/WavImage.h"
#include "support/Rows.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using Kind = mevo::TencentReply::Kind;

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
        const Rows<int, QByteArray, QByteArray> row; // length, riffSize, dataSize
        row("nothing", 0, "20000000", "00000000");
        row("half a sample", 1, "21000000", "01000000");
        row("a sample", 2, "22000000", "02000000");
        row("the longest with a right length", 65534, "1e000100", "feff0000");
        row("16 bits are over", 65536, "20000100", "00000000");
        row("longer", 70000, "90110100", "70110000");
    }

    void wav()
    {
        const auto [length, riffSize, dataSize] = rowOf<int, QByteArray, QByteArray>();
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
        const Rows<bool, bool> row; // plainNumbers, keepPunctuation
        row("as shipped", false, false);
        row("numbers stay words", true, false);
        row("with punctuation", false, true);
    }

    void payload()
    {
        const auto [plainNumbers, keepPunctuation] = rowOf<bool, bool>();
        const QByteArray pcm("\x01\x02\xff", 3);
        const QByteArray data = mevo::wavImage(pcm).toBase64();
        // The service signs bytes, so that the form counts: indented by four, keys in order.
        const QByteArray expected =
            "{\n" + QByteArray(plainNumbers ? "    \"ConvertNumMode\": 0,\n" : "") + "    \"Data\": \"" +
            data +
            "\",\n    \"EngSerViceType\": \"16k_zh\",\n    \"FilterPunc\": " + (keepPunctuation ? "0" : "1") +
            ",\n    \"ProjectId\": 0,\n    \"SourceType\": 1,\n    \"SubServiceType\": 2,\n"
            "    \"UsrAudioKey\": \"test\",\n    \"VoiceFormat\": \"wav\"\n}\n";
        for (const QString &language : {"16k_zh"_s, QString()}) {
            QCOMPARE(mevo::tencentPayload({language, plainNumbers, keepPunctuation, pcm}), expected);
        }
    }

    void request_data()
    {
        const Rows<QString, QByteArray, QByteArray> row; // address, url, host
        row("host", "asr.example.com", "https://asr.example.com", "asr.example.com");
        row("port", "127.0.0.1:7", "https://127.0.0.1:7", "127.0.0.1:7");
        row("scheme", "http://asr.example.com", "http://asr.example.com", "asr.example.com");
    }

    void request()
    {
        const auto [address, url, host] = rowOf<QString, QByteArray, QByteArray>();
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

    /// Each list is drawn from on its own, and its last account is never drawn.
    void credentialsOfLists()
    {
        EngineState state;
        state.TXSCD = "r1;r2;r3"_s;
        state.TXSCK = "k1;k2"_s;
        QList<int> bounds;
        const auto highest = [&bounds](int low, int high) {
            bounds.append(high);
            return qMax(low, high - 1);
        };
        const mevo::Tc3Credential credential = mevo::drawTencentCredential(state, {}, highest);
        QCOMPARE(credential.secretId + '/' + credential.secretKey, QByteArray("r2/k1"));
        QCOMPARE(bounds, (QList<int>{2, 1}));
    }

    void replies_data()
    {
        const Rows<QByteArray, Kind, QString> row; // chunk, kind, text (or code and message)
        row("text", R"({"Response":{"RequestId":"1","Result":"今天。"}})", Kind::Text, "今天。");
        row("silence", R"({"Response":{"Result":""}})", Kind::Text, "");
        row("no result", R"({"Response":{"RequestId":"1"}})", Kind::Text, "");
        row("result is no text", R"({"Response":{"Result":7}})", Kind::Text, "");
        row("error", R"({"Response":{"Error":{"Code":"A.B","Message":"m"},"Result":"x"}})", Kind::Error,
            "A.B|m");
        row("error without end",
            R"({"Response":{"Error":{"Code":")" + QByteArray(9999, 'c') + R"(","Message":")" +
                QByteArray(9999, 'm') + R"("}}})",
            Kind::Error, QString(100, u'c') + u'|' + QString(500, u'm'));
        row("error without a message", R"({"Response":{"Error":{"Code":"A.B"}}})", Kind::Error, "A.B|");
        row("error without a code", R"({"Response":{"Error":{"Code":"","Message":"m"},"Result":"x"}})",
            Kind::Text, "x");
        row("error is no object", R"({"Response":{"Error":[1],"Result":"x"}})", Kind::Text, "x");
        row("NUL after it", QByteArray("{\"Response\":{\"Result\":\"x\"}}\0rubbish", 34), Kind::Text, "x");
        row("NUL in it", QByteArray("{\"Response\":{\"Result\":\"x\0\"}}", 27), Kind::Unreadable, "");
        row("NUL first", QByteArray("\0{}", 3), Kind::Unreadable, "");
        row("array", R"([{"Response":{"Result":"x"}}])", Kind::Unreadable, "");
        row("another object", "{}", Kind::Unreadable, "");
        row("response is no object", R"({"Response":"x"})", Kind::Unreadable, "");
        row("half", "{\"Response\":{\"Result\":\"x", Kind::Unreadable, "");
        row("page", "<html>", Kind::Unreadable, "");
        row("nothing", "", Kind::Unreadable, "");
        row("deep", QByteArray(5000, '['), Kind::Unreadable, "");
    }

    void replies()
    {
        const auto [chunk, kind, text] = rowOf<QByteArray, Kind, QString>();
        const mevo::TencentReply reply = mevo::parseTencentReply(chunk);
        QCOMPARE(reply.kind, kind);
        QCOMPARE(kind == Kind::Error ? reply.code + QLatin1Char('|') + reply.message : reply.text, text);
    }

    void errorMessage()
    {
        mevo::TencentReply reply;
        reply.code = "AuthFailure.SignatureExpire"_s;
        reply.message = "late"_s;
        const QString message = mevo::tencentErrorMessage(reply);
        QCOMPARE(message, "腾讯语音识别错误返回信息：(如无法解决，请与供货商联系，鼠标放在此窗口"
                          "上，该窗口不会消失):\nAuthFailure.SignatureExpire\nlate"_s);
        QVERIFY(mevo::saysClockIsWrong(message));
        reply.code = "AuthFailure.SignatureFailure"_s;
        QVERIFY(!mevo::saysClockIsWrong(mevo::tencentErrorMessage(reply)));
    }
};

QTEST_GUILESS_MAIN(TestTencent)
#include "tst_tencent.moc"
