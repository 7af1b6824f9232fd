#pragma once

#include <QSettings>

namespace mevo {

/// One INI file of the application in UTF-8, opened at one group for a few reads or writes. The
/// destructor writes to disk; a file that cannot be written is named in the log. A file that cannot
/// be parsed reads as empty and is kept beside itself as "NAME.broken" before the first write.
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

    /// A list value, ";"-separated: empty parts are kept, so an absent key gives one empty text.
    QStringList list(const QString &key) const;

private:
    bool m_saved = false;
};

} // namespace mevo
