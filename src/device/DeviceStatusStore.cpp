#include "device/DeviceStatusStore.h"

#include "device/ReportDispatch.h"
#include "state/DeviceState.h"

namespace mevo {

namespace {

constexpr int kReportsBeforeWarning = 5;
constexpr int kReportsBeforeReminder = 600;

} // namespace

std::optional<int> BatteryCounter::add(int level, DeviceState &state)
{
    state.PowerLevel = level;
    if (!state.ShowPowerLow) {
        return std::nullopt;
    }
    std::optional<int> call;
    if (level > 0) {
        if (state.LowPowerShown.exchange(false)) {
            call = PowerRestoredIcon;
        }
        m_lowPowerCounter = 0;
        return call;
    }
    ++m_lowPowerCounter;
    if (m_lowPowerCounter > kReportsBeforeWarning && !state.LowPowerShown.exchange(true)) {
        call = LowPowerIcon;
    }
    if (m_lowPowerCounter > kReportsBeforeReminder) {
        state.LowPowerShown = false;
        m_lowPowerCounter = kReportsBeforeWarning;
    }
    return call;
}

std::optional<int> storeStatus(const DeviceStatus &status, BatteryCounter &battery, DeviceState &state)
{
    std::optional<int> call;
    if (state.ShowPowerLevel) {
        call = battery.add(status.batteryLevel, state);
    }
    state.MouseCurrentLeftKeyValue = status.leftKey;
    state.MouseCurrentRightKeyValue = status.rightKey;
    state.MouseCurrentDPI = status.dpi;
    state.MouseCurrentDataRate = status.dataRate.value_or(state.MouseCurrentDataRate);
    state.MouseCurrentWheelSpeed = status.wheelSpeed.value_or(state.MouseCurrentWheelSpeed);
    return call;
}

} // namespace mevo
