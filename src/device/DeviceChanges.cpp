#include "device/DeviceChanges.h"

namespace mevo {

void DeviceChanges::add(Change change)
{
    m_arrival = change == Change::Arrival;
    // A removal is never made void by what comes after it: the handles that are open now are of a receiver
    // that has gone, even when it is back.
    m_removal = m_removal || change == Change::Removal;
}

std::optional<DeviceChanges::Change> DeviceChanges::take()
{
    if (m_held > 0 || (!m_removal && !m_arrival)) {
        return std::nullopt;
    }
    hold();
    bool &taken = m_removal ? m_removal : m_arrival;
    const Change change = m_removal ? Change::Removal : Change::Arrival;
    taken = false;
    return change;
}

void DeviceChanges::release()
{
    if (m_held > 0) {
        --m_held;
    }
}

} // namespace mevo
