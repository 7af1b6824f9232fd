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

bool isEmptyText(const QJsonValue &value)
{
    return value.isString() && value.toString().isEmpty();
}

/// All fields of the service are empty, as addedTo() leaves them.
bool isTakenAway(const QString &service, const QJsonObject &fields)
{
    const auto known = std::find_if(accountServices.begin(), accountServices.end(),
                                    [&](AccountService each) { return accountServiceName(each) == service; });
    return known != accountServices.end() && fields.size() == accountFields(*known).size() &&
           std::all_of(fields.begin(), fields.end(), isEmptyText);
}

/// Joins what is kept, one value after another.
class Joining
{
public:
    void addText(const QByteArray &text)
    {
        const QJsonDocument document = QJsonDocument::fromJson(text);
        if (!document.isObject()) {
            m_unreadable.append(text);
            return;
        }
        const QJsonObject services = document.object();
        for (auto service = services.begin(); service != services.end(); ++service) {
            addService(service.key(), service.value());
        }
    }
    JoinedAccounts joined() const { return {textOf(m_all), m_unreadable}; }

private:
    void addService(const QString &name, const QJsonValue &later)
    {
        const QJsonValue before = m_all.value(name);
        if (before.isUndefined() || before == later) {
            m_all.insert(name, later);
        } else if (!later.isObject()) {
            putAside({{name, later}});
        } else {
            if (!before.isObject()) {
                putAside({{name, before}});
            }
            const QJsonObject fields = later.toObject();
            m_all.insert(name, isTakenAway(name, fields) ? QJsonObject()
                                                         : joinedFields(name, before.toObject(), fields));
        }
        removeEmpty(name);
    }

    QJsonObject joinedFields(const QString &service, QJsonObject fields, const QJsonObject &later)
    {
        for (auto field = later.begin(); field != later.end(); ++field) {
            const QJsonValue before = fields.value(field.key());
            if (before.isUndefined() || field->isString()) {
                if (!before.isUndefined() && !before.isString()) {
                    putAside({{service, QJsonObject{{field.key(), before}}}});
                }
                fields.insert(field.key(), *field);
            } else if (before != *field) {
                putAside({{service, QJsonObject{{field.key(), *field}}}});
            }
        }
        return fields;
    }

    /// The fields that have been taken away, and what they leave empty.
    void removeEmpty(const QString &service)
    {
        if (!m_all.value(service).isObject()) {
            return;
        }
        QJsonObject fields = m_all.value(service).toObject();
        for (const QString &field : fields.keys()) {
            if (isEmptyText(fields.value(field))) {
                fields.remove(field);
            }
        }
        if (fields.isEmpty()) {
            m_all.remove(service);
        } else {
            m_all.insert(service, fields);
        }
    }

    void putAside(const QJsonObject &values) { m_unreadable.append(textOf(values)); }

    QJsonObject m_all;
    QList<QByteArray> m_unreadable;
};

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
    return applied(text, Removed::Absent);
}

QByteArray AccountChanges::addedTo(const QByteArray &waiting) const
{
    return applied(waiting, Removed::Empty);
}

QByteArray AccountChanges::applied(const QByteArray &text, Removed mark) const
{
    QJsonObject all = QJsonDocument::fromJson(text).object();
    for (const AccountService service : accountServices) {
        const QString name = accountServiceName(service);
        const QStringList names = accountFields(service);
        QJsonObject account = all.value(name).toObject();
        bool changed = false;
        bool removed = mark == Removed::Absent;
        for (int field = 0; field < names.size(); ++field) {
            const std::optional<QString> &value = m_fields[std::size_t(service)][std::size_t(field)];
            removed = removed && value && value->isEmpty();
            if (!value) {
                continue;
            }
            changed = true;
            if (value->isEmpty() && mark == Removed::Absent) {
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
    Joining joining;
    for (const QByteArray &text : texts) {
        joining.addText(text);
    }
    return joining.joined();
}

} // namespace mevo
