#pragma once

#include "state/OwnAccounts.h"

#include <QByteArray>
#include <QList>

#include <array>
#include <optional>

namespace mevo {

/// Fields of accounts that the user has set or taken away.
class AccountChanges
{
public:
    AccountChanges() = default;
    /// What leads from one to the other. A service that is taken away is taken away whole, so with fields
    /// that `before` does not know of.
    AccountChanges(const OwnAccounts &before, const OwnAccounts &after);

    bool isEmpty() const;
    /// Adds changes that came after these.
    void add(const AccountChanges &later);
    OwnAccounts appliedTo(OwnAccounts accounts) const;
    /// The kept text with the changes; what it holds besides stays. Empty when nothing is left.
    QByteArray appliedTo(const QByteArray &text) const;
    /// A text of changes that wait to be kept, with these behind them: a later text for joinAccountTexts(),
    /// in which a field that has been taken away is empty.
    QByteArray addedTo(const QByteArray &waiting) const;

private:
    enum class Removed { Absent, Empty };
    QByteArray applied(const QByteArray &text, Removed removed) const;

    using Fields = std::array<std::optional<QString>, OwnAccounts::mostFields>;
    std::array<Fields, accountServices.size()> m_fields; ///< an empty text where one was taken away
};

/// Kept texts as one.
struct JoinedAccounts
{
    QByteArray text;
    /// What is not in it: texts that are none of OwnAccounts', and values that gave way to others without
    /// being what an account consists of, as such texts.
    QList<QByteArray> unreadable;
};
/// A field of a later text takes the place of that of an earlier one, and an empty one takes it away. What
/// cannot be a field or an account takes no place of another.
JoinedAccounts joinAccountTexts(const QList<QByteArray> &texts);

} // namespace mevo
