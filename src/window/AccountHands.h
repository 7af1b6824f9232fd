#pragma once

#include "ui/settings/AccountsHost.h"

#include <QObject>
#include <QPointer>

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

    /// Reads what is kept, behind everything else, and puts it in force.
    void read();
    /// The reading has been answered, whatever it was.
    bool isRead() const { return m_read; }

    const OwnAccounts &ownAccounts() const override;
    AccountSource accountInForce(AccountService service) const override;
    SecretPlace accountsPlace() const override { return m_place; }
    bool accountsLocked() const override { return m_locked; }
    void keepAccounts(const OwnAccounts &accounts, QObject *context,
                      std::function<void(SecretPlace)> done) override;
    void checkAccount(AccountService service, QObject *context,
                      std::function<void(const AccountVerdict &)> done) override;
    void endAccountChecks() override;

Q_SIGNALS:
    /// The accounts have been read, or others are in force.
    void changed();

private:
    void take(const SecretStore::Found &found);
    void write(QObject *context, std::function<void(SecretPlace)> done);
    void putInForce(const OwnAccounts &accounts, bool forgetTokens);
    void fetchTokens();

    MainWindow &m_window;
    SecretPlace m_place = SecretPlace::Nowhere;
    bool m_read = false;
    bool m_locked = false;
    std::array<QPointer<AccountCheck>, accountServices.size()> m_checks;
};

} // namespace mevo
