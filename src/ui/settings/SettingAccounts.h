#pragma once

#include "ui/settings/AccountsHost.h"

#include <QHash>
#include <QObject>
#include <QStringList>

class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace mevo {

/// What the settings dialog does with the fields of the user's own accounts. A field is empty, with a hint of
/// what is kept: what has been typed is stored once the user turns to something else, and is then not shown
/// any more. What cannot be stored stays, and it is said why.
class SettingAccounts : public QObject
{
    Q_OBJECT

public:
    /// `controls` are the dialog's, by their names. They and `host` must outlive this object.
    SettingAccounts(const QHash<QString, QWidget *> &controls, AccountsHost &host, QObject *parent);

    /// Shows what is kept and in force. What is being typed stays, and what a check has said of what is kept.
    void fill();
    /// Stores what has been typed.
    void store();
    /// The dialog is shown: what could not be read before is looked for once more.
    void open();
    /// The dialog is closed: checks end, and what they have said is over.
    void close();

private:
    struct Service
    {
        AccountService id;
        std::vector<QLineEdit *> fields;
        QPushButton *check;
        QPushButton *remove;
        QLabel *told;
        QString verdict;             ///< of the last check, empty for none
        bool checking = false;       ///< it is under way
        OwnAccounts::Values checked; ///< what that was about
        int checks = 0;              ///< how many have been asked for, or are over
        QString refusal;             ///< why what stands in the fields has not been stored, empty for none
    };
    void add(AccountService id, const QHash<QString, QWidget *> &controls);
    void edited(Service &service);
    void store(Service &service);
    void check(Service &service);
    void remove(Service &service);
    void keep(const OwnAccounts &accounts);
    void forgetCheck(Service &service);
    void fill(Service &service);
    QString situation(const Service &service) const;
    QString keptText() const;

    AccountsHost &m_host;
    std::vector<Service> m_services;
    QLabel *m_kept;
};

} // namespace mevo
