// Input methods of the computer: choosing one, setting it up, having it fetched. Driving it is the session's.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "base/WholeFile.h"
#include "engines/EngineSelection.h"
#include "engines/LanguageImages.h"
#include "inputmethods/InstallerAddress.h"
#include "inputmethods/MethodSearch.h"
#include "inputmethods/MethodSetup.h"
#include "inputmethods/SpeechInputIni.h"
#include "inputmethods/ThirdPartyVoiceInput.h"
#include "inputmethods/XunFeiIme.h"
#include "service/Statements.h"
#include "service/WebApiReply.h"
#include "session/VoiceModes.h"
#include "state/ThirdPartyMethod.h"
#include "ui/Ask.h"
#include "window/InputMethodHands.h"

#include <QDebug>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

constexpr int rowTimeoutMs = 2000;
constexpr int tellTimeoutMs = 2000;
constexpr int messageMs = 3000;
constexpr int installationLookMs = 3000;
constexpr int settingsWindowMs = 2000; ///< the input method needs so long to take its new settings
constexpr int installationLooks = 200;
/// Set once the user has answered whether input methods may be called without a click.
constexpr char consentKey[] = "ThirdPartyConsentAsked";

QString genericData()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

bool isMethod(int index)
{
    return index >= mevo::thirdPartyXunFei && index <= mevo::thirdPartyCustom;
}

} // namespace

void MainWindow::ReadXunFeiIme()
{
    const auto content = mevo::readWholeFile(mevo::xunFeiFolder(genericData(), isXpClass()) +
                                             QStringLiteral("iflyImeCfg.xml"));
    const auto installation = content ? mevo::parseIflyImeCfg(*content) : std::nullopt;
    if (!installation) {
        return;
    }
    const QString program = installation->folder.isEmpty()
                                ? QString()
                                : mevo::programAt(installation->folder + QStringLiteral("/iFlyVoice.exe"));
    const bool online = m_online != nullptr
                            ? IsOnline.load()
                            : m_platform.networkState->connection() != mevo::NetworkState::Connection::None;
    mevo::applyXunFeiInstallation(*this, *installation, program, online);
    mevo::SettingsFile().setValue(QStringLiteral("XFVM3"), int(XFVM3));
}

int MainWindow::ConfigureXunFeiIme()
{
    const mevo::XunFeiConfiguration configured = mevo::configureXunFeiFile(
        mevo::xunFeiFolder(genericData(), isXpClass()) + QStringLiteral("config.xml"),
        !LocalMustClickRunASR3);
    if (configured.usage != 0) {
        ASR3ShortCutKey = configured.usage;
    }
    if (configured.result == mevo::XunFeiConfigured::Changed) {
        askToRestartComputer();
    }
    return int(configured.result);
}

void MainWindow::SetupAsr3()
{
    const int setup = ++m_setup;
    if (!isMethod(LocalUseASR3Index) && isMethod(UseASR3Index)) {
        LocalUseASR3Index = UseASR3Index; // the record wants one, and the user has not said which
    }
    const int index = LocalUseASR3Index;
    m_elevationWanted = LocalEnableASR3 && index == mevo::thirdPartyXunFei;
    if (!LocalEnableASR3 || index != m_methodSetUp) {
        ThirdPartyActive = false;
        m_methodSetUp = mevo::thirdPartyNone;
    }
    if (!LocalEnableASR3) {
        return;
    }
    if (!isMethod(index)) {
        mevo::leaveInputMethod(*this);
        restoreEngine();
        return;
    }
    if (index != mevo::thirdPartyCustom) {
        if (index == mevo::thirdPartyXunFei) {
            ReadXunFeiIme();
            const auto config = mevo::readWholeFile(mevo::xunFeiFolder(genericData(), isXpClass()) +
                                                    QStringLiteral("config.xml"));
            XFOfflineMode = config && mevo::xunFeiOfflineMode(*config).value_or(false);
        }
        const mevo::Asr3Row row = askForAsr3Row(index);
        if (!isSetUpFor(setup, index)) {
            return; // the wait has let an exit through, or another choice
        }
        m_asr3Row = row;
        mevo::applyAsr3Row(*this, index, row);
        if (ASR3Name == QStringLiteral("讯飞输入法")) { // the built-in name, for the user to read
            ASR3Name = tr("讯飞输入法");
        }
    }
    continueSetup();
}

