// The day's allowances as the main window carries them out.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "engines/Allowance.h"
#include "engines/LanguageImages.h"
#include "service/Statements.h"
#include "ui/Ask.h"

#include <QDebug>
#include <QTimer>

namespace {
/// Buttons of the box; the first two are numbered as the input methods less one.
enum Answer { UseXunFeiMethod, UseSogouMethod, LeaveIt };
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
                    {},
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
    QTimer::singleShot(0, this, [this, change] {
        if (!isLeaving()) {
            BuildAsrLanMenu(change.persistEngine, change.setupInputMethod);
        }
    });
}

void MainWindow::chooseAtLimit(int answer)
{
    if (isLeaving() || (answer != UseXunFeiMethod && answer != UseSogouMethod)) {
        return;
    }
    ++m_languageChoice;
    m_sessionHands.hideTipWindow();
    MicWinShown = false;
    // kept: also for Sogou
    setLanguageButtonImage(mevo::languageButtonStyle(
        ShowVerticalUI ? QStringLiteral(":/rec/xunfeiV.png") : QStringLiteral(":/rec/xunfei.png"), false));
    carryOut({mevo::chooseInputMethodAtLimit(*this, answer + 1), false, false, false});
    RunBackendSql(
        mevo::deviceStatement(mevo::Statement::ChooseInputMethodAtQuota, SchemaName,
                              {QString::number(int(EnableASR3)), QString::number(int(MustClickRunASR3)),
                               QString::number(UseASR3Index), QString::number(CurrentVersion), m_buildStamp,
                               DongleID}),
        2000);
    if (isLeaving()) {
        return;
    }
    if (answer == UseXunFeiMethod) {
        SetupAsr3();
        if (isLeaving()) {
            return;
        }
        BuildAsrLanMenu(true, false); // kept: Sogou's is set up at the next start, arrival or choice
    }
    if (LocalEnableASR3) {
        BaiduQuotaHit = XunFeiQuotaHit = TencentQuotaHit = false; // they would silence the keys
    }
}
