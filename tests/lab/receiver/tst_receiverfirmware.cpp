#include "receiver/ReceiverConsole.h"
#include "receiver/ReceiverFirmware.h"
#include "receiver/ReportLog.h"

#include <QTest>

using mevo::lab::KeyboardReport;
using mevo::lab::ReceiverConsole;
using mevo::lab::ReceiverFirmware;
using Outcome = ReceiverFirmware::Outcome;

namespace {

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

QByteArray describe(const Outcome &outcome)
{
    QByteArray text;
    if (!outcome.accepted)
        text += "stall ";
    if (!outcome.known)
        text += "unknown ";
    for (const QByteArray &report : outcome.reports)
        text += "report " + report.left(8).toHex(' ') + ' ';
    if (outcome.keyboard) {
        text += "keys " + QByteArray::number(outcome.keyboard->modifiers, 16) + ' ' +
                QByteArray::number(outcome.keyboard->usage, 16) + ' ' +
                QByteArray::number(outcome.keyboard->consumer, 16) + ' ';
    }
    if (outcome.wheelSteps != 0)
        text += "wheel " + QByteArray::number(outcome.wheelSteps) + ' ';
    return text.trimmed();
}

} // namespace

class ReceiverFirmwareTest : public QObject
{
    Q_OBJECT
private slots:
    void featureReports_data();
    void featureReports();
    void microphoneLatch();
    void heartbeatKeepsVoiceKeysAwake();
    void goodbyeSilencesAtOnce();
    void releaseOfSentPressIsOwed();
    void customKeys_data();
    void customKeys();
    void statusComesByItself();
    void consoleRefusesBadWords_data();
    void consoleRefusesBadWords();
};

void ReceiverFirmwareTest::featureReports_data()
{
    QTest::addColumn<QByteArray>("report");
    QTest::addColumn<QByteArray>("expected");
    // The start: left key 8, right key 3, 1600 dpi, 125 Hz, wheel 1, battery 3.
    QTest::newRow("identity") << bytes("052C000000000000") << QByteArray("report 01 0c 57 13 00 01 00 02");
    QTest::newRow("mouse id: no answer") << bytes("052D000000000000") << QByteArray();
    QTest::newRow("dpi 800") << bytes("0520100000000000") << QByteArray("report 01 20 08 03 00 40 00 03");
    QTest::newRow("dpi 2400") << bytes("0520100000020000") << QByteArray("report 01 20 08 03 00 42 00 03");
    QTest::newRow("rate 500") << bytes("0520200000000200") << QByteArray("report 01 20 08 03 00 61 00 03");
    QTest::newRow("wheel 2") << bytes("0520400000000002") << QByteArray("report 01 20 08 03 00 81 00 03");
    QTest::newRow("three at once") << bytes("0520700000000102")
                                   << QByteArray("report 01 20 08 03 00 90 00 03");
    QTest::newRow("no such dpi") << bytes("0520100000030000") << QByteArray();
    QTest::newRow("latch") << bytes("05200C0000000000") << QByteArray();
    QTest::newRow("left key") << bytes("0571010E00000000") << QByteArray("report 01 20 0e 03 00 41 00 03");
    QTest::newRow("right key") << bytes("0571020600000000") << QByteArray("report 01 20 08 06 00 41 00 03");
    QTest::newRow("no third key") << bytes("0571030600000000") << QByteArray("unknown");
    QTest::newRow("heartbeat") << bytes("0581010000000000") << QByteArray();
    QTest::newRow("Ctrl+V") << bytes("0581040119000000") << QByteArray("keys 1 19 0");
    QTest::newRow("no keys") << bytes("0581040000000000") << QByteArray("keys 0 0 0");
    QTest::newRow("consumer, 12 bits") << bytes("058106F223000000") << QByteArray("keys 0 0 223");
    QTest::newRow("other report") << bytes("05FF000000000000") << QByteArray("unknown");
    QTest::newRow("other operation") << bytes("0581090000000000") << QByteArray("unknown");
    QTest::newRow("wrong id") << bytes("062C000000000000") << QByteArray("stall unknown");
    QTest::newRow("short") << bytes("052C0000") << QByteArray("stall unknown");
    QTest::newRow("empty") << QByteArray() << QByteArray("stall unknown");
}

void ReceiverFirmwareTest::featureReports()
{
    QFETCH(QByteArray, report);
    QFETCH(QByteArray, expected);
    ReceiverFirmware firmware;
    firmware.powerOn(0);
    const Outcome outcome = firmware.feature(report, 10);
    QCOMPARE(describe(outcome), expected);
    for (const QByteArray &input : outcome.reports)
        QCOMPARE(input.size(), ReceiverFirmware::inputReportSize);
}

void ReceiverFirmwareTest::microphoneLatch()
{
    ReceiverFirmware firmware;
    firmware.powerOn(0);
    firmware.feature(bytes("05200C0000000000"), 1);
    QVERIFY(firmware.microphoneLatched());
    firmware.feature(bytes("0520100000000000"), 2);
    QVERIFY2(firmware.microphoneLatched(), "a settings report without the latch bit leaves the latch alone");
    firmware.feature(bytes("0520080000000000"), 3);
    QVERIFY(!firmware.microphoneLatched());
}

