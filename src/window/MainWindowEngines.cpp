// Engines as the main window carries them: the language menu, changes of engine, accounts and tokens.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "engines/AsrLanMenu.h"
#include "engines/BaiduSpeech.h"
#include "engines/BaiduTokens.h"
#include "engines/CredentialStore.h"
#include "engines/EngineSelection.h"
#include "engines/TencentSpeech.h"
#include "inputmethods/CustomMethod.h"
#include "output/UndeliveredTexts.h"
#include "service/Statements.h"
#include "service/WebApi.h"
#include "service/WebApiReply.h"
#include "session/VoiceModes.h"
#include "ui/LastingMenu.h"
#include "ui/QToolTips.h"
#include "window/InputMethods.h"
#include "window/InstanceCalls.h"

#include <QAction>
#include <QActionGroup>
#include <QBuffer>
#include <QCoreApplication>
#include <QDebug>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWidgetAction>

#include <algorithm>

namespace {

constexpr int modeChangeTimeoutMs = 2000;
constexpr int withoutWaiting = 1;
/// Set while the backend has not heard of the language that the user has chosen.
constexpr char untoldChoice[] = "EngineChoiceUntold";

const char menuStyle[] =
    "QMenu { border: 2px solid rgb(0, 162, 232); background-color: rgb(32, 44, 58); }"
    "QMenu::item { min-height: 26px; max-height: 38px; padding: 0 24px 0 30px; color: white; }"
    "QMenu::item:selected { background-color: rgb(0, 162, 232); }"
    "QMenu::separator { height: 1px; background: rgb(70, 86, 104); margin: 3px 8px; }"
    "QMenu::indicator { width: 12px; height: 12px; left: 10px; }";

QWidgetAction *titleRow(const QString &text, QMenu *menu)
{
    auto *label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    label->setFont(QFont(QStringLiteral("SimHei"), 12, 75));
    label->setStyleSheet(QStringLiteral("QLabel { color: white; padding: 6px 18px; }"));
    auto *action = new QWidgetAction(menu);
    action->setDefaultWidget(label);
    action->setEnabled(false); // the keyboard passes it by
    return action;
}

} // namespace

void MainWindow::BuildAsrLanMenu(bool persistEngine, bool setupInputMethod)
{
    if (m_recorder == nullptr || m_languageButton == nullptr) {
        return;
    }
    {
        const mevo::SettingsFile settings;
        TXCurrentVoiceType = settings.value(QStringLiteral("TXCurrentVoiceType")).toString();
        BaiDuCurrentVoiceType = settings.value(QStringLiteral("BaiDuCurrentVoiceType")).toString();
        XunFeiWebApiCurrentVoiceType =
            settings.value(QStringLiteral("XunFeiWebApiCurrentVoiceType")).toString();
    }
    showLanguages();
    if (setupInputMethod && LocalEnableASR3) {
        SetupAsr3();
    }
    if (persistEngine && m_recorder != nullptr) { // the set-up may have let an exit through
        tellEngine();
    }
}

void MainWindow::showLanguages()
{
    if (m_recorder == nullptr || m_languageButton == nullptr) {
        return;
    }
    mevo::MenuFacts facts;
    facts.xpClass = isXpClass();
    facts.vertical = ShowVerticalUI;
    facts.customMethodKnown =
        mevo::customMethod(LocalASR3CustomInstallPath,
                           mevo::readCustomDescription(mevo::SettingsFile(mevo::customMethodGroup)),
                           {KeyShowNames, KeyCodes})
            .has_value();
    const mevo::AsrMenu built = mevo::buildAsrMenu(*this, *m_recorder, facts);
    if (built.clearTencentDialect) {
        UseTecentZhDialect = false;
    }
    if (built.forceTencent) {
        const mevo::EngineChange change = mevo::fallToTencent(*this, *m_recorder);
        mevo::SettingsFile settings;
        for (const mevo::SettingWrite &write : change.writes) {
            settings.setValue(QLatin1String(write.key), write.value);
        }
    }
    // The menu may be the one whose row is being handled: it goes when that is over.
    if (m_languageMenu != nullptr) {
        m_languageMenu->deleteLater();
    }
    m_languageMenu = new QMenu(this);
    new mevo::LastingMenu(m_languageMenu);
    m_languageMenu->setWindowTitle(
        QStringLiteral("LanguageMenu")); // seen by nobody; tools find the menu by it
    m_languageMenu->setStyleSheet(QLatin1String(menuStyle));
    m_languageMenu->addAction(titleRow(tr("请选择语音识别引擎"), m_languageMenu));
    m_languageMenu->addSeparator();
    auto *group = new QActionGroup(m_languageMenu);
    group->setExclusive(true);
    for (const mevo::MenuEntry &entry : built.entries) {
        if (entry.language == nullptr) {
            m_languageMenu->addSeparator();
            continue;
        }
        QString label = QCoreApplication::translate("AsrLanMenu", entry.language->label);
        if (entry.language->engine == mevo::Engine::ThirdParty &&
            !missingInputMethod(QByteArray(entry.language->code).toInt()).isEmpty()) {
            label += tr("（未安装）"); // the row says at a click what is missing
        }
        QAction *action = m_languageMenu->addAction(label);
        action->setCheckable(true);
        action->setChecked(entry.checked);
        action->setData(QVariant::fromValue(quintptr(entry.language)));
        group->addAction(action);
    }
    setLanguageButtonImage(built.buttonImage);
    m_languageButton->setMenu(m_languageMenu);
    connect(m_languageMenu, &QMenu::triggered, this, &MainWindow::trigerAllAsrLanMenu);
    refreshSettings();
}

