#pragma once

#include "ui/translation/SpokenText.h"

#include <optional>
#include <vector>

namespace mevo {

/// The order in which texts are translated. One is asked for at a time: sentences that are spoken meanwhile
/// wait for their turn, and a text that is changed meanwhile is asked for again, its answer dropped.
class TransTurns
{
public:
    /// A spoken sentence has come. True when it may be shown now; else it is kept.
    bool takeSentence(const SpokenText &sentence);
    /// The source text is another one now, `empty` when nothing is left to translate.
    void textChanged(bool empty);
    /// The source text is asked for now. False when there is none to ask for, or an answer is still awaited.
    bool beginRequest();
    /// The answer is there; true when it belongs to the text that is shown.
    bool endRequest();
    /// The next sentence to show; none when none waits, or another text comes first.
    std::optional<SpokenText> nextSentence();

    /// A text is there whose translation has not come.
    bool isBusy() const { return m_announced || m_asking; }
    /// The sentences that have not been shown; they are forgotten.
    std::vector<SpokenText> takeWaiting();

private:
    std::vector<SpokenText> m_waiting;
    bool m_announced = false; ///< a text is there that has not been asked for
    bool m_asking = false;
    bool m_changed = false; ///< since the request began
};

} // namespace mevo
