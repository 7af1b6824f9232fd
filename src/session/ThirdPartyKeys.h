#pragma once

namespace mevo {

/// Values of LocalUseASR3Index.
enum ThirdPartyMethod {
    thirdPartyNone = -1,
    thirdPartyXunFei = 1,
    thirdPartySogou = 2,
    thirdPartyCustom = 3
};

constexpr int usageF2 = 0x3b; ///< HID keyboard usage
constexpr int usageF6 = 0x3f;

} // namespace mevo
