#pragma once

#include "commands/CommandRow.h"
#include "keypad/PinyinList.h"

#include <QStringList>

#include <map>
#include <memory>

namespace mevo::keypad {

/// A text that a syllable stands for.
struct Candidate
{
    QString text;
    int letters = 0; ///< of what was typed that it takes, from the start
};

/// What letters may stand for: the user's table, whose texts come first and in its order, and behind it a
/// list. Copies share both.
class PinyinTable
{
public:
    PinyinTable() = default;
    /// Rows of another type, or whose syllable is not of the letters a to z, are left out. Rows of one
    /// syllable count together, and each text once.
    explicit PinyinTable(const CommandRows &rows, PinyinList list = PinyinList());

    bool isEmpty() const { return (!m_texts || m_texts->empty()) && m_list.isEmpty(); }
    /// What the letters may stand for: first what sounds exactly so, then what begins so, then what only
    /// their first letters sound like. Each text once, at most `mostCandidates`.
    std::vector<Candidate> candidates(const QString &letters) const;
    static constexpr int mostCandidates = 500;

private:
    using Texts = std::map<QString, QStringList>; ///< by syllable
    std::shared_ptr<const Texts> m_texts;         ///< the user's; null for none
    PinyinList m_list;
};

} // namespace mevo::keypad
