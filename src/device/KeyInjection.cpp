#include "device/KeyInjection.h"

#include <QDeadlineTimer>

#include <algorithm>

namespace mevo {

namespace {

constexpr int kUsageS = 0x16;
constexpr int kUsageEnter = 0x28;

struct SendKeyRow
{
    bool SendKeys::*selected;
    int modifiers;
    int usage;
};

constexpr std::array<SendKeyRow, 3> kSendKeys{{
    {&SendKeys::altS, modifierBits(false, false, true, false), kUsageS},
    {&SendKeys::enter, 0, kUsageEnter},
    {&SendKeys::ctrlEnter, modifierBits(false, true, false, false), kUsageEnter},
}};

} // namespace

std::vector<InjectionStep> planCombination(const KeyCombination &c)
{
    if (c.consumerKey) {
        return {
            {reports::consumerKeyDown(c.key)}, {reports::resetConsumerKeys}, {reports::resetConsumerKeys}};
    }
    const int modifiers = modifierBits(c.shift, c.ctrl, c.alt, c.win);
    return {{reports::keyDown(modifiers, c.key)}, {reports::resetKeys}, {reports::resetKeys, c.key == 0}};
}

std::vector<InjectionStep> planSendKeys(const SendKeys &keys)
{
    std::vector<InjectionStep> steps;
    for (const SendKeyRow &row : kSendKeys) {
        if (keys.*row.selected) {
            steps.push_back({reports::keyDown(row.modifiers, row.usage)});
            steps.push_back({reports::resetKeys});
            steps.push_back({reports::resetKeys});
        }
    }
    return steps;
}

KeyInjectionQueue::KeyInjectionQueue(std::atomic<bool> &busy)
    : m_busy(busy)
{
}

KeyInjectionQueue::Ticket KeyInjectionQueue::join()
{
    const QMutexLocker lock(&m_mutex);
    m_waiting.push_back(m_next);
    m_busy = true;
    return m_next++;
}

void KeyInjectionQueue::awaitTurn(Ticket ticket)
{
    const QMutexLocker lock(&m_mutex);
    while (!m_waiting.empty() && m_waiting.front() != ticket) {
        m_changed.wait(&m_mutex);
    }
}

void KeyInjectionQueue::leave(Ticket ticket)
{
    const QMutexLocker lock(&m_mutex);
    const auto found = std::find(m_waiting.begin(), m_waiting.end(), ticket);
    if (found == m_waiting.end()) {
        return;
    }
    m_waiting.erase(found);
    m_busy = !m_waiting.empty();
    m_changed.wakeAll();
}

bool KeyInjectionQueue::waitIdle(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    const QMutexLocker lock(&m_mutex);
    while (!m_waiting.empty()) {
        if (!m_changed.wait(&m_mutex, deadline)) {
            return m_waiting.empty();
        }
    }
    return true;
}

} // namespace mevo
