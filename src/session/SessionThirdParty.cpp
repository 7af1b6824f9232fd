// The part of a session that an installed input method takes over: its window is started and its hot
// key is typed through the receiver, with the pauses that the input methods need.

#include "session/SessionMachine.h"

#include "session/ThirdPartyKeys.h"

#include <QFileInfo>

#include <utility>

namespace mevo {

namespace {

constexpr int keyPauseMs = 100;
constexpr int freshProgramMs = 500; ///< until a program that was started looks at its key
/// How long a window that a click has brought up counts as listening by itself: no utterance is longer.
constexpr int listensByItselfMs = 60000;

int hotKeyModifiers(const SettingsState &settings)
{
    return settings.LocalXunFeiASR3CtrlKey ^ settings.LocalXunFeiASR3AltKey ^
           settings.LocalXunFeiASR3ShiftKey;
}

} // namespace

void SessionMachine::pressThirdParty()
{
    const bool xunFei = m_state.LocalUseASR3Index == thirdPartyXunFei;
    const auto placeBar = [this, xunFei] { m_port.placeBar(299, xunFei ? 389 : 319); };
    const auto hideBarIfWanted = [this] {
        if (m_state.HidMainUIWhenASR) {
            m_port.hideBar();
        }
    };
    const auto markStarted = [this, &hideBarIfWanted] {
        m_state.ThirdPartyWindowOpen = true;
        m_port.markInputMethodStarted();
        hideBarIfWanted();
        m_port.sleepMs(keyPauseMs);
    };

    bool started = false;
    const bool listens = listensSinceClick();
    const bool found = m_port.findInputMethodWindow() != 0;
    if (!found) {
        placeBar();
        if (m_state.LocalMustClickRunASR3) {
            // The user starts it, by a click on the microphone.
        } else if (xunFei && !m_state.LocalASR3XunFeiInstallPath.isEmpty()) {
            m_state.MicWinShown = false;
            m_port.hideTipWindow();
            m_port.startXunFeiInputMethod();
            markStarted();
            started = true;
        } else if (!xunFei && !m_state.LocalASR3SougoInstallPath.isEmpty()) {
            m_port.startProgram(m_state.LocalASR3SougoInstallPath);
            markStarted();
            started = true;
        }
        if (started) {
            if (!m_state.ASR3HoldToTalk) {
                return; // the fresh window listens by itself
            }
            m_port.sleepMs(freshProgramMs);
        }
    } else {
        if (!xunFei) {
            placeBar();
        }
        hideBarIfWanted();
    }

    const int modifiers = hotKeyModifiers(m_state);
    if (m_state.ASR3HoldToTalk) {
        m_hotKeyHeld = true; // until the release
        m_port.sendDeviceKey(modifiers, m_state.ASR3ShortCutKey);
        return;
    }
    if (found && listens) {
        return; // its key would end what the user has just begun
    }
    if (!found) {
        hideBarIfWanted();
    }
    const int usage = m_state.LocalXunFeiASR3ShortcutKey != 0 ? m_state.LocalXunFeiASR3ShortcutKey : usageF2;
    m_port.sendDeviceKey(modifiers, usage);
    m_port.sleepMs(keyPauseMs);
    m_port.sendDeviceKey(modifiers, 0);
}

void SessionMachine::pressCustomMethod()
{
    const QString path = m_state.LocalASR3CustomInstallPath;
    // The path may come from another system's settings: either separator ends a folder.
    const QString name = QFileInfo(QString(path).replace(QLatin1Char('\\'), QLatin1Char('/'))).fileName();
    // Known programs are known without the suffix, too, where programs have none.
    const bool suffixed = name.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive);
    const QString image = suffixed ? name : name + QLatin1String(".exe");
    const bool byItself = image.contains(QLatin1String("VoiceInput.exe"));
    const bool listens = listensSinceClick() && byItself;
    if (!name.isEmpty() && !m_state.LocalMustClickRunASR3 && !m_port.isProgramRunning(name)) {
        m_port.startProgram(path);
        if (!m_state.ASR3CustomWinClassName.isEmpty()) {
            m_keyAwaitsWindow = true; // a program may need longer than is waited for below
            m_port.awaitInputMethodWindow(m_state.ASR3CustomWinClassName);
            return;
        }
        m_port.sleepMs(keyPauseMs);
        if (image.contains(QLatin1String("SpeechInput.exe")) || m_state.ASR3CustomHoldToTalk) {
            m_port.sleepMs(freshProgramMs);
        }
        if (byItself) {
            return;
        }
    } else if (listens) {
        return; // its key would end what the user has just begun
    }
    typeCustomKey();
}

void SessionMachine::inputMethodStartedByClick()
{
    m_clicked = m_port.monotonicMs();
}

/// Only the first press after the click finds it so.
bool SessionMachine::listensSinceClick()
{
    const auto clicked = std::exchange(m_clicked, std::nullopt);
    return clicked && m_port.monotonicMs() - *clicked < listensByItselfMs;
}

void SessionMachine::inputMethodCame()
{
    if (std::exchange(m_keyAwaitsWindow, false) && m_state.ThirdPartyActive &&
        m_state.LocalUseASR3Index == thirdPartyCustom && m_state.ShowASR3Custom) {
        typeCustomKey();
    }
}

void SessionMachine::typeCustomKey()
{
    m_hotKeyHeld = m_state.ASR3CustomHoldToTalk;
    m_port.sendDeviceKey(m_state.ASR3CustomCtrlShortCutKey, m_state.ASR3CustomShortCutKey);
    if (m_hotKeyHeld) {
        return;
    }
    m_port.sleepMs(keyPauseMs);
    m_port.sendDeviceKey(0, 0);
}

/// Whatever has become of the input method since the press, its key does not stay down.
void SessionMachine::letHotKeyGo()
{
    m_keyAwaitsWindow = false;
    if (m_hotKeyHeld) {
        m_hotKeyHeld = false;
        m_port.sendDeviceKey(0, 0);
    }
}

bool SessionMachine::releaseThirdParty()
{
    if (m_state.LocalUseASR3Index == thirdPartyCustom) {
        if (!m_state.ShowASR3Custom) {
            return false;
        }
        if (m_hotKeyHeld || m_keyAwaitsWindow) { // what was not pressed is not released
            letHotKeyGo();
            return true;
        }
        m_port.sendDeviceKey(m_state.ASR3CustomCtrlShortCutKey, m_state.ASR3CustomShortCutKey);
        m_port.sleepMs(keyPauseMs);
        m_port.sendDeviceKey(0, 0);
        return true;
    }
    if (!m_state.VoiceTypeMode ||
        (m_state.LocalUseASR3Index != thirdPartyXunFei && m_state.LocalUseASR3Index != thirdPartySogou)) {
        return false;
    }
    m_port.startPasteContentTimer();
    if (!m_state.ASR3HoldToTalk) {
        letHotKeyGo();
        m_port.startTapTimer();
        return true;
    }
    m_hotKeyHeld = false;
    m_port.sendDeviceKey(0, 0);
    m_port.sleepMs(keyPauseMs);
    const int usage = m_state.LocalXunFeiASR3ShortcutKey != 0 ? m_state.LocalXunFeiASR3ShortcutKey
                                                              : m_state.ASR3ShortCutKey;
    m_port.sendDeviceKey(hotKeyModifiers(m_state), usage);
    m_port.sleepMs(200);
    m_port.sendDeviceKey(0, 0);
    m_port.sleepMs(200);
    m_port.sendDeviceKey(0, 0);
    return true;
}

} // namespace mevo