bool MainWindow::isSetUpFor(int setup, int index) const
{
    return !isLeaving() && setup == m_setup && LocalEnableASR3 && LocalUseASR3Index == index;
}

mevo::Asr3Row MainWindow::askForAsr3Row(int index)
{
    const bool third = mevo::wantsThirdGeneration(*this);
    const mevo::Asr3Row builtIn = mevo::builtInAsr3Row(index, third);
    const QString reply =
        RunBackendSql(mevo::statementText(mevo::Statement::ReadInputMethod,
                                          {SchemaName, mevo::asr3Table(third), QString::number(index)}),
                      rowTimeoutMs);
    const auto content = reply.isEmpty() ? std::nullopt : mevo::unwrapReply(*m_cipher, reply);
    if (!content || content->rows.empty()) {
        qInfo("Input method: the service has no row for method %d, what is built in is used", index);
        return builtIn;
    }
    return mevo::readAsr3Row(content->rows.front(), builtIn);
}

/// From the search for the program on; also with an answer of the user's.
void MainWindow::continueSetup()
{
    if (isLeaving() || m_recorder == nullptr || !LocalEnableASR3) {
        return;
    }
    const int index = LocalUseASR3Index;
    if (index == mevo::thirdPartyCustom) {
        setUpCustomMethod();
    }
    const QString program = findInputMethodProgram(index);
    mevo::SetupFacts facts;
    facts.index = index;
    facts.consentAsked = mevo::SettingsFile().value(QLatin1String(consentKey)).toBool();
    facts.mustClick = LocalMustClickRunASR3;
    facts.found = !program.isEmpty();
    facts.forced = ForceUseASR3;
    facts.offlineWanted = OnlyUseXunFeiOfflineASR || PureXunFeiOfflineVersion;
    facts.installerHere = !m_installerStarted && !bundledInstaller().isEmpty();
    facts.hasAddress =
        !mevo::installerUrl(isXpClass() ? m_asr3Row.ASR3DownWebXP : m_asr3Row.ASR3DownWeb).isEmpty();
    const mevo::SetupStep step = mevo::nextSetupStep(facts);
    if (step != mevo::SetupStep::Ready) {
        ThirdPartyActive = false;
        m_methodSetUp = mevo::thirdPartyNone;
    }
    switch (step) {
    case mevo::SetupStep::AskConsent:
        askConsent();
        return;
    case mevo::SetupStep::Ready:
        useInputMethod(program);
        return;
    case mevo::SetupStep::RunInstaller:
        message(tr("将安装讯飞输入法，需手动点击，安装完可能会提示需要重启电脑！"),
                mevo::MessageIcon::Information, messageMs);
        m_installerStarted = true;
        if (!m_platform.processes->startDetached(bundledInstaller(), {})) {
            qWarning("Input method: the installer beside the program cannot be started");
        }
        watchForInstallation(installationLooks);
        return;
    case mevo::SetupStep::FallBack:
        fallBackFromInputMethod(ASR3Name +
                                tr("没有安装，因没有设置强制使用该语音输入，将自动切换到其它语音识别接口！"));
        return;
    case mevo::SetupStep::OfferDownload:
        offerInputMethod();
        return;
    case mevo::SetupStep::NothingToHave:
        fallBackFromInputMethod(
            tr("%1没有安装，服务器也没有提供下载地址。请自行安装，或在设置中指定其程序路径！").arg(ASR3Name));
        return;
    }
}

