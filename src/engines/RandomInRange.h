#pragma once

#include <QRandomGenerator>

#include <functional>

/// A number from `low` up to, but not including, `high`; `low` itself when the two are equal or the wrong
/// way round, and then the generator is not touched. Seeded at first use from the seconds since midnight.
/// GUI thread only.
int RandomInRange(int low, int high);

namespace mevo {

/// RandomInRange with a generator of its own.
class RandomRange
{
public:
    explicit RandomRange(quint32 seed)
        : m_generator(seed)
    {
    }
    int draw(int low, int high) { return high <= low ? low : m_generator.bounded(low, high); }

private:
    QRandomGenerator m_generator;
};

/// Whatever draws as RandomInRange does.
using DrawNumber = std::function<int(int low, int high)>;

} // namespace mevo
