#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/CredentialTable.h"
#include "state/EngineState.h"

#include <optional>

namespace mevo {

/// Where the account that a service is called with comes from.
enum class AccountSource {
    None,
    Own,       ///< the user's
    List,      ///< drawn from a credential list
    Record,    ///< of the service's record
    Deployment ///< "MEVOEndpoints.ini"
};

/// The service whose accounts a list holds.
AccountService accountServiceOf(CredentialList list);

/// Which account of a service is in force: the user's own before what the service tells, and that before what
/// the deployment names. An own account that lacks a field is none.
AccountSource accountInForce(AccountService service, const EngineState &state,
                             const EngineEndpoints &endpoints);

/// What the user's own account is in the place of one drawn from this list; nothing when there is none. One
/// account of Baidu serves all of its languages and reading aloud, one of XunFei all languages.
std::optional<OwnAccounts::Values> ownAccountFor(const CredentialListRow &list, const OwnAccounts &accounts);

} // namespace mevo
