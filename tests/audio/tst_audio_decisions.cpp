#include "audio/LevelMeter.h"
#include "audio/MicrophoneChoice.h"
#include "audio/Samples.h"
#include "support/Rows.h"

#include <QTest>

#include <initializer_list>

namespace {

QByteArray pcm(std::initializer_list<int> samples)
{
    QByteArray bytes;
    for (int sample : samples) {
        bytes.append(static_cast<char>(sample & 0xff)).append(static_cast<char>(sample >> 8 & 0xff));
    }
    return bytes;
}

} // namespace

class AudioDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void leftChannel_data()
    {
        const Rows<QByteArray, QByteArray> row; // stereo, left
        const QByteArray four = pcm({0x0101, -1, 0x0202, -2, 0x0303, -3, 0x0404, -4});
        row("the last frame is zero", four, pcm({0x0101, 0x0202, 0x0303, 0}));
        row("half a frame over", four.left(14), pcm({0x0101, 0x0202, 0x0303}) + '\0');
        row("odd number of bytes", four.left(13), pcm({0x0101, 0x0202, 0}));
        row("one frame", four.left(4), pcm({0}));
        row("too short for a frame", four.left(3), QByteArray(1, '\0'));
        row("nothing", "", "");
    }
    void leftChannel()
    {
        const auto [stereo, left] = rowOf<QByteArray, QByteArray>();
        QCOMPARE(mevo::leftChannel(stereo.constData(), stereo.size()), left);
    }
    void leftChannelOfFullBlock()
    {
        const QByteArray block(mevo::MaxBlockBytes, 'x');
        const QByteArray left = mevo::leftChannel(block.constData(), block.size());
        QCOMPARE(left, QByteArray(1278, 'x') + QByteArray(2, '\0'));
        QCOMPARE(mevo::leftChannel(block.constData(), -1).size(), 0);
    }

    void meter_data()
    {
        const Rows<QByteArray, int, int> row; // block, count, peak
        row("greatest, not last", pcm({0x0501, 0x2001, 0x0301}), 3, 0x2001 * 20 / 50);
        row("negative counts as silence", pcm({-0x2001, -0x0101}), 2, 0);
        row("silence ends the block", pcm({0x0101, 0, 0x2001}), 3, 0x0101 * 20 / 50);
        row("so does the low byte alone", pcm({0x0101, 0x2000, 0x2001}), 3, 0x0101 * 20 / 50);
        row("the high byte leaves its sample", pcm({0x0055, 0x2001}), 2, 0x55 * 20 / 50);
        row("starts with silence", pcm({0, 0x2001}), 2, 0);
        row("clamped", pcm({0x7fff}), 1, mevo::MaxMeterPeak);
        row("beyond the count", pcm({0x0101, 0x2001}), 1, 0x0101 * 20 / 50);
        row("count of bytes, block of half", pcm({0x0101, 0x0201}), 4, 0x0201 * 20 / 50);
        row("no count", pcm({0x2001}), 0, 0);
        row("count below nothing", pcm({0x2001}), -5, 0);
        row("empty", "", 640, 0);
        row("longer than the meter", QByteArray(6000, '\x11'), 6000, 0x1111 * 20 / 50);
    }
    void meter()
    {
        const auto [block, count, peak] = rowOf<QByteArray, int, int>();
        QCOMPARE(mevo::meterPeak(block, count, 20), peak);
    }
    void meterLevels()
    {
        QCOMPARE(mevo::meterLevel(199, false), 0);
        QCOMPARE(mevo::meterLevel(200, false), 1);
        QCOMPARE(mevo::meterLevel(mevo::MaxMeterPeak, false), 24);
        QCOMPARE(mevo::meterLevel(199, true), 6);
    }

    void productMicrophone_data()
    {
        const Rows<QStringList, QString> row; // names, chosen
        const QString builtIn = "Built-in Audio"_s;
        const QString own = "USB mirandel Voice"_s;
        const QString other = "OR Voice"_s;
        row("first of the list", {builtIn, own, other}, own);
        row("other order", {other, own}, other);
        row("case counts", {"or Mirandel qmz", "xQMZx"}, "xQMZx");
        row("none", {builtIn}, "");
        row("no microphone", {}, "");
    }
    void productMicrophone()
    {
        const auto [names, chosen] = rowOf<QStringList, QString>();
        QCOMPARE(mevo::productMicrophone(names), chosen);
    }
};

QTEST_APPLESS_MAIN(AudioDecisionsTest)
#include "tst_audio_decisions.moc"
