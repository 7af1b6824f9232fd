#pragma once

#include "commands/CommandFaults.h"

namespace mevo {

/// The tables of all types as one file, of the form of the merged table.
QByteArray exportCommands(const CommandTables &tables);

/// What an import adds to the tables.
struct CommandImport
{
    CommandTables tables; ///< the tables with the new rows behind their own
    int added = 0;        ///< rows that are new
    int known = 0;        ///< rows that were there already, the same in words and content
    int refused = 0;      ///< rows of no known type
};

/// Adds the rows of such a file to `tables`. No row that is there is changed or removed. A text that is no
/// table adds nothing.
CommandImport importCommands(CommandTables tables, const QByteArray &text);

} // namespace mevo
