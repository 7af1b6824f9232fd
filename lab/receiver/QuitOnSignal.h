#pragma once

namespace mevo::lab {

/// Makes SIGINT and SIGTERM end the application's event loop (exit code 128 + signal), so that test beds,
/// sockets and child processes are cleaned up. To be called once, after the application object is made.
void quitOnSignals();

} // namespace mevo::lab
