#pragma once

namespace mevo {

/// What the microphone tip window asks of the main window.
class TipWindowHost
{
public:
    virtual ~TipWindowHost() = default;
    /// The receiver is there and open.
    virtual bool deviceOpen() const = 0;
    /// Switches the device's microphone latch. False when the receiver refused.
    virtual bool sendMicrophoneLatch(bool on) = 0;
    /// Writes the usage counters to the backend.
    virtual void flushUsageCounters() = 0;
    /// Keeps the window that has the focus as the target of this session's text.
    virtual void saveFocusWindow() = 0;
    virtual bool isXpClass() const = 0;
};

} // namespace mevo
