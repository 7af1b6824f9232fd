#pragma once

#include "state/AccountChanges.h"
#include "ui/settings/AccountsHost.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <array>

class MainWindow;

namespace mevo {

class AccountCheck;

/// The user's own accounts: reads and keeps them, and puts them in force.
class AccountHands : public QObject, public AccountsHost
{
    Q_OBJECT

public:
    explicit AccountHands(MainWindow &window);
    /// What the store has not been given it is given now.
    ~AccountHands() override;

    /// Reads what is kept, behind everything else, and puts it in force.
    void read();
    /// The reading has been answered, whatever it was.
    bool isRead() const { return m_read; }

    const OwnAccounts &ownAccounts() const override;
    AccountSource accountInForce(AccountService service) const override;
    SecretPlace accountsPlace() const override { return m_place; }
    SecretPlace accountsUnread() const override { return m_unread; }
    AccountsUnkept accountsUnkept() const override { return m_unkept; }
    void rereadAccounts() override;
    void keepAccounts(const OwnAccounts &accounts) override;
    void checkAccount(AccountService service, QObject *context,
                      std::function<void(const AccountVerdict &)> done) override;
    void endAccountChecks() override;

    /// How long after what the store has not answered, or while the desktop has no keyring, it is asked
    /// again. Without a prompt: the user has seen one.
    static inline int retryMs = 60000;

Q_SIGNALS:
    /// The accounts have been read or kept, or others are in force.
    void changed();

private:
    void read(KeyringPrompt prompt);
    void found(const SecretStore::Found &found);
    void take(const SecretStore::Found &found);
    void handOver(KeyringPrompt prompt, SecretStore::Done done);
    void keepPending(KeyringPrompt prompt);
    void kept(const SecretStore::Found &found);
    void setUnkept(AccountsUnkept unkept);
    void putInForce(const OwnAccounts &accounts, bool forgetTokens);
    void fetchTokens();

    MainWindow &m_window;
    SecretPlace m_place = SecretPlace::Nowhere;
    SecretPlace m_unread = SecretPlace::Nowhere;
    bool m_read = false;
    bool m_known = false; ///< what is kept has been read
    bool m_toldUnreadable = false;
    bool m_keyringAbsent = false; ///< so that one that comes may hold more
    AccountChanges m_pending;     ///< that the store has not been given, or has not kept in any way
    AccountChanges m_given;       ///< that it is at
    bool m_keeping = false;       ///< it is at some
    AccountsUnkept m_unkept = AccountsUnkept::None; ///< the last ones
    QTimer m_retry;
    std::array<QPointer<AccountCheck>, accountServices.size()> m_checks;
};

} // namespace mevo
