#pragma once

#include "commands/CommandRow.h"
#include "state/SettingsState.h"

#include <functional>

namespace mevo {

/// The rows of every type, as they stand in its file or in the editor; the index is the type's number.
using CommandTables = std::array<CommandRows, allCommandTypes.size()>;

/// Why a row does not act on a spoken form, or on any.
struct CommandFault
{
    enum class Kind {
        EmptyWord,     ///< a spoken form without a character
        Shadowed,      ///< another row, matched earlier, has the form; `by` is its content
        ModeWord,      ///< the form switches the voice mode
        DirectPrefix,  ///< the form begins with a word that makes the rest a command or a search; `by`
        UnknownKey,    ///< a key combination with a key that the key table does not name; `by`
        NothingToPlay, ///< a key combination without a key
        MissingFile,   ///< the file is not there
        MissingFolder  ///< the folder is not there
    };
    Kind kind;
    QString word; ///< the spoken form; empty where the fault is the action's
    QString by;
};

/// What is wrong with one row.
struct CommandDiagnosis
{
    std::vector<CommandFault> faults;
    bool inert = false; ///< no spoken form of the row ever acts
};

/// Looks for rows that can never act, in one type's table, as the matcher would meet them once all tables
/// are saved and merged: the rows by type, within a type and again in the merged table by their numbers
/// read as text. `exists` says whether a path is there; true in its second argument asks for a folder.
/// One entry a row of `tables[type]`. The keyboards' rows are not matched, so they have no faults.
std::vector<CommandDiagnosis> diagnoseCommands(const CommandTables &tables, CommandType type,
                                               const SettingsState &settings,
                                               const std::function<bool(const QString &, bool)> &exists);

} // namespace mevo
