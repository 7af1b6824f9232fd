#include "receiver/LaunchEnvironment.h"
#include "receiver/ReceiverConsole.h"
#include "receiver/WaitUntil.h"
#include "support/Texts.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <algorithm>

using namespace mevo::lab;

namespace {

constexpr int patienceMs = 20000;

/// The probe program on the test bed, and the lines that it has said.
class Probe
{
public:
    explicit Probe(const QByteArray &root)
    {
        const QString program = QCoreApplication::applicationDirPath() + "/receiver-probe"_s;
        m_process.setProcessEnvironment(launchEnvironment(root, program));
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] {
            while (m_process.canReadLine())
                lines.append(m_process.readLine().trimmed());
        });
        m_process.start(program, QStringList());
    }
    ~Probe()
    {
        m_process.write("quit\n");
        if (!m_process.waitForFinished(patienceMs))
            m_process.kill();
    }

    void command(const QByteArray &line) { m_process.write(line + '\n'); }
    int count(const QByteArray &start) const
    {
        return int(std::count_if(lines.begin(), lines.end(),
                                 [&start](const QByteArray &line) { return line.startsWith(start); }));
    }
    bool waitFor(const QByteArray &start, int times = 1)
    {
        return waitUntil([&] { return count(start) >= times; }, patienceMs, 1);
    }
    /// The last line that starts so; empty when none comes.
    QByteArray answer(const QByteArray &request, const QByteArray &start)
    {
        const int before = count(start);
        command(request);
        if (!waitFor(start, before + 1))
            return {};
        const auto last = std::find_if(lines.rbegin(), lines.rend(),
                                       [&start](const QByteArray &line) { return line.startsWith(start); });
        return last->mid(start.size() + 1);
    }
    bool quit()
    {
        command("quit");
        return m_process.waitForFinished(patienceMs) && m_process.exitStatus() == QProcess::NormalExit &&
               m_process.exitCode() == 0;
    }

    QList<QByteArray> lines;

private:
    QProcess m_process;
};

