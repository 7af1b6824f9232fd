#include "desk/DeskRunner.h"
#include "desk/DeskScript.h"
#include "support/Rows.h"

#include <QTemporaryDir>
#include <QTest>

using namespace mevo::lab;

namespace {

DeskScript parse(const QString &text)
{
    return parseDeskScript(text, [](const QString &name) -> std::optional<QString> {
        return name == "PORT"_s ? std::optional<QString>("8080"_s) : std::nullopt;
    });
}

QString describe(const DeskStep &step)
{
    QString text = step.verb;
    for (const QString &argument : step.arguments)
        text += QLatin1Char('|') + argument;
    for (auto option = step.options.begin(); option != step.options.end(); ++option)
        text += QLatin1Char(';') + option.key() + QLatin1Char('=') + option.value();
    return text;
}

} // namespace

class DeskScriptTest : public QObject
{
    Q_OBJECT
private slots:
    void steps_data()
    {
        const Rows<QString> row; // expected, of the line that is the name
        row("plug", "plug");
        row("  press   8  # the microphone key", "press|8");
        row("target xterm as first", "target|xterm;as=first");
        row("wait-text \"你好 world\" within 2000", "wait-text|你好 world;within=2000");
        row("wait-text \"a\" in first within 10", "wait-text|a;in=first;within=10");
        row("wait-text \"within\"", "wait-text|within");
        row("wait-log \"x within\" within 5", "wait-log|x within;within=5");
        row("expect-text \"a \\\"b\\\" \\\\ c\\n\"", "expect-text|a \"b\" \\ c\n");
        row("expect-text \"\"", "expect-text|");
        row("note \"# no comment\"", "note|# no comment");
        row("expect-feature 05 81 01 within 300", "expect-feature|05|81|01;within=300");
        row("wait-feature 05 81 within 300", "wait-feature|05|81|within|300");
        row("http GET http://127.0.0.1:${PORT}/control/x contains \"ok\"",
            "http|GET|http://127.0.0.1:8080/control/x;contains=ok");
        row("start-program", "start-program");
        row("start-program --a b", "start-program|--a|b");
        row("speak \"turn it on\" voice kal16", "speak|turn it on;voice=kal16");
    }
    void steps()
    {
        const auto [expected] = rowOf<QString>();
        const QString line = QString::fromUtf8(QTest::currentDataTag());
        const DeskScript script = parse(line);
        QVERIFY2(script.valid(), qPrintable(script.error));
        QCOMPARE(int(script.steps.size()), 1);
        QCOMPARE(describe(script.steps.front()), expected);
    }

    void errors_data()
    {
        const Rows<QString> row; // part, of the line that is the name
        row("jump", "unknown step jump");
        row("\"\"", "unknown step");
        row("note \"open", "not closed");
        row("note \"open\\\"", "not closed");
        row("hold", "usage: hold MS");
        row("hold 1 2", "usage: hold MS");
        row("target", "usage: target");
        row("wait-text \"a\" within soon", "milliseconds");
        row("wait-text \"a\" within -5", "milliseconds");
        row("wait-text \"a\" within 5 within 6", "twice");
        row("wait-text \"a\" as x", "usage: wait-text");
        row("note ${HOST}", "no variable HOST");
        row("note ${PORT", "without }");
    }
    void errors()
    {
        const auto [part] = rowOf<QString>();
        const QString line = QString::fromUtf8(QTest::currentDataTag());
        const DeskScript script = parse("plug\n\n"_s + line + "\nunplug"_s);
        QCOMPARE(script.errorLine, 3);
        QVERIFY2(script.error.contains(part), qPrintable(script.error));
        QCOMPARE(int(script.steps.size()), 1);
    }

    void linesAreCounted()
    {
        const DeskScript script = parse("# title\n\nplug\r\n   \nunplug"_s);
        QVERIFY(script.valid());
        QCOMPARE(int(script.steps.size()), 2);
        QCOMPARE(script.steps[0].line, 3);
        QCOMPARE(script.steps[0].source, "plug"_s);
        QCOMPARE(script.steps[1].line, 5);
    }

    void everyStepCanBeRun()
    {
        // Whatever the parser lets through has somebody who carries it out, and a missing desk is a failure
        // with a finding, not a crash.
        for (const QString &usage : deskStepHelp()) {
            const QString verb = usage.section(QRegularExpression("[ :]"_s), 0, 0);
            DeskRunner runner({}, nullptr);
            DeskStep step;
            step.verb = verb;
            step.arguments = list({"false", "0", "0"});
            step.options.insert("within"_s, "0"_s);
            step.options.insert("for"_s, "0"_s);
            if (verb == "key"_s || verb == "click"_s)
                continue; // would reach the display that the test runs on
            const DeskRunner::Result result = runner.runStep(step);
            QVERIFY2(!result.seen.startsWith(QLatin1String("unknown command")), qPrintable(verb));
            QVERIFY2(result.ok || !result.seen.isEmpty(), qPrintable(verb));
        }
    }

    void failingStepEndsTheScript()
    {
        DeskRunner runner({}, nullptr);
        QVERIFY(!runner.run(parse("plug\nwait-feature 05 within 0\nunplug"_s)));
        QVERIFY2(runner.console().receiver().plugged(), "the step after the failure was run");
        DeskRunner other({}, nullptr);
        QVERIFY(other.run(parse("plug\nsh \"exit 0\"\nunplug"_s)));
        QVERIFY(!other.console().receiver().plugged());
    }

    void commandIsTriedUntilItSucceeds()
    {
        const QTemporaryDir folder;
        const QString count = "echo x >>%1/tries; test $(wc -l <%1/tries) -ge "_s.arg(folder.path());
        const auto passes = [](const QString &line) { return DeskRunner({}, nullptr).run(parse(line)); };
        QVERIFY(!passes("sh \"%1 2\""_s.arg(count)));
        QVERIFY(passes("sh \"%1 4\" within 20000"_s.arg(count)));
        QVERIFY(!passes("sh \"%1 1000000\" within 200"_s.arg(count)));
        // A command that takes longer has its one try all the same.
        QVERIFY(passes("sh \"sleep 0.3\" within 100"_s));
    }
};

QTEST_GUILESS_MAIN(DeskScriptTest)
#include "tst_deskscript.moc"
