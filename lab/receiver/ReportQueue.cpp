#include "receiver/ReportQueue.h"

namespace mevo::lab {

bool ReportQueue::push(const QByteArray &report)
{
    if (m_reports.size() >= capacity)
        return false;
    m_reports.push_back(report);
    m_bell.ring();
    return true;
}

std::optional<QByteArray> ReportQueue::take()
{
    if (m_reports.empty())
        return std::nullopt;
    QByteArray report = m_reports.front();
    m_reports.pop_front();
    ++m_owedBytes;
    m_owedBytes -= m_bell.unring(m_owedBytes);
    return report;
}

bool ReportQueue::settleFalseAlarm()
{
    const bool owed = m_owedBytes > 0;
    m_owedBytes -= m_bell.unring(m_owedBytes);
    return owed;
}

} // namespace mevo::lab
