#include "commands/CommandFile.h"

#include "base/IniLine.h"
#include "base/IniValue.h"
#include "base/LogText.h"
#include "base/WholeFile.h"

#include <QDebug>

#include <algorithm>
#include <string_view>

namespace mevo {

namespace {

using Bytes = std::string_view;

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

/// A file of nothing but nonsense must not become a log line as long.
void note(Group &group, const QString &fault)
{
    if (group.faults.size() < namedFaults) {
        group.faults.append(fault);
    } else if (group.faults.size() == namedFaults) {
        group.faults.append(QStringLiteral("and more"));
    }
}

void takeLine(const IniLine &line, Group &group)
{
    if (line.kind == IniLine::Kind::Odd) {
        note(group, QStringLiteral("a line without \"=\""));
        return;
    }
    for (const Key &key : keys) {
        if (line.name == key.name) {
            const IniValue read = readIniValue(line.value);
            group.row.*key.cell = read.text();
            if (read.openQuote) {
                note(group, QStringLiteral("an open quote in %1").arg(QLatin1String(key.name)));
            }
            if (read.broken) {
                note(group, QStringLiteral("%1 is not UTF-8").arg(QLatin1String(key.name)));
            }
            return;
        }
    }
}

/// Begins a group. False when the keys that follow are not a row's own: they belong to no group, or to one
/// inside the row's.
bool beginGroup(const IniLine &line, std::vector<Group> &groups)
{
    const QString name = readIniName(line.name);
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
        const IniLine line = takeIniLine(text);
        if (line.kind == IniLine::Kind::Group) {
            inGroup = beginGroup(line, groups);
        } else if (inGroup && line.kind != IniLine::Kind::Blank) {
            takeLine(line, groups.back());
        }
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
        for (const QString &fault : qAsConst(next->faults)) {
            note(*last, fault);
        }
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
    return QLatin1Char('"') + logText(text.left(quotedLength)) + QLatin1Char('"');
}

void examine(Group &group)
{
    const CommandRow &row = group.row;
    for (const Key &key : keys) {
        if ((row.*key.cell).isNull() && key.cell != &CommandRow::Hide) {
            note(group, QStringLiteral("no ") + QLatin1String(key.name));
        }
    }
    const auto type = commandTypeOfIndex(row.CmdWordTypeIndex);
    if (!row.CmdWordTypeIndex.isNull() && !type) {
        note(group, QStringLiteral("no type has the number ") + shown(row.CmdWordTypeIndex));
    }
    if (!row.CmdWordType.isNull() && commandTypeOfLabel(row.CmdWordType) != type) {
        note(group, shown(row.CmdWordType) + QStringLiteral(" is not the type of that number"));
    }
    if (row.CommandWords.size() > longestSaidWord) {
        for (const QStringRef &word : row.CommandWords.splitRef(QLatin1Char(';'))) {
            if (word.size() > longestSaidWord) {
                note(group, QStringLiteral("a word of %1 characters").arg(word.size()));
            }
        }
    }
}

} // namespace

CommandFile parseCommandFile(const QByteArray &text)
{
    Bytes bytes(text.constData(), std::size_t(text.size()));
    if (bytes.substr(0, utf8Mark.size()) == utf8Mark) {
        bytes.remove_prefix(utf8Mark.size());
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
            file.faults.append(
                QStringLiteral("row %1: %2")
                    .arg(logText(group.name.left(quotedLength)), group.faults.join(QStringLiteral(", "))));
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
    std::optional<QByteArray> text = readWholeFile(path);
    if (!text) {
        qWarning().noquote() << "Command table:" << path << "cannot be read";
    }
    return text;
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
