#include "ui/commands/SelectApplication.h"

#include "base/WholeFile.h"

#include <QDir>
#include <QDirIterator>
#include <QHBoxLayout>
#include <QHash>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSet>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace mevo {

namespace {

/// A value as it is meant: the format writes spaces, line ends, tabs and backslashes as escapes.
QString unescaped(const QString &value)
{
    QString meant;
    for (int i = 0; i < value.size(); ++i) {
        if (value.at(i) != QLatin1Char('\\') || i + 1 == value.size()) {
            meant += value.at(i);
            continue;
        }
        switch (value.at(++i).unicode()) {
        case 's':
        case 'n': // a name stands in one line
        case 't':
        case 'r':
            meant += QLatin1Char(' ');
            break;
        default:
            meant += value.at(i);
        }
    }
    return meant;
}

/// Paths of the desktop entries below a folder, relative to it, sorted.
QStringList entriesBelow(const QDir &folder)
{
    QStringList entries;
    QDirIterator files(folder.path(), {QStringLiteral("*.desktop")}, QDir::Files | QDir::Readable,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        entries.push_back(folder.relativeFilePath(files.next()));
    }
    entries.sort();
    return entries;
}

/// The keys of an entry's main group.
QHash<QString, QString> mainGroup(const QByteArray &text)
{
    QHash<QString, QString> keys;
    bool inside = false;
    for (const QByteArray &raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            inside = line == "[Desktop Entry]";
        } else if (const int equals = line.indexOf('='); inside && equals > 0 && !line.startsWith('#')) {
            keys.insert(QString::fromUtf8(line.left(equals).trimmed()),
                        unescaped(QString::fromUtf8(line.mid(equals + 1).trimmed())));
        }
    }
    return keys;
}

QString nameOf(const QHash<QString, QString> &keys, const QString &locale)
{
    for (const QString &tag : {locale, locale.section(QLatin1Char('_'), 0, 0)}) {
        const QString name = keys.value(QStringLiteral("Name[%1]").arg(tag));
        if (!name.isEmpty()) {
            return name;
        }
    }
    return keys.value(QStringLiteral("Name"));
}

bool isSet(const QHash<QString, QString> &keys, const char *key)
{
    return keys.value(QLatin1String(key)) == QLatin1String("true");
}

} // namespace

std::vector<ApplicationEntry> applicationEntries(const QStringList &folders, const QString &locale)
{
    std::vector<ApplicationEntry> entries;
    QSet<QString> seen;
    for (const QString &folder : folders) {
        const QDir dir(folder);
        for (const QString &file : entriesBelow(dir)) {
            const QString id = QString(file).replace(QLatin1Char('/'), QLatin1Char('-'));
            if (seen.contains(id)) {
                continue;
            }
            seen.insert(id);
            const auto keys = mainGroup(readWholeFile(dir.filePath(file)).value_or(QByteArray()));
            const QString name = nameOf(keys, locale);
            if (keys.value(QStringLiteral("Type")) != QLatin1String("Application") || name.isEmpty() ||
                keys.value(QStringLiteral("Exec")).isEmpty() || isSet(keys, "NoDisplay") ||
                isSet(keys, "Hidden")) {
                continue;
            }
            entries.push_back({name, keys.value(QStringLiteral("Icon")), dir.absoluteFilePath(file)});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const ApplicationEntry &left, const ApplicationEntry &right) {
                         return QString::localeAwareCompare(left.name, right.name) < 0;
                     });
    return entries;
}

} // namespace mevo

SelectApplication::SelectApplication(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("SelectApplication"));
    setWindowTitle(tr("选择应用程序"));
    QStringList shared = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    const QString own = QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
    shared.removeAll(own);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("应用程序列表一（本用户）"), this));
    layout->addWidget(makeList("treeView_User", {own}), 1);
    layout->addWidget(new QLabel(tr("应用程序列表二（所有用户）"), this));
    layout->addWidget(makeList("treeView_AllUsers", shared), 2);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (const auto &[name, text] :
         {std::pair("pushButton_OK", tr("确认")), std::pair("pushButton_Cancel", tr("取消"))}) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    layout->addLayout(buttons);
    resize(520, 560);
    QMetaObject::connectSlotsByName(this);
}

QTreeWidget *SelectApplication::makeList(const char *name, const QStringList &folders)
{
    auto *tree = new QTreeWidget(this);
    tree->setObjectName(QLatin1String(name));
    tree->setHeaderHidden(true);
    tree->setRootIsDecorated(false);
    tree->setAccessibleName(tr("选择应用程序"));
    for (const mevo::ApplicationEntry &entry : mevo::applicationEntries(folders, QLocale().name())) {
        auto *item = new QTreeWidgetItem(tree, {entry.name});
        item->setData(0, Qt::UserRole, entry.path);
        const bool isFile = QDir::isAbsolutePath(entry.icon);
        item->setIcon(0, isFile ? QIcon(entry.icon) : QIcon::fromTheme(entry.icon));
    }
    // Not the current item, which a tree has as soon as it gets the focus.
    connect(tree, &QTreeWidget::itemSelectionChanged, this, [this, tree] {
        const QList<QTreeWidgetItem *> chosen = tree->selectedItems();
        if (chosen.isEmpty()) {
            return;
        }
        m_path = chosen.first()->data(0, Qt::UserRole).toString();
        for (QTreeWidget *other : findChildren<QTreeWidget *>()) {
            if (other != tree) {
                const QSignalBlocker blocker(other);
                other->clearSelection();
            }
        }
    });
    connect(tree, &QTreeWidget::itemDoubleClicked, this, &SelectApplication::accept);
    return tree;
}

void SelectApplication::on_pushButton_OK_clicked()
{
    accept();
}

void SelectApplication::on_pushButton_Cancel_clicked()
{
    m_path.clear();
    reject();
}
