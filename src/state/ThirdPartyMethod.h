#pragma once

namespace mevo {

/// Values of LocalUseASR3Index.
enum ThirdPartyMethod {
    thirdPartyNone = -1,
    thirdPartyXunFei = 1,
    thirdPartySogou = 2,
    thirdPartyCustom = 3
};

} // namespace mevo
