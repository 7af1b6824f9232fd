#include "commands/MergedTable.h"

#include "base/WholeFile.h"
#include "commands/CommandFile.h"
#include "commands/CommandTable.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace mevo {

namespace {

const QString mergedKey = QStringLiteral("merged");
const QString typedKey = QStringLiteral("typed");

struct TableFiles
{
    QByteArray merged;
    std::vector<QByteArray> typed;
};

/// Nothing unless all are there and can be read.
std::optional<TableFiles> readTables(const CommandTable &tables)
{
    const auto read = [](const QString &path) {
        return QFile::exists(path) ? readWholeFile(path) : std::nullopt;
    };
    const auto merged = read(tables.mergedPath());
    if (!merged) {
        return std::nullopt;
    }
    TableFiles files{*merged, {}};
    for (const CommandType type : allCommandTypes) {
        auto typed = read(tables.typedPath(type));
        if (!typed) {
            return std::nullopt;
        }
        files.typed.push_back(std::move(*typed));
    }
    return files;
}

QJsonObject noteOf(const TableFiles &files)
{
    QCryptographicHash typed(QCryptographicHash::Sha256);
    for (const QByteArray &content : files.typed) {
        typed.addData(QByteArray::number(content.size()) + '\n');
        typed.addData(content);
    }
    const QByteArray merged = QCryptographicHash::hash(files.merged, QCryptographicHash::Sha256);
    return {{mergedKey, QString::fromLatin1(merged.toHex())},
            {typedKey, QString::fromLatin1(typed.result().toHex())}};
}

/// The merged table as the typed ones make it.
QByteArray mergedText(const TableFiles &files)
{
    CommandRows rows;
    for (const QByteArray &content : files.typed) {
        for (CommandRow &row : parseCommandFile(content).rows) {
            rows.push_back(std::move(row));
        }
    }
    return commandFileText(rows);
}

QString notePath(const CommandTable &tables)
{
    return QFileInfo(tables.mergedPath()).path() + QStringLiteral("/MEVOCommandTables.json");
}

void writeNote(const CommandTable &tables, const QJsonObject &note)
{
    const QString failure = replaceWholeFile(notePath(tables), QJsonDocument(note).toJson());
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Command table: what it was made of cannot be noted:" << failure;
    }
}

} // namespace

void noteMergedTable(const CommandTable &tables)
{
    if (const auto files = readTables(tables)) {
        writeNote(tables, noteOf(*files));
    }
}

bool isMergedTableBehind(const CommandTable &tables)
{
    const auto files = readTables(tables);
    if (!files) {
        return false;
    }
    const QJsonObject now = noteOf(*files);
    const QJsonObject noted =
        QJsonDocument::fromJson(readWholeFile(notePath(tables)).value_or(QByteArray())).object();
    if (noted == now) {
        return false;
    }
    if (noted.value(typedKey) == now.value(typedKey)) {
        return false; // rows of its own
    }
    if (noted.value(mergedKey) == now.value(mergedKey)) {
        return true;
    }
    if (mergedText(*files) == files->merged) {
        writeNote(tables, now);
    }
    return false;
}

} // namespace mevo
