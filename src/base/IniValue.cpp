#include "base/IniValue.h"

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

QString decoded(Bytes text)
{
    return QString::fromUtf8(text.data(), int(text.size()));
}

/// A value's text without quotes, escapes and remark.
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
                const Bytes kept = run.substr(0, remark);
                value += decoded(kept.substr(0, kept.find_last_not_of(" \t") + 1));
                break;
            }
            value += decoded(run);
            at = end;
        }
    }
    open = quotes;
    return value;
}

} // namespace

QString readIniValue(Bytes text, bool &openQuote)
{
    return withoutTypeMark(unquoted(text, openQuote));
}

QByteArray iniValueText(const QString &given)
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

} // namespace mevo
