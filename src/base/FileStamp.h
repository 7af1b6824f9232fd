#pragma once

#include <QString>

namespace mevo {

/// What tells one state of a file from another without reading it.
struct FileStamp
{
    bool exists = false;
    qint64 size = 0;
    qint64 modifiedMs = 0;
    qint64 changedMs = 0; ///< of the inode, which nobody can set back
    /// Every later change will show. It does not while the file is so fresh that it may be written again
    /// under the same times: clocks of file systems move in steps.
    bool settled = false;

    /// Of the file as it stands now. Take it before reading: a change that comes between is then seen at
    /// the next look.
    static FileStamp of(const QString &path);
    /// The file is still what it was when the other stamp was taken.
    bool sameAs(const FileStamp &earlier) const;
};

} // namespace mevo
