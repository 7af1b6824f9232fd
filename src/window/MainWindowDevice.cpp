// The receiver's arrival, its removal, and what the window does for the reader thread.

#include "window/MainWindow.h"

#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "device/DeviceReports.h"
#include "device/GetHIDDataThread.h"
#include "device/ReceiverDiscovery.h"
#include "service/isOnl.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"

#include <QCoreApplication>
#include <QDebug>
#include <QTimer>

#include <cstdlib>

namespace {
constexpr int arrivalIdentityRetries = 51;
constexpr int arrivalRetryPauseMs = 50;
} // namespace

void MainWindow::openDeviceAtStart()
{
    mevo::DeviceLinkHooks hooks;
    hooks.startTimer = [this](int milliseconds) { return startTimer(milliseconds, Qt::CoarseTimer); };
    hooks.killTimer = [this](int timerId) { killTimer(timerId); };
    hooks.trayMessage = [this](const QString &text, mevo::MessageIcon icon, int milliseconds) {
        message(text, icon, milliseconds);
    };
    hooks.leaveProgram = [this] {
        m_leaving = true;
        QTimer::singleShot(0, this, &MainWindow::exitByItself);
    };
    m_device = std::make_unique<DeviceCommands>(m_platform, *this, hooks);

    const int result = m_device->OpenHidDevice();
    if (result != 0) {
        qInfo() << "Receiver: not opened at start, result" << result;
    }
    DeviceConnected = true; // until a removal says otherwise
    createReader();
}

void MainWindow::createReader()
{
    m_reader = new GetHIDDataThread(*m_platform.hid, *m_platform.time, *this);
    connect(m_reader, &GetHIDDataThread::returnHidKeyResult, this, &MainWindow::ProcessResult);
    connect(m_reader, &GetHIDDataThread::CallMainFunctionSignal, this, &MainWindow::CallMainFunctionSlot);
    connect(m_reader, &GetHIDDataThread::OfflineWarning, this, [this] {
        message(tr("未连接外部网络，该功能无法实现！"), mevo::MessageIcon::Information, 3000);
    });
    connect(m_reader, &GetHIDDataThread::StartStopRecordTimer, this,
            [this] { QTimer::singleShot(5000, m_reader, &GetHIDDataThread::TimeOutStopRecord); });
    if (m_micTip != nullptr) {
        connect(m_reader, &GetHIDDataThread::CallMicDlgFunctionSignal, m_micTip,
                &MicTipDialog::CallMicDlgFunctionSlot);
    }
    m_reader->InputHandle = HidInputHandle.load();
    m_reader->start(QThread::InheritPriority);
}

void MainWindow::stopReader()
{
    if (m_reader == nullptr) {
        return;
    }
    m_reader->disconnect();
    if (m_reader->StopReader()) {
        delete m_reader;
    } else {
        qWarning() << "Receiver: the reader hangs and is left behind";
    }
    m_reader = nullptr;
}

void MainWindow::introduceDevice()
{
    if (deviceOpen()) {
        constexpr int retries = 11;
        m_device->ReadDeviceIdentity();
        for (int i = 0; i < retries && DongleID.isEmpty(); ++i) {
            m_device->ReadDeviceIdentity();
        }
    }
    introduceProduct();
    if (!IsOnline) {
        setTrayPicture(QStringLiteral(":/rec/ORNoNetwork.png"));
        message(tr("未连接外部网络"), mevo::MessageIcon::Warning, 3000);
        hide();
    }
}

/// At the start, and again when the network comes only later: it brings the accounts and the talk button.
void MainWindow::introduceProduct()
{
    if (!m_productRead && ReadProductRecord()) {
        NoDeviceMode = NoDeviceMode || ClickCanASR;
    }
    if (!deviceOpen() && NoDeviceMode) {
        DongleID = QLatin1String(mevo::kNoDeviceIdentity);
    }
}

void MainWindow::timerEvent(QTimerEvent *event)
{
    if (m_device) {
        m_device->HeartbeatTimerEvent(event->timerId());
    }
    QMainWindow::timerEvent(event);
}

void MainWindow::HandleDeviceChange(mevo::DeviceNotifier::Change change, const QString &name)
{
    if (ExitInProgress) {
        return;
    }
    if (change == mevo::DeviceNotifier::Change::Arrival) {
        if (mevo::isReceiverName(name)) {
            deviceArrived();
        }
        return;
    }
    closeInputMethodWindow(); // for whatever was removed: the input method types through the receiver
    if (mevo::isReceiverName(name)) {
        deviceRemoved();
    }
}

void MainWindow::closeInputMethodWindow()
{
    if (!ThirdPartyWindowOpen || XFVM3) {
        return;
    }
    const mevo::WindowId window = m_sessionHands.findInputMethodWindow();
    if (window != 0) {
        m_platform.windowSystem->closeWindow(window);
    }
}

void MainWindow::deviceArrived()
{
    setTrayPicture(QStringLiteral(":/rec/ORDeviceConnect.png"));
    if (HidInputHandle != nullptr) {
        if (DeviceConnected) {
            m_device->ResetDeviceKeys();
        }
        return;
    }
    if (m_device->OpenHidDevice() == 0) {
        DeviceConnected = true;
        if (m_reader == nullptr) {
            createReader();
        }
        m_reader->InputHandle = HidInputHandle.load();
    }
    if (m_leaving) {
        return;
    }
    m_online->GetInternetConnectState();
    ProbeBackend();
    if (hasTornDown()) {
        return; // the wait for the backend has let an exit through
    }
    placeBarAtArrival();
    show();

    DongleID.clear();
    m_device->ReadDeviceIdentity();
    for (int i = 0; i < arrivalIdentityRetries && DongleID.isEmpty() && deviceOpen(); ++i) {
        m_platform.time->sleepMs(arrivalRetryPauseMs);
        m_device->ReadDeviceIdentity();
    }
    if (m_leaving) {
        return;
    }
    if (DongleID.isEmpty()) {
        mevo::ask(this, {tr("错误"), tr("请确认插上设备后再重启运行!"), {tr("确定")}, true});
        exitByItself();
        return;
    }
    if (ReadProductRecord()) {
        QTimer::singleShot(1000, this, &MainWindow::DownloadBaiduINIFileTimeout);
    } else if (!hasTornDown()) {
        ReadServerInfo();
    }
    if (hasTornDown()) {
        return;
    }
    restartKeypadSibling();
    m_device->StartHeartbeat();
    if (DeviceConnected) {
        m_device->ResetDeviceKeys();
        m_device->ResetDeviceKeys();
    }
}

void MainWindow::restartKeypadSibling()
{
    const QString keypad = QStringLiteral("\\KeypadHost.exe");
    if (m_platform.processes->startSibling(keypad, {QStringLiteral("ORVKBAppExit")}, false)) {
        m_platform.time->sleepMs(1000);
    }
    m_platform.processes->startSibling(keypad, {QStringLiteral("ORVKBAppHide")}, true);
}

void MainWindow::deviceRemoved()
{
    DongleID.clear();
    setTrayPicture(QStringLiteral(":/rec/ORDeviceDisConnect.png"));
    if (DeviceConnected) {
        m_platform.processes->startSibling(QStringLiteral("\\KeypadHost.exe"),
                                           {QStringLiteral("ORVKBAppHide")}, true);
        m_device->DeviceGoodbye();
        m_device->StopHeartbeat();
        stopReader();
        m_device->ReleaseHidDevice();
        if (!MouseSession) {
            endRunningSession(); // the key that was held can no longer come up
        }
    }
    hide();
}
