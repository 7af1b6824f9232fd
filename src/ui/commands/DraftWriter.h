#pragma once

#include "commands/CommandTable.h"

#include <QObject>

#include <thread>

namespace mevo {

/// Writes drafts of command tables beside the GUI thread, one at a time: thousands of rows and a slow disk
/// would hold whoever types. GUI thread only.
class DraftWriter : public QObject
{
    Q_OBJECT

public:
    explicit DraftWriter(CommandTable tables, QObject *parent = nullptr);
    ~DraftWriter() override;
    Q_DISABLE_COPY(DraftWriter)

    bool isWriting() const { return m_thread.joinable(); }
    /// Begins to write; not while isWriting().
    void write(CommandType type, CommandRows rows);
    /// Waits for what is being written. Whoever saves, removes or reads drafts calls it before, so that no
    /// older one comes after. False when the last draft could not be written.
    bool finish();

Q_SIGNALS:
    /// A draft was written beside, or could not be; not after finish() has waited for it.
    void written(bool done);

private:
    const CommandTable m_tables;
    std::thread m_thread;
    int m_number = 0;
    bool m_done = true;
};

} // namespace mevo
