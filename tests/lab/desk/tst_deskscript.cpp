#include "desk/DeskRunner.h"
#include "desk/DeskScript.h"

#include <QTemporaryDir>
#include <QTest>

using namespace mevo::lab;

namespace {

DeskScript parse(const QString &text)
{
    return parseDeskScript(text, [](const QString &name) -> std::optional<QString> {
        return name == QLatin1String("PORT") ? std::optional<QString>(QStringLiteral("8080")) : std::nullopt;
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
    void steps_data();
    void steps();
    void errors_data();
    void errors();
    void linesAreCounted();
    void everyStepCanBeRun();
    void failingStepEndsTheScript();
    void commandIsTriedUntilItSucceeds();
};

void DeskScriptTest::steps_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString::fromUtf8(line) << QString::fromUtf8(expected);
    };
    row("plug", "plug");
    row("  press   8  # the microphone key", "press|8");
    row("target xterm as first", "target|xterm;as=first");
    row("wait-text \"你好 world\" within 2000", "wait-text|你好 world;within=2000");
    row("wait-text \"a\" in first within 10", "wait-text|a;in=first;within=10");
    row("wait-text \"within\"", "wait-text|within");
    row("wait-log \"x within\" within 5", "wait-log|x within;within=5");
    row(R"(expect-text "a \"b\" \\ c\n")", "expect-text|a \"b\" \\ c\n");
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

void DeskScriptTest::steps()
{
    QFETCH(QString, line);
    const DeskScript script = parse(line);
    QVERIFY2(script.valid(), qPrintable(script.error));
    QCOMPARE(int(script.steps.size()), 1);
    QTEST(describe(script.steps.front()), "expected");
}

void DeskScriptTest::errors_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("part");
    const auto row = [](const char *line, const char *part) {
        QTest::newRow(line) << QString::fromUtf8(line) << QString::fromUtf8(part);
    };
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

void DeskScriptTest::errors()
{
    QFETCH(QString, line);
    QFETCH(QString, part);
    const DeskScript script = parse(QStringLiteral("plug\n\n") + line + QStringLiteral("\nunplug"));
    QCOMPARE(script.errorLine, 3);
    QVERIFY2(script.error.contains(part), qPrintable(script.error));
    QCOMPARE(int(script.steps.size()), 1);
}

void DeskScriptTest::linesAreCounted()
{
    const DeskScript script = parse(QStringLiteral("# title\n\nplug\r\n   \nunplug"));
    QVERIFY(script.valid());
    QCOMPARE(int(script.steps.size()), 2);
    QCOMPARE(script.steps[0].line, 3);
    QCOMPARE(script.steps[0].source, QStringLiteral("plug"));
    QCOMPARE(script.steps[1].line, 5);
}

void DeskScriptTest::everyStepCanBeRun()
{
    // Whatever the parser lets through has somebody who carries it out, and a missing desk is a failure
    // with a finding, not a crash.
    for (const QString &usage : deskStepHelp()) {
        const QString verb = usage.section(QRegularExpression(QStringLiteral("[ :]")), 0, 0);
        DeskRunner runner({}, nullptr);
        DeskStep step;
        step.verb = verb;
        step.arguments = QStringList{QStringLiteral("false"), QStringLiteral("0"), QStringLiteral("0")};
        step.options.insert(QStringLiteral("within"), QStringLiteral("0"));
        step.options.insert(QStringLiteral("for"), QStringLiteral("0"));
        if (verb == QLatin1String("key") || verb == QLatin1String("click"))
            continue; // would reach the display that the test runs on
        const DeskRunner::Result result = runner.runStep(step);
        QVERIFY2(!result.seen.startsWith(QLatin1String("unknown command")), qPrintable(verb));
        QVERIFY2(result.ok || !result.seen.isEmpty(), qPrintable(verb));
    }
}

void DeskScriptTest::failingStepEndsTheScript()
{
    DeskRunner runner({}, nullptr);
    QVERIFY(!runner.run(parse(QStringLiteral("plug\nwait-feature 05 within 0\nunplug"))));
    QVERIFY2(runner.console().receiver().plugged(), "the step after the failure was run");
    DeskRunner other({}, nullptr);
    QVERIFY(other.run(parse(QStringLiteral("plug\nsh \"exit 0\"\nunplug"))));
    QVERIFY(!other.console().receiver().plugged());
}

void DeskScriptTest::commandIsTriedUntilItSucceeds()
{
    const QTemporaryDir folder;
    const QString count =
        QStringLiteral("echo x >>%1/tries; test $(wc -l <%1/tries) -ge ").arg(folder.path());
    const auto passes = [](const QString &line) { return DeskRunner({}, nullptr).run(parse(line)); };
    QVERIFY(!passes(QStringLiteral("sh \"%1 2\"").arg(count)));
    QVERIFY(passes(QStringLiteral("sh \"%1 4\" within 20000").arg(count)));
    QVERIFY(!passes(QStringLiteral("sh \"%1 1000000\" within 200").arg(count)));
    // A command that takes longer has its one try all the same.
    QVERIFY(passes(QStringLiteral("sh \"sleep 0.3\" within 100")));
}

QTEST_GUILESS_MAIN(DeskScriptTest)
#include "tst_deskscript.moc"
