#pragma once

#include "inputmethods/Asr3Row.h"
#include "platform/SystemServices.h"

#include <QString>
#include <QStringList>

namespace mevo {

class EntryPrograms;

/// Where programs are on this computer.
struct ProgramPlaces
{
    QStringList programFolders; ///< that have a folder for each installed program
    QStringList searchPath;     ///< folders with commands, in their order
    QStringList entryFolders;   ///< with desktop entries, in their order
};

/// The places of this user: `PATH` and the desktop's folders of entries.
ProgramPlaces programPlaces(const SystemFacts &facts);

/// A program's file at `path`, in which either separator ends a folder and the suffix ".exe" may be missing
/// or too many. Empty when there is none that could be started.
QString programAt(const QString &path);

/// The program of an input method: by the registry, the user's own path (a file or its folder), below the
/// folders of programs, among the commands, or by a desktop entry that starts it. Empty when it is not there.
QString findInputMethod(const Asr3Row &row, const QString &ownPath, const Registry &registry,
                        const ProgramPlaces &places, EntryPrograms &entries);

/// The file named `fileName` in the folder that the registry has for the row, else beside `program`.
QString toolOfMethod(const QString &fileName, const Asr3Row &row, const QString &program,
                     const Registry &registry);

} // namespace mevo
