#include "device/GetHIDDataThread.h"

#include "device/ReportDispatch.h"
#include "state/MainState.h"

#include <QDebug>

#include <algorithm>
#include <chrono>

namespace {

/// Bound of one wait on the handle: how late a stop or an identity read is noticed at most.
constexpr int kReadWaitMs = 20;
constexpr int kPollPauseUs = 200;
constexpr int kFailurePauseMs = 20;
constexpr int kIdentityPauseMs = 2;
constexpr int kDisconnectedPauseMs = 1000;

/// A copy of the report that stays valid after the reader is gone: queued calls outlive their sender.
/// Only one reader runs at a time, and a slot comes round again after 256 key reports, far more than
/// a person can leave waiting.
char *keepCopy(const mevo::InputReport &report)
{
    static std::array<std::array<char, 16>, 256> ring;
    static std::atomic<unsigned> next{0};
    std::array<char, 16> &slot = ring.at(next++ % ring.size());
    slot.fill(0);
    std::copy_n(report.begin(), 5,
                slot.begin()); // the last byte is the tip window's mark, not the receiver's
    return slot.data();
}

/// Says that the reader is at the handle. Set before DeviceIDBusy is looked at: whoever sets that flag
/// and then sees this one clear knows that the reader leaves the handle alone.
class ReadMark
{
public:
    explicit ReadMark(std::atomic<bool> &mark)
        : m_mark(mark)
    {
        m_mark = true;
    }
    ~ReadMark() { m_mark = false; }
    Q_DISABLE_COPY(ReadMark)

private:
    std::atomic<bool> &m_mark;
};

} // namespace

GetHIDDataThread::GetHIDDataThread(mevo::Hid &hid, mevo::Time &time, MainState &state,
                                   mevo::ReaderPacing pacing, QObject *parent)
    : QThread(parent)
    , m_hid(hid)
    , m_time(time)
    , m_state(state)
    , m_pacing(pacing)
{
    qRegisterMetaType<char *>("char*");
}

bool GetHIDDataThread::StopReader(int milliseconds)
{
    disconnect();
    requestInterruption();
    {
        const std::lock_guard lock(m_mutex);
        StopRequested = true;
        m_wake.notify_all();
    }
    quit();
    bool ended = wait(static_cast<unsigned long>(milliseconds));
    if (!ended) {
        qWarning("the device reader hangs in a read and is terminated");
        terminate();
        ended = wait(static_cast<unsigned long>(milliseconds));
    }
    m_state.ReaderInRead.exchange(false);
    return ended;
}

void GetHIDDataThread::TimeOutStopRecord()
{
    m_state.ResultIdle = true;
    m_state.QuickReleaseCount = 0;
    m_state.QuickReleaseRun = 0;
}

void GetHIDDataThread::run()
{
    mevo::BatteryCounter battery;
    while (!(isInterruptionRequested() && StopRequested)) {
        if (!m_state.DeviceConnected) {
            pause(kDisconnectedPauseMs);
            continue;
        }
        mevo::InputReport report{};
        switch (nextReport(report)) {
        case ReadResult::Report:
            dispatch(report, battery);
            break;
        case ReadResult::Nothing:
            if (m_pacing == mevo::ReaderPacing::Poll) {
                m_time.sleepUs(kPollPauseUs);
            }
            break;
        case ReadResult::Failed:
            pause(kFailurePauseMs);
            break;
        case ReadResult::Paused:
            pause(kIdentityPauseMs);
            break;
        }
    }
    m_state.ReaderInRead = false; // last of all: StopReader() takes it for the sign of the end
}

void GetHIDDataThread::takeOver(const mevo::InputReport &report)
{
    const std::lock_guard lock(m_mutex);
    m_takenOver.push_back(report);
}

GetHIDDataThread::ReadResult GetHIDDataThread::nextReport(mevo::InputReport &report)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_takenOver.empty()) {
            report = m_takenOver.front();
            m_takenOver.pop_front();
            return ReadResult::Report;
        }
    }
    return readReport(report);
}

GetHIDDataThread::ReadResult GetHIDDataThread::readReport(mevo::InputReport &report)
{
    const mevo::HidHandle handle = InputHandle;
    if (handle == nullptr) {
        return ReadResult::Failed;
    }
    const ReadMark mark(m_state.ReaderInRead);
    if (m_state.DeviceIDBusy) {
        return ReadResult::Paused;
    }
    const int length = m_pacing == mevo::ReaderPacing::Wait
                           ? m_hid.readTimeout(handle, report.data(), report.size(), kReadWaitMs)
                           : m_hid.read(handle, report.data(), report.size());
    if (length == 0) {
        return ReadResult::Nothing;
    }
    return length > 0 ? ReadResult::Report : ReadResult::Failed;
}

void GetHIDDataThread::dispatch(const mevo::InputReport &report, mevo::BatteryCounter &battery)
{
    using Kind = mevo::DispatchStep::Kind;
    for (const mevo::DispatchStep &step : mevo::dispatchKeyReport(report, mevo::DispatchFlags::of(m_state))) {
        switch (step.kind) {
        case Kind::MicDialogCall:
            emit CallMicDlgFunctionSignal(step.index);
            break;
        case Kind::MainCall:
            emit CallMainFunctionSignal(step.index);
            break;
        case Kind::OfflineWarning:
            emit OfflineWarning();
            break;
        case Kind::KeyToSession:
            emit returnHidKeyResult(keepCopy(report));
            break;
        case Kind::KeyToTranslation:
            emit returnHidKeyResult2Trans(keepCopy(report));
            break;
        case Kind::KeyRefused:
            emit HidKeyRefused(keepCopy(report));
            break;
        case Kind::StartStopRecordTimer:
            emit StartStopRecordTimer();
            break;
        }
    }
    if (const auto status = mevo::parseStatus(report)) {
        if (const auto call = mevo::storeStatus(*status, battery, m_state)) {
            emit CallMainFunctionSignal(*call);
        }
    }
}

void GetHIDDataThread::pause(int milliseconds)
{
    std::unique_lock lock(m_mutex);
    if (!StopRequested) {
        m_wake.wait_for(lock, std::chrono::milliseconds(milliseconds));
    }
}
