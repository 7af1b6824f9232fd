#pragma once

#include "receiver/KeyboardReport.h"

namespace mevo::lab {

/// Where the keys go that the receiver types. May be called from any thread.
class KeyboardPort
{
public:
    virtual ~KeyboardPort() = default;

    /// From now on exactly the keys of `report` are held down.
    virtual void apply(const KeyboardReport &report) = 0;
    /// Turns the mouse wheel: above 0 up, below 0 down.
    virtual void turnWheel(int steps) = 0;
};

} // namespace mevo::lab
