#include "commands/CommandMatcher.h"

#include "commands/CommandFile.h"

#include <QFileInfo>

#include <algorithm>

namespace mevo {

namespace {

/// A file that was written so recently may be written again under the same times: clocks of file systems
/// move in steps.
constexpr qint64 finestStepMs = 100;
constexpr qint64 wholeSecondsMs = 2500; ///< where times are whole seconds, as on FAT and old servers

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
    const bool wholeSeconds = state.modifiedMs % 1000 == 0 && state.changedMs % 1000 == 0;
    m_settled = !state.exists || !text || age > (wholeSeconds ? wholeSecondsMs : finestStepMs);
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
