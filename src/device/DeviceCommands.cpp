#include "device/DeviceCommands.h"

#include "base/SettingsFile.h"
#include "device/ReceiverDiscovery.h"
#include "device/SendHWKeyThread.h"
#include "state/MainState.h"

#include <QDebug>

namespace reports = mevo::reports;

namespace {

constexpr int kIdentityDelayMs = 100;
constexpr int kIdentityTimeoutMs = 500;
constexpr int kReaderPauseLimitMs = 100;
constexpr int kInjectionEndLimitMs = 5000;

} // namespace

DeviceCommands::DeviceCommands(mevo::Platform &platform, MainState &state, mevo::DeviceLinkHooks hooks,
                               QObject *parent)
    : QObject(parent)
    , m_platform(platform)
    , m_state(state)
    , m_hooks(std::move(hooks))
    , m_injections(std::make_shared<mevo::KeyInjectionQueue>(state.HidBusy))
{
}

DeviceCommands::~DeviceCommands()
{
    if (!m_injections->waitIdle(kInjectionEndLimitMs)) {
        qWarning("a key injection is still under way");
    }
}

bool DeviceCommands::FindHidPath(quint16 vendor, quint16 product, quint16 usagePage, quint16 usage,
                                 QByteArray &pathOut)
{
    const mevo::FoundCollection found =
        mevo::findCollection(m_platform.hid->enumerate(vendor, product), {vendor, product, usagePage, usage});
    pathOut = found.path;
    if (found.secondReceiver) {
        qWarning("more than one receiver is connected");
        m_hooks.trayMessage(
            tr("您电脑已连接多个本公司产品，暂不能同时支持，请选择一款，在安装配套软件后使用！"),
            mevo::MessageIcon::Information, 5000);
        m_hooks.leaveProgram();
    }
    return !found.secondReceiver;
}

int DeviceCommands::OpenHidDevice()
{
    mevo::Hid &hid = *m_platform.hid;
    if (hid.init() == -1) {
        qWarning("the HID library does not start");
        m_state.HidInputHandle = nullptr;
        return -1;
    }
    m_state.DeviceConnected = true;

    QByteArray path;
    if (!FindHidPath(mevo::kReceiverVendor, mevo::kReceiverProduct, mevo::kDigitizerPage,
                     mevo::kReceiverUsage, path)) {
        return failOpening(-2);
    }
    const mevo::HidHandle input = path.isEmpty() ? nullptr : hid.openPath(path);
    if (input == nullptr) {
        return failOpening(-2);
    }
    hid.setNonBlocking(input, true);

    if (!FindHidPath(mevo::kReceiverVendor, mevo::kReceiverProduct, mevo::kVendorPage, mevo::kReceiverUsage,
                     path)) {
        return failOpening(-2);
    }
    if (path.isEmpty()) {
        return failOpening(-1);
    }
    const mevo::HidHandle command = hid.openPath(path);
    if (command == nullptr) {
        return failOpening(-3);
    }
    hid.setNonBlocking(command, false);

    m_state.HidInputHandle = input;
    m_state.HidCommandHandle = command;
    StartHeartbeat();
    return 0;
}

/// A half-open receiver is given back, else the next arrival would take it for open.
int DeviceCommands::failOpening(int result)
{
    m_platform.hid->exit();
    m_state.HidInputHandle = nullptr;
    m_state.HidCommandHandle = nullptr;
    qInfo("no receiver opened (%d)", result);
    return result;
}

void DeviceCommands::ReleaseHidDevice()
{
    StopHeartbeat();
    m_state.DeviceConnected = false;
    m_platform.hid->exit();
    m_state.HidInputHandle = nullptr;
    m_state.HidCommandHandle = nullptr;
}

void DeviceCommands::StartHeartbeat()
{
    StopHeartbeat();
    m_state.HeartbeatTimerId = m_hooks.startTimer(m_state.VoiceIntervalTime);
}

void DeviceCommands::StopHeartbeat()
{
    if (m_state.HeartbeatTimerId != 0) {
        m_hooks.killTimer(m_state.HeartbeatTimerId);
        m_state.HeartbeatTimerId = 0;
    }
}

void DeviceCommands::HeartbeatTimerEvent(int timerId)
{
    if (timerId == m_state.HeartbeatTimerId && m_state.DeviceConnected && !m_state.DeviceIDBusy) {
        SendHeartbeat();
    }
}

bool DeviceCommands::SendDeviceCommand(const mevo::FeatureReport &report)
{
    if (!m_state.DeviceConnected) {
        return false;
    }
    const mevo::HidHandle handle = m_state.HidCommandHandle;
    if (handle == nullptr) {
        return false; // regarded as present since the start, but never opened
    }
    m_platform.hid->setNonBlocking(handle, false);
    return m_platform.hid->sendFeatureReport(handle, report.data(), report.size()) >= 0;
}

bool DeviceCommands::SendKeyReport(int modifiers, int usage)
{
    const mevo::BriefInjection busy(*m_injections);
    return SendDeviceCommand(reports::keyDown(modifiers, usage));
}

