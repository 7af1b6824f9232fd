#include "platform/linux/ProcessQuiet.h"

#include <QtTest>

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

/// Has the calling thread run on one processor alone, the first that it may run on.
bool stayOnOneProcessor()
{
    cpu_set_t may, one;
    CPU_ZERO(&one);
    if (sched_getaffinity(0, sizeof may, &may) != 0) {
        return false;
    }
    for (int i = 0; i < CPU_SETSIZE; ++i) {
        if (CPU_ISSET(i, &may)) {
            CPU_SET(i, &one);
            break;
        }
    }
    return sched_setaffinity(0, sizeof one, &one) == 0;
}

} // namespace

class TestProcessQuiet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A short look at a program that hardly gets a processor stays short.
    void aProgramThatHardlyGetsAProcessor()
    {
        constexpr int crowd = 40;
        std::atomic<bool> end{false};
        std::atomic<int> running{0};
        std::atomic<long> starved{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < crowd; ++i) {
            threads.emplace_back([&] {
                running += stayOnOneProcessor() ? 1 : -crowd;
                starved = ::syscall(SYS_gettid);
                while (!end) {
                }
            });
        }
        const bool crowded = QTest::qWaitFor([&] { return running == crowd; }, 30000);
        QElapsedTimer since;
        since.start();
        const mevo::ProcessState state = mevo::awaitQuiet(starved, 20, 300);
        const qint64 elapsed = since.elapsed();
        end = true;
        for (std::thread &thread : threads) {
            thread.join();
        }
        QVERIFY(crowded);
        QVERIFY(state == mevo::ProcessState::Busy);
        QVERIFY2(elapsed < 4000, qPrintable(QString::number(elapsed)));
    }
};

QTEST_GUILESS_MAIN(TestProcessQuiet)
#include "tst_process_quiet.moc"
