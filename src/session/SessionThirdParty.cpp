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
/// How long an input method that a click has started counts as listening by itself, from its window's coming
/// on. Who has clicked goes on to speak; where nothing is heard it falls silent by itself within seconds, and
/// the next press begins anew. A wrong guess, either way, turns begin and end round until then.
constexpr int listensByItselfMs = 10000;

int hotKeyModifiers(const SettingsState &settings)
{
    return settings.LocalXunFeiASR3CtrlKey ^ settings.LocalXunFeiASR3AltKey ^
           settings.LocalXunFeiASR3ShiftKey;
}

/// The path may come from another system's settings: either separator ends a folder.
QString customProgramName(const QString &path)
{
    return QFileInfo(QString(path).replace(QLatin1Char('\\'), QLatin1Char('/'))).fileName();
}

} // namespace

SessionMachine::MethodPress::Doing SessionMachine::pressThirdParty(int key)
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

    const bool listens = listensSinceClick(true) || listensToAnotherKey(key);
    const bool found = m_port.findInputMethodWindow() != 0;
    if (!found) {
        placeBar();
        bool started = false;
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
                return MethodPress::Doing::Listens; // a fresh window does so by itself
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
        m_port.sendDeviceKey(modifiers, m_state.ASR3ShortCutKey);
        return MethodPress::Doing::Held;
    }
    if (listens) {
        return MethodPress::Doing::Listens; // its key would end what has been begun
    }
    if (!found) {
        hideBarIfWanted();
    }
    const int usage = m_state.LocalXunFeiASR3ShortcutKey != 0 ? m_state.LocalXunFeiASR3ShortcutKey : usageF2;
    m_port.sendDeviceKey(modifiers, usage);
    m_port.sleepMs(keyPauseMs);
    m_port.sendDeviceKey(modifiers, 0);
    return MethodPress::Doing::Listens;
}

SessionMachine::MethodPress::Doing SessionMachine::pressCustomMethod(int key)
{
    const QString path = m_state.LocalASR3CustomInstallPath;
    const QString name = customProgramName(path);
    // Known programs are known without the suffix, too, where programs have none.
    const bool suffixed = name.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive);
    const QString image = suffixed ? name : name + QLatin1String(".exe");
    const bool byItself = image.contains(QLatin1String("VoiceInput.exe"));
    const bool listens = listensSinceClick(byItself) || listensToAnotherKey(key);
    if (!name.isEmpty() && !m_state.LocalMustClickRunASR3 && !m_port.isProgramRunning(name)) {
        m_port.startProgram(path);
        if (!m_state.ASR3CustomWinClassName.isEmpty()) {
            m_windowAwaited = true; // a program may need longer than is waited for below
            m_port.awaitInputMethodWindow(m_state.ASR3CustomWinClassName);
            return MethodPress::Doing::AwaitsWindow;
        }
        m_port.sleepMs(keyPauseMs);
        if (image.contains(QLatin1String("SpeechInput.exe")) || m_state.ASR3CustomHoldToTalk) {
            m_port.sleepMs(freshProgramMs);
        }
        if (byItself) {
            return MethodPress::Doing::Listens;
        }
    } else if (m_windowAwaited) {
        return MethodPress::Doing::AwaitsWindow; // what is typed before is lost
    } else if (listens) {
        return MethodPress::Doing::Listens; // its key would end what has been begun
    }
    return typeCustomKey();
}

void SessionMachine::inputMethodStartedByClick()
{
    m_clicked = Click{m_state.LocalUseASR3Index, m_port.monotonicMs()};
    if (m_state.LocalUseASR3Index != thirdPartyCustom) {
        m_port.awaitInputMethodWindow(m_state.ASR3WinClassName);
    }
}

void SessionMachine::inputMethodLeft()
{
    m_clicked.reset();
    m_windowAwaited = false;
}

