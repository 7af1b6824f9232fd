#include "audio/LevelMeter.h"
#include "audio/MicrophoneChoice.h"
#include "audio/Samples.h"
#include "service/Statements.h"

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
        QTest::addColumn<QByteArray>("stereo");
        QTest::addColumn<QByteArray>("left");
        const QByteArray four = pcm({0x0101, -1, 0x0202, -2, 0x0303, -3, 0x0404, -4});
        QTest::newRow("the last frame is zero") << four << pcm({0x0101, 0x0202, 0x0303, 0});
        QTest::newRow("half a frame over") << four.left(14) << pcm({0x0101, 0x0202, 0x0303}) + '\0';
        QTest::newRow("odd number of bytes") << four.left(13) << pcm({0x0101, 0x0202, 0});
        QTest::newRow("one frame") << four.left(4) << pcm({0});
        QTest::newRow("too short for a frame") << four.left(3) << QByteArray(1, '\0');
        QTest::newRow("nothing") << QByteArray() << QByteArray();
    }
    void leftChannel()
    {
        QFETCH(QByteArray, stereo);
        QTEST(mevo::leftChannel(stereo.constData(), stereo.size()), "left");
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
        QTest::addColumn<QByteArray>("block");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("peak");
        QTest::newRow("greatest, not last") << pcm({0x0501, 0x2001, 0x0301}) << 3 << 0x2001 * 20 / 50;
        QTest::newRow("negative counts as silence") << pcm({-0x2001, -0x0101}) << 2 << 0;
        QTest::newRow("silence ends the block") << pcm({0x0101, 0, 0x2001}) << 3 << 0x0101 * 20 / 50;
        QTest::newRow("so does the low byte alone") << pcm({0x0101, 0x2000, 0x2001}) << 3 << 0x0101 * 20 / 50;
        QTest::newRow("the high byte leaves its sample") << pcm({0x0055, 0x2001}) << 2 << 0x55 * 20 / 50;
        QTest::newRow("starts with silence") << pcm({0, 0x2001}) << 2 << 0;
        QTest::newRow("clamped") << pcm({0x7fff}) << 1 << mevo::MaxMeterPeak;
        QTest::newRow("beyond the count") << pcm({0x0101, 0x2001}) << 1 << 0x0101 * 20 / 50;
        QTest::newRow("count of bytes, block of half") << pcm({0x0101, 0x0201}) << 4 << 0x0201 * 20 / 50;
        QTest::newRow("no count") << pcm({0x2001}) << 0 << 0;
        QTest::newRow("count below nothing") << pcm({0x2001}) << -5 << 0;
        QTest::newRow("empty") << QByteArray() << 640 << 0;
        QTest::newRow("longer than the meter") << QByteArray(6000, '\x11') << 6000 << 0x1111 * 20 / 50;
    }
    void meter()
    {
        QFETCH(QByteArray, block);
        QFETCH(int, count);
        QTEST(mevo::meterPeak(block, count, 20), "peak");
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
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("chosen");
        const QString builtIn = QStringLiteral("Built-in Audio");
        const QString own = QStringLiteral("USB mirandel Voice");
        const QString other = QStringLiteral("OR Voice");
        QTest::newRow("first of the list") << QStringList{builtIn, own, other} << own;
        QTest::newRow("other order") << QStringList{other, own} << other;
        QTest::newRow("case counts") << QStringList{QStringLiteral("or Mirandel qmz"),
                                                    QStringLiteral("xQMZx")}
                                     << QStringLiteral("xQMZx");
        QTest::newRow("none") << QStringList{builtIn} << QString();
        QTest::newRow("no microphone") << QStringList{} << QString();
    }
    void productMicrophone()
    {
        QFETCH(QStringList, names);
        QTEST(mevo::productMicrophone(names), "chosen");
    }

    void firstRunStatementKeepsPercentSigns()
    {
        const QString statement =
            mevo::deviceStatement(mevo::Statement::FirstRunTencent, QStringLiteral("a%2b"),
                                  {QStringLiteral("1"), QStringLiteral("01-02-030405")});
        QCOMPARE(statement, QStringLiteral("update a%2b.device_serialid set DefaultRecEngine=10, "
                                           "UseBDAPIPara ='0',ShowTXI='1', UseXFSDKPara = '0', "
                                           "UseTXAPIPara='1', UseXFWAPIPara='0' , EnableASR3='0', "
                                           "UseASR3Index='-1',UseBDFstPara = '1' where "
                                           "DongleID='01-02-030405'"));
    }
};

QTEST_APPLESS_MAIN(AudioDecisionsTest)
#include "tst_audio_decisions.moc"
