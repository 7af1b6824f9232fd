#include "device/IdentityRead.h"

#include "state/MainState.h"

#include <QDebug>

namespace mevo {

namespace {

constexpr int kReaderPauseLimitMs = 100;
constexpr int kReplyDelayMs = 100;
constexpr int kReplyTimeoutMs = 500;
constexpr int kReplyLookMs = 5;

} // namespace

IdentityRead::IdentityRead(Hid &hid, const Time &time, MainState &state, Send send, Other other)
    : m_hid(hid)
    , m_time(time)
    , m_state(state)
    , m_send(std::move(send))
    , m_other(std::move(other))
    , m_handle(state.HidInputHandle)
{
    m_state.DeviceIDBusy = true;
}

IdentityRead::~IdentityRead()
{
    m_state.DeviceIDBusy = false;
}

std::optional<int> IdentityRead::step()
{
    switch (m_phase) {
    case Phase::ReaderPauses:
        return awaitReader();
    case Phase::Request:
        return request();
    case Phase::Reply:
        return takeReply();
    }
    return std::nullopt;
}

/// The reply must not be read away by the reader, which notices the busy flag within its own wait.
std::optional<int> IdentityRead::awaitReader()
{
    if (m_state.ReaderInRead && m_readerWaits++ < kReaderPauseLimitMs) {
        return 1;
    }
    m_phase = Phase::Request;
    return request();
}

std::optional<int> IdentityRead::request()
{
    if (!m_send(reports::identityRequest)) {
        return std::nullopt;
    }
    m_deadlineMs = m_time.monotonicMs() + kReplyDelayMs + kReplyTimeoutMs;
    m_phase = Phase::Reply;
    return kReplyDelayMs;
}

std::optional<int> IdentityRead::takeReply()
{
    InputReport reply{};
    const int length = m_hid.readTimeout(m_handle, reply.data(), reply.size(), 0);
    if (length > 0) {
        take(reply);
        return std::nullopt;
    }
    const bool late = m_time.monotonicMs() >= m_deadlineMs;
    return length < 0 || late ? std::nullopt : std::optional<int>(kReplyLookMs);
}

void IdentityRead::take(const InputReport &first)
{
    qInfo("Get DongleID MEVOInput:GetHIDData :%02x %02x %02x %02x %02x %02x %02x %02x\n", first[0], first[1],
          first[2], first[3], first[4], first[5], first[6], first[7]);
    m_identity = parseIdentity(first);
    m_cameFirst = m_identity.has_value();
    if (!m_identity) {
        // A report that was under way when the reader paused comes first; the reply is the next one.
        m_other(first);
        InputReport second{};
        if (m_hid.read(m_handle, second.data(), second.size()) > 0) {
            m_identity = parseIdentity(second);
            if (!m_identity) {
                m_other(second);
            }
        }
    }
}

} // namespace mevo
