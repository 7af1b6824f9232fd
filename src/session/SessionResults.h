#pragma once

#include "state/SessionContext.h"

#include <QString>

#include <deque>
#include <functional>
#include <vector>

namespace mevo {

/// One text of a session.
struct SessionText
{
    QString text;
    bool words = false; ///< known to be words: straight to the handler, past the tests of an engine's answer
    bool asItStands = false; ///< to be typed unchanged, whatever it says and whichever mode is in force
};

/// Brings the texts of sessions that overlap into the order of their presses: a text goes out at once when
/// every earlier session has ended and what their texts made the program type has been typed. GUI thread
/// only.
class SessionResults
{
public:
    /// Takes a text in its turn. Event loops may run inside; a text that comes in them waits.
    using Deliver = std::function<void(const SessionContext &context, const SessionText &text)>;

    /// Whether an earlier text is still being typed; then the next one waits until carryOn() finds it done.
    using Typing = std::function<bool()>;

    explicit SessionResults(Deliver deliver, Typing typing = {});

    /// A press has been taken. Returns the session's number, which `context` gets as well.
    int begin(SessionContext context);
    /// What was in force at the press of a session that has not ended; a context of no session otherwise.
    SessionContext contextOf(int session);
    /// A text of this session; one that comes after its end is dropped with a log line.
    /// True when it waits for what is being typed, see carryOn().
    bool text(int session, const SessionText &text);
    /// Nothing more comes from this session. More than one end does no harm.
    bool end(int session);
    /// Goes on with the texts whose turn has come. True when some still wait for what is being typed.
    bool carryOn();
    /// Some session has not ended, or a text of it waits.
    bool isUnderWay() const { return !m_sessions.empty(); }
    /// Takes the texts out whose turn has not come, in the order of the presses.
    std::vector<SessionText> takeWaiting();

private:
    struct Session
    {
        SessionContext context;
        std::deque<SessionText> texts;
        bool ended = false;
    };
    Session *find(int session);

    Deliver m_deliver;
    Typing m_typing;
    std::deque<Session>
        m_sessions; ///< those that have not ended or whose texts wait, in the order of presses
    int m_newest = 0;
    bool m_delivering = false;
};

} // namespace mevo
