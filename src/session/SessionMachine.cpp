#include "session/SessionMachine.h"

#include "state/ThirdPartyMethod.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMutexLocker>

#include <utility>

namespace mevo {

namespace {
constexpr int quickReleaseMs = 1000;
constexpr int quickReleasesTolerated = 3;
constexpr int tipWindowKey = -1; ///< its press and its release name different keys

int keyOf(const KeyReport &report)
{
    return report.fromTipWindow ? tipWindowKey : report.key;
}

QString tr(const char *text)
{
    return QCoreApplication::translate("mevo::SessionMachine", text);
}
} // namespace

SessionMachine::SessionMachine(MainState &state, SessionPort &port)
    : m_state(state)
    , m_port(port)
{
}

void SessionMachine::process(const char *report)
{
    if (m_state.BaiduQuotaHit || m_state.XunFeiQuotaHit || m_state.TencentQuotaHit) {
        if (const auto key = parseKeyReport(report); key && key->pressed) {
            qInfo("Session: key %d is not taken, the day's allowance is used up", key->key);
        }
        refuse(report);
        return;
    }
    if (m_state.ASRFuncClosed && !m_state.ThirdPartyActive) {
        refuse(report);
        m_port.trayMessage(tr("已关闭语音识别功能！"), MessageIcon::Information, 100);
        return;
    }
    m_port.logReport(QString::asprintf(
        "MEVOInput:GetHIDData :%02x %02x %02x %02x %02x\n", static_cast<unsigned char>(report[0]),
        static_cast<unsigned char>(report[1]), static_cast<unsigned char>(report[2]),
        static_cast<unsigned char>(report[3]), static_cast<unsigned char>(report[4])));
    if (const auto key = parseKeyReport(report)) {
        key->pressed ? press(*key) : release(*key);
    }
}

void SessionMachine::refuse(const char *report)
{
    const auto key = parseKeyReport(report);
    if (!key || key->pressed) {
        return;
    }
    if (m_methodPress && keyOf(*key) == m_methodPress->key) {
        endMethodPress();
    } else if (m_state.Recording && keyOf(*key) == m_sessionKey && closeSession(*key)) {
        m_port.recordStop();
    }
}

void SessionMachine::reset()
{
    m_state.ResultIdle = true;
    m_state.QuickReleaseCount = 0;
    m_state.QuickReleaseRun = 0;
    if (m_state.Recording && !m_state.MouseSession) {
        // The session is over, whether the key's own release still comes or was what asked for this.
        m_port.updateMicWin(QLatin1String(pictures::micIdle));
        m_port.hideTipWindow();
        m_state.MicWinShown = false;
    }
    m_port.recordStop();
}

void SessionMachine::endWithoutRelease()
{
    m_overtaken.clear();
    m_state.Recording = false;
    m_state.PressPending = false;
    m_state.KeyDownBusy = false;
    m_state.KeyUpBusy = false;
    reset();
}

void SessionMachine::endInputMethodPress()
{
    if (m_methodPress) {
        m_overtaken.insert(m_methodPress->key); // should its release come all the same
        endMethodPress();
    }
}

void SessionMachine::receiverGone()
{
    const auto gone = std::exchange(m_methodPress, std::nullopt);
    m_clicked.reset();
    if (gone && gone->doing == MethodPress::Doing::Listens) {
        m_clicked = Click{gone->method, m_port.monotonicMs(), true};
    }
}

void SessionMachine::press(const KeyReport &report)
{
    if (!m_state.ResultIdle) {
        return;
    }
    m_port.clearClipboard();

    const int key = keyOf(report);
    if (const auto doing = pressInputMethod(key)) {
        overtakeMethodPress(key);
        m_methodPress = MethodPress{key, m_state.LocalUseASR3Index, *doing};
        m_overtaken.erase(key);
        if (m_state.Recording) { // of an earlier key: what was said until now is recognised
            const int overtaken = m_sessionKey;
            endWithoutRelease();
            m_port.hideTipWindow();
            m_state.MicWinShown = false;
            if (overtaken != key) {
                m_overtaken.insert(overtaken);
            }
        }
        return;
    }
    overtakeMethodPress(key);
    const auto left = std::exchange(m_methodPress, std::nullopt);
    startSession(report);
    if (left) {
        leaveMethod(*left); // last: it looks for the window, and the first word waits
    }
}

/// A later key has it now: the release of the one before it ends nothing.
void SessionMachine::overtakeMethodPress(int key)
{
    if (m_methodPress && m_methodPress->key != key) {
        m_overtaken.insert(m_methodPress->key);
    }
}

/// What the press has begun when it was an input method's; one of an own engine leaves its window first.
std::optional<SessionMachine::MethodPress::Doing> SessionMachine::pressInputMethod(int key)
{
    const int index = m_state.LocalUseASR3Index;
    const bool custom = m_state.ThirdPartyActive && index == thirdPartyCustom;
    const bool known = m_state.ThirdPartyActive && m_state.VoiceTypeMode &&
                       (index == thirdPartyXunFei || index == thirdPartySogou);
    if (custom ? m_state.ShowASR3Custom : known) {
        if (m_methodPress && m_methodPress->method != index) {
            leaveMethod(*m_methodPress); // its key is another one
        }
        return custom ? pressCustomMethod(key) : pressThirdParty(key);
    }
    // Looked up only then: it asks every window of the desktop, and the first word waits. And not while a key
    // is held for it: what was said there would go with it. The next press finds it.
    if (!custom && m_state.ThirdPartyWindowOpen && !m_state.XFVM3 && !m_methodPress) {
        m_port.leaveInputMethod();
    }
    return std::nullopt;
}

void SessionMachine::startSession(const KeyReport &report)
{
    m_state.PressTime = m_port.monotonicMs();
    const int key = keyOf(report);
    if (m_state.QuickReleaseCount > 0 || m_state.KeyUpBusy) {
        if (m_state.QuickReleaseCount > 0) {
            --m_state.QuickReleaseCount;
        }
        if (m_state.Recording && key != m_sessionKey) {
            m_overtaken.insert(key); // its release is not that of the session that runs
        }
        return;
    }
    if (m_state.Recording) {
        m_port.recordStop(); // a second key while one is held: what was said until now is recognised
        m_overtaken.insert(m_sessionKey);
    }
    m_port.preparePartialResults(); // only now: a press that is ignored leaves the session before it alone
    const QMutexLocker lock(&SessionMutex);
    m_state.KeyDownBusy = true;
    if (m_state.Send2ScreenMethod != 2) {
        m_port.saveFocusWindow();
    }
    m_port.raiseBar();
    m_state.KeyDownHeld = true;
    const auto leave = [this] {
        m_state.KeyDownHeld = false;
        m_state.KeyDownBusy = false;
    };
    if (m_state.DelimitTranslation && m_port.translationDialogTakesKeys() && m_state.DeviceConnected) {
        leave();
        return;
    }
    m_state.MouseSession = report.fromTipWindow;
    m_state.OneShotCommandWord = report.key == KeyCommand;
    if (!m_state.MicWinShown) {
        m_port.showTipWindow(report.fromTipWindow);
        m_state.MicWinShown = true;
    }
    m_port.updateMicWin(QLatin1String(pictures::micSpeak));
    m_sessionKey = key;
    m_overtaken.erase(m_sessionKey);
    m_port.recordStart();
    m_state.Recording = true;
    leave();
    m_state.PressPending = true;
    m_state.PartialResultCount = 0;
    m_state.RecTextBuffer.clear();
}

void SessionMachine::release(const KeyReport &report)
{
    const int key = keyOf(report);
    // A session of our own ends with the release, whatever mode has come since its press; and so does what a
    // press has begun at an input method. One that has not heard of a press does not hear of its release,
    // which would begin where nothing ends.
    if (m_methodPress && m_methodPress->key == key) {
        endMethodPress();
        return;
    }
    if ((m_state.Recording || m_methodPress || m_state.ThirdPartyActive) && m_overtaken.erase(key) > 0) {
        return;
    }
    if (m_methodPress) {
        return; // of a key whose press was not taken; the input method's own key is still held
    }
    m_overtaken.erase(key);
    countQuickRelease();
    if (m_state.KeyDownBusy) {
        return;
    }
    if (closeSession(report)) {
        // Last, and with nothing held: the recorder hands over what may take its time.
        m_port.recordStop();
    }
}

bool SessionMachine::closeSession(const KeyReport &report)
{
    const QMutexLocker lock(&SessionMutex);
    m_state.KeyUpBusy = true;
    const bool recording = m_state.Recording;
    if (recording) {
        if (!m_state.PressPending) {
            return false; // kept: KeyUpBusy stays, and only the next full session clears it
        }
        // Also one that has begun while the source pane of the translation window had the keyboard, and ends
        // without it: keys that belong to that window have opened no microphone, and this one did.
        m_state.KeyUpHeld = true;
        m_port.updateMicWin(QLatin1String(pictures::micIdle));
        if (m_state.DeviceConnected && !report.fromTipWindow) {
            m_port.hideTipWindow();
            m_state.MicWinShown = false;
        }
        m_state.Recording = false;
        m_state.KeyUpHeld = false;
        m_state.PressPending = false;
    }
    m_state.KeyUpBusy = false;
    return recording;
}

void SessionMachine::countQuickRelease()
{
    m_state.ReleaseTime = m_port.monotonicMs();
    if (m_state.ReleaseTime - m_state.PressTime >= quickReleaseMs) {
        m_state.QuickReleaseCount = 0;
        m_state.QuickReleaseRun = 0;
        return;
    }
    ++m_state.QuickReleaseCount;
    ++m_state.QuickReleaseRun;
    if (m_state.QuickReleaseRun <= quickReleasesTolerated) {
        m_state.QuickReleaseCount = 0;
        return;
    }
    m_port.trayMessage(tr("松开按键太快！请长按松开后再正式语音输入！"), MessageIcon::Warning, 1000);
}

} // namespace mevo
