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
#include "service/Statements.h"
#include "service/WebApi.h"
#include "service/WebApiReply.h"
#include "session/ThirdPartyKeys.h"
#include "session/VoiceModes.h"
#include "ui/QToolTips.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QDebug>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QWidgetAction>

#include <algorithm>

namespace {

constexpr int modeChangeTimeoutMs = 2000;

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
    if (persistEngine) {
        runBackendSql(mevo::deviceStatement(m_recorder->UseXunFeiWebApi ? mevo::Statement::UseXunFei
                                            : m_recorder->UseTXASRApi   ? mevo::Statement::UseTencent
                                                                        : mevo::Statement::UseBaidu,
                                            SchemaName, {DongleID}));
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
    facts.customMethodKnown = LocalASR3CustomInstallPath.contains(QLatin1String("SpeechInput")) ||
                              LocalASR3CustomInstallPath.contains(QLatin1String("VoiceInput"));
    const mevo::AsrMenu built = mevo::buildAsrMenu(*this, *m_recorder, facts);
    if (built.clearTencentDialect) {
        UseTecentZhDialect = false;
    }
    if (built.forceTencent) {
        mevo::setEngineFlags(*m_recorder, mevo::Engine::Tencent);
        mevo::SettingsFile settings;
        for (const mevo::SettingWrite &write : mevo::engineKeyWrites(*m_recorder)) {
            settings.setValue(QLatin1String(write.key), write.value);
        }
    }
    // The menu may be the one whose row is being handled: it goes when that is over.
    if (m_languageMenu != nullptr) {
        m_languageMenu->deleteLater();
    }
    m_languageMenu = new QMenu(this);
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
        QAction *action =
            m_languageMenu->addAction(QCoreApplication::translate("AsrLanMenu", entry.language->label));
        action->setCheckable(true);
        action->setChecked(entry.checked);
        action->setData(QVariant::fromValue(quintptr(entry.language)));
        group->addAction(action);
    }
    setLanguageButtonImage(built.buttonImage);
    m_languageButton->setMenu(m_languageMenu);
    connect(m_languageMenu, &QMenu::triggered, this, &MainWindow::trigerAllAsrLanMenu);
}

void MainWindow::trigerAllAsrLanMenu(QAction *act)
{
    const auto *row = reinterpret_cast<const mevo::LanguageRow *>(act->data().value<quintptr>()); // NOLINT
    if (row == nullptr) {
        return;
    }
    mevo::saveLastModes(*this);
    closeInputMethodWindow();
    if (RunAsAdmin) {
        clearRunAsAdministrator();
    }
    if (row->engine != mevo::Engine::ThirdParty) {
        ThirdPartyActive = false;
    }
    BaiduQuotaHit = XunFeiQuotaHit = TencentQuotaHit = false;
    carryOut(mevo::chooseLanguage(*row, *this, *m_recorder));
}

void MainWindow::carryOut(const mevo::EngineChange &change)
{
    {
        mevo::SettingsFile settings;
        for (const mevo::SettingWrite &write : change.writes) {
            settings.setValue(QLatin1String(write.key), write.value);
        }
    }
    if (change.rebuild) {
        BuildAsrLanMenu(change.persistEngine, change.setupInputMethod);
    }
    if (change.reloadBaiduAccount) {
        loadCurrentBaiduCredentials();
        fetchBaiduToken();
    }
}

void MainWindow::loadAllCredentials()
{
    m_credentials->FetchUnsizedCredentialFiles();
    m_credentials->LoadCurrentBaiduCredentials();
    m_credentials->LoadXunFeiCredentials();
    m_credentials->LoadXunFeiMinorCredentials();
    m_credentials->LoadBaiduTranslateCredentials();
    m_credentials->LoadBaiduTtsCredentials();
    if (IsOnline) {
        m_tokens->FetchBaiduToken();
        m_tokens->FetchBaiduTtsToken();
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
    // A request waits in an event loop, so that one may run inside another; they end in reverse order.
    m_targets.push_back(FocusWindow);
    m_baiduSpeech->finish(audio);
    m_targets.pop_back();
}

QPair<bool, QString> MainWindow::recogniseWithTencent(const QByteArray &pcm)
{
    return m_tencentSpeech->recognise(pcm);
}

void MainWindow::deliverRecognised(const QString &text)
{
    // The next press may have come during the request: the text still belongs to its own window.
    const QScopedValueRollback<mevo::WindowId> target(FocusWindow,
                                                      m_targets.empty() ? FocusWindow : m_targets.back());
    if (m_recorder != nullptr) {
        m_recorder->showRecText(text);
    }
}

// The recorder asks while it is being made, before there is an engine.
bool MainWindow::refreshBaiduToken()
{
    return !m_baiduSpeech || m_baiduSpeech->refreshToken();
}

void MainWindow::runBackendSql(const QString &statement)
{
    RunBackendSql(statement, modeChangeTimeoutMs);
}
