#include "receiver/VirtualReceiver.h"

#include "receiver/WaitUntil.h"

#include <cerrno>

namespace mevo::lab {

namespace {

constexpr int tickMs = 50;

qint64 systemMs()
{
    return monotonicNs() / 1000000;
}

} // namespace

VirtualReceiver::VirtualReceiver(TestBed &bed, KeyboardPort *keyboard, int usbPort, QObject *parent)
    : QObject(parent)
    , m_nowMs(systemMs)
    , m_keyboard(keyboard)
    , m_node(bed, DeviceTree(usbPort, usbPort + 1),
             [this](const QByteArray &report) { return takeFeature(report); })
{
    m_tick.setInterval(tickMs);
    connect(&m_tick, &QTimer::timeout, this, &VirtualReceiver::tick);
}

VirtualReceiver::~VirtualReceiver()
{
    unplug();
}

bool VirtualReceiver::plug()
{
    if (m_node.plugged())
        return false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        deliver(m_firmware.powerOn(m_nowMs()));
    }
    if (!m_node.plug())
        return false;
    m_tick.start();
    return true;
}

bool VirtualReceiver::unplug()
{
    m_tick.stop();
    return m_node.unplug(HidrawNode::Announce::Uevents);
}

bool VirtualReceiver::vanish()
{
    m_tick.stop();
    return m_node.unplug(HidrawNode::Announce::Nothing);
}

VirtualReceiver::KeyFate VirtualReceiver::fateOf(const ReceiverFirmware::Outcome &outcome)
{
    return deliver(outcome) ? KeyFate::Sent : KeyFate::Silent;
}

VirtualReceiver::KeyFate VirtualReceiver::key(int number, bool pressed)
{
    if (!plugged())
        return KeyFate::Unplugged;
    const std::lock_guard<std::mutex> lock(m_mutex);
    return fateOf(m_firmware.key(number, pressed, m_nowMs()));
}

VirtualReceiver::KeyFate VirtualReceiver::customKey(CustomKey which, bool pressed)
{
    if (!plugged())
        return KeyFate::Unplugged;
    const std::lock_guard<std::mutex> lock(m_mutex);
    return fateOf(m_firmware.customKey(which, pressed, m_nowMs()));
}

bool VirtualReceiver::sendStatus()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    ReceiverFirmware::Outcome outcome;
    outcome.reports.push_back(m_firmware.statusReport());
    return plugged() && deliver(outcome);
}

bool VirtualReceiver::sendRaw(const QByteArray &report)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    ReceiverFirmware::Outcome outcome;
    outcome.reports.push_back(report);
    return plugged() && deliver(outcome);
}

void VirtualReceiver::setClock(std::function<qint64()> nowMs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nowMs = std::move(nowMs);
}

void VirtualReceiver::configure(const std::function<void(ReceiverFirmware &)> &change)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    change(m_firmware);
}

bool VirtualReceiver::voiceKeysSilent() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_firmware.voiceKeysSilent(m_nowMs());
}

void VirtualReceiver::refuse(const QByteArray &prefix)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_refusing = true;
    m_refusedPrefix = prefix;
}

void VirtualReceiver::accept()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_refusing = false;
}

void VirtualReceiver::setTyping(bool on)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_typing = on;
}

bool VirtualReceiver::waitForFeature(const QByteArray &prefix, std::size_t first, int timeoutMs) const
{
    return waitUntil([&] { return m_log.hasFeature(prefix, first); }, timeoutMs);
}

int VirtualReceiver::takeFeature(const QByteArray &report)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    LoggedReport entry{monotonicNs(), LoggedReport::Feature, report, true, true};
    ReceiverFirmware::Outcome outcome;
    if (m_refusing && report.startsWith(m_refusedPrefix))
        outcome.accepted = false;
    else
        outcome = m_firmware.feature(report, m_nowMs());
    entry.accepted = outcome.accepted;
    entry.known = outcome.known;
    m_log.add(entry);
    deliver(outcome);
    return outcome.accepted ? 0 : -EPIPE;
}

bool VirtualReceiver::deliver(const ReceiverFirmware::Outcome &outcome)
{
    for (const QByteArray &report : outcome.reports) {
        // Noted first: a quick program's answer must not stand before its cause.
        m_log.add({monotonicNs(), LoggedReport::Input, report, true, true});
        m_node.push(report);
    }
    if (m_keyboard && m_typing) {
        if (outcome.keyboard)
            m_keyboard->apply(*outcome.keyboard);
        if (outcome.wheelSteps != 0)
            m_keyboard->turnWheel(outcome.wheelSteps);
    }
    return !outcome.reports.empty() || outcome.keyboard || outcome.wheelSteps != 0;
}

void VirtualReceiver::tick()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    deliver(m_firmware.tick(m_nowMs()));
}

} // namespace mevo::lab
