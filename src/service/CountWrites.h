#pragma once

#include "state/DayCounts.h"

#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <utility>

struct MainState;

namespace mevo {

/// A day's count on its way to the device record.
struct CountWrite
{
    int receiver = 0; ///< as DayCounts numbers them
    CountColumn column = CountColumn::Baidu;
    int count = 0;
    QString statement;
};

/// The write of a column's count as it stands, for the receiver at hand. `time`, as the record has it, and
/// `stamp`, of the build, are told along with the speech engines' counts.
CountWrite countWrite(CountColumn column, MainState &state, const QString &time = {},
                      const QString &stamp = {});

/// Lets counts out so that an older one never comes after a newer one: of each receiver and column one is on
/// its way, the next one waits for its end, and one that comes meanwhile takes the place of the one that
/// waits.
class CountWrites
{
public:
    /// Calls the sending off, where it is not over; nobody is told then.
    using CallOff = std::function<void()>;
    /// Told once when the sending has ended, perhaps before `Send` returns.
    using Ended = std::function<void()>;
    using Send = std::function<CallOff(const CountWrite &write, Ended ended)>;

    explicit CountWrites(Send send)
        : m_send(std::move(send))
    {
    }

    void add(const CountWrite &write);
    /// Nothing waits any longer: what is on its way makes room for what waits for it.
    void overtake();
    /// This count is being written on another way: no other one of its column comes after it.
    void supersede(int receiver, CountColumn column, int count);

private:
    struct Lane
    {
        int number = 0; ///< of what is on its way; 0 when nothing is
        int count = 0;
        CallOff callOff;
        std::optional<CountWrite> waiting;
    };
    using Key = std::pair<int, CountColumn>;
    void send(const CountWrite &write);
    void ended(const Key &key, int number);
    static void callOff(Lane &lane);

    Send m_send;
    std::map<Key, Lane> m_lanes;
    int m_numbers = 0;
};

} // namespace mevo
