#include "support/Rows.h"
#include "translation/SentenceTable.h"
#include "translation/TranslateService.h"
#include "translation/TtsService.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {

/// "一二" signed with the account "app", "key" and the salt 5.
const QByteArray signedQuery = "appid=app&q=%E4%B8%80%E4%BA%8C&salt=5&sign=c25c905b17e4df7d01bf5b2ad592f20e";
const QByteArray speech = "lan=zh&cuid=***&ctp=1&tok=known&spd=5&pit=5&vol=5&per=0&tex=";

lab::HttpRequest get(const QByteArray &path, const QByteArray &query)
{
    lab::HttpRequest request;
    request.method = "GET";
    request.target = path + '?' + query;
    return request;
}

QJsonObject jsonOf(const QByteArray &body)
{
    return QJsonDocument::fromJson(body).object();
}

} // namespace

class TestLabServices : public QObject
{
    Q_OBJECT

private slots:
    void sentences_data()
    {
        const Rows<QString, QString, QString, QString> row; // sentence, from, to, translation
        row("Chinese to English", "今天天气很好。", "zh", "en", "The weather is fine today.");
        row("without punctuation", "今天天气很好", "zh", "jp", "今日はいい天気です。");
        row("capitals and blanks", "please SEND the report  before noon", "en", "zh",
            "请在中午之前发送报告。");
        row("Japanese to Chinese", "わかりません。", "jp", "zh", "我不明白。");
        row("unknown", "colourless green ideas", "en", "zh", "");
        row("another language", "Hello.", "en", "fra", "");
        row("nothing but punctuation", "。", "zh", "en", "");
    }
    void sentences()
    {
        const auto [sentence, from, to, translation] = rowOf<QString, QString, QString, QString>();
        QCOMPARE(lab::translateSentence(sentence, from, to), translation);
    }

    void translateErrors_data()
    {
        const Rows<QByteArray, int> row; // query, error
        const QByteArray languages = "&from=zh&to=en";
        row("nothing wrong", signedQuery + languages, 0);
        row("no target", signedQuery + "&from=zh", 54000);
        row("empty text", QByteArray("appid=app&q=&salt=5&sign=x") + languages, 54000);
        row("another account", QByteArray(signedQuery).replace("=app&", "=ape&") + languages, 52003);
        row("another text", QByteArray(signedQuery).replace("%80", "%81") + languages, 54001);
        row("another salt", QByteArray(signedQuery).replace("salt=5", "salt=6") + languages, 54001);
        row("upper-case signature", QByteArray(signedQuery).replace("c25c905b", "C25C905B") + languages,
            54001);
        row("no such language", signedQuery + "&from=zh&to=xx", 58001);
    }
    void translateErrors()
    {
        const auto [query, error] = rowOf<QByteArray, int>();
        const QJsonObject answer = jsonOf(translate(query));
        QCOMPARE(answer.value("error_code"_s).toString(), error == 0 ? QString() : QString::number(error));
        QCOMPARE(answer.contains("trans_result"_s), error == 0);
        QCOMPARE(m_notes.last().value("error"_s).toInt(), error);
    }

    void translates()
    {
        const QByteArray answer = translate(signedQuery + "&from=auto&to=auto");
        QCOMPARE(jsonOf(answer),
                 jsonOf(R"({"from":"zh","to":"en","trans_result":[{"src":"一二","dst":"[zh>en] 一二"}]})"));
        QCOMPARE(m_notes.last().value("q"_s).toString(), "一二"_s);
        QCOMPARE(m_notes.last().value("from"_s).toString(), "auto"_s);
    }

