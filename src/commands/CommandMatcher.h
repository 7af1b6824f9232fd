#pragma once

#include "base/FileStamp.h"
#include "commands/CommandRow.h"

#include <QByteArray>
#include <QHash>

#include <optional>

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
    void refresh(const FileStamp &stamp);
    void buildIndex(const QByteArray &text);

    QString m_path;
    FileStamp m_stamp;
    bool m_read = false;
    std::optional<QByteArray> m_text; ///< what the index was made of, while the stamp is not settled
    CommandRows m_rows;
    QHash<QString, std::size_t> m_index; ///< word to the row in m_rows
};

} // namespace mevo
