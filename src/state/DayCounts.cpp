#include "state/DayCounts.h"

#include "state/MainState.h"

#include <algorithm>

namespace mevo {

namespace {

/// Members of the state that belong to a column.
struct Members
{
    int EngineState::*used;
    int EngineState::*told;
    int EngineState::*limit;
};

/// In the order of the columns.
constexpr std::array<Members, 4> members{
    Members{&EngineState::BDSR1DUsedQuantity, &EngineState::BDSR1DReadQuantity,
            &EngineState::BDSR1DMaxUsageQuantity},
    Members{&EngineState::TXSR1DUsedQuantity, &EngineState::TXSR1DReadQuantity,
            &EngineState::TXSR1DMaxUsageQuantity},
    Members{&EngineState::XFSR1DUsedQuantity, &EngineState::XFSR1DReadQuantity,
            &EngineState::XFSR1DMaxUsageQuantity},
    Members{&EngineState::BDFY1MUsedQuantity, &EngineState::BDFY1MReadQuantity,
            &EngineState::BDFY1MMaxUsageQuantity},
};

constexpr std::size_t at(CountColumn column)
{
    return std::size_t(column);
}

} // namespace

DayCounts::DayCounts(MainState &state)
    : m_state(state)
    , m_receivers{newcomer()}
{
}

DayCounts::Receiver DayCounts::newcomer()
{
    const EngineState fresh;
    Receiver receiver;
    for (const CountColumn column : countColumns) {
        receiver.kept[at(column)].limit = fresh.*members[at(column)].limit;
    }
    return receiver;
}

void DayCounts::follow()
{
    if (m_state.DongleID.isEmpty() || m_state.DongleID == atHand().id) {
        return;
    }
    if (!atHand().id.isEmpty()) {
        receiverLeft();
    }
    const auto known = std::find_if(m_receivers.begin(), m_receivers.end(), [this](const Receiver &receiver) {
        return receiver.id == m_state.DongleID;
    });
    if (known == m_receivers.end()) {
        atHand().id = m_state.DongleID;
        return;
    }
    // What has been counted before it was known is its own as well.
    const int index = int(known - m_receivers.begin());
    for (const CountColumn column : countColumns) {
        known->kept[at(column)].used += m_state.*members[at(column)].used;
    }
    atHand().same = index;
    bringForward(index);
}

void DayCounts::receiverLeft()
{
    m_state.CountersLocked = true;
    if (atHand().id.isEmpty()) {
        return; // what has been counted since the one before is of the one that comes
    }
    layAside();
    m_receivers.push_back(newcomer());
    bringForward(int(m_receivers.size()) - 1);
}

void DayCounts::layAside()
{
    for (const CountColumn column : countColumns) {
        const Members &member = members[at(column)];
        atHand().kept[at(column)] = {m_state.*member.used, m_state.*member.told, m_state.*member.limit};
    }
    atHand().read = false; // another computer may count on meanwhile
}

void DayCounts::bringForward(int index)
{
    m_atHand = index;
    for (const CountColumn column : countColumns) {
        const Members &member = members[at(column)];
        const Count &kept = atHand().kept[at(column)];
        m_state.*member.used = kept.used;
        m_state.*member.told = kept.told;
        m_state.*member.limit = kept.limit;
    }
}

int DayCounts::indexOf(int receiver)
{
    follow();
    int index = receiver > 0 && receiver <= int(m_receivers.size()) ? receiver - 1 : m_atHand;
    while (m_receivers[std::size_t(index)].same >= 0) {
        index = m_receivers[std::size_t(index)].same;
    }
    return index;
}

int DayCounts::receiver()
{
    follow();
    return m_atHand + 1;
}

QString DayCounts::receiverId()
{
    follow();
    return atHand().id;
}

void DayCounts::count(CountColumn column, int receiver)
{
    const int index = indexOf(receiver);
    int &used = index == m_atHand ? m_state.*members[at(column)].used
                                  : m_receivers[std::size_t(index)].kept[at(column)].used;
    ++used;
}

int DayCounts::used(CountColumn column)
{
    follow();
    return m_state.*members[at(column)].used;
}

bool DayCounts::isUntold(CountColumn column)
{
    return used(column) != m_state.*members[at(column)].told;
}

void DayCounts::take(CountColumn column, int count)
{
    follow();
    int &used = m_state.*members[at(column)].used;
    int &told = m_state.*members[at(column)].told;
    // A count of ours whose answer was lost, or is not here yet, may have been taken all the same.
    const bool ours = count > told && count <= atHand().sent[at(column)];
    used = count + std::max(0, used - (ours ? count : told));
    told = count;
}

void DayCounts::recordRead()
{
    follow();
    atHand().read = true;
}

bool DayCounts::isRead()
{
    follow();
    return atHand().read;
}

void DayCounts::beginDay()
{
    follow();
    for (const CountColumn column : countColumns) {
        int &used = m_state.*members[at(column)].used;
        int &told = m_state.*members[at(column)].told;
        used = std::max(0, used - told);
        told = 0;
        atHand().sent[at(column)] = 0;
    }
}

void DayCounts::sent(CountColumn column, int count, int receiver)
{
    const int index = indexOf(receiver);
    m_receivers[std::size_t(index)].sent[at(column)] = count;
}

void DayCounts::told(CountColumn column, int count, int receiver)
{
    const int index = indexOf(receiver);
    if (m_readings > 0) {
        return;
    }
    int &told = index == m_atHand ? m_state.*members[at(column)].told
                                  : m_receivers[std::size_t(index)].kept[at(column)].told;
    told = count;
}

} // namespace mevo