void MainWindow::trigerAllAsrLanMenu(QAction *act)
{
    const auto *row = reinterpret_cast<const mevo::LanguageRow *>(act->data().value<quintptr>()); // NOLINT
    if (row != nullptr) {
        // Later: the choice waits for an account, and the menu whose signal this is may be built anew
        // meanwhile.
        QTimer::singleShot(0, this, [this, row] { chooseLanguageRow(*row); });
    }
}

void MainWindow::chooseLanguageRow(const mevo::LanguageRow &row)
{
    if (m_recorder == nullptr) {
        return;
    }
    if (row.engine == mevo::Engine::ThirdParty) {
        m_inputMethods->chooseOfMenu(row);
        return;
    }
    mevo::saveLastModes(*this);
    m_inputMethods->leaveAtChoice();
    if (RunAsAdmin) {
        clearRunAsAdministrator();
    }
    ThirdPartyActive = false; // before any wait: a press in it would open the window of the left method
    const int choice = noteUserChoice();
    const mevo::CredentialListRow *list = mevo::accountListFor(row, *this);
    if (list == nullptr && row.engine == mevo::Engine::Baidu && !m_accountLanguage.isEmpty()) {
        list = mevo::baiduCredentialList(QLatin1String(row.code));
    }
    if (list != nullptr) {
        m_accountLanguage = QLatin1String(row.code);
        m_credentials->LoadBaiduCredentials(QLatin1String(list->file));
        fetchBaiduToken();
        if (choice != m_languageChoice) {
            return; // the wait has let another choice through, which is the one that counts
        }
        if (m_recorder == nullptr) { // or an exit: the next start has the choice all the same
            if (m_retiredRecorder != nullptr) {
                writeSettings(mevo::chooseLanguage(row, *this, *m_retiredRecorder).writes);
                markChoiceUntold();
            }
            return;
        }
    }
    ThirdPartyActive = false; // also where the record has set one up in that wait
    BaiduQuotaHit = XunFeiQuotaHit = TencentQuotaHit = false;
    leaveMethodOfRecord();
    if (row.engine == mevo::Engine::Baidu) {
        m_accountLanguage.clear();
    }
    const mevo::EngineChange change = mevo::chooseLanguage(row, *this, *m_recorder);
    markChoiceUntold();
    carryOut(change);
}

int MainWindow::noteUserChoice()
{
    if (FirstRunApp) {
        FirstRunApp = false;
        writeSettings({{"FirstRunApp", 0}});
    }
    return ++m_languageChoice;
}

void MainWindow::forgetUntoldEngine()
{
    mevo::SettingsFile settings;
    if (settings.contains(QLatin1String(untoldChoice))) {
        settings.setValue(QLatin1String(untoldChoice), 0);
    }
}

void MainWindow::leaveMethodOfRecord()
{
    m_inputMethods->choiceOvertaken();
    const QString column = QStringLiteral("EnableASR3");
    if (EnableASR3 || mevo::untoldChoices(mevo::SettingsFile()).value(column) != 0) {
        EnableASR3 = false;
        tellRecord({{column, 0}});
    }
}

