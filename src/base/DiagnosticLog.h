#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

namespace mevo {

/// Bits of the level mask.
enum LogLevel { LogDebug = 1, LogInfo = 2, LogWarning = 4, LogCritical = 8, LogFatal = 16 };

/// One line of the log without its line end; empty when the mask leaves the level out.
/// `withPosition` adds file, line and function, which may be null in `context`.
QString logLine(QtMsgType type, const QMessageLogContext &context, const QString &message,
                const QDateTime &time, int mask, bool withPosition);

/// The day's file below a log folder: "FOLDER/yyyy-MM-dd/yyyy-MM-dd.log".
QString logFilePath(const QString &logFolder, const QDate &day);

/// Appends a line and its end to the day's file; a line that cannot be written is lost.
void appendToLog(const QString &logFolder, const QDate &day, const QString &line);

/// Sends the program's messages to the log of the application folder from now on, and to the handler
/// that was there before. `mask` is a sum of LogLevel bits.
void installDiagnosticLog(int mask, int withPosition);

} // namespace mevo
