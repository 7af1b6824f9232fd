#pragma once

#include <QSet>
#include <QString>

namespace mevo::patchrunner {

struct UnpackLimits
{
    qint64 bytes = 4LL << 30; ///< of all files together
    int members = 200000;
};

struct Unpacked
{
    QString error; ///< empty when everything is there
    bool noSpace = false;
    QSet<QString> files; ///< regular files and links, from the folder on
};

/// Unpacks a tar.xz into an empty folder. Nothing in it is written through a link or outside the folder. It
/// ends at the first member that is no plain file, folder or symbolic link, whose name or link leads out of
/// the folder, that comes twice, or that the archive's own checksums do not confirm. Owners and special mode
/// bits are not taken over.
Unpacked unpackArchive(const QString &archive, const QString &folder, const UnpackLimits &limits = {});

} // namespace mevo::patchrunner