/// The settings are changed at once; the menu and the backend follow from the event loop, since whoever
/// clicks does not expect to wait.
void MainWindow::chooseEngineOfSettings(mevo::Engine engine)
{
    if (m_recorder == nullptr) {
        return;
    }
    m_inputMethods->leaveAtChoice();
    if (RunAsAdmin) {
        clearRunAsAdministrator();
    }
    leaveMethodOfRecord();
    const int choice = noteUserChoice();
    ThirdPartyActive = false;
    BaiduQuotaHit = XunFeiQuotaHit = TencentQuotaHit = false;
    const mevo::EngineChange change = mevo::chooseEngine(engine, *this, *m_recorder);
    writeSettings(change.writes);
    if (engine == mevo::Engine::XunFei) {
        m_credentials->LoadXunFeiCredentials();
    }
    markChoiceUntold();
    QTimer::singleShot(0, this, [this, choice, change] {
        if (!isLeaving() && choice == m_languageChoice) {
            BuildAsrLanMenu(change.persistEngine, change.setupInputMethod);
        }
    });
}

void MainWindow::writeSettings(const std::vector<mevo::SettingWrite> &writes)
{
    mevo::SettingsFile settings;
    for (const mevo::SettingWrite &write : writes) {
        settings.setValue(QLatin1String(write.key), write.value);
    }
}

void MainWindow::carryOut(const mevo::EngineChange &change)
{
    writeSettings(change.writes);
    if (change.rebuild) {
        BuildAsrLanMenu(change.persistEngine, change.setupInputMethod);
    }
}

void MainWindow::loadAllCredentials()
{
    m_credentials->FetchUnsizedCredentialFiles();
    if (isLeaving()) {
        return;
    }
    m_credentials->LoadCurrentBaiduCredentials();
    m_credentials->LoadXunFeiCredentials();
    m_credentials->LoadXunFeiMinorCredentials();
    m_credentials->LoadBaiduTranslateCredentials();
    m_credentials->LoadBaiduTtsCredentials();
    if (IsOnline) {
        m_tokens->FetchBaiduToken();
        if (!isLeaving()) {
            m_tokens->FetchBaiduTtsToken();
        }
    }
}

void MainWindow::loadCurrentBaiduCredentials()
{
    m_credentials->LoadCurrentBaiduCredentials();
}

void MainWindow::fetchBaiduToken()
{
    m_tokens->FetchBaiduToken();
}

void MainWindow::loadBaiduTranslateCredentials()
{
    m_credentials->LoadBaiduTranslateCredentials();
}

void MainWindow::buildAsrLanMenu(bool persistEngine, bool setupInputMethod)
{
    BuildAsrLanMenu(persistEngine, setupInputMethod);
}

void MainWindow::ensureEngineTip()
{
    if (m_toolTips.isNull()) {
        m_toolTips = new QToolTips(this);
    }
}

void MainWindow::showEngineTip(const QString &text, bool regardlessOfShowTipsDlg)
{
    if (!m_toolTips.isNull() && (ShowTipsDlg || regardlessOfShowTipsDlg)) {
        m_toolTips->showText(text, geometry());
    }
}

void MainWindow::channelCountChanged()
{
    if (m_recorder != nullptr) {
        m_recorder->InitMicDevice();
    }
}

void MainWindow::recognise(QBuffer *audio, const QAudioFormat &)
{
    // Later: a request waits in an event loop, and whoever stops the recorder has not finished with the key.
    QTimer::singleShot(0, this, [this, pcm = audio->data(), session = m_results.contextOf(NewestSession)] {
        if (m_recorder != nullptr) {
            QByteArray samples = pcm;
            QBuffer buffer(&samples);
            m_baiduSpeech->finish(&buffer, session);
        }
    });
}

void MainWindow::sessionHandedOver()
{
    endSession(NewestSession);
}

QPair<bool, QString> MainWindow::recogniseWithTencent(const QByteArray &pcm,
                                                      const mevo::SessionContext &session)
{
    return m_tencentSpeech->recognise(pcm, session);
}

mevo::SessionContext MainWindow::contextInForce() const
{
    mevo::SessionContext context = contextNow();
    if (m_recorder == nullptr) {
        return context;
    }
    context.engine = {m_recorder->BaiDuNoStreamApi, m_recorder->UseTXASRApi,
                      m_recorder->UseXunFeiWebApi,  m_recorder->EnableXunFeiWebApiDwa,
                      BaiDuNoStreamApi_FastVersion, BaiDuCurrentVoiceType,
                      TXCurrentVoiceType,           XunFeiWebApiCurrentVoiceType};
    if (!context.engine.baidu && !context.engine.xunFei) {
        context.engine.tencent = true; // as the recorder has it: an input method leaves no engine in force
    }
    return context;
}

