#include "translation/ReadingFolders.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace mevo {

namespace {

bool remake(const QString &path)
{
    const QFileInfo before(path);
    if (before.isSymLink() || before.isFile()) {
        QFile::remove(path);
    } else if (before.exists()) {
        QDir(path).removeRecursively();
    }
    if (QDir().mkdir(path) || QFileInfo(path).isWritable()) {
        return true;
    }
    qWarning().noquote() << "Reading aloud: the folder" << path << "cannot be made";
    return false;
}

} // namespace

QString readingFolder(Pane pane, const QString &parent)
{
    return parent +
           (pane == Pane::Source ? QLatin1String("/SourceSynVoice") : QLatin1String("/DestSynVoice"));
}

bool remakeReadingFolders(const QString &parent)
{
    const bool source = remake(readingFolder(Pane::Source, parent));
    return remake(readingFolder(Pane::Destination, parent)) && source;
}

QString readingFile(const QDateTime &now)
{
    return now.toString(QStringLiteral("yyMMddhhmmss")) + QStringLiteral(".mp3");
}

} // namespace mevo
