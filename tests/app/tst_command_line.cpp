#include "app/CallRunning.h"
#include "app/CommandLine.h"
#include "support/FakePlatform.h"

#include <QtTest>

using mevo::CommandLine;

Q_DECLARE_METATYPE(CommandLine::Wish)
Q_DECLARE_METATYPE(mevo::SingleInstance::CallResult)

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
        QTest::newRow("two wishes for the one that runs")
            << "--talk --settings" << refuse << 2 << "only one wish";
        QTest::newRow("a wish, one dash") << "-talk" << refuse << 2 << "unknown option: -talk";
        QTest::newRow("nothing to type") << "--type" << refuse << 2 << "without its value: --type";
        QTest::newRow("help behind a wish") << "--talk --help" << print << 0 << "--type TEXT";
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

    void whatIsAskedOfTheOneThatRuns_data()
    {
        QTest::addColumn<QByteArrayList>("given");
        QTest::addColumn<QString>("message");
        QTest::newRow("nothing") << QByteArrayList{"notes.txt"} << R"({"do":"show","mevoinput":1})";
        QTest::newRow("talk") << QByteArrayList{"-style", "fusion", "--talk"}
                              << R"({"do":"talk","mevoinput":1})";
        QTest::newRow("settings") << QByteArrayList{"--settings"} << R"({"do":"settings","mevoinput":1})";
        QTest::newRow("type") << QByteArrayList{"--type", "一\n\"二\""}
                              << QStringLiteral(
                                     "{\"do\":\"type\",\"mevoinput\":1,\"text\":\"一\\n\\\"二\\\"\"}");
        QTest::newRow("a text that looks like an option")
            << QByteArrayList{"--type", "--help"} << R"({"do":"type","mevoinput":1,"text":"--help"})";
    }

    void whatIsAskedOfTheOneThatRuns()
    {
        QFETCH(QByteArrayList, given);
        QStringList arguments;
        for (const QByteArray &argument : given) {
            arguments.append(QString::fromUtf8(argument));
        }
        const CommandLine read = mevo::readCommandLine(arguments);
        QCOMPARE(read.wish, CommandLine::Wish::Run);
        QTEST(QString::fromUtf8(toMessage(read.call)), "message");
    }

    void aTextMustFitIntoAMessage()
    {
        const auto read = [](int characters) {
            return mevo::readCommandLine({QStringLiteral("--type"), QString(characters, QChar(u'字'))}).wish;
        };
        QCOMPARE(read(20000), CommandLine::Wish::Run);
        QCOMPARE(read(22000), CommandLine::Wish::Refuse); // of three bytes each
    }

    void whatTheSecondStartEndsWith_data()
    {
        QTest::addColumn<mevo::SingleInstance::CallResult>("result");
        QTest::addColumn<int>("code");
        const auto answered = [](const QByteArray &answer) {
            return mevo::SingleInstance::CallResult{true, answer, false, true};
        };
        QTest::newRow("typed") << answered(R"({"mevoinput":1,"answer":"done"})") << 0;
        QTest::newRow("kept") << answered(R"({"mevoinput":1,"answer":"kept"})") << 4;
        QTest::newRow("refused") << answered(R"({"mevoinput":1,"answer":"refused"})") << 5;
        QTest::newRow("another version") << answered(R"({"mevoinput":2,"answer":"done"})") << 5;
        QTest::newRow("no answer") << answered({}) << 5;
        QTest::newRow("garbage") << answered("\xff\xfe{") << 5;
        QTest::newRow("nobody there") << mevo::SingleInstance::CallResult{} << 3;
        QTest::newRow("stuck") << mevo::SingleInstance::CallResult{true, {}, false, false} << 5;
        QTest::newRow("gone before it took the text")
            << mevo::SingleInstance::CallResult{true, {}, true, false} << 3;
    }

    void whatTheSecondStartEndsWith()
    {
        QFETCH(mevo::SingleInstance::CallResult, result);
        FakePlatform fake;
        fake.singleInstance->reached = result;
        QTEST(
            mevo::typeByRunning(*fake.singleInstance, {mevo::InstanceCall::What::Type, QStringLiteral("a")}),
            "code");
    }

    /// A start does not wait for a stuck one over and over.
    void aStuckInstanceIsGivenUp()
    {
        FakePlatform fake;
        fake.singleInstance->free = false;
        fake.singleInstance->reached = {true, QByteArray(), false, false};
        QCOMPARE(mevo::takeLockOrCall(*fake.singleInstance, *fake.time, {}), std::optional<int>(5));
        QCOMPARE(fake.log.calls(QStringLiteral("call")).size(), 1);
    }

    void anInstanceThatComesOrGoesIsWaitedFor()
    {
        FakePlatform fake;
        fake.singleInstance->free = false;
        fake.singleInstance->reached.reached = false;
        const auto start = [&fake] {
            return mevo::takeLockOrCall(*fake.singleInstance, *fake.time,
                                        {mevo::InstanceCall::What::Talk, {}});
        };
        QCOMPARE(start(), std::optional<int>(5));
        QVERIFY(fake.log.calls(QStringLiteral("call")).size() > 10);
        fake.time->onSleep = [&fake] { fake.singleInstance->free = true; };
        QCOMPARE(start(), std::optional<int>());
        fake.singleInstance->free = false;
        fake.singleInstance->reached.reached = true;
        QCOMPARE(start(), std::optional<int>(0));
    }

    /// One that goes without an answer has shown no window; a text may have been typed, and is not sent
    /// again.
    void anInstanceThatGoesWithoutAnAnswer()
    {
        FakePlatform fake;
        fake.singleInstance->free = false;
        fake.singleInstance->reached = {true, QByteArray(), true, true};
        fake.time->onSleep = [&fake] { fake.singleInstance->free = true; };
        for (const auto what : {mevo::InstanceCall::What::Show, mevo::InstanceCall::What::Talk,
                                mevo::InstanceCall::What::Settings}) {
            fake.singleInstance->free = false;
            QCOMPARE(mevo::takeLockOrCall(*fake.singleInstance, *fake.time, {what, {}}),
                     std::optional<int>());
        }
        fake.log.clear();
        QCOMPARE(
            mevo::typeByRunning(*fake.singleInstance, {mevo::InstanceCall::What::Type, QStringLiteral("a")}),
            5);
        QCOMPARE(fake.log.calls(QStringLiteral("call")).size(), 1);
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
