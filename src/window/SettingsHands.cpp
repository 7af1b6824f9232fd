#include "window/SettingsHands.h"

#include "audio/AudioRecorder.h"
#include "audio/MicrophoneMeter.h"
#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "engines/EngineSelection.h"
#include "ui/Ask.h"
#include "ui/settings/CSettingDialog.h"
#include "window/AccountHands.h"
#include "window/FirstStartHands.h"
#include "window/InputMethods.h"
#include "window/MainWindow.h"

#include <QDebug>
#include <QStandardPaths>
#include <QTimer>

namespace mevo {

namespace {

constexpr int messageMs = 3000;

/// Programs that set the sound server up, in the order in which they are tried.
struct SoundPanel
{
    const char *program;
    const char *argument;
};
constexpr SoundPanel soundPanels[] = {{"pavucontrol", "--tab=4"},
                                      {"pavucontrol-qt", "--tab=4"},
                                      {"gnome-control-center", "sound"},
                                      {"cinnamon-settings", "sound"},
                                      {"systemsettings5", "kcm_pulseaudio"},
                                      {"mate-volume-control", "--page=input"}};

} // namespace

SettingsHands::SettingsHands(MainWindow &window)
    : m_window(window)
{
}

SettingsHands::~SettingsHands()
{
    delete m_dialog;
}

void SettingsHands::open(const char *at)
{
    if (m_dialog.isNull()) {
        m_dialog = new CSettingDialog(m_window, *this, &m_window);
        QObject::connect(&m_window, &MainWindow::updateNoticeChanged, m_dialog.data(),
                         &CSettingDialog::setUpdateNotice);
        QObject::connect(m_window.m_accounts.get(), &AccountHands::changed, m_dialog.data(),
                         &CSettingDialog::showAccounts);
    }
    m_dialog->present(&m_window);
    if (at != nullptr) {
        m_dialog->turnTo(at);
    }
}

QWidget *SettingsHands::openDialog() const
{
    return !m_dialog.isNull() && m_dialog->isVisible() ? m_dialog.data() : nullptr;
}

void SettingsHands::refresh()
{
    if (!m_dialog.isNull()) {
        m_dialog->updateUI();
    }
}

void SettingsHands::storeEdits()
{
    if (!m_dialog.isNull()) {
        m_dialog->storeEdits();
    }
}

void SettingsHands::close()
{
    if (!m_dialog.isNull()) {
        m_window.disconnect(m_dialog.data());
        if (!m_window.isLeaving()) {
            moveQuestions(m_dialog, &m_window); // one on an update waits for its answer
        }
        m_window.m_accounts->disconnect(m_dialog.data());
        m_dialog->retire();
        m_dialog.clear();
    }
    m_meter.reset();
}

RecorderState *SettingsHands::recorderState()
{
    return m_window.m_recorder;
}

bool SettingsHands::isXpClass() const
{
    return m_window.isXpClass();
}

void SettingsHands::chooseEngine(Engine engine)
{
    m_window.chooseEngineOfSettings(engine);
}

void SettingsHands::chooseInputMethod(int index)
{
    m_window.m_inputMethods->chooseOfSettings(index);
}

void SettingsHands::chooseTencentDialect(bool on)
{
    m_window.carryOut(mevo::chooseTencentDialect(on, m_window));
}

void SettingsHands::showTip(const QString &text)
{
    m_window.ensureEngineTip();
    m_window.showEngineTip(text, false);
}

void SettingsHands::tellRecord(const RecordChoices &choices)
{
    m_window.tellRecord(choices);
}

void SettingsHands::restartProgram()
{
    m_window.restartForSettings();
}

void SettingsHands::say(const QString &text)
{
    m_window.message(text, MessageIcon::Information, messageMs);
}

void SettingsHands::inputMethodPathStored()
{
    m_window.m_inputMethods->pathStored();
}

void SettingsHands::downloadInputMethod(int index)
{
    // From the event loop: the service may have to be asked for the address.
    QTimer::singleShot(0, &m_window, [&window = m_window, index] { window.m_inputMethods->download(index); });
}

void SettingsHands::openXunFeiTool(const QString &program)
{
    m_window.m_inputMethods->openTool(program);
}

void SettingsHands::setXunFeiOffline(bool on)
{
    m_window.UseXunFeiOfflineOnly(on);
}

bool SettingsHands::setRunAsAdministrator(bool on)
{
    if (!on) {
        m_window.clearRunAsAdministrator();
        return true;
    }
    if (!m_window.m_platform.elevation->set()) {
        qWarning() << "Administrator's rights: the mark could not be set";
        return false;
    }
    m_window.RunAsAdmin = true;
    SettingsFile().setValue(QStringLiteral("RunAsAdmin"), true);
    return true;
}

bool SettingsHands::setStartAtLogin(bool on)
{
    return on ? m_window.startAtLogin() : m_window.dontStartAtLogin();
}

QStringList SettingsHands::microphones()
{
    AudioRouter *router = m_window.m_platform.audioRouter.get();
    return router == nullptr || isXpClass() ? QStringList() : router->inputNames();
}

QString SettingsHands::currentMicrophone()
{
    return microphones().value(0);
}

bool SettingsHands::switchMicrophone(const QString &name)
{
    return m_window.m_recorder != nullptr && m_window.m_recorder->switchMicrophone(name);
}

void SettingsHands::channelCountChanged()
{
    m_window.channelCountChanged();
}

void SettingsHands::letMicrophoneGo()
{
    m_window.m_platform.soundInputs->letGo();
}

void SettingsHands::openSoundSettings()
{
    for (const SoundPanel &panel : soundPanels) {
        const QString program = QStandardPaths::findExecutable(QLatin1String(panel.program));
        if (!program.isEmpty() &&
            m_window.m_platform.processes->startDetached(program, {QLatin1String(panel.argument)})) {
            return;
        }
    }
    say(MainWindow::tr("没有找到声音控制面板，请在系统设置中打开！"));
}

void SettingsHands::watchMicrophone(std::function<void(int)> heard)
{
    m_meter.reset();
    if (heard) {
        m_meter = std::make_unique<MicrophoneMeter>(*m_window.m_platform.soundInputs);
        QObject::connect(m_meter.get(), &MicrophoneMeter::heard, m_meter.get(), std::move(heard));
    }
}

MouseSettings SettingsHands::mouse()
{
    return MouseSettings(*m_window.m_device, m_window, *m_window.m_platform.time,
                         [this](const QString &text, MessageIcon icon, int milliseconds) {
                             m_window.message(text, icon, milliseconds);
                         });
}

void SettingsHands::chooseMouse(const MouseGroup &group, int place)
{
    mouse().choose(group, place);
}

void SettingsHands::assignKey(CustomKey key, const QString &shownLabel)
{
    mouse().assignKey(key, shownLabel);
}

QString SettingsHands::readDongleID()
{
    return mouse().showDongleID();
}

void SettingsHands::requestMouseID()
{
    m_window.m_device->RequestMouseID();
}

void SettingsHands::checkForUpdate(UpdateWish wish)
{
    if (wish == UpdateWish::Button) {
        m_window.checkUpdateAtWish();
    } else {
        m_window.CheckUpdateFromSettings(wish == UpdateWish::Notice);
    }
}

QString SettingsHands::versionText() const
{
    return m_window.m_versionText;
}

QString SettingsHands::runFigures() const
{
    return m_window.runFigures();
}

void SettingsHands::openWebPage(const QString &address)
{
    m_window.openWebPage(address);
}

void SettingsHands::openCommandWords()
{
    m_window.pushBuutton_CommandWord_clicked();
}

AccountsHost &SettingsHands::accounts()
{
    return *m_window.m_accounts;
}

void SettingsHands::openFirstStart()
{
    m_window.m_firstStart->open();
}

} // namespace mevo
