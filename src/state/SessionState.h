#pragma once

#include "state/SessionContext.h"

#include <QString>

#include <atomic>

/// What a voice session is doing and what its text is for. The atomics are read by the reader thread;
/// the rest belongs to the GUI thread.
struct SessionState
{
    std::atomic<bool> Recording{false};    ///< our recorder is open for this session
    std::atomic<bool> KeyDownBusy{false};  ///< press handling running
    std::atomic<bool> KeyUpBusy{false};    ///< release handling running
    std::atomic<bool> PressPending{false}; ///< a press has completed and awaits its release
    std::atomic<bool> ResultIdle{true};    ///< the result pipeline is not working on a result
    std::atomic<int> QuickReleaseCount{0}; ///< presses still to ignore after too-short releases
    std::atomic<int> QuickReleaseRun{0};   ///< too-short releases in a row
    bool MouseSession = false;             ///< the tip window itself started the session
    qint64 PressTime = 0;                  ///< monotonic milliseconds
    qint64 ReleaseTime = 0;                ///< monotonic milliseconds
    bool KeyDownHeld = false;              ///< holds the usage counters back while a press is handled
    bool KeyUpHeld = false;                ///< a release is being handled; the tip window reads it

    bool MicWinShown = false;                   ///< the tip window is up
    std::atomic<bool> MicLatched{false};        ///< the tip window's right-click mode: open without holding
    std::atomic<bool> OneShotCommandWord{true}; ///< this session's text is matched as a command
    bool ASRFuncClosed = false;                 ///< the user closed voice recognition
    mevo::WindowId FocusWindow = 0;             ///< focus target saved at the press
    mevo::WindowId PressWindow = 0;             ///< another program's, had the focus at the press
    mevo::WindowId ForegroundWindow = 0;        ///< last foreground window seen

    std::atomic<bool> VoiceTypeMode{false};
    std::atomic<bool> VoiceCommandWordMode{false};
    std::atomic<bool> VoiceSearchMode{false};
    std::atomic<bool> VoiceTranslateMode{false}; ///< independent of the other three
    bool LastVoiceTypeMode = true;
    bool LastVoiceCommandWordMode = false;
    bool LastVoiceSearchMode = false;
    std::atomic<bool> DelimitTranslation{false}; ///< the translation dialog takes key presses

    bool ThirdPartyActive = false;     ///< a third-party input method is set up and in use
    bool ThirdPartyWindowOpen = false; ///< this program started the input method's window
    bool Asr3WindowFound = false;      ///< its window was there when last looked for
    bool ASR3HoldToTalk = false;       ///< its hot key is held while speaking rather than tapped
    int ASR3ShortCutKey = 0x3f;        ///< HID usage of its hot key: 0x3f F6, 0x3b F2
    bool XFVM3 = false;                ///< the newer XunFei window, never closed by a close message
    QString ASR3WinClassName = QStringLiteral("UIIFlyVoiceFrame");
    QString ASR3WindowName = QStringLiteral("讯飞语音悬浮窗");
    QString ASR3Name;           ///< what messages call the input method
    bool XFOfflineMode = false; ///< the XunFei installed recognises without a network
    /// The custom input method's key is held while speaking, as its description in the settings says; false
    /// for the programs that are known by their names.
    bool ASR3CustomHoldToTalk = false;
    QString ASR3CustomWinClassName; ///< of its window; empty when nobody has told

    bool BaiduQuotaHit = false;
    bool XunFeiQuotaHit = false;
    bool TencentQuotaHit = false;

    int NewestSession = 0;      ///< number of the last session that was begun
    QString RecTextBuffer;      ///< text accumulated in the session
    int PartialResultCount = 0; ///< partial results since the press

    /// What is in force now, with no number and no engine.
    mevo::SessionContext contextNow() const
    {
        mevo::SessionContext context;
        context.window = FocusWindow;
        context.pressWindow = PressWindow;
        context.typeMode = VoiceTypeMode;
        context.commandMode = VoiceCommandWordMode;
        context.searchMode = VoiceSearchMode;
        context.translateMode = VoiceTranslateMode;
        context.oneShotCommand = OneShotCommandWord;
        return context;
    }
};
