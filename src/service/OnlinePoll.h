#pragma once

#include "platform/SystemServices.h"

namespace mevo {

/// What one look at the network leads to.
struct OnlinePoll
{
    int reported;   ///< connection kind (1, 2 or 4), or the last one while there is none
    int last;       ///< what to remember as the last kind: 1 connected, -1 not
    bool connected; ///< the look found a connection
    int nextInMs;   ///< time until the next look
};

/// `last` is what the previous look left, -1 before the first.
constexpr OnlinePoll pollOnline(NetworkState::Connection connection, int last)
{
    return connection == NetworkState::Connection::None
               ? OnlinePoll{last, -1, false, 500}
               : OnlinePoll{static_cast<int>(connection), 1, true, 5000};
}

} // namespace mevo
