#include "base/IniValue.h"

#include "base/Utf8.h"

#include <algorithm>
#include <iterator>

namespace mevo {

namespace {

using Bytes = std::string_view;

struct Escape
{
    char letter;
    char character;
};
constexpr Escape escapes[] = {{'a', '\a'}, {'b', '\b'}, {'f', '\f'}, {'n', '\n'},  {'r', '\r'}, {'t', '\t'},
                              {'v', '\v'}, {'"', '"'},  {'?', '?'},  {'\'', '\''}, {'\\', '\\'}};

int digit(char character, int base)
{
    const int value = character >= '0' && character <= '9'   ? character - '0'
                      : character >= 'a' && character <= 'f' ? character - 'a' + 10
                      : character >= 'A' && character <= 'F' ? character - 'A' + 10
                                                             : base;
    return value < base ? value : -1;
}

/// Reads the escape that the backslash at `at` begins and moves `at` behind it. One that nobody writes was
/// typed by hand, as part of a path most likely: the backslash stands for itself.
QString unescaped(Bytes text, std::size_t &at)
{
    const char letter = ++at < text.size() ? text[at] : '\0';
    for (const Escape &escape : escapes) {
        if (escape.letter == letter) {
            ++at;
            return QString(QLatin1Char(escape.character));
        }
    }
    const int base = letter == 'x' ? 16 : 8;
    std::size_t digits = at + (letter == 'x' ? 1 : 0);
    const std::size_t first = digits;
    ushort unit = 0;
    for (; digits < text.size() && digit(text[digits], base) >= 0; ++digits) {
        unit = ushort(unit * base + digit(text[digits], base));
    }
    if (digits == first) {
        return QStringLiteral("\\");
    }
    at = digits;
    return QString(QChar(unit));
}

/// QSettings keeps other types than texts behind an "@" and doubles the "@" of a text.
QVariant withoutTypeMark(const QString &value)
{
    const QLatin1String byteArray("@ByteArray(");
    const QLatin1String text("@String(");
    if (value.startsWith(QLatin1String("@@"))) {
        return value.mid(1);
    }
    if (value == QLatin1String("@Invalid()")) {
        return {};
    }
    if (value.startsWith(byteArray) && value.endsWith(QLatin1Char(')'))) {
        return value.mid(byteArray.size()).chopped(1).toLatin1();
    }
    if (value.startsWith(text) && value.endsWith(QLatin1Char(')'))) {
        return value.mid(text.size()).chopped(1);
    }
    return value;
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
QString withTypeMark(const QVariant &given)
{
    if (!given.isValid()) {
        return QStringLiteral("@Invalid()");
    }
    if (given.type() == QVariant::ByteArray) {
        const QByteArray bytes = given.toByteArray();
        return QStringLiteral("@ByteArray(") + QString::fromLatin1(bytes.constData(), bytes.size()) +
               QLatin1Char(')');
    }
    const QString value = given.toString();
    if (value.contains(QChar(QChar::Null))) {
        return QStringLiteral("@String(%1)").arg(value);
    }
    return value.startsWith(QLatin1Char('@')) ? QLatin1Char('@') + value : value;
}

std::size_t endWithoutBlanks(Bytes text, std::size_t end)
{
    return text.substr(0, end).find_last_not_of(" \t") + 1;
}

/// A value's text without quotes, escapes and remark; `read` gets everything but the value.
QString unquoted(Bytes text, IniValue &read)
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
                value += textOfUtf8(run.substr(0, endWithoutBlanks(run, remark)), &read.broken);
                read.length = endWithoutBlanks(text, at + remark);
                return value;
            }
            value += textOfUtf8(run, &read.broken);
            at = end;
        }
    }
    read.length = text.size();
    read.openQuote = quotes;
    return value;
}

bool standsInNames(uint unit)
{
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9') ||
           unit == '_' || unit == '-' || unit == '.';
}

} // namespace

IniValue readIniValue(Bytes text)
{
    IniValue read;
    const auto begin = std::min(text.find_first_not_of(" \t"), text.size());
    const bool onlyARemark = begin > 0 && begin < text.size() && text[begin - 1] == ' ' && text[begin] == ';';
    read.begin = onlyARemark ? 0 : begin;
    const auto end = onlyARemark ? 0 : endWithoutBlanks(text, text.size());
    const Bytes inside = text.substr(read.begin, end > read.begin ? end - read.begin : 0);
    read.value = withoutTypeMark(unquoted(inside, read));
    read.broken = read.broken || inside.find('\0') != Bytes::npos;
    return read;
}

QByteArray iniValueText(const QVariant &given)
{
    const QString value = withTypeMark(given);
    const bool isBytes = given.type() == QVariant::ByteArray;
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
        } else if (unit < 0x20 || character.isSurrogate() || unit == QChar::ByteOrderMark ||
                   (isBytes && unit >= 0x7f)) {
            appendEscaped(out, character);
            afterNumber = true;
        } else {
            needsQuotes = needsQuotes || unit == ';' || unit == ',' || unit == '=';
            out += unit < 0x80 ? QByteArray(1, char(unit)) : QString(character).toUtf8();
        }
    }
    return needsQuotes ? '"' + out + '"' : out;
}

QString readIniName(Bytes text, bool *broken)
{
    const QString written = textOfUtf8(text, broken);
    if (!written.contains(QLatin1Char('\\')) && !written.contains(QLatin1Char('%'))) {
        return written;
    }
    QString name;
    for (int i = 0; i < written.size(); ++i) {
        const bool wide = written.midRef(i, 2) == QLatin1String("%U");
        const QStringRef digits = written.midRef(i + (wide ? 2 : 1), wide ? 4 : 2);
        if (written[i] == QLatin1Char('\\')) {
            name += QLatin1Char('/');
        } else if (written[i] == QLatin1Char('%') && digits.size() == (wide ? 4 : 2) &&
                   std::all_of(digits.begin(), digits.end(), isHexDigit)) {
            name += QChar(digits.toUShort(nullptr, 16));
            i += digits.size() + (wide ? 1 : 0);
        } else {
            name += written[i];
        }
    }
    return name;
}

QByteArray iniNameText(const QString &name)
{
    QByteArray text;
    for (const QChar character : name) {
        const ushort unit = character.unicode();
        if (standsInNames(unit)) {
            text += char(unit);
        } else if (unit == '/') {
            text += '\\';
        } else {
            text += (unit < 0x100 ? "%" : "%U") +
                    QByteArray::number(unit, 16).toUpper().rightJustified(unit < 0x100 ? 2 : 4, '0');
        }
    }
    return text;
}

} // namespace mevo
