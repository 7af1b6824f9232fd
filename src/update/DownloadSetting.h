#pragma once

#include "update/VersionFile.h"

namespace mevo {

/// What the program leaves for the updater in "DownloadSetting.ini", one folder above its own.
struct DownloadSetting
{
    QString updaterName; ///< the fetched archive, in the same folder
    UpdateMode mode = UpdateMode::All;
    QString exeName;   ///< the program's file from that folder on, such as "App/mevoinput"
    QString sha256;    ///< of the archive; empty when it is not known
    QString updateKey; ///< where it is set, the archive needs a good signature beside it
    int version = 0;   ///< that was offered, and that the archive must tell
};

extern const QString downloadSettingFile;
/// What a signature's file adds to the name of its archive.
extern const QString signatureSuffix;

QByteArray downloadSettingText(const DownloadSetting &setting);
/// Nothing for a file with a name that leads elsewhere, with an unknown mode or no version, or without a
/// key that it needs.
std::optional<DownloadSetting> parseDownloadSetting(const QByteArray &content);

} // namespace mevo
