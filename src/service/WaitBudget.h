#pragma once

#include <algorithm>
#include <optional>

namespace mevo {

/// How long a row of waits may take together. Without a limit each wait has its own time-out.
class WaitBudget
{
public:
    void limit(int totalMs) { m_leftMs = totalMs; }
    void lift() { m_leftMs.reset(); }

    /// What is left of a time-out of `timeoutMs`.
    int granted(int timeoutMs) const { return m_leftMs ? std::min(timeoutMs, *m_leftMs) : timeoutMs; }
    void spend(int ms)
    {
        if (m_leftMs) {
            m_leftMs = std::max(0, *m_leftMs - ms);
        }
    }

private:
    std::optional<int> m_leftMs;
};

} // namespace mevo
