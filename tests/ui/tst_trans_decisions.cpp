// What the translation window decides: lists, delays, the order of texts, its place.

#include "support/Rows.h"
#include "ui/translation/SendChoices.h"
#include "ui/translation/TransLists.h"
#include "ui/translation/TransPlace.h"
#include "ui/translation/TransTurns.h"

#include <QtTest>

using Rectangles = std::vector<QRect>;

namespace {

} // namespace

class TestTransDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendMenu()
    {
        QStringList rows;
        for (const mevo::SendChoice &choice : mevo::sendChoices()) {
            rows.append("%1 %2"_s.arg(choice.seconds).arg(QString::fromUtf8(choice.text)));
        }
        QCOMPARE(rows, list({"0 隐藏窗口立即上屏", "1 1秒后自动上屏", "2 2秒后自动上屏", "3 3秒后自动上屏",
                             "4 4秒后自动上屏", "5 5秒后自动上屏", "10000 手动点击上屏"}));
    }

    void storedDelays_data()
    {
        const Rows<int, int> row; // stored, used
        for (const int offered : {0, 1, 2, 3, 4, 5, 10000}) {
            row(qPrintable(QString::number(offered)), offered, offered);
        }
        row("between", 6, 3);
        row("beyond", 10001, 3);
        row("negative", -1, 3);
    }
    void storedDelays()
    {
        const auto [stored, used] = rowOf<int, int>();
        QCOMPARE(mevo::sendChoiceOf(stored).seconds, used);
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
        const Rows<bool, int, int, QPoint> row; // spoken, source, destination, swapped ((-1, -1): refused)
        const QPoint refused(-1, -1);
        row("zh and en", true, 1, 4, {5, 0});
        row("en and zh", true, 5, 0, {1, 4});
        row("zh and jp, which no recogniser hears", true, 1, 5, refused);
        row("zh and jp as texts", false, 1, 5, {6, 0});
        row("auto is no destination", true, 0, 4, refused);
        row("nor of texts", false, 0, 4, refused);
        row("the last of texts", false, 5, 27, {28, 4});
        row("nothing chosen", false, -1, -1, refused);
    }
    void swaps()
    {
        const auto [spoken, source, destination, expectedSwapped] = rowOf<bool, int, int, QPoint>();
        const auto swapped = mevo::swappedLanguages({source, destination},
                                                    spoken ? mevo::spokenSources() : mevo::textSources());
        QCOMPARE(swapped ? QPoint(swapped->source, swapped->destination) : QPoint(-1, -1), expectedSwapped);
    }

    void rowsOutOfRange()
    {
        QCOMPARE(mevo::rowInRange(28, 29), 28);
        QCOMPARE(mevo::rowInRange(29, 29), 0);
        QCOMPARE(mevo::rowInRange(-1, 29), 0);
    }

    void readers()
    {
        const int read[] = {0, 1, 3, 4};
        const int stored[] = {0, 1, 4, 4};
        for (int row = 0; row < 4; ++row) {
            QCOMPARE(mevo::readerNumber(row), read[row]);
            QCOMPARE(mevo::storedReaderNumber(row), stored[row]);
        }
    }

    /// Each letter is what happens, and what follows from it is told: S a sentence, C a change by hand, E the
    /// text is emptied, a the request begins, z the answer comes, n the next sentence is asked for.
    void turns_data()
    {
        const Rows<QString, QStringList> row; // happens, follows
        row("one sentence", "Sazn", {"show", "ask", "current", "none"});
        row("the second waits for the answer", "SaSzna", {"show", "ask", "wait", "current", "S2", "ask"});
        row("three keep their order", "SaSSznaznaz",
            {"show", "ask", "wait", "wait", "current", "S2", "ask", "current", "S3", "ask", "current"});
        row("a second before the first was asked for", "SSaz", {"show", "wait", "ask", "current"});
        row("typed while the answer is awaited", "CaCaznaz",
            {"ask", "no", "stale", "none", "ask", "current"});
        row("emptied while the answer is awaited", "CaEzna", {"ask", "stale", "none", "no"});
        row("a typed text goes before the sentence that waits", "CaSCznazn",
            {"ask", "wait", "stale", "none", "ask", "current", "S1"});
        row("emptied before it was asked for, a sentence waits", "SSEan", {"show", "wait", "no", "S2"});
    }
    void turns()
    {
        const auto [happens, expectedFollows] = rowOf<QString, QStringList>();
        mevo::TransTurns turns;
        QStringList follows;
        int sentences = 0;
        for (const QChar step : happens) {
            if (step == u'S') {
                const bool shown = turns.takeSentence({"S%1"_s.arg(++sentences), {}});
                follows.append(shown ? "show"_s : "wait"_s);
                if (shown) {
                    turns.textChanged(false);
                }
            } else if (step == u'C' || step == u'E') {
                turns.textChanged(step == u'E');
            } else if (step == u'a') {
                follows.append(turns.beginRequest() ? "ask"_s : "no"_s);
            } else if (step == u'z') {
                follows.append(turns.endRequest() ? "current"_s : "stale"_s);
            } else if (const auto next = turns.nextSentence()) {
                follows.append(next->text);
                turns.textChanged(false);
            } else {
                follows.append("none"_s);
            }
        }
        QCOMPARE(follows, expectedFollows);
    }

    void places_data()
    {
        const Rows<Rectangles, QRect, QPoint> row; // screens, bar, middle (of a window of 455 by 230)
        const QRect first(0, 0, 1920, 1080);
        const QRect second(1920, 100, 1280, 1024);
        const QRect panelled(0, 30, 1920, 1050);
        row("one screen", Rectangles{first}, {1600, 800, 260, 45}, {732, 425});
        row("below a panel", Rectangles{panelled}, {1600, 800, 260, 45}, {732, 440});
        row("the bar's screen", Rectangles{first, second}, {2000, 800, 260, 45}, {2332, 497});
        row("no bar to be seen", Rectangles{first, second}, {9000, 800, 260, 45}, {732, 425});
        row("a screen too small", Rectangles{QRect(0, 0, 400, 200)}, {0, 0, 260, 45}, {0, 0});
    }
    void places()
    {
        const auto [screens, bar, middle] = rowOf<Rectangles, QRect, QPoint>();
        QCOMPARE(mevo::transWindowMiddle(screens, bar, {455, 230}), middle);
    }

    void staysOnItsScreen_data()
    {
        const Rows<QRect, QPoint> row; // window, place (on screens of 1000 by 800 beside each other)
        row("all of it is there", {100, 100, 455, 555}, {100, 100});
        row("opened at the bottom", {100, 560, 455, 555}, {100, 245});
        row("between the two, more on the right", {900, 0, 455, 555}, {1000, 0});
        row("its screen has gone", {2500, 300, 455, 230}, {545, 300});
        row("higher than the screen", {100, -50, 455, 900}, {100, 0});
    }
    void staysOnItsScreen()
    {
        const auto [window, place] = rowOf<QRect, QPoint>();
        QCOMPARE(mevo::transWindowInside({QRect(0, 0, 1000, 800), QRect(1000, 0, 1000, 800)}, window), place);
    }
};

QTEST_APPLESS_MAIN(TestTransDecisions)
#include "tst_trans_decisions.moc"