int openDescriptors()
{
    return QDir("/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

QByteArray numbered(int number)
{
    QByteArray report(ReceiverFirmware::inputReportSize, '\0');
    report[0] = 1;
    report[1] = 0x55;
    report[2] = char(number & 0xFF);
    report[3] = char(number >> 8);
    return report;
}

} // namespace

class VirtualReceiverTest : public QObject
{
    Q_OBJECT
private slots:
    void comesAndGoes()
    {
        ReceiverConsole console(nullptr);
        VirtualReceiver &receiver = console.receiver();
        receiver.configure([](ReceiverFirmware &firmware) { firmware.options.statusIntervalMs = 0; });
        Probe probe(console.bed().root());
        QVERIFY(probe.waitFor("ready"));
        QCOMPARE(probe.lines.value(0), QByteArray("not opened"));
        QCOMPARE(probe.answer("enumerate", "entries"), QByteArray());
        QCOMPARE(receiver.key(8, true), VirtualReceiver::KeyFate::Unplugged);

        QVERIFY(receiver.plug());
        QVERIFY(!receiver.plug());
        QVERIFY(probe.waitFor("add hidraw /dev/hidraw3"));
        QVERIFY(probe.waitFor("opened"));
        QCOMPARE(receiver.openCount(), 2);
        QCOMPARE(probe.answer("enumerate", "entries"), QByteArray("000d:1@/dev/hidraw3 ff00:1@/dev/hidraw3"));

        QCOMPARE(receiver.key(8, true), VirtualReceiver::KeyFate::Sent);
        const QByteArray press = " 01 70 08 01 00 00 00 00 00 00 00 00 00 00 00 00";
        QVERIFY(probe.waitFor("input" + press));
        QVERIFY(probe.waitFor("command" + press));

        QVERIFY(receiver.unplug());
        QVERIFY(!receiver.unplug());
        QVERIFY(probe.waitFor("remove hidraw /dev/hidraw3"));
        QVERIFY(probe.waitFor("closed"));
        QCOMPARE(probe.answer("enumerate", "entries"), QByteArray());
        QVERIFY(probe.quit());
        QCOMPARE(probe.count("input"), 1);
        QCOMPARE(probe.count("command"), 1);
    }

    void featureReportsRoundTrip()
    {
        ReceiverConsole console(nullptr);
        const auto run = [&console](const char *line) {
            return console.execute(QString::fromLatin1(line).split(QLatin1Char(' '))).line();
        };
        QCOMPARE(run("status every 0"), QByteArray("ok kept"));
        QCOMPARE(run("identity 0a-03-0102ff"), QByteArray("ok "));
        QCOMPARE(run("plug"), QByteArray("ok "));
        Probe probe(console.bed().root());
        QVERIFY(probe.waitFor("ready"));
        QCOMPARE(probe.lines.value(0), QByteArray("opened"));
        QCOMPARE(run("wait-open 2"), QByteArray("ok "));

        QCOMPARE(probe.answer("identity", "identity"),
                 QByteArray("01 0c ff 02 01 03 00 0a 00 00 00 00 00 00 00 00"));
        QCOMPARE(run("mark"), QByteArray("ok "));
        QCOMPARE(probe.answer("feature 05 20 10 00 00 02 00 00", "feature"), QByteArray("8"));
        QCOMPARE(run("wait-feature 05 20 10"), QByteArray("ok "));
        QVERIFY(probe.waitFor("input 01 20 08 03 00 42 00 03"));
        QVERIFY(run("state").contains("\"dpi\":2400"));
        QCOMPARE(run("no-feature 05 2c for 0"), QByteArray("ok "));
        QCOMPARE(run("wait-feature 05 81 within 0"),
                 QByteArray("error expected 05 81, seen 05 20 10 00 00 02 00 00"));

        QCOMPARE(probe.answer("feature 07 00 00 00 00 00 00 00", "feature"), QByteArray("-1"));
        QCOMPARE(run("refuse 05 81"), QByteArray("ok "));
        QCOMPARE(probe.answer("feature 05 81 01 00 00 00 00 00", "feature"), QByteArray("-1"));
        QCOMPARE(probe.answer("feature 05 2d 00 00 00 00 00 00", "feature"), QByteArray("8"));
        QCOMPARE(run("refuse none"), QByteArray("ok "));
        QCOMPARE(probe.answer("feature 05 81 07 00 00 00 00 00", "feature"), QByteArray("8"));
        QCOMPARE(run("press 8"), QByteArray("ok silent"));
        QCOMPARE(probe.answer("feature 05 81 01 00 00 00 00 00", "feature"), QByteArray("8"));
        QCOMPARE(run("press microphone"), QByteArray("ok sent"));

        const std::vector<LoggedReport> log = console.receiver().log().since();
        QVERIFY(std::is_sorted(log.begin(), log.end(),
                               [](const LoggedReport &a, const LoggedReport &b) { return a.ns < b.ns; }));
        QVERIFY(run("features").contains(R"("bytes":"05 81 01 00 00 00 00 00","kind":"feature")"));
    }

    void nodeVanishesWithoutEvent()
    {
        ReceiverConsole console(nullptr);
        QVERIFY(console.receiver().plug());
        Probe probe(console.bed().root());
        QVERIFY(probe.waitFor("ready"));
        QVERIFY(console.receiver().vanish());
        QVERIFY(probe.waitFor("lost"));
        QCOMPARE(probe.count("remove"), 0);
        QCOMPARE(probe.answer("feature 05 81 01 00 00 00 00 00", "feature"), QByteArray("-1"));
        QCOMPARE(probe.answer("enumerate", "entries"), QByteArray());
    }

    void secondReceiver()
    {
        ReceiverConsole console(nullptr);
        QVERIFY(console.receiver().plug());
        QVERIFY(console.execute({"second"_s, "plug"_s}).ok);
        Probe probe(console.bed().root());
        QVERIFY(probe.waitFor("ready"));
        const QByteArray both = probe.answer("enumerate", "entries");
        QCOMPARE(both.count("000d:1@"), 2);
        QVERIFY(both.contains("/dev/hidraw3"));
        QVERIFY(both.contains("/dev/hidraw4"));
        QVERIFY(console.second().unplug());
        QCOMPARE(probe.answer("enumerate", "entries").count("000d:1@"), 1);
    }

    void burstKeepsItsOrder()
    {
        ReceiverConsole console(nullptr);
        VirtualReceiver &receiver = console.receiver();
        receiver.configure([](ReceiverFirmware &firmware) { firmware.options.statusIntervalMs = 0; });
        receiver.plug();
        Probe probe(console.bed().root());
        QVERIFY(probe.waitFor("ready"));
        constexpr int bursts = 20;
        constexpr int perBurst = 50;
        for (int burst = 0; burst < bursts; ++burst) {
            for (int i = 0; i < perBurst; ++i)
                receiver.sendRaw(numbered(burst * perBurst + i));
            QVERIFY(probe.waitFor("input 01 55", (burst + 1) * perBurst));
            QVERIFY(probe.waitFor("command 01 55", (burst + 1) * perBurst));
        }
        QVERIFY(probe.quit());
        for (const QByteArray &handle : {QByteArray("input"), QByteArray("command")}) {
            int next = 0;
            for (const QByteArray &line : probe.lines) {
                if (line.startsWith(handle))
                    QCOMPARE(line, handle + ' ' + numbered(next++).toHex(' '));
            }
            QCOMPARE(next, bursts * perBurst);
        }
    }

    void overflowDropsTheNewest()
    {
        ReportQueue queue(PtyPair::create());
        for (int i = 0; i < int(ReportQueue::capacity); ++i)
            QVERIFY(queue.push(numbered(i)));
        QVERIFY(!queue.push(numbered(99)));
        QCOMPARE(*queue.take(), numbered(0));
        QVERIFY(queue.push(numbered(100)));
        QByteArray last;
        while (const auto report = queue.take())
            last = *report;
        QCOMPARE(last, numbered(100));
    }

    void twoHundredPlugCyclesLeakNothing()
    {
        ReceiverConsole console(nullptr);
        Probe probe(console.bed().root());
        QVERIFY(probe.waitFor("ready"));
        constexpr int cycles = 200;
        int ourDescriptors = 0;
        QByteArray itsDescriptors;
        for (int cycle = 1; cycle <= cycles; ++cycle) {
            QVERIFY(console.receiver().plug());
            QVERIFY(probe.waitFor("opened", cycle));
            console.receiver().key(8, true);
            QVERIFY(probe.waitFor("input 01 70 08 01", cycle));
            QVERIFY(console.receiver().unplug());
            QVERIFY(probe.waitFor("closed", cycle));
            QVERIFY(waitUntil([&] { return console.receiver().openCount() == 0; }, patienceMs, 1));
            if (cycle == 10) {
                ourDescriptors = openDescriptors();
                itsDescriptors = probe.answer("descriptors", "descriptors");
            }
        }
        QCOMPARE(probe.answer("descriptors", "descriptors"), itsDescriptors);
        QVERIFY2(openDescriptors() <= ourDescriptors,
                 qPrintable("%1 then %2"_s.arg(ourDescriptors).arg(openDescriptors())));
        QVERIFY(probe.quit());
    }

    void programOutlivesReceiver()
    {
        auto console = std::make_unique<ReceiverConsole>(nullptr);
        console->receiver().plug();
        Probe probe(console->bed().root());
        QVERIFY(probe.waitFor("ready"));
        console.reset();
        QCOMPARE(probe.answer("feature 05 81 01 00 00 00 00 00", "feature"), QByteArray("-2"));
        QVERIFY(probe.quit());
    }
};

QTEST_GUILESS_MAIN(VirtualReceiverTest)
#include "tst_virtualreceiver.moc"
