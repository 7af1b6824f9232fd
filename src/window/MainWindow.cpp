#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/ApplicationFiles.h"
#include "base/Endpoints.h"
#include "base/InterfaceLanguage.h"
#include "base/ProgramVersion.h"
#include "base/SettingsFile.h"
#include "base/VersionText.h"
#include "commands/CommandMatcher.h"
#include "device/DeviceCommands.h"
#include "device/GetHIDDataThread.h"
#include "engines/BaiduSpeech.h"
#include "engines/BaiduTokens.h"
#include "engines/CredentialStore.h"
#include "engines/TencentSpeech.h"
#include "engines/XunFeiStream.h"
#include "output/UndeliveredTexts.h"
#include "service/PushChannel.h"
#include "service/WebApi.h"
#include "service/WebCipher.h"
#include "service/isOnl.h"
#include "session/VoiceModes.h"
#include "state/SettingsTable.h"
#include "ui/Ask.h"
#include "ui/CPatialResultDialog.h"
#include "ui/CompanionWindow.h"
#include "ui/MicTipDialog.h"
#include "ui/QToolTips.h"
#include "ui/commands/CommandWordDialog.h"
#include "update/MyUpdateChecker.h"
#include "update/StartReport.h"
#include "window/AccountHands.h"
#include "window/FirstStartHands.h"
#include "window/InputMethods.h"
#include "window/InstanceCalls.h"
#include "window/SettingsHands.h"
#include "window/UpdateHands.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <utility>

namespace {
constexpr int afterRecognitionMs = 5000;
constexpr int topMostMs = 500;
constexpr int updateCheckMs = 5000;
MainWindow *theWindow = nullptr;
} // namespace

MainWindow *MainWindow::instance()
{
    return theWindow;
}

MainWindow::MainWindow(mevo::Platform &platform, QWidget *parent)
    : QMainWindow(parent)
    , m_platform(platform)
    , m_session(*this, m_sessionHands)
    , m_pipeline(*this, m_pipelineHands)
    , m_results([this](const mevo::SessionContext &session,
                       const mevo::SessionText &text) { takeInOrder(session, text); },
                [this] { return isTyping(); })
    , m_inputMethods(std::make_unique<mevo::InputMethods>(*this))
    , m_instanceCalls(std::make_unique<mevo::InstanceCalls>(*this))
{
    setAttribute(Qt::WA_QuitOnClose, false);
    m_endpoints = mevo::loadEndpoints(*this);
    m_versionText = mevo::versionText();
    m_buildStamp = mevo::buildStamp();
    ReadXunFeiIme();
    readEarlySettings();
    installInterfaceLanguage();
    m_firstArgument = QCoreApplication::arguments().value(1);
    CurrentVersion = mevo::programVersion();
    m_startClock.mark("settings");
    createTrayIcon();
    createMenu();
    loadUndelivered();
    BaiDuCurrentVoiceType = mevo::SettingsFile().value(QStringLiteral("BaiDuCurrentVoiceType")).toString();
    readServerAddresses();
    theWindow = this;
    createServices();
    m_startClock.mark("tray");
    openDeviceAtStart();
    m_startClock.mark("device");
    createNetworkObjects();
    m_startClock.mark("network");
    // What an exit needs is made in any case; the rest only for a program that will run.
    if (!m_exit.certain()) {
        introduceDevice();
    }
    m_startClock.mark("identity and product");
    createRecorderAndBar();
    m_startClock.mark("recorder and bar");
    if (!m_exit.certain()) {
        loadServicesAndSettings();
    }
    m_startClock.mark("accounts and record");
    createTipWindow();
    createTimers();
    watchScreens();
    placeBar(299, 199, 200);
    mevo::enterMode(*this, &SessionState::VoiceTypeMode);
    mevo::saveLastModes(*this);
    m_micTip->UpdateStatusButtons();
    if (!m_exit.certain()) {
        startSiblings();
        finishStart();
    }
    endConstruction();
}

MainWindow::~MainWindow()
{
    if (m_reader != nullptr) {
        stopReader(); // a window that goes without an exit must not leave a thread that reads its flags
    }
    // What refers to this window's state goes before the state does.
    m_translationHands.retire();
    closePushSocket();
    m_settingsHands.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete m_commandWords;
    delete m_micTip;
    delete m_recorder;
    delete m_retiredRecorder;
    delete m_online;
    theWindow = nullptr;
    mevo::questionWindows = nullptr;
}

void MainWindow::createServices()
{
    m_webApi = std::make_unique<mevo::WebApi>(*this, *m_cipher);
    m_credentials = std::make_unique<mevo::CredentialStore>(*this, *m_webApi, *m_cipher);
    m_tokens = std::make_unique<mevo::BaiduTokens>(*this, *m_webApi, *m_cipher, m_endpoints);
    m_accounts = std::make_unique<mevo::AccountHands>(*this);
    m_accounts->read();
    m_firstStart = new mevo::FirstStartHands(*this);
}

