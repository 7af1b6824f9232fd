#pragma once

#include <QMap>
#include <QStringList>

namespace mevo {

/// When the user's choices of record columns were made, and when the backend answered that it has them, by a
/// count instead of a clock. A reading of the record that was sent before either may show such a column as it
/// was before the choice.
class ChoiceMarks
{
public:
    int now() const { return m_now; }
    void mark(const QStringList &columns);
    /// The columns that have been marked after the moment that now() gave then.
    QStringList since(int moment) const;

private:
    int m_now = 0;
    QMap<QString, int> m_marks;
};

} // namespace mevo
