#pragma once

#include <QString>

#include <map>

namespace mevo {

/// How long users of this run have waited for their texts: from the release of a key until the first text of
/// its session after that is in the window, and which part of it lies behind the engine's answer. Whole
/// milliseconds.
class RunFigures
{
public:
    /// Durations, each in its millisecond.
    class Spread
    {
    public:
        void add(qint64 ms);
        int count() const { return m_count; }
        /// The least duration that `percent` of 100 do not exceed, 0 without any.
        qint64 percentile(int percent) const;

    private:
        std::map<qint64, int> m_counts;
        int m_count = 0;
    };

    /// `session` counts from 1 on; times are of one monotonic clock. What belongs to no session, or comes
    /// before its release, is passed over.
    void released(int session, qint64 nowMs);
    void answered(int session, qint64 nowMs);
    void typed(int session, qint64 nowMs);

    /// For the log, in English.
    QString summary() const;
    const Spread &releaseToText() const { return m_releaseToText; }
    const Spread &answerToText() const { return m_answerToText; }

private:
    struct Wait
    {
        qint64 released = 0;
        qint64 answered = -1; ///< not yet
    };
    std::map<int, Wait> m_waits; ///< by session; the newest only, for many a session brings no text
    Spread m_releaseToText;
    Spread m_answerToText;
};

} // namespace mevo
