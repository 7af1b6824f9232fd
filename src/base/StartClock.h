#pragma once

#include <QElapsedTimer>
#include <QString>

namespace mevo {

/// Tells, for the log, what the start has spent its time on.
class StartClock
{
public:
    StartClock() { m_timer.start(); }
    /// The phase that ends here.
    void mark(const char *phase)
    {
        const qint64 now = m_timer.elapsed();
        m_summary += QStringLiteral("%1 %2, ").arg(QLatin1String(phase)).arg(now - m_last);
        m_last = now;
    }
    /// "settings 4, device 131, total 140 ms".
    QString summary() const { return m_summary + QStringLiteral("total %1 ms").arg(m_timer.elapsed()); }

private:
    QElapsedTimer m_timer;
    qint64 m_last = 0;
    QString m_summary;
};

} // namespace mevo
