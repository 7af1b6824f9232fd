#pragma once

#include <atomic>
#include <chrono>

namespace mevo {

/// When waits have to come to an end because the program does: together they have lastMs from then on.
class WaitEnd
{
public:
    static constexpr int lastMs = 1000;

    /// The program ends. From any thread.
    void begin() { m_overAtMs = nowMs() + lastMs; }
    bool hasBegun() const { return m_overAtMs != 0; }
    /// Nothing is waited for any more.
    bool isOver() const { return hasBegun() && nowMs() >= m_overAtMs; }

private:
    static long long nowMs()
    {
        using namespace std::chrono;
        return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    }

    std::atomic<long long> m_overAtMs{0}; ///< 0 while the program runs
};

} // namespace mevo
