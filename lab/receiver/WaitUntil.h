#pragma once

#include <functional>

namespace mevo::lab {

/// Runs the event loop until `condition` holds, asking every `stepMs`. False when `timeoutMs` ran out
/// or the application quits.
bool waitUntil(const std::function<bool()> &condition, int timeoutMs, int stepMs = 5);

} // namespace mevo::lab
