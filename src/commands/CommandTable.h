#pragma once

#include "commands/CommandRow.h"

namespace mevo {

/// The eight files of the command words: one for each type, which the user edits, and the merged one,
/// which alone is matched. Nothing is kept in memory; each call goes to the files. A file that is not
/// there or cannot be read is a table without rows. GUI thread only.
class CommandTable
{
public:
    /// The tables of a folder, by default those of the application.
    explicit CommandTable(QString folder = QString());

    QString mergedPath() const;
    QString typedPath(CommandType type) const;

    /// All rows of one type's file, in the order of its groups as text. Rows of another type may stand in
    /// it and are given as well.
    CommandRows readTyped(CommandType type) const;
    /// The merged file's rows: all, or those whose `CmdWordTypeIndex` is the given type's.
    CommandRows readMerged(std::optional<CommandType> only = std::nullopt) const;

    /// Writes a file anew from the rows, numbered by their places. False, with a log line, when the disk
    /// refuses; the file is then as it was before. A type's file that is there and cannot be read is not
    /// replaced: nobody has seen what it holds.
    bool writeTyped(CommandType type, const CommandRows &rows) const;
    bool writeMerged(const CommandRows &rows) const;

    /// Makes the merged file from the seven others. False when it cannot be written.
    bool rebuildMerged() const;

    /// Rows of a type that are being edited and are not saved: they stand in a file of their own beside the
    /// table, so that neither a crash nor a closed window takes them. False as writeTyped.
    bool writeDraft(CommandType type, const CommandRows &rows) const;
    /// Nothing when there is no draft or it cannot be read.
    std::optional<CommandRows> readDraft(CommandType type) const;
    void removeDraft(CommandType type) const;

    /// Copies a type's file to one with ".bak" at its end, or ".bak2", ".bak3" and so on where older copies
    /// stand. True too when there is nothing to copy, or a copy has the same content.
    bool keepCopy(CommandType type) const;

private:
    QString draftPath(CommandType type) const;

    QString m_folder;
};

/// "MEVOInputCmdWordTable.ini", the merged table.
extern const char mergedTableName[];

} // namespace mevo
