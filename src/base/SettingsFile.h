#pragma once

#include <QString>
#include <QVariant>

#include <memory>

namespace mevo {

/// One INI file of the application in UTF-8, opened at one group for a few reads or writes, with the form
/// and the operations of QSettings, which it does not use: QSettings writes back only what it has
/// understood, and a stray quote, a backslash or an emoji costs the rest of the file.
///
/// Here a write changes the line of its key alone. What was typed by hand or stored by others stays byte for
/// byte, and a value with "," or ";" is one whole text, in quotes or not. All openings of a file in this
/// process see each other's values at once; the destructor writes to disk, exchanging the file in one
/// step. Lines that cannot be read are kept in the file and, before the first write, in a copy of it,
/// "NAME.broken". May be used from any thread.
class SettingsFile
{
public:
    /// Opens `path`, by default the application's own settings, at `group`; an empty group opens the
    /// file's top level. A file that cannot be read is named in the log and reads as empty.
    explicit SettingsFile(const QString &group = QStringLiteral("MainSetting"),
                          const QString &path = defaultPath());
    ~SettingsFile();
    SettingsFile(const SettingsFile &) = delete;
    SettingsFile &operator=(const SettingsFile &) = delete;

    /// "MEVOSetting.ini" of the application folder.
    static QString defaultPath();

    /// A QString, or a QByteArray where one was stored.
    QVariant value(const QString &key, const QVariant &fallback = QVariant()) const;
    bool contains(const QString &key) const;
    /// Takes what QVariant can turn into a text, and byte arrays; all else changes nothing, with a log line.
    void setValue(const QString &key, const QVariant &value);

    /// Writes now; false, with a log line, when the disk refuses. The values count all the same and go to
    /// the disk with the next write that succeeds.
    bool save();

private:
    class Store;
    static std::shared_ptr<Store> storeOf(const QString &path);

    std::shared_ptr<Store> m_store;
    QString m_prefix; ///< the group and "/"
    bool m_changed = false;
};

} // namespace mevo
