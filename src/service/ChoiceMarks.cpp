#include "service/ChoiceMarks.h"

namespace mevo {

void ChoiceMarks::mark(const QStringList &columns)
{
    ++m_now;
    for (const QString &column : columns) {
        m_marks.insert(column, m_now);
    }
}

QStringList ChoiceMarks::since(int moment) const
{
    QStringList columns;
    for (auto each = m_marks.cbegin(); each != m_marks.cend(); ++each) {
        if (each.value() > moment) {
            columns.append(each.key());
        }
    }
    return columns;
}

} // namespace mevo
