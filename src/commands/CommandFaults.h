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
        OtherTable,    ///< a row of the keyboards in a table that they do not read
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

/// What the search for faults reads of the settings, as a copy of its own: it may run beside their thread.
struct CommandFaultSettings
{
    CommandFaultSettings() = default;
    CommandFaultSettings(const SettingsState &settings); ///< implicit

    QStringList modeWords;       ///< that switch the voice mode; none while that is off
    QStringList commandPrefixes; ///< direct words of commands; none while they are off
    QStringList searchPrefixes;  ///< direct words of searches; none while they are off
    QStringList keys;            ///< names of the key table
};

/// One entry a row; without entries for the types that were not asked for.
using CommandDiagnoses = std::array<std::vector<CommandDiagnosis>, allCommandTypes.size()>;

/// Looks for rows that can never act, in one type's table or in those of all types that are matched, as the
/// matcher would meet them once the tables are merged: the rows by type, then by their numbers in the merged
/// table read as text. With `rewritten` the rows of `type` are yet to be saved in their present order, by
/// which they are numbered anew and so sorted as text once more. `exists` says whether a path is there; true
/// in its second argument asks for a folder. The keyboards' tables are not matched and have no faults. In any
/// thread.
CommandDiagnoses diagnoseCommands(const CommandTables &tables, std::optional<CommandType> type,
                                  bool rewritten, const CommandFaultSettings &settings,
                                  const std::function<bool(const QString &, bool)> &exists);

} // namespace mevo
