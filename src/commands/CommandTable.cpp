#include "commands/CommandTable.h"

#include "base/ApplicationFiles.h"
#include "base/WholeFile.h"
#include "commands/CommandFile.h"
#include "commands/MergedTable.h"

#include <QDebug>
#include <QFile>

namespace mevo {

const char mergedTableName[] = "MEVOInputCmdWordTable.ini";

namespace {

constexpr std::array<const char *, allCommandTypes.size()> typedTableNames{
    "MEVOInputCmdWordTable_VoiceKeyboard.ini", "MEVOInputCmdWordTable_PinyinKeyboard.ini",
    "MEVOInputCmdWordTable_Web.ini",           "MEVOInputCmdWordTable_File.ini",
    "MEVOInputCmdWordTable_Directory.ini",     "MEVOInputCmdWordTable_Shortcut.ini",
    "MEVOInputCmdWordTable_Phrase.ini"};

CommandRows readRows(const QString &path)
{
    CommandFile file = parseCommandFile(readCommandFile(path).value_or(QByteArray()));
    logFaults(path, file.faults);
    return std::move(file.rows);
}

/// The table is replaced as a whole: it is written beside the old file and takes its name when all of it
/// is on the disk. Removing the old one first would lose the user's words to a crash or a full disk.
bool writeRows(const QString &path, const CommandRows &rows)
{
    const QString failure = replaceWholeFile(path, commandFileText(rows));
    if (failure.isEmpty()) {
        return true;
    }
    qWarning().noquote() << "Command table:" << path << "cannot be written:" << failure;
    return false;
}

/// What cannot be read is shown as a table without rows; such rows must not take the file's place.
bool writeReadRows(const QString &path, const CommandRows &rows)
{
    if (!readCommandFile(path)) {
        qWarning().noquote() << "Command table:" << path << "cannot be read, so it is not replaced";
        return false;
    }
    return writeRows(path, rows);
}

} // namespace

CommandTable::CommandTable(QString folder)
    : m_folder(folder.isEmpty() ? appFolder() : std::move(folder))
{
}

QString CommandTable::mergedPath() const
{
    return m_folder + QLatin1Char('/') + QLatin1String(mergedTableName);
}

QString CommandTable::typedPath(CommandType type) const
{
    return m_folder + QLatin1Char('/') + QLatin1String(typedTableNames[std::size_t(type)]);
}

CommandRows CommandTable::readTyped(CommandType type) const
{
    return readRows(typedPath(type));
}

CommandRows CommandTable::readMerged(std::optional<CommandType> only) const
{
    CommandRows rows = readRows(mergedPath());
    if (!only) {
        return rows;
    }
    CommandRows chosen;
    for (CommandRow &row : rows) {
        if (commandTypeOfIndex(row.CmdWordTypeIndex) == only) {
            chosen.push_back(std::move(row));
        }
    }
    return chosen;
}

bool CommandTable::writeTyped(CommandType type, const CommandRows &rows) const
{
    return writeReadRows(typedPath(type), rows);
}

bool CommandTable::writeMerged(const CommandRows &rows) const
{
    return writeRows(mergedPath(), rows);
}

bool CommandTable::rebuildMerged() const
{
    CommandRows rows;
    for (const CommandType type : allCommandTypes) {
        for (CommandRow &row : readTyped(type)) {
            rows.push_back(std::move(row));
        }
    }
    if (!writeMerged(rows)) {
        return false;
    }
    noteMergedTable(*this);
    return true;
}

QString CommandTable::draftPath(CommandType type) const
{
    return typedPath(type) + QStringLiteral(".draft");
}

bool CommandTable::writeDraft(CommandType type, const CommandRows &rows) const
{
    return writeReadRows(draftPath(type), rows);
}

std::optional<CommandRows> CommandTable::readDraft(CommandType type) const
{
    if (!QFile::exists(draftPath(type)) || !readCommandFile(draftPath(type))) {
        return std::nullopt;
    }
    return readRows(draftPath(type));
}

void CommandTable::removeDraft(CommandType type) const
{
    QFile::remove(draftPath(type));
}

bool CommandTable::keepCopy(CommandType type) const
{
    const auto text = readCommandFile(typedPath(type));
    if (!text) {
        return false;
    }
    if (text->isEmpty()) {
        return true;
    }
    const QString first = typedPath(type) + QStringLiteral(".bak");
    QString path = first;
    for (int number = 2; QFile::exists(path); ++number) {
        if (readCommandFile(path) == text) {
            return true;
        }
        path = first + QString::number(number);
    }
    const QString failure = replaceWholeFile(path, *text);
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Command table: no copy of" << typedPath(type) << "can be kept:" << failure;
    }
    return failure.isEmpty();
}

} // namespace mevo
