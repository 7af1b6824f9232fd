#include "session/RunFigures.h"

#include <algorithm>

namespace mevo {

namespace {
constexpr std::size_t mostWaits = 32;
} // namespace

void RunFigures::Spread::add(qint64 ms)
{
    ++m_counts[std::max<qint64>(0, ms)];
    ++m_count;
}

qint64 RunFigures::Spread::percentile(int percent) const
{
    const qint64 wanted = (qint64(m_count) * percent + 99) / 100;
    qint64 seen = 0;
    for (const auto &[ms, count] : m_counts) {
        seen += count;
        if (seen >= wanted) {
            return ms;
        }
    }
    return 0;
}

void RunFigures::released(int session, qint64 nowMs)
{
    if (session <= 0) {
        return;
    }
    m_waits.emplace(session, Wait{nowMs});
    if (m_waits.size() > mostWaits) {
        m_waits.erase(m_waits.begin());
    }
}

void RunFigures::answered(int session, qint64 nowMs)
{
    const auto wait = m_waits.find(session);
    if (wait != m_waits.end() && wait->second.answered < 0) {
        wait->second.answered = nowMs;
    }
}

void RunFigures::typed(int session, qint64 nowMs)
{
    const auto wait = m_waits.find(session);
    if (wait == m_waits.end()) {
        return;
    }
    m_releaseToText.add(nowMs - wait->second.released);
    // An answer that came before the release has cost nothing after it.
    m_answerToText.add(nowMs - std::max(wait->second.released, wait->second.answered));
    m_waits.erase(wait);
}

QString RunFigures::summary() const
{
    return QStringLiteral(
               "%1 texts; release to text p50 %2 ms, p95 %3 ms; of it after the answer p50 %4 ms, p95 %5 ms")
        .arg(m_releaseToText.count())
        .arg(m_releaseToText.percentile(50))
        .arg(m_releaseToText.percentile(95))
        .arg(m_answerToText.percentile(50))
        .arg(m_answerToText.percentile(95));
}

} // namespace mevo
