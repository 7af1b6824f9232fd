#include "receiver/WaitUntil.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

namespace mevo::lab {

bool waitUntil(const std::function<bool()> &condition, int timeoutMs, int stepMs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        const qint64 left = timeoutMs - elapsed.elapsed();
        if (left <= 0)
            return false;
        QEventLoop loop;
        QTimer::singleShot(int(qMin<qint64>(left, stepMs)), Qt::PreciseTimer, &loop, &QEventLoop::quit);
        // The loop refuses to run once the application is told to quit.
        if (loop.exec() != 0)
            return false;
    }
    return true;
}

} // namespace mevo::lab
