#include "translation/ReadingLanguage.h"

#include "translation/TranslationLanguages.h"

#include <QChar>
#include <QVector>

#include <algorithm>
#include <map>

namespace mevo {

namespace {

enum class Script { Latin, Han, Kana, Hangul, Cyrillic, Greek, Thai, Arabic };

struct ScriptRow
{
    QChar::Script unicode;
    Script script;
    const char *voice; ///< reads a text of which nothing but the script is known
};

constexpr ScriptRow scripts[] = {
    {QChar::Script_Latin, Script::Latin, "en"},   {QChar::Script_Han, Script::Han, "cmn"},
    {QChar::Script_Hiragana, Script::Kana, "ja"}, {QChar::Script_Katakana, Script::Kana, "ja"},
    {QChar::Script_Hangul, Script::Hangul, "ko"}, {QChar::Script_Cyrillic, Script::Cyrillic, "ru"},
    {QChar::Script_Greek, Script::Greek, "el"},   {QChar::Script_Thai, Script::Thai, "th"},
    {QChar::Script_Arabic, Script::Arabic, "ar"},
};

/// Scripts of the voices that are not written in Latin letters.
const std::map<QString, Script> &scriptsOfVoices()
{
    static const std::map<QString, Script> map = {
        {QStringLiteral("cmn"), Script::Han},     {QStringLiteral("yue"), Script::Han},
        {QStringLiteral("ja"), Script::Kana},     {QStringLiteral("ko"), Script::Hangul},
        {QStringLiteral("ru"), Script::Cyrillic}, {QStringLiteral("bg"), Script::Cyrillic},
        {QStringLiteral("el"), Script::Greek},    {QStringLiteral("th"), Script::Thai},
        {QStringLiteral("ar"), Script::Arabic},
    };
    return map;
}

/// A text with fewer kana than this part of its Han characters is Chinese that quotes some.
constexpr int fewestKana = 5;

using Counts = std::map<Script, int>;

Counts countLetters(const QString &text)
{
    Counts counts;
    const QVector<uint> points = text.toUcs4();
    for (const uint point : points) {
        const QChar::Script unicode = QChar::script(point);
        for (const ScriptRow &row : scripts) {
            if (row.unicode == unicode) {
                ++counts[row.script];
            }
        }
    }
    return counts;
}

bool isJapanese(Counts &counts)
{
    return counts[Script::Kana] > 0 && counts[Script::Kana] * fewestKana >= counts[Script::Han];
}

/// The voice for the script that most letters are of.
QString voiceOfText(Counts &counts)
{
    if (isJapanese(counts)) {
        counts[Script::Kana] += counts[Script::Han]; // one writing
        counts[Script::Han] = 0;
    }
    const ScriptRow *most = &scripts[0];
    for (const ScriptRow &row : scripts) {
        if (counts[row.script] > counts[most->script]) {
            most = &row;
        }
    }
    return QLatin1String(most->voice);
}

} // namespace

ReadingLanguage readingLanguage(const QString &text, const QString &code)
{
    if (text.trimmed().isEmpty()) {
        return {};
    }
    Counts counts = countLetters(text);
    int letters = 0;
    for (const auto &count : counts) {
        letters += count.second;
    }
    const int han = counts[Script::Han];
    const TranslationLanguage *language = translationLanguage(code);
    QString voice = language == nullptr ? QString() : QLatin1String(language->voice);
    if (!voice.isEmpty()) {
        const auto found = scriptsOfVoices().find(voice);
        const Script own = found == scriptsOfVoices().end() ? Script::Latin : found->second;
        const int readable = counts[own] + (own == Script::Kana ? han : 0);
        if (readable * 2 < letters) {
            voice.clear();
        }
    }
    if (voice.isEmpty()) {
        voice = voiceOfText(counts);
    }
    return {voice, voice == QLatin1String("ja") && han > 0};
}

} // namespace mevo
