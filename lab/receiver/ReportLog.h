#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <mutex>
#include <vector>

namespace mevo::lab {

/// Nanoseconds of the system's monotonic clock, the same for all processes.
qint64 monotonicNs();
/// Bytes as "05 81 01".
QByteArray spacedHex(const QByteArray &bytes);
/// Bytes from "05 81 01" or "058101"; empty when `text` is not pairs of hexadecimal digits.
QByteArray fromSpacedHex(const QByteArray &text);

struct LoggedReport
{
    enum Kind { Input, Feature };

    qint64 ns = 0; ///< monotonicNs() when it was queued or had arrived
    Kind kind = Input;
    QByteArray bytes;
    bool accepted = true; ///< false: a refused feature report
    bool known = true;    ///< false: a feature report that means nothing to the receiver

    QJsonObject toJson() const;
};

/// Every report that went through, in order. May be used from any thread.
class ReportLog
{
public:
    void add(LoggedReport report);
    std::size_t size() const;
    std::vector<LoggedReport> since(std::size_t first = 0) const;
    /// Whether a feature report that starts with `prefix` stands at `first` or later.
    bool hasFeature(const QByteArray &prefix, std::size_t first) const;

private:
    mutable std::mutex m_mutex;
    std::vector<LoggedReport> m_reports;
};

} // namespace mevo::lab
