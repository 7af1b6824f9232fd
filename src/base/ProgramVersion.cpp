// Alone in its file, so that a program of another version is this one linked with another number.
#include "base/ProgramVersion.h"

namespace mevo {

int programVersion()
{
    return 107;
}

} // namespace mevo
