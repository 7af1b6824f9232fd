#pragma once

#include <optional>

namespace mevo {

/// The part of the languages (translationLanguages()) that a list shows.
struct RowRange
{
    int first = 0; ///< index of its first row among all languages
    int count = 0;
};

/// What the recogniser can have understood, and so what a spoken sentence can be translated from.
RowRange spokenSources();
/// Every language, the automatic choice among them.
RowRange textSources();
/// Every language but the automatic choice.
RowRange destinations();

/// An index in a list of that many rows; anything out of range is its first row.
int rowInRange(int index, int count);

/// The rows at which two lists, of sources and of destinations, stand.
struct LanguagePair
{
    int source = 0;
    int destination = 0;
};

/// The pair with source and destination exchanged, where both lists have the other's language.
std::optional<LanguagePair> swappedLanguages(const LanguagePair &pair, const RowRange &sources);

/// How the speech service numbers the reader at an index of the list.
int readerNumber(int index);
/// The same for an index that the settings hold: there the third reader, too, is the fourth.
int storedReaderNumber(int index);

} // namespace mevo
