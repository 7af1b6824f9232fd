#pragma once

#include <QTimer>

#include <functional>

namespace mevo::keypad {

/// How the keyboard ends when it is asked to: a receiver that is plugged in asks for it unseen by the user. A
/// syllable that is being typed is waited for, then what is on its way to its window; neither for ever.
class KeypadExit : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        int composingMs = 30000;
        int typingMs = 3000;
    };
    /// What it asks and does; all are called on the thread of the caller of ask() and look().
    struct Hooks
    {
        std::function<bool()> isComposing; ///< where the user can see it and go on
        std::function<bool()> isTyping;
        std::function<void()> endComposition; ///< the user has not ended it in time
        std::function<void()> close;          ///< take the keyboard off the screen, and take no more wishes
        std::function<void()> end;
    };

    KeypadExit(Hooks hooks, Limits limits);

    /// Begins the end; nothing more when it has begun.
    void ask();
    /// Begins the end and waits for no syllable: there is no time, as at the end of a session.
    void hurry();
    /// Goes on when what was waited for has come. To be called when it may have.
    void look();
    bool hasBegun() const { return m_stage != Stage::Running; }

private:
    enum class Stage { Running, Composing, Typing, Over };
    void awaitTyping();
    void finish();
    void runOut();

    Hooks m_hooks;
    Limits m_limits;
    QTimer m_limit;
    Stage m_stage = Stage::Running;
};

} // namespace mevo::keypad
