#include "commands/CommandFile.h"

#include "base/IniValue.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <string_view>

namespace mevo {

namespace {

using Bytes = std::string_view;

constexpr qint64 largestFile = 64 << 20;
constexpr int longestSaidWord = 1000;
constexpr int namedFaults = 5;
constexpr int quotedLength = 40;

struct Key
{
    const char *name;
    QString CommandRow::*cell;
};
constexpr Key keys[] = {
    {"CmdWordContents", &CommandRow::CmdWordContents},
    {"CmdWordType", &CommandRow::CmdWordType},
    {"CmdWordTypeIndex", &CommandRow::CmdWordTypeIndex},
    {"CommandWords", &CommandRow::CommandWords},
    {"Hide", &CommandRow::Hide},
};

struct Group
{
    QString name;
    CommandRow row;
    QStringList faults;
};

Bytes trimmed(Bytes text)
{
    constexpr char blanks[] = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

void takeLine(Bytes line, Group &group)
{
    const auto equals = line.find('=');
    if (equals == Bytes::npos) {
        group.faults.append(QStringLiteral("a line without \"=\""));
        return;
    }
    const Bytes name = trimmed(line.substr(0, equals));
    for (const Key &key : keys) {
        if (name == key.name) {
            bool open = false;
            QString &cell = group.row.*key.cell;
            cell = readIniValue(trimmed(line.substr(equals + 1)), open);
            if (open) {
                group.faults.append(QStringLiteral("an open quote in %1").arg(QLatin1String(key.name)));
            }
            if (cell.contains(QChar(QChar::ReplacementCharacter))) {
                group.faults.append(QStringLiteral("%1 is not UTF-8").arg(QLatin1String(key.name)));
            }
            return;
        }
    }
}

/// Begins the group of a line in brackets. False when the keys that follow are not a row's own: they
/// belong to no group, or to one inside the row's.
bool beginGroup(Bytes line, std::vector<Group> &groups)
{
    const Bytes inside = trimmed(line.substr(1, line.find(']') - 1));
    const QString name = QString::fromUtf8(inside.data(), int(inside.size()));
    if (name.compare(QLatin1String("General"), Qt::CaseInsensitive) == 0) {
        return false;
    }
    const int slash = name.indexOf(QLatin1Char('/'));
    groups.push_back({name.left(slash), {}, {}});
    return slash < 0;
}

std::vector<Group> readGroups(Bytes text)
{
    std::vector<Group> groups;
    bool inGroup = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const Bytes line = trimmed(text.substr(0, end));
        text.remove_prefix(end == Bytes::npos ? text.size() : end + 1);
        if (line.empty() || line[0] == ';' || line[0] == '#') {
            continue;
        }
        if (line[0] != '[') {
            if (inGroup) {
                takeLine(line, groups.back());
            }
            continue;
        }
        inGroup = beginGroup(line, groups);
    }
    return groups;
}

/// Sorts as text and joins groups of one name, the later key before the earlier.
void sortAndJoin(std::vector<Group> &groups)
{
    std::stable_sort(groups.begin(), groups.end(),
                     [](const Group &a, const Group &b) { return a.name < b.name; });
    auto last = groups.begin();
    for (auto next = groups.begin(); next != groups.end(); ++next) {
        if (next == last) {
            continue;
        }
        if (next->name != last->name) {
            if (++last != next) {
                *last = std::move(*next);
            }
            continue;
        }
        last->faults += next->faults;
        for (const Key &key : keys) {
            if (!(next->row.*key.cell).isNull()) {
                last->row.*key.cell = next->row.*key.cell;
            }
        }
    }
    if (last != groups.end()) {
        groups.erase(last + 1, groups.end());
    }
}

QString shown(const QString &text)
{
    return QLatin1Char('"') + text.simplified().left(quotedLength) + QLatin1Char('"');
}

void examine(Group &group)
{
    const CommandRow &row = group.row;
    for (const Key &key : keys) {
        if ((row.*key.cell).isNull() && key.cell != &CommandRow::Hide) {
            group.faults.append(QStringLiteral("no ") + QLatin1String(key.name));
        }
    }
    const auto type = commandTypeOfIndex(row.CmdWordTypeIndex);
    if (!row.CmdWordTypeIndex.isNull() && !type) {
        group.faults.append(QStringLiteral("no type has the number ") + shown(row.CmdWordTypeIndex));
    }
    if (!row.CmdWordType.isNull() && commandTypeOfLabel(row.CmdWordType) != type) {
        group.faults.append(shown(row.CmdWordType) + QStringLiteral(" is not the type of that number"));
    }
    if (row.CommandWords.size() > longestSaidWord) {
        for (const QStringRef &word : row.CommandWords.splitRef(QLatin1Char(';'))) {
            if (word.size() > longestSaidWord) {
                group.faults.append(QStringLiteral("a word of %1 characters").arg(word.size()));
            }
        }
    }
}

} // namespace

CommandFile parseCommandFile(const QByteArray &text)
{
    Bytes bytes(text.constData(), std::size_t(text.size()));
    constexpr Bytes byteOrderMark("\xEF\xBB\xBF");
    if (bytes.substr(0, byteOrderMark.size()) == byteOrderMark) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    std::vector<Group> groups = readGroups(bytes);
    sortAndJoin(groups);
    CommandFile file;
    if (groups.empty() && !text.trimmed().isEmpty()) {
        file.faults.append(QStringLiteral("no row in %1 bytes").arg(text.size()));
    }
    file.rows.reserve(groups.size());
    for (Group &group : groups) {
        examine(group);
        if (!group.faults.isEmpty()) {
            file.faults.append(QStringLiteral("row %1: %2")
                                   .arg(group.name.simplified().left(quotedLength),
                                        group.faults.join(QStringLiteral(", "))));
        }
        file.rows.push_back(std::move(group.row));
    }
    return file;
}

QByteArray commandFileText(const CommandRows &rows)
{
    std::vector<std::pair<QByteArray, const CommandRow *>> groups;
    groups.reserve(rows.size());
    for (const CommandRow &row : rows) {
        groups.emplace_back(QByteArray::number(qulonglong(groups.size())), &row);
    }
    std::sort(groups.begin(), groups.end());
    QByteArray text;
    for (const auto &[name, given] : groups) {
        CommandRow row = *given;
        const auto type = commandTypeOfLabel(row.CmdWordType);
        row.CmdWordTypeIndex = type ? QString::number(int(*type)) : QString();
        QByteArray lines;
        for (const Key &key : keys) {
            if (!(row.*key.cell).isNull()) {
                lines += QByteArray(key.name) + '=' + iniValueText(row.*key.cell) + '\n';
            }
        }
        if (!lines.isEmpty()) {
            text += (text.isEmpty() ? "[" : "\n[") + name + "]\n" + lines;
        }
    }
    return text;
}

std::optional<QByteArray> readCommandFile(const QString &path)
{
    QFile file(path);
    const QFileInfo info(path);
    if (!info.exists()) {
        return QByteArray();
    }
    if (!info.isFile() || info.size() > largestFile ||
        !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        qWarning().noquote() << "Command table:" << path << "cannot be read";
        return std::nullopt;
    }
    return file.readAll();
}

void logFaults(const QString &path, const QStringList &faults)
{
    if (faults.isEmpty()) {
        return;
    }
    QString line = faults.mid(0, namedFaults).join(QStringLiteral("; "));
    if (faults.size() > namedFaults) {
        line += QStringLiteral("; and %1 more").arg(faults.size() - namedFaults);
    }
    qWarning().noquote() << "Command table:" << path << "has odd rows:" << line;
}

} // namespace mevo
