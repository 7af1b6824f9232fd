#include "desk/DeskCommand.h"
#include "push/PushConsole.h"
#include "receiver/ReceiverCommand.h"
#include "services/RunServices.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

struct Subcommand
{
    const char *name;
    const char *summary;
    int (*run)(const QStringList &arguments);
};

constexpr Subcommand subcommands[] = {
    {"receiver", "a virtual receiver, driven by lines on standard input or a socket", mevo::lab::runReceiver},
    {"desk", "runs a script of steps: plug, press, speak, expect text, ...", mevo::lab::runDesk},
    {"services", "the services on the loopback interface", lab::runServices},
    {"push", "says something on the push socket of running services", lab::runPush},
};

int usage()
{
    std::fprintf(stderr, "usage: mevolab COMMAND [--help] ...\n");
    for (const Subcommand &row : subcommands)
        std::fprintf(stderr, "  %-10s %s\n", row.name, row.summary);
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2)
        return usage();
    const QString name = arguments.takeAt(1);
    const auto *row =
        std::find_if(std::begin(subcommands), std::end(subcommands),
                     [&name](const Subcommand &command) { return name == QLatin1String(command.name); });
    return row == std::end(subcommands) ? usage() : row->run(arguments);
}
