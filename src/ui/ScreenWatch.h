#pragma once

#include <QObject>

#include <functional>

namespace mevo {

/// Calls `changed` when screens have come, gone, or changed their place or size, as long as `context` lives:
/// once for what comes together, a moment after the last of it. To be called on the GUI thread.
void watchScreens(QObject *context, const std::function<void()> &changed);

} // namespace mevo
