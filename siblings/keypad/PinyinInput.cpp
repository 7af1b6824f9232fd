#include "keypad/PinyinInput.h"

#include <algorithm>

namespace mevo::keypad {

void PinyinInput::setTable(PinyinTable table)
{
    m_table = std::move(table);
    const int page = m_page;
    look();
    m_page = std::min(page, std::max(0, int(m_pageStarts.size()) - 1));
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
    makePages();
}

int PinyinInput::widthOf(const QString &text)
{
    return std::min(int(text.size()) + 1, pageWidth);
}

void PinyinInput::makePages()
{
    m_pageStarts.clear();
    int width = 0, count = 0;
    for (std::size_t i = 0; i < m_candidates.size(); ++i) {
        width += widthOf(m_candidates[i].text);
        if (i == 0 || ++count == pageSize || width > pageWidth) {
            m_pageStarts.push_back(i);
            count = 0;
            width = widthOf(m_candidates[i].text);
        }
    }
}

std::size_t PinyinInput::pageEnd() const
{
    return hasPageAfter() ? m_pageStarts[std::size_t(m_page) + 1] : m_candidates.size();
}

QStringList PinyinInput::page() const
{
    QStringList texts;
    if (!m_pageStarts.empty()) {
        for (std::size_t i = m_pageStarts[std::size_t(m_page)]; i < pageEnd(); ++i) {
            texts.append(m_candidates[i].text);
        }
    }
    return texts;
}

void PinyinInput::turnPage(int step)
{
    if (step < 0 ? hasPageBefore() : hasPageAfter()) {
        m_page += step < 0 ? -1 : 1;
    }
}

QString PinyinInput::choose(int index)
{
    if (m_pageStarts.empty() || index < 0) {
        return {};
    }
    const std::size_t at = m_pageStarts[std::size_t(m_page)] + std::size_t(index);
    if (at >= pageEnd()) {
        return {};
    }
    const Candidate chosen = m_candidates[at];
    m_letters.remove(0, chosen.letters);
    look();
    return chosen.text;
}

} // namespace mevo::keypad
