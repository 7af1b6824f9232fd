#pragma once

#include <QString>

namespace lab {

/// A small dictionary of sentences in Chinese, English and Japanese (codes zh, en, jp). Capitals, blanks and
/// punctuation do not count. Nothing for a sentence or a language that it does not know.
QString translateSentence(const QString &sentence, const QString &from, const QString &to);

/// The language of a text by its characters: jp with kana, zh with Han characters, else en.
QString guessLanguage(const QString &text);

} // namespace lab
