#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

namespace mevo {

/// Finds programs by the desktop entries that start them. What has been looked for is known until a folder
/// of the entries changes, since there may be hundreds of them.
class EntryPrograms
{
public:
    /// The file of the program with this base name that an entry in `folders`, or below one, starts: of the
    /// first that does. Commands are looked for in `searchPath`. Empty when there is none.
    QString find(const QString &baseName, const QStringList &folders, const QStringList &searchPath);

    /// How often entries have been read so far.
    int readings() const { return m_readings; }

private:
    struct Folder
    {
        QString path;
        QDateTime changed;
        int entries = 0;

        bool operator==(const Folder &other) const
        {
            return path == other.path && changed == other.changed && entries == other.entries;
        }
    };

    static void list(const QString &path, QVector<Folder> &folders);
    QStringList read(const QString &baseName) const;

    QVector<Folder> m_folders;            ///< with those below them
    QHash<QString, QStringList> m_starts; ///< by base name: what the entries start
    int m_readings = 0;
};

} // namespace mevo
