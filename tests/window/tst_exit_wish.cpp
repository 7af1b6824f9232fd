#include "support/Rows.h"
#include "window/ExitWish.h"

#include <QtTest>

using mevo::ExitWish;
using Kind = ExitWish::Kind;
using Course = ExitWish::Course;

class TestExitWish : public QObject
{
    Q_OBJECT

private slots:
    /// The exit that the construction ends with: one that cannot be called back goes before one that can.
    void duringTheConstruction_data()
    {
        const Rows<QList<int>, bool, int> row; // wanted, certain, walked (-1 for none)
        const int asked = int(Kind::Asked);
        const int unasked = int(Kind::Unasked);
        const int byItself = int(Kind::ByItself);
        row("nobody", QList<int>{}, false, -1);
        row("the user", QList<int>{asked}, false, asked);
        row("the system", QList<int>{byItself}, true, byItself);
        row("the user first", QList<int>{asked, byItself}, true, byItself);
        row("the user second", QList<int>{byItself, asked}, true, byItself);
        row("twice", QList<int>{unasked, byItself}, true, unasked);
    }
    void duringTheConstruction()
    {
        const auto [wanted, certain, walked] = rowOf<QList<int>, bool, int>();
        ExitWish wish;
        for (const int kind : wanted) {
            QVERIFY(wish.want(static_cast<Kind>(kind)) == Course::Wait);
        }
        QCOMPARE(wish.certain(), certain);
        QVERIFY(!wish.underWay());
        const auto kind = wish.constructionEnded();
        QCOMPARE(kind ? int(*kind) : -1, walked);
        QVERIFY(!wish.underWay());
        QVERIFY(wish.want(Kind::ByItself) == Course::Walk);
        QVERIFY(wish.underWay() && wish.certain());
        QVERIFY(wish.want(Kind::ByItself) == Course::Ignore);
    }

    void announced()
    {
        for (const bool constructed : {false, true}) {
            ExitWish wish;
            if (constructed) {
                wish.constructionEnded();
            }
            wish.announce();
            QVERIFY(wish.certain() && !wish.underWay());
            QCOMPARE(constructed || wish.constructionEnded() == Kind::ByItself, true);
            QVERIFY(wish.want(Kind::ByItself) == Course::Walk);
        }
    }

    void whileTheUserIsAsked_data()
    {
        const Rows<bool, bool, int> row; // systemEnds, leaves, walked
        row("back", false, false, -1);
        row("yes", false, true, int(Kind::Asked));
        row("the system closes the question", true, false, int(Kind::ByItself));
        row("the system comes with the answer", true, true, int(Kind::ByItself));
    }
    void whileTheUserIsAsked()
    {
        const auto [systemEnds, leaves, walked] = rowOf<bool, bool, int>();
        ExitWish wish;
        wish.constructionEnded();
        QVERIFY(wish.want(Kind::Asked) == Course::Walk);
        wish.questionOpens();
        QVERIFY(!wish.certain() && !wish.underWay());
        QVERIFY(wish.want(Kind::Asked) == Course::Ignore);
        if (systemEnds) {
            QVERIFY(wish.want(Kind::ByItself) == Course::CloseQuestion);
            QVERIFY(wish.want(Kind::Unasked) == Course::Ignore);
        }
        const auto kind = wish.questionAnswered(leaves);
        QCOMPARE(kind ? int(*kind) : -1, walked);
        QCOMPARE(wish.underWay(), kind.has_value());
        QVERIFY(wish.want(Kind::Asked) == (kind ? Course::Ignore : Course::Walk));
    }
};

QTEST_GUILESS_MAIN(TestExitWish)
#include "tst_exit_wish.moc"
