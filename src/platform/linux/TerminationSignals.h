#pragma once

#include <functional>

class QObject;

namespace mevo {

/// Calls `handler` on the thread of `context` when the session ends or somebody asks this process to
/// end (SIGTERM, SIGINT, SIGHUP). May be called once.
void onTerminationSignal(QObject *context, std::function<void()> handler);

} // namespace mevo