void MainWindow::beginSession()
{
    m_recorder->OnRecordStop(); // of a session that was never stopped: nothing that was said in it is lost
    PressWindow = focusedElsewhere();
    mevo::SessionContext session = contextInForce();
    session.receiver = dayCounts.receiver();
    NewestSession = m_results.begin(session);
}

void MainWindow::deliverRecognised(int session, const mevo::SessionText &text)
{
    m_figures.answered(session, m_platform.time->monotonicMs());
    if (m_sessionsFinished) {
        keepForNextRun(text.asItStands ? text.text : mevo::withoutOverMarker(text.text));
        return;
    }
    carryOnLater(m_results.text(session, text));
}

void MainWindow::endSession(int session)
{
    carryOnLater(m_results.end(session));
}

void MainWindow::carryOnLater(bool waits)
{
    constexpr int lookAgainMs = 10;
    if (waits) {
        QTimer::singleShot(lookAgainMs, this, [this] { carryOnLater(m_results.carryOn()); });
    }
}

bool MainWindow::isTyping() const
{
    return !m_postsUnderWay.empty() || isPasting() || HidBusy || m_translationHands.isTyping();
}

/// A text whose turn it is. The recorder is the door for what an engine says, the handler for what are words.
void MainWindow::takeInOrder(const mevo::SessionContext &session, const mevo::SessionText &text)
{
    if (m_sessionsFinished) {
        keepForNextRun(text.asItStands ? text.text : mevo::withoutOverMarker(text.text));
        return;
    }
    if (text.asItStands) {
        m_instanceCalls->typeInTurn(text.text, session);
        return;
    }
    if (text.words) {
        m_pipeline.HandleRecResult(text.text, session);
        return;
    }
    const QScopedValueRollback<const mevo::SessionContext *> delivered(m_delivered, &session);
    m_recorder->showRecText(text.text);
}

// The recorder asks while it is being made, before there is an engine.
bool MainWindow::refreshBaiduToken()
{
    return !m_baiduSpeech || m_baiduSpeech->refreshToken();
}

/// Before the record is read: a choice that the backend has not heard of is told now. False while it still
/// has not.
bool MainWindow::tellUntoldChoice()
{
    if (isEngineUntold()) {
        if (m_recorder == nullptr || m_engineTold.isUnderWay()) {
            return false;
        }
        tellEngine();
        if (isEngineUntold()) {
            return false;
        }
    }
    return !mevo::untoldChoices(mevo::SettingsFile()).contains(QStringLiteral("EnableASR3"));
}

/// An engine that is chosen during the wait is told by the next statement. The mark of a choice goes when the
/// record has what is in force.
void MainWindow::tellEngine()
{
    m_engineTold.run([this] {
        const QString statement = mevo::engineStatement(*m_recorder, SchemaName, DongleID);
        const bool told = tellKnownRecord(statement);
        if (m_recorder == nullptr) {
            return false; // an exit came through the wait
        }
        if (told && statement == mevo::engineStatement(*m_recorder, SchemaName, DongleID)) {
            forgetUntoldEngine();
        }
        return !LocalEnableASR3 && !isLeaving();
    });
}

bool MainWindow::isEngineUntold() const
{
    return mevo::SettingsFile().value(QLatin1String(untoldChoice)).toBool();
}

/// Until the backend has heard of the engine that is in force, its record does not undo it; it is told before
/// the record is read.
void MainWindow::markChoiceUntold()
{
    mevo::SettingsFile().setValue(QLatin1String(untoldChoice), 1);
}

void MainWindow::runBackendSql(const QString &statement)
{
    tellBackend(statement);
}

/// Whether the record has what it is told. Before it has been read nobody knows that there is one, and the
/// backend answers all the same.
bool MainWindow::tellKnownRecord(const QString &statement)
{
    const bool known = dayCounts.isRead();
    return tellBackend(statement) && known;
}

/// Whether the backend has answered. Without a receiver there is no record that could hear of it.
bool MainWindow::tellBackend(const QString &statement)
{
    if (DongleID.isEmpty()) {
        return false;
    }
    // A start whose time is used up still tells the record what has changed, before the record is read late.
    return !RunBackendSql(statement, m_webApi->sharedWaitUsedUp() ? withoutWaiting : modeChangeTimeoutMs)
                .isNull();
}