void MainWindow::setUpCustomMethod()
{
    ASR3Name = mevo::programBaseName(LocalASR3CustomInstallPath);
    const auto method = mevo::customMethod(
        LocalASR3CustomInstallPath, mevo::readCustomDescription(mevo::SettingsFile(mevo::customMethodGroup)),
        {KeyShowNames, KeyCodes});
    if (!method) {
        return;
    }
    writeSettings(mevo::applyCustomMethod(*this, *method));
    const bool asked = mevo::SettingsFile().value(QLatin1String(consentKey)).toBool();
    if (method->baidu && asked && !LocalMustClickRunASR3) {
        mevo::configureSpeechInput(mevo::speechInputIniPath(genericData(), isXpClass()));
    }
}

/// The program of the custom method, empty when nothing says how it is operated.
QString MainWindow::customProgram() const
{
    const bool known =
        mevo::customMethod(LocalASR3CustomInstallPath,
                           mevo::readCustomDescription(mevo::SettingsFile(mevo::customMethodGroup)),
                           {KeyShowNames, KeyCodes})
            .has_value();
    if (!known || !ShowASR3Custom) {
        return {};
    }
    const bool isName = !LocalASR3CustomInstallPath.contains(QLatin1Char('/'));
    return isName ? QStandardPaths::findExecutable(LocalASR3CustomInstallPath)
                  : mevo::programAt(LocalASR3CustomInstallPath);
}

QString MainWindow::findInputMethodProgram(int index) const
{
    if (index == mevo::thirdPartyCustom) {
        return customProgram();
    }
    const bool xunFei = index == mevo::thirdPartyXunFei;
    const bool current = index == LocalUseASR3Index && !m_asr3Row.ASR3ExeFileName.isEmpty();
    return mevo::findInputMethod(current ? m_asr3Row
                                         : mevo::builtInAsr3Row(index, mevo::wantsThirdGeneration(*this)),
                                 xunFei ? LocalASR3XunFeiInstallPath : LocalASR3SougoInstallPath,
                                 *m_platform.registry, mevo::programPlaces(*m_platform.systemFacts));
}

QString MainWindow::bundledInstaller() const
{
    for (const QString &name : {QStringLiteral("iFlyIME_Setup.exe"), XFPKGName}) {
        const QString path = mevo::appFile(QFileInfo(name).fileName());
        if (!name.isEmpty() && QFileInfo(path).isFile()) {
            return path;
        }
    }
    return {};
}

QString MainWindow::missingInputMethod(int index) const
{
    const bool custom = index == mevo::thirdPartyCustom;
    if (!custom && BackendReachable) {
        return {}; // the service may have an installer; it is asked when the method is chosen
    }
    if (!findInputMethodProgram(index).isEmpty()) {
        return {};
    }
    if (custom) {
        return tr("没有找到自定义语音输入法的程序 %1，请在设置中重新选择！").arg(LocalASR3CustomInstallPath);
    }
    return index == mevo::thirdPartySogou
               ? tr("没有找到搜狗语音输入法的程序，也无法连接服务器下载。请安装后再选择，"
                    "或在设置中指定其程序路径！")
               : tr("没有找到讯飞语音输入法的程序，也无法连接服务器下载。请安装后再选择，"
                    "或在设置中指定其程序路径！");
}

void MainWindow::chooseInputMethod(const mevo::LanguageRow &row)
{
    const int index = QByteArray(row.code).toInt();
    const QString missing = missingInputMethod(index);
    if (!missing.isEmpty()) {
        message(missing, mevo::MessageIcon::Information, messageMs);
        showLanguages(); // the mark goes back to the row in force
        return;
    }
    mevo::saveLastModes(*this);
    leaveInputMethodAtChoice();
    ++m_languageChoice;
    ThirdPartyActive = false;
    m_methodSetUp = mevo::thirdPartyNone;
    BaiduQuotaHit = XunFeiQuotaHit = TencentQuotaHit = false;
    writeSettings(mevo::chooseLanguage(row, *this, *m_recorder).writes);
    EnableASR3 = true;
    UseASR3Index = index;
    showLanguages();
    const int choice = m_languageChoice;
    m_engineTold = tellBackend(choiceStatement());
    rememberWhetherEngineTold();
    if (isLeaving() || choice != m_languageChoice) {
        return; // the wait has let another choice through, or an exit
    }
    m_startAtSetup = true;
    SetupAsr3();
}

