#include "window/AccountHands.h"

#include "base/SettingsFile.h"
#include "engines/BaiduTokens.h"
#include "engines/CredentialStore.h"
#include "window/AccountCheck.h"
#include "window/MainWindow.h"

#include <QDebug>

#include <utility>

namespace mevo {

AccountHands::AccountHands(MainWindow &window)
    : m_window(window)
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        if (m_refused) {
            keepPending(KeyringPrompt::None);
        } else if (!m_known) {
            read(KeyringPrompt::None);
        }
    });
}

void AccountHands::read()
{
    read(KeyringPrompt::Allowed);
}

void AccountHands::read(KeyringPrompt prompt)
{
    m_window.m_platform.secrets->read(prompt, this, [this](const SecretStore::Found &found) {
        if (found.answered) {
            take(found);
        } else {
            m_retry.start(retryMs);
        }
        if (!std::exchange(m_read, true) || found.answered) {
            emit changed();
        }
    });
}

/// What the user has set meanwhile stands before what was kept.
void AccountHands::take(const SecretStore::Found &found)
{
    const JoinedAccounts kept = joinAccountTexts(found.texts);
    if (!kept.unreadable.isEmpty()) {
        qWarning("Accounts: what is kept cannot be understood");
    }
    AccountChanges changes = m_given;
    changes.add(m_pending);
    // At the start the kept tokens are those of the kept account.
    const bool forgetTokens = m_read || !changes.isEmpty();
    m_known = true;
    m_place = found.place;
    putInForce(changes.appliedTo(OwnAccounts::fromText(kept.text).value_or(OwnAccounts())), forgetTokens);
}

const OwnAccounts &AccountHands::ownAccounts() const
{
    return m_window.ownAccounts;
}

AccountSource AccountHands::accountInForce(AccountService service) const
{
    return mevo::accountInForce(service, m_window, m_window.m_endpoints);
}

void AccountHands::keepAccounts(const OwnAccounts &accounts)
{
    m_pending.add(AccountChanges(m_window.ownAccounts, accounts));
    putInForce(accounts, true);
    emit changed();
    keepPending(KeyringPrompt::Allowed);
}

void AccountHands::keepPending(KeyringPrompt prompt)
{
    if (m_keeping) {
        return; // they follow
    }
    m_keeping = true;
    m_given = std::exchange(m_pending, {});
    const auto edit = [given = m_given](const QList<QByteArray> &texts) {
        const JoinedAccounts kept = joinAccountTexts(texts);
        return SecretStore::Change{given.appliedTo(kept.text), kept.unreadable};
    };
    m_window.m_platform.secrets->change(prompt, edit, this, [this](const SecretStore::Found &found) {
        m_keeping = false;
        const AccountChanges given = std::exchange(m_given, {});
        const bool more = !m_pending.isEmpty();
        if (found.answered) {
            take(found);
        } else {
            AccountChanges all = given;
            all.add(m_pending);
            m_pending = all;
        }
        m_read = true;
        if (m_refused != !found.answered) {
            m_refused = !found.answered;
            qInfo() << (m_refused ? "Accounts: changes could not be kept, it is tried again later"
                                  : "Accounts: the changes are kept now");
        }
        if (more) {
            keepPending(KeyringPrompt::Allowed);
        } else if (m_refused) {
            m_retry.start(retryMs);
        }
        emit changed();
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
