#include "window/InputMethods.h"

#include "audio/AudioRecorder.h"
#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "base/WholeFile.h"
#include "engines/EngineSelection.h"
#include "engines/LanguageImages.h"
#include "inputmethods/CustomMethod.h"
#include "inputmethods/InstallerAddress.h"
#include "inputmethods/MethodSearch.h"
#include "inputmethods/MethodSetup.h"
#include "inputmethods/SpeechInputIni.h"
#include "inputmethods/ThirdPartyVoiceInput.h"
#include "inputmethods/XunFeiIme.h"
#include "service/Statements.h"
#include "service/WebApiReply.h"
#include "session/VoiceModes.h"
#include "window/InputMethodHands.h"
#include "window/MainWindow.h"

#include <QDebug>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>

namespace mevo {

namespace {

constexpr int rowTimeoutMs = 2000;

QString genericData()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

bool isMethod(int index)
{
    return index >= thirdPartyXunFei && index <= thirdPartyCustom;
}

} // namespace

InputMethods::InputMethods(MainWindow &window)
    : m_window(window)
    , m_state(window)
{
}

InputMethods::~InputMethods() = default;

QString InputMethods::nameToRead(const Asr3Row &row)
{
    return row.ASR3Name == QStringLiteral("讯飞输入法") ? MainWindow::tr("讯飞输入法") : row.ASR3Name;
}

QString InputMethods::xunFeiFile(const char *name) const
{
    return xunFeiFolder(genericData(), m_window.isXpClass()) + QLatin1String(name);
}

void InputMethods::readXunFei()
{
    const auto content = readWholeFile(xunFeiFile("iflyImeCfg.xml"));
    const auto installation = content ? parseIflyImeCfg(*content) : std::nullopt;
    if (!installation) {
        return;
    }
    const QString program = installation->folder.isEmpty()
                                ? QString()
                                : programAt(installation->folder + QStringLiteral("/iFlyVoice.exe"));
    const bool online = m_window.m_online != nullptr ? m_state.IsOnline.load()
                                                     : m_window.m_platform.networkState->connection() !=
                                                           NetworkState::Connection::None;
    applyXunFeiInstallation(m_state, *installation, program, online,
                            m_rowIndex == thirdPartyXunFei ? &m_row : nullptr);
    SettingsFile().setValue(QStringLiteral("XFVM3"), int(m_state.XFVM3));
}

int InputMethods::configureXunFei()
{
    const XunFeiConfiguration configured =
        configureXunFeiFile(xunFeiFile("config.xml"), !m_state.LocalMustClickRunASR3);
    if (configured.usage != 0) {
        m_state.ASR3ShortCutKey = configured.usage;
    }
    if (configured.result == XunFeiConfigured::Changed) {
        askToRestartComputer();
    }
    return int(configured.result);
}

void InputMethods::setUp()
{
    const int setup = ++m_setup;
    if (!isMethod(m_state.LocalUseASR3Index) && isMethod(m_state.UseASR3Index)) {
        m_state.LocalUseASR3Index =
            m_state.UseASR3Index; // the record wants one, and the user has not said which
    }
    const int index = m_state.LocalUseASR3Index;
    m_elevationWanted = m_state.LocalEnableASR3 && index == thirdPartyXunFei;
    if (!m_state.LocalEnableASR3 || index != m_setUpIndex) {
        m_state.ThirdPartyActive = false;
        m_setUpIndex = thirdPartyNone;
    }
    if (m_state.LocalEnableASR3 && !isMethod(index)) {
        leaveInputMethod(m_state);
        if (restoreEngine()) {
            m_window.showLanguages();
        }
    }
    if (!m_state.LocalEnableASR3) {
        settleChoice();
        return;
    }
    if (asksForRow(index)) {
        if (index == thirdPartyXunFei) {
            readXunFei();
            const auto config = readWholeFile(xunFeiFile("config.xml"));
            m_state.XFOfflineMode = config && xunFeiOfflineMode(*config).value_or(false);
        }
        const Asr3Row row = askForRow(index);
        if (!isSetUpFor(setup, index)) {
            return; // the wait has let an exit through, or another choice
        }
        if (index == thirdPartyXunFei && row.thirdGeneration != wantsThirdGeneration(m_state)) {
            setUp(); // another generation has been found meanwhile, and has a row of its own
            return;
        }
        m_row = row;
        m_rowIndex = index;
        if (index != thirdPartyCustom) { // whose key and window are not the service's
            applyAsr3Row(m_state, index, row);
            m_state.ASR3Name = nameToRead(row);
        }
    }
    continueSetUp();
}

bool InputMethods::isSetUpFor(int setup, int index) const
{
    return !m_window.isLeaving() && setup == m_setup && m_state.LocalEnableASR3 &&
           m_state.LocalUseASR3Index == index;
}

Asr3Row InputMethods::builtInRow(int index) const
{
    return index == thirdPartyCustom ? customAsr3Row(programBaseName(m_state.LocalASR3CustomInstallPath))
                                     : builtInAsr3Row(index, wantsThirdGeneration(m_state));
}

Asr3Row InputMethods::askForRow(int index)
{
    const Asr3Row builtIn = builtInRow(index);
    const QString table = asr3Table(wantsThirdGeneration(m_state));
    const QString reply = m_window.RunBackendSql(
        statementText(Statement::ReadInputMethod, {m_state.SchemaName, table, QString::number(index)}),
        rowTimeoutMs);
    const auto content = reply.isEmpty() ? std::nullopt : unwrapReply(*m_window.m_cipher, reply);
    if (!content || content->rows.empty()) {
        qInfo("Input method: the service has no row for method %d, what is built in is used", index);
        return builtIn;
    }
    const Asr3Row row = readAsr3Row(content->rows.front(), builtIn);
    const QString own = programBaseName(builtIn.ASR3ExeFileName);
    const bool another =
        index == thirdPartyCustom && !own.isEmpty() && programBaseName(row.ASR3ExeFileName) != own;
    return another ? builtIn : row;
}

/// From the search for the program on; also with an answer of the user's.
void InputMethods::continueSetUp()
{
    if (m_window.isLeaving() || m_window.m_recorder == nullptr || !m_state.LocalEnableASR3) {
        return;
    }
    const int index = m_state.LocalUseASR3Index;
    if (index == thirdPartyCustom) {
        setUpCustom();
    } else if (index != m_rowIndex) {
        return; // its row is being asked for, and its own set-up comes here
    }
    const QString program = findProgram(index);
    SetupFacts facts;
    facts.index = index;
    facts.consentAsked = SettingsFile().value(QLatin1String(consentKey)).toBool();
    facts.mustClick = m_state.LocalMustClickRunASR3;
    facts.found = !program.isEmpty();
    facts.forced = m_state.ForceUseASR3;
    facts.offlineWanted = m_state.OnlyUseXunFeiOfflineASR || m_state.PureXunFeiOfflineVersion;
    facts.installerHere = !m_installerTried && !bundledInstaller().isEmpty();
    facts.hasAddress = knownRow(index) != nullptr && !installerUrl(installerAddress(m_row)).isEmpty();
    const SetupStep step = nextSetupStep(facts);
    if (step != SetupStep::Ready) {
        m_state.ThirdPartyActive = false;
        m_setUpIndex = thirdPartyNone;
    }
    switch (step) {
    case SetupStep::AskConsent:
        askConsent();
        return;
    case SetupStep::Ready:
        use(program);
        return;
    case SetupStep::RunInstaller:
        m_installerTried = true;
        if (!m_window.m_platform.processes->startDetached(bundledInstaller(), {})) {
            qWarning("Input method: the installer beside the program cannot be started");
            continueSetUp(); // as without it
            return;
        }
        m_window.message(MainWindow::tr("将安装讯飞输入法，需手动点击，安装完可能会提示需要重启电脑！"),
                         MessageIcon::Information, messageMs);
        settleChoice();
        watchForInstallation();
        return;
    case SetupStep::FallBack:
        fallBack(m_state.ASR3Name +
                 MainWindow::tr("没有安装，因没有设置强制使用该语音输入，将自动切换到其它语音识别接口！"));
        return;
    case SetupStep::OfferDownload:
        offer();
        return;
    case SetupStep::NothingToHave:
        fallBack(
            MainWindow::tr("%1没有安装，服务器也没有提供下载地址。请自行安装，或在设置中指定其程序路径！")
                .arg(m_state.ASR3Name));
        return;
    }
}

std::optional<CustomMethod> InputMethods::customMethodOfSettings() const
{
    return customMethod(m_state.LocalASR3CustomInstallPath,
                        readCustomDescription(SettingsFile(customMethodGroup)),
                        {m_state.KeyShowNames, m_state.KeyCodes});
}

void InputMethods::setUpCustom()
{
    const Asr3Row *row = knownRow(thirdPartyCustom);
    m_state.ASR3Name = row != nullptr ? row->ASR3Name : programBaseName(m_state.LocalASR3CustomInstallPath);
    if (const auto method = customMethodOfSettings()) {
        m_window.writeSettings(applyCustomMethod(m_state, *method));
    }
}

/// A custom method's row says no more than where a missing one can be had: of Baidu's, which has no place of
/// its own in the menu.
bool InputMethods::asksForRow(int index) const
{
    if (index != thirdPartyCustom) {
        return true;
    }
    const auto method = customMethodOfSettings();
    return method && method->baidu && m_state.ShowASR3Custom && m_state.ForceUseASR3 &&
           findProgram(index).isEmpty();
}

/// The service's row of a method, where it has been asked for; XunFei's only for the generation that is
/// wanted, a custom method's only for the program that is.
const Asr3Row *InputMethods::knownRow(int index) const
{
    const bool wanted = index == thirdPartyXunFei   ? m_row.thirdGeneration == wantsThirdGeneration(m_state)
                        : index == thirdPartyCustom ? programBaseName(m_row.ASR3ExeFileName) ==
                                                          programBaseName(m_state.LocalASR3CustomInstallPath)
                                                    : true;
    return index == m_rowIndex && wanted ? &m_row : nullptr;
}

QString InputMethods::findProgram(int index) const
{
    const bool custom = index == thirdPartyCustom;
    if (custom && (!m_state.ShowASR3Custom || !customMethodOfSettings())) {
        return {}; // nothing says how it is operated
    }
    const QString &ownPath = custom                      ? m_state.LocalASR3CustomInstallPath
                             : index == thirdPartyXunFei ? m_state.LocalASR3XunFeiInstallPath
                                                         : m_state.LocalASR3SougoInstallPath;
    const Asr3Row *row = knownRow(index);
    return findInputMethod(row != nullptr ? *row : builtInRow(index), ownPath, *m_window.m_platform.registry,
                           programPlaces(*m_window.m_platform.systemFacts), m_entries);
}

QString InputMethods::bundledInstaller() const
{
    for (const QString &name : {QStringLiteral("iFlyIME_Setup.exe"), m_state.XFPKGName}) {
        const QString path = appFile(QFileInfo(name).fileName());
        if (!name.isEmpty() && QFileInfo(path).isFile()) {
            return path;
        }
    }
    return {};
}

QString InputMethods::missing(int index) const
{
    const bool custom = index == thirdPartyCustom;
    if (m_state.BackendReachable && (!custom || asksForRow(index))) {
        return {}; // the service may have an installer; it is asked when the method is chosen
    }
    if (!findProgram(index).isEmpty()) {
        return {};
    }
    if (custom) {
        return MainWindow::tr("没有找到自定义语音输入法的程序 %1，请在设置中重新选择！")
            .arg(m_state.LocalASR3CustomInstallPath);
    }
    return index == thirdPartySogou
               ? MainWindow::tr("没有找到搜狗语音输入法的程序，也无法连接服务器下载。请安装后再选择，"
                                "或在设置中指定其程序路径！")
               : MainWindow::tr("没有找到讯飞语音输入法的程序，也无法连接服务器下载。请安装后再选择，"
                                "或在设置中指定其程序路径！");
}

/// What both ways of choosing have in common; false when the method is not there and cannot be had.
bool InputMethods::beginChoice(int index)
{
    const QString lack = isMethod(index) ? missing(index) : QString();
    if (!lack.isEmpty()) {
        m_window.message(lack, MessageIcon::Information, messageMs);
        m_window.showLanguages(); // the mark goes back to the row in force
        return false;
    }
    saveLastModes(m_state);
    leaveAtChoice();
    if (m_window.RunAsAdmin) {
        m_window.clearRunAsAdministrator();
    }
    rememberEngine();
    m_window.noteUserChoice();
    m_state.ThirdPartyActive = false;
    m_setUpIndex = thirdPartyNone;
    m_state.BaiduQuotaHit = m_state.XunFeiQuotaHit = m_state.TencentQuotaHit = false; // they silence the keys
    m_choicePending = false;
    m_startAtSetUp = true;
    askAgainAboutClosedConsent();
    m_window.forgetUntoldEngine();
    return true;
}

/// Whoever chooses a method and has closed the question, in this run or an earlier one, is asked once more.
void InputMethods::askAgainAboutClosedConsent()
{
    if (SettingsFile().value(QLatin1String(consentClosedKey)).toBool()) {
        m_state.LocalMustClickRunASR3 = false; // until it has been answered
        m_window.writeSettings({{consentClosedKey, 0}, {"LocalMustClickRunASR3", 0}});
    }
}

void InputMethods::chooseOfMenu(const LanguageRow &row)
{
    const int index = QByteArray(row.code).toInt();
    if (m_window.m_recorder == nullptr || !beginChoice(index)) {
        return;
    }
    m_window.writeSettings(chooseLanguage(row, m_state, *m_window.m_recorder).writes);
    m_state.EnableASR3 = true;
    m_state.UseASR3Index = index;
    m_window.showLanguages();
    const int choice = m_window.m_languageChoice;
    m_window.tellMethodChoice(Statement::ChooseInputMethod);
    if (!m_window.isLeaving() && choice == m_window.m_languageChoice) { // the wait lets others through
        setUp();
    }
}

void InputMethods::chooseOfSettings(int index)
{
    if (m_window.m_recorder == nullptr || !beginChoice(index)) {
        return;
    }
    m_window.writeSettings(mevo::chooseInputMethod(index, m_state, *m_window.m_recorder).writes);
    if (isMethod(index)) {
        m_state.UseASR3Index = index;
    }
    m_choicePending = true;
    const int choice = m_window.m_languageChoice;
    QTimer::singleShot(0, &m_window, [this, choice] {
        if (!m_window.isLeaving() && choice == m_window.m_languageChoice) {
            m_window.showLanguages();
            setUp();
        }
    });
}

void InputMethods::choiceOvertaken()
{
    m_choicePending = false;
}

void InputMethods::rememberEngine()
{
    if (!m_state.LocalEnableASR3 && m_window.m_recorder != nullptr) {
        const AudioRecorder &recorder = *m_window.m_recorder;
        m_engineBefore = hasEngine(recorder) ? engineInForce(recorder) : Engine::Tencent;
    }
}

/// The engine that was in force before, where a method goes that the settings have left without one.
bool InputMethods::restoreEngine()
{
    if (m_window.m_recorder == nullptr || hasEngine(*m_window.m_recorder)) {
        return false;
    }
    m_window.writeSettings(chooseEngine(m_engineBefore, m_state, *m_window.m_recorder).writes);
    return true;
}

/// The record is told how a choice of the settings has ended.
void InputMethods::settleChoice()
{
    if (!m_choicePending) {
        return;
    }
    m_choicePending = false;
    m_state.EnableASR3 = m_state.LocalEnableASR3;
    m_window.tellRecord({{QStringLiteral("EnableASR3"), int(m_state.EnableASR3)},
                         {QStringLiteral("MustClickRunASR3"), int(m_state.MustClickRunASR3)}});
    m_window.refreshSettings();
}

void InputMethods::pathStored()
{
    QTimer::singleShot(0, &m_window, [this] {
        if (m_window.isLeaving() || m_window.m_recorder == nullptr) {
            return;
        }
        m_window.showLanguages(); // whose rows depend on what is there
        if (m_state.LocalEnableASR3) {
            setUp();
        }
    });
}

void InputMethods::use(const QString &program)
{
    const int index = m_state.LocalUseASR3Index;
    const auto keep = [&program](QString &member, const char *key) {
        member = program;
        SettingsFile settings;
        if (settings.value(QLatin1String(key)).toString().isEmpty()) {
            settings.setValue(QLatin1String(key), program);
        }
    };
    if (index == thirdPartyXunFei) {
        keep(m_state.LocalASR3XunFeiInstallPath, "LocalASR3XunFeiInstallPath");
    } else if (index == thirdPartySogou) {
        keep(m_state.LocalASR3SougoInstallPath, "LocalASR3SougoInstallPath");
    } else {
        m_state.LocalASR3CustomInstallPath = program;
        const auto method = customMethodOfSettings();
        if (method && method->baidu && !m_state.LocalMustClickRunASR3) {
            configureSpeechInput(speechInputIniPath(genericData(), m_window.isXpClass()));
        }
    }
    m_setUpIndex = index;
    m_state.ThirdPartyActive = true;
    qInfo().noquote() << "Input method: in force:" << QFileInfo(program).fileName();
    if (index == thirdPartyXunFei) {
        configureXunFei();
        if (m_startAtSetUp && !m_state.LocalMustClickRunASR3) {
            startXunFeiWindow();
        }
    }
    m_startAtSetUp = false;
    m_window.showLanguages();
    settleChoice();
}

void InputMethods::fallBack(const QString &text)
{
    m_window.message(text, MessageIcon::Information, messageMs);
    m_startAtSetUp = false;
    leaveInputMethod(m_state); // for this run: it may be there at the next start
    restoreEngine();
    m_window.setLanguageButtonImage(languageButtonStyle(QStringLiteral("PuTongHua"), m_state.ShowVerticalUI));
    m_window.showLanguages();
    settleChoice();
}

} // namespace mevo