void ReceiverFirmwareTest::heartbeatKeepsVoiceKeysAwake()
{
    ReceiverFirmware firmware;
    firmware.powerOn(1000);
    QCOMPARE(describe(firmware.key(8, true, 3999)), QByteArray("report 01 70 08 01 00 00 00 00"));
    QCOMPARE(describe(firmware.key(3, true, 4000)), QByteArray());
    firmware.feature(bytes("0581010000000000"), 5000);
    QVERIFY(!firmware.voiceKeysSilent(7999));
    QVERIFY(firmware.voiceKeysSilent(8000));
    QCOMPARE(describe(firmware.key(9, true, 9000)), QByteArray("report 01 70 09 01 00 00 00 00"));
    firmware.options.heartbeatRule = false;
    QVERIFY(!firmware.voiceKeysSilent(9000));
    firmware.options.mute = true;
    QCOMPARE(describe(firmware.key(9, true, 9000)), QByteArray());
    QCOMPARE(describe(firmware.feature(bytes("052c000000000000"), 9000)), QByteArray());
    QCOMPARE(describe(firmware.tick(60000)), QByteArray());
}

void ReceiverFirmwareTest::goodbyeSilencesAtOnce()
{
    ReceiverFirmware firmware;
    firmware.powerOn(0);
    firmware.feature(bytes("0581070000000000"), 10);
    QCOMPARE(describe(firmware.key(8, true, 11)), QByteArray());
    firmware.feature(bytes("0581010000000000"), 12);
    QVERIFY(!firmware.voiceKeysSilent(13));
    firmware.feature(bytes("0581070000000000"), 14);
    firmware.powerOn(20);
    QVERIFY(!firmware.voiceKeysSilent(21));
}

void ReceiverFirmwareTest::releaseOfSentPressIsOwed()
{
    ReceiverFirmware firmware;
    firmware.powerOn(0);
    firmware.key(8, true, 10);
    QCOMPARE(describe(firmware.key(8, false, 9000)), QByteArray("report 01 70 08 00 00 00 00 00"));
    QCOMPARE(describe(firmware.key(8, true, 9001)), QByteArray());
    QCOMPARE(describe(firmware.key(8, false, 9002)), QByteArray());
}

void ReceiverFirmwareTest::customKeys_data()
{
    QTest::addColumn<int>("function");
    QTest::addColumn<QByteArray>("pressed");
    QTest::addColumn<QByteArray>("released");
    QTest::newRow("voice") << 14 << QByteArray("report 01 70 0e 01 00 00 00 00")
                           << QByteArray("report 01 70 0e 00 00 00 00 00");
    QTest::newRow("delete") << 15 << QByteArray("keys 0 4c 0") << QByteArray("keys 0 0 0");
    QTest::newRow("desktop") << 9 << QByteArray("keys 8 7 0") << QByteArray("keys 0 0 0");
    QTest::newRow("forward") << 10 << QByteArray("keys 4 4f 0") << QByteArray("keys 0 0 0");
    QTest::newRow("back") << 11 << QByteArray("keys 4 50 0") << QByteArray("keys 0 0 0");
    QTest::newRow("scroll up") << 12 << QByteArray("wheel 1") << QByteArray();
    QTest::newRow("scroll down") << 13 << QByteArray("wheel -1") << QByteArray();
}

void ReceiverFirmwareTest::customKeys()
{
    QFETCH(int, function);
    ReceiverFirmware firmware;
    firmware.powerOn(0);
    firmware.settings.rightKey = quint8(function);
    using Key = ReceiverFirmware::CustomKey;
    QTEST(describe(firmware.customKey(Key::Right, true, 1)), "pressed");
    QTEST(describe(firmware.customKey(Key::Right, false, 2)), "released");
}

void ReceiverFirmwareTest::statusComesByItself()
{
    ReceiverFirmware firmware;
    firmware.powerOn(0);
    QCOMPARE(describe(firmware.tick(999)), QByteArray());
    QCOMPARE(describe(firmware.tick(1000)), QByteArray("report 01 20 08 03 00 41 00 03"));
    QCOMPARE(describe(firmware.tick(1001)), QByteArray());
    firmware.feature(bytes("0520100000000000"), 1900);
    QCOMPARE(describe(firmware.tick(2100)), QByteArray());
    firmware.options.statusIntervalMs = 0;
    QCOMPARE(describe(firmware.tick(99999)), QByteArray());
}

void ReceiverFirmwareTest::consoleRefusesBadWords_data()
{
    QTest::addColumn<QString>("line");
    for (const char *line : {"",
                             "dance",
                             "press",
                             "press eleven",
                             "press 256",
                             "press -1",
                             "release 8",
                             "unplug",
                             "second",
                             "report zz",
                             "report 0",
                             "status battery",
                             "status battery 4",
                             "status dpi 1000",
                             "status rate -1",
                             "status left 256",
                             "status every soon",
                             "status speed 1",
                             "identity 1-2-3",
                             "heartbeat",
                             "heartbeat maybe",
                             "refuse zz",
                             "wait-feature within 10",
                             "wait-feature 05 within soon",
                             "wait-voice-keys",
                             "wait-open x",
                             "env"}) {
        QTest::newRow(line) << QString::fromLatin1(line);
    }
}

void ReceiverFirmwareTest::consoleRefusesBadWords()
{
    QFETCH(QString, line);
    ReceiverConsole console(nullptr);
    const ReceiverConsole::Answer answer = console.execute(line.split(QLatin1Char(' ')));
    QVERIFY(!answer.ok);
    QVERIFY(!answer.text.isEmpty());
    QVERIFY(!answer.text.contains(QLatin1Char('\n')));
}

QTEST_GUILESS_MAIN(ReceiverFirmwareTest)
#include "tst_receiverfirmware.moc"
