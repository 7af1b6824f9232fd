#pragma once

#include "commands/CommandFaults.h"
#include "commands/CommandTable.h"

namespace mevo {

/// The tables of all types as one file, of the form of the merged table.
QByteArray exportCommands(const CommandTables &tables);

/// The rows of such a file.
struct CommandBundle
{
    CommandTables tables;
    int refused = 0; ///< rows of no known type, which stand in no table
};

/// Takes such a file apart. A text that is no table has no rows.
CommandBundle readCommandBundle(const QByteArray &text);

/// Puts those of `rows` behind the rows of `table` that it does not have, the same in words and content.
/// Gives their number.
int addMissingRows(CommandRows &table, const CommandRows &rows);

/// What an import has done.
struct CommandImport
{
    int added = 0;                   ///< rows that were new in the files
    int known = 0;                   ///< rows that were there
    std::vector<CommandType> failed; ///< their files cannot be read or written and are as they were
};

/// Adds rows to the files of their types, and to the drafts of those where unsaved rows wait; no row that is
/// there is changed or removed. A type that fails holds up no other.
CommandImport importCommands(const CommandTable &files, const CommandTables &rows);

} // namespace mevo
