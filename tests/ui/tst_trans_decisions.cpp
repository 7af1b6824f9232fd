// What the translation window decides: lists, delays, the order of texts, its place.

#include "ui/translation/SendChoices.h"
#include "ui/translation/TransLists.h"
#include "ui/translation/TransPlace.h"
#include "ui/translation/TransTurns.h"

#include <QtTest>

using Rectangles = std::vector<QRect>;
Q_DECLARE_METATYPE(Rectangles)

namespace {

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *text : texts) {
        strings.append(QLatin1String(text));
    }
    return strings;
}

} // namespace

class TestTransDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendMenu()
    {
        QStringList rows;
        for (const mevo::SendChoice &choice : mevo::sendChoices()) {
            rows.append(QStringLiteral("%1 %2").arg(choice.seconds).arg(QString::fromUtf8(choice.text)));
        }
        const QStringList expected{
            QStringLiteral("0 隐藏窗口立即上屏"), QStringLiteral("1 1秒后自动上屏"),
            QStringLiteral("2 2秒后自动上屏"),    QStringLiteral("3 3秒后自动上屏"),
            QStringLiteral("4 4秒后自动上屏"),    QStringLiteral("5 5秒后自动上屏"),
            QStringLiteral("10000 手动点击上屏"),
        };
        QCOMPARE(rows, expected);
    }

    void storedDelays_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("used");
        for (const int offered : {0, 1, 2, 3, 4, 5, 10000}) {
            QTest::newRow(qPrintable(QString::number(offered))) << offered << offered;
        }
        QTest::newRow("between") << 6 << 3;
        QTest::newRow("beyond") << 10001 << 3;
        QTest::newRow("negative") << -1 << 3;
    }
    void storedDelays()
    {
        QFETCH(int, stored);
        QTEST(mevo::sendChoiceOf(stored).seconds, "used");
    }

    void afterTranslation()
    {
        using mevo::AfterTranslation;
        QVERIFY(mevo::afterTranslation(0, true) == AfterTranslation::SendNow);
        QVERIFY(mevo::afterTranslation(0, false) == AfterTranslation::HideFirst);
        QVERIFY(mevo::afterTranslation(1, true) == AfterTranslation::Wait);
        QVERIFY(mevo::afterTranslation(10000, false) == AfterTranslation::Wait);
    }

    /// Rows of all languages: 0 auto, 1 zh, 2 wyw, 3 yue, 4 cht, 5 en, 6 jp ... 28 slo; destinations have no
    /// auto.
    void swaps_data()
    {
        QTest::addColumn<bool>("spoken");
        QTest::addColumn<int>("source");
        QTest::addColumn<int>("destination");
        QTest::addColumn<QPoint>("swapped"); // (-1, -1): refused
        const QPoint refused(-1, -1);
        QTest::newRow("zh and en") << true << 1 << 4 << QPoint(5, 0);
        QTest::newRow("en and zh") << true << 5 << 0 << QPoint(1, 4);
        QTest::newRow("zh and jp, which no recogniser hears") << true << 1 << 5 << refused;
        QTest::newRow("zh and jp as texts") << false << 1 << 5 << QPoint(6, 0);
        QTest::newRow("auto is no destination") << true << 0 << 4 << refused;
        QTest::newRow("nor of texts") << false << 0 << 4 << refused;
        QTest::newRow("the last of texts") << false << 5 << 27 << QPoint(28, 4);
        QTest::newRow("nothing chosen") << false << -1 << -1 << refused;
    }
    void swaps()
    {
        QFETCH(bool, spoken);
        QFETCH(int, source);
        QFETCH(int, destination);
        const auto swapped = mevo::swappedLanguages({source, destination},
                                                    spoken ? mevo::spokenSources() : mevo::textSources());
        QTEST(swapped ? QPoint(swapped->source, swapped->destination) : QPoint(-1, -1), "swapped");
    }

    void lists()
    {
        QCOMPARE(mevo::spokenSources().count, 6);
        QCOMPARE(mevo::textSources().count, 29);
        QCOMPARE(mevo::destinations().first, 1);
        QCOMPARE(mevo::destinations().count, 28);
        QCOMPARE(mevo::rowInRange(28, 29), 28);
        QCOMPARE(mevo::rowInRange(29, 29), 0);
        QCOMPARE(mevo::rowInRange(-1, 29), 0);
    }

    void readers()
    {
        QCOMPARE((QVector<int>{mevo::readerNumber(0), mevo::readerNumber(1), mevo::readerNumber(2),
                               mevo::readerNumber(3)}),
                 (QVector<int>{0, 1, 3, 4}));
        QCOMPARE((QVector<int>{mevo::storedReaderNumber(0), mevo::storedReaderNumber(1),
                               mevo::storedReaderNumber(2), mevo::storedReaderNumber(3)}),
                 (QVector<int>{0, 1, 4, 4}));
    }

    /// Each letter is what happens, and what follows from it is told: S a sentence, C a change by hand, E the
    /// text is emptied, a the request begins, z the answer comes, n the next sentence is asked for.
    void turns_data()
    {
        QTest::addColumn<QString>("happens");
        QTest::addColumn<QStringList>("follows");
        QTest::newRow("one sentence") << QStringLiteral("Sazn") << list({"show", "ask", "current", "none"});
        QTest::newRow("the second waits for the answer")
            << QStringLiteral("SaSzna") << list({"show", "ask", "wait", "current", "S2", "ask"});
        QTest::newRow("three keep their order") << QStringLiteral("SaSSznaznaz")
                                                << list({"show", "ask", "wait", "wait", "current", "S2",
                                                         "ask", "current", "S3", "ask", "current"});
        QTest::newRow("a second before the first was asked for")
            << QStringLiteral("SSaz") << list({"show", "wait", "ask", "current"});
        QTest::newRow("typed while the answer is awaited")
            << QStringLiteral("CaCaznaz") << list({"ask", "no", "stale", "none", "ask", "current"});
        QTest::newRow("emptied while the answer is awaited")
            << QStringLiteral("CaEzna") << list({"ask", "stale", "none", "no"});
        QTest::newRow("a typed text goes before the sentence that waits")
            << QStringLiteral("CaSCznazn") << list({"ask", "wait", "stale", "none", "ask", "current", "S1"});
        QTest::newRow("emptied before it was asked for, a sentence waits")
            << QStringLiteral("SSEan") << list({"show", "wait", "no", "S2"});
    }
    void turns()
    {
        QFETCH(QString, happens);
        mevo::TransTurns turns;
        QStringList follows;
        int sentences = 0;
        for (const QChar step : happens) {
            switch (step.toLatin1()) {
            case 'S':
                if (turns.takeSentence({QStringLiteral("S%1").arg(++sentences), {}})) {
                    follows.append(QStringLiteral("show"));
                    turns.textChanged(false);
                } else {
                    follows.append(QStringLiteral("wait"));
                }
                break;
            case 'C':
                turns.textChanged(false);
                break;
            case 'E':
                turns.textChanged(true);
                break;
            case 'a':
                follows.append(turns.beginRequest() ? QStringLiteral("ask") : QStringLiteral("no"));
                break;
            case 'z':
                follows.append(turns.endRequest() ? QStringLiteral("current") : QStringLiteral("stale"));
                break;
            case 'n': {
                const auto next = turns.nextSentence();
                follows.append(next ? next->text : QStringLiteral("none"));
                if (next) {
                    turns.textChanged(false);
                }
                break;
            }
            }
        }
        QTEST(follows, "follows");
    }

    void places_data()
    {
        QTest::addColumn<Rectangles>("screens");
        QTest::addColumn<QRect>("bar");
        QTest::addColumn<QPoint>("middle"); // of a window of 455 by 230
        const QRect first(0, 0, 1920, 1080);
        const QRect second(1920, 100, 1280, 1024);
        const QRect panelled(0, 30, 1920, 1050);
        QTest::newRow("one screen") << Rectangles{first} << QRect(1600, 800, 260, 45) << QPoint(732, 425);
        QTest::newRow("below a panel")
            << Rectangles{panelled} << QRect(1600, 800, 260, 45) << QPoint(732, 440);
        QTest::newRow("the bar's screen")
            << Rectangles{first, second} << QRect(2000, 800, 260, 45) << QPoint(2332, 497);
        QTest::newRow("no bar to be seen")
            << Rectangles{first, second} << QRect(9000, 800, 260, 45) << QPoint(732, 425);
        QTest::newRow("a screen too small")
            << Rectangles{QRect(0, 0, 400, 200)} << QRect(0, 0, 260, 45) << QPoint(0, 0);
    }
    void places()
    {
        QFETCH(Rectangles, screens);
        QFETCH(QRect, bar);
        QTEST(mevo::transWindowMiddle(screens, bar, {455, 230}), "middle");
    }

    void staysOnItsScreen_data()
    {
        QTest::addColumn<QRect>("window");
        QTest::addColumn<QPoint>("place"); // on screens of 1000 by 800 beside each other
        QTest::newRow("all of it is there") << QRect(100, 100, 455, 555) << QPoint(100, 100);
        QTest::newRow("opened at the bottom") << QRect(100, 560, 455, 555) << QPoint(100, 245);
        QTest::newRow("between the two, more on the right") << QRect(900, 0, 455, 555) << QPoint(1000, 0);
        QTest::newRow("its screen has gone") << QRect(2500, 300, 455, 230) << QPoint(545, 300);
        QTest::newRow("higher than the screen") << QRect(100, -50, 455, 900) << QPoint(100, 0);
    }
    void staysOnItsScreen()
    {
        QFETCH(QRect, window);
        QTEST(mevo::transWindowInside({QRect(0, 0, 1000, 800), QRect(1000, 0, 1000, 800)}, window), "place");
    }
};

QTEST_APPLESS_MAIN(TestTransDecisions)
#include "tst_trans_decisions.moc"