    void translateOrders_data()
    {
        const Rows<QString, QByteArray, QByteArray> row; // order, first, second
        const QByteArray usual =
            R"({"from":"zh","to":"en","trans_result":[{"src":"一二","dst":"[zh>en] 一二"}]})";
        row("an error, once", "error=54003", R"({"error_code":"54003","error_msg":"Invalid Access Limit"})",
            usual);
        row("an error that stays", "error=52001&count=-1", R"({"error_code":"52001","error_msg":"TIMEOUT"})",
            R"({"error_code":"52001","error_msg":"TIMEOUT"})");
        const QByteArray fixed =
            R"({"from":"zh","to":"en","trans_result":[{"src":"一二","dst":"as ordered"}]})";
        row("a text", "text=as%20ordered", fixed, fixed);
        const QByteArray empty = R"({"from":"zh","to":"en","trans_result":[]})";
        row("no segment", "form=empty", empty, empty);
        const QByteArray none = R"({"from":"zh","to":"en"})";
        row("no result", "form=none", none, none);
    }
    void translateOrders()
    {
        const auto [order, first, second] = rowOf<QString, QByteArray, QByteArray>();
        QVERIFY(m_translate.control(QUrlQuery(order)));
        QCOMPARE(jsonOf(translate(signedQuery + "&from=zh&to=en")), jsonOf(first));
        QCOMPARE(jsonOf(translate(signedQuery + "&from=zh&to=en")), jsonOf(second));
        m_translate.reset();
        QVERIFY(translate(signedQuery + "&from=zh&to=en").contains("[zh>en]"));
        QVERIFY(!m_translate.control(QUrlQuery("nothing=1"_s)));
    }

    void speechErrors_data()
    {
        const Rows<QByteArray, int> row; // query, error
        row("nothing wrong", speech + "hello", 0);
        row("in front stands a separator", '&' + speech + "hello", 0);
        row("no text", speech, 501);
        row("a token of nobody", QByteArray(speech).replace("known", "other") + "hello", 502);
        row("too fast", QByteArray(speech).replace("spd=5", "spd=16") + "hello", 501);
        row("a speed that is no number", QByteArray(speech).replace("spd=5", "spd=x") + "hello", 501);
        row("no such reader", QByteArray(speech).replace("per=0", "per=2") + "hello", 501);
        row("the last reader", QByteArray(speech).replace("per=0", "per=4") + "hello", 0);
        row("another language", QByteArray(speech).replace("lan=zh", "lan=en") + "hello", 501);
        row("no computer", QByteArray(speech).replace("cuid=***", "cuid=") + "hello", 501);
        row("as long as may be", speech + QByteArray(1024, 'a'), 0);
        row("too long", speech + QByteArray(1023, 'a') + "%E4%B8%80", 513);
    }
    void speechErrors()
    {
        const auto [query, error] = rowOf<QByteArray, int>();
        const lab::TtsService tts([](const QString &token) { return token == "known"_s; },
                                  [](const QJsonObject &) {});
        QCOMPARE(tts.check(QUrlQuery(QString::fromLatin1(query))), error);
    }

    /// Real MP3 for a text that can be spoken, an error as JSON for one that is ordered.
    void speaks()
    {
        QJsonObject note;
        lab::TtsService tts([](const QString &token) { return token == "known"_s; },
                            [&note](const QJsonObject &entry) { note = entry; });
        QList<lab::HttpResponse> answers;
        const auto ask = [&](const QByteArray &text) {
            tts.handle(get(lab::TtsService::Path, speech + text),
                       [&answers](const lab::HttpResponse &response) { answers.append(response); });
        };
        ask("one");
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 1, 20000);
        ask("one%20two%20three%20four%20five%20six");
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 2, 20000);
        ask("%E4%BD%A0%E5%A5%BD%EF%BC%8C%E4%BB%8A%E5%A4%A9%E5%A4%A9%E6%B0%94%E5%BE%88%E5%A5%BD");
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 3, 20000);
        for (const lab::HttpResponse &answer : answers) {
            QCOMPARE(answer.contentType, QByteArray("audio/mp3"));
            QVERIFY(answer.body.startsWith("ID3") || answer.body.startsWith("\xff\xf3"));
        }
        QVERIFY(answers[1].body.size() > answers[0].body.size() * 2);
        QVERIFY(!note.value("query"_s).toString().contains(QLatin1String("known")));
        QVERIFY(tts.control(QUrlQuery("error=503"_s)));
        ask("one");
        QCOMPARE(answers.last().status, 200);
        QCOMPARE(jsonOf(answers.last().body).value("err_no"_s).toInt(), 503);
    }

private:
    QByteArray translate(const QByteArray &query)
    {
        QByteArray body;
        m_translate.handle(get(lab::TranslateService::Path, query),
                           [&body](const lab::HttpResponse &response) { body = response.body; });
        return body;
    }

    QList<QJsonObject> m_notes;
    lab::TranslateService m_translate{"app", "key",
                                      [this](const QJsonObject &note) { m_notes.append(note); }};
};

QTEST_GUILESS_MAIN(TestLabServices)
#include "tst_lab_services.moc"
