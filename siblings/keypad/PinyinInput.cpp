#include "keypad/PinyinInput.h"

#include <algorithm>

namespace mevo::keypad {

void PinyinInput::setTable(PinyinTable table)
{
    m_table = std::move(table);
    const int page = m_page;
    look();
    m_page = std::min(page, std::max(0, (int(m_candidates.size()) - 1) / pageSize));
}

void PinyinInput::addLetter(QChar letter)
{
    if (m_letters.size() < mostLetters) {
        m_letters += letter;
        look();
    }
}

void PinyinInput::removeLetter()
{
    m_letters.chop(1);
    look();
}

void PinyinInput::clear()
{
    m_letters.clear();
    look();
}

void PinyinInput::look()
{
    m_candidates = m_table.candidates(m_letters);
    m_page = 0;
}

QStringList PinyinInput::page() const
{
    QStringList texts;
    for (int i = m_page * pageSize; i < int(m_candidates.size()) && texts.size() < pageSize; ++i) {
        texts.append(m_candidates[std::size_t(i)].text);
    }
    return texts;
}

bool PinyinInput::hasPageAfter() const
{
    return (m_page + 1) * pageSize < int(m_candidates.size());
}

void PinyinInput::turnPage(int step)
{
    if (step < 0 ? hasPageBefore() : hasPageAfter()) {
        m_page += step < 0 ? -1 : 1;
    }
}

QString PinyinInput::choose(int index)
{
    const int at = m_page * pageSize + index;
    if (index < 0 || index >= pageSize || at >= int(m_candidates.size())) {
        return {};
    }
    const Candidate chosen = m_candidates[std::size_t(at)];
    m_letters.remove(0, chosen.letters);
    look();
    return chosen.text;
}

} // namespace mevo::keypad
