#pragma once

#include <QString>

#include <vector>

namespace mevo {

/// One language that the translation service knows.
struct TranslationLanguage
{
    const char *code;  ///< the service's name of it, such as "jp"
    const char *row;   ///< as the language lists show it, with the code in brackets; to be translated
    const char *label; ///< as the labels above the panes show it; to be translated
    const char *flag;  ///< two letters of the flag's picture ":/rec/tans/", these and ".ico"
    const char *voice; ///< BCP 47 tag for the system's voice; empty for "auto", which is told from the text
};

/// Every language in the order of the lists, "auto" first.
const std::vector<TranslationLanguage> &translationLanguages();

/// How many of them, from the first on, a voice translation offers as its source: what the recognisers hear.
constexpr int VoiceSourceLanguages = 6;

/// The language of a code; null for an unknown one.
const TranslationLanguage *translationLanguage(const QString &code);

/// A list's row in the language of the interface.
QString languageRowText(const TranslationLanguage &language);
/// The label of a code in the language of the interface; empty for an unknown one.
QString languageLabel(const QString &code);
/// Path of the flag's picture.
QString languageFlag(const TranslationLanguage &language);
/// What stands between the first "(" and the ")" behind it; empty without them.
QString codeInBrackets(const QString &row);

} // namespace mevo
