#pragma once

#include <QObject>

#include <functional>

namespace mevo {

/// Does `work` in a thread of its own, then `then` in the thread of `owner`, so that what takes long holds no
/// window. When the owner goes first, `then` is not done, and the owner's end waits for the work's. `work`
/// touches nothing that others touch meanwhile.
void runAside(QObject *owner, std::function<void()> work, const std::function<void()> &then);

} // namespace mevo
