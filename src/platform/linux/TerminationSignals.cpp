#include "platform/linux/TerminationSignals.h"

#include <QSocketNotifier>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace mevo {

namespace {

int wakeup[2] = {-1, -1};

// Nothing but write() may be done here; the notifier below does the rest.
void onSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(wakeup[0], &byte, 1);
}

} // namespace

void onTerminationSignal(QObject *context, std::function<void()> handler)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, wakeup) != 0) {
        return;
    }
    auto *notifier = new QSocketNotifier(wakeup[1], QSocketNotifier::Read, context);
    QObject::connect(notifier, &QSocketNotifier::activated, context, [handler = std::move(handler)] {
        char byte = 0;
        [[maybe_unused]] const auto taken = ::read(wakeup[1], &byte, 1);
        handler();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigset_t heard;
    sigemptyset(&heard);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(signal, &action, nullptr);
        sigaddset(&heard, signal);
    }
    pthread_sigmask(SIG_UNBLOCK, &heard, nullptr); // whoever has started the program may have blocked them
}

} // namespace mevo
