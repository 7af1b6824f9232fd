#pragma once

#include "commands/CommandRow.h"

#include <QByteArray>
#include <QStringList>

namespace mevo {

/// What a table's text holds.
struct CommandFile
{
    CommandRows rows;   ///< one for each group, the groups sorted as text: "0", "1", "10", "2"
    QStringList faults; ///< odd rows by their group's name, each with what is odd about it
};

/// Reads a command table: INI as QSettings writes it, in UTF-8, one group a row.
///
/// It is read line by line here, because to QSettings an open quote swallows the rows behind it, a value
/// typed by hand ends at its first ";" and splits at its first ",", and ten thousand rows take a fifth of
/// a second. What QSettings writes is read exactly as QSettings reads it; a value typed without quotes is
/// taken whole, up to a remark that a blank and a ";" begin. An odd row costs no other row anything.
CommandFile parseCommandFile(const QByteArray &text);

/// The text of a table, byte for byte as QSettings would write it: row r is group "r", and groups and
/// keys are sorted as text. Only U+FEFF and characters beyond U+FFFF are written in another way, as escapes:
/// QSettings with a codec loses them.
QByteArray commandFileText(const CommandRows &rows);

/// The text of a table's file, empty when there is none. Nothing, with a log line, for a file that cannot
/// be read or is too large to be a table (64 MiB).
std::optional<QByteArray> readCommandFile(const QString &path);

/// Names the odd rows of a file in one log line; nothing when there are none.
void logFaults(const QString &path, const QStringList &faults);

} // namespace mevo
