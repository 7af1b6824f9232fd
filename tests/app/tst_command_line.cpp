#include "app/CallRunning.h"
#include "app/CommandLine.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::CommandLine;

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsAreRead_data()
    {
        // line, wish, exitCode, said (a part of the text)
        const Rows<QString, CommandLine::Wish, int, QString> row;

        const auto run = CommandLine::Wish::Run;
        const auto print = CommandLine::Wish::Print;
        const auto refuse = CommandLine::Wish::Refuse;
        row("none", "", run, 0, "");
        row("a file, as before", "notes.txt -", run, 0, "");
        row("help", "--help", print, 0, "--version");
        row("help, short", "-h", print, 0, "Usage: mevoinput");
        row("version", "--version", print, 0, "mevoinput V1.07\n");
        row("version, short", "-v", print, 0, "mevoinput V1.07\n");
        row("the first wish counts", "--version --help", print, 0, "mevoinput V1.07\n");
        row("unknown", "--helpp", refuse, 2, "unknown option: --helpp");
        row("unknown, one dash", "-x", refuse, 2, "unknown option: -x");
        row("unknown before a wish", "--nothing --help", refuse, 2, "--nothing");
        row("Qt's, with value", "-platform offscreen --style fusion", run, 0, "");
        row("Qt's, a value that looks like an option", "-title --help", run, 0, "");
        row("Qt's, value missing", "-platform", refuse, 2, "without its value: -platform");
        row("Qt's, in one word", "-style=fusion", run, 0, "");
        row("of the session", "-session 10d1_1_0", run, 0, "");
        row("two wishes for the one that runs", "--talk --settings", refuse, 2, "only one wish");
        row("a wish, one dash", "-talk", refuse, 2, "unknown option: -talk");
        row("nothing to type", "--type", refuse, 2, "without its value: --type");
        row("help behind a wish", "--talk --help", print, 0, "--type TEXT");
        row("behind the end of options", "-- --nothing", run, 0, "");
    }

    void argumentsAreRead()
    {
        const auto [line, wish, exitCode, said] = rowOf<QString, CommandLine::Wish, int, QString>();
        const CommandLine read = mevo::readCommandLine(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(read.wish, wish);
        QCOMPARE(read.exitCode(), exitCode);
        QVERIFY2(read.text.contains(said), qPrintable(read.text));
        QCOMPARE(read.text.isEmpty(), wish == CommandLine::Wish::Run);
    }

    void whatIsAskedOfTheOneThatRuns_data()
    {
        const Rows<QByteArrayList, QString> row; // given, message
        row("nothing", QByteArrayList{"notes.txt"}, R"({"do":"show","mevoinput":1})");
        row("talk", QByteArrayList{"-style", "fusion", "--talk"}, R"({"do":"talk","mevoinput":1})");
        row("settings", QByteArrayList{"--settings"}, R"({"do":"settings","mevoinput":1})");
        row("type", QByteArrayList{"--type", "一\n\"二\""},
            "{\"do\":\"type\",\"mevoinput\":1,\"text\":\"一\\n\\\"二\\\"\"}"_s);
        row("a text that looks like an option", QByteArrayList{"--type", "--help"},
            R"({"do":"type","mevoinput":1,"text":"--help"})");
    }

    void whatIsAskedOfTheOneThatRuns()
    {
        const auto [given, message] = rowOf<QByteArrayList, QString>();
        QStringList arguments;
        for (const QByteArray &argument : given) {
            arguments.append(QString::fromUtf8(argument));
        }
        const CommandLine read = mevo::readCommandLine(arguments);
        QCOMPARE(read.wish, CommandLine::Wish::Run);
        QCOMPARE(QString::fromUtf8(toMessage(read.call)), message);
    }

    void aTextMustFitIntoAMessage()
    {
        const auto read = [](int characters) {
            return mevo::readCommandLine({"--type"_s, QString(characters, QChar(u'字'))}).wish;
        };
        QCOMPARE(read(20000), CommandLine::Wish::Run);
        QCOMPARE(read(22000), CommandLine::Wish::Refuse); // of three bytes each
    }

    void whatTheSecondStartEndsWith_data()
    {
        const Rows<mevo::SingleInstance::CallResult, int> row; // result, code
        const auto answered = [](const QByteArray &answer) {
            return mevo::SingleInstance::CallResult{true, answer, false, true};
        };
        row("typed", answered(R"({"mevoinput":1,"answer":"done"})"), 0);
        row("kept", answered(R"({"mevoinput":1,"answer":"kept"})"), 4);
        row("refused", answered(R"({"mevoinput":1,"answer":"refused"})"), 5);
        row("another version", answered(R"({"mevoinput":2,"answer":"done"})"), 5);
        row("no answer", answered({}), 5);
        row("garbage", answered("\xff\xfe{"), 5);
        row("nobody there", mevo::SingleInstance::CallResult{}, 3);
        row("stuck", mevo::SingleInstance::CallResult{true, {}, false, false}, 5);
        row("gone before it took the text", mevo::SingleInstance::CallResult{true, {}, true, false}, 3);
    }

    void whatTheSecondStartEndsWith()
    {
        const auto [result, code] = rowOf<mevo::SingleInstance::CallResult, int>();
        FakePlatform fake;
        fake.singleInstance->reached = result;
        QCOMPARE(mevo::typeByRunning(*fake.singleInstance, {mevo::InstanceCall::What::Type, "a"_s}), code);
    }

    /// A start does not wait for a stuck one over and over.
    void aStuckInstanceIsGivenUp()
    {
        FakePlatform fake;
        fake.singleInstance->free = false;
        fake.singleInstance->reached = {true, QByteArray(), false, false};
        QCOMPARE(mevo::takeLockOrCall(*fake.singleInstance, *fake.time, {}), std::optional<int>(5));
        QCOMPARE(fake.log.calls("call"_s).size(), 1);
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
        QVERIFY(fake.log.calls("call"_s).size() > 10);
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
        QCOMPARE(mevo::typeByRunning(*fake.singleInstance, {mevo::InstanceCall::What::Type, "a"_s}), 5);
        QCOMPARE(fake.log.calls("call"_s).size(), 1);
    }

    void aRefusalIsOneLine()
    {
        const QString text = mevo::readCommandLine({"--a\nb\x1b[2J"_s}).text;
        QCOMPARE(text.count(QLatin1Char('\n')), 1);
        QVERIFY(text.endsWith(QLatin1Char('\n')) && !text.contains(QChar(0x1b)));
    }
};

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_command_line.moc"
