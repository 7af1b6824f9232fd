#pragma once

#include <QString>

#include <array>
#include <vector>

struct MainState;

namespace mevo {

/// Columns of the device record that count a day's use.
enum class CountColumn { Baidu, Tencent, XunFei, Translation };
constexpr std::array<CountColumn, 4> countColumns{CountColumn::Baidu, CountColumn::Tencent,
                                                  CountColumn::XunFei, CountColumn::Translation};

/// The day's counts of every receiver of this run. The members of the state are those of the receiver at
/// hand, which is the one that `DongleID` has named last; those of the others are kept here until they come
/// back.
///
/// A reading of the record adds what has been counted and not told to what the backend holds, so that
/// neither takes the other's place. GUI thread only.
class DayCounts
{
public:
    /// `state` is the one that this is a member of.
    explicit DayCounts(MainState &state);
    DayCounts(const DayCounts &) = delete;
    DayCounts &operator=(const DayCounts &) = delete;

    /// Another `DongleID` means another receiver at hand, whose record has to be read. All the others do it
    /// first of all.
    void follow();
    /// The receiver at hand has gone. What is counted from now on is of the one that comes, which is known
    /// only later; the counters are locked.
    void receiverLeft();
    /// Number of the receiver at hand, from 1 on, for those who count later than they are pressed.
    int receiver();
    /// Its `DongleID`; empty while it has not been known yet.
    QString receiverId();
    /// The receiver of this number is the one at hand.
    bool isAtHand(int receiver) { return indexOf(receiver) == m_atHand; }

    /// One more use, by the receiver of this number, or by the one at hand when it is 0.
    void count(CountColumn column, int receiver = 0);
    int used(CountColumn column);
    /// Something has been counted that the backend is not known to hold.
    bool isUntold(CountColumn column);

    /// The record of the receiver at hand brings a column's count.
    void take(CountColumn column, int count);
    /// It has brought all that it has; until then its counts are not known.
    void recordRead();
    bool isRead();
    /// A new day: nothing is used but what the backend has not been told yet, which may be of today.
    void beginDay();

    /// A count is on its way to the backend, and has been taken there.
    void sent(CountColumn column, int count, int receiver);
    void told(CountColumn column, int count, int receiver);

    /// While one lives the record is being read. Counts that are told meanwhile are not taken as told, since
    /// the reading may have been answered before they came.
    class Reading
    {
    public:
        explicit Reading(DayCounts &counts)
            : m_counts(counts)
        {
            ++m_counts.m_readings;
        }
        ~Reading() { --m_counts.m_readings; }
        Reading(const Reading &) = delete;
        Reading &operator=(const Reading &) = delete;

    private:
        DayCounts &m_counts;
    };

private:
    struct Count
    {
        int used = 0;
        int told = 0; ///< the backend is known to have held it last
        int limit = 0;
    };
    struct Receiver
    {
        QString id;                  ///< empty while it has not been known yet
        bool read = false;           ///< its record, since it was plugged in
        int same = -1;               ///< it has turned out to be this one
        std::array<Count, 4> kept{}; ///< while another one is at hand
        std::array<int, 4> sent{};   ///< whether it has been taken may not be known
    };
    static Receiver newcomer();
    void layAside();
    void bringForward(int index);
    Receiver &atHand() { return m_receivers[std::size_t(m_atHand)]; }
    int indexOf(int receiver);

    MainState &m_state;
    std::vector<Receiver> m_receivers;
    int m_atHand = 0;
    int m_readings = 0;
};

} // namespace mevo
