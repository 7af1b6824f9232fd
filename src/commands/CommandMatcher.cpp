#include "commands/CommandMatcher.h"

#include "commands/CommandFile.h"

namespace mevo {

CommandMatcher::CommandMatcher(QString path)
    : m_path(std::move(path))
{
}

const CommandRow *CommandMatcher::find(const QString &word)
{
    const FileStamp stamp = FileStamp::of(m_path);
    if (!m_read || !stamp.sameAs(m_stamp)) {
        refresh(stamp);
    }
    const auto found = m_index.constFind(word);
    return found == m_index.constEnd() ? nullptr : &m_rows[*found];
}

void CommandMatcher::refresh(const FileStamp &stamp)
{
    std::optional<QByteArray> text = readCommandFile(m_path);
    if (!m_read || m_stamp.settled || text != m_text) {
        buildIndex(text.value_or(QByteArray()));
    }
    m_read = true;
    m_stamp = stamp;
    m_stamp.settled = stamp.settled || !text;
    m_text = m_stamp.settled ? std::nullopt : std::move(text);
}

void CommandMatcher::buildIndex(const QByteArray &text)
{
    CommandFile file = parseCommandFile(text);
    logFaults(m_path, file.faults);
    m_rows = std::move(file.rows);
    m_index.clear();
    m_index.reserve(int(m_rows.size() * 2));
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const auto type = commandTypeOfIndex(m_rows[i].CmdWordTypeIndex);
        if (!type || *type < CommandType::Web) {
            continue;
        }
        for (const QString &word : m_rows[i].CommandWords.split(QLatin1Char(';'))) {
            if (!m_index.contains(word)) {
                m_index.insert(word, i);
            }
        }
    }
}

} // namespace mevo
