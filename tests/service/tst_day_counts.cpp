#include "service/CountWrites.h"
#include "service/RecordColumns.h"
#include "support/Rows.h"

#include <QMap>
#include <QtTest>

using mevo::CountColumn;
using mevo::CountWrites;

namespace {

const QString column = "BDSR1DUsedQuantity"_s;

/// A program that counts, and the backend's rows of two receivers. It is led by a text, a letter a step:
///   A B  the receiver of this name is known    -  it is pulled out    e  its name is emptied
///   s    a sentence                            p  a press             a  the answer to it
///   [ ]  the record is asked for, and answered: the row as it is at "["; "R" is both
///   f l t  the count is written: answered; lost on the way; taken, but its answer is lost
///   o    another computer counts ten           d  a new day begins
struct Run
{
    MainState state;
    QMap<QString, int> rows{{"A"_s, 300}, {"B"_s, 7}};
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
            rows["A"_s] += 10;
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
        const Rows<QString, int> row; // steps, used
        row("before the first reading", "AssR", 302);
        row("offline, before a second reading", "ARsslR", 302);
        row("while the record is read", "AR[s]", 301);
        row("and written before the answer comes", "AR[sf]", 301);
        row("which the next reading knows", "AR[sf]R", 301);
        row("written before the reading is answered", "ARst[]", 301);
        row("taken, and its answer lost", "ARstR", 301);
        row("taken, its answer lost, and counted on", "ARstsR", 302);
        row("written, and nothing more", "ARsfR", 301);
        row("pulled out and put back", "ARs-AR", 301);
        row("put back before it is read", "As-AR", 301);
        row("used elsewhere meanwhile", "ARsf-oAsR", 312);
        row("another receiver's row", "ARss-BR", 7);
        row("another receiver's row, without its removal", "ARssBR", 7);
        row("another one counts for itself", "ARss-BsR", 8);
        row("the first one comes back", "ARss-BsR-AR", 302);
        row("answered after the removal", "ARp-aAR", 301);
        row("answered to another receiver", "ARp-BRa", 7);
        row("whose press it was", "ARp-BRa-AR", 301);
        row("pressed before the receiver is known", "pAaR", 301);
        row("known again by then", "AR-pAaR", 301);
        row("counted before the receiver is known again", "AR-psAaR", 302);
        row("never known", "p-AaR", 301);
        row("between the removal and the arrival", "ARs-s-sAR", 303);
        row("which is another receiver's", "ARs-s-sBR", 9);
        row("pressed between them", "AR-p-BaR", 8);
        row("the name is emptied", "ARessf", 302);
        row("a new day", "ARsfd", 0);
        row("a new day and what was not told", "AssRd", 2);
        row("a new day, counted on and read", "AssRdsfR", 3);
    }

    void whatIsCountedIsAdded()
    {
        const auto [steps, used] = rowOf<QString, int>();
        Run run;
        for (const QChar step : qAsConst(steps)) {
            run.step(step);
        }
        QCOMPARE(run.state.dayCounts.used(CountColumn::Baidu), used);
        QCOMPARE(run.state.dayCounts.used(CountColumn::XunFei), 0);
        if (!run.state.CountersLocked) { // the rest goes into the row, which holds what has been used
            const QString id = run.state.dayCounts.receiverId();
            run.step(u'f');
            QCOMPARE(run.rows.value(id), used);
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
        for (const QChar step : "-B"_s) {
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
        // steps (letters: see below), expected ("1 2" what went out, "x1" what was called off)
        const Rows<QString, QString> row;
        row("one after the other", "1e2e", "1 2");
        row("the second waits for the first", "12", "1");
        row("and goes then", "12e", "1 2");
        row("the third takes the place of the second", "123e", "1 3");
        row("another column and another receiver do not wait", "1XB", "1 X B");
        row("an exit passes what is stuck", "12o", "1 x1 2");
        row("whose end changes nothing", "12ol", "1 x1 2");
        row("an exit with nothing that waits", "1o", "1");
        row("an exit's own write, nothing before it", "2w", "2");
        row("an exit's own write, older ones before it", "132w", "1 x1");
        row("nothing of another column is called off", "Xw", "X");
        row("sent and ended at once", "s123", "1 2 3");
    }

    void anOlderCountNeverComesLast()
    {
        const auto [steps, expected] = rowOf<QString, QString>();
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
        QCOMPARE(sent.join(u' '), expected);
    }
};

QTEST_GUILESS_MAIN(TestDayCounts)
#include "tst_day_counts.moc"
