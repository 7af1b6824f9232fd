// Settings and interface language of the main window.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/InterfaceLanguage.h"
#include "base/KeyTable.h"
#include "base/SettingsFile.h"
#include "engines/LanguageImages.h"
#include "service/ServerAddresses.h"
#include "service/WebCipher.h"
#include "session/ThirdPartyKeys.h"
#include "session/VoiceModes.h"
#include "state/SettingsTable.h"
#include "window/InputMethods.h"
#include "window/SettingsHands.h"

#include <QApplication>
#include <QDebug>

namespace {

constexpr int restartAfterMs = 2000;

QString startupLinkName()
{
    return MainWindow::tr("灵犀听写系统.lnk");
}

} // namespace

void MainWindow::readEarlySettings()
{
    {
        mevo::SettingsFile settings;
        mevo::loadEarlySettings(*this, settings, isXpClass(), QCoreApplication::applicationFilePath());
    }
    const mevo::SettingsFile proxy(QStringLiteral("NetworkProxy"));
    mevo::loadProxySettings(*this, proxy);
}

void MainWindow::installInterfaceLanguage()
{
    const QString file = mevo::translationFileFor(m_platform.systemFacts->localeId());
    if (file.isEmpty()) {
        return;
    }
    if (m_translator.load(QStringLiteral(":/translations/") + file)) {
        QCoreApplication::installTranslator(&m_translator);
    } else {
        qWarning().noquote() << "Interface language:" << file << "cannot be loaded";
    }
}

void MainWindow::readServerAddresses()
{
    m_cipher = std::make_unique<WebCipher>();
    const QString test = QStringLiteral("MEVOInput");
    const QString enciphered = m_cipher->EncryptString(test);
    qDebug().noquote() << "Encrpt:" << enciphered;
    qDebug().noquote() << "Decrypt:" << m_cipher->DecryptString(enciphered);
    mevo::loadServerAddresses(*this, mevo::SettingsFile(), *m_cipher);
}

void MainWindow::LoadSettings()
{
    const bool startsAtLogin = m_platform.startupEntry->exists(startupLinkName());
    {
        mevo::SettingsFile settings;
        mevo::loadSettings(*this, settings, startsAtLogin);
        if (m_recorder != nullptr) {
            m_recorder->loadEngineFlags();
        }
        if (m_recorder != nullptr && m_recorder->BaiDuNoStreamApi) {
            BaiDuCurrentVoiceType = settings.value(QStringLiteral("BaiDuCurrentVoiceType")).toString();
            if (!LocalEnableASR3) {
                setLanguageButtonImage(mevo::baiduLanguageStyle(BaiDuCurrentVoiceType, ShowVerticalUI));
            }
        }
    }
    const mevo::KeyTable keys = mevo::loadKeyTable();
    KeyShowNames = keys.names;
    KeyCodes = keys.codes;
    mevo::saveLastModes(*this);
}

void MainWindow::clearRunAsAdministrator()
{
    m_platform.elevation->clear();
    RunAsAdmin = false;
    mevo::SettingsFile().setValue(QStringLiteral("RunAsAdmin"), false);
}

/// False, and the setting stays as it was, when the entry could not be made.
bool MainWindow::startAtLogin()
{
    if (!m_inputMethods->wantsElevation() &&
        !(LocalEnableASR3 && LocalUseASR3Index == mevo::thirdPartyXunFei)) {
        clearRunAsAdministrator();
    }
    mevo::StartupEntry &entry = *m_platform.startupEntry;
    if (!entry.exists(startupLinkName()) && !entry.set(startupLinkName())) {
        qWarning() << "Start at login could not be set";
        return false;
    }
    AutoRunApp = QStringLiteral("1");
    mevo::SettingsFile().setValue(QStringLiteral("AutoRunApp"), AutoRunApp);
    return true;
}

/// The same the other way round.
bool MainWindow::dontStartAtLogin()
{
    mevo::StartupEntry &entry = *m_platform.startupEntry;
    if (entry.exists(startupLinkName()) && !entry.clear(startupLinkName())) {
        qWarning() << "Start at login could not be taken back";
        return false;
    }
    AutoRunApp.clear();
    mevo::SettingsFile().setValue(QStringLiteral("AutoRunApp"), AutoRunApp);
    return true;
}

mevo::SettingsHands &MainWindow::settingsHands()
{
    if (!m_settingsHands) {
        m_settingsHands = std::make_unique<mevo::SettingsHands>(*this);
    }
    return *m_settingsHands;
}

void MainWindow::refreshSettings()
{
    if (m_settingsHands && !isLeaving()) {
        m_settingsHands->refresh();
    }
}

void MainWindow::pushBuutton_Setting_clicked()
{
    if (InitDone && !isLeaving() && !ExitInProgress) {
        settingsHands().open();
    }
}

void MainWindow::restartForSettings()
{
    message(tr("将自动重启软件，请稍候"), mevo::MessageIcon::Information, restartAfterMs);
    m_platform.time->callAfter(restartAfterMs, this, [this] {
        if (!isLeaving()) {
            m_exitCode = restartCode;
            RebootAppDelayTimeout();
        }
    });
}
