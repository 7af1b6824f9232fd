#pragma once

#include "receiver/PtyPair.h"

#include <QByteArray>

#include <deque>
#include <optional>

namespace mevo::lab {

/// The input reports that one open of the node has still to read, with the bell that wakes its poll().
class ReportQueue
{
public:
    /// The kernel's ring of 64 reports, one slot of which stays unused.
    static constexpr std::size_t capacity = 63;

    explicit ReportQueue(PtyPair bell)
        : m_bell(std::move(bell))
    {
    }

    /// Appends a report. False when the queue is full and the report is lost.
    bool push(const QByteArray &report);
    /// The next report, or nothing.
    std::optional<QByteArray> take();
    /// Whether an empty read answers a poll() that said "readable" a moment too long.
    bool settleFalseAlarm();
    void hangUp() { m_bell.close(); }

private:
    PtyPair m_bell;
    std::deque<QByteArray> m_reports;
    int m_owedBytes = 0; ///< bell bytes of reports that are taken already but had not come through yet
};

} // namespace mevo::lab
