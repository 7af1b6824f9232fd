// The window of the input method in force: bringing it up, leaving it, the microphone button. Its keys are
// the session's.

#include "inputmethods/MethodDriving.h"
#include "window/MainWindow.h"

#include "state/ThirdPartyMethod.h"
#include "ui/MicTipDialog.h"

#include <QFileInfo>

namespace {

constexpr int startingMs = 1000;

} // namespace

void MainWindow::StartXunFeiWindow()
{
    if (LocalASR3XunFeiInstallPath.isEmpty()) {
        return;
    }
    mevo::WindowStartFacts facts;
    facts.windowFound = Asr3WindowFound;
    facts.windowThere = m_sessionHands.findInputMethodWindow() != 0;
    facts.thirdGeneration = XFVM3;
    facts.xpClass = isXpClass();
    bool started = false;
    switch (mevo::startOfXunFeiWindow(facts)) {
    case mevo::WindowStart::Nothing:
        return;
    case mevo::WindowStart::Open:
        started = m_platform.processes->startDetached(LocalASR3XunFeiInstallPath, {});
        break;
    case mevo::WindowStart::OpenToType:
        started = m_platform.processes->startToType(LocalASR3XunFeiInstallPath);
        break;
    }
    Asr3WindowFound = started;
    if (!started) {
        qWarning().noquote() << "Input method: cannot start" << LocalASR3XunFeiInstallPath;
        return;
    }
    ThirdPartyWindowOpen = true;
    if (!XFOfflineMode) {
        message(tr("正在启动讯飞麦克风窗口，请稍候，检测过程中可关闭其它提示信息窗口！"),
                mevo::MessageIcon::Information, startingMs);
    }
}

void MainWindow::leaveInputMethodWindow(mevo::WindowLeave how, mevo::WindowId window)
{
    switch (how) {
    case mevo::WindowLeave::Nothing:
        return;
    case mevo::WindowLeave::Close:
        m_platform.windowSystem->closeWindow(window);
        break;
    case mevo::WindowLeave::EndProgram:
        m_platform.processes->killByImageName(QStringLiteral("iFlyVoice.exe"));
        break;
    }
    ThirdPartyWindowOpen = false;
    Asr3WindowFound = false;
}

void MainWindow::leaveInputMethodAtChoice()
{
    const mevo::WindowId window = m_sessionHands.findInputMethodWindow();
    leaveInputMethodWindow(mevo::leaveAtChoice(LocalUseASR3Index, window != 0, ThirdPartyWindowOpen, XFVM3),
                           window);
}

void MainWindow::leaveInputMethodWithoutKeys()
{
    const mevo::WindowId window = ThirdPartyWindowOpen ? m_sessionHands.findInputMethodWindow() : 0;
    leaveInputMethodWindow(mevo::leaveWithoutKeys(window != 0, ThirdPartyWindowOpen, XFVM3), window);
}

QString MainWindow::inputMethodProgram() const
{
    switch (LocalUseASR3Index) {
    case mevo::thirdPartyXunFei:
        return LocalASR3XunFeiInstallPath;
    case mevo::thirdPartySogou:
        return LocalASR3SougoInstallPath;
    default:
        return LocalASR3CustomInstallPath;
    }
}

void MainWindow::clickOnInputMethod()
{
    const bool custom = LocalUseASR3Index == mevo::thirdPartyCustom; // whose window nobody knows
    const QString program = inputMethodProgram();
    const mevo::WindowId window = custom ? 0 : m_sessionHands.findInputMethodWindow();
    mevo::MicClickFacts facts;
    facts.index = LocalUseASR3Index;
    facts.active = ThirdPartyActive;
    facts.hasProgram = !program.isEmpty();
    facts.runs = !program.isEmpty() && m_platform.processes->isRunning(QFileInfo(program).fileName());
    facts.windowThere = custom ? facts.runs : window != 0;
    facts.startedByUs = ThirdPartyWindowOpen;
    facts.thirdGeneration = XFVM3;
    switch (mevo::clickOnMicrophone(facts)) {
    case mevo::MicClick::Nothing:
        return;
    case mevo::MicClick::StartXunFei:
        m_sessionHands.startProgram(program);
        message(tr("正在首次启动讯飞麦克风窗口过程中，识别检测时间稍长，请稍候，"
                   "检测过程中可忽略提示信息或窗口！"),
                mevo::MessageIcon::Information, startingMs);
        ThirdPartyWindowOpen = true;
        return;
    case mevo::MicClick::StartOther:
        m_sessionHands.startProgram(program);
        ThirdPartyWindowOpen = true;
        return;
    case mevo::MicClick::Close:
        leaveInputMethodWindow(mevo::WindowLeave::Close, window);
        return;
    case mevo::MicClick::EndProgram:
        leaveInputMethodWindow(mevo::WindowLeave::EndProgram, window);
        return;
    }
}
