#pragma once

#include "platform/Hid.h"

#include <QString>

#include <atomic>

/// The receiver as the program sees it. Atomics are shared with the reader and injection threads.
struct DeviceState
{
    std::atomic<bool> DeviceConnected{false};               ///< the receiver is regarded as present
    std::atomic<bool> DeviceIDBusy{false};                  ///< the identity is being read; the reader pauses
    std::atomic<bool> ReaderInRead{false};                  ///< the reader is waiting on HidInputHandle
    std::atomic<bool> HidBusy{false};                       ///< a key is being typed through the receiver
    std::atomic<int> HidKeysLost{0};                        ///< combinations that the receiver did not take
    std::atomic<bool> HeartbeatOK{false};                   ///< the last heartbeat went out
    std::atomic<mevo::HidHandle> HidInputHandle{nullptr};   ///< digitizer collection, non-blocking
    std::atomic<mevo::HidHandle> HidCommandHandle{nullptr}; ///< vendor collection, blocking
    int HeartbeatTimerId = 0;                               ///< 0 when none runs
    int VoiceIntervalTime = 1000;                           ///< heartbeat interval in milliseconds
    bool NoDeviceMode = false;                              ///< the program may run without a receiver
    bool ClickCanASR = false;                               ///< the tip window itself may start a session
    /// The receiver can be written to, which DeviceConnected alone does not say: it is also on after a start
    /// without a receiver.
    bool deviceOpen() const { return DeviceConnected && HidCommandHandle != nullptr; }
    QString DongleID; ///< "%02x-%02x-%02x%02x%02x", the key of the device record
    QString DongleIDDecimal;

    std::atomic<bool> ShowPowerLevel{false};
    std::atomic<bool> ShowPowerLow{false};
    std::atomic<bool> LowPowerShown{false};
    std::atomic<int> PowerLevel{-1}; ///< 0 lowest to 3, -1 unknown

    std::atomic<int> MouseCurrentDPI{2400};
    std::atomic<int> MouseCurrentDataRate{125}; ///< Hz
    std::atomic<int> MouseCurrentWheelSpeed{1}; ///< 0, 1 or 2
    std::atomic<int> MouseCurrentLeftKeyValue{0};
    std::atomic<int> MouseCurrentRightKeyValue{0};
};
