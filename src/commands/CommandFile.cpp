#include "commands/CommandFile.h"

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

struct Escape
{
    char letter;
    char character;
};
constexpr Escape escapes[] = {{'a', '\a'}, {'b', '\b'}, {'f', '\f'}, {'n', '\n'},  {'r', '\r'}, {'t', '\t'},
                              {'v', '\v'}, {'"', '"'},  {'?', '?'},  {'\'', '\''}, {'\\', '\\'}};

struct Group
{
    QString name;
    CommandRow row;
    QStringList faults;
};

constexpr char blanks[] = " \t\r";

Bytes trimmedRight(Bytes text)
{
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

Bytes trimmed(Bytes text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return trimmedRight(text);
}

QString decoded(Bytes text)
{
    return QString::fromUtf8(text.data(), int(text.size()));
}

int digit(char character, int base)
{
    const int value = character >= '0' && character <= '9'   ? character - '0'
                      : character >= 'a' && character <= 'f' ? character - 'a' + 10
                      : character >= 'A' && character <= 'F' ? character - 'A' + 10
                                                             : base;
    return value < base ? value : -1;
}

/// Reads the escape behind the backslash at `at` and moves `at` behind it. An unknown one stands for
/// nothing, as in QSettings; a backslash at the end of the line for itself.
QString unescaped(Bytes text, std::size_t &at)
{
    if (++at >= text.size()) {
        return QStringLiteral("\\");
    }
    const char letter = text[at];
    for (const Escape &escape : escapes) {
        if (escape.letter == letter) {
            ++at;
            return QString(QLatin1Char(escape.character));
        }
    }
    const int base = letter == 'x' ? 16 : 8;
    at += letter == 'x' ? 1 : 0;
    if (base == 8 && digit(letter, base) < 0) {
        ++at;
        return {};
    }
    ushort unit = 0;
    for (; at < text.size() && digit(text[at], base) >= 0; ++at) {
        unit = ushort(unit * base + digit(text[at], base));
    }
    return QString(QChar(unit));
}

/// A value's text without quotes, escapes and remark. No blank stands at the end of the given text.
QString unquoted(Bytes text, bool &open)
{
    QString value = QLatin1String(""); // empty, which is not the same as absent
    bool quotes = false;
    bool quoted = false;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '\\') {
            value += unescaped(text, at);
        } else if (text[at] == '"') {
            quotes = !quotes;
            quoted = true;
            ++at;
            while (!quotes && at < text.size() && (text[at] == ' ' || text[at] == '\t')) {
                ++at;
            }
        } else {
            const auto end = std::min(text.find_first_of("\\\"", at), text.size());
            const Bytes run = text.substr(at, end - at);
            const auto remark = quotes                    ? Bytes::npos
                                : quoted && run[0] == ';' ? std::size_t(0)
                                                          : run.find(" ;");
            if (remark != Bytes::npos) {
                value += decoded(trimmedRight(run.substr(0, remark)));
                break;
            }
            value += decoded(run);
            at = end;
        }
    }
    open = quotes;
    return value;
}

/// QSettings keeps other types than texts behind an "@" and doubles the "@" of a text.
QString withoutTypeMark(const QString &value)
{
    if (value.startsWith(QLatin1String("@@"))) {
        return value.mid(1);
    }
    if (value == QLatin1String("@Invalid()")) {
        return QString();
    }
    for (const QLatin1String mark : {QLatin1String("@String("), QLatin1String("@ByteArray(")}) {
        if (value.startsWith(mark) && value.endsWith(QLatin1Char(')'))) {
            return value.mid(mark.size()).chopped(1);
        }
    }
    return value;
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
            cell = withoutTypeMark(unquoted(trimmed(line.substr(equals + 1)), open));
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
    const QString name = decoded(trimmed(line.substr(1, line.find(']') - 1)));
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

bool isHexDigit(QChar character)
{
    return character.unicode() < 0x80 && digit(char(character.unicode()), 16) >= 0;
}

void appendEscaped(QByteArray &out, QChar character)
{
    out += "\\x" + QByteArray::number(character.unicode(), 16);
}

/// The opposite of withoutTypeMark().
QString withTypeMark(const QString &value)
{
    if (value.contains(QChar(QChar::Null))) {
        return QStringLiteral("@String(%1)").arg(value);
    }
    return value.startsWith(QLatin1Char('@')) ? QLatin1Char('@') + value : value;
}

QByteArray quotedValue(const QString &given)
{
    const QString value = withTypeMark(given);
    QByteArray out;
    bool needsQuotes = value.startsWith(QLatin1Char(' ')) || value.endsWith(QLatin1Char(' '));
    bool afterNumber = false; // a hexadecimal digit behind a number would be read as part of it
    for (const QChar character : value) {
        const ushort unit = character.unicode();
        if (afterNumber && isHexDigit(character)) {
            appendEscaped(out, character);
            continue;
        }
        afterNumber = false;
        const auto *escape = std::find_if(std::begin(escapes), std::end(escapes), [unit](const Escape &row) {
            return row.character == unit && row.letter != '?' && row.letter != '\'';
        });
        if (escape != std::end(escapes)) {
            out += '\\';
            out += escape->letter;
        } else if (unit == 0) {
            out += "\\0";
            afterNumber = true;
        } else if (unit < 0x20 || character.isSurrogate()) {
            appendEscaped(out, character);
            afterNumber = true;
        } else {
            needsQuotes = needsQuotes || unit == ';' || unit == ',' || unit == '=';
            out += unit < 0x80 ? QByteArray(1, char(unit)) : QString(character).toUtf8();
        }
    }
    return needsQuotes ? '"' + out + '"' : out;
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
                lines += QByteArray(key.name) + '=' + quotedValue(row.*key.cell) + '\n';
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
    if (!info.isFile() || info.size() > largestFile || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
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
