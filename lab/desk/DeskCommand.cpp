#include "desk/DeskCommand.h"

#include "desk/DeskRunner.h"
#include "receiver/QuitOnSignal.h"
#include "receiver/XTestKeyboard.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

namespace mevo::lab {

namespace {

constexpr int badScriptCode = 2;

/// The script's text; nothing, with a message on standard error, when it cannot be read.
std::optional<QString> readScript(const QString &path)
{
    QFile file(path);
    const bool fromInput = path == QLatin1String("-");
    if (fromInput ? !file.open(stdin, QIODevice::ReadOnly) : !file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(path), qUtf8Printable(file.errorString()));
        return std::nullopt;
    }
    return QString::fromUtf8(file.readAll());
}

} // namespace

int runDesk(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral(
            "Runs a script of steps on the desk that DISPLAY, PULSE_SERVER and so on name.\n\nSteps:\n  ") +
        deskStepHelp().join(QStringLiteral("\n  ")));
    parser.addHelpOption();
    const QCommandLineOption program(QStringLiteral("program"), QStringLiteral("The program under test."),
                                     QStringLiteral("path"));
    const QCommandLineOption home(QStringLiteral("home"),
                                  QStringLiteral("The folder of its application files."),
                                  QStringLiteral("folder"));
    const QCommandLineOption artifacts(QStringLiteral("artifacts"), QStringLiteral("Where screenshots go."),
                                       QStringLiteral("folder"));
    parser.addOptions({program, home, artifacts});
    parser.addPositionalArgument(QStringLiteral("script"),
                                 QStringLiteral("The script, or - for standard input."));
    parser.process(arguments);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(badScriptCode);

    const QString path = parser.positionalArguments().first();
    const std::optional<QString> text = readScript(path);
    if (!text)
        return badScriptCode;
    const DeskScript script = parseDeskScript(*text, [](const QString &name) -> std::optional<QString> {
        const QByteArray variable = name.toLocal8Bit();
        return qEnvironmentVariableIsSet(variable.constData())
                   ? std::optional<QString>(qEnvironmentVariable(variable.constData()))
                   : std::nullopt;
    });
    if (!script.valid()) {
        std::fprintf(stderr, "%s:%d: %s\n", qUtf8Printable(path), script.errorLine,
                     qUtf8Printable(script.error));
        return badScriptCode;
    }

    quitOnSignals();
    const std::unique_ptr<XTestKeyboard> keyboard =
        qEnvironmentVariableIsEmpty("DISPLAY") ? nullptr : XTestKeyboard::open();
    DeskRunner::Options options;
    options.program = parser.value(program);
    if (parser.isSet(home))
        options.environment.insert(QStringLiteral("MEVO_HOME"),
                                   QFileInfo(parser.value(home)).absoluteFilePath());
    if (parser.isSet(artifacts))
        options.artifacts = QDir(parser.value(artifacts));
    options.name =
        QFileInfo(path).completeBaseName() + QLatin1Char('-') +
        qEnvironmentVariable("MEVO_DESK_WM", QStringLiteral("desk")); // may run under several at once
    DeskRunner runner(options, keyboard.get());
    // Inside the event loop, so that a signal can end it.
    QTimer::singleShot(0, QCoreApplication::instance(),
                       [&] { QCoreApplication::exit(runner.run(script) ? 0 : 1); });
    return QCoreApplication::exec();
}

} // namespace mevo::lab
