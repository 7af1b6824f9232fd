#pragma once

#include "device/DeviceReports.h"

#include <optional>

struct DeviceState;

namespace mevo {

/// Counts status reports at the lowest battery level, so that one odd reading raises no warning. Lives
/// as long as one reader thread.
class BatteryCounter
{
public:
    /// Takes one report's level (0 to 3). Answers the tray icon call that it asks for, LowPowerIcon at
    /// the sixth report at level 0 and again every 596 reports, PowerRestoredIcon at the first level
    /// above 0 after that.
    std::optional<int> add(int level, DeviceState &state);

private:
    int m_lowPowerCounter = 0;
};

/// Stores a status report in the device state and feeds the battery counter when the battery is shown.
/// Answers the tray icon call that the battery asks for.
std::optional<int> storeStatus(const DeviceStatus &status, BatteryCounter &battery, DeviceState &state);

} // namespace mevo
