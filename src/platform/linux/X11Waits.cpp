#include "platform/linux/X11Waits.h"

#include "platform/linux/ProcessQuiet.h"
#include "platform/linux/X11Connection.h"

#include <QElapsedTimer>

#include <X11/Xlib.h>

#include <chrono>
#include <thread>

namespace mevo {

namespace {

constexpr int quietMs = 20;
constexpr int quietLimitMs = 2000; // of its own time
// An office keeps what it is typed for up to 20 ms before it goes into the text.
constexpr int settledMs = 50;
constexpr int settledLimitMs = 10000;
constexpr int stoppedLookMs = 10;

} // namespace

X11Waits::X11Waits(X11Connection &connection)
    : m_connection(connection)
    , m_ping(connection)
{
}

void X11Waits::pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void X11Waits::ask(const X11Target &target)
{
    if (target.answersPing) {
        m_ping.send(target.topLevel);
    }
}

PostStop X11Waits::awaitAnswer(const X11Target &target, int limitMs)
{
    if (target.answersPing) {
        return awaitPing(limitMs);
    }
    return awaitRunning(target.processId, limitMs) ? PostStop::AtEnd : PostStop::Hung;
}

PostStop X11Waits::awaitPing(int limitMs)
{
    switch (m_ping.await(limitMs, [this] { return m_end.isOver(); })) {
    case X11Ping::Answer::Given:
        return PostStop::AtEnd;
    case X11Ping::Answer::Gone:
        return PostStop::Gone;
    case X11Ping::Answer::Silence:
        break;
    }
    return PostStop::Hung;
}

bool X11Waits::awaitRunning(qint64 processId, int limitMs) const
{
    QElapsedTimer clock;
    clock.start();
    while (isStopped(processId)) {
        if (clock.elapsed() >= limitMs || m_end.isOver()) {
            return false;
        }
        pause(stoppedLookMs);
    }
    return true;
}

X11Waits::Taken X11Waits::awaitTaken(const X11Target &target, int drain)
{
    Taken taken;
    if (target.answersPing) {
        m_ping.send(target.topLevel);
        taken.stop = awaitPing(takenLimitMs);
        taken.maybeBehind = taken.stop == PostStop::Hung;
    } else if (!awaitRunning(target.processId, takenLimitMs)) {
        taken = {PostStop::Hung, true};
    } else {
        // A program that waits for a slow server sleeps as well, but does not once the server has answered
        // us.
        const auto goOn = [this] {
            XSync(m_connection.display(), False);
            return !m_end.isOver();
        };
        switch (awaitQuiet(target.processId, quietMs, quietLimitMs, goOn)) {
        case ProcessState::Stopped:
            taken = {PostStop::Hung, true};
            break;
        case ProcessState::Busy: // with other things perhaps, as a terminal that is written to without a
                                 // pause
            taken.maybeBehind = true;
            break;
        case ProcessState::Unknown:
            pause(drain);
            break;
        case ProcessState::Quiet:
            break;
        }
    }
    if (taken.stop == PostStop::AtEnd && !m_connection.exists(target.window)) {
        taken = {PostStop::Gone, false};
    }
    return taken;
}

PostStop X11Waits::awaitSettled(const X11Target &target)
{
    switch (awaitQuiet(target.processId, settledMs, settledLimitMs, [this] { return !m_end.isOver(); })) {
    case ProcessState::Unknown:
        pause(lastDrainMs);
        break;
    case ProcessState::Quiet:
        break;
    case ProcessState::Stopped:
    case ProcessState::Busy:
        return PostStop::Hung;
    }
    return PostStop::AtEnd;
}

bool X11Waits::hasCaughtUp(const X11Target &target, qint64 behindMs)
{
    if (!m_connection.exists(target.topLevel)) {
        return true;
    }
    if (target.answersPing) {
        m_ping.send(target.topLevel);
        return awaitPing(behindLookMs) != PostStop::Hung;
    }
    const ProcessState state = awaitQuiet(target.processId, quietMs, behindLookMs, [this] {
        XSync(m_connection.display(), False);
        return !m_end.isOver();
    });
    return state == ProcessState::Quiet || state == ProcessState::Unknown ||
           (state == ProcessState::Busy && behindMs >= busyLimitMs);
}

} // namespace mevo
