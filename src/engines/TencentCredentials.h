#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/RandomInRange.h"
#include "engines/Tc3Signature.h"
#include "state/EngineState.h"

namespace mevo {

/// The user's own id and key; else draws them from the lists `TXSCD` and `TXSCK`, or from the deployment's
/// where the service has given none. The two are drawn each on its own and the last entry of a list is never
/// drawn: lists of one entry are what works. Both empty when nobody has given any.
Tc3Credential drawTencentCredential(const EngineState &state, const EngineEndpoints &endpoints,
                                    const DrawNumber &draw);

} // namespace mevo
