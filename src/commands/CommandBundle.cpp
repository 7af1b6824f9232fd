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

CommandBundle readCommandBundle(const QByteArray &text)
{
    CommandBundle bundle;
    for (CommandRow &row : parseCommandFile(text).rows) {
        if (const auto type = commandTypeOfLabel(row.CmdWordType)) {
            bundle.tables[std::size_t(*type)].push_back(std::move(row));
        } else {
            ++bundle.refused;
        }
    }
    return bundle;
}

int addMissingRows(CommandRows &table, const CommandRows &rows)
{
    QSet<RowKey> known;
    for (const CommandRow &row : table) {
        known.insert(keyOf(row));
    }
    int added = 0;
    for (const CommandRow &row : rows) {
        if (!known.contains(keyOf(row))) {
            known.insert(keyOf(row));
            table.push_back(row);
            ++added;
        }
    }
    return added;
}

CommandImport importCommands(const CommandTable &files, const CommandTables &rows)
{
    CommandImport import;
    for (const CommandType type : allCommandTypes) {
        const CommandRows &wanted = rows[std::size_t(type)];
        CommandRows table = files.readTyped(type);
        const int added = addMissingRows(table, wanted);
        import.known += int(wanted.size()) - added;
        // The draft first: it takes the file's place when it is saved, and must not lack what that has.
        auto draft = files.readDraft(type);
        const bool draftKept =
            !draft || addMissingRows(*draft, wanted) == 0 || files.writeDraft(type, *draft);
        if (!draftKept || (added > 0 && !files.writeTyped(type, table))) {
            import.failed.push_back(type);
        } else {
            import.added += added;
        }
    }
    return import;
}

} // namespace mevo
