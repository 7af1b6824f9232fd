#include "window/SessionHands.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "output/SendPlan.h"
#include "ui/CPatialResultDialog.h"
#include "ui/MicTipDialog.h"
#include "ui/QToolTips.h"
#include "window/InputMethods.h"
#include "window/MainWindow.h"

#include <QCursor>
#include <QDebug>
#include <QTimer>

namespace mevo {

namespace {
constexpr int windowLookMs = 100;
constexpr int windowComesMs = 10000;
constexpr int tapDelayMs = 200;
constexpr int pasteContentMs = 1000; ///< until the input method has copied its text
} // namespace

qint64 SessionHands::monotonicMs() const
{
    return m_window.m_platform.time->monotonicMs();
}

void SessionHands::sleepMs(int milliseconds)
{
    m_window.m_platform.time->sleepMs(milliseconds);
}

void SessionHands::trayMessage(const QString &text, MessageIcon icon, int milliseconds)
{
    m_window.message(text, icon, milliseconds);
}

void SessionHands::logReport(const QString &line)
{
    qDebug().noquote() << line.trimmed();
}

void SessionHands::clearClipboard()
{
    if (!m_window.isPasting()) { // else it holds an earlier text on its way into a window
        m_window.m_platform.clipboard->clear();
    }
}

void SessionHands::saveFocusWindow()
{
    m_window.saveFocusWindow();
}

void SessionHands::raiseBar()
{
    m_window.raise();
}

void SessionHands::hideBar()
{
    m_window.hide();
}

void SessionHands::placeBar(int fromRight, int fromBottom)
{
    m_window.placeBar(fromRight, fromBottom, 200);
}

void SessionHands::showTipWindow(bool longPressStart)
{
    if (m_window.m_micTip == nullptr) {
        return;
    }
    if (longPressStart) {
        m_window.m_micTip->showLongPress();
    } else {
        m_window.m_micTip->show();
    }
}

void SessionHands::hideTipWindow()
{
    if (m_window.m_micTip != nullptr) {
        m_window.m_micTip->hide();
    }
}

void SessionHands::updateMicWin(const QString &picture)
{
    Q_EMIT m_window.updateMicWin(picture);
}

void SessionHands::preparePartialResults()
{
    m_window.letXunFeiGo(); // what the strip shows belongs to the session before
    m_window.XFPartialList.clear();
    m_window.XFResultText.clear();
    if (m_window.m_recorder == nullptr || !m_window.m_recorder->EnableXunFeiWebApiDwa) {
        return;
    }
    const auto caret = m_window.m_platform.windowSystem->caretRectangle();
    m_window.XFPartialDlg->placeAt(caret ? caret->topLeft() : QCursor::pos());
}

bool SessionHands::translationDialogTakesKeys() const
{
    return m_window.m_translationHands.takesKeys();
}

void SessionHands::recordStart()
{
    if (m_window.m_recorder != nullptr) {
        m_window.beginSession();
        m_window.m_recorder->OnRecordStart();
        qInfo() << "Session: recording begins";
    }
}

void SessionHands::recordStop()
{
    if (m_window.m_recorder != nullptr) {
        qInfo() << "Session: recording ends";
        if (m_window.m_recorder->isOpen()) {
            m_window.m_figures.released(m_window.NewestSession, monotonicMs());
        }
        m_window.m_recorder->OnRecordStop();
    }
}

WindowId SessionHands::findInputMethodWindow()
{
    const WindowId window =
        m_window.m_platform.windowSystem->findWindow(m_window.ASR3WinClassName, m_window.ASR3WindowName);
    m_window.Asr3WindowFound = window != 0;
    return window;
}

void SessionHands::leaveInputMethod()
{
    if (m_taps == 0) { // else it has not heard yet that the user has stopped; the next press finds it
        m_window.m_inputMethods->leaveWithoutKeys();
    }
}

void SessionHands::startXunFeiInputMethod()
{
    m_window.ReadXunFeiIme();
    if (m_window.XFVM3) {
        m_window.StartXunFeiWindow();
    } else {
        startProgram(m_window.LocalASR3XunFeiInstallPath);
    }
}

void SessionHands::startProgram(const QString &path)
{
    if (!m_window.m_platform.processes->startDetached(path, {})) {
        qWarning().noquote() << "Input method: cannot start" << path;
    }
}

bool SessionHands::isProgramRunning(const QString &imageName)
{
    return m_window.m_platform.processes->isRunning(imageName);
}

void SessionHands::awaitInputMethodWindow(const QString &windowClass)
{
    const int number = ++m_awaited;
    lookForInputMethod(windowClass, number, m_window.m_platform.time->monotonicMs() + windowComesMs);
}

void SessionHands::lookForInputMethod(const QString &windowClass, int number, qint64 until)
{
    m_window.m_platform.time->callAfter(windowLookMs, &m_window, [this, windowClass, number, until] {
        if (number != m_awaited || m_window.isLeaving()) {
            return; // a later press has started it anew
        }
        if (m_window.m_platform.windowSystem->findWindow(windowClass, QString()) != 0 ||
            monotonicMs() >= until) {
            m_window.m_session.inputMethodCame();
        } else {
            lookForInputMethod(windowClass, number, until);
        }
    });
}

void SessionHands::markInputMethodStarted()
{
    m_window.RunThirdpartVoiceInputByORV = 1;
    SettingsFile().setValue(QStringLiteral("RunThirdpartVoiceInputByORV"), 1);
}

void SessionHands::sendDeviceKey(int modifiers, int usage)
{
    if (m_window.deviceOpen()) {
        m_window.m_device->SendKeyReport(modifiers, usage);
    }
}

void SessionHands::tapCustomKey()
{
    m_window.TimeOutDelaySendCustom();
}

void SessionHands::startPasteContentTimer()
{
    m_window.PressWindow = m_window.focusedElsewhere(); // the input method does not tell of its press
    ++m_pasteContents;
    QTimer::singleShot(pasteContentMs, &m_window, [this] { takePasteContent(); });
}

void SessionHands::takePasteContent()
{
    if (m_pasteContents > 0) {
        --m_pasteContents;
        m_window.TimeOutGetPasteContent();
    }
}

bool SessionHands::awaitsPasteContent() const
{
    return m_pasteContents > 0 &&
           (m_window.VoiceCommandWordMode || m_window.VoiceTranslateMode || m_window.VoiceSearchMode);
}

void SessionHands::finishPasteContent()
{
    if (m_pasteContents > 0) {
        m_pasteContents = 1; // however many releases: it is one clipboard
        takePasteContent();
    }
}

void SessionHands::startTapTimer()
{
    ++m_taps;
    QTimer::singleShot(tapDelayMs, &m_window, [this] { tapNow(1); });
}

void SessionHands::tapNow(int taps)
{
    for (; taps > 0 && m_taps > 0; --taps) {
        --m_taps;
        m_window.TimeOutDelaySendF2();
    }
}

void SessionHands::finishTaps()
{
    if (m_taps > 0) {
        sleepMs(tapDelayMs);
        tapNow(m_taps);
    }
}

void PipelineHands::sendToScreen(const QString &text, const SessionContext &session)
{
    m_window.sendToScreen(text, session,
                          onlyWindowOf(m_window, session, m_window.m_translationHands.exists()));
}

void PipelineHands::trayMessage(const QString &text, MessageIcon icon, int milliseconds)
{
    m_window.message(text, icon, milliseconds);
}

void PipelineHands::restartAfterRecognition()
{
    if (m_window.m_afterRecognition != nullptr) {
        m_window.m_afterRecognition->start();
    }
}

void PipelineHands::endDeviceSession()
{
    m_window.closeDeviceSession();
}

void PipelineHands::stopRecording()
{
    if (m_window.m_recorder != nullptr) {
        m_window.m_recorder->OnRecordStop();
    }
}

void PipelineHands::updateMicWin(const QString &picture)
{
    Q_EMIT m_window.updateMicWin(picture);
}

void PipelineHands::endTipLatch()
{
    if (m_window.m_micTip != nullptr) {
        m_window.m_micTip->endLatch();
    }
}

void PipelineHands::updateStatusButtons()
{
    if (m_window.m_micTip != nullptr) {
        m_window.m_micTip->UpdateStatusButtons();
    }
}

bool PipelineHands::translationDialogExists() const
{
    return m_window.m_translationHands.exists();
}

bool PipelineHands::translationDialogClosing() const
{
    return m_window.m_translationHands.isClosing();
}

void PipelineHands::showOnTranslationDialog(const QString &text, const SessionContext &session)
{
    m_window.m_translationHands.showSentence(text, session);
}

void PipelineHands::showTranslationDialog()
{
    m_window.m_translationHands.show();
}

void PipelineHands::pressTranslateButton()
{
    m_window.pushBuutton_Translate_clicked();
}

void PipelineHands::voiceSearch(const QString &text)
{
    m_window.VoiceSearch(text);
}

bool PipelineHands::runCommandWord(const QString &word, bool sent, const SessionContext &session)
{
    return m_window.runCommandWord(word, sent, session);
}

void PipelineHands::reloadEngineChoice()
{
    m_window.CallMainFunctionSlot(21);
}

} // namespace mevo
