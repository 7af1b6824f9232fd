#pragma once

/// How far the check for updates has come. GUI thread only.
struct UpdateState
{
    bool ManualCheck = false;    ///< the check was started from the settings
    bool UpdateNotified = false; ///< the notice on the settings page stands
};
