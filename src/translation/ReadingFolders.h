#pragma once

#include <QDateTime>
#include <QString>

namespace mevo {

/// Which text of the translation window is read.
enum class Pane { Source, Destination };

/// The folder of a pane's readings: "SourceSynVoice" or "DestSynVoice" below `parent`, the working folder
/// unless one is given.
QString readingFolder(Pane pane, const QString &parent = QStringLiteral("."));

/// Empties both folders, or makes them. A link of that name is removed, and what it leads to stays. False,
/// with a log line, when one cannot be had.
bool remakeReadingFolders(const QString &parent = QStringLiteral("."));

/// File of a reading: the time to the second and ".mp3".
QString readingFile(const QDateTime &now);

} // namespace mevo
