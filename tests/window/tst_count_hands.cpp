// The day's counters of the whole program, against rows of a real database.

#include "audio/AudioRecorder.h"
#include "backend/LabCipher.h"
#include "backend/LabDatabase.h"
#include "service/WebCipher.h"
#include "support/ScriptedHttp.h"
#include "support/Texts.h"
#include "window/Program.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopedValueRollback>
#include <QTemporaryDir>

using mevo::CountColumn;
using Change = mevo::DeviceNotifier::Change;

namespace {

const WebCipher cipher;
const QString first = "02-01-001357"_s;
const QString second = "02-01-001358"_s;
const QString baidu = "BDSR1DUsedQuantity"_s;
const QString readsRecord = "select * from mevodb.device_serialid"_s;

/// The backend: statements are run as they arrive. Some are answered with an error, or wait for their answer.
class Backend
{
public:
    Backend()
    {
        ready = m_database.open(m_folder.filePath("rows.sqlite"_s), "mevodb"_s, lab::LabCipher());
        server.answering = [this](const ScriptedRequest &request) { return answer(request); };
        row(first, baidu, 300);
        run("insert into mevodb.device_serialid (DongleID) values ('%1')"_s.arg(second));
        row(second, baidu, 7);
        for (const QString &id : {first, second}) {
            set(id, "LastLoginDateTime='2026-11-24T08:00:00'"_s);
        }
    }

    ScriptedHttp server;
    bool ready = false;
    QString refused;     ///< statements that begin so are answered with an error, and not run
    QString held;        ///< the answers to statements with this in them wait for server.answerHeld()
    QStringList counted; ///< the counts that were written, as "COLUMN=COUNT", a day that began as "day"

    void set(const QString &id, const QString &assignments)
    {
        run("update mevodb.device_serialid set %1 where DongleID='%2'"_s.arg(assignments, id));
    }
    void row(const QString &id, const QString &column, int count)
    {
        set(id, "%1=%2"_s.arg(column).arg(count));
    }
    int row(const QString &id, const QString &column)
    {
        const QJsonObject found =
            run("select %1 from mevodb.device_serialid where DongleID='%2'"_s.arg(column, id));
        return found.value("result0"_s).toObject().value(column).toString().toInt();
    }

private:
    QJsonObject run(const QString &statement) { return m_database.run(statement.toUtf8()); }
    ScriptedAnswer answer(const ScriptedRequest &request)
    {
        const int tag = request.target.indexOf("___");
        if (tag < 0) {
            return ScriptedAnswer::body("{}");
        }
        const QByteArray rest = request.target.mid(tag + 3);
        const QString statement = cipher.DecryptString(QString::fromLatin1(rest.right(rest.size() & ~31)));
        if (!refused.isEmpty() && statement.startsWith(refused)) {
            return ScriptedAnswer::body({}, 503);
        }
        static const QRegularExpression count("set (\\w+UsedQuantity=\\d+)(, )?"_s);
        const QRegularExpressionMatch match = count.match(statement);
        if (match.hasMatch()) {
            counted.append(match.captured(2).isEmpty() ? match.captured(1) : "day"_s);
        }
        const QJsonObject reply = statement == QLatin1String("newGetNewVer")
                                      ? QJsonObject{{"items"_s, 1}, {"result"_s, "107"_s}}
                                      : run(statement);
        const QString json = QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact));
        const QByteArray hex = cipher.EncryptString(json).toLatin1();
        const ScriptedAnswer whole =
            ScriptedAnswer::body(QByteArray::number(hex.size()).rightJustified(5, '0') + hex);
        return !held.isEmpty() && statement.contains(held) ? ScriptedAnswer::late(whole) : whole;
    }

    QTemporaryDir m_folder;
    lab::LabDatabase m_database;
};

struct Desk
{
    Backend backend;
    Program program{true, backend.server.host()};

