#pragma once

#include "commands/CommandRow.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>

namespace mevo {

/// Finds the command of a spoken word in a merged table. It answers as if the file were read anew each
/// time: an index of the words is kept for as long as the file's size and times say that it is the same.
/// GUI thread only.
class CommandMatcher
{
public:
    explicit CommandMatcher(QString path);

    /// The first row, in the order of the groups as text, that acts (a type from web to phrase) and has
    /// exactly this word. Null when there is none; valid until the next call.
    const CommandRow *find(const QString &word);

private:
    struct FileState
    {
        bool exists = false;
        qint64 size = 0;
        qint64 modifiedMs = 0;
        qint64 changedMs = 0; ///< of the inode, which nobody can set back
        bool operator==(const FileState &other) const;
    };
    FileState stateOfFile() const;
    void refresh(const FileState &state);
    void buildIndex(const QByteArray &text);

    QString m_path;
    FileState m_state;
    bool m_settled = false; ///< the state tells every later change of the file
    bool m_read = false;
    std::optional<QByteArray> m_text; ///< what the index was made of, while the file is not settled
    CommandRows m_rows;
    QHash<QString, std::size_t> m_index; ///< word to the row in m_rows
};

} // namespace mevo
