#pragma once

namespace mevo {

struct Platform;

/// Runs the program on a platform, from the window's construction to its end, inside an application that
/// stands already. What the event loop was left with; 0 after a restart, for which the program's own file has
/// been started anew, and when another instance runs, which is asked to show itself.
int runProgram(Platform &platform);

} // namespace mevo
