#pragma once

#include <QString>
#include <QStringList>

#include <atomic>

/// Settings held in memory under the names of their keys, as the full load leaves them. The one that
/// the injection thread reads is atomic; the rest belongs to the GUI thread. Settings that another
/// subsystem acts on live in that subsystem's state.
struct SettingsState
{
    bool FirstRunApp = false;
    QString AutoRunApp; ///< "1" or empty
    bool RunAsAdmin = false;
    int MainWinLeft = 0;
    int MainWinTop = 0;
    bool ShowVerticalUI = false;
    bool ShowTipsDlg = false;
    bool HidMainUIWhenASR = false;
    bool SimulateDoubleChannel = false;
    bool OnlyUseOurDeviceMic = false;
    bool KeepMicrophoneReady = false; ///< for some minutes after a session

    bool TXASRConvertNum2CNMode = false;
    bool EnableXunFeiDialect = false;
    bool EnableXunFeiSmallLan = false;
    QString XFSelectDirlect;
    QString XFSelectSmallLan;

    QString LocalASR3XunFeiInstallPath;
    QString LocalASR3SougoInstallPath;
    QString LocalASR3CustomInstallPath;
    int LocalXunFeiASR3CtrlKey = 0;
    int LocalXunFeiASR3AltKey = 0;
    int LocalXunFeiASR3ShiftKey = 0;
    int LocalXunFeiASR3ShortcutKey = 0;
    int ASR3CustomCtrlShortCutKey = 0;
    int ASR3CustomShortCutKey = 0;
    bool OnlyUseXunFeiOfflineASR = false;
    bool PureXunFeiOfflineVersion = false;
    bool ForceUseXFMore3V = false;
    QString XFPKGName;
    bool LocalEnableThirdpatyVoiceInput = false;
    int RunThirdpartVoiceInputByORV = 0;

    int Send2ScreenMethod = 0;                  ///< 0 post when possible, 1 post only, 2 clipboard always
    std::atomic<int> Asr2ScreenIntervalTime{0}; ///< milliseconds before device-typed keys
    int HW2ScreenIntervalTime = 0;
    int EnableP3Keyboard = 0;
    bool Output2Tranditional = false;
    bool AddPunctuationWhenEnd = false;
    bool Juhao2Douhao = true;
    bool DontSend2ScreenWhenCmdStatus = true;

    std::atomic<bool> VoiceImmediateSend{false};
    std::atomic<bool> VoiceImmediateSend_AltS{false};
    std::atomic<bool> VoiceImmediateSend_Enter{false};
    std::atomic<bool> VoiceImmediateSend_CtrlEnter{false};
    bool VoiceSend = false;
    bool VoiceSend_MapWords2Screen = false;
    bool VoiceSend_AltS = false;
    bool VoiceSend_Enter = false;
    bool VoiceSend_CtrlEnter = false;
    QString VoiceSend_AltS_MapWords;
    QString VoiceSend_Enter_MapWords;
    QString VoiceSend_CtrlEnter_MapWords;
    bool VoiceNewLine = false;
    bool VoiceNewLine_MapWords2Screen = false;
    bool VoiceNewLine_Enter = false;
    bool VoiceNewLine_CtrlEnter = false;
    QString VoiceNewLine_Enter_MapWords;
    QString VoiceNewLine_CtrlEnter_MapWords;
    bool VoiceClear = false;
    bool VoiceClear_MapWords2Screen = false;
    bool VoiceClear_Backspace = false;
    bool VoiceClear_Delete = false;
    QString VoiceClear_Backspace_MapWords;
    QString VoiceClear_Delete_MapWords;
    bool Enable_LongPressForVoiceInput = true;
    bool Enable_OnePressForVoiceInput = false;
    bool Check_VadEos = false;
    int VADEOS_CheckTimeout = 10; ///< seconds

    bool Enable_SwitchFunctionMode = false;
    QString SetEnterVoiceTypeMode;
    QString SetEnterVoiceCommandWordMode;
    QString SetEnterVoiceTranslateMode;
    QString SetEnterVoiceSearchMode;
    QStringList SetEnterVoiceTypeModeSwitchModeFlags;
    QStringList SetEnterVoiceCommandWordModeSwitchModeFlags;
    QStringList SetEnterVoiceTranslateModeSwitchModeFlags;
    QStringList SetEnterVoiceSearchModeSwitchModeFlags;
    QStringList SetEnterVoiceKeyboardModeSwitchModeFlags;
    bool Enable_SwitchModeFlagsWord2Screen = true;
    bool Enable_CommandWord_Direct = true;
    bool Enable_Search_Direct = true;
    bool Enable_CmdFlagsWord2Screen_Direct = true;
    bool Enable_SearchFlagsWord2Screen_Direct = false;
    QStringList CmdFlags_Contents_Driect;
    QStringList SearchFlags_Contents_Driect;
    bool SearchEngines_Baidu = false;
    bool SearchEngines_Sogou = false;
    bool SearchEngines_360 = false;
    bool SearchEngines_Google = false;
    bool SearchEngines_Bing = false;

    QString MouseCurrentLeftKeyString;
    QString MouseCurrentRightKeyString;
    QString DownloadDrvWeb;
    QString UserManual;
    QString Website;
    QString SupportContact;
    QString SupportEmail;

    QStringList KeyShowNames; ///< key names for the pickers, parallel to KeyCodes
    QStringList KeyCodes;
};
