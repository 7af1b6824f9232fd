#pragma once

#include <QString>

namespace mevo {

/// How the system's voice is to read a text.
struct ReadingLanguage
{
    QString voice;           ///< BCP 47 tag; empty when there is nothing to read
    bool unreadable = false; ///< its characters cannot be read by the voice of their language
};

/// Chooses the voice for a text of a language code of the translation service. Where most of the text is in a
/// script that the language is not written in, the voice of that script reads it; "auto" and unknown codes
/// always go by the script. Japanese with Han characters is unreadable: the system's voice knows kana alone.
ReadingLanguage readingLanguage(const QString &text, const QString &code);

} // namespace mevo
