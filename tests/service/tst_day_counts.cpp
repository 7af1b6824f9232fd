#include "service/CountWrites.h"
#include "service/RecordColumns.h"

#include <QMap>
#include <QtTest>

using mevo::CountColumn;
using mevo::CountWrites;

namespace {

const QString column = QStringLiteral("BDSR1DUsedQuantity");

/// A program that counts, and the backend's rows of two receivers. It is led by a text, a letter a step:
///   A B  the receiver of this name is known    -  it is pulled out    e  its name is emptied
///   s    a sentence                            p  a press             a  the answer to it
///   [ ]  the record is asked for, and answered: the row as it is at "["; "R" is both
///   f l t  the count is written: answered; lost on the way; taken, but its answer is lost
///   o    another computer counts ten           d  a new day begins
struct Run
{
    MainState state;
    QMap<QString, int> rows{{QStringLiteral("A"), 300}, {QStringLiteral("B"), 7}};
    int asked = 0;
    int pressed = 0;
    std::unique_ptr<mevo::DayCounts::Reading> reading;

    void write(bool taken, bool answered)
    {
        const int count = state.dayCounts.used(CountColumn::Baidu);
        const int receiver = state.dayCounts.receiver();
        state.dayCounts.sent(CountColumn::Baidu, count, receiver);
        if (taken) {
            rows[state.dayCounts.receiverId()] = count;
        }
        if (answered) {
            state.dayCounts.told(CountColumn::Baidu, count, receiver);
        }
    }
    void step(QChar letter)
    {
        mevo::DayCounts &counts = state.dayCounts;
        switch (letter.toLatin1()) {
        case 'A':
        case 'B':
            state.DongleID = letter;
            break;
        case '-':
            state.DongleID.clear();
            counts.receiverLeft();
            break;
        case 'e':
            counts.follow();
            state.DongleID.clear();
            break;
        case 's':
            counts.count(CountColumn::Baidu);
            break;
        case 'p':
            pressed = counts.receiver();
            break;
        case 'a':
            counts.count(CountColumn::Baidu, pressed);
            break;
        case 'R':
            step(u'[');
            step(u']');
            break;
        case '[':
            asked = rows.value(state.DongleID);
            reading = std::make_unique<mevo::DayCounts::Reading>(counts);
            break;
        case ']':
            reading.reset();
            mevo::applyRecordColumns(state, {{column, asked}}, false);
            counts.recordRead();
            state.CountersLocked = false;
            break;
        case 'f':
            write(true, true);
            break;
        case 'l':
            write(false, false);
            break;
        case 't':
            write(true, false);
            break;
        case 'o':
            rows[QStringLiteral("A")] += 10;
            break;
        case 'd':
            counts.beginDay();
            rows[counts.receiverId()] = 0;
            break;
        default:
            QFAIL("no such step");
        }
    }
};

} // namespace

class TestDayCounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsCountedIsAdded_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("used");
        QTest::newRow("before the first reading") << "AssR" << 302;
        QTest::newRow("offline, before a second reading") << "ARsslR" << 302;
        QTest::newRow("while the record is read") << "AR[s]" << 301;
        QTest::newRow("and written before the answer comes") << "AR[sf]" << 301;
        QTest::newRow("which the next reading knows") << "AR[sf]R" << 301;
        QTest::newRow("written before the reading is answered") << "ARst[]" << 301;
        QTest::newRow("taken, and its answer lost") << "ARstR" << 301;
        QTest::newRow("taken, its answer lost, and counted on") << "ARstsR" << 302;
        QTest::newRow("written, and nothing more") << "ARsfR" << 301;
        QTest::newRow("pulled out and put back") << "ARs-AR" << 301;
        QTest::newRow("put back before it is read") << "As-AR" << 301;
        QTest::newRow("used elsewhere meanwhile") << "ARsf-oAsR" << 312;
        QTest::newRow("another receiver's row") << "ARss-BR" << 7;
        QTest::newRow("another receiver's row, without its removal") << "ARssBR" << 7;
        QTest::newRow("another one counts for itself") << "ARss-BsR" << 8;
        QTest::newRow("the first one comes back") << "ARss-BsR-AR" << 302;
        QTest::newRow("answered after the removal") << "ARp-aAR" << 301;
        QTest::newRow("answered to another receiver") << "ARp-BRa" << 7;
        QTest::newRow("whose press it was") << "ARp-BRa-AR" << 301;
        QTest::newRow("pressed before the receiver is known") << "pAaR" << 301;
        QTest::newRow("known again by then") << "AR-pAaR" << 301;
        QTest::newRow("counted before the receiver is known again") << "AR-psAaR" << 302;
        QTest::newRow("never known") << "p-AaR" << 301;
        QTest::newRow("between the removal and the arrival") << "ARs-s-sAR" << 303;
        QTest::newRow("which is another receiver's") << "ARs-s-sBR" << 9;
        QTest::newRow("pressed between them") << "AR-p-BaR" << 8;
        QTest::newRow("the name is emptied") << "ARessf" << 302;
        QTest::newRow("a new day") << "ARsfd" << 0;
        QTest::newRow("a new day and what was not told") << "AssRd" << 2;
        QTest::newRow("a new day, counted on and read") << "AssRdsfR" << 3;
    }

    void whatIsCountedIsAdded()
    {
        QFETCH(QString, steps);
        Run run;
        for (const QChar step : qAsConst(steps)) {
            run.step(step);
        }
        QTEST(run.state.dayCounts.used(CountColumn::Baidu), "used");
        QCOMPARE(run.state.dayCounts.used(CountColumn::XunFei), 0);
        if (!run.state.CountersLocked) { // the rest goes into the row, which holds what has been used
            const QString id = run.state.dayCounts.receiverId();
            run.step(u'f');
            QTEST(run.rows.value(id), "used");
            QVERIFY(!run.state.dayCounts.isUntold(CountColumn::Baidu));
        }
    }

    /// Another receiver has not used up the limits of the one before, and has none of its own yet.
    void theLockAndTheLimitsGoWithTheReceiver()
    {
        Run run;
        QVERIFY(run.state.CountersLocked && !run.state.dayCounts.isRead());
        run.step(u'A');
        run.step(u'R');
        run.state.BDFY1MMaxUsageQuantity = 3;
        QVERIFY(!run.state.CountersLocked && run.state.dayCounts.isRead());
        for (const QChar step : QStringLiteral("-B")) {
            run.step(step);
            run.state.dayCounts.follow();
            QVERIFY(run.state.CountersLocked && !run.state.dayCounts.isRead());
            QCOMPARE(run.state.BDFY1MMaxUsageQuantity, 5000);
        }
        run.step(u'-');
        run.step(u'A');
        run.state.dayCounts.follow();
        QVERIFY(run.state.CountersLocked && !run.state.dayCounts.isRead()); // somebody else may have counted
        QCOMPARE(run.state.BDFY1MMaxUsageQuantity, 3);
    }

    void anOlderCountNeverComesLast_data()
    {
        QTest::addColumn<QString>("steps"); // letters: see below
        QTest::addColumn<QString>("sent");  // "1 2" what went out, "x1" what was called off
        QTest::newRow("one after the other") << "1e2e"
                                             << "1 2";
        QTest::newRow("the second waits for the first") << "12"
                                                        << "1";
        QTest::newRow("and goes then") << "12e"
                                       << "1 2";
        QTest::newRow("the third takes the place of the second") << "123e"
                                                                 << "1 3";
        QTest::newRow("another column and another receiver do not wait") << "1XB"
                                                                         << "1 X B";
        QTest::newRow("an exit passes what is stuck") << "12o"
                                                      << "1 x1 2";
        QTest::newRow("whose end changes nothing") << "12ol"
                                                   << "1 x1 2";
        QTest::newRow("an exit with nothing that waits") << "1o"
                                                         << "1";
        QTest::newRow("an exit's own write, nothing before it") << "2w"
                                                                << "2";
        QTest::newRow("an exit's own write, older ones before it") << "132w"
                                                                   << "1 x1";
        QTest::newRow("nothing of another column is called off") << "Xw"
                                                                 << "X";
        QTest::newRow("sent and ended at once") << "s123"
                                                << "1 2 3";
    }

    void anOlderCountNeverComesLast()
    {
        QFETCH(QString, steps);
        QStringList sent;
        QList<CountWrites::Ended> ends;
        bool atOnce = false;
        CountWrites writes([&](const mevo::CountWrite &write, const CountWrites::Ended &ended) {
            const QString what = write.statement;
            sent.append(what);
            if (atOnce) {
                ended();
            } else {
                ends.append(ended);
            }
            return [&sent, what, ended] {
                sent.append(u'x' + what);
                ended(); // as a connection does that is broken off
            };
        });
        for (const QChar step : qAsConst(steps)) {
            switch (step.toLatin1()) {
            case 'e': // the last one that was sent ends
                ends.takeLast()();
                break;
            case 'l': // the first one ends, late
                ends.takeFirst()();
                break;
            case 'o':
                writes.overtake();
                break;
            case 'w':
                writes.supersede(1, CountColumn::Baidu, 2);
                break;
            case 's':
                atOnce = true;
                break;
            case 'X':
                writes.add({1, CountColumn::XunFei, 5, step});
                break;
            case 'B':
                writes.add({2, CountColumn::Baidu, 5, step});
                break;
            default:
                writes.add({1, CountColumn::Baidu, step.digitValue(), step});
                break;
            }
        }
        QTEST(sent.join(u' '), "sent");
    }
};

QTEST_GUILESS_MAIN(TestDayCounts)
#include "tst_day_counts.moc"
