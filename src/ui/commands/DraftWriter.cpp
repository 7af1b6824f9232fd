#include "ui/commands/DraftWriter.h"

#include <utility>

namespace mevo {

DraftWriter::DraftWriter(CommandTable tables, QObject *parent)
    : QObject(parent)
    , m_tables(std::move(tables))
{
}

DraftWriter::~DraftWriter()
{
    finish();
}

void DraftWriter::write(CommandType type, CommandRows rows)
{
    ++m_number;
    m_thread = std::thread([this, type, rows = std::move(rows), number = m_number] {
        m_done = m_tables.writeDraft(type, rows);
        QMetaObject::invokeMethod(
            this,
            [this, number] {
                if (number == m_number && isWriting()) {
                    Q_EMIT written(finish());
                }
            },
            Qt::QueuedConnection);
    });
}

bool DraftWriter::finish()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return m_done;
}

} // namespace mevo
