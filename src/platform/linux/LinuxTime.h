#pragma once

#include "platform/SystemServices.h"

#include <QTimer>

#include <chrono>
#include <thread>
#include <utility>

namespace mevo {

class LinuxTime : public Time
{
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
    qint64 monotonicMs() const override
    {
        const auto since = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
    }
    void sleepMs(int milliseconds) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
    void sleepUs(int microseconds) override
    {
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    }
    void callAfter(int milliseconds, QObject *context, std::function<void()> action) override
    {
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, context, std::move(action));
    }
};

} // namespace mevo
