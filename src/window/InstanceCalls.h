#pragma once

#include "platform/WindowSystem.h"
#include "state/SessionContext.h"
#include "window/InstanceMessage.h"

#include <deque>
#include <functional>
#include <map>

class MainWindow;

namespace mevo {

/// Carries out what other starts of the program ask of this one. What comes during the start waits for its
/// end. Each call is answered once. GUI thread only.
class InstanceCalls
{
public:
    using Answer = std::function<void(InstanceAnswer)>;

    explicit InstanceCalls(MainWindow &window)
        : m_window(window)
    {
    }

    /// A text is for the window that has the focus now, and is typed after what has been said before it.
    /// While the exit's question stands, that comes forward and nothing else.
    void take(const InstanceCall &call, const Answer &answer);
    /// Types such a text, whose turn has come.
    void typeInTurn(const QString &text, const SessionContext &session);
    /// An exit: the texts that have not been typed have been kept, or are kept here.
    void finish();

private:
    struct Early
    {
        InstanceCall call;
        WindowId window = 0; ///< focused when it came
        Answer answer;
    };
    void carryOut(const Early &call);
    void carryOutEarly();
    void type(const Early &call);
    bool isBusy() const;
    InstanceAnswer showTalkWindow();
    InstanceAnswer showSettings();
    void settle(int session, InstanceAnswer answer);

    MainWindow &m_window;
    std::deque<Early> m_early;
    std::map<int, Answer> m_underWay; ///< by the session that the text is
};

} // namespace mevo
