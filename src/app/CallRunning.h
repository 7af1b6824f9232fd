#pragma once

#include "platform/SystemServices.h"
#include "window/InstanceMessage.h"

#include <optional>

namespace mevo {

/// The name of the program's lock.
QString instanceName();

/// Asks the instance that runs. What this process ends with, having said on standard error why when it is not
/// 0; nothing when there was nobody to ask, or the one who was asked for a window has gone without an answer.
std::optional<int> callRunning(SingleInstance &instance, const InstanceCall &call);

/// Takes the lock, or asks the instance that holds it; one that comes or goes just now is waited for. What
/// this process ends with; nothing when it has the lock and is to run.
std::optional<int> takeLockOrCall(SingleInstance &instance, Time &time, const InstanceCall &call);

/// "--type": what this process ends with, also when there is nobody to ask.
int typeByRunning(SingleInstance &instance, const InstanceCall &call);

} // namespace mevo
