#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

namespace mevo {

/// The services for which a user can have an account of his own.
enum class AccountService { Baidu, Tencent, XunFei, BaiduTranslate };

constexpr std::array<AccountService, 4> accountServices{
    AccountService::Baidu, AccountService::Tencent, AccountService::XunFei, AccountService::BaiduTranslate};

/// The name of a service in the kept text.
QString accountServiceName(AccountService service);

/// What an account of a service consists of, in the order of its fields, under the names of the kept text.
QStringList accountFields(AccountService service);

/// What has been typed or pasted into a field, without what came along around it: blanks, line ends and marks
/// that are not seen.
struct AccountValue
{
    enum class Fault {
        None,
        TooLong,
        Invisible ///< a line end or the like within it
    };
    Fault fault = Fault::None;
    QString text;
};
AccountValue accountValue(const QString &typed);

/// The user's own accounts. Never logged.
class OwnAccounts
{
public:
    /// The most that a field holds; keys are some dozens of characters long.
    static constexpr int longestValue = 200;
    static constexpr int mostFields = 3;
    using Values = std::array<QString, mostFields>;

    /// The values of a service in the order of its fields; empty ones where there is none.
    const Values &values(AccountService service) const { return m_values[std::size_t(service)]; }
    /// Sets a field to what accountValue() makes of `value`. False, and it stays as it was, for a fault.
    bool set(AccountService service, int field, const QString &value);
    void remove(AccountService service) { m_values[std::size_t(service)] = {}; }

    /// All fields of the service are there, so that its account can be used.
    bool isComplete(AccountService service) const;
    /// Some field of the service is there.
    bool hasAny(AccountService service) const;

    /// Of JSON, {"Baidu":{"ApiKey":"..."}}; an empty text holds none, and what is no such text gives nothing.
    /// Fields that are not known or not usable are left out.
    static std::optional<OwnAccounts> fromText(const QByteArray &text);

    bool operator==(const OwnAccounts &other) const { return m_values == other.m_values; }

private:
    std::array<Values, accountServices.size()> m_values;
};

/// How a secret is shown once it is kept: its last four characters, none of one that is not much longer.
QString secretHint(const QString &secret);

} // namespace mevo
