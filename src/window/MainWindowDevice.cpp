// The receiver's arrival, its removal, and what the window does for the reader thread.

#include "window/MainWindow.h"

#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "device/DeviceReports.h"
#include "device/GetHIDDataThread.h"
#include "device/ReceiverDiscovery.h"
#include "device/ReportDispatch.h"
#include "engines/Allowance.h"
#include "service/isOnl.h"
#include "session/KeyReport.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"
#include "window/FirstStartHands.h"
#include "window/InputMethods.h"
#include "window/SettingsHands.h"

#include <QCoreApplication>
#include <QDebug>
#include <QTimer>

#include <cstdlib>

namespace {
constexpr int startIdentityRetries = 11;
constexpr int arrivalIdentityRetries = 51;
constexpr int arrivalRetryPauseMs = 50;
constexpr int keypadPauseMs = 1000;
const QString keypadSibling = QStringLiteral("\\KeypadHost.exe");
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
        m_exit.announce();
        QTimer::singleShot(0, this, &MainWindow::exitByItself);
    };
    hooks.otherReport = [this](const mevo::InputReport &report) {
        if (m_reader != nullptr) {
            m_reader->takeOver(report);
        }
    };
    m_device = std::make_unique<DeviceCommands>(m_platform, *this, hooks);

    // Heard from before the opening on, so that no change falls between the two, and taken after the start.
    m_changes.hold();
    m_platform.deviceNotifier->start([this](mevo::DeviceNotifier::Change change, const QString &name) {
        HandleDeviceChange(change, name);
    });
    const int result = m_device->OpenHidDevice();
    if (result != 0) {
        qInfo() << "Receiver: not opened at start, result" << result;
        m_firstStart->receiverNotOpened(m_device->unopenedPath());
    }
    DeviceConnected = true; // until a removal says otherwise
    createReader();
}

void MainWindow::createReader()
{
    m_reader = new GetHIDDataThread(*m_platform.hid, *m_platform.time, *this);
    m_readerEar = new QObject(this);
    connect(m_reader, &GetHIDDataThread::returnHidKeyResult, m_readerEar, [this](char *report) {
        if (InitDone) { // before, there is nothing that could record
            enterModeOfKey(report);
            ProcessResult(report);
        }
    });
    connect(m_reader, &GetHIDDataThread::returnHidKeyResult2Trans, m_readerEar,
            [this](char *report) { m_translationHands.keyPressed(report); });
    connect(m_reader, &GetHIDDataThread::HidKeyRefused, m_readerEar,
            [this](char *report) { m_session.refuse(report); });
    connect(m_reader, &GetHIDDataThread::CallMainFunctionSignal, m_readerEar,
            [this](int index) { CallMainFunctionSlot(index); });
    connect(m_reader, &GetHIDDataThread::CallMicDlgFunctionSignal, m_readerEar, [this](int index) {
        if (m_micTip != nullptr) {
            m_micTip->CallMicDlgFunctionSlot(index);
        }
    });
    connect(m_reader, &GetHIDDataThread::OfflineWarning, m_readerEar, [this] {
        message(tr("未连接外部网络，该功能无法实现！"), mevo::MessageIcon::Information, 3000);
    });
    connect(m_reader, &GetHIDDataThread::StartStopRecordTimer, m_readerEar,
            [reader = m_reader] { QTimer::singleShot(5000, reader, &GetHIDDataThread::TimeOutStopRecord); });
    m_reader->InputHandle = HidInputHandle.load();
    m_reader->start(QThread::InheritPriority);
}

/// The reader has asked for the key's mode by what it saw then; keys that were waiting before this one may
/// have changed the mode since.
void MainWindow::enterModeOfKey(const char *report)
{
    const auto key = mevo::parseKeyReport(report);
    if (key && (key->key == mevo::KeyVoice || key->key == mevo::KeyVoiceTyping) && !VoiceTypeMode &&
        m_micTip != nullptr) {
        m_micTip->CallMicDlgFunctionSlot(mevo::KeyVoice);
        // Later: it may wait for the backend, and the key must be taken first.
        QTimer::singleShot(0, this, [this] { CallMainFunctionSlot(mevo::ReloadEngineChoice); });
    }
}

void MainWindow::stopReader()
{
    if (m_reader == nullptr) {
        return;
    }
    const bool ended = m_reader->StopReader();
    // A press that is still on its way would begin a session that no release ends. The ear itself may be
    // hearing at this very moment.
    QCoreApplication::removePostedEvents(m_readerEar, QEvent::MetaCall);
    m_readerEar->deleteLater();
    m_readerEar = nullptr;
    if (ended) {
        delete m_reader;
    } else {
        qWarning() << "Receiver: the reader hangs and is left behind";
    }
    m_reader = nullptr;
}

void MainWindow::introduceDevice()
{
    if (deviceOpen()) {
        readIdentityAtStart();
    }
    startStep(&MainWindow::introduceProduct);
    if (!IsOnline) {
        setTrayPicture(QStringLiteral(":/rec/ORNoNetwork.png"));
        message(tr("未连接外部网络"), mevo::MessageIcon::Warning, 3000);
        hide();
    }
}

