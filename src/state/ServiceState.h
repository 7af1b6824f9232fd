#pragma once

#include "base/ServiceEndpoints.h"

#include <atomic>

/// The backend and the network. The atomics are read by the reader thread.
struct ServiceState : mevo::BackendEndpoints
{
    std::atomic<bool> IsOnline{false};         ///< the last poll said that there is a connection
    std::atomic<bool> BackendReachable{false}; ///< the web API has answered
    QString IPRecord;                          ///< this computer's address as the device record has it
    QString ServerVersion;                     ///< version text of the last probe

    bool UseNetworkProxy = false;
    QString NetworkProxy_IP;
    int NetworkProxy_Port = -1;
    QString NetworkProxy_UserName;
    QString NetworkProxy_Password; ///< never logged

    bool CountersLocked = true; ///< no counter flush happens: what the record holds is not known yet
    QString LastLoginDateTime;  ///< when the day of counting began, as the device record has it
    int ShowAssistInfo = 0;     ///< what the settings page shows of its help
    int AutoUpdateSwitch = 1;
    int ManualUpdateSwitch = 0;
    int ForceUpdate = 0; ///< 1: an update cannot be put off

    int VWebIntervalTime = 0; ///< milliseconds before the product's page may be shown
    int VWebSeed = 0;         ///< one start in this many shows it
    QString VWeb;             ///< address of that page
    QString SWName;           ///< title of the help pages
    bool ShowCopyRight = false;
};
