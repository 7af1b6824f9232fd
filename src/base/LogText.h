#pragma once

#include <QString>

namespace mevo {

/// Longest text of a stranger in the log, in characters.
constexpr int longestLogText = 200;

/// What a service, a file or a device has sent, as it may stand in the log: on one line, with escapes for
/// control characters and others that are not seen, and cut to `longestLogText`. One backslash becomes two.
QString logText(const QString &text);

} // namespace mevo
