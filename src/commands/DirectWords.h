#pragma once

#include <QStringList>

namespace mevo {

/// Length of the first word of `words` that `text` begins with; 0 when it begins with none. Kept: an
/// empty word hides the words behind it.
int directPrefixLength(const QStringList &words, const QString &text);

/// Whether `text` begins with a word of `words`, wherever it stands in the list.
bool beginsWithDirectWord(const QStringList &words, const QString &text);

} // namespace mevo
