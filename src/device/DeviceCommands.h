#pragma once

#include "device/DeviceReports.h"
#include "device/KeyInjection.h"
#include "platform/Platform.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

struct MainState;

namespace mevo {

class IdentityRead;

/// What the device link needs of the main window.
struct DeviceLinkHooks
{
    /// Starts a coarse repeating timer of so many milliseconds and answers its id.
    std::function<int(int milliseconds)> startTimer;
    std::function<void(int timerId)> killTimer;
    /// Shows a tray message without title, where a tray icon exists.
    std::function<void(const QString &text, MessageIcon icon, int milliseconds)> trayMessage;
    /// Leaves the program; asked for when a second receiver is found.
    std::function<void()> leaveProgram;
    /// Takes a report that was not for the reading of the identity, during which the reader pauses.
    std::function<void(const InputReport &report)> otherReport = [](const InputReport &) {};
};

} // namespace mevo

/// Everything that the program asks of the receiver: opening and releasing it, its identity, its
/// feature reports and the typing of keys. Lives on the GUI thread. Sends do nothing and answer false
/// unless the device is connected; a send that fails answers false.
class DeviceCommands : public QObject
{
    Q_OBJECT

public:
    DeviceCommands(mevo::Platform &platform, MainState &state, mevo::DeviceLinkHooks hooks,
                   QObject *parent = nullptr);
    /// Waits for the injections that are still under way.
    ~DeviceCommands() override;

    /// Finds a collection of the devices that are plugged in (a filter of 0 matches anything) and fills
    /// `pathOut`, empty when none matches. At a second receiver it says so, leaves the program and
    /// answers false.
    bool FindHidPath(quint16 vendor, quint16 product, quint16 usagePage, quint16 usage, QByteArray &pathOut);

    /// Opens both collections and starts the heartbeat. 0; -1 when the HID library or the vendor
    /// collection is missing, -2 when the digitizer collection is missing or does not open (or the
    /// program leaves because of a second receiver), -3 when the vendor collection does not open. After
    /// a failure both handles are null, so that the next arrival can try again.
    int OpenHidDevice();
    /// The path of the collection that was there and did not open the last time; empty for none.
    const QByteArray &unopenedPath() const { return m_unopenedPath; }
    /// Ends the heartbeat and a reading of the identity, closes both handles and regards the device as
    /// absent. The reader must have been stopped.
    void ReleaseHidDevice();

    void StartHeartbeat(); ///< or starts it anew, with the interval of VoiceIntervalTime
    void StopHeartbeat();
    /// To be called from the owner's timerEvent: sends the heartbeat when the timer is its own.
    void HeartbeatTimerEvent(int timerId);

    /// Sends 8 bytes.
    bool SendDeviceCommand(const mevo::FeatureReport &report);
    /// Presses a key of the receiver's keyboard, or lets go with 0; HidBusy is set meanwhile.
    bool SendKeyReport(int modifiers, int usage);

    /// Reads the identity into DongleID and DongleIDDecimal and stores both. Blocks for 100 ms to 620 ms,
    /// during which the reader pauses. On any failure the two stay as they were.
    void ReadDeviceIdentity();
    /// The same without blocking: up to `attempts` times, `pauseMs` apart, until there is a DongleID or
    /// `wanted` answers false. Then calls `done`, which may be before this returns.
    void ReadDeviceIdentity(int attempts, int pauseMs, std::function<bool()> wanted,
                            std::function<void()> done);
    /// Ends a reading that is under way; its `done` is not called.
    void StopIdentityRead();
    /// Tells the receiver that the program is there. Not while voice input is closed or a key is typed.
    bool SendHeartbeat();
    bool RequestMouseID();
    bool ResetDeviceKeys();
    bool DeviceGoodbye();
    bool MicLatchOn();
    bool MicLatchOff();
    bool SetMouseDPI(int dpi);              ///< 800, 1600 or 2400
    bool SetMouseDataRate(int hertz);       ///< 125, 250 or 500
    bool SetMouseWheelSpeed(int speed);     ///< 0, 1 or 2
    bool SetMouseKey(int index, int value); ///< index 1 left, 2 right

    /// Types one combination through the receiver in the background; `key` is a HID usage.
    void SendHWKey(bool shift, bool ctrl, bool alt, bool win, bool consumerKey, int key);
    /// Types the send keys that the settings select, in the background.
    void SendImmediateKeys();

private:
    bool sendChecked(const std::optional<mevo::FeatureReport> &report, const char *what, int value);
    bool beginIdentityRead();
    void endIdentityRead();
    void attemptIdentity();
    void stepIdentity();
    void endIdentityAttempt();
    void continueIdentity(int milliseconds, void (DeviceCommands::*next)());
    void tellZeroIdentity(const mevo::DeviceIdentity &identity);
    int failOpening(int result);
    void startInjection(std::optional<mevo::KeyCombination> combination);

    mevo::Platform &m_platform;
    MainState &m_state;
    const mevo::DeviceLinkHooks m_hooks;
    std::shared_ptr<mevo::KeyInjectionQueue> m_injections;

    struct IdentityOrder
    {
        int attempts = 0; ///< still to come, the one under way counted
        int pauseMs = 0;
        std::function<bool()> wanted;
        std::function<void()> done;
    };
    std::unique_ptr<mevo::IdentityRead> m_identityRead; ///< the attempt under way
    IdentityOrder m_identityOrder;
    QByteArray m_unopenedPath;
    int m_identityRun = 0; ///< tells the calls of a reading that was stopped from those of the present one
};
