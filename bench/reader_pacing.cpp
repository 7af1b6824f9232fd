/// reader_pacing [SECONDS]
/// What the two ways of pacing the device reader cost: CPU time of the reader thread, with nothing to
/// read and with a report every 8 ms (125 Hz, the radio's slowest rate), and the time from a report's
/// arrival at the handle to the signal. The handle is a socket that is polled and read by the same system
/// calls as hidraw. With a receiver plugged in, the idle cost on the real handle is measured too.
#include "device/GetHIDDataThread.h"
#include "device/ReceiverDiscovery.h"
#include "platform/linux/HidapiHid.h"
#include "platform/linux/LinuxTime.h"
#include "state/MainState.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

/// One handle over a socket pair, read as hidapi reads a hidraw node: a poll, then a read.
class SocketHid : public mevo::Hid
{
public:
    SocketHid()
    {
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, m_fds) != 0) {
            std::perror("socketpair");
            std::exit(1);
        }
    }
    ~SocketHid() override
    {
        ::close(m_fds[0]);
        ::close(m_fds[1]);
    }
    SocketHid(const SocketHid &) = delete;
    SocketHid &operator=(const SocketHid &) = delete;

    void push(const mevo::InputReport &report) const
    {
        if (::send(m_fds[1], report.data(), report.size(), 0) < 0) {
            std::perror("send");
        }
    }

    int init() override { return 0; }
    std::vector<mevo::HidEntry> enumerate(quint16, quint16) override { return {}; }
    mevo::HidHandle openPath(const QByteArray &) override
    {
        return reinterpret_cast<mevo::HidHandle>(quintptr(1)); // NOLINT(performance-no-int-to-ptr)
    }
    int setNonBlocking(mevo::HidHandle, bool) override { return 0; }
    int read(mevo::HidHandle handle, unsigned char *data, std::size_t length) override
    {
        return readTimeout(handle, data, length, 0);
    }
    int readTimeout(mevo::HidHandle, unsigned char *data, std::size_t length, int milliseconds) override
    {
        pollfd ready{m_fds[0], POLLIN, 0};
        const int count = ::poll(&ready, 1, milliseconds);
        return count > 0 ? static_cast<int>(::read(m_fds[0], data, length)) : count;
    }
    int sendFeatureReport(mevo::HidHandle, const unsigned char *, std::size_t) override { return -1; }
    int exit() override { return 0; }

private:
    int m_fds[2] = {-1, -1};
};

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

struct Measured
{
    double cpuPercent = 0;
    double wakeUpsPerSecond = 0;
    std::vector<double> latenciesUs;
};

/// Runs a reader for the time that `drive` takes; `sentAt` is when the latest report was sent.
template <typename Drive>
Measured measure(mevo::Hid &hid, mevo::HidHandle handle, mevo::ReaderPacing pacing,
                 const std::atomic<Clock::rep> &sentAt, Drive drive)
{
    mevo::LinuxTime time;
    MainState state;
    state.DeviceConnected = true;
    GetHIDDataThread reader(hid, time, state, pacing);
    reader.InputHandle = handle;
    Measured result;
    rusage before{};
    const auto noteLatency = [&] {
        const auto now = Clock::now().time_since_epoch();
        result.latenciesUs.push_back(
            std::chrono::duration<double, std::micro>(now - Clock::duration(sentAt)).count());
    };
    QObject::connect(
        &reader, &QThread::started, &reader, [&] { ::getrusage(RUSAGE_THREAD, &before); },
        Qt::DirectConnection);
    QObject::connect(&reader, &GetHIDDataThread::returnHidKeyResult, &reader, noteLatency,
                     Qt::DirectConnection);
    const auto start = Clock::now();
    rusage after{};
    QObject::connect(
        &reader, &QThread::finished, &reader, [&] { ::getrusage(RUSAGE_THREAD, &after); },
        Qt::DirectConnection);
    reader.start();
    drive();
    const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    reader.requestInterruption(); // by hand: StopReader() would disconnect the measuring
    reader.StopRequested = true;
    reader.wait();
    result.cpuPercent = (seconds(after.ru_utime) + seconds(after.ru_stime) - seconds(before.ru_utime) -
                         seconds(before.ru_stime)) /
                        elapsed * 100;
    result.wakeUpsPerSecond = static_cast<double>(after.ru_nvcsw - before.ru_nvcsw) / elapsed;
    return result;
}

void print(const char *what, Measured measured)
{
    std::printf("%-34s CPU %6.3f %%  wake-ups %6.0f/s", what, measured.cpuPercent, measured.wakeUpsPerSecond);
    auto &latencies = measured.latenciesUs;
    if (!latencies.empty()) {
        std::sort(latencies.begin(), latencies.end());
        const auto at = [&](double part) {
            return latencies[std::min(
                latencies.size() - 1,
                static_cast<std::size_t>(part * static_cast<double>(latencies.size())))];
        };
        std::printf("  latency us: median %.0f, 99%% %.0f, worst %.0f (%zu reports)", at(0.5), at(0.99),
                    latencies.back(), latencies.size());
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const int duration = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const auto idle = [&] { std::this_thread::sleep_for(std::chrono::seconds(duration)); };
    struct Way
    {
        mevo::ReaderPacing pacing;
        const char *name;
    };
    constexpr Way kWays[] = {{mevo::ReaderPacing::Poll, "200 us pauses"},
                             {mevo::ReaderPacing::Wait, "wait on the handle"}};
    std::atomic<Clock::rep> sentAt{0};
    for (const Way &way : kWays) {
        SocketHid hid;
        const mevo::HidHandle handle = hid.openPath({});
        print((QByteArray(way.name) + ", idle").constData(), measure(hid, handle, way.pacing, sentAt, idle));
        const auto busy = [&] {
            for (int i = 0; i < duration * 125; ++i) {
                std::this_thread::sleep_for(std::chrono::microseconds(7900 + i % 200));
                sentAt = Clock::now().time_since_epoch().count();
                hid.push({0x01, 0x70, 8, static_cast<unsigned char>(i % 2)});
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        };
        print((QByteArray(way.name) + ", 125 reports/s").constData(),
              measure(hid, handle, way.pacing, sentAt, busy));
    }

    mevo::HidapiHid hid;
    const mevo::FoundCollection receiver = mevo::findCollection(
        hid.enumerate(mevo::kReceiverVendor, mevo::kReceiverProduct),
        {mevo::kReceiverVendor, mevo::kReceiverProduct, mevo::kDigitizerPage, mevo::kReceiverUsage});
    const mevo::HidHandle handle = receiver.path.isEmpty() ? nullptr : hid.openPath(receiver.path);
    if (handle == nullptr) {
        std::printf("no receiver: the real handle is not measured\n");
        return 0;
    }
    hid.setNonBlocking(handle, true);
    for (const Way &way : kWays) {
        print((QByteArray(way.name) + ", receiver").constData(),
              measure(hid, handle, way.pacing, sentAt, idle));
    }
    return 0;
}
