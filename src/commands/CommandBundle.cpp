#include "commands/CommandBundle.h"

#include "commands/CommandFile.h"

#include <QPair>
#include <QSet>

namespace mevo {

namespace {

using RowKey = QPair<QString, QString>;

RowKey keyOf(const CommandRow &row)
{
    return {row.CommandWords, row.CmdWordContents};
}

} // namespace

QByteArray exportCommands(const CommandTables &tables)
{
    CommandRows all;
    for (const CommandRows &rows : tables) {
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return commandFileText(all);
}

CommandImport importCommands(CommandTables tables, const QByteArray &text)
{
    CommandImport import;
    std::array<QSet<RowKey>, allCommandTypes.size()> known;
    for (const CommandType type : allCommandTypes) {
        for (const CommandRow &row : tables[std::size_t(type)]) {
            known[std::size_t(type)].insert(keyOf(row));
        }
    }
    for (CommandRow &row : parseCommandFile(text).rows) {
        const auto type = commandTypeOfLabel(row.CmdWordType);
        if (!type) {
            ++import.refused;
            continue;
        }
        QSet<RowKey> &keys = known[std::size_t(*type)];
        if (keys.contains(keyOf(row))) {
            ++import.known;
            continue;
        }
        keys.insert(keyOf(row));
        tables[std::size_t(*type)].push_back(std::move(row));
        ++import.added;
    }
    import.tables = std::move(tables);
    return import;
}

} // namespace mevo
