#pragma once

#include "state/DayCounts.h"
#include "state/DeviceState.h"
#include "state/EngineState.h"
#include "state/ServiceState.h"
#include "state/SessionState.h"
#include "state/SettingsState.h"
#include "state/UpdateState.h"

/// All state that more than one subsystem reads; the main window is one of these.
struct MainState : SessionState, DeviceState, EngineState, ServiceState, SettingsState, UpdateState
{
    bool ExitInProgress = false; ///< the exit is being walked
    bool InitDone = false;       ///< the constructor has reached its end
    int CurrentVersion = 107;
    mevo::DayCounts dayCounts{*this}; ///< each receiver's; the members are those of the one at hand
};
