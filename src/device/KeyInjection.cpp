#include "device/KeyInjection.h"

#include <algorithm>
#include <chrono>

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
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_waiting.push_back(m_next);
    m_busy = true;
    return m_next++;
}

void KeyInjectionQueue::awaitTurn(Ticket ticket)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return m_waiting.empty() || m_waiting.front() == ticket; });
}

void KeyInjectionQueue::leave(Ticket ticket)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = std::find(m_waiting.begin(), m_waiting.end(), ticket);
    if (found == m_waiting.end()) {
        return;
    }
    m_waiting.erase(found);
    m_busy = !m_waiting.empty();
    m_changed.notify_all();
}

bool KeyInjectionQueue::waitIdle(int milliseconds)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                              [this] { return m_waiting.empty(); });
}

} // namespace mevo
