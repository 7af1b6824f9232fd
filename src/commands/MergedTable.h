#pragma once

namespace mevo {

class CommandTable;

/// The merged table is made by the editor. Where something else has replaced a typed table since, such as a
/// newer version of the program or a copy that was put back, it is to be made anew. What was made of what is
/// noted as SHA-256 in "MEVOCommandTables.json" beside the tables.

/// Notes the tables as they stand: the merged one has just been made of the typed ones.
void noteMergedTable(const CommandTable &tables);

/// Whether the merged table is as it was made, and a typed one is another since. A merged table that has been
/// saved as a whole may hold rows of its own: it never is behind, nor is any while a typed table is missing
/// or cannot be read. Where nothing is noted and the merged table is the typed ones put together, that is
/// noted. May be called in any thread; a rebuild belongs to that of the editor.
bool isMergedTableBehind(const CommandTable &tables);

} // namespace mevo
