#include "device/SendHWKeyThread.h"

#include "state/MainState.h"

#include <QDebug>
#include <QRandomGenerator>

namespace {

constexpr int kClipboardPolls = 101;
constexpr int kClipboardPollUs = 10;
constexpr int kPauseMs = 50;
constexpr int kPauseSpreadMs = 10; ///< pauses are 50 to 59 ms, as a person's would differ

} // namespace

SendHWKeyThread::SendHWKeyThread(mevo::Platform &platform, MainState &state,
                                 std::shared_ptr<mevo::KeyInjectionQueue> queue,
                                 std::optional<mevo::KeyCombination> combination, QObject *parent)
    : QThread(parent)
    , m_platform(platform)
    , m_state(state)
    , m_queue(std::move(queue))
    , m_combination(combination)
    , m_ticket(m_queue->join())
{
}

SendHWKeyThread::~SendHWKeyThread()
{
    m_queue->leave(m_ticket);
}

void SendHWKeyThread::run()
{
    const int delay = m_state.Asr2ScreenIntervalTime;
    if (m_combination && delay > 0) {
        m_platform.time->sleepMs(delay);
    }
    m_queue->awaitTurn(m_ticket);
    if (m_combination) {
        awaitClipboard();
        if (!type(mevo::planCombination(*m_combination))) {
            ++m_state.HidKeysLost;
            qWarning("Receiver: a key combination has not been taken");
        }
    }
    const bool typedKey = m_combination && !m_combination->consumerKey && m_combination->key != 0;
    if (!m_combination || (typedKey && m_state.VoiceImmediateSend)) {
        type(mevo::planSendKeys(selectedSendKeys()));
    }
    m_queue->leave(m_ticket);
    emit HeartbeatWanted();
}

/// The text to paste was placed just before; what is pasted must not be what stood there earlier.
void SendHWKeyThread::awaitClipboard()
{
    for (int i = 0; i < kClipboardPolls && !m_platform.clipboard->hasText(); ++i) {
        m_platform.time->sleepUs(kClipboardPollUs);
    }
}

bool SendHWKeyThread::type(const std::vector<mevo::InjectionStep> &steps)
{
    bool taken = true;
    for (const mevo::InjectionStep &step : steps) {
        taken = m_state.DeviceConnected &&
                m_platform.hid->sendFeatureReport(m_state.HidCommandHandle, step.report.data(),
                                                  step.report.size()) >= 0 &&
                taken;
        if (step.wait) {
            m_platform.time->sleepMs(kPauseMs + QRandomGenerator::global()->bounded(kPauseSpreadMs));
        }
    }
    return taken;
}

mevo::SendKeys SendHWKeyThread::selectedSendKeys() const
{
    mevo::SendKeys keys;
    keys.altS = m_state.VoiceImmediateSend_AltS;
    keys.enter = m_state.VoiceImmediateSend_Enter;
    keys.ctrlEnter = m_state.VoiceImmediateSend_CtrlEnter;
    return keys;
}
