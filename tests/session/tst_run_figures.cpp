#include "session/RunFigures.h"

#include <QtTest>

using mevo::RunFigures;

class TestRunFigures : public QObject
{
    Q_OBJECT

private slots:
    void percentiles_data()
    {
        QTest::addColumn<QVector<qint64>>("durations");
        QTest::addColumn<qint64>("p50");
        QTest::addColumn<qint64>("p95");
        QTest::newRow("none") << QVector<qint64>{} << qint64(0) << qint64(0);
        QTest::newRow("one") << QVector<qint64>{70} << qint64(70) << qint64(70);
        QTest::newRow("two") << QVector<qint64>{90, 10} << qint64(10) << qint64(90);
        QTest::newRow("one late in twenty")
            << QVector<qint64>{9000, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}
            << qint64(10) << qint64(19);
        QTest::newRow("two late in twenty")
            << QVector<qint64>{9000, 8000, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3} << qint64(3)
            << qint64(8000);
        QTest::newRow("a clock that steps back") << QVector<qint64>{-5, -5, 4} << qint64(0) << qint64(4);
    }
    void percentiles()
    {
        QFETCH(QVector<qint64>, durations);
        RunFigures::Spread spread;
        for (const qint64 ms : durations)
            spread.add(ms);
        QCOMPARE(spread.count(), durations.size());
        QTEST(spread.percentile(50), "p50");
        QTEST(spread.percentile(95), "p95");
    }

    void aTextCountsFromItsOwnRelease()
    {
        RunFigures figures;
        figures.released(1, 1000);
        figures.released(2, 2000);
        figures.answered(2, 2100);
        figures.typed(2, 2130);
        figures.answered(1, 2500);
        figures.typed(1, 2510);
        QCOMPARE(figures.releaseToText().count(), 2);
        QCOMPARE(figures.releaseToText().percentile(50), qint64(130));
        QCOMPARE(figures.releaseToText().percentile(95), qint64(1510));
        QCOMPARE(figures.answerToText().percentile(50), qint64(10));
        QCOMPARE(figures.answerToText().percentile(95), qint64(30));
        QCOMPARE(figures.summary(),
                 QStringLiteral("2 texts; release to text p50 130 ms, p95 1510 ms; of it after "
                                "the answer p50 10 ms, p95 30 ms"));
    }

    /// A streaming engine's words come while the key is held: the first after the release is waited for.
    void wordsBeforeTheReleaseAreNoWait()
    {
        RunFigures figures;
        figures.answered(1, 500);
        figures.typed(1, 510);
        QCOMPARE(figures.releaseToText().count(), 0);
        figures.released(1, 1000);
        figures.typed(1, 1040);
        figures.typed(1, 9000);
        QCOMPARE(figures.releaseToText().count(), 1);
        QCOMPARE(figures.releaseToText().percentile(50), qint64(40));
        QCOMPARE(figures.answerToText().percentile(50), qint64(40));
    }

    void whatHasNoSessionOrNoTextIsPassedOver()
    {
        RunFigures figures;
        figures.released(0, 1000);
        figures.typed(0, 1100);
        for (int session = 1; session <= 1000; ++session)
            figures.released(session, session);
        figures.typed(1, 5000); // long forgotten
        QCOMPARE(figures.releaseToText().count(), 0);
        figures.typed(1000, 1007);
        QCOMPARE(figures.releaseToText().percentile(50), qint64(7));
    }
};

QTEST_APPLESS_MAIN(TestRunFigures)
#include "tst_run_figures.moc"
