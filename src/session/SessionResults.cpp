#include "session/SessionResults.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace mevo {

SessionResults::SessionResults(Deliver deliver, Typing typing)
    : m_deliver(std::move(deliver))
    , m_typing(std::move(typing))
{
}

int SessionResults::begin(SessionContext context)
{
    context.number = ++m_newest;
    m_sessions.push_back({std::move(context), {}, false});
    return m_newest;
}

SessionResults::Session *SessionResults::find(int session)
{
    const auto found = std::find_if(m_sessions.begin(), m_sessions.end(), [session](const Session &s) {
        return s.context.number == session && !s.ended;
    });
    return found == m_sessions.end() ? nullptr : &*found;
}

SessionContext SessionResults::contextOf(int session)
{
    const Session *const found = find(session);
    return found != nullptr ? found->context : SessionContext();
}

bool SessionResults::text(int session, const SessionText &text)
{
    Session *const found = find(session);
    if (found == nullptr) {
        qWarning("Session %d: a text of %d characters after its end is dropped", session, text.text.size());
        return false;
    }
    found->texts.push_back(text);
    return carryOn();
}

bool SessionResults::end(int session)
{
    Session *const found = find(session);
    if (found == nullptr) {
        return false;
    }
    found->ended = true;
    return carryOn();
}

bool SessionResults::carryOn()
{
    if (std::exchange(m_delivering, true)) {
        return false; // whoever delivers further down the stack goes on with it
    }
    bool waits = false;
    while (!m_sessions.empty() && !waits) {
        Session &first = m_sessions.front();
        if (!first.texts.empty()) {
            waits = m_typing && m_typing();
            if (!waits) {
                const SessionText text = std::move(first.texts.front());
                first.texts.pop_front();
                const SessionContext context = first.context; // the list may grow meanwhile
                m_deliver(context, text);
            }
        } else if (first.ended) {
            m_sessions.pop_front();
        } else {
            break;
        }
    }
    m_delivering = false;
    return waits;
}

std::vector<SessionText> SessionResults::takeWaiting()
{
    std::vector<SessionText> texts;
    for (Session &session : m_sessions) {
        for (const SessionText &text : session.texts) {
            texts.push_back(text);
        }
        session.texts.clear();
    }
    return texts;
}

} // namespace mevo
