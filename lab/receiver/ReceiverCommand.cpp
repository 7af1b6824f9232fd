#include "receiver/ReceiverCommand.h"

#include "receiver/LaunchEnvironment.h"
#include "receiver/LineServer.h"
#include "receiver/QuitOnSignal.h"
#include "receiver/ReceiverConsole.h"
#include "receiver/XTestKeyboard.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QProcess>

#include <cstdio>

namespace mevo::lab {

namespace {

constexpr int startTimeoutMs = 60000;
constexpr int endTimeoutMs = 5000;
constexpr int startFailedCode = 127;

QByteArray handleLine(ReceiverConsole &console, const QByteArray &line)
{
    const QStringList words = QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.first() == QLatin1String("quit")) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), "quit", Qt::QueuedConnection);
        return QByteArrayLiteral("ok");
    }
    if (words.first() == QLatin1String("help"))
        return ReceiverConsole::help().join(QStringLiteral(" | ")).toUtf8();
    return console.execute(words).line();
}

} // namespace

int runReceiver(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A virtual receiver. Takes commands, one a line, and "
                                                    "answers each by one line; \"help\" lists them."));
    parser.addHelpOption();
    const QCommandLineOption socket(QStringLiteral("socket"),
                                    QStringLiteral("Take commands from a local socket too."),
                                    QStringLiteral("path"));
    const QCommandLineOption plugged(QStringLiteral("plugged"),
                                     QStringLiteral("Plug the receiver in at the start."));
    const QCommandLineOption noTyping(QStringLiteral("no-typing"), QStringLiteral("Type into no X display."));
    parser.addOptions({socket, plugged, noTyping});
    parser.addPositionalArgument(QStringLiteral("program"),
                                 QStringLiteral("A program to start with this receiver, and to end with."),
                                 QStringLiteral("[-- program arguments...]"));
    parser.process(arguments);

    quitOnSignals();
    const std::unique_ptr<XTestKeyboard> keyboard =
        parser.isSet(noTyping) || qEnvironmentVariableIsEmpty("DISPLAY") ? nullptr : XTestKeyboard::open();
    ReceiverConsole console(keyboard.get());
    LineServer server([&console](const QByteArray &line) { return handleLine(console, line); });
    QStringList command = parser.positionalArguments();
    if (parser.isSet(socket) && !server.serveSocket(parser.value(socket)))
        return 1;
    if (parser.isSet(plugged) && !console.receiver().plug())
        return 1;
    // With a socket or a program standard input may well be closed: then those decide about the end.
    if (!parser.isSet(socket) && command.isEmpty())
        QObject::connect(&server, &LineServer::inputEnded, [] { QCoreApplication::quit(); });
    server.serveStandardInput();
    std::printf("ready %s\n", console.bed().root().constData());
    std::fflush(stdout);
    if (command.isEmpty())
        return QCoreApplication::exec();

    QProcess process;
    const QString program = command.takeFirst();
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ManagedInputChannel);
    process.setProcessEnvironment(launchEnvironment(console.bed().root(), program));
    QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     [](int code, QProcess::ExitStatus status) {
                         QCoreApplication::exit(status == QProcess::NormalExit ? code : 1);
                     });
    process.start(program, command);
    if (!process.waitForStarted(startTimeoutMs)) {
        std::fprintf(stderr, "cannot start %s: %s\n", qUtf8Printable(program),
                     qUtf8Printable(process.errorString()));
        return startFailedCode;
    }
    const int code = QCoreApplication::exec();
    if (process.state() != QProcess::NotRunning) {
        process.terminate();
        if (!process.waitForFinished(endTimeoutMs))
            process.kill();
    }
    return code;
}

} // namespace mevo::lab
