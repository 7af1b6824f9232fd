#include "keypad/KeyWords.h"

namespace mevo::keypad {

namespace {

constexpr int mostWords = 8; ///< of one key: they are shown together

bool isLetterOrDigit(QChar key)
{
    return key.unicode() < 0x80 && key.isLetterOrNumber();
}

} // namespace

KeyWords::KeyWords(const CommandRows &rows)
{
    for (const CommandRow &row : rows) {
        if (commandTypeOfIndex(row.CmdWordTypeIndex) != CommandType::VoiceKeyboard ||
            row.CmdWordContents.size() != 1 || !isLetterOrDigit(row.CmdWordContents[0])) {
            continue;
        }
        QStringList &words = m_words[row.CmdWordContents[0].toLower()];
        for (const QString &form : row.CommandWords.split(QLatin1Char(';'))) {
            const QString word = form.trimmed();
            const bool ownName = word.compare(row.CmdWordContents, Qt::CaseInsensitive) == 0;
            if (!word.isEmpty() && !ownName && !words.contains(word) && words.size() < mostWords) {
                words.append(word);
            }
        }
    }
}

} // namespace mevo::keypad
