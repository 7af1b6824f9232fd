#pragma once

#include "keypad/PinyinTable.h"

#include <QString>

namespace mevo::keypad {

/// The syllable that is being typed, and the page of characters to choose from.
class PinyinInput
{
public:
    static constexpr int pageSize = 9;
    static constexpr int mostLetters = 32;
    /// Width of a page in characters, and what a text takes of it with its number and the gap behind it. A
    /// page holds at least one text, however long.
    static constexpr int pageWidth = 2 * pageSize;
    static int widthOf(const QString &text);

    /// Takes a new table's characters, and keeps the letters and the page as far as it goes.
    void setTable(PinyinTable table);
    bool hasTable() const { return !m_table.isEmpty(); }

    /// Takes a letter from a to z; beyond `mostLetters` it is dropped.
    void addLetter(QChar letter);
    void removeLetter();
    void clear();
    bool isActive() const { return !m_letters.isEmpty(); }
    QString letters() const { return m_letters; }

    /// The texts of the page, at most `pageSize`.
    QStringList page() const;
    bool hasPageBefore() const { return m_page > 0; }
    bool hasPageAfter() const { return m_page + 1 < int(m_pageStarts.size()); }
    /// Goes to the page before (-1) or after (1); stays where there is none.
    void turnPage(int step);

    /// Takes the text at `index` of the page. The letters that it stands for are gone; those behind them
    /// stay. Empty when there is none.
    QString choose(int index);

private:
    void look();
    void makePages();
    std::size_t pageEnd() const;

    PinyinTable m_table;
    QString m_letters;
    std::vector<Candidate> m_candidates;
    std::vector<std::size_t> m_pageStarts; ///< places in m_candidates
    int m_page = 0;
};

} // namespace mevo::keypad
