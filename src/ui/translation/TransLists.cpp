#include "ui/translation/TransLists.h"

#include "translation/TranslationLanguages.h"

namespace mevo {

RowRange spokenSources()
{
    return {0, VoiceSourceLanguages};
}

RowRange textSources()
{
    return {0, int(translationLanguages().size())};
}

RowRange destinations()
{
    return {1, int(translationLanguages().size()) - 1};
}

int rowInRange(int index, int count)
{
    return index >= 0 && index < count ? index : 0;
}

std::optional<LanguagePair> swappedLanguages(const LanguagePair &pair, const RowRange &sources)
{
    const RowRange dests = destinations();
    const LanguagePair swapped{pair.destination + dests.first - sources.first,
                               pair.source + sources.first - dests.first};
    const auto has = [](const RowRange &rows, int index) { return index >= 0 && index < rows.count; };
    if (!has(sources, swapped.source) || !has(dests, swapped.destination)) {
        return std::nullopt;
    }
    return swapped;
}

int readerNumber(int index)
{
    return index < 2 ? index : index + 1;
}

int storedReaderNumber(int index)
{
    return index == 2 || index == 3 ? 4 : index; // kept: users hear it so since their settings were made
}

} // namespace mevo
