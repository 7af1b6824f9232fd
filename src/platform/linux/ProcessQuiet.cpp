#include "platform/linux/ProcessQuiet.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <thread>

namespace mevo {

namespace {

// On a machine that gives it no processor.
constexpr int mostTimes = 5;
constexpr int mostMs = 10000;

/// State letter, and how often the process has gone to sleep or been put aside.
struct Sample
{
    char state = 0;
    QByteArray switches;
};

Sample sampleOf(qint64 processId)
{
    Sample sample;
    QFile file(QStringLiteral("/proc/%1/status").arg(processId));
    if (processId <= 0 || !file.open(QIODevice::ReadOnly)) {
        return sample;
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("State:")) {
            sample.state = line.mid(6).trimmed().left(1).append('\0').at(0);
        } else if (line.contains("voluntary_ctxt_switches:")) {
            sample.switches += line;
        }
    }
    return sample;
}

/// For how long its main thread has waited for a processor until now
/// (https://docs.kernel.org/scheduler/sched-stats.html). 0 where the system does not count it.
qint64 starvedMs(qint64 processId)
{
    QFile file(QStringLiteral("/proc/%1/schedstat").arg(processId));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> numbers = file.readAll().split(' ');
    return numbers.size() < 2 ? 0 : numbers[1].toLongLong() / 1000000;
}

bool isStopped(const Sample &sample)
{
    return sample.state == 'T' || sample.state == 't';
}

} // namespace

bool isStopped(qint64 processId)
{
    return isStopped(sampleOf(processId));
}

ProcessState awaitQuiet(qint64 processId, int quietMs, int limitMs, const std::function<bool()> &goOn)
{
    QElapsedTimer whole, quiet;
    whole.start();
    quiet.start();
    QByteArray last;
    const int most = std::min(mostMs, mostTimes * limitMs);
    const qint64 starvedBefore = starvedMs(processId);
    while (true) {
        if (goOn && !goOn()) {
            return ProcessState::Busy;
        }
        const Sample sample = sampleOf(processId);
        if (sample.state == 0) {
            return ProcessState::Unknown;
        }
        if (isStopped(sample)) {
            return ProcessState::Stopped;
        }
        if (sample.state != 'S' || sample.switches != last) {
            last = sample.switches;
            quiet.restart();
        } else if (quiet.elapsed() >= quietMs) {
            return ProcessState::Quiet;
        }
        const qint64 elapsed = whole.elapsed();
        if (elapsed >= limitMs &&
            (elapsed - (starvedMs(processId) - starvedBefore) >= limitMs || elapsed >= most)) {
            return ProcessState::Busy;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

} // namespace mevo
