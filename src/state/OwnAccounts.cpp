#include "state/OwnAccounts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace mevo {

namespace {

struct ServiceNames
{
    AccountService service;
    const char *name;
    const char *fields[OwnAccounts::mostFields]; ///< null at the end
};

constexpr ServiceNames serviceNames[] = {
    {AccountService::Baidu, "Baidu", {"ApiKey", "SecretKey", nullptr}},
    {AccountService::Tencent, "Tencent", {"SecretId", "SecretKey", nullptr}},
    {AccountService::XunFei, "XunFei", {"AppId", "ApiKey", "ApiSecret"}},
    {AccountService::BaiduTranslate, "BaiduTranslate", {"AppId", "Key", nullptr}},
};

const ServiceNames &namesOf(AccountService service)
{
    return serviceNames[std::size_t(service)];
}

} // namespace

QStringList accountFields(AccountService service)
{
    QStringList fields;
    for (const char *field : namesOf(service).fields) {
        if (field != nullptr) {
            fields.append(QLatin1String(field));
        }
    }
    return fields;
}

bool OwnAccounts::set(AccountService service, int field, const QString &value)
{
    const QString text = value.trimmed();
    const auto unusable = [](QChar each) { return each.category() == QChar::Other_Control; };
    if (field < 0 || field >= accountFields(service).size() || text.size() > longestValue ||
        std::any_of(text.begin(), text.end(), unusable)) {
        return false;
    }
    m_values[std::size_t(service)][std::size_t(field)] = text;
    return true;
}

bool OwnAccounts::isComplete(AccountService service) const
{
    const int count = accountFields(service).size();
    return std::none_of(values(service).begin(), values(service).begin() + count,
                        [](const QString &value) { return value.isEmpty(); });
}

bool OwnAccounts::hasAny(AccountService service) const
{
    return std::any_of(values(service).begin(), values(service).end(),
                       [](const QString &value) { return !value.isEmpty(); });
}

bool OwnAccounts::isEmpty() const
{
    return std::none_of(accountServices.begin(), accountServices.end(),
                        [this](AccountService service) { return hasAny(service); });
}

QByteArray OwnAccounts::toText() const
{
    QJsonObject all;
    for (const AccountService service : accountServices) {
        QJsonObject account;
        const QStringList fields = accountFields(service);
        for (int field = 0; field < fields.size(); ++field) {
            const QString &value = values(service)[std::size_t(field)];
            if (!value.isEmpty()) {
                account.insert(fields[field], value);
            }
        }
        if (!account.isEmpty()) {
            all.insert(QLatin1String(namesOf(service).name), account);
        }
    }
    return all.isEmpty() ? QByteArray() : QJsonDocument(all).toJson(QJsonDocument::Compact);
}

std::optional<OwnAccounts> OwnAccounts::fromText(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return text.isEmpty() ? std::make_optional<OwnAccounts>() : std::nullopt;
    }
    OwnAccounts accounts;
    for (const AccountService service : accountServices) {
        const QJsonObject account = document.object().value(QLatin1String(namesOf(service).name)).toObject();
        const QStringList fields = accountFields(service);
        for (int field = 0; field < fields.size(); ++field) {
            accounts.set(service, field, account.value(fields[field]).toString());
        }
    }
    return accounts;
}

QString secretHint(const QString &secret)
{
    constexpr int shown = 4;
    constexpr int shortest = 3 * shown; // of a shorter one four characters would be too much
    return QString(4, QChar(u'•')) + (secret.size() < shortest ? QString() : secret.right(shown));
}

} // namespace mevo
