#pragma once

#include "commands/CommandRow.h"

#include <QHash>
#include <QStringList>

namespace mevo::keypad {

/// The spoken words of the keys, by letter or digit, from the user's table.
class KeyWords
{
public:
    KeyWords() = default;
    /// Rows of another type, and those whose key is not one letter or digit, are left out.
    explicit KeyWords(const CommandRows &rows);

    /// Those of a key's lower-case letter or digit, without the key's own name; in the table's order.
    QStringList of(QChar key) const { return m_words.value(key); }

private:
    QHash<QChar, QStringList> m_words;
};

} // namespace mevo::keypad
