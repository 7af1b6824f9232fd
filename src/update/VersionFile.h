#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// What an update replaces.
enum class UpdateMode {
    All, ///< the whole program
    Part ///< some of its files
};

/// "All" or "Part", as files name the mode.
QString updateModeText(UpdateMode mode);
std::optional<UpdateMode> updateModeOf(const QString &text);

/// The download server's word on the newest version.
struct VersionFile
{
    int version = 0; ///< 108 is V1.08
    UpdateMode mode = UpdateMode::All;
    QString fileName;  ///< of the archive: a name without a path, ending in ".tar.xz"
    QByteArray sha256; ///< of the archive, in lower-case hex; empty when the file does not tell
};

constexpr int largestVersionFile = 4096; ///< bytes

/// Reads "VERSION;;MODE;;NAME" or "VERSION;;MODE;;NAME;;SHA256"; further fields are left alone. Nothing for
/// anything else.
std::optional<VersionFile> parseVersionFile(const QByteArray &content);

/// The file of an archive in which it tells its own version, as the version file does: three digits. A
/// signature over the archive is one over its version then, and an old archive cannot be offered as a new
/// one.
extern const QString archiveVersionFile;

/// The number in that file; nothing when it tells none.
std::optional<int> parseArchiveVersion(const QByteArray &content);

/// Whether a stranger's text may name an archive in a folder of ours: a plain name of letters, digits and
/// "-_.+~", which neither leads elsewhere nor is hidden, and ends in ".tar.xz".
bool isArchiveName(const QString &name);

} // namespace mevo
