#pragma once

#include "device/DeviceReports.h"
#include "platform/Hid.h"
#include "platform/SystemServices.h"

#include <functional>
#include <optional>

struct MainState;

namespace mevo {

/// One reading of the receiver's identity as a row of steps, none of which waits: whoever drives it decides
/// how the time between them is spent. The reader thread pauses while it lives, and the receiver must stay
/// open.
class IdentityRead
{
public:
    /// Sends one report; false when it did not go.
    using Send = std::function<bool(const FeatureReport &report)>;

    /// Gets the reports that came instead of the answer, a key's for instance, in their order.
    using Other = std::function<void(const InputReport &report)>;

    /// All must outlive this object.
    IdentityRead(Hid &hid, const Time &time, MainState &state, Send send, Other other);
    ~IdentityRead();
    IdentityRead(const IdentityRead &) = delete;
    IdentityRead &operator=(const IdentityRead &) = delete;

    /// Takes a step. How many milliseconds later the next one is due; nothing when the reading is over.
    std::optional<int> step();
    /// What the receiver answered: with the first report that came, or only with the second.
    const std::optional<DeviceIdentity> &identity() const { return m_identity; }
    bool cameFirst() const { return m_cameFirst; }

private:
    enum class Phase { ReaderPauses, Request, Reply };
    std::optional<int> awaitReader();
    std::optional<int> request();
    std::optional<int> takeReply();
    void take(const InputReport &first);

    Hid &m_hid;
    const Time &m_time;
    MainState &m_state;
    Send m_send;
    Other m_other;
    HidHandle m_handle;
    Phase m_phase = Phase::ReaderPauses;
    int m_readerWaits = 0;
    qint64 m_deadlineMs = 0;
    std::optional<DeviceIdentity> m_identity;
    bool m_cameFirst = true;
};

} // namespace mevo
