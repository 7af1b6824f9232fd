#include "receiver/QuitOnSignal.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace mevo::lab {

namespace {

int signalPipe[2] = {-1, -1};

// Not signalfd: it needs the signals blocked, and children would inherit that.
void noteSignal(int number)
{
    const char byte = char(number);
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
}

} // namespace

void quitOnSignals()
{
    if (pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, [] {
        char byte = 0;
        if (read(signalPipe[0], &byte, 1) == 1)
            QCoreApplication::exit(128 + byte);
    });
    struct sigaction action
    {
    };
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM})
        sigaction(number, &action, nullptr);
}

} // namespace mevo::lab
