#pragma once

namespace mevo {

/// What waits for an answer and may be under way once only, since two could arrive in either order. Who asks
/// for it meanwhile has it done once more behind the one that runs, with what holds by then.
class OneAtATime
{
public:
    /// Does `step`, and again while somebody has asked meanwhile. It says whether there may be more to do.
    /// When one is under way already, that one hears of the wish and nothing else happens.
    template <class Step>
    void run(Step step)
    {
        if (m_underWay) {
            m_wanted = true;
            return;
        }
        m_underWay = true;
        do {
            m_wanted = false;
        } while (step() && m_wanted);
        m_underWay = false;
    }
    bool isUnderWay() const { return m_underWay; }

private:
    bool m_underWay = false;
    bool m_wanted = false;
};

} // namespace mevo