void MainWindow::askConsent()
{
    if (m_methodBoxOpen) {
        return;
    }
    m_methodBoxOpen = true;
    whenStarted([this] {
        if (isLeaving()) {
            m_methodBoxOpen = false;
            return;
        }
        enum Button { Agree, Refuse };
        mevo::askAside(
            this,
            {tr("启动第三方语音输入"),
             tr("同意：允许自动调用第三方语音输入法，包括自动下载与安装，以及修改其快捷键设置；\n"
                "不同意：只在点击麦克风按钮时才启动第三方语音输入法，不修改其设置。"),
             {tr("同意"), tr("不同意")},
             false,
             {mevo::Answer::Accept, mevo::Answer::No}},
            [this](int answer) {
                m_methodBoxOpen = false;
                if (isLeaving() || (answer != Agree && answer != Refuse)) {
                    return;
                }
                LocalMustClickRunASR3 = MustClickRunASR3 = answer == Refuse;
                writeSettings({{consentKey, 1}, {"LocalMustClickRunASR3", int(LocalMustClickRunASR3)}});
                const int setup = m_setup;
                RunBackendSql(mevo::deviceStatement(mevo::Statement::WriteMustClick, SchemaName,
                                                    {QString::number(int(MustClickRunASR3)), DongleID}),
                              tellTimeoutMs);
                if (setup == m_setup) { // else a later set-up has the answer already
                    continueSetup();
                }
            });
    });
}

void MainWindow::useInputMethod(const QString &program)
{
    const int index = LocalUseASR3Index;
    const auto keep = [&program](QString &member, const char *key) {
        member = program;
        mevo::SettingsFile settings;
        if (settings.value(QLatin1String(key)).toString().isEmpty()) {
            settings.setValue(QLatin1String(key), program);
        }
    };
    if (index == mevo::thirdPartyXunFei) {
        keep(LocalASR3XunFeiInstallPath, "LocalASR3XunFeiInstallPath");
    } else if (index == mevo::thirdPartySogou) {
        keep(LocalASR3SougoInstallPath, "LocalASR3SougoInstallPath");
    } else {
        LocalASR3CustomInstallPath = program;
    }
    m_methodSetUp = index;
    ThirdPartyActive = true;
    qInfo().noquote() << "Input method: in force:" << QFileInfo(program).fileName();
    if (index == mevo::thirdPartyXunFei) {
        ConfigureXunFeiIme();
        if (m_startAtSetup && !LocalMustClickRunASR3) {
            StartXunFeiWindow();
        }
    }
    m_startAtSetup = false;
    showLanguages();
}

void MainWindow::fallBackFromInputMethod(const QString &text)
{
    message(text, mevo::MessageIcon::Information, messageMs);
    m_startAtSetup = false;
    mevo::leaveInputMethod(*this); // for this run: it may be there at the next start
    restoreEngine();
    setLanguageButtonImage(mevo::languageButtonStyle(QStringLiteral("PuTongHua"), ShowVerticalUI));
    showLanguages();
}

