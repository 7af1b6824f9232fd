#include "receiver/ReceiverConsole.h"
#include "receiver/ReceiverFirmware.h"
#include "receiver/ReportLog.h"
#include "support/Rows.h"

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
    void featureReports_data()
    {
        const Rows<QByteArray, QByteArray> row; // report in base 16, expected
        // The start: left key 8, right key 3, 1600 dpi, 125 Hz, wheel 1, battery 3.
        row("identity", "052C000000000000", "report 01 0c 57 13 00 01 00 02");
        row("mouse id: no answer", "052D000000000000", "");
        row("dpi 800", "0520100000000000", "report 01 20 08 03 00 40 00 03");
        row("dpi 2400", "0520100000020000", "report 01 20 08 03 00 42 00 03");
        row("rate 500", "0520200000000200", "report 01 20 08 03 00 61 00 03");
        row("wheel 2", "0520400000000002", "report 01 20 08 03 00 81 00 03");
        row("three at once", "0520700000000102", "report 01 20 08 03 00 90 00 03");
        row("no such dpi", "0520100000030000", "");
        row("latch", "05200C0000000000", "");
        row("left key", "0571010E00000000", "report 01 20 0e 03 00 41 00 03");
        row("right key", "0571020600000000", "report 01 20 08 06 00 41 00 03");
        row("no third key", "0571030600000000", "unknown");
        row("heartbeat", "0581010000000000", "");
        row("Ctrl+V", "0581040119000000", "keys 1 19 0");
        row("no keys", "0581040000000000", "keys 0 0 0");
        row("consumer, 12 bits", "058106F223000000", "keys 0 0 223");
        row("other report", "05FF000000000000", "unknown");
        row("other operation", "0581090000000000", "unknown");
        row("wrong id", "062C000000000000", "stall unknown");
        row("short", "052C0000", "stall unknown");
        row("empty", "", "stall unknown");
    }
    void featureReports()
    {
        const auto [report, expected] = rowOf<QByteArray, QByteArray>();
        ReceiverFirmware firmware;
        firmware.powerOn(0);
        const Outcome outcome = firmware.feature(QByteArray::fromHex(report), 10);
        QCOMPARE(describe(outcome), expected);
        for (const QByteArray &input : outcome.reports)
            QCOMPARE(input.size(), ReceiverFirmware::inputReportSize);
    }

    void microphoneLatch()
    {
        ReceiverFirmware firmware;
        firmware.powerOn(0);
        firmware.feature(bytes("05200C0000000000"), 1);
        QVERIFY(firmware.microphoneLatched());
        firmware.feature(bytes("0520100000000000"), 2);
        QVERIFY2(firmware.microphoneLatched(),
                 "a settings report without the latch bit leaves the latch alone");
        firmware.feature(bytes("0520080000000000"), 3);
        QVERIFY(!firmware.microphoneLatched());
    }

    void heartbeatKeepsVoiceKeysAwake()
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

    void goodbyeSilencesAtOnce()
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

    void releaseOfSentPressIsOwed()
    {
        ReceiverFirmware firmware;
        firmware.powerOn(0);
        firmware.key(8, true, 10);
        QCOMPARE(describe(firmware.key(8, false, 9000)), QByteArray("report 01 70 08 00 00 00 00 00"));
        QCOMPARE(describe(firmware.key(8, true, 9001)), QByteArray());
        QCOMPARE(describe(firmware.key(8, false, 9002)), QByteArray());
    }

    void customKeys_data()
    {
        const Rows<int, QByteArray, QByteArray> row; // function, pressed, released
        row("voice", 14, "report 01 70 0e 01 00 00 00 00", "report 01 70 0e 00 00 00 00 00");
        row("delete", 15, "keys 0 4c 0", "keys 0 0 0");
        row("desktop", 9, "keys 8 7 0", "keys 0 0 0");
        row("forward", 10, "keys 4 4f 0", "keys 0 0 0");
        row("back", 11, "keys 4 50 0", "keys 0 0 0");
        row("scroll up", 12, "wheel 1", "");
        row("scroll down", 13, "wheel -1", "");
    }
    void customKeys()
    {
        const auto [function, pressed, released] = rowOf<int, QByteArray, QByteArray>();
        ReceiverFirmware firmware;
        firmware.powerOn(0);
        firmware.settings.rightKey = quint8(function);
        using Key = ReceiverFirmware::CustomKey;
        QCOMPARE(describe(firmware.customKey(Key::Right, true, 1)), pressed);
        QCOMPARE(describe(firmware.customKey(Key::Right, false, 2)), released);
    }

    void statusComesByItself()
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

    void consoleRefusesBadWords_data()
    {
        const Rows<> row;
        const QByteArray lines =
            "|dance|press|press eleven|press 256|press -1|release 8|unplug|second|report zz|report 0|status "
            "battery|status battery 4|status dpi 1000|status rate -1|status left 256|status every "
            "soon|status speed 1|identity 1-2-3|heartbeat|heartbeat maybe|refuse zz|wait-feature within "
            "10|wait-feature 05 within soon|wait-voice-keys|wait-open x|env";
        for (const QByteArray &line : lines.split('|')) {
            row(line);
        }
    }
    void consoleRefusesBadWords()
    {
        const QString line = QString::fromLatin1(QTest::currentDataTag());
        ReceiverConsole console(nullptr);
        const ReceiverConsole::Answer answer = console.execute(line.split(u' '));
        QVERIFY(!answer.ok && !answer.text.isEmpty() && !answer.text.contains(u'\n'));
    }
};

QTEST_GUILESS_MAIN(ReceiverFirmwareTest)
#include "tst_receiverfirmware.moc"
