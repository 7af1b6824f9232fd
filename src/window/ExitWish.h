#pragma once

#include <optional>

namespace mevo {

/// When an exit that somebody asks for may be walked. Nobody may take the program down while it is being made
/// or while it is being taken down already; and an exit that cannot be called back comes through while the
/// user is being asked about another.
class ExitWish
{
public:
    enum class Kind {
        Asked,    ///< by the user, who is asked a question first and may call it back
        Unasked,  ///< the same without the question
        ByItself, ///< the program's own, and the system's
    };
    /// What is to be done about an exit that is asked for.
    enum class Course {
        Walk,
        Wait,          ///< it is remembered, and walked when the construction has ended
        CloseQuestion, ///< it is remembered, and walked when the question is gone
        Ignore,        ///< an exit is under way
    };

    Course want(Kind kind);
    /// An exit of the program's own will be asked for in a moment.
    void announce();
    /// The exit that was asked for during the construction, which has just ended.
    std::optional<Kind> constructionEnded();

    /// The user is being asked.
    void questionOpens();
    /// The user's answer is there. The exit to go on with, which may be one that came meanwhile; nothing when
    /// the program stays.
    std::optional<Kind> questionAnswered(bool leave);

    /// An exit that cannot be called back is asked for, or one is being walked or over.
    bool certain() const;
    /// The exit can no longer be called back, and what the program is made of may have gone.
    bool underWay() const { return m_phase == Phase::Walking; }

private:
    enum class Phase { Construction, Running, Question, Walking };
    Phase m_phase = Phase::Construction;
    std::optional<Kind> m_waiting;
    bool m_announced = false;
};

} // namespace mevo