void MainWindow::offerInputMethod()
{
    if (m_methodBoxOpen || (m_installer && m_installer->isBusy())) {
        return;
    }
    m_methodBoxOpen = true;
    const int index = LocalUseASR3Index;
    whenStarted([this, index] {
        if (isLeaving()) {
            m_methodBoxOpen = false;
            return;
        }
        enum Button { Fetch, NotNow };
        const bool offline = index == mevo::thirdPartyXunFei && ForceUseXFMore3V;
        const QString text =
            tr("点击'下载'按钮将安装") + ASR3Name +
            (offline ? tr("(支持离线语音识别),安装时请按提示操作！") : tr(",安装时请按提示操作！"));
        mevo::askAside(
            this,
            {tr("提示"), text, {tr("下载"), tr("暂不下载")}, false, {mevo::Answer::Accept, mevo::Answer::No}},
            [this, index](int answer) {
                m_methodBoxOpen = false;
                if (isLeaving() || !LocalEnableASR3 || LocalUseASR3Index != index) {
                    return;
                }
                if (answer == Fetch) {
                    DownloadInputMethod();
                } else if (answer == NotNow) {
                    refuseInputMethod();
                }
            });
    });
}

void MainWindow::refuseInputMethod()
{
    m_startAtSetup = false;
    writeSettings(mevo::leaveInputMethod(*this));
    restoreEngine();
    EnableASR3 = false;
    UseASR3Index = mevo::thirdPartyNone;
    ++m_languageChoice;
    showLanguages();
    m_engineTold = tellBackend(inputMethodStatement());
    rememberWhetherEngineTold();
}

void MainWindow::DownloadInputMethod()
{
    downloadInputMethod(LocalUseASR3Index == mevo::thirdPartySogou ? mevo::thirdPartySogou
                                                                   : mevo::thirdPartyXunFei);
}

void MainWindow::downloadInputMethod(int index)
{
    if (isLeaving()) {
        return;
    }
    const auto address = [this](const mevo::Asr3Row &row) {
        return isXpClass() ? row.ASR3DownWebXP : row.ASR3DownWeb;
    };
    mevo::Asr3Row row = m_asr3Row;
    if (index != LocalUseASR3Index || address(row).isEmpty()) { // from the settings, before it is set up
        row = askForAsr3Row(index);
        if (isLeaving()) {
            return;
        }
        ASR3Name = row.ASR3Name;
    }
    if (!m_installer) {
        m_inputMethodHands = std::make_unique<mevo::InputMethodHands>(*this);
        m_installer = std::make_unique<ThirdPartyVoiceInput>(*this, *m_inputMethodHands, mevo::appFolder(),
                                                             m_endpoints.VerifyCertificates);
    }
    m_installer->Start(QUrl(address(row)));
}

/// After an installer has been opened: the set-up goes on when the program is there.
void MainWindow::watchForInstallation(int looks)
{
    if (m_watchesInstallation) {
        return;
    }
    m_watchesInstallation = true;
    m_platform.time->callAfter(installationLookMs, this, [this, looks] {
        m_watchesInstallation = false;
        if (isLeaving() || !LocalEnableASR3 || ThirdPartyActive || looks <= 0) {
            return;
        }
        if (LocalUseASR3Index == mevo::thirdPartyXunFei) {
            ReadXunFeiIme();
        }
        if (findInputMethodProgram(LocalUseASR3Index).isEmpty()) {
            watchForInstallation(looks - 1);
        } else {
            SetupAsr3();
        }
    });
}

void MainWindow::endInputMethodDownload()
{
    m_installer.reset();
    m_inputMethodHands.reset();
}

void MainWindow::askToRestartComputer()
{
    whenStarted([this] {
        if (isLeaving()) {
            return;
        }
        enum Button { Now, Later };
        mevo::askAside(this,
                       {tr("提示"),
                        tr("必须重启电脑才能正常使用讯飞输入法！"),
                        {tr("立即重启"), tr("稍后重启")},
                        true,
                        {mevo::Answer::Accept, mevo::Answer::No},
                        Later},
                       [this](int answer) {
                           if (isLeaving()) {
                               return;
                           }
                           if (answer == Now) {
                               FirstRunApp = false; // the next start must not undo the choice
                               writeSettings({{"FirstRunApp", 0}});
                               m_platform.processes->restartComputer();
                               return;
                           }
                           tellHowToSetXunFei();
                       });
    });
}

