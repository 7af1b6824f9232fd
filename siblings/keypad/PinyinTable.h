#pragma once

#include "commands/CommandRow.h"

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

/// The pinyin syllables of the user's table, each with its characters in the table's order. Copies share it.
class PinyinTable
{
public:
    PinyinTable() = default;
    /// Rows of another type, or whose syllable is not of the letters a to z, are left out. Rows of one
    /// syllable count together, and each text once.
    explicit PinyinTable(const CommandRows &rows);

    bool isEmpty() const { return !m_texts || m_texts->empty(); }
    /// What the letters may stand for: first what sounds exactly so, then what begins so, then what only
    /// their first letters sound like. Each text once, at most `mostCandidates`.
    std::vector<Candidate> candidates(const QString &letters) const;
    static constexpr int mostCandidates = 500;

private:
    using Texts = std::map<QString, QStringList>; ///< by syllable
    std::shared_ptr<const Texts> m_texts;         ///< null for none
};

} // namespace mevo::keypad
