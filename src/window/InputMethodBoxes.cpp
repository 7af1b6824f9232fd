// What the user is asked about an input method, and what follows from the answers: the download, the tools
// and the configuration of XunFei's.

#include "window/InputMethods.h"

#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "inputmethods/MethodSearch.h"
#include "inputmethods/MethodSetup.h"
#include "inputmethods/ThirdPartyVoiceInput.h"
#include "inputmethods/XunFeiIme.h"
#include "service/Statements.h"
#include "ui/Ask.h"
#include "window/InputMethodHands.h"
#include "window/MainWindow.h"

#include <QDebug>
#include <QTimer>
#include <QUrl>

namespace mevo {

namespace {

constexpr int installationLookMs = 3000;
constexpr int installationLooks = 200; ///< about ten minutes
constexpr int settingsWindowMs = 2000; ///< the input method needs so long to take its new settings

} // namespace

void InputMethods::askConsent()
{
    if (m_boxOpen) {
        return;
    }
    m_boxOpen = true;
    m_window.whenStarted([this] {
        if (m_window.isLeaving()) {
            m_boxOpen = false;
            return;
        }
        enum Button { Agree, Refuse };
        askAside(
            &m_window,
            {MainWindow::tr("启动第三方语音输入"),
             MainWindow::tr("同意：允许自动调用第三方语音输入法，包括自动下载与安装，以及修改其快捷键设置；\n"
                            "不同意：只在点击麦克风按钮时才启动第三方语音输入法，不修改其设置。"),
             {MainWindow::tr("同意"), MainWindow::tr("不同意")},
             false,
             {Answer::Accept, Answer::No}},
            [this](int answer) {
                m_boxOpen = false;
                if (m_window.isLeaving()) {
                    return;
                }
                // A box that is closed has not been agreed to, and a later choice asks once more.
                const bool closed = answer != Agree && answer != Refuse;
                m_state.LocalMustClickRunASR3 = m_state.MustClickRunASR3 = answer != Agree;
                m_window.writeSettings({{consentKey, int(!closed)},
                                        {consentClosedKey, int(closed)},
                                        {"LocalMustClickRunASR3", int(m_state.LocalMustClickRunASR3)}});
                const int setup = m_setup;
                m_window.tellRecordNow(
                    {{QStringLiteral("MustClickRunASR3"), int(m_state.MustClickRunASR3)}},
                    deviceStatement(Statement::WriteMustClick, m_state.SchemaName,
                                    {QString::number(int(m_state.MustClickRunASR3)), m_state.DongleID}));
                if (setup == m_setup) { // else a later set-up has the answer already
                    continueSetUp();
                }
            });
    });
}

void InputMethods::offer()
{
    if (m_boxOpen || (m_installer && m_installer->isBusy())) {
        return;
    }
    m_boxOpen = true;
    const int index = m_state.LocalUseASR3Index;
    m_window.whenStarted([this, index] {
        if (m_window.isLeaving()) {
            m_boxOpen = false;
            return;
        }
        enum Button { Fetch };
        const bool offline = index == thirdPartyXunFei && m_state.ForceUseXFMore3V;
        const QString text = MainWindow::tr("点击'下载'按钮将安装") + m_state.ASR3Name +
                             (offline ? MainWindow::tr("(支持离线语音识别),安装时请按提示操作！")
                                      : MainWindow::tr(",安装时请按提示操作！"));
        askAside(&m_window,
                 {MainWindow::tr("提示"),
                  text,
                  {MainWindow::tr("下载"), MainWindow::tr("暂不下载")},
                  false,
                  {Answer::Accept, Answer::No}},
                 [this, index](int answer) {
                     m_boxOpen = false;
                     if (m_window.isLeaving() || !m_state.LocalEnableASR3) {
                         return;
                     }
                     if (m_state.LocalUseASR3Index != index) {
                         continueSetUp(); // another one has been chosen while the box stood
                     } else if (answer == Fetch) {
                         settleChoice();
                         download(index);
                     } else {
                         refuse(); // also by closing the box: it would be asked at each set-up
                     }
                 });
    });
}

void InputMethods::refuse()
{
    m_startAtSetUp = false;
    m_choicePending = false; // what follows tells it
    m_window.writeSettings(leaveInputMethod(m_state));
    restoreEngine();
    m_state.EnableASR3 = false;
    m_state.UseASR3Index = thirdPartyNone;
    ++m_window.m_languageChoice;
    m_window.showLanguages();
    m_window.tellMethodChoice(Statement::ChooseInputMethod);
}

QString InputMethods::installerAddress(const Asr3Row &row) const
{
    return m_window.isXpClass() ? row.ASR3DownWebXP : row.ASR3DownWeb;
}

void InputMethods::download(int index)
{
    if (m_window.isLeaving()) {
        return;
    }
    const Asr3Row *known = knownRow(index);
    Asr3Row row = known != nullptr ? *known : Asr3Row();
    if (installerAddress(row).isEmpty()) { // from the settings, before it is set up
        row = askForRow(index);
        if (m_window.isLeaving()) {
            return;
        }
    }
    if (index != thirdPartyXunFei && index != thirdPartySogou) {
        if (installerAddress(row).isEmpty()) {
            m_window.message(MainWindow::tr("该语音输入法没有可下载的安装程序！"), MessageIcon::Information,
                             messageMs);
            return;
        }
        if (m_state.LocalASR3CustomInstallPath.isEmpty()) { // the user has named none, and wants this one
            m_state.LocalASR3CustomInstallPath = programBaseName(row.ASR3ExeFileName);
            m_window.writeSettings({{"LocalASR3CustomInstallPath", m_state.LocalASR3CustomInstallPath}});
            m_window.showLanguages(); // it has a row now
        }
    }
    if (m_installer && m_installer->isBusy()) {
        return; // the wait has let another one through, whose name is being shown
    }
    m_downloadName = nameToRead(row);
    m_downloadIndex = index;
    if (!m_installer) {
        m_hands = std::make_unique<InputMethodHands>(m_window, *this);
        m_installer = std::make_unique<ThirdPartyVoiceInput>(m_window, *m_hands, appFolder(),
                                                             m_window.m_endpoints.VerifyCertificates);
    }
    m_installer->Start(QUrl(installerAddress(row)));
}

void InputMethods::cancelDownload()
{
    if (m_installer) {
        m_installer->on_CancelDownload();
    }
}

void InputMethods::downloadOver()
{
    QTimer::singleShot(0, &m_window, [this] {
        if (!m_window.isLeaving() && !m_state.ThirdPartyActive &&
            m_state.LocalUseASR3Index != m_downloadIndex) {
            continueSetUp(); // chosen meanwhile, and not offered beside the download
        }
    });
}

void InputMethods::watchForInstallation()
{
    look(installationLooks);
}

void InputMethods::look(int looks)
{
    if (m_watchesInstallation) {
        return;
    }
    m_watchesInstallation = true;
    m_window.m_platform.time->callAfter(installationLookMs, &m_window, [this, looks] {
        m_watchesInstallation = false;
        if (m_window.isLeaving() || !m_state.LocalEnableASR3 || m_state.ThirdPartyActive || looks <= 0) {
            return;
        }
        if (m_state.LocalUseASR3Index == thirdPartyXunFei) {
            readXunFei();
        }
        if (findProgram(m_state.LocalUseASR3Index).isEmpty()) {
            look(looks - 1);
        } else {
            setUp();
        }
    });
}

void InputMethods::endDownload()
{
    m_installer.reset();
    m_hands.reset();
}

void InputMethods::askToRestartComputer()
{
    m_window.whenStarted([this] {
        if (m_window.isLeaving()) {
            return;
        }
        enum Button { Now, Later };
        askAside(&m_window,
                 {MainWindow::tr("提示"),
                  MainWindow::tr("必须重启电脑才能正常使用讯飞输入法！"),
                  {MainWindow::tr("立即重启"), MainWindow::tr("稍后重启")},
                  true,
                  {Answer::Accept, Answer::No},
                  Later},
                 [this](int answer) {
                     if (m_window.isLeaving()) {
                         return;
                     }
                     if (answer == Now) {
                         m_state.FirstRunApp = false; // the next start must not undo the choice
                         m_window.writeSettings({{"FirstRunApp", 0}});
                         m_window.m_platform.processes->restartComputer();
                         return;
                     }
                     tellHowToSetXunFei();
                 });
    });
}

void InputMethods::tellHowToSetXunFei()
{
    m_window.message(MainWindow::tr("初始化软件成功，如有问题，请尝试重新打开软件！"),
                     MessageIcon::Information, messageMs);
    if (m_state.RunThirdpartVoiceInputByORV != 0) {
        return; // it has run, or the user has been told
    }
    enum Button { ShowHow, OpenSettings, LaterOn };
    askAside(
        &m_window,
        {MainWindow::tr("提示"),
         MainWindow::tr("请重新安装语音手写板软件\r或点击查看如何设置（点击快捷键设置->常规功能键->"
                        "打勾启用语音输入快捷键，并设为F6）"),
         {MainWindow::tr("查看如何设置"), MainWindow::tr("打开设置窗口"), MainWindow::tr("以后再设置")},
         false,
         {Answer::Accept, Answer::Accept, Answer::No},
         LaterOn},
        [this](int answer) {
            if (m_window.isLeaving()) {
                return;
            }
            m_state.RunThirdpartVoiceInputByORV = answer == ShowHow || answer == OpenSettings ? 1 : 0;
            m_window.writeSettings({{"RunThirdpartVoiceInputByORV", m_state.RunThirdpartVoiceInputByORV}});
            if (answer == ShowHow) {
                m_window.openWebPage(m_state.UserManual);
            } else if (answer == OpenSettings) {
                m_window.m_platform.time->callAfter(
                    settingsWindowMs, &m_window, [this] { openTool(QStringLiteral("iFlyIMEConfig.exe")); });
            }
        });
}

void InputMethods::useOfflineOnly(bool always)
{
    enum Button { RestartNow, RestartByHand };
    askAside(&m_window,
             {MainWindow::tr("提示"),
              MainWindow::tr("重启电脑该功能才生效;\t\n取消：点击此按钮，将退出并保持以前配置"),
              {MainWindow::tr("自动重启电脑"), MainWindow::tr("手动重启电脑"), MainWindow::tr("取消")},
              true,
              {Answer::Accept, Answer::Accept, Answer::Back}},
             [this, always](int answer) {
                 if (m_window.isLeaving()) {
                     return;
                 }
                 if (answer != RestartNow && answer != RestartByHand) {
                     m_window.refreshSettings(); // the mark goes back to what is in force
                     return;
                 }
                 const QString error =
                     replaceXunFeiConfig(appFile(always ? QStringLiteral("configXFOffline.xml")
                                                        : QStringLiteral("configXFOnline.xml")),
                                         xunFeiFile("config.xml"));
                 if (!error.isEmpty()) {
                     m_window.message(MainWindow::tr("无法修改讯飞输入法的配置：%1").arg(error),
                                      MessageIcon::Warning, messageMs);
                     m_window.refreshSettings();
                     return;
                 }
                 m_state.OnlyUseXunFeiOfflineASR = m_state.PureXunFeiOfflineVersion = always;
                 m_window.writeSettings(
                     {{"OnlyUseXunFeiOfflineASR", int(always)}, {"PureXunFeiOfflineVersion", int(always)}});
                 m_window.refreshSettings();
                 if (answer == RestartNow) {
                     m_window.m_platform.processes->restartComputer();
                 }
             });
}

void InputMethods::openTool(const QString &fileName)
{
    const QString tool = toolOfMethod(fileName, builtInAsr3Row(thirdPartyXunFei, false),
                                      m_state.LocalASR3XunFeiInstallPath, *m_window.m_platform.registry);
    if (tool.isEmpty() || !m_window.m_platform.processes->startDetached(tool, {})) {
        m_window.message(MainWindow::tr("没有找到讯飞输入法的程序 %1！").arg(fileName),
                         MessageIcon::Information, messageMs);
    }
}

} // namespace mevo