void MainWindow::tellHowToSetXunFei()
{
    message(tr("初始化软件成功，如有问题，请尝试重新打开软件！"), mevo::MessageIcon::Information, messageMs);
    if (RunThirdpartVoiceInputByORV != 0) {
        return; // it has run, or the user has been told
    }
    enum Button { ShowHow, OpenSettings, LaterOn };
    mevo::askAside(this,
                   {tr("提示"),
                    tr("请重新安装语音手写板软件\r或点击查看如何设置（点击快捷键设置->常规功能键->"
                       "打勾启用语音输入快捷键，并设为F6）"),
                    {tr("查看如何设置"), tr("打开设置窗口"), tr("以后再设置")},
                    false,
                    {mevo::Answer::Accept, mevo::Answer::Accept, mevo::Answer::No},
                    LaterOn},
                   [this](int answer) {
                       if (isLeaving()) {
                           return;
                       }
                       RunThirdpartVoiceInputByORV = answer == ShowHow || answer == OpenSettings ? 1 : 0;
                       writeSettings({{"RunThirdpartVoiceInputByORV", RunThirdpartVoiceInputByORV}});
                       if (answer == ShowHow) {
                           openWebPage(UserManual);
                       } else if (answer == OpenSettings) {
                           m_platform.time->callAfter(settingsWindowMs, this,
                                                      [this] { OpenXunFeiInputSetting(); });
                       }
                   });
}

void MainWindow::UseXunFeiOfflineOnly(bool always)
{
    enum Button { RestartNow, RestartByHand };
    mevo::askAside(this,
                   {tr("提示"),
                    tr("重启电脑该功能才生效;\t\n取消：点击此按钮，将退出并保持以前配置"),
                    {tr("自动重启电脑"), tr("手动重启电脑"), tr("取消")},
                    true,
                    {mevo::Answer::Accept, mevo::Answer::Accept, mevo::Answer::Back}},
                   [this, always](int answer) {
                       if (isLeaving() || (answer != RestartNow && answer != RestartByHand)) {
                           return;
                       }
                       const QString error = mevo::replaceXunFeiConfig(
                           mevo::appFile(always ? QStringLiteral("configXFOffline.xml")
                                                : QStringLiteral("configXFOnline.xml")),
                           mevo::xunFeiFolder(genericData(), isXpClass()) + QStringLiteral("config.xml"));
                       if (!error.isEmpty()) {
                           message(tr("无法修改讯飞输入法的配置：%1").arg(error), mevo::MessageIcon::Warning,
                                   messageMs);
                           return;
                       }
                       OnlyUseXunFeiOfflineASR = PureXunFeiOfflineVersion = always;
                       writeSettings({{"OnlyUseXunFeiOfflineASR", int(always)},
                                      {"PureXunFeiOfflineVersion", int(always)}});
                       if (answer == RestartNow) {
                           m_platform.processes->restartComputer();
                       }
                   });
}

void MainWindow::OpenXunFeiInputSetting()
{
    openXunFeiTool(QStringLiteral("iFlyIMEConfig.exe"));
}

void MainWindow::OpenXunFeiInputHW()
{
    openXunFeiTool(QStringLiteral("iFlyHandwriting.exe"));
}

void MainWindow::openXunFeiTool(const QString &fileName)
{
    const QString tool = mevo::toolOfMethod(fileName, mevo::builtInAsr3Row(mevo::thirdPartyXunFei, false),
                                            LocalASR3XunFeiInstallPath, *m_platform.registry);
    if (tool.isEmpty() || !m_platform.processes->startDetached(tool, {})) {
        message(tr("没有找到讯飞输入法的程序 %1！").arg(fileName), mevo::MessageIcon::Information, messageMs);
    }
}
