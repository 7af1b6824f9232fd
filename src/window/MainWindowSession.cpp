// The main window's part of a voice session: the slots that keys, timers and the tip window reach.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "device/DeviceCommands.h"
#include "ui/MicTipDialog.h"
#include "window/InputMethods.h"

#include <QAction>
#include <QTimer>

namespace {
enum MainFunction {
    SyntheticRelease = 16,
    LowPower = 17,
    PowerRestored = 18,
    ReloadEngine = 21,
    ResetSession = 22
};
} // namespace

void MainWindow::ProcessResult(char *report)
{
    if (report != nullptr && !isLeaving()) { // an exit ends what has been said, and begins nothing
        m_session.process(report);
    }
}

void MainWindow::showRecText(QString text)
{
    m_pipeline.showRecText(text, m_delivered != nullptr ? *m_delivered : contextInForce());
}

void MainWindow::CallMainFunctionSlot(int iFuncIndex)
{
    switch (iFuncIndex) {
    case SyntheticRelease: {
        m_platform.time->sleepMs(500);
        char release[mevo::keyReportSize] = {0, mevo::keyReportMarker, mevo::KeyVoice, 0};
        ProcessResult(release);
        KeyDownBusy = false;
        break;
    }
    case LowPower:
        setTrayPicture(QStringLiteral(":/rec/ORLowPower.png"));
        break;
    case PowerRestored:
        setTrayPicture(QStringLiteral(":/rec/ORDeviceConnect.png"));
        break;
    case ReloadEngine:
        if (m_recorder != nullptr && m_recorder->BaiDuNoStreamApi) {
            BuildAsrLanMenu(true, true);
        }
        break;
    case ResetSession:
        m_session.reset();
        break;
    default:
        break;
    }
}

void MainWindow::onEnterTimerAfterRec()
{
    closeDeviceSession();
    m_afterRecognition->stop();
    if (!Recording) {
        Q_EMIT updateMicWin(QLatin1String(mevo::pictures::micIdle));
    }
}

void MainWindow::closeDeviceSession()
{
    if (!DeviceConnected) {
        return;
    }
    updateRecCountsTimerOut();
    if (!(Recording && MouseSession)) {
        sendMicrophoneLatch(false);
    }
}

void MainWindow::TimeOutDelaySendF2()
{
    m_sessionHands.sendDeviceKey(0, ASR3ShortCutKey);
    m_platform.time->sleepMs(100);
    m_sessionHands.sendDeviceKey(0, 0);
}

void MainWindow::TimeOutDelaySendCustom()
{
    m_sessionHands.sendDeviceKey(ASR3CustomCtrlShortCutKey, ASR3CustomShortCutKey);
    m_platform.time->sleepMs(100);
    m_sessionHands.sendDeviceKey(0, 0);
}

void MainWindow::TimeOutGetPasteContent()
{
    if (m_sessionsFinished || (!VoiceCommandWordMode && !VoiceTranslateMode && !VoiceSearchMode)) {
        return; // in typing mode the input method has typed the text itself
    }
    const QString text = m_platform.clipboard->text();
    if (text.size() > 2) {
        m_pipeline.HandleRecResult(text, contextInForce());
    }
}

void MainWindow::pushButton_Mic_clicked()
{
    if (!LocalEnableASR3 || !VoiceTypeMode) {
        if (!ThirdPartyActive && m_micTip != nullptr) {
            MicWinShown = !MicWinShown;
            m_micTip->setVisible(MicWinShown);
        }
        return;
    }
    if (m_micTip != nullptr && m_micTip->isVisible()) {
        m_micTip->hide();
    }
    MicWinShown = false;
    m_inputMethods->clickOnMicrophone();
}

void MainWindow::on_closeASRFuncAction()
{
    if (!DeviceConnected) {
        return;
    }
    if (ASRFuncClosed) {
        ASRFuncClosed = false;
        m_device->SendHeartbeat();
        message(tr("已打开语音输入识别功能！"), mevo::MessageIcon::Information, 100);
        m_closeAsrAction->setText(tr("关闭语音输入识别"));
        return;
    }
    updateRecCountsTimerOut();
    if (!sendMicrophoneLatch(false)) {
        return;
    }
    ASRFuncClosed = true;
    if (m_device->DeviceGoodbye()) {
        m_closeAsrAction->setText(tr("打开语音输入识别"));
        message(tr("3秒后会关闭语音输入识别功能！"), mevo::MessageIcon::Information, 100);
    }
    endRunningSession(); // its release is no longer taken, and the microphone would stay open
}

/// For a session whose release can no longer come: what was said so far still counts.
void MainWindow::endRunningSession()
{
    if (!Recording) {
        return;
    }
    if (m_micTip != nullptr) {
        m_micTip->endLatch();
    }
    m_sessionHands.hideTipWindow();
    MicWinShown = false;
    Q_EMIT updateMicWin(QLatin1String(mevo::pictures::micIdle));
    m_session.endWithoutRelease();
}

/// Before a question: the talk window does not hear the mouse while it stands.
void MainWindow::endMouseSession()
{
    if (MouseSession) {
        endRunningSession();
    }
}

bool MainWindow::sendMicrophoneLatch(bool on)
{
    return deviceOpen() && (on ? m_device->MicLatchOn() : m_device->MicLatchOff());
}

void MainWindow::flushUsageCounters()
{
    updateRecCountsTimerOut();
}

void MainWindow::saveFocusWindow()
{
    FocusWindow = GetFocusWindow();
}

bool MainWindow::isXpClass() const
{
    return m_platform.systemFacts->isXpClass();
}
