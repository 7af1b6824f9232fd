#pragma once

#include <QString>

namespace mevo::patchrunner {

struct Kept
{
    QString error; ///< empty when everything is there
    bool noSpace = false;
};

/// Brings what the new folder has not from the old one into it, the old one staying as it is. The user's INI
/// files (every "*.ini") come as copies, also in place of new ones of that name; other files are hard links
/// to the old ones where the file system has those.
Kept keepFiles(const QString &oldFolder, const QString &newFolder);

/// Removes a folder of ours with everything in it, without following links.
void removeFolder(const QString &folder);

} // namespace mevo::patchrunner
