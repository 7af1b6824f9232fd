#pragma once

#include "engines/AccountChoice.h"
#include "engines/AccountVerdict.h"
#include "platform/SecretStore.h"
#include "state/OwnAccounts.h"

#include <functional>

class QObject;

namespace mevo {

/// What has become of the user's latest changes.
enum class AccountsUnkept {
    None,    ///< they are kept
    Waiting, ///< not where accounts are kept, but the next start has them, too
    InMemory ///< they last for this run alone
};

/// What the settings ask of the program about the user's own accounts. Nothing here waits.
class AccountsHost
{
public:
    virtual ~AccountsHost() = default;

    virtual const OwnAccounts &ownAccounts() const = 0;
    virtual AccountSource accountInForce(AccountService service) const = 0;
    /// Where the accounts are kept; nowhere while there are none.
    virtual SecretPlace accountsPlace() const = 0;
    /// The place whose accounts could not be read yet: a keyring that stays locked or does not answer, or a
    /// file that cannot be read. Nowhere when all have been read.
    virtual SecretPlace accountsUnread() const = 0;
    /// Whether changes could not be kept yet; it is tried again.
    virtual AccountsUnkept accountsUnkept() const = 0;
    /// Looks once more where nothing was to be read before, without asking the user.
    virtual void rereadAccounts() = 0;

    /// Puts the accounts in force at once, and keeps what of it is a change. How that ends shows in the
    /// above; the dialog is then filled again.
    virtual void keepAccounts(const OwnAccounts &accounts) = 0;
    /// Tries the user's account of a service by one small request. `done` is told from the event loop, and
    /// not at all once `context` has gone. A check of the service that is under way ends unheard.
    virtual void checkAccount(AccountService service, QObject *context,
                              std::function<void(const AccountVerdict &verdict)> done) = 0;
    /// All checks end unheard.
    virtual void endAccountChecks() = 0;
};

} // namespace mevo
