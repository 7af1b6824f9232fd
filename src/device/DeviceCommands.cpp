#include "device/DeviceCommands.h"

#include "base/SettingsFile.h"
#include "device/IdentityRead.h"
#include "device/ReceiverDiscovery.h"
#include "device/SendHWKeyThread.h"
#include "state/MainState.h"

#include <QDebug>

namespace reports = mevo::reports;

namespace {

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
    m_unopenedPath.clear();
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
        m_unopenedPath = path;
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
        m_unopenedPath = path;
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
    StopIdentityRead();
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
    if (!beginIdentityRead()) {
        return;
    }
    while (const std::optional<int> pause = m_identityRead->step()) {
        m_platform.time->sleepMs(*pause);
    }
    endIdentityRead();
}

void DeviceCommands::ReadDeviceIdentity(int attempts, int pauseMs, std::function<bool()> wanted,
                                        std::function<void()> done)
{
    StopIdentityRead();
    m_identityOrder = {attempts, pauseMs, std::move(wanted), std::move(done)};
    attemptIdentity();
}

void DeviceCommands::StopIdentityRead()
{
    ++m_identityRun;
    m_identityRead.reset();
    m_identityOrder = {};
}

bool DeviceCommands::beginIdentityRead()
{
    if (!m_state.deviceOpen() || m_state.DeviceIDBusy) {
        return false;
    }
    StopHeartbeat();
    m_identityRead = std::make_unique<mevo::IdentityRead>(
        *m_platform.hid, *m_platform.time, m_state,
        [this](const mevo::FeatureReport &report) { return SendDeviceCommand(report); }, m_hooks.otherReport);
    return true;
}

void DeviceCommands::endIdentityRead()
{
    if (const auto &identity = m_identityRead->identity()) {
        m_state.DongleID = identity->dongleId;
        if (m_identityRead->cameFirst()) {
            m_state.DongleIDDecimal = identity->dongleIdDecimal;
            mevo::SettingsFile settings;
            settings.setValue(QStringLiteral("DongleID"), m_state.DongleID);
            settings.setValue(QStringLiteral("DongleIDDecimal"), m_state.DongleIDDecimal);
        }
        tellZeroIdentity(*identity);
    }
    StartHeartbeat();
    m_identityRead.reset();
}

void DeviceCommands::attemptIdentity()
{
    beginIdentityRead() ? stepIdentity() : endIdentityAttempt();
}

void DeviceCommands::stepIdentity()
{
    const std::optional<int> pause = m_identityOrder.wanted() ? m_identityRead->step() : std::optional<int>();
    if (pause) {
        continueIdentity(*pause, &DeviceCommands::stepIdentity);
        return;
    }
    endIdentityRead();
    endIdentityAttempt();
}

void DeviceCommands::endIdentityAttempt()
{
    if (--m_identityOrder.attempts > 0 && m_state.DongleID.isEmpty() && m_identityOrder.wanted()) {
        continueIdentity(m_identityOrder.pauseMs, &DeviceCommands::attemptIdentity);
        return;
    }
    const std::function<void()> done = std::move(m_identityOrder.done);
    m_identityOrder = {};
    done();
}

void DeviceCommands::continueIdentity(int milliseconds, void (DeviceCommands::*next)())
{
    m_platform.time->callAfter(milliseconds, this, [this, next, run = m_identityRun] {
        if (run == m_identityRun) {
            (this->*next)();
        }
    });
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
