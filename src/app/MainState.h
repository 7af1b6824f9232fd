#pragma once

#include "app/SettingsState.h"
#include "device/DeviceState.h"
#include "engines/EngineState.h"
#include "service/ServiceState.h"
#include "session/SessionState.h"

/// All state that more than one subsystem reads; the main window is one of these.
struct MainState : SessionState, DeviceState, EngineState, ServiceState, SettingsState
{
    bool ExitInProgress = false; ///< the exit is being walked
    bool InitDone = false;       ///< the constructor has reached its end
    int CurrentVersion = 107;
};
