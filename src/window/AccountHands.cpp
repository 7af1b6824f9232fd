#include "window/AccountHands.h"

#include "base/SettingsFile.h"
#include "engines/BaiduTokens.h"
#include "engines/CredentialStore.h"
#include "window/AccountCheck.h"
#include "window/MainWindow.h"

#include <QDebug>

#include <utility>

namespace mevo {

namespace {

/// The accounts of `kept`, but of `after` where that has one or has taken one of `before` away.
OwnAccounts merged(const OwnAccounts &kept, const OwnAccounts &before, const OwnAccounts &after)
{
    OwnAccounts all = kept;
    for (const AccountService service : accountServices) {
        const OwnAccounts::Values &values = after.values(service);
        if (after.hasAny(service) || before.hasAny(service)) {
            all.remove(service);
            for (std::size_t field = 0; field < values.size(); ++field) {
                all.set(service, int(field), values[field]);
            }
        }
    }
    return all;
}

} // namespace

AccountHands::AccountHands(MainWindow &window)
    : m_window(window)
{
}

void AccountHands::read()
{
    m_window.m_platform.secrets->read(this, [this](const SecretStore::Found &found) { take(found); });
}

void AccountHands::take(const SecretStore::Found &found)
{
    const std::optional<OwnAccounts> accounts =
        found.answered ? OwnAccounts::fromText(found.secret) : std::nullopt;
    m_locked = !found.answered;
    m_place = found.place;
    if (found.answered && !accounts) {
        qWarning("Accounts: the user's own cannot be understood");
    }
    m_read = true;
    putInForce(accounts.value_or(OwnAccounts()), false);
    emit changed();
}

const OwnAccounts &AccountHands::ownAccounts() const
{
    return m_window.ownAccounts;
}

AccountSource AccountHands::accountInForce(AccountService service) const
{
    return mevo::accountInForce(service, m_window, m_window.m_endpoints);
}

void AccountHands::keepAccounts(const OwnAccounts &accounts, QObject *context,
                                std::function<void(SecretPlace)> done)
{
    const OwnAccounts before = m_window.ownAccounts;
    putInForce(accounts, true);
    emit changed();
    if (m_read && !m_locked) {
        write(context, std::move(done));
        return;
    }
    // What is kept there is not known yet, and must not be overwritten unseen.
    const QPointer<QObject> asker(context);
    m_window.m_platform.secrets->read(
        this, [this, before, accounts, asker, done = std::move(done)](const SecretStore::Found &found) {
            m_read = true;
            m_locked = !found.answered;
            if (!found.answered) {
                qWarning("Accounts: they are not kept, as the ones before cannot be read");
                if (!asker.isNull()) {
                    done(SecretPlace::Nowhere);
                }
                return;
            }
            const OwnAccounts kept = OwnAccounts::fromText(found.secret).value_or(OwnAccounts());
            putInForce(merged(kept, before, accounts), true);
            emit changed();
            write(asker, done);
        });
}

void AccountHands::write(QObject *context, std::function<void(SecretPlace)> done)
{
    const bool none = m_window.ownAccounts.isEmpty();
    const QPointer<QObject> asker(context);
    m_window.m_platform.secrets->write(m_window.ownAccounts.toText(), this,
                                       [this, none, asker, done = std::move(done)](SecretPlace place) {
                                           if (place == SecretPlace::Nowhere) {
                                               qWarning("Accounts: they could not be kept");
                                           } else {
                                               m_place = none ? SecretPlace::Nowhere : place;
                                           }
                                           if (!asker.isNull()) {
                                               done(place);
                                           }
                                       });
}

void AccountHands::putInForce(const OwnAccounts &accounts, bool forgetTokens)
{
    const OwnAccounts before = std::exchange(m_window.ownAccounts, accounts);
    if (before == accounts) {
        return;
    }
    ++m_window.ownAccountChanges;
    const auto hasChanged = [&](AccountService service) {
        return before.values(service) != accounts.values(service);
    };
    for (const CredentialListRow &list : credentialLists()) {
        if (hasChanged(accountServiceOf(list.id))) {
            for (int key = 0; key < list.keys; ++key) {
                (m_window.*list.members[key]).clear(); // where there is no list, nothing takes its place
            }
        }
    }
    CredentialStore &lists = *m_window.m_credentials;
    if (hasChanged(AccountService::XunFei)) {
        lists.LoadXunFeiCredentials();
        lists.LoadXunFeiMinorCredentials();
    }
    if (hasChanged(AccountService::BaiduTranslate)) {
        lists.LoadBaiduTranslateCredentials();
    }
    if (!hasChanged(AccountService::Baidu)) {
        return;
    }
    lists.LoadCurrentBaiduCredentials();
    lists.LoadBaiduTtsCredentials();
    m_window.BaiduAccessToken.clear();
    m_window.BaiduTtsAccessToken.clear();
    if (forgetTokens) { // the kept ones are those of the account before
        SettingsFile settings;
        settings.setValue(QStringLiteral("LastBDTK"), QString());
        settings.setValue(QStringLiteral("LastBDTTSTK"), QString());
    }
    m_window.whenStarted([this] { fetchTokens(); });
}

void AccountHands::fetchTokens()
{
    if (!m_window.IsOnline || m_window.isLeaving()) {
        return; // the next sentence asks for one
    }
    const QPointer<AccountHands> alive(this);
    if (m_window.BaiduAccessToken.isEmpty()) {
        m_window.m_tokens->FetchBaiduToken();
    }
    if (!alive.isNull() && !m_window.isLeaving() && m_window.BaiduTtsAccessToken.isEmpty()) {
        m_window.m_tokens->FetchBaiduTtsToken();
    }
}

void AccountHands::checkAccount(AccountService service, QObject *context,
                                std::function<void(const AccountVerdict &)> done)
{
    QPointer<AccountCheck> &check = m_checks[std::size_t(service)];
    delete check;
    check = new AccountCheck(m_window, *m_window.m_platform.systemFacts, *m_window.m_platform.time,
                             m_window.m_endpoints, this);
    const QPointer<QObject> asker(context);
    check->start(service, m_window.ownAccounts.values(service),
                 [check, asker, done = std::move(done)](const AccountVerdict &verdict) {
                     qInfo("Accounts: a check ended with %d", int(verdict.fault));
                     check->deleteLater();
                     if (!asker.isNull()) {
                         done(verdict);
                     }
                 });
}

void AccountHands::endAccountChecks()
{
    for (QPointer<AccountCheck> &check : m_checks) {
        delete check;
    }
}

} // namespace mevo
