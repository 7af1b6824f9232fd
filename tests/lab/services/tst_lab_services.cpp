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
    void sentences_data();
    void sentences();
    void translateErrors_data();
    void translateErrors();
    void translates();
    void translateOrders_data();
    void translateOrders();
    void speechErrors_data();
    void speechErrors();
    void speaks();

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

void TestLabServices::sentences_data()
{
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("translation");
    QTest::newRow("Chinese to English") << QStringLiteral("今天天气很好。") << "zh"
                                        << "en"
                                        << "The weather is fine today.";
    QTest::newRow("without punctuation") << QStringLiteral("今天天气很好") << "zh"
                                         << "jp" << QStringLiteral("今日はいい天気です。");
    QTest::newRow("capitals and blanks") << "please SEND the report  before noon"
                                         << "en"
                                         << "zh" << QStringLiteral("请在中午之前发送报告。");
    QTest::newRow("Japanese to Chinese") << QStringLiteral("わかりません。") << "jp"
                                         << "zh" << QStringLiteral("我不明白。");
    QTest::newRow("unknown") << "colourless green ideas"
                             << "en"
                             << "zh"
                             << "";
    QTest::newRow("another language") << "Hello."
                                      << "en"
                                      << "fra"
                                      << "";
    QTest::newRow("nothing but punctuation") << QStringLiteral("。") << "zh"
                                             << "en"
                                             << "";
}

void TestLabServices::sentences()
{
    QFETCH(QString, sentence);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, translation);
    QCOMPARE(lab::translateSentence(sentence, from, to), translation);
}

void TestLabServices::translateErrors_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<int>("error");
    const QByteArray languages = "&from=zh&to=en";
    QTest::newRow("nothing wrong") << signedQuery + languages << 0;
    QTest::newRow("no target") << signedQuery + "&from=zh" << 54000;
    QTest::newRow("empty text") << QByteArray("appid=app&q=&salt=5&sign=x") + languages << 54000;
    QTest::newRow("another account") << QByteArray(signedQuery).replace("=app&", "=ape&") + languages
                                     << 52003;
    QTest::newRow("another text") << QByteArray(signedQuery).replace("%80", "%81") + languages << 54001;
    QTest::newRow("another salt") << QByteArray(signedQuery).replace("salt=5", "salt=6") + languages << 54001;
    QTest::newRow("upper-case signature")
        << QByteArray(signedQuery).replace("c25c905b", "C25C905B") + languages << 54001;
    QTest::newRow("no such language") << signedQuery + "&from=zh&to=xx" << 58001;
}

void TestLabServices::translateErrors()
{
    QFETCH(QByteArray, query);
    QFETCH(int, error);
    const QJsonObject answer = jsonOf(translate(query));
    QCOMPARE(answer.value(QStringLiteral("error_code")).toString(),
             error == 0 ? QString() : QString::number(error));
    QCOMPARE(answer.contains(QStringLiteral("trans_result")), error == 0);
    QCOMPARE(m_notes.last().value(QStringLiteral("error")).toInt(), error);
}

void TestLabServices::translates()
{
    const QByteArray answer = translate(signedQuery + "&from=auto&to=auto");
    QCOMPARE(jsonOf(answer),
             jsonOf(R"({"from":"zh","to":"en","trans_result":[{"src":"一二","dst":"[zh>en] 一二"}]})"));
    QCOMPARE(m_notes.last().value(QStringLiteral("q")).toString(), QStringLiteral("一二"));
    QCOMPARE(m_notes.last().value(QStringLiteral("from")).toString(), QStringLiteral("auto"));
}

void TestLabServices::translateOrders_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    const QByteArray usual =
        R"({"from":"zh","to":"en","trans_result":[{"src":"一二","dst":"[zh>en] 一二"}]})";
    QTest::newRow("an error, once") << "error=54003"
                                    << QByteArray(
                                           R"({"error_code":"54003","error_msg":"Invalid Access Limit"})")
                                    << usual;
    QTest::newRow("an error that stays")
        << "error=52001&count=-1" << QByteArray(R"({"error_code":"52001","error_msg":"TIMEOUT"})")
        << QByteArray(R"({"error_code":"52001","error_msg":"TIMEOUT"})");
    const QByteArray fixed = R"({"from":"zh","to":"en","trans_result":[{"src":"一二","dst":"as ordered"}]})";
    QTest::newRow("a text") << "text=as%20ordered" << fixed << fixed;
    const QByteArray empty = R"({"from":"zh","to":"en","trans_result":[]})";
    QTest::newRow("no segment") << "form=empty" << empty << empty;
    const QByteArray none = R"({"from":"zh","to":"en"})";
    QTest::newRow("no result") << "form=none" << none << none;
}

void TestLabServices::translateOrders()
{
    QFETCH(QString, order);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QVERIFY(m_translate.control(QUrlQuery(order)));
    QCOMPARE(jsonOf(translate(signedQuery + "&from=zh&to=en")), jsonOf(first));
    QCOMPARE(jsonOf(translate(signedQuery + "&from=zh&to=en")), jsonOf(second));
    m_translate.reset();
    QVERIFY(translate(signedQuery + "&from=zh&to=en").contains("[zh>en]"));
    QVERIFY(!m_translate.control(QUrlQuery(QStringLiteral("nothing=1"))));
}

void TestLabServices::speechErrors_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<int>("error");
    QTest::newRow("nothing wrong") << speech + "hello" << 0;
    QTest::newRow("in front stands a separator") << '&' + speech + "hello" << 0;
    QTest::newRow("no text") << speech << 501;
    QTest::newRow("a token of nobody") << QByteArray(speech).replace("known", "other") + "hello" << 502;
    QTest::newRow("too fast") << QByteArray(speech).replace("spd=5", "spd=16") + "hello" << 501;
    QTest::newRow("a speed that is no number")
        << QByteArray(speech).replace("spd=5", "spd=x") + "hello" << 501;
    QTest::newRow("no such reader") << QByteArray(speech).replace("per=0", "per=2") + "hello" << 501;
    QTest::newRow("the last reader") << QByteArray(speech).replace("per=0", "per=4") + "hello" << 0;
    QTest::newRow("another language") << QByteArray(speech).replace("lan=zh", "lan=en") + "hello" << 501;
    QTest::newRow("no computer") << QByteArray(speech).replace("cuid=***", "cuid=") + "hello" << 501;
    QTest::newRow("as long as may be") << speech + QByteArray(1024, 'a') << 0;
    QTest::newRow("too long") << speech + QByteArray(1023, 'a') + "%E4%B8%80" << 513;
}

void TestLabServices::speechErrors()
{
    QFETCH(QByteArray, query);
    QFETCH(int, error);
    const lab::TtsService tts([](const QString &token) { return token == QLatin1String("known"); },
                              [](const QJsonObject &) {});
    QCOMPARE(tts.check(QUrlQuery(QString::fromLatin1(query))), error);
}

/// Real MP3 for a text that can be spoken, an error as JSON for one that is ordered.
void TestLabServices::speaks()
{
    QJsonObject note;
    lab::TtsService tts([](const QString &token) { return token == QLatin1String("known"); },
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
    QVERIFY(!note.value(QStringLiteral("query")).toString().contains(QLatin1String("known")));
    QVERIFY(tts.control(QUrlQuery(QStringLiteral("error=503"))));
    ask("one");
    QCOMPARE(answers.last().status, 200);
    QCOMPARE(jsonOf(answers.last().body).value(QStringLiteral("err_no")).toInt(), 503);
}

QTEST_GUILESS_MAIN(TestLabServices)
#include "tst_lab_services.moc"
