#include "inputmethods/EntryPrograms.h"

#include "commands/LocalProgram.h"
#include "inputmethods/CustomMethod.h"
#include "inputmethods/MethodSearch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace mevo {

namespace {

constexpr qint64 largestEntry = 1 << 20;
const QStringList entryNames{QStringLiteral("*.desktop")};

} // namespace

/// A folder that is not there counts as well: it may come.
void EntryPrograms::list(const QString &path, QVector<Folder> &folders)
{
    const QDir folder(path);
    folders.append({path, QFileInfo(path).lastModified(), folder.entryList(entryNames, QDir::Files).size()});
    const QStringList below = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &name : below) {
        list(folder.filePath(name), folders);
    }
}

QStringList EntryPrograms::read(const QString &baseName) const
{
    QStringList programs;
    const QByteArray wanted = baseName.toUtf8();
    for (const Folder &folder : m_folders) {
        const QDir dir(folder.path);
        const QStringList entries = dir.entryList(entryNames, QDir::Files);
        for (const QString &entry : entries) {
            QFile file(dir.filePath(entry));
            if (file.size() > largestEntry || !file.open(QIODevice::ReadOnly)) {
                continue;
            }
            const QByteArray text = file.readAll();
            if (!text.contains(wanted)) {
                continue; // of hundreds of entries few are worth taking apart
            }
            const QString program = parseDesktopEntry(text).words.value(0);
            if (programBaseName(program) == baseName) {
                programs.append(program);
            }
        }
    }
    return programs;
}

QString EntryPrograms::find(const QString &baseName, const QStringList &folders,
                            const QStringList &searchPath)
{
    QVector<Folder> now;
    for (const QString &folder : folders) {
        list(folder, now);
    }
    if (!(now == m_folders)) {
        m_folders = now;
        m_starts.clear();
    }
    if (!m_starts.contains(baseName)) {
        ++m_readings;
        m_starts.insert(baseName, read(baseName));
    }
    const QStringList programs = m_starts.value(baseName);
    for (const QString &program : programs) {
        const QString found = program.contains(QLatin1Char('/'))
                                  ? programAt(program)
                                  : QStandardPaths::findExecutable(program, searchPath);
        if (!found.isEmpty()) {
            return found;
        }
    }
    return {};
}

} // namespace mevo