void MainWindow::readIdentityAtStart()
{
    bool over = false;
    m_device->ReadDeviceIdentity(
        1 + startIdentityRetries, 0, [this] { return arrivalGoesOn(); }, [&over] { over = true; });
    while (!over) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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
    if (isLeaving()) {
        return;
    }
    if (change == mevo::DeviceNotifier::Change::Removal) {
        m_inputMethods->leaveWithoutKeys(); // for whatever was removed: the input method types through the
                                            // receiver
    }
    if (mevo::isReceiverName(name)) {
        m_changes.add(change);
        scheduleDeviceChanges();
    }
}

/// Not at once: what has been overtaken by the next change of the same moment need not begin.
void MainWindow::scheduleDeviceChanges()
{
    QMetaObject::invokeMethod(this, &MainWindow::takeDeviceChange, Qt::QueuedConnection);
}

void MainWindow::takeDeviceChange()
{
    const auto change = m_changes.take();
    if (!change) {
        return;
    }
    *change == mevo::DeviceNotifier::Change::Arrival ? deviceArrived() : deviceRemoved();
}

void MainWindow::endDeviceChange()
{
    m_changes.release();
    scheduleDeviceChanges();
}

void MainWindow::deviceArrived()
{
    setTrayPicture(QStringLiteral(":/rec/ORDeviceConnect.png"));
    if (HidInputHandle != nullptr) {
        if (DeviceConnected && !m_device->ResetDeviceKeys()) {
            // Its removal was never heard of: what is open leads nowhere.
            qWarning() << "Receiver: the open one does not answer and is opened anew";
            m_changes.add(mevo::DeviceChanges::Change::Removal);
            m_changes.add(mevo::DeviceChanges::Change::Arrival);
        }
        endDeviceChange();
        return;
    }
    ++m_link;
    DongleID.clear(); // of the program without a receiver, or of one whose removal was not heard of
    dayCounts.receiverLeft();
    if (m_device->OpenHidDevice() == 0) {
        DeviceConnected = true;
        if (m_reader == nullptr) {
            createReader();
        }
        m_reader->InputHandle = HidInputHandle.load();
    } else {
        m_firstStart->receiverNotOpened(m_device->unopenedPath());
    }
    if (arrivalGoesOn()) {
        m_online->GetInternetConnectState();
        ProbeBackend();
    }
    if (!arrivalGoesOn()) { // the wait for the backend has let a removal or an exit through
        endDeviceChange();
        return;
    }
    placeBarAtArrival();
    show();

    DongleID.clear();
    m_device->ReadDeviceIdentity(
        1 + arrivalIdentityRetries, arrivalRetryPauseMs, [this] { return arrivalGoesOn(); },
        [this] { deviceIdentified(); });
}

void MainWindow::deviceIdentified()
{
    if (arrivalGoesOn() && DongleID.isEmpty()) {
        endMouseSession();
        mevo::ask(this, {tr("错误"), tr("请确认插上设备后再重启运行!"), {tr("确定")}, true});
        exitByItself();
        return;
    }
    if (arrivalGoesOn()) {
        dayCounts.follow();
        mevo::unmarkAllowances(*this); // the marks may be of another receiver
        if (ReadProductRecord()) {
            QTimer::singleShot(1000, this, &MainWindow::DownloadBaiduINIFileTimeout);
        } else if (arrivalGoesOn()) {
            ReadServerInfo();
        }
    }
    if (arrivalGoesOn()) {
        settleFirstArrival();
    }
    if (arrivalGoesOn()) {
        restartKeypadSibling();
    }
    endDeviceChange();
}

/// The keyboard is ended and, a second later, started anew; the last steps of the arrival come after that.
void MainWindow::restartKeypadSibling()
{
    m_platform.processes->startSibling(keypadSibling, {QStringLiteral("ORVKBAppExit")}, false);
    m_platform.time->callAfter(keypadPauseMs, this, [this, link = m_link] {
        if (link == m_link && !isLeaving()) {
            finishArrival();
        }
    });
}

void MainWindow::finishArrival()
{
    m_platform.processes->startSibling(keypadSibling, {QStringLiteral("ORVKBAppHide")}, true);
    m_device->StartHeartbeat();
    if (DeviceConnected) {
        m_device->ResetDeviceKeys();
        m_device->ResetDeviceKeys();
    }
}

void MainWindow::deviceRemoved()
{
    ++m_link;
    DongleID.clear();
    dayCounts.receiverLeft();
    setTrayPicture(QStringLiteral(":/rec/ORDeviceDisConnect.png"));
    const bool wasConnected = DeviceConnected;
    if (wasConnected) {
        m_platform.processes->startSibling(keypadSibling, {QStringLiteral("ORVKBAppHide")}, true);
        m_device->DeviceGoodbye();
        m_device->StopHeartbeat();
        closeTranslation();
        if (m_settingsHands) {
            m_settingsHands->close();
        }
        stopReader();
        m_device->ReleaseHidDevice();
    }
    hide();
    m_session.receiverGone();
    endDeviceChange();
    if (wasConnected && !MouseSession) {
        endRunningSession(); // the key that was held can no longer come up; last, since recognition waits
    }
}
