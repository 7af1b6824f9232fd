#include "platform/Platform.h"
#include "platform/linux/LinuxTime.h"

namespace mevo {

std::unique_ptr<Platform> makePlatform()
{
    auto platform = std::make_unique<Platform>();
    platform->time = std::make_unique<LinuxTime>();
    return platform;
}

} // namespace mevo
