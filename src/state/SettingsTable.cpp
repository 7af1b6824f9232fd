#include "state/SettingsTable.h"

#include "base/SettingsFile.h"
#include "state/SettingAccess.h"

#include <QDir>

namespace mevo {

namespace {

using S = MainState;
constexpr SettingKind plain = SettingKind::Plain;
constexpr SettingKind nonZero = SettingKind::NonZero;
constexpr SettingKind positive = SettingKind::Positive;
constexpr SettingKind stored = SettingKind::Stored;
constexpr SettingKind list = SettingKind::List;

constexpr int customInputMethod = 3;

QStringList splitList(const QVariant &value)
{
    return listParts(value.toString().section(QChar(0), 0, 0));
}

struct Loader
{
    const SettingRow &row;
    const QVariant value;
    MainState &state;

    void operator()(bool S::*member) const { state.*member = flag(state.*member); }
    void operator()(std::atomic<bool> S::*member) const { state.*member = flag(state.*member); }
    void operator()(int S::*member) const { state.*member = number(state.*member); }
    void operator()(std::atomic<int> S::*member) const { state.*member = number(state.*member); }
    void operator()(QString S::*member) const { state.*member = value.toString(); }
    void operator()(QStringList S::*member) const { state.*member = splitList(value); }

private:
    bool flag(bool before) const
    {
        const bool now = row.kind == SettingKind::NonZero
                             ? value.toInt() != 0 || value.toString() == QLatin1String("true")
                             : value.toBool();
        return row.sticky ? before || now : now;
    }
    int number(int before) const
    {
        bool isNumber = false;
        const int now = value.toInt(&isNumber);
        const bool keeps =
            row.kind == SettingKind::Positive ? now <= 0 : row.kind == SettingKind::Stored && !isNumber;
        return keeps ? before : now;
    }
};

} // namespace

const std::vector<SettingRow> &settingRows()
{
    static const std::vector<SettingRow> rows = {
        {"TXCurrentVoiceType", &S::TXCurrentVoiceType},
        {"UseTecentZhDialect", &S::UseTecentZhDialect, plain, false, true},
        {"AutoRunApp", &S::AutoRunApp},
        {"TXASRConvertNum2CNMode", &S::TXASRConvertNum2CNMode},
        {"RunAsAdmin", &S::RunAsAdmin},
        {"MainWinLeft", &S::MainWinLeft},
        {"MainWinTop", &S::MainWinTop},
        {"ASR3CustomCtrlShortCutKey", &S::ASR3CustomCtrlShortCutKey},
        {"ASR3CustomShortCutKey", &S::ASR3CustomShortCutKey},
        {"LocalASR3CustomInstallPath", &S::LocalASR3CustomInstallPath},
        {"OnlyUseXunFeiOfflineASR", &S::OnlyUseXunFeiOfflineASR},
        {"ForceUseXFMore3V", &S::ForceUseXFMore3V},
        {"Asr2ScreenIntervalTime", &S::Asr2ScreenIntervalTime, positive},
        {"HW2ScreenIntervalTime", &S::HW2ScreenIntervalTime, positive},
        {"EnableP3Keyboard", &S::EnableP3Keyboard},
        {"LocalXunFeiASR3CtrlKey", &S::LocalXunFeiASR3CtrlKey},
        {"LocalXunFeiASR3AltKey", &S::LocalXunFeiASR3AltKey},
        {"LocalXunFeiASR3ShiftKey", &S::LocalXunFeiASR3ShiftKey},
        {"LocalXunFeiASR3ShortcutKey", &S::LocalXunFeiASR3ShortcutKey},
        {"LocalEnableASR3", &S::LocalEnableASR3},
        {"LocalUseASR3Index", &S::LocalUseASR3Index},
        {"HidMainUIWhenASR", &S::HidMainUIWhenASR},
        {"ForceUseASR3", &S::ForceUseASR3},
        {"LocalMustClickRunASR3", &S::LocalMustClickRunASR3},
        {"FirstRunApp", &S::FirstRunApp},
        {"ShowVerticalUI", &S::ShowVerticalUI},
        {"ShowTipsDlg", &S::ShowTipsDlg, nonZero},
        {"SimulateDoubleChannel", &S::SimulateDoubleChannel},
        {"OnlyUseOurDeviceMic", &S::OnlyUseOurDeviceMic},
        {"KeepMicrophoneReady", &S::KeepMicrophoneReady},
        {"XunFeiWebApiCurrentVoiceType", &S::XunFeiWebApiCurrentVoiceType},
        {"BaiDuNoStreamApi_FastVersion", &S::BaiDuNoStreamApi_FastVersion},
        {"EnableXunFeiDialect", &S::EnableXunFeiDialect},
        {"EnableXunFeiSmallLan", &S::EnableXunFeiSmallLan},
        {"XFSelectDirlect", &S::XFSelectDirlect},
        {"XFSelectSmallLan", &S::XFSelectSmallLan},
        {"ShowXFDialect", &S::ShowXFDialect},
        {"ShowXFSmallLan", &S::ShowXFSmallLan},
        {"LocalASR3XunFeiInstallPath", &S::LocalASR3XunFeiInstallPath},
        {"LocalASR3SougoInstallPath", &S::LocalASR3SougoInstallPath},
        {"LocalEnableThirdpatyVoiceInput", &S::LocalEnableThirdpatyVoiceInput, nonZero},
        {"RunThirdpartVoiceInputByORV", &S::RunThirdpartVoiceInputByORV},
        {"Send2ScreenMethod", &S::Send2ScreenMethod},
        {"Output2Tranditional", &S::Output2Tranditional, nonZero},
        {"AddPunctuationWhenEnd", &S::AddPunctuationWhenEnd, nonZero},
        {"Juhao2Douhao", &S::Juhao2Douhao},
        {"DontSend2ScreenWhenCmdStatus", &S::DontSend2ScreenWhenCmdStatus},
        {"VoiceImmediateSend", &S::VoiceImmediateSend, plain, true},
        {"VoiceImmediateSend_AltS", &S::VoiceImmediateSend_AltS, plain, true},
        {"VoiceImmediateSend_Enter", &S::VoiceImmediateSend_Enter, plain, true},
        {"VoiceImmediateSend_CtrlEnter", &S::VoiceImmediateSend_CtrlEnter, plain, true},
        {"VoiceSend", &S::VoiceSend, plain, true},
        {"VoiceSend_MapWords2Screen", &S::VoiceSend_MapWords2Screen, plain, true},
        {"VoiceSend_AltS", &S::VoiceSend_AltS, plain, true},
        {"VoiceSend_Enter", &S::VoiceSend_Enter, plain, true},
        {"VoiceSend_CtrlEnter", &S::VoiceSend_CtrlEnter, plain, true},
        {"VoiceSend_AltS_MapWords", &S::VoiceSend_AltS_MapWords},
        {"VoiceSend_Enter_MapWords", &S::VoiceSend_Enter_MapWords},
        {"VoiceSend_CtrlEnter_MapWords", &S::VoiceSend_CtrlEnter_MapWords},
        {"VoiceNewLine", &S::VoiceNewLine, plain, true},
        {"VoiceNewLine_MapWords2Screen", &S::VoiceNewLine_MapWords2Screen, plain, true},
        {"VoiceNewLine_Enter", &S::VoiceNewLine_Enter, plain, true},
        {"VoiceNewLine_CtrlEnter", &S::VoiceNewLine_CtrlEnter, plain, true},
        {"VoiceNewLine_Enter_MapWords", &S::VoiceNewLine_Enter_MapWords},
        {"VoiceNewLine_CtrlEnter_MapWords", &S::VoiceNewLine_CtrlEnter_MapWords},
        {"VoiceClear", &S::VoiceClear, plain, true},
        {"VoiceClear_MapWords2Screen", &S::VoiceClear_MapWords2Screen, plain, true},
        {"VoiceClear_Backspace", &S::VoiceClear_Backspace, plain, true},
        {"VoiceClear_Delete", &S::VoiceClear_Delete, plain, true},
        {"VoiceClear_Backspace_MapWords", &S::VoiceClear_Backspace_MapWords},
        {"VoiceClear_Delete_MapWords", &S::VoiceClear_Delete_MapWords},
        {"Enable_LongPressForVoiceInput", &S::Enable_LongPressForVoiceInput, plain, true},
        {"Enable_OnePressForVoiceInput", &S::Enable_OnePressForVoiceInput, plain, true},
        {"Check_VadEos", &S::Check_VadEos},
        {"VADEOS_CheckTimeout", &S::VADEOS_CheckTimeout, positive},
        {"Enable_SwitchFunctionMode", &S::Enable_SwitchFunctionMode},
        {"SetEnterVoiceTypeMode", &S::SetEnterVoiceTypeMode},
        {"SetEnterVoiceCommandWordMode", &S::SetEnterVoiceCommandWordMode},
        {"SetEnterVoiceTranslateMode", &S::SetEnterVoiceTranslateMode},
        {"SetEnterVoiceSearchMode", &S::SetEnterVoiceSearchMode},
        {"SetEnterVoiceTypeModeSwitchModeFlags", &S::SetEnterVoiceTypeModeSwitchModeFlags, list},
        {"SetEnterVoiceCommandWordModeSwitchModeFlags", &S::SetEnterVoiceCommandWordModeSwitchModeFlags,
         list},
        {"SetEnterVoiceTranslateModeSwitchModeFlags", &S::SetEnterVoiceTranslateModeSwitchModeFlags, list},
        {"SetEnterVoiceSearchModeSwitchModeFlags", &S::SetEnterVoiceSearchModeSwitchModeFlags, list},
        {"SetEnterVoiceKeyboardModeSwitchModeFlags", &S::SetEnterVoiceKeyboardModeSwitchModeFlags, list},
        {"Enable_SwitchModeFlagsWord2Screen", &S::Enable_SwitchModeFlagsWord2Screen},
        {"Enable_CommandWord_Direct", &S::Enable_CommandWord_Direct},
        {"Enable_Search_Direct", &S::Enable_Search_Direct},
        {"Enable_CmdFlagsWord2Screen_Direct", &S::Enable_CmdFlagsWord2Screen_Direct},
        {"Enable_SearchFlagsWord2Screen_Direct", &S::Enable_SearchFlagsWord2Screen_Direct},
        {"CmdFlags_Contents_Driect", &S::CmdFlags_Contents_Driect, list},
        {"SearchFlags_Contents_Driect", &S::SearchFlags_Contents_Driect, list},
        {"SearchEngines_Baidu", &S::SearchEngines_Baidu},
        {"SearchEngines_Sogou", &S::SearchEngines_Sogou},
        {"SearchEngines_360", &S::SearchEngines_360},
        {"SearchEngines_Google", &S::SearchEngines_Google},
        {"SearchEngines_Bing", &S::SearchEngines_Bing},
        // kept: two of these are read under other spellings than the dialog writes
        {"MouseCurrentDPI", &S::MouseCurrentDPI, positive},
        {"MouseCurrentDataRate", &S::MouseCurrentDataRate, positive},
        {"MosueCurrentWheelSpeed", &S::MouseCurrentWheelSpeed, stored},
        {"MouseCurrentLeftkeyValue", &S::MouseCurrentLeftKeyValue},
        {"MouseCurrentRightKeyValue", &S::MouseCurrentRightKeyValue},
        {"MouseCurrentLeftKeyString", &S::MouseCurrentLeftKeyString},
        {"MouseCurrentRightKeyString", &S::MouseCurrentRightKeyString},
        {"DownloadDrvWeb", &S::DownloadDrvWeb},
        {"UserManual", &S::UserManual},
        {"Website", &S::Website},
        {"SupportContact", &S::SupportContact},
        {"SupportEmail", &S::SupportEmail},
    };
    return rows;
}

void loadSetting(const SettingRow &row, const SettingsFile &settings, MainState &state)
{
    const QVariant value = settings.value(QLatin1String(row.key), QString());
    std::visit(Loader{row, value, state}, row.member);
}

void loadSettings(MainState &state, SettingsFile &settings, bool startupEntryExists)
{
    for (const SettingRow &row : settingRows()) {
        loadSetting(row, settings, state);
        if (row.writeBack && settings.contains(QLatin1String(row.key))) {
            settings.setValue(QLatin1String(row.key), settings.value(QLatin1String(row.key)));
        }
    }
    dropUnofferedInputMethod(state, settings);
    settings.setValue(QStringLiteral("CurrentVersion"), state.CurrentVersion);
    state.AutoRunApp = startupEntryExists ? QStringLiteral("1") : QString();
    settings.setValue(QStringLiteral("AutoRunApp"), state.AutoRunApp);
}

void dropUnofferedInputMethod(MainState &state, SettingsFile &settings)
{
    if (state.LocalUseASR3Index != customInputMethod || state.ShowASR3Custom) {
        return;
    }
    state.LocalUseASR3Index = -1;
    state.LocalEnableASR3 = false;
    settings.setValue(QStringLiteral("LocalUseASR3Index"), -1);
    settings.setValue(QStringLiteral("LocalEnableASR3"), false);
}

void loadEarlySettings(MainState &state, SettingsFile &settings, bool xpClass, const QString &programPath)
{
    static const SettingRow rows[] = {
        {"SimulateDoubleChannel", &S::SimulateDoubleChannel},
        {"FirstRunApp", &S::FirstRunApp},
        {"PureXunFeiOfflineVersion", &S::PureXunFeiOfflineVersion},
        {"LocalEnableASR3", &S::LocalEnableASR3},
        {"LocalUseASR3Index", &S::LocalUseASR3Index},
        {"ShowVerticalUI", &S::ShowVerticalUI},
        {"XFPKGName", &S::XFPKGName},
        {"ShowTipsDlg", &S::ShowTipsDlg, nonZero},
    };
    for (const SettingRow &row : rows) {
        loadSetting(row, settings, state);
    }
    if (xpClass) {
        state.PureXunFeiOfflineVersion = false;
    }
    dropUnofferedInputMethod(state, settings);
    if (state.XFPKGName.isEmpty()) {
        state.XFPKGName = QStringLiteral("iFlyIME_Setup3.0.1727.exe");
    }
    settings.setValue(
        QStringLiteral("EXEPath"),
        QDir::toNativeSeparators(programPath).replace(QLatin1String("\\"), QLatin1String("\\\\")));
}

void dropEmptyProxy(ServiceState &state)
{
    if (state.NetworkProxy_IP.isEmpty() && state.NetworkProxy_Port == -1 &&
        state.NetworkProxy_UserName.isEmpty() && state.NetworkProxy_Password.isEmpty()) {
        state.UseNetworkProxy = false;
    }
}

void loadProxySettings(MainState &state, const SettingsFile &settings)
{
    const auto text = [&settings](const char *key) {
        return settings.value(QLatin1String(key)).toString().trimmed();
    };
    state.NetworkProxy_IP = text("NetworkProxy_IP");
    const QString port = text("NetworkProxy_Port");
    state.NetworkProxy_Port = port.isEmpty() ? -1 : port.toInt();
    state.NetworkProxy_UserName = text("NetworkProxy_UserName");
    state.NetworkProxy_Password = text("NetworkProxy_Password");
    state.UseNetworkProxy = settings.value(QStringLiteral("UseNetworkProxy")).toBool();
    dropEmptyProxy(state);
}

} // namespace mevo
