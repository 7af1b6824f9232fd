#include "window/FirstStartHands.h"

#include "base/RunAside.h"
#include "base/SettingsFile.h"
#include "device/ReceiverDiscovery.h"
#include "ui/FirstStartDialog.h"
#include "window/AccountHands.h"
#include "window/MainWindow.h"
#include "window/SettingsHands.h"

#include <QDebug>
#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <utility>

namespace mevo {

namespace {

constexpr int lookMs = 2000;
constexpr int messageMs = 3000;
const QString shownKey = QStringLiteral("FirstStartShown");

/// The device file is not for this user.
bool isRefused(const QByteArray &path)
{
    return !QFileInfo(QString::fromLocal8Bit(path)).isWritable();
}

/// A receiver is there that this user may not open.
bool isReceiverRefused(Hid &hid)
{
    const std::vector<HidEntry> found = hid.enumerate(kReceiverVendor, kReceiverProduct);
    return std::any_of(found.begin(), found.end(),
                       [](const HidEntry &entry) { return isRefused(entry.path); });
}

} // namespace

FirstStartHands::FirstStartHands(MainWindow &window)
    : QObject(&window)
    , m_window(window)
{
    m_again.setInterval(lookMs);
    connect(&m_again, &QTimer::timeout, this, [this] {
        if (m_dialog.isNull() || !m_dialog->isVisible()) {
            m_again.stop();
        } else {
            look(Wish::Refresh);
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
        considerOnceMore();
        return;
    }
    look(Wish::Consider);
}

/// When more is known of the accounts.
void FirstStartHands::considerOnceMore()
{
    connect(m_window.m_accounts.get(), &AccountHands::changed, this, [this] {
        m_window.m_accounts->disconnect(this);
        consider();
    });
}

void FirstStartHands::receiverNotOpened(const QByteArray &path)
{
    if (path.isEmpty() || !isRefused(path)) {
        return;
    }
    qWarning(
        "Receiver: it is there, and this user may not open it; is 70-mevoinput.rules in place, and was the "
        "receiver plugged in after that?");
    if (!isWindowToCome() && (m_dialog.isNull() || !m_dialog->isVisible())) {
        m_window.message(receiverRefusedText(), MessageIcon::Warning, messageMs);
    }
}

/// It comes where something is missing, and a receiver without rights is.
bool FirstStartHands::isWindowToCome() const
{
    return !m_decided && !SettingsFile().value(shownKey).toBool();
}

void FirstStartHands::open()
{
    look(Wish::Open);
}

/// Aside: a sound server that hangs and a bus with many devices would hold the bar.
void FirstStartHands::look(Wish wish)
{
    m_wish = std::max(m_wish, wish);
    if (m_looking || m_window.isLeaving()) {
        return;
    }
    m_looking = true;
    const auto found = std::make_shared<Hardware>();
    Hid *const hid = m_window.m_platform.hid.get();
    AudioRouter *const router = m_window.m_platform.audioRouter.get();
    found->microphone = router == nullptr && !m_window.m_platform.soundInputs->defaultName().isEmpty();
    runAside(
        this,
        [found, hid, router] {
            found->receiverRefused = isReceiverRefused(*hid);
            found->microphone = found->microphone || (router != nullptr && !router->inputNames().isEmpty());
        },
        [this, found] {
            m_looking = false;
            looked(*found);
        });
}

void FirstStartHands::looked(const Hardware &hardware)
{
    m_hardware = hardware;
    const Wish wish = std::exchange(m_wish, Wish::Refresh);
    if (m_window.isLeaving()) {
        return;
    }
    if (wish == Wish::Open) {
        show(true);
    } else if (wish == Wish::Refresh) {
        if (!m_dialog.isNull()) {
            m_dialog->setFacts(facts());
            remember();
        }
    } else if (isFirstStartHelpNeeded(facts())) {
        m_window.whenQuiet("First start", [this] { show(false); });
    } else {
        m_decided = true;
        remember();
        if (facts().accountsUnread) {
            considerOnceMore();
        }
    }
}

/// A later start is no first one, unless this one could not see all.
void FirstStartHands::remember()
{
    if (!facts().accountsUnread && !SettingsFile().value(shownKey).toBool()) {
        SettingsFile().setValue(shownKey, true);
    }
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
    m_again.start();
    m_decided = true;
    remember();
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
    facts.accountsUnread =
        !facts.account && !facts.inputMethod && m_window.m_accounts->accountsUnread() != SecretPlace::Nowhere;
    facts.receiver = m_window.DeviceConnected && m_window.deviceOpen();
    facts.receiverRefused = !facts.receiver && m_hardware.receiverRefused;
    facts.receiverNeeded = !m_window.NoDeviceMode;
    facts.microphone = m_hardware.microphone;
    return facts;
}

} // namespace mevo
