#include "base/LogText.h"

namespace mevo {

namespace {

QString hexEscape(char letter, uint number, int digits)
{
    return QString(QLatin1Char('\\')) + QLatin1Char(letter) +
           QStringLiteral("%1").arg(number, digits, 16, QLatin1Char('0'));
}

QString shown(uint character)
{
    switch (character) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    case '\\':
        return QStringLiteral("\\\\");
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
        return hexEscape('u', character, 4);
    default:
        break;
    }
    return QChar::isPrint(character) ? QString::fromUcs4(&character, 1)
           : character < 0x100       ? hexEscape('x', character, 2)
                                     : hexEscape('u', character, 4);
}

/// Appends until the log text is full; false when it is.
bool append(QString &line, const QString &piece)
{
    if (line.size() + piece.size() >= longestLogText) {
        line += QChar(0x2026);
        return false;
    }
    line += piece;
    return true;
}

} // namespace

QString logText(const QString &text)
{
    QString line;
    for (int i = 0; i < text.size(); ++i) {
        uint character = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            character = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        if (!append(line, shown(character))) {
            break;
        }
    }
    return line;
}

} // namespace mevo
