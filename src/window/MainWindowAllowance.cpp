// The day's allowances as the main window carries them out.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "engines/Allowance.h"
#include "engines/LanguageImages.h"
#include "service/Statements.h"
#include "ui/Ask.h"
#include "window/InputMethods.h"

#include <QDebug>
#include <QTimer>

namespace {
/// Buttons of the box; the first two are numbered as the input methods less one.
enum LimitButton { UseXunFeiMethod, UseSogouMethod, LeaveIt };
constexpr int messageMs = 3000;
} // namespace

void MainWindow::checkDaysAllowance()
{
    if (Recording) {
        return; // a mark would silence the key whose release ends the session; the next check comes after it
    }
    switch (mevo::checkAllowances(*this, *m_recorder, isXpClass())) {
    case mevo::AllowanceStep::GoOn:
        return;
    case mevo::AllowanceStep::UseTencent:
        leaveForTencent();
        return;
    case mevo::AllowanceStep::AskUser:
        break;
    }
    qInfo() << "Allowance: the day's use of the engine in force has reached its limit";
    if (ExitInProgress || m_limitBoxOpen) {
        return;
    }
    m_limitBoxOpen = true;
    const QString text =
        ShowASR3UI
            ? tr("已超出各接口每天限制使用次数，如继续使用，请选择使用讯飞输入法或搜狗语音输入法(f001)!")
            : tr("已超出各接口每天限制使用次数,请24小时后再使用(f001)！");
    mevo::askAside(this,
                   {tr("超出限量"),
                    text,
                    {tr("使用讯飞语音输入法"), tr("使用搜狗语音输入法"), tr("退出")},
                    true,
                    {mevo::Answer::Accept, mevo::Answer::Accept, mevo::Answer::Back},
                    LeaveIt},
                   [this](int answer) {
                       m_limitBoxOpen = false;
                       chooseAtLimit(answer);
                   });
}

void MainWindow::leaveForTencent()
{
    qInfo() << "Allowance: the day's use of the engine has reached its limit, Tencent takes over";
    const mevo::EngineChange change = mevo::fallToTencent(*this, *m_recorder);
    if (ExitInProgress) {
        carryOut(change);
        return;
    }
    // The next press is Tencent's already. The menu and the backend hear of it from the event loop: whoever
    // writes the counters does not expect to wait.
    carryOut({change.writes, false, false, false});
    message(tr("今日语音识别次数已用完，已自动切换到腾讯语音识别！"), mevo::MessageIcon::Information,
            messageMs);
    QTimer::singleShot(0, this, [this, change] {
        if (!isLeaving()) {
            BuildAsrLanMenu(change.persistEngine, change.setupInputMethod);
        }
    });
}

void MainWindow::chooseAtLimit(int answer)
{
    if (isLeaving() || (answer != UseXunFeiMethod && answer != UseSogouMethod)) {
        qInfo("Allowance: no input method is chosen");
        return;
    }
    qInfo("Allowance: input method %d is chosen", answer + 1);
    m_inputMethods->rememberEngine();
    m_inputMethods->choiceOvertaken();
    forgetUntoldEngine();
    noteUserChoice();
    m_sessionHands.hideTipWindow();
    MicWinShown = false;
    // kept: also for Sogou
    setLanguageButtonImage(mevo::languageButtonStyle(
        ShowVerticalUI ? QStringLiteral(":/rec/xunfeiV.png") : QStringLiteral(":/rec/xunfei.png"), false));
    carryOut({mevo::chooseInputMethodAtLimit(*this, answer + 1), false, false, false});
    tellMethodChoice(mevo::Statement::ChooseInputMethodAtQuota);
    if (isLeaving()) {
        return;
    }
    if (answer == UseXunFeiMethod) {
        SetupAsr3();
        if (isLeaving()) {
            return;
        }
        BuildAsrLanMenu(true, false); // it has just been set up
    } else {
        message(tr("已选择搜狗语音输入法，将在下次启动软件或插入设备时设置并生效！"),
                mevo::MessageIcon::Information, messageMs);
    }
    if (LocalEnableASR3) {
        BaiduQuotaHit = XunFeiQuotaHit = TencentQuotaHit = false; // they would silence the keys
    }
}
