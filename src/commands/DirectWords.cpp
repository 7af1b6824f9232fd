#include "commands/DirectWords.h"

#include <algorithm>

namespace mevo {

int directPrefixLength(const QStringList &words, const QString &text)
{
    for (const QString &word : words) {
        if (word.isEmpty()) {
            break;
        }
        if (text.startsWith(word)) {
            return word.length();
        }
    }
    return 0;
}

bool beginsWithDirectWord(const QStringList &words, const QString &text)
{
    return std::any_of(words.begin(), words.end(),
                       [&text](const QString &word) { return !word.isEmpty() && text.startsWith(word); });
}

} // namespace mevo
