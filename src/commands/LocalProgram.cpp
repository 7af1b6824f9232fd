#include "commands/LocalProgram.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

namespace mevo {

namespace {

constexpr qint64 largestEntry = 1 << 20;

/// A string value's own escapes, which come before the quoting of `Exec`.
QString unescapedString(const QString &value)
{
    QString text;
    for (int i = 0; i < value.size(); ++i) {
        if (value[i] != QLatin1Char('\\') || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case 's':
            text += QLatin1Char(' ');
            break;
        case 'n':
            text += QLatin1Char('\n');
            break;
        case 't':
            text += QLatin1Char('\t');
            break;
        case 'r':
            text += QLatin1Char('\r');
            break;
        case '\\':
            text += QLatin1Char('\\');
            break;
        default: // not defined: kept as it stands
            text += QLatin1Char('\\');
            text += value[i];
        }
    }
    return text;
}

/// The words of an `Exec` line; none when a quote is open. Field codes name files, an icon or the entry
/// itself, none of which is given: they go, and with them a word that held nothing else.
QStringList execWords(const QString &exec)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool quotes = false;
    for (int i = 0; i < exec.size(); ++i) {
        const QChar character = exec[i];
        const QChar next = i + 1 < exec.size() ? exec[i + 1] : QChar();
        if (character == QLatin1Char('"')) {
            quotes = !quotes;
            inWord = true;
        } else if (quotes && character == QLatin1Char('\\') && QStringLiteral("\"`$\\").contains(next)) {
            word += next;
            ++i;
        } else if (character == QLatin1Char('%') && next == character) {
            word += next;
            inWord = true;
            ++i;
        } else if (!quotes && character == QLatin1Char('%') && !next.isNull()) {
            ++i;
        } else if (!quotes && character.isSpace()) {
            if (inWord) {
                words.append(word);
            }
            word.clear();
            inWord = false;
        } else {
            word += character;
            inWord = true;
        }
    }
    if (inWord) {
        words.append(word);
    }
    return quotes ? QStringList() : words;
}

/// What opens a terminal with a command in it, as far as this computer has one.
QStringList inTerminal(const QStringList &words)
{
    for (const char *terminal : {"x-terminal-emulator", "xterm"}) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(terminal));
        if (!path.isEmpty()) {
            return QStringList{path, QStringLiteral("-e")} + words;
        }
    }
    return {};
}

} // namespace

DesktopEntryCommand parseDesktopEntry(const QByteArray &text)
{
    QHash<QString, QString> values;
    bool inEntry = false;
    for (const QString &raw : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
        const QString line = raw.trimmed();
        const int equals = line.indexOf(QLatin1Char('='));
        if (line.startsWith(QLatin1Char('['))) {
            inEntry = line == QLatin1String("[Desktop Entry]");
        } else if (inEntry && equals > 0 && !line.startsWith(QLatin1Char('#'))) {
            values.insert(line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
        }
    }
    if (values.value(QStringLiteral("Type")) != QLatin1String("Application")) {
        return {};
    }
    return {execWords(unescapedString(values.value(QStringLiteral("Exec")))),
            values.value(QStringLiteral("Terminal")) == QLatin1String("true")};
}

QStringList commandOfLocalFile(const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    if (info.suffix() == QLatin1String("desktop")) {
        const DesktopEntryCommand entry = parseDesktopEntry(file.read(largestEntry));
        return entry.terminal ? inTerminal(entry.words) : entry.words;
    }
    // On some disks every file may be executed; a program also looks like one.
    const QByteArray head = file.read(4);
    const bool program = head == "\x7f"
                                 "ELF" ||
                         head.startsWith("#!");
    return program && info.isExecutable() ? QStringList{info.absoluteFilePath()} : QStringList();
}

} // namespace mevo
