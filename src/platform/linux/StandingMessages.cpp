#include "platform/linux/StandingMessages.h"

#include <algorithm>

namespace mevo {

bool StandingMessages::take(const QString &title, const QString &text, MessageIcon icon, int milliseconds,
                            qint64 nowMs, bool alone)
{
    m_messages.erase(std::remove_if(m_messages.begin(), m_messages.end(),
                                    [nowMs](const Message &message) { return message.untilMs <= nowMs; }),
                     m_messages.end());
    if (std::any_of(m_messages.begin(), m_messages.end(),
                    [&](const Message &message) { return message.is(title, text, icon); })) {
        return false;
    }
    if (alone) {
        m_messages.clear();
    }
    m_messages.push_back({title, text, icon, nowMs + milliseconds});
    return true;
}

void StandingMessages::forget(const QString &title, const QString &text, MessageIcon icon)
{
    m_messages.erase(std::remove_if(m_messages.begin(), m_messages.end(),
                                    [&](const Message &message) { return message.is(title, text, icon); }),
                     m_messages.end());
}

} // namespace mevo
