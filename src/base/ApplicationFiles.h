#pragma once

#include <QString>

namespace mevo {

/// Where the application's files stand: settings, command tables, credential lists, the log folder.
/// `MEVO_HOME` when it is set; else the program's own folder when it can be written; else the user's
/// data folder. Each is filled at first use from the data folder of the installation or, where that is none,
/// from the files beside the program; what is there already stays, see bringShippedFiles().
QString appFolder();

/// The full path of one application file, such as appFile("MEVOSetting.ini").
QString appFile(const QString &name);

} // namespace mevo
