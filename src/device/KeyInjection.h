#pragma once

#include "device/DeviceReports.h"
#include "output/KeyCombination.h"

#include <QtGlobal>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

namespace mevo {

/// The keys that send what has been typed, as the settings select them.
struct SendKeys
{
    bool altS = false;
    bool enter = false;
    bool ctrlEnter = false;
};

/// One report of an injection, and whether the human-like pause follows it.
struct InjectionStep
{
    FeatureReport report{};
    bool wait = true;
};

/// Press, release and release of one combination; the last pause is left out before other keys.
std::vector<InjectionStep> planCombination(const KeyCombination &combination);
/// Press, release and release of each selected send key, every report with its pause.
std::vector<InjectionStep> planSendKeys(const SendKeys &keys);

/// Brings the injections that run at once into the order in which they were asked for, so that no two
/// mix their reports, and keeps `busy` set for as long as one of them is under way. Any thread.
class KeyInjectionQueue
{
public:
    using Ticket = quint64;

    explicit KeyInjectionQueue(std::atomic<bool> &busy);

    /// Queues an injection; its turn comes after all that joined before.
    Ticket join();
    /// Blocks until it is this injection's turn.
    void awaitTurn(Ticket ticket);
    /// Ends an injection, whether its turn came or not. One that has ended may leave again, even when
    /// `busy` is no more.
    void leave(Ticket ticket);
    /// Waits until no injection is under way. False when `milliseconds` ran out first.
    bool waitIdle(int milliseconds);

private:
    std::atomic<bool> &m_busy;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Ticket> m_waiting;
    Ticket m_next = 1;
};

/// Keeps the queue's `busy` flag set while it lives, without waiting for anybody: for single key
/// reports of the GUI thread.
class BriefInjection
{
public:
    explicit BriefInjection(KeyInjectionQueue &queue)
        : m_queue(queue)
        , m_ticket(queue.join())
    {
    }
    ~BriefInjection() { m_queue.leave(m_ticket); }
    Q_DISABLE_COPY(BriefInjection)

private:
    KeyInjectionQueue &m_queue;
    KeyInjectionQueue::Ticket m_ticket;
};

} // namespace mevo
