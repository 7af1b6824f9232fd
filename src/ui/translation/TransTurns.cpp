#include "ui/translation/TransTurns.h"

#include <utility>

namespace mevo {

bool TransTurns::takeSentence(const QString &sentence)
{
    if (isBusy() || !m_waiting.isEmpty()) {
        m_waiting.append(sentence);
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

QString TransTurns::nextSentence()
{
    return isBusy() || m_waiting.isEmpty() ? QString() : m_waiting.takeFirst();
}

QStringList TransTurns::takeWaiting()
{
    return std::exchange(m_waiting, {});
}

} // namespace mevo
