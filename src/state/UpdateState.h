#pragma once

/// Updates of the program: what the device record permits, and how far the check has come. GUI thread only.
struct UpdateState
{
    int ForceUpdate = 0;         ///< 1: the question offers no "later"
    int ManualUpdateSwitch = 0;  ///< 1: the settings look for a new version
    bool ManualCheck = false;    ///< the check was started from the settings
    bool UpdateNotified = false; ///< the notice on the settings page stands
};
