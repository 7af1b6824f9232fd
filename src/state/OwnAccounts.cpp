#include "state/OwnAccounts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

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

/// A line end, or one of the marks without a width that come along from web pages.
bool isInvisible(QChar each)
{
    const QChar::Category category = each.category();
    return category == QChar::Other_Control || category == QChar::Other_Format ||
           category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
}

} // namespace

QString accountServiceName(AccountService service)
{
    return QLatin1String(namesOf(service).name);
}

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

AccountValue accountValue(const QString &typed)
{
    const auto surrounds = [](QChar each) { return each.isSpace() || isInvisible(each); };
    const auto begin = std::find_if_not(typed.begin(), typed.end(), surrounds);
    const auto end = std::find_if_not(typed.rbegin(), std::make_reverse_iterator(begin), surrounds).base();
    const QString text(begin, int(end - begin));
    if (text.size() > OwnAccounts::longestValue) {
        return {AccountValue::Fault::TooLong, text};
    }
    const bool usable = std::none_of(text.begin(), text.end(), isInvisible);
    return {usable ? AccountValue::Fault::None : AccountValue::Fault::Invisible, text};
}

bool OwnAccounts::set(AccountService service, int field, const QString &value)
{
    const AccountValue usable = accountValue(value);
    if (field < 0 || field >= accountFields(service).size() || usable.fault != AccountValue::Fault::None) {
        return false;
    }
    m_values[std::size_t(service)][std::size_t(field)] = usable.text;
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

std::optional<OwnAccounts> OwnAccounts::fromText(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return text.isEmpty() ? std::make_optional<OwnAccounts>() : std::nullopt;
    }
    OwnAccounts accounts;
    for (const AccountService service : accountServices) {
        const QJsonObject account = document.object().value(accountServiceName(service)).toObject();
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
