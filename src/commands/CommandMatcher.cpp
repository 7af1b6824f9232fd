#include "commands/CommandMatcher.h"

#include "commands/CommandFile.h"

#include <QFileInfo>

#include <algorithm>

namespace mevo {

namespace {

/// A file that was written this recently may be written again under the same times: file systems count
/// in steps, of which those of FAT are the longest.
constexpr qint64 settleMs = 2500;

} // namespace

bool CommandMatcher::FileState::operator==(const FileState &other) const
{
    return exists == other.exists && size == other.size && modifiedMs == other.modifiedMs &&
           changedMs == other.changedMs;
}

CommandMatcher::CommandMatcher(QString path)
    : m_path(std::move(path))
{
}

CommandMatcher::FileState CommandMatcher::stateOfFile() const
{
    const QFileInfo info(m_path);
    if (!info.exists()) {
        return {};
    }
    return {true, info.size(), info.lastModified().toMSecsSinceEpoch(),
            info.metadataChangeTime().toMSecsSinceEpoch()};
}

const CommandRow *CommandMatcher::find(const QString &word)
{
    const FileState state = stateOfFile();
    if (!m_settled || !(state == m_state)) {
        refresh(state);
    }
    const auto found = m_index.constFind(word);
    return found == m_index.constEnd() ? nullptr : &m_rows[*found];
}

void CommandMatcher::refresh(const FileState &state)
{
    // The times are older than the reading: a change that comes between is seen at the next look.
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - std::max(state.modifiedMs, state.changedMs);
    std::optional<QByteArray> text = readCommandFile(m_path);
    if (!m_read || !(state == m_state) || text != m_text) {
        buildIndex(text.value_or(QByteArray()));
    }
    m_read = true;
    m_state = state;
    m_settled = !state.exists || !text || age > settleMs;
    m_text = m_settled ? std::nullopt : std::move(text);
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
