#include "receiver/ReportLog.h"

#include <algorithm>
#include <chrono>

namespace mevo::lab {

qint64 monotonicNs()
{
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since).count();
}

QByteArray spacedHex(const QByteArray &bytes)
{
    return bytes.toHex(' ');
}

QByteArray fromSpacedHex(const QByteArray &text)
{
    QByteArray digits = text;
    digits.replace(' ', "");
    const bool onlyDigits = std::all_of(digits.begin(), digits.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    });
    return onlyDigits && digits.size() % 2 == 0 ? QByteArray::fromHex(digits) : QByteArray();
}

QJsonObject LoggedReport::toJson() const
{
    QJsonObject object{
        {QStringLiteral("ms"), double(ns) / 1e6},
        {QStringLiteral("kind"), kind == Input ? QStringLiteral("input") : QStringLiteral("feature")},
        {QStringLiteral("bytes"), QString::fromLatin1(spacedHex(bytes))}};
    if (!accepted)
        object.insert(QStringLiteral("refused"), true);
    if (!known)
        object.insert(QStringLiteral("unknown"), true);
    return object;
}

void ReportLog::add(LoggedReport report)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_reports.push_back(std::move(report));
}

std::size_t ReportLog::size() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_reports.size();
}

std::vector<LoggedReport> ReportLog::since(std::size_t first) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    first = std::min(first, m_reports.size());
    return {m_reports.begin() + std::ptrdiff_t(first), m_reports.end()};
}

bool ReportLog::hasFeature(const QByteArray &prefix, std::size_t first) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    first = std::min(first, m_reports.size());
    return std::any_of(m_reports.begin() + std::ptrdiff_t(first), m_reports.end(),
                       [&](const LoggedReport &report) {
                           return report.kind == LoggedReport::Feature && report.bytes.startsWith(prefix);
                       });
}

} // namespace mevo::lab
