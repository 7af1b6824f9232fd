// The program as it will be one version later: all of it but this number.
#include "base/ProgramVersion.h"

namespace mevo {

int programVersion()
{
    return 108;
}

} // namespace mevo
