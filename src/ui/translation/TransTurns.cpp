#include "ui/translation/TransTurns.h"

#include <utility>

namespace mevo {

bool TransTurns::takeSentence(const SpokenText &sentence)
{
    if (isBusy() || !m_waiting.empty()) {
        m_waiting.push_back(sentence);
        return false;
    }
    return true;
}

void TransTurns::textChanged(bool empty)
{
    m_changed = true;
    m_announced = !empty;
}

bool TransTurns::beginRequest()
{
    if (m_asking || !m_announced) {
        return false;
    }
    m_asking = true;
    m_announced = false;
    m_changed = false;
    return true;
}

bool TransTurns::endRequest()
{
    m_asking = false;
    return !m_changed;
}

std::optional<SpokenText> TransTurns::nextSentence()
{
    if (isBusy() || m_waiting.empty()) {
        return std::nullopt;
    }
    SpokenText next = std::move(m_waiting.front());
    m_waiting.erase(m_waiting.begin());
    return next;
}

std::vector<SpokenText> TransTurns::takeWaiting()
{
    return std::exchange(m_waiting, {});
}

} // namespace mevo
