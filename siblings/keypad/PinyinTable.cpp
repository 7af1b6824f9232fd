#include "keypad/PinyinTable.h"

#include <QSet>

#include <algorithm>

namespace mevo::keypad {

namespace {

constexpr int longestSyllable = 64;

bool isSyllable(const QString &text)
{
    return !text.isEmpty() && text.size() <= longestSyllable &&
           std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c >= QLatin1Char('a') && c <= QLatin1Char('z'); });
}

} // namespace

PinyinTable::PinyinTable(const CommandRows &rows, PinyinList list)
    : m_list(std::move(list))
{
    auto texts = std::make_shared<Texts>();
    QSet<QString> known; // syllable and text
    for (const CommandRow &row : rows) {
        if (commandTypeOfIndex(row.CmdWordTypeIndex) != CommandType::PinyinKeyboard ||
            !isSyllable(row.CmdWordContents)) {
            continue;
        }
        for (const QString &form : row.CommandWords.split(QLatin1Char(';'))) {
            const QString text = form.trimmed();
            const QString mark = row.CmdWordContents + QLatin1Char(' ') + text;
            if (!text.isEmpty() && !known.contains(mark)) {
                known.insert(mark);
                (*texts)[row.CmdWordContents].append(text);
            }
        }
    }
    m_texts = std::move(texts);
}

std::vector<Candidate> PinyinTable::candidates(const QString &letters) const
{
    std::vector<Candidate> found;
    QSet<QString> known;
    const auto take = [&](const QStringList &texts, int length) {
        for (const QString &text : texts) {
            if (int(found.size()) < mostCandidates && !known.contains(text)) {
                known.insert(text);
                found.push_back({text, length});
            }
        }
    };
    if (letters.isEmpty() || isEmpty()) {
        return found;
    }
    static const Texts none;
    const Texts &own = m_texts ? *m_texts : none;
    const auto takeExactly = [&](const QString &syllable) {
        const auto row = own.find(syllable);
        if (row != own.end()) {
            take(row->second, int(syllable.size()));
        }
        take(m_list.exactly(syllable, mostCandidates), int(syllable.size()));
    };
    const int length = int(letters.size());
    takeExactly(letters);
    for (auto row = own.upper_bound(letters);
         row != own.end() && row->first.startsWith(letters) && int(found.size()) < mostCandidates; ++row) {
        take(row->second, length);
    }
    take(m_list.beginning(letters, mostCandidates), length);
    for (int part = std::min(length - 1, longestSyllable); part > 0; --part) {
        takeExactly(letters.left(part));
    }
    return found;
}

} // namespace mevo::keypad
