#pragma once

#include "device/DeviceReports.h"
#include "device/DeviceStatusStore.h"
#include "platform/Hid.h"
#include "platform/SystemServices.h"

#include <QThread>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>

struct MainState;

namespace mevo {

/// How the reader comes by the next report. bench/reader_pacing.cpp measures the two.
enum class ReaderPacing {
    Wait, ///< sleeps in the system until a report is there: no poll, and no delay of a key
    Poll, ///< asks, and pauses 200 microseconds when there is nothing
};

} // namespace mevo

/// Reads the receiver's input reports for the whole life of the link and turns them into signals.
/// The object belongs to the thread that made it; all connections of its signals must be queued, which
/// they are by themselves when the receivers live there. It touches no window: messages and timers are
/// asked for by signals.
///
/// A `char *` of the key signals points at a copy of the 16-byte report in a ring of 256 that lives as
/// long as the program, so it is good when the queued slot runs, even after this object is gone.
class GetHIDDataThread : public QThread
{
    Q_OBJECT

public:
    GetHIDDataThread(mevo::Hid &hid, mevo::Time &time, MainState &state,
                     mevo::ReaderPacing pacing = mevo::ReaderPacing::Wait, QObject *parent = nullptr);

    /// Disconnects every signal and ends the thread: asks it to stop, waits up to `milliseconds`, and
    /// only then terminates it, since it may hang in a read on a device that is gone. False when not
    /// even that helped; the object must then be left alone rather than deleted.
    bool StopReader(int milliseconds = 1000);

    /// Deals with a report that somebody else has read in the reader's pause, before the next one of its own.
    void takeOver(const mevo::InputReport &report);

    std::atomic<mevo::HidHandle> InputHandle{nullptr}; ///< set by the owner, after each opening too
    std::atomic<bool> StopRequested{false};            ///< counts together with requestInterruption()

signals:
    void returnHidKeyResult(char *report);
    void returnHidKeyResult2Trans(char *report);
    /// A report that the session, which is busy, does not get.
    void HidKeyRefused(char *report);
    void CallMainFunctionSignal(int iFuncIndex);
    void CallMicDlgFunctionSignal(int iFuncIndex);
    /// The key's function needs a network and there is none: tray message, 3000 ms.
    void OfflineWarning();
    /// Asks for TimeOutStopRecord() in 5000 ms.
    void StartStopRecordTimer();

public slots:
    /// Makes the session ready for a press again, without touching the recorder.
    void TimeOutStopRecord();

protected:
    void run() override;

private:
    enum class ReadResult { Report, Nothing, Failed, Paused };
    ReadResult nextReport(mevo::InputReport &report);
    ReadResult readReport(mevo::InputReport &report);
    void dispatch(const mevo::InputReport &report, mevo::BatteryCounter &battery);
    void pause(int milliseconds);

    mevo::Hid &m_hid;
    mevo::Time &m_time;
    MainState &m_state;
    const mevo::ReaderPacing m_pacing;
    std::deque<mevo::InputReport> m_takenOver;
    /// Of m_wake and m_takenOver; never held during a read, so termination cannot leave it locked.
    std::mutex m_mutex;
    std::condition_variable m_wake;
};
