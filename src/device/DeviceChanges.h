#pragma once

#include "platform/DeviceNotifier.h"

#include <optional>

namespace mevo {

/// The receiver's arrivals and removals on their way to being carried out, one after another and in the order
/// in which they came. What a later one has made void is dropped, so that at the end the state is that of
/// the last: all that can still wait is one removal and, behind it, one arrival. Main thread only.
class DeviceChanges
{
public:
    using Change = DeviceNotifier::Change;

    void add(Change change);

    /// The next change, which is under way until release(). Nothing while there is none, while one is under
    /// way, and while they are held back.
    std::optional<Change> take();
    /// Holds the changes back; calls count.
    void hold() { ++m_held; }
    /// Ends one hold(), or the change under way.
    void release();
    /// A removal waits: the receiver whose arrival is under way is gone already.
    bool overtaken() const { return m_removal; }

private:
    int m_held = 0;
    bool m_removal = false; ///< waits, and goes before the arrival
    bool m_arrival = false;
};

} // namespace mevo
