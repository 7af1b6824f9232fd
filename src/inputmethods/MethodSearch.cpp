#include "inputmethods/MethodSearch.h"

#include "inputmethods/CustomMethod.h"
#include "inputmethods/EntryPrograms.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace mevo {

namespace {

const QString exeSuffix = QStringLiteral(".exe");

QString slashed(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

bool canBeStarted(const QFileInfo &file)
{
    return file.isFile() && (file.isExecutable() || file.fileName().endsWith(exeSuffix, Qt::CaseInsensitive));
}

/// What the registry's folder of an installation comes to: the program in it, or where the row has it below
/// the folder of the installation.
QString inInstallation(const QString &folder, const Asr3Row &row)
{
    if (folder.trimmed().isEmpty()) {
        return {};
    }
    const QString direct = programAt(folder + QLatin1Char('/') + row.ASR3ExeFileName);
    return !direct.isEmpty() ? direct
                             : programAt(folder + QLatin1Char('/') +
                                         slashed(row.ASR3ExeInstallPath).section(QLatin1Char('/'), 2));
}

} // namespace

ProgramPlaces programPlaces(const SystemFacts &facts)
{
    return {facts.programFolders(),
            qEnvironmentVariable("PATH").split(QDir::listSeparator(), Qt::SkipEmptyParts),
            QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)};
}

QString programAt(const QString &path)
{
    const QString plain = QDir::cleanPath(slashed(path.trimmed()));
    if (!QDir::isAbsolutePath(plain)) {
        return {};
    }
    const bool suffixed = plain.endsWith(exeSuffix, Qt::CaseInsensitive);
    for (const QString &each : {plain, suffixed ? plain.chopped(exeSuffix.size()) : plain + exeSuffix}) {
        if (canBeStarted(QFileInfo(each))) {
            return each;
        }
    }
    return {};
}

QString findInputMethod(const Asr3Row &row, const QString &ownPath, const Registry &registry,
                        const ProgramPlaces &places, EntryPrograms &entries)
{
    QString found = inInstallation(
        registry.value(row.ASR3RegInstallPath, row.ASR3RegSearchValue).value_or(QString()), row);
    if (found.isEmpty() && !ownPath.isEmpty()) {
        found = programAt(ownPath);
        if (found.isEmpty()) {
            found = programAt(ownPath + QLatin1Char('/') + row.ASR3ExeFileName);
        }
    }
    for (const QString &folder : places.programFolders) {
        if (found.isEmpty() && !row.ASR3ExeInstallPath.isEmpty()) {
            found = programAt(folder + QLatin1Char('/') + row.ASR3ExeInstallPath);
        }
    }
    const QString baseName = programBaseName(row.ASR3ExeFileName);
    for (const QString &name : {row.ASR3ExeFileName, baseName}) {
        if (found.isEmpty() && !name.isEmpty() && !places.searchPath.isEmpty()) {
            found = QStandardPaths::findExecutable(name, places.searchPath);
        }
    }
    return found.isEmpty() && !baseName.isEmpty()
               ? entries.find(baseName, places.entryFolders, places.searchPath)
               : found;
}

QString toolOfMethod(const QString &fileName, const Asr3Row &row, const QString &program,
                     const Registry &registry)
{
    const auto folder = registry.value(row.ASR3RegInstallPath, row.ASR3RegSearchValue);
    const QString found =
        folder && !folder->trimmed().isEmpty() ? programAt(*folder + QLatin1Char('/') + fileName) : QString();
    return !found.isEmpty() || program.isEmpty()
               ? found
               : programAt(QFileInfo(slashed(program)).path() + QLatin1Char('/') + fileName);
}

} // namespace mevo
