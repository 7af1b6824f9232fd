#include "state/AccountChanges.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace mevo {

namespace {

QByteArray textOf(const QJsonObject &all)
{
    return all.isEmpty() ? QByteArray() : QJsonDocument(all).toJson(QJsonDocument::Compact);
}

} // namespace

AccountChanges::AccountChanges(const OwnAccounts &before, const OwnAccounts &after)
{
    for (const AccountService service : accountServices) {
        const bool removed = before.hasAny(service) && !after.hasAny(service);
        for (std::size_t field = 0; field < std::size_t(OwnAccounts::mostFields); ++field) {
            const QString &value = after.values(service)[field];
            if (removed || value != before.values(service)[field]) {
                m_fields[std::size_t(service)][field] = value;
            }
        }
    }
}

bool AccountChanges::isEmpty() const
{
    return std::all_of(m_fields.begin(), m_fields.end(), [](const Fields &fields) {
        return std::none_of(fields.begin(), fields.end(),
                            [](const auto &field) { return field.has_value(); });
    });
}

void AccountChanges::add(const AccountChanges &later)
{
    for (std::size_t service = 0; service < m_fields.size(); ++service) {
        for (std::size_t field = 0; field < m_fields[service].size(); ++field) {
            if (later.m_fields[service][field]) {
                m_fields[service][field] = later.m_fields[service][field];
            }
        }
    }
}

OwnAccounts AccountChanges::appliedTo(OwnAccounts accounts) const
{
    for (const AccountService service : accountServices) {
        const Fields &fields = m_fields[std::size_t(service)];
        for (std::size_t field = 0; field < fields.size(); ++field) {
            if (fields[field]) {
                accounts.set(service, int(field), *fields[field]);
            }
        }
    }
    return accounts;
}

QByteArray AccountChanges::appliedTo(const QByteArray &text) const
{
    QJsonObject all = QJsonDocument::fromJson(text).object();
    for (const AccountService service : accountServices) {
        const QString name = accountServiceName(service);
        const QStringList names = accountFields(service);
        QJsonObject account = all.value(name).toObject();
        bool changed = false;
        bool removed = true;
        for (int field = 0; field < names.size(); ++field) {
            const std::optional<QString> &value = m_fields[std::size_t(service)][std::size_t(field)];
            removed = removed && value && value->isEmpty();
            if (!value) {
                continue;
            }
            changed = true;
            if (value->isEmpty()) {
                account.remove(names[field]);
            } else {
                account.insert(names[field], *value);
            }
        }
        if (removed || (changed && account.isEmpty())) {
            all.remove(name);
        } else if (changed) {
            all.insert(name, account);
        }
    }
    return textOf(all);
}

JoinedAccounts joinAccountTexts(const QList<QByteArray> &texts)
{
    JoinedAccounts joined;
    QJsonObject all;
    for (const QByteArray &text : texts) {
        const QJsonDocument document = QJsonDocument::fromJson(text);
        if (!document.isObject()) {
            joined.unreadable.append(text);
            continue;
        }
        const QJsonObject services = document.object();
        for (auto service = services.begin(); service != services.end(); ++service) {
            all.insert(service.key(), service.value());
        }
    }
    joined.text = textOf(all);
    return joined;
}

} // namespace mevo
