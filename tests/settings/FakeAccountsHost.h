#pragma once

#include "ui/settings/AccountsHost.h"

#include <QPointer>

#include <map>

/// Own accounts that are kept in memory. What a check finds is said by the test.
class FakeAccountsHost : public mevo::AccountsHost
{
public:
    mevo::OwnAccounts kept;
    mevo::SecretPlace place = mevo::SecretPlace::Desktop; ///< where accounts are kept
    mevo::SecretPlace unread = mevo::SecretPlace::Nowhere;
    mevo::AccountsUnkept unkept = mevo::AccountsUnkept::None;
    int rereadings = 0;
    mevo::AccountSource others = mevo::AccountSource::None; ///< in force without an own account
    int stores = 0;
    using Done = std::function<void(const mevo::AccountVerdict &)>;
    std::map<mevo::AccountService, Done> checks; ///< under way
    int endings = 0;

    const mevo::OwnAccounts &ownAccounts() const override { return kept; }
    mevo::AccountSource accountInForce(mevo::AccountService service) const override
    {
        return kept.isComplete(service) ? mevo::AccountSource::Own : others;
    }
    mevo::SecretPlace accountsPlace() const override
    {
        return kept == mevo::OwnAccounts() ? mevo::SecretPlace::Nowhere : place;
    }
    mevo::SecretPlace accountsUnread() const override { return unread; }
    mevo::AccountsUnkept accountsUnkept() const override { return unkept; }
    void rereadAccounts() override { ++rereadings; }
    void keepAccounts(const mevo::OwnAccounts &accounts) override
    {
        kept = accounts;
        ++stores;
    }
    void checkAccount(mevo::AccountService service, QObject *context, Done done) override
    {
        checks[service] = [asker = QPointer<QObject>(context), done = std::move(done)](const auto &verdict) {
            if (!asker.isNull()) {
                done(verdict);
            }
        };
    }
    void endAccountChecks() override
    {
        checks.clear();
        ++endings;
    }
};
