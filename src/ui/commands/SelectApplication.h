#pragma once

#include <QDialog>
#include <QStringList>

#include <vector>

class QTreeWidget;

namespace mevo {

/// A desktop entry that can be started.
struct ApplicationEntry
{
    QString name; ///< in the user's language
    QString icon; ///< name or path, may be empty
    QString path; ///< of the entry's file
};

/// The applications of folders of desktop entries and the folders below them, in freedesktop.org's format,
/// sorted by their names. Entries that are hidden, say that they are not shown, or are no applications are
/// left out; an entry of an earlier folder hides one of the same id in a later: the path below its folder,
/// with '-' for '/'. `locale` is such as "zh_CN".
std::vector<ApplicationEntry> applicationEntries(const QStringList &folders, const QString &locale);

} // namespace mevo

/// Lets the user pick an installed application: his own ones, and those of the whole computer.
class SelectApplication : public QDialog
{
    Q_OBJECT

public:
    explicit SelectApplication(QWidget *parent = nullptr);

    /// The desktop entry picked, empty while there is none.
    QString path() const { return m_path; }

private Q_SLOTS:
    void on_pushButton_OK_clicked();
    void on_pushButton_Cancel_clicked();

private:
    QTreeWidget *makeList(const char *name, const QStringList &folders);

    QString m_path;
};
