#pragma once

#include "state/ThirdPartyMethod.h"

namespace mevo {

constexpr int usageF2 = 0x3b; ///< HID keyboard usage
constexpr int usageF6 = 0x3f;

} // namespace mevo
