#pragma once

#include "window/InstanceMessage.h"

namespace mevo {

struct Platform;

/// Runs the program on a platform, from the window's construction to its end, inside an application that
/// stands already. What the event loop was left with; 0 after a restart, for which the program's own file has
/// been started anew. When another instance runs, it gets `call`, and what comes of that is returned; else
/// this one carries it out behind its start.
int runProgram(Platform &platform, const InstanceCall &call = {});

} // namespace mevo