void MainWindow::createNetworkObjects()
{
    m_network = new QNetworkAccessManager(this);
    connect(m_network, &QNetworkAccessManager::finished, this, &MainWindow::slot_requestFinished_NotRead);
    XFPartialDlg = new CPatialResultDialog(this);
    m_online = new isOnl(*m_platform.networkState, HidBusy, this);
    m_online->GetInternetConnectState();
    IsOnline = m_online->isOnline;
    connect(m_online, &isOnl::returnisonline, this, &MainWindow::showOnline);
    m_webApi->shareWait(startWaitMs);
    startStep(&MainWindow::probeAtStart);
}

void MainWindow::startStep(StartStep step)
{
    if (m_exit.certain()) {
        return;
    }
    const int cutOff = m_webApi->cutOffCount();
    (this->*step)();
    if (!m_lateSteps.empty() || m_webApi->cutOffCount() != cutOff) {
        m_lateSteps.push_back(step);
    }
}

void MainWindow::runLateSteps()
{
    for (const StartStep step : std::exchange(m_lateSteps, {})) {
        if (isLeaving()) {
            return;
        }
        (this->*step)();
    }
    if (!isLeaving()) {
        startIsOver();
    }
}

/// All has been read that there is to read.
void MainWindow::startIsOver()
{
    qInfo() << "Start: ready";
    m_firstStart->startIsOver();
}

void MainWindow::createRecorderAndBar()
{
    const bool firstRun = FirstRunApp;
    m_recorder = new AudioRecorder(*this, m_platform, *this, this);
    if (firstRun && !FirstRunApp && !BackendReachable) {
        markChoiceUntold(); // it has chosen an engine for the first run
    }
    m_baiduSpeech = std::make_unique<Relay_Speech::BaiduSpeech>(
        *this, *m_recorder, *m_platform.systemFacts, static_cast<mevo::EngineHost &>(*this), m_endpoints);
    connect(m_baiduSpeech.get(), &Relay_Speech::BaiduSpeech::finishTrans, this,
            [this](const QString &text, int session) {
                deliverRecognised(session, {text, false});
            });
    connect(m_baiduSpeech.get(), &Relay_Speech::BaiduSpeech::sessionEnded, this, &MainWindow::endSession);
    m_tencentSpeech = std::make_unique<mevo::TencentSpeech>(
        *this, static_cast<mevo::EngineHost &>(*this), *m_platform.time, *m_platform.processes, m_endpoints,
        [this](const QString &text, int session) {
            deliverRecognised(session, {text, false});
        });
    m_xunFei = std::make_unique<mevo::XunFeiStream>(*this, *m_platform.time, m_endpoints,
                                                    static_cast<mevo::XunFeiHost &>(*this));
    createBar();
    VoiceTypeMode = false;
    VoiceCommandWordMode = false;
    VoiceSearchMode = false;
    VoiceTranslateMode = false;
}

void MainWindow::loadServicesAndSettings()
{
    startStep(&MainWindow::loadAllCredentials);
    LoadSettings();
    startStep(&MainWindow::readRecordAtStart);
}

void MainWindow::createTipWindow()
{
    m_micTip = new MicTipDialog(*this, *this, this);
    new mevo::CompanionWindow(m_micTip, *m_platform.ownWindows);
    new mevo::CompanionWindow(XFPartialDlg, *m_platform.ownWindows);
    connect(m_micTip, &MicTipDialog::returnMouseKeyResult, this, &MainWindow::ProcessResult);
    connect(m_micTip, &MicTipDialog::CreateTransDlgSignal, this, &MainWindow::CreateTransDlg);
    connect(m_micTip, &MicTipDialog::CallMainFunctionSignal, this, &MainWindow::CallMainFunctionSlot);
    connect(this, &MainWindow::updateMicWin, m_micTip, &MicTipDialog::UpdataMicWin);
    connect(m_recorder, &AudioRecorder::SendRec2Main, this, &MainWindow::showRecText);
    connect(m_recorder, &AudioRecorder::SendVolume2MicDlg, m_micTip, &MicTipDialog::showMicVolume);
    m_micTip->hide();
}

void MainWindow::createTimers()
{
    m_afterRecognition = new QTimer(this);
    m_afterRecognition->setSingleShot(true);
    m_afterRecognition->setInterval(afterRecognitionMs);
    connect(m_afterRecognition, &QTimer::timeout, this, &MainWindow::onEnterTimerAfterRec);
    m_topMost = new QTimer(this);
    connect(m_topMost, &QTimer::timeout, this, &MainWindow::setWndTopMostTimeout);
    m_topMost->start(topMostMs);
    m_noticesLater.setSingleShot(true);
    connect(&m_noticesLater, &QTimer::timeout, this, &MainWindow::showNotices);
}

