#pragma once

#include <QSettings>

namespace mevo {

/// One INI file of the application in UTF-8, opened at one group for a few reads or writes. The
/// destructor writes to disk; a file that cannot be written is named in the log. A file that cannot
/// be read whole is kept beside itself as "NAME.broken" before the first write, and what it has that can
/// be read counts. Values typed by hand with a "," or ";" are put into quotes, since they are meant whole.
class SettingsFile : public QSettings
{
public:
    /// Opens `path`, by default the application's own settings, at `group`; an empty group opens the
    /// file's top level.
    explicit SettingsFile(const QString &group = QStringLiteral("MainSetting"),
                          const QString &path = defaultPath());
    ~SettingsFile() override;

    /// "MEVOSetting.ini" of the application folder.
    static QString defaultPath();

    /// Writes now; false, with a log line, when the disk refuses.
    bool save();

private:
    bool m_saved = false;
};

} // namespace mevo
