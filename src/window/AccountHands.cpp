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
        if (m_unkept != AccountsUnkept::None) {
            keepPending(KeyringPrompt::None);
        } else {
            rereadAccounts();
        }
    });
}

AccountHands::~AccountHands()
{
    if (!m_pending.isEmpty()) {
        handOver(KeyringPrompt::None, [](const SecretStore::Found &) {});
    }
}

void AccountHands::read()
{
    read(KeyringPrompt::Allowed);
}

void AccountHands::rereadAccounts()
{
    // What is being kept brings the answer along.
    if (m_read && !m_keeping && (!m_known || m_keyringAbsent)) {
        read(KeyringPrompt::None);
    }
}

void AccountHands::read(KeyringPrompt prompt)
{
    m_window.m_platform.secrets->read(prompt, this, [this](const SecretStore::Found &answer) {
        const int before = m_window.ownAccountChanges;
        const SecretPlace unread = m_unread;
        found(answer);
        if (!std::exchange(m_read, true) || m_window.ownAccountChanges != before || m_unread != unread) {
            emit changed();
        }
        if (answer.waiting && answer.answered && !m_keeping) {
            keepPending(KeyringPrompt::None); // in a run before it could not be kept
        }
    });
}

/// What the store has told, of a reading or behind a change.
void AccountHands::found(const SecretStore::Found &found)
{
    if (found.answered) {
        m_keyringAbsent = found.keyringAbsent; // one that has come and stays locked is looked at again
    }
    if (found.answered || !m_known) { // else there is nothing new in it
        take(found);
    }
    if (!found.answered && found.waiting && m_unkept == AccountsUnkept::None) {
        setUnkept(AccountsUnkept::Waiting);
    }
    if (!found.answered || m_keyringAbsent) {
        m_retry.start(retryMs);
    }
}

/// What the user has set meanwhile stands before what was kept.
void AccountHands::take(const SecretStore::Found &found)
{
    const JoinedAccounts kept = joinAccountTexts(found.texts);
    if (!kept.unreadable.isEmpty() && !std::exchange(m_toldUnreadable, true)) {
        qWarning("Accounts: what is kept cannot be understood");
    }
    AccountChanges changes = m_given;
    changes.add(m_pending);
    // At the start the kept tokens are those of the kept account.
    const bool forgetTokens = m_read || !changes.isEmpty();
    m_known = found.answered;
    m_unread = found.answered ? SecretPlace::Nowhere : found.place;
    m_place = found.answered ? found.place : SecretPlace::Nowhere;
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

/// Gives the store all changes that it has not.
void AccountHands::handOver(KeyringPrompt prompt, SecretStore::Done done)
{
    m_given = std::exchange(m_pending, {});
    const auto make = [given = m_given](const QList<QByteArray> &texts) {
        const JoinedAccounts kept = joinAccountTexts(texts);
        return SecretStore::Change{given.appliedTo(kept.text), kept.unreadable};
    };
    const auto postpone = [given = m_given](const QByteArray &waiting) { return given.addedTo(waiting); };
    m_window.m_platform.secrets->change(prompt, {make, postpone}, this, std::move(done));
}

void AccountHands::keepPending(KeyringPrompt prompt)
{
    if (m_keeping) {
        return; // they follow
    }
    m_keeping = true;
    handOver(prompt, [this](const SecretStore::Found &found) { kept(found); });
}

void AccountHands::kept(const SecretStore::Found &answer)
{
    m_keeping = false;
    const bool more = !m_pending.isEmpty();
    if (!answer.answered && !answer.waiting) { // nowhere but here
        m_given.add(std::exchange(m_pending, {}));
        m_pending = m_given;
    }
    m_given = {};
    setUnkept(answer.answered  ? AccountsUnkept::None
              : answer.waiting ? AccountsUnkept::Waiting
                               : AccountsUnkept::InMemory);
    found(answer);
    m_read = true;
    if (more) {
        keepPending(KeyringPrompt::Allowed);
    }
    emit changed();
}

void AccountHands::setUnkept(AccountsUnkept unkept)
{
    if (std::exchange(m_unkept, unkept) == unkept) {
        return;
    }
    switch (unkept) {
    case AccountsUnkept::None:
        qInfo("Accounts: the changes are kept now");
        break;
    case AccountsUnkept::Waiting:
        qInfo("Accounts: changes wait in a file, it is tried again to keep them");
        break;
    case AccountsUnkept::InMemory:
        qWarning("Accounts: changes could not be kept, it is tried again");
        break;
    }
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