void MainWindow::startSiblings()
{
    if (m_platform.windowSystem->findWindow(QString(), QStringLiteral("ORVQuillary")) == 0) {
        m_platform.processes->startSibling(QStringLiteral("\\..\\HW\\PenPadHost.exe"), {}, false);
    }
    m_platform.processes->startSibling(QStringLiteral("\\KeypadHost.exe"), {QStringLiteral("ORVKBAppHide")},
                                       true);
}

void MainWindow::finishStart()
{
    if (DeviceConnected) {
        m_device->ResetDeviceKeys();
    }
    QTimer::singleShot(updateCheckMs, this, &MainWindow::CheckUpdateTimeout); // looks at the switch by then
    if (DeviceConnected) {
        setTrayPicture(IsOnline ? QStringLiteral(":/rec/ORDeviceConnect.png")
                                : QStringLiteral(":/rec/ORNoNetwork.png"));
    } else if (NoDeviceMode) {
        setTrayPicture(QStringLiteral(":/rec/NoORDevice.png"));
        show();
    } else {
        setTrayPicture(QStringLiteral(":/rec/ORDeviceDisConnect.png"));
        hide();
    }
    startStep(&MainWindow::openPushSocket);
    m_toolTips = new QToolTips(this);
    startStep(&MainWindow::SetupAsr3);
    BuildAsrLanMenu(false, false);
    startStep(&MainWindow::reportAddress);
    m_webApi->endSharedWait();
    InitDone = true;
    m_startClock.mark("windows and menus");
    mevo::reportStart(QCoreApplication::applicationDirPath());
    clearUpdateRest();
    followCommandTables();
    qInfo().noquote() << "Start: the bar comes;" << m_startClock.summary();
    QTimer::singleShot(0, this, &MainWindow::setProgramIcon);
    if (m_lateSteps.empty()) {
        startIsOver();
    } else if (!m_exit.certain()) {
        qInfo("Start: %d requests to services were put off", m_webApi->cutOffCount());
        QTimer::singleShot(0, this, &MainWindow::runLateSteps);
    }
    for (const auto &action : std::exchange(m_onceStarted, {})) {
        QTimer::singleShot(0, this, action);
    }
    if (!m_inputMethods->wantsElevation() && RunAsAdmin) {
        clearRunAsAdministrator();
    }
}

/// What came from outside meanwhile is taken now.
void MainWindow::endConstruction()
{
    const bool complete = InitDone;
    InitDone = true;
    const std::optional<ExitKind> exit = m_exit.constructionEnded();
    if (exit && *exit != ExitKind::Asked) {
        qInfo() << "Start: ends at once, an exit was asked for";
        m_countersKnown = complete;
        walkExit(*exit);
        return;
    }
    m_changes.release();
    scheduleDeviceChanges();
    if (exit) {
        QTimer::singleShot(0, this, &MainWindow::on_exitAppAction);
    } else if (m_menuWanted) {
        QTimer::singleShot(0, this, &MainWindow::presentMenu);
    }
}

void MainWindow::slot_requestFinished_NotRead(QNetworkReply *) {}

void MainWindow::TimeOutReadInitPara()
{
    if (!InitDone &&
        !m_exit.certain()) { // within a wait of the construction, which has asked all this already
        m_lateSteps.push_back(&MainWindow::TimeOutReadInitPara);
        return;
    }
    if (isLeaving()) {
        return;
    }
    const bool answered = ProbeBackend() >= 0;
    if (isLeaving()) {
        return; // waits run event loops, and an exit may have come through one
    }
    introduceProduct(); // another address may have it
    if (!answered || isLeaving()) {
        return;
    }
    loadAllCredentials();
    if (isLeaving()) {
        return;
    }
    LoadSettings();
    SetupAsr3();
    if (isLeaving()) {
        return;
    }
    ReadServerInfo();
    if (!IsOnline || isLeaving()) {
        return;
    }
    BackendReachable = true;
    openPushSocket();
}

void MainWindow::DownloadBaiduINIFileTimeout()
{
    TimeOutReadInitPara();
    if (!isLeaving()) {
        settleFirstArrival(); // its record has been read only now
        SetupAsr3();
    }
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (ExitInProgress) {
        event->accept();
        return;
    }
    // A window manager's close asks for the same exit as the menu.
    event->ignore();
    QTimer::singleShot(0, this, &MainWindow::on_exitAppAction);
}
