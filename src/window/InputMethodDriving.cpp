// The window of the input method in force: bringing it up, leaving it, the microphone button.

#include "window/InputMethods.h"

#include "inputmethods/MethodDriving.h"
#include "window/MainWindow.h"

#include <QDebug>
#include <QFileInfo>

namespace mevo {

namespace {

constexpr int startingMs = 1000;

} // namespace

void InputMethods::startXunFeiWindow()
{
    if (m_state.LocalASR3XunFeiInstallPath.isEmpty()) {
        return;
    }
    WindowStartFacts facts;
    m_window.m_sessionHands.findInputMethodWindow(); // what was found once may have gone
    facts.windowFound = m_state.Asr3WindowFound;
    facts.thirdGeneration = m_state.XFVM3;
    facts.xpClass = m_window.isXpClass();
    bool started = false;
    switch (startOfXunFeiWindow(facts)) {
    case WindowStart::Nothing:
        return;
    case WindowStart::Open:
        started = m_window.m_platform.processes->startDetached(m_state.LocalASR3XunFeiInstallPath, {});
        break;
    case WindowStart::OpenToType:
        started = m_window.m_platform.processes->startToType(m_state.LocalASR3XunFeiInstallPath);
        break;
    }
    m_state.Asr3WindowFound = started;
    if (!started) {
        qWarning().noquote() << "Input method: cannot start" << m_state.LocalASR3XunFeiInstallPath;
        return;
    }
    m_state.ThirdPartyWindowOpen = true;
    if (!m_state.XFOfflineMode) {
        m_window.message(MainWindow::tr("正在启动讯飞麦克风窗口，请稍候，检测过程中可关闭其它提示信息窗口！"),
                         MessageIcon::Information, startingMs);
    }
}

/// What a press has begun there ends as its release would have ended it, while the method is there to hear
/// it.
void InputMethods::endPress()
{
    m_window.m_session.endInputMethodPress();
    m_window.m_sessionHands.finishTaps();
}

void InputMethods::leaveWindow(WindowLeave how, WindowId window)
{
    if (how == WindowLeave::Nothing) {
        return;
    }
    endPress();
    switch (how) {
    case WindowLeave::Nothing:
        break;
    case WindowLeave::Close:
        m_window.m_platform.windowSystem->closeWindow(window);
        break;
    case WindowLeave::EndProgram:
        m_window.m_platform.processes->killByImageName(QStringLiteral("iFlyVoice.exe"));
        break;
    }
    m_state.ThirdPartyWindowOpen = false;
    m_state.Asr3WindowFound = false;
    m_window.m_session.inputMethodLeft();
}

void InputMethods::leaveAtChoice()
{
    endPress(); // also in a window that stays
    m_window.m_session.inputMethodLeft();
    const WindowId window = m_window.m_sessionHands.findInputMethodWindow();
    leaveWindow(mevo::leaveAtChoice(m_state.LocalUseASR3Index, window != 0, m_state.ThirdPartyWindowOpen,
                                    m_state.XFVM3),
                window);
}

void InputMethods::leaveWithoutKeys()
{
    const WindowId window =
        m_state.ThirdPartyWindowOpen ? m_window.m_sessionHands.findInputMethodWindow() : 0;
    leaveWindow(mevo::leaveWithoutKeys(window != 0, m_state.ThirdPartyWindowOpen, m_state.XFVM3), window);
}

QString InputMethods::programInForce() const
{
    switch (m_state.LocalUseASR3Index) {
    case thirdPartyXunFei:
        return m_state.LocalASR3XunFeiInstallPath;
    case thirdPartySogou:
        return m_state.LocalASR3SougoInstallPath;
    default:
        return m_state.LocalASR3CustomInstallPath;
    }
}

void InputMethods::clickOnMicrophone()
{
    const bool custom = m_state.LocalUseASR3Index == thirdPartyCustom; // whose window nobody knows
    const QString program = programInForce();
    const WindowId window = custom ? 0 : m_window.m_sessionHands.findInputMethodWindow();
    MicClickFacts facts;
    facts.index = m_state.LocalUseASR3Index;
    facts.active = m_state.ThirdPartyActive;
    facts.hasProgram = !program.isEmpty();
    facts.runs =
        !program.isEmpty() && m_window.m_platform.processes->isRunning(QFileInfo(program).fileName());
    facts.windowThere = custom ? facts.runs : window != 0;
    facts.startedByUs = m_state.ThirdPartyWindowOpen;
    facts.thirdGeneration = m_state.XFVM3;
    const MicClick click = mevo::clickOnMicrophone(facts);
    switch (click) {
    case MicClick::Nothing:
        return;
    case MicClick::StartXunFei:
    case MicClick::StartOther:
        if (!m_window.m_platform.processes->startDetached(program, {})) {
            qWarning().noquote() << "Input method: cannot start" << program;
            return;
        }
        m_state.ThirdPartyWindowOpen = true;
        m_window.m_session.inputMethodStartedByClick();
        if (click == MicClick::StartXunFei) {
            m_window.message(MainWindow::tr("正在首次启动讯飞麦克风窗口过程中，识别检测时间稍长，请稍候，"
                                            "检测过程中可忽略提示信息或窗口！"),
                             MessageIcon::Information, startingMs);
        }
        return;
    case MicClick::Close:
        leaveWindow(WindowLeave::Close, window);
        return;
    case MicClick::EndProgram:
        leaveWindow(WindowLeave::EndProgram, window);
        return;
    }
}

} // namespace mevo
