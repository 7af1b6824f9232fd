#include "receiver/HidUsage.h"
#include "receiver/LaunchEnvironment.h"
#include "receiver/UeventSender.h"
#include "support/Rows.h"

#include <QTest>

using namespace mevo::lab;

class HidUsageTest : public QObject
{
    Q_OBJECT
private slots:
    void keycodes_data()
    {
        const Rows<int, int, int> row; // consumer, usage, keycode
        // Keycodes as "xmodmap -pk" shows them with evdev rules.
        row("a", 0, 0x04, 38);
        row("s", 0, 0x16, 39);
        row("v", 0, 0x19, 55);
        row("z", 0, 0x1D, 52);
        row("1", 0, 0x1E, 10);
        row("0", 0, 0x27, 19);
        row("Return", 0, 0x28, 36);
        row("Escape", 0, 0x29, 9);
        row("BackSpace", 0, 0x2A, 22);
        row("F1", 0, 0x3A, 67);
        row("F6", 0, 0x3F, 72);
        row("F12", 0, 0x45, 96);
        row("Delete", 0, 0x4C, 119);
        row("Right", 0, 0x4F, 114);
        row("Left", 0, 0x50, 113);
        row("Down", 0, 0x51, 116);
        row("Up", 0, 0x52, 111);
        row("Control_L", 0, 0xE0, 37);
        row("Shift_L", 0, 0xE1, 50);
        row("Alt_L", 0, 0xE2, 64);
        row("Super_L", 0, 0xE3, 133);
        row("none", 0, 0x00, 0);
        row("error roll-over", 0, 0x01, 0);
        row("beyond the table", 0, 0xDF, 0);
        row("last byte", 0, 0xFF, 0);
        row("volume up", 1, 0xE9, 123);
        row("mute", 1, 0xE2, 121);
        row("home page", 1, 0x223, 180);
        row("unknown consumer key", 1, 0xFFF, 0);
    }
    void keycodes()
    {
        const auto [consumer, usage, keycode] = rowOf<int, int, int>();
        QCOMPARE(
            int(consumer ? keycodeOfConsumerUsage(quint16(usage)) : keycodeOfKeyboardUsage(quint8(usage))),
            keycode);
    }

    void lettersAreDistinct()
    {
        QSet<quint8> seen;
        for (int usage = 0x04; usage <= 0x27; ++usage)
            seen.insert(keycodeOfKeyboardUsage(quint8(usage)));
        QCOMPARE(seen.size(), 0x28 - 0x04);
    }

    void events_data()
    {
        const Rows<KeyboardReport, KeyboardReport, QString> row; // before, after, expected
        const KeyboardReport nothing;
        const KeyboardReport ctrlV{0x01, 0x19, 0};
        row("Ctrl+V down", nothing, ctrlV, "+37 +55");
        row("Ctrl+V up", ctrlV, nothing, "-55 -37");
        row("Ctrl stays", ctrlV, KeyboardReport{0x01, 0x16, 0}, "-55 +39");
        row("nothing new", ctrlV, ctrlV, "");
        row("modifiers", nothing, KeyboardReport{0x0F, 0, 0}, "+37 +50 +64 +133");
        row("unknown key", nothing, KeyboardReport{0, 0xFF, 0}, "");
        row("both pages", nothing, KeyboardReport{0, 0x19, 0xE9}, "+55 +123");
    }
    void events()
    {
        const auto [before, after, expected] = rowOf<KeyboardReport, KeyboardReport, QString>();
        QStringList seen;
        for (const KeyEvent &event : keyEvents(before, after))
            seen.append((event.press ? QLatin1Char('+') : QLatin1Char('-')) + QString::number(event.keycode));
        QCOMPARE(seen.join(QLatin1Char(' ')), expected);
    }

    void sanitizersAreFound()
    {
        const QByteArray output = "\tlinux-vdso.so.1 (0x00007ffd)\n"
                                  "\tlibasan.so.8 => /usr/lib/libasan.so.8 (0x00007f)\n"
                                  "\tlibQt5Core.so.5 => /usr/lib/libQt5Core.so.5 (0x00007f)\n"
                                  "\tlibtsan.so.2 => not found\n";
        QCOMPARE(sanitizerRuntimes(output).value(0), "/usr/lib/libasan.so.8"_s);
        QCOMPARE(sanitizerRuntimes("\tnot a dynamic executable\n"), QStringList());
        QCOMPARE(sanitizerRuntimes({}), QStringList());
    }

    void ueventLooksLikeUdevs()
    {
        const DevicePath device{"/devices/x/hidraw/hidraw3", "hidraw", {}};
        const QByteArray message =
            ueventMessage("add", device, "MAJOR=136\nDEVNAME=hidraw3\nSUBSYSTEM=hidraw\n", 7);
        QVERIFY(message.startsWith(QByteArray("libudev\0", 8)));
        QCOMPARE(message.mid(8, 4).toHex(), QByteArray("feedcafe"));
        QCOMPARE(message.mid(40), QByteArray("ACTION=add\0DEVPATH=/devices/x/hidraw/hidraw3\0SEQNUM=7\0"
                                             "SUBSYSTEM=hidraw\0MAJOR=136\0DEVNAME=/dev/hidraw3\0",
                                             102));
    }
};

QTEST_GUILESS_MAIN(HidUsageTest)
#include "tst_hidusage.moc"