void DeviceCommands::ReadDeviceIdentity()
{
    if (!m_state.DeviceConnected || m_state.DeviceIDBusy) {
        return;
    }
    StopHeartbeat();
    m_state.DeviceIDBusy = true;
    requestIdentity();
    StartHeartbeat();
    m_state.DeviceIDBusy = false;
}

/// The reply must not be read away by the reader, which notices the busy flag within its own wait.
void DeviceCommands::awaitReaderPause()
{
    for (int i = 0; i < kReaderPauseLimitMs && m_state.ReaderInRead; ++i) {
        m_platform.time->sleepMs(1);
    }
}

void DeviceCommands::requestIdentity()
{
    awaitReaderPause();
    if (!SendDeviceCommand(reports::identityRequest)) {
        return;
    }
    m_platform.time->sleepMs(kIdentityDelayMs);
    mevo::InputReport reply{};
    const mevo::HidHandle handle = m_state.HidInputHandle;
    if (m_platform.hid->readTimeout(handle, reply.data(), reply.size(), kIdentityTimeoutMs) < 1) {
        return;
    }
    qInfo("Get DongleID MEVOInput:GetHIDData :%02x %02x %02x %02x %02x %02x %02x %02x\n", reply[0], reply[1],
          reply[2], reply[3], reply[4], reply[5], reply[6], reply[7]);

    if (const auto identity = mevo::parseIdentity(reply)) {
        m_state.DongleID = identity->dongleId;
        m_state.DongleIDDecimal = identity->dongleIdDecimal;
        mevo::SettingsFile settings;
        settings.setValue(QStringLiteral("DongleID"), m_state.DongleID);
        settings.setValue(QStringLiteral("DongleIDDecimal"), m_state.DongleIDDecimal);
        tellZeroIdentity(*identity);
        return;
    }
    // A report that was under way when the reader paused comes first; the reply is the next one.
    reply = {};
    if (m_platform.hid->read(handle, reply.data(), reply.size()) > 0) {
        if (const auto identity = mevo::parseIdentity(reply)) {
            m_state.DongleID = identity->dongleId;
            tellZeroIdentity(*identity);
        }
    }
}

void DeviceCommands::tellZeroIdentity(const mevo::DeviceIdentity &identity)
{
    if (identity.dongleIdDecimal == QLatin1String(mevo::kZeroIdentityDecimal)) {
        m_hooks.trayMessage(tr("请尝试将设备接到到其它USB口再打开软件，如一直显示此信息，请与供货商联系(") +
                                identity.dongleIdDecimal + QLatin1Char(')'),
                            mevo::MessageIcon::Warning, 3000);
    }
}

bool DeviceCommands::SendHeartbeat()
{
    if (m_state.ASRFuncClosed || m_state.HidBusy || !m_state.DeviceConnected) {
        return false;
    }
    m_state.HeartbeatOK = false;
    const bool sent = SendDeviceCommand(reports::heartbeat);
    m_state.HeartbeatOK = sent;
    return sent;
}

bool DeviceCommands::RequestMouseID()
{
    return SendDeviceCommand(reports::mouseIdRequest);
}

bool DeviceCommands::ResetDeviceKeys()
{
    return SendDeviceCommand(reports::resetKeys);
}

bool DeviceCommands::DeviceGoodbye()
{
    return SendDeviceCommand(reports::goodbye);
}

bool DeviceCommands::MicLatchOn()
{
    return SendDeviceCommand(reports::latchOn);
}

bool DeviceCommands::MicLatchOff()
{
    return SendDeviceCommand(reports::latchOff);
}

bool DeviceCommands::SetMouseDPI(int dpi)
{
    return sendChecked(reports::dpi(dpi), "DPI", dpi);
}

bool DeviceCommands::SetMouseDataRate(int hertz)
{
    return sendChecked(reports::dataRate(hertz), "data rate", hertz);
}

bool DeviceCommands::SetMouseWheelSpeed(int speed)
{
    return sendChecked(reports::wheelSpeed(speed), "wheel speed", speed);
}

bool DeviceCommands::SetMouseKey(int index, int value)
{
    return sendChecked(reports::customKey(index, value), "custom key function", value);
}

bool DeviceCommands::sendChecked(const std::optional<mevo::FeatureReport> &report, const char *what,
                                 int value)
{
    if (!report) {
        qWarning("the device knows no %s of %d", what, value);
        return false;
    }
    return SendDeviceCommand(*report);
}

void DeviceCommands::SendHWKey(bool shift, bool ctrl, bool alt, bool win, bool consumerKey, int key)
{
    startInjection(mevo::KeyCombination{shift, ctrl, alt, win, consumerKey, key});
}

void DeviceCommands::SendImmediateKeys()
{
    startInjection(std::nullopt);
}

void DeviceCommands::startInjection(std::optional<mevo::KeyCombination> combination)
{
    if (!m_state.DeviceConnected) {
        return;
    }
    auto *thread = new SendHWKeyThread(m_platform, m_state, m_injections, combination);
    connect(thread, &SendHWKeyThread::HeartbeatWanted, this, &DeviceCommands::SendHeartbeat);
    connect(thread, &SendHWKeyThread::finished, thread, &QObject::deleteLater);
    thread->start(QThread::InheritPriority);
}
