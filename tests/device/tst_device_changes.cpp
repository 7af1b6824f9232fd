#include "device/DeviceChanges.h"
#include "support/Rows.h"

#include <QtTest>

using Change = mevo::DeviceChanges::Change;

namespace {

/// A receiver and the program's link to it: a new receiver cannot be opened over the handles of one that has
/// gone.
struct Link
{
    mevo::DeviceChanges changes;
    int plugged = 0; ///< which receiver is in, counted from 1; 0 for none
    int opened = 0;  ///< whose handles are open
    int last = 0;

    void toggle()
    {
        plugged = plugged == 0 ? ++last : 0;
        changes.add(plugged != 0 ? Change::Arrival : Change::Removal);
    }
    /// Carries one change out, while the receiver goes or comes `meanwhile` times.
    bool take(int meanwhile = 0)
    {
        const auto change = changes.take();
        if (!change) {
            return false;
        }
        if (*change == Change::Removal) {
            opened = 0;
        } else if (opened == 0) {
            opened = plugged;
        }
        for (int i = 0; i < meanwhile; ++i) {
            toggle();
        }
        changes.release();
        return true;
    }
};

} // namespace

class TestDeviceChanges : public QObject
{
    Q_OBJECT

private slots:
    void overtakenChangesAreDropped_data()
    {
        const Rows<QString, QString> row; // reported (+ arrival, - removal), taken
        row("arrival", "+", "+");
        row("removal", "-", "-");
        row("out and in", "-+", "-+");
        row("in and out", "+-", "-");
        row("ends out", "-+-", "-");
        row("ends in", "+-+-+", "-+");
        row("twice in", "++", "+");
    }
    void overtakenChangesAreDropped()
    {
        const auto [reported, expectedTaken] = rowOf<QString, QString>();
        mevo::DeviceChanges changes;
        for (const QChar each : reported) {
            changes.add(each == QLatin1Char('+') ? Change::Arrival : Change::Removal);
        }
        changes.hold();
        changes.hold();
        changes.release();
        QVERIFY(!changes.take());
        changes.release();
        QString taken;
        while (const auto change = changes.take()) {
            QVERIFY(!changes.take());
            taken += QLatin1Char(*change == Change::Arrival ? '+' : '-');
            changes.release();
        }
        QCOMPARE(taken, expectedTaken);
    }

    void anArrivalKnowsThatItIsOvertaken()
    {
        mevo::DeviceChanges changes;
        changes.add(Change::Arrival);
        QVERIFY(changes.take().has_value());
        changes.add(Change::Arrival);
        QVERIFY(!changes.overtaken());
        changes.add(Change::Removal);
        QVERIFY(changes.overtaken());
        changes.add(Change::Arrival); // back, but the handles are still of the one that has gone
        QVERIFY(changes.overtaken());
    }

    /// Every row of seven of: the receiver goes or comes; a change is taken, and nothing, one or two come
    /// meanwhile.
    void theEndIsThatOfTheLastChange()
    {
        constexpr int rows = 4 * 4 * 4 * 4 * 4 * 4 * 4;
        for (int row = 0; row < rows; ++row) {
            Link link;
            for (int rest = row; rest > 0; rest /= 4) {
                rest % 4 == 0 ? link.toggle() : void(link.take(rest % 4 - 1));
            }
            link.toggle();
            while (link.take()) {
            }
            QVERIFY2(link.opened == link.plugged,
                     qPrintable(
                         "row %1: %2 is in, %3 is open"_s.arg(row, 0, 4).arg(link.plugged).arg(link.opened)));
        }
    }
};

QTEST_GUILESS_MAIN(TestDeviceChanges)
#include "tst_device_changes.moc"