/// Only the first press of an input method after a click finds it so. `byItself`: its program does at a
/// start.
bool SessionMachine::listensSinceClick(bool byItself)
{
    const auto clicked = std::exchange(m_clicked, std::nullopt);
    return clicked && (byItself || clicked->tapped) && clicked->method == m_state.LocalUseASR3Index &&
           m_port.monotonicMs() - clicked->ms < listensByItselfMs;
}

/// The press of a key that is held already has begun it. Not one of the same key, whose release has got lost:
/// the method has most likely fallen silent since.
bool SessionMachine::listensToAnotherKey(int key) const
{
    return m_methodPress && m_methodPress->key != key && m_methodPress->method == m_state.LocalUseASR3Index &&
           m_methodPress->doing == MethodPress::Doing::Listens;
}

void SessionMachine::inputMethodCame()
{
    m_windowAwaited = false;
    if (m_clicked) {
        m_clicked->ms = m_port.monotonicMs();
    }
    if (m_methodPress && m_methodPress->doing == MethodPress::Doing::AwaitsWindow &&
        isInForce(*m_methodPress)) {
        m_methodPress->doing = typeCustomKey();
    }
}

SessionMachine::MethodPress::Doing SessionMachine::typeCustomKey()
{
    if (!m_state.ASR3CustomHoldToTalk) {
        m_port.tapCustomKey();
        return MethodPress::Doing::Listens;
    }
    m_port.sendDeviceKey(m_state.ASR3CustomCtrlShortCutKey, m_state.ASR3CustomShortCutKey);
    return MethodPress::Doing::Held;
}

/// The method of the press is the one that a press would reach now.
bool SessionMachine::isInForce(const MethodPress &press) const
{
    return m_state.ThirdPartyActive && press.method == m_state.LocalUseASR3Index &&
           (press.method == thirdPartyCustom ? m_state.ShowASR3Custom : m_state.VoiceTypeMode.load());
}

void SessionMachine::endMethodPress()
{
    const MethodPress press = *std::exchange(m_methodPress, std::nullopt);
    isInForce(press) ? releaseMethod(press) : leaveMethod(press);
}

void SessionMachine::releaseMethod(const MethodPress &press)
{
    const bool held = press.doing == MethodPress::Doing::Held;
    if (press.method == thirdPartyCustom) {
        if (held) {
            m_port.sendDeviceKey(0, 0);
        } else if (press.doing == MethodPress::Doing::Listens) { // what was not pressed is not released
            m_port.tapCustomKey();
        }
        return;
    }
    m_port.startPasteContentTimer();
    if (!held) {
        m_port.startTapTimer();
        return;
    }
    m_port.sendDeviceKey(0, 0);
    m_port.sleepMs(keyPauseMs);
    const int usage = m_state.LocalXunFeiASR3ShortcutKey != 0 ? m_state.LocalXunFeiASR3ShortcutKey
                                                              : m_state.ASR3ShortCutKey;
    m_port.sendDeviceKey(hotKeyModifiers(m_state), usage);
    m_port.sleepMs(200);
    m_port.sendDeviceKey(0, 0);
    m_port.sleepMs(200);
    m_port.sendDeviceKey(0, 0);
}

/// Another engine, method or mode has come since the press: its key does not stay down, and what still
/// listens is ended. Its key goes to nobody else: it is tapped only while the method is there.
void SessionMachine::leaveMethod(const MethodPress &press)
{
    if (press.doing == MethodPress::Doing::Held) {
        m_port.sendDeviceKey(0, 0);
    }
    if (press.doing != MethodPress::Doing::Listens || press.method != m_state.LocalUseASR3Index) {
        return;
    }
    if (press.method == thirdPartyCustom) {
        if (m_port.isProgramRunning(customProgramName(m_state.LocalASR3CustomInstallPath))) {
            m_port.tapCustomKey();
        }
    } else if (m_port.findInputMethodWindow() != 0) {
        m_port.startTapTimer();
    }
}

} // namespace mevo