    MainWindow &start()
    {
        program.start();
        program.settle();
        return window();
    }
    MainWindow &window() const { return *program.window; }
    void speak(CountColumn column = CountColumn::Baidu) const { window().dayCounts.count(column); }
    /// As after each sentence.
    void flush() const { window().updateRecCountsTimerOut(); }
    void unplug()
    {
        program.change(Change::Removal);
        program.settle();
    }
    void plug(const QByteArray &identity)
    {
        program.fake.hid->identityReply = QByteArray::fromHex(identity);
        program.change(Change::Arrival);
        program.settle();
    }
    void plugFirst() { plug("010c5713000100020000000000000000"); }
    void plugSecond() { plug("010c5813000100020000000000000000"); }
};

} // namespace

class TestCountHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The first reading has failed: what is said is kept, and one more reading, a while later, brings both
    /// together.
    void aFailedReadingIsMadeGood()
    {
        Desk desk;
        QVERIFY(desk.backend.ready);
        desk.backend.refused = readsRecord;
        desk.start();
        QVERIFY(desk.window().CountersLocked && desk.window().BackendReachable);
        desk.speak();
        desk.speak(CountColumn::Translation);
        desk.flush();
        desk.program.settle(); // and this one fails as well
        QVERIFY(desk.window().CountersLocked && desk.backend.counted.isEmpty());
        desk.backend.refused.clear();
        desk.program.settle();
        QVERIFY(desk.window().CountersLocked); // nobody asks unless something is counted
        const qint64 before = desk.program.fake.time->monotonicMs();
        const QScopedValueRollback<int> look(MainWindow::quietLookMs, 1);
        desk.window().Recording = true; // a record may show a box and end the program
        desk.flush();
        desk.flush();
        desk.program.settle();
        QVERIFY(desk.window().CountersLocked);
        desk.window().Recording = false;
        QTRY_VERIFY(!desk.window().CountersLocked);
        QVERIFY(desk.program.fake.time->monotonicMs() - before >= 30000);
        QTRY_COMPARE(desk.backend.row(first, baidu), 301);
        QTRY_COMPARE(desk.backend.row(first, "BDFY1MUsedQuantity"_s), 1);
        QCOMPARE(desk.backend.counted.size(), 2);
        QCOMPARE(desk.window().BDSR1DUsedQuantity, 301);
    }

    void whatIsSaidWhileTheRecordIsReadIsAdded()
    {
        Desk desk;
        desk.backend.refused = readsRecord;
        MainWindow &window = desk.start();
        desk.backend.refused.clear();
        desk.backend.held = readsRecord;
        desk.backend.server.onRequest = [&](const ScriptedRequest &) {
            desk.backend.server.onRequest = nullptr;
            QTimer::singleShot(0, &window, [&] {
                desk.speak();
                desk.flush();
                desk.speak(CountColumn::XunFei); // of an engine that is not in force any more
                desk.backend.held.clear();
                desk.backend.server.answerHeld();
            });
        };
        window.ReadServerInfo();
        QTRY_COMPARE(desk.backend.row(first, baidu), 301);
        QTRY_COMPARE(desk.backend.row(first, "XFSR1DUsedQuantity"_s), 1);
        desk.program.settle();
        QCOMPARE(desk.backend.counted.size(), 2); // each once
    }

    void anExitBeforeTheReadingWritesNothingOver_data()
    {
        QTest::addColumn<QByteArray>("exit");
        for (const char *exit : {"on_exitAppAction", "RebootAppDelayTimeout", "exitByItself"}) {
            QTest::newRow(exit) << QByteArray(exit);
        }
    }
    void anExitBeforeTheReadingWritesNothingOver()
    {
        QFETCH(QByteArray, exit);
        Desk desk;
        desk.backend.refused = readsRecord;
        MainWindow &window = desk.start();
        desk.speak();
        window.recorder()->UseTXASRApi = true;
        QVERIFY(QMetaObject::invokeMethod(&window, exit.constData()));
        QVERIFY(window.recorder() == nullptr);
        QCOMPARE(desk.backend.counted, QStringList());
        QCOMPARE(desk.backend.row(first, baidu), 300);
    }

    void eachReceiverHasItsOwnCounts()
    {
        Desk desk;
        desk.start();
        desk.backend.refused = "update"_s; // what is said cannot be told
        desk.speak();
        desk.flush();
        QTRY_VERIFY(!desk.backend.server.requests.isEmpty());
        desk.unplug();
        desk.speak(); // of the one that comes
        desk.flush();
        desk.backend.refused.clear();
        desk.plugSecond();
        QCOMPARE(desk.window().DongleID, second);
        QTRY_COMPARE(desk.backend.row(second, baidu), 8);
        desk.speak();
        desk.flush();
        QTRY_COMPARE(desk.backend.row(second, baidu), 9);
        QCOMPARE(desk.backend.row(first, baidu), 300);
        desk.unplug();
        desk.plugFirst();
        QTRY_COMPARE(desk.backend.row(first, baidu), 301);
        QCOMPARE(desk.backend.row(second, baidu), 9);
    }

    void whatIsSaidOfflineOutlastsAReading()
    {
        Desk desk;
        MainWindow &window = desk.start();
        window.BackendReachable = false;
        desk.speak();
        desk.speak();
        desk.flush();
        window.BackendReachable = true;
        window.ReadServerInfo();
        QTRY_COMPARE(desk.backend.row(first, baidu), 302);
        window.ReadServerInfo();
        QCOMPARE(window.BDSR1DUsedQuantity, 302);
    }

    /// The day is settled before anything is written that was said before.
    void theDayChangesWhileTheCountersAreLocked()
    {
        Desk desk;
        desk.backend.set(first, "LastLoginDateTime='2026-11-22T08:00:00',TXSR1DUsedQuantity=500"_s);
        desk.backend.refused = readsRecord;
        MainWindow &window = desk.start();
        desk.speak();
        desk.speak(CountColumn::Translation);
        desk.flush();
        desk.backend.refused.clear();
        desk.flush();
        desk.program.settle();
        QTRY_COMPARE(desk.backend.counted.size(), 3);
        QCOMPARE(desk.backend.counted.takeFirst(), "day"_s);
        desk.backend.counted.sort();
        QCOMPARE(desk.backend.counted.join(u' '), "BDFY1MUsedQuantity=1 BDSR1DUsedQuantity=1"_s);
        QCOMPARE(desk.backend.row(first, baidu), 1);
        QCOMPARE(desk.backend.row(first, "TXSR1DUsedQuantity"_s), 0);
        QVERIFY(window.BDSR1DUsedQuantity == 1 && window.TXSR1DUsedQuantity == 0);
    }

    /// A count that is stuck holds back the next one, and not the exit's.
    void anExitDoesNotWaitBehindAStuckCount()
    {
        Desk desk;
        MainWindow &window = desk.start();
        desk.backend.held = "UsedQuantity=301,"_s;
        desk.speak();
        desk.flush();
        QTRY_COMPARE(desk.backend.counted.size(), 1);
        for (int i = 0; i < 2; ++i) {
            desk.speak();
            desk.flush();
        }
        QTest::qWait(50); // what would come now must not
        QCOMPARE(desk.backend.counted.size(), 1);
        QElapsedTimer time;
        time.start();
        window.exitByItself();
        QVERIFY(time.elapsed() < 1900); // less than one write may wait
        QCOMPARE(desk.backend.counted, (QStringList{"BDSR1DUsedQuantity=301"_s, "BDSR1DUsedQuantity=303"_s,
                                                    "BDSR1DUsedQuantity=303"_s}));
    }
};

QTEST_MAIN(TestCountHands)
#include "tst_count_hands.moc"
