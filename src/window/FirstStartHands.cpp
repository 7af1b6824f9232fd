#include "window/FirstStartHands.h"

#include "audio/DefaultMicrophone.h"
#include "base/SettingsFile.h"
#include "device/ReceiverDiscovery.h"
#include "ui/FirstStartDialog.h"
#include "window/AccountHands.h"
#include "window/MainWindow.h"
#include "window/SettingsHands.h"

#include <QDebug>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace mevo {

namespace {

constexpr int lookMs = 2000;
constexpr int messageMs = 3000;
const QString shownKey = QStringLiteral("FirstStartShown");

/// A receiver is there, and its device file is not for this user.
bool isReceiverRefused(Hid &hid)
{
    const std::vector<HidEntry> found = hid.enumerate(kReceiverVendor, kReceiverProduct);
    return std::any_of(found.begin(), found.end(), [](const HidEntry &entry) {
        return !QFileInfo(QString::fromLocal8Bit(entry.path)).isWritable();
    });
}

} // namespace

FirstStartHands::FirstStartHands(MainWindow &window)
    : QObject(&window)
    , m_window(window)
{
    m_look.setInterval(lookMs);
    connect(&m_look, &QTimer::timeout, this, [this] {
        if (m_dialog.isNull() || !m_dialog->isVisible()) {
            m_look.stop();
        } else {
            m_dialog->setFacts(facts());
        }
    });
}

void FirstStartHands::startIsOver()
{
    if (!std::exchange(m_considered, true) && !SettingsFile().value(shownKey).toBool()) {
        QTimer::singleShot(waitMs, this, &FirstStartHands::consider);
    }
}

void FirstStartHands::consider()
{
    if (m_window.isLeaving()) {
        return;
    }
    if (!m_window.m_accounts->isRead()) { // the keyring may be asking the user
        connect(m_window.m_accounts.get(), &AccountHands::changed, this, [this] {
            m_window.m_accounts->disconnect(this);
            consider();
        });
        return;
    }
    SettingsFile().setValue(shownKey, true); // also where nothing is missing: a later start is no first one
    if (isFirstStartHelpNeeded(facts())) {
        m_window.whenQuiet("First start", [this] { show(false); });
    }
}

void FirstStartHands::receiverNotOpened()
{
    if (!isReceiverRefused(*m_window.m_platform.hid)) {
        return;
    }
    qWarning(
        "Receiver: it is there, and this user may not open it; is 70-mevoinput.rules in place, and was the "
        "receiver plugged in after that?");
    if (m_considered || SettingsFile().value(shownKey).toBool()) {
        m_window.message(receiverRefusedText(), MessageIcon::Warning, messageMs);
    }
}

void FirstStartHands::open()
{
    show(true);
}

/// By itself it does not take the keyboard, into which the user may be typing.
void FirstStartHands::show(bool activate)
{
    if (m_window.isLeaving()) {
        return;
    }
    if (m_dialog.isNull()) {
        m_dialog = new FirstStartDialog(&m_window);
        connect(m_dialog.data(), &FirstStartDialog::helpWanted, this, &FirstStartHands::help);
    }
    m_dialog->setFacts(facts());
    m_dialog->setAttribute(Qt::WA_ShowWithoutActivating, !activate);
    if (!m_dialog->isVisible()) {
        m_dialog->move(m_window.screenRect().center() - m_dialog->rect().center());
    }
    m_dialog->show();
    m_dialog->raise();
    if (activate) {
        m_dialog->activateWindow();
    }
    m_look.start();
}

void FirstStartHands::help(FirstStartHelp help)
{
    if (m_window.isLeaving() || m_window.ExitInProgress) {
        return;
    }
    switch (help) {
    case FirstStartHelp::OwnAccount:
        m_window.settingsHands().open("groupBox_OwnAccounts");
        break;
    case FirstStartHelp::InputMethod:
        m_window.settingsHands().open("radioButton_EnableThirdPartyVoiceInput");
        break;
    case FirstStartHelp::Microphone:
        m_window.settingsHands().open("comboBox_MICDeviceList");
        break;
    case FirstStartHelp::UdevRule:
        break; // the window says it by itself
    }
}

FirstStartFacts FirstStartHands::facts() const
{
    constexpr AccountService recognisers[] = {AccountService::Baidu, AccountService::Tencent,
                                              AccountService::XunFei};
    FirstStartFacts facts;
    facts.account = std::any_of(std::begin(recognisers), std::end(recognisers), [this](AccountService each) {
        return m_window.m_accounts->accountInForce(each) != AccountSource::None;
    });
    facts.inputMethod = m_window.LocalEnableASR3;
    facts.receiver = m_window.DeviceConnected && m_window.deviceOpen();
    facts.receiverRefused = !facts.receiver && isReceiverRefused(*m_window.m_platform.hid);
    facts.receiverNeeded = !m_window.NoDeviceMode;
    AudioRouter *const router = m_window.m_platform.audioRouter.get();
    facts.microphone = router != nullptr ? !router->inputNames().isEmpty() : !defaultMicrophone().isNull();
    return facts;
}

} // namespace mevo
