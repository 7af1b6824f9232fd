#include "app/CommandLine.h"

#include <QtTest>

using mevo::CommandLine;

Q_DECLARE_METATYPE(CommandLine::Wish)

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsAreRead_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<CommandLine::Wish>("wish");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("said"); // a part of the text

        const auto run = CommandLine::Wish::Run;
        const auto print = CommandLine::Wish::Print;
        const auto refuse = CommandLine::Wish::Refuse;
        QTest::newRow("none") << "" << run << 0 << "";
        QTest::newRow("a file, as before") << "notes.txt -" << run << 0 << "";
        QTest::newRow("help") << "--help" << print << 0 << "--version";
        QTest::newRow("help, short") << "-h" << print << 0 << "Usage: mevoinput";
        QTest::newRow("version") << "--version" << print << 0 << "mevoinput V1.07\n";
        QTest::newRow("version, short") << "-v" << print << 0 << "mevoinput V1.07\n";
        QTest::newRow("the first wish counts") << "--version --help" << print << 0 << "mevoinput V1.07\n";
        QTest::newRow("unknown") << "--helpp" << refuse << 2 << "unknown option: --helpp";
        QTest::newRow("unknown, one dash") << "-x" << refuse << 2 << "unknown option: -x";
        QTest::newRow("unknown before a wish") << "--nothing --help" << refuse << 2 << "--nothing";
        QTest::newRow("Qt's, with value") << "-platform offscreen --style fusion" << run << 0 << "";
        QTest::newRow("Qt's, a value that looks like an option") << "-title --help" << run << 0 << "";
        QTest::newRow("Qt's, value missing") << "-platform" << refuse << 2 << "without its value: -platform";
        QTest::newRow("Qt's, in one word") << "-style=fusion" << run << 0 << "";
        QTest::newRow("of the session") << "-session 10d1_1_0" << run << 0 << "";
        QTest::newRow("behind the end of options") << "-- --nothing" << run << 0 << "";
    }

    void argumentsAreRead()
    {
        QFETCH(QString, line);
        QFETCH(CommandLine::Wish, wish);
        QFETCH(int, exitCode);
        QFETCH(QString, said);
        const CommandLine read = mevo::readCommandLine(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(read.wish, wish);
        QCOMPARE(read.exitCode(), exitCode);
        QVERIFY2(read.text.contains(said), qPrintable(read.text));
        QCOMPARE(read.text.isEmpty(), wish == CommandLine::Wish::Run);
    }

    void aRefusalIsOneLine()
    {
        const QString text = mevo::readCommandLine({QStringLiteral("--a\nb\x1b[2J")}).text;
        QCOMPARE(text.count(QLatin1Char('\n')), 1);
        QVERIFY(text.endsWith(QLatin1Char('\n')) && !text.contains(QChar(0x1b)));
    }
};

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_command_line.moc"
