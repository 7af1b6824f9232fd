#pragma once

namespace mevo {

/// This program's version as a number, the major number in the hundreds: 107 is V1.07.
int programVersion();

} // namespace mevo
