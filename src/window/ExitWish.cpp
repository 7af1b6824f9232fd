#include "window/ExitWish.h"

#include <utility>

namespace mevo {

ExitWish::Course ExitWish::want(Kind kind)
{
    switch (m_phase) {
    case Phase::Construction:
        if (!m_waiting || *m_waiting == Kind::Asked) {
            m_waiting = kind;
        }
        return Course::Wait;
    case Phase::Running:
        m_phase = Phase::Walking;
        return Course::Walk;
    case Phase::Question:
        if (kind == Kind::Asked || m_waiting) {
            return Course::Ignore;
        }
        m_waiting = kind;
        return Course::CloseQuestion;
    case Phase::Walking:
        break;
    }
    return Course::Ignore;
}

void ExitWish::announce()
{
    m_announced = true;
    if (m_phase == Phase::Construction) {
        want(Kind::ByItself);
    }
}

std::optional<ExitWish::Kind> ExitWish::constructionEnded()
{
    m_phase = Phase::Running;
    return std::exchange(m_waiting, std::nullopt);
}

void ExitWish::questionOpens()
{
    m_phase = Phase::Question;
}

std::optional<ExitWish::Kind> ExitWish::questionAnswered(bool leave)
{
    const std::optional<Kind> meanwhile = std::exchange(m_waiting, std::nullopt);
    const std::optional<Kind> kind = meanwhile || !leave ? meanwhile : Kind::Asked;
    m_phase = kind ? Phase::Walking : Phase::Running;
    return kind;
}

bool ExitWish::certain() const
{
    return m_announced || m_phase == Phase::Walking || (m_waiting && *m_waiting != Kind::Asked);
}

} // namespace mevo
