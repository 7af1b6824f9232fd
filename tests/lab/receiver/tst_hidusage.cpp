#include "receiver/HidUsage.h"
#include "receiver/LaunchEnvironment.h"
#include "receiver/UeventSender.h"

#include <QTest>

using namespace mevo::lab;

Q_DECLARE_METATYPE(mevo::lab::KeyboardReport)

class HidUsageTest : public QObject
{
    Q_OBJECT
private slots:
    void keycodes_data();
    void keycodes();
    void lettersAreDistinct();
    void events_data();
    void events();
    void sanitizersAreFound();
    void ueventLooksLikeUdevs();
};

void HidUsageTest::keycodes_data()
{
    QTest::addColumn<int>("consumer");
    QTest::addColumn<int>("usage");
    QTest::addColumn<int>("keycode");
    // Keycodes as "xmodmap -pk" shows them with evdev rules.
    QTest::newRow("a") << 0 << 0x04 << 38;
    QTest::newRow("s") << 0 << 0x16 << 39;
    QTest::newRow("v") << 0 << 0x19 << 55;
    QTest::newRow("z") << 0 << 0x1D << 52;
    QTest::newRow("1") << 0 << 0x1E << 10;
    QTest::newRow("0") << 0 << 0x27 << 19;
    QTest::newRow("Return") << 0 << 0x28 << 36;
    QTest::newRow("Escape") << 0 << 0x29 << 9;
    QTest::newRow("BackSpace") << 0 << 0x2A << 22;
    QTest::newRow("F1") << 0 << 0x3A << 67;
    QTest::newRow("F6") << 0 << 0x3F << 72;
    QTest::newRow("F12") << 0 << 0x45 << 96;
    QTest::newRow("Delete") << 0 << 0x4C << 119;
    QTest::newRow("Right") << 0 << 0x4F << 114;
    QTest::newRow("Left") << 0 << 0x50 << 113;
    QTest::newRow("Down") << 0 << 0x51 << 116;
    QTest::newRow("Up") << 0 << 0x52 << 111;
    QTest::newRow("Control_L") << 0 << 0xE0 << 37;
    QTest::newRow("Shift_L") << 0 << 0xE1 << 50;
    QTest::newRow("Alt_L") << 0 << 0xE2 << 64;
    QTest::newRow("Super_L") << 0 << 0xE3 << 133;
    QTest::newRow("none") << 0 << 0x00 << 0;
    QTest::newRow("error roll-over") << 0 << 0x01 << 0;
    QTest::newRow("beyond the table") << 0 << 0xDF << 0;
    QTest::newRow("last byte") << 0 << 0xFF << 0;
    QTest::newRow("volume up") << 1 << 0xE9 << 123;
    QTest::newRow("mute") << 1 << 0xE2 << 121;
    QTest::newRow("home page") << 1 << 0x223 << 180;
    QTest::newRow("unknown consumer key") << 1 << 0xFFF << 0;
}

void HidUsageTest::keycodes()
{
    QFETCH(int, consumer);
    QFETCH(int, usage);
    QTEST(int(consumer ? keycodeOfConsumerUsage(quint16(usage)) : keycodeOfKeyboardUsage(quint8(usage))),
          "keycode");
}

void HidUsageTest::lettersAreDistinct()
{
    QSet<quint8> seen;
    for (int usage = 0x04; usage <= 0x27; ++usage)
        seen.insert(keycodeOfKeyboardUsage(quint8(usage)));
    QCOMPARE(seen.size(), 0x28 - 0x04);
}

void HidUsageTest::events_data()
{
    QTest::addColumn<KeyboardReport>("before");
    QTest::addColumn<KeyboardReport>("after");
    QTest::addColumn<QString>("expected");
    const KeyboardReport nothing;
    const KeyboardReport ctrlV{0x01, 0x19, 0};
    QTest::newRow("Ctrl+V down") << nothing << ctrlV << QStringLiteral("+37 +55");
    QTest::newRow("Ctrl+V up") << ctrlV << nothing << QStringLiteral("-55 -37");
    QTest::newRow("Ctrl stays") << ctrlV << KeyboardReport{0x01, 0x16, 0} << QStringLiteral("-55 +39");
    QTest::newRow("nothing new") << ctrlV << ctrlV << QString();
    QTest::newRow("modifiers") << nothing << KeyboardReport{0x0F, 0, 0} << QStringLiteral("+37 +50 +64 +133");
    QTest::newRow("unknown key") << nothing << KeyboardReport{0, 0xFF, 0} << QString();
    QTest::newRow("both pages") << nothing << KeyboardReport{0, 0x19, 0xE9} << QStringLiteral("+55 +123");
}

void HidUsageTest::events()
{
    QFETCH(KeyboardReport, before);
    QFETCH(KeyboardReport, after);
    QStringList seen;
    for (const KeyEvent &event : keyEvents(before, after))
        seen.append((event.press ? QLatin1Char('+') : QLatin1Char('-')) + QString::number(event.keycode));
    QTEST(seen.join(QLatin1Char(' ')), "expected");
}

void HidUsageTest::sanitizersAreFound()
{
    const QByteArray output = "\tlinux-vdso.so.1 (0x00007ffd)\n"
                              "\tlibasan.so.8 => /usr/lib/libasan.so.8 (0x00007f)\n"
                              "\tlibQt5Core.so.5 => /usr/lib/libQt5Core.so.5 (0x00007f)\n"
                              "\tlibtsan.so.2 => not found\n";
    QCOMPARE(sanitizerRuntimes(output).value(0), QStringLiteral("/usr/lib/libasan.so.8"));
    QCOMPARE(sanitizerRuntimes("\tnot a dynamic executable\n"), QStringList());
    QCOMPARE(sanitizerRuntimes({}), QStringList());
}

void HidUsageTest::ueventLooksLikeUdevs()
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

QTEST_GUILESS_MAIN(HidUsageTest)
#include "tst_hidusage.moc"
