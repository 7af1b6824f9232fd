// Page of what is set most: engines, input methods, the way of the text, the microphone.

#include "ui/settings/ControlTable.h"

#include <QtGlobal>

namespace mevo {

namespace {

using namespace control; // NOLINT(google-build-using-namespace): the rows are nothing but its calls

std::vector<ControlRow> voiceRows()
{
    return {
        radio("engine", "radioButton_BaiduNotStreamRestApi",
              QT_TRANSLATE_NOOP("CSettingDialog", "使用百度识别引擎"))
            .when(ShownWhen::Baidu)
            .slot(),
        radio("engine", "radioButton_UseXunFeiWebApi",
              QT_TRANSLATE_NOOP("CSettingDialog", "使用讯飞识别引擎"))
            .when(ShownWhen::XunFei)
            .slot(),
        radio("engine", "radioButton_TXAsrAPI", QT_TRANSLATE_NOOP("CSettingDialog", "使用腾讯识别引擎"))
            .when(ShownWhen::Tencent)
            .slot(),
        radio("engine", "radioButton_EnableThirdPartyVoiceInput",
              QT_TRANSLATE_NOOP("CSettingDialog", "使用第三方语音输入法"))
            .when(ShownWhen::InputMethod)
            .slot(),
        check("checkBox_BaiduNotStreamRestApi", QT_TRANSLATE_NOOP("CSettingDialog", "使用百度识别引擎"))
            .when(ShownWhen::Never)
            .slot(),
        check("checkBox_UseXunFeiWebApi", QT_TRANSLATE_NOOP("CSettingDialog", "使用讯飞识别引擎"))
            .when(ShownWhen::Never)
            .slot(),
        check("checkBox_EnableThirdPartyVoiceInput",
              QT_TRANSLATE_NOOP("CSettingDialog", "使用第三方语音输入法"))
            .when(ShownWhen::Never)
            .slot(),
        check("checkBox_EnableTecentAsr_zh_dialect",
              QT_TRANSLATE_NOOP("CSettingDialog", "支持腾讯语音方言识别"))
            .when(ShownWhen::TencentDialect)
            .line()
            .slot(),
        check("checkBox_Check_VadEos", QT_TRANSLATE_NOOP("CSettingDialog", "静音超时停止录音"),
              "Check_VadEos")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "打开语音时，支持最大静音时间，如超过，则自动开始识别"))
            .line(),
        choice("comboBox_VADEOS_CheckTimeout", QT_TRANSLATE_NOOP("CSettingDialog", "超时时间(秒）："),
               "VADEOS_CheckTimeout", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}, 1),
        radio("press", "radioButton_LongPressForVoiceInput",
              QT_TRANSLATE_NOOP("CSettingDialog", "长按开启语音输入"), "Enable_LongPressForVoiceInput")
            .line(),
        radio("press", "radioButton_OnePressForVoiceInput",
              QT_TRANSLATE_NOOP("CSettingDialog", "点击开始语音输入"), "Enable_OnePressForVoiceInput"),
        check("checkBox_HidMainUIWhenASR", QT_TRANSLATE_NOOP("CSettingDialog", "语音输入时隐藏主界面"),
              "HidMainUIWhenASR")
            .line(),
        check("checkBox_RunAsAdmin", QT_TRANSLATE_NOOP("CSettingDialog", "以管理员权限运行程序")).slot(),
    };
}

std::vector<ControlRow> streamRows()
{
    return {
        check("checkBox_EnableXunFeiDwa", QT_TRANSLATE_NOOP("CSettingDialog", "讯飞接口边说边出结果"))
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "动态修订功能指边说话加出结果，可以修订之前错误结果"))
            .slot(),
        check("checkBox_EnableXunFeiDialect", QT_TRANSLATE_NOOP("CSettingDialog", "中文方言(试用)"),
              "EnableXunFeiDialect")
            .when(ShownWhen::XunFeiDialect)
            .line(),
        button("pushButton_XFWebApiSelectDialect", QT_TRANSLATE_NOOP("CSettingDialog", "选择方言"))
            .when(ShownWhen::XunFeiDialect),
        check("checkBox_EnableXunFeiSmallLan", QT_TRANSLATE_NOOP("CSettingDialog", "小语种(试用)"),
              "EnableXunFeiSmallLan")
            .when(ShownWhen::XunFeiSmallLan)
            .line(),
        button("pushButton_XFWebApiSelectSmallLan", QT_TRANSLATE_NOOP("CSettingDialog", "选择语种"))
            .when(ShownWhen::XunFeiSmallLan),
    };
}

std::vector<ControlRow> inputMethodRows()
{
    return {
        choice("comboBox_SelectASR3", QT_TRANSLATE_NOOP("CSettingDialog", "语音输入法："), nullptr,
               {QT_TRANSLATE_NOOP("CSettingDialog", "讯飞语音输入法"),
                QT_TRANSLATE_NOOP("CSettingDialog", "搜狗语音输入法"),
                QT_TRANSLATE_NOOP("CSettingDialog", "自定义语音输入法")},
               1)
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "选择相应输入法，暂时支持两种"))
            .slot(),
        check("checkBox_ForceUseASR3", QT_TRANSLATE_NOOP("CSettingDialog", "强制只使用第三方语音输入"),
              "ForceUseASR3")
            .slot(),
        button("pushButton_ASR3DownWeb", QT_TRANSLATE_NOOP("CSettingDialog", "手动下载安装"))
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "手动点击下载最新版本第三方输入法")),
        path("lineEdit_ASR3XunFeiInstallPath", "pushButton_BrowseASR3XunFeiInstallPath",
             QT_TRANSLATE_NOOP("CSettingDialog", "讯飞语音输入法路径："), "LocalASR3XunFeiInstallPath"),
        path("lineEdit_ASR3SougoInstallPath", "pushButton_BrowseASR3SougoInstallPath",
             QT_TRANSLATE_NOOP("CSettingDialog", "搜狗语音输入法路径："), "LocalASR3SougoInstallPath"),
        path("lineEdit_ASR3CustomInstallPath", "pushButton_BrowseASR3CustomInstallPath",
             QT_TRANSLATE_NOOP("CSettingDialog", "自定义语音输入法路径："), "LocalASR3CustomInstallPath")
            .when(ShownWhen::CustomMethod),
        button("pushButton_OpenXunFeiInputSetting",
               QT_TRANSLATE_NOOP("CSettingDialog", "讯飞语音输入设置\n(支持选择方言)"))
            .line(),
        button("pushButton_OpenXunFeiInputHW", QT_TRANSLATE_NOOP("CSettingDialog", "讯飞鼠标手写")),
        check("checkBox_OnlyUseXunFeiOfflineASR",
              QT_TRANSLATE_NOOP("CSettingDialog", "一直使用讯飞离线语音识别"), "OnlyUseXunFeiOfflineASR")
            .line()
            .slot(),
        check("checkBox_AsrOffline", QT_TRANSLATE_NOOP("CSettingDialog", "支持讯飞语音识别（在线+离线）"),
              "ForceUseXFMore3V")
            .slot(),
    };
}

std::vector<ControlRow> outputRows()
{
    return {
        choice("comboBox_Send2ScreenMethod", QT_TRANSLATE_NOOP("CSettingDialog", "识别结果上屏方式："),
               "Send2ScreenMethod",
               {QT_TRANSLATE_NOOP("CSettingDialog", "自动"), QT_TRANSLATE_NOOP("CSettingDialog", "消息"),
                QT_TRANSLATE_NOOP("CSettingDialog", "粘贴")})
            .tip(QT_TRANSLATE_NOOP("CSettingDialog",
                                   "识别结果上屏方式有三种，如识别结果无法上屏，请尝试切换另一种")),
        check("checkBox_EnableP3Keyboard",
              QT_TRANSLATE_NOOP("CSettingDialog", "手写时启用屏上键盘功能(P1/P3/P4)"), "EnableP3Keyboard")
            .line(),
        check("checkBox_DontSend2ScreenWhenCmdStatus",
              QT_TRANSLATE_NOOP("CSettingDialog", "语音命令词时识别内容不上屏"),
              "DontSend2ScreenWhenCmdStatus")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "语音命令词模式下识别结果是否显示在屏幕上")),
        check("checkBox_TXASRConvertNum2CNMode",
              QT_TRANSLATE_NOOP("CSettingDialog", "数字输出为中文数字(腾讯语音)"), "TXASRConvertNum2CNMode")
            .line(),
        check("checkBox_AddPunctuationWhenEnd", QT_TRANSLATE_NOOP("CSettingDialog", "句末自动加入标点符号"),
              "AddPunctuationWhenEnd"),
        check("checkBox_Juhao2Douhao", QT_TRANSLATE_NOOP("CSettingDialog", "识别结果句号转逗号"),
              "Juhao2Douhao")
            .line(),
        check("checkBox_Output2Tranditional", QT_TRANSLATE_NOOP("CSettingDialog", "輸出转为繁体字"),
              "Output2Tranditional"),
        check("checkBox_SimulateDoubleChannel", QT_TRANSLATE_NOOP("CSettingDialog", "采集双声道语音"),
              "SimulateDoubleChannel")
            .line()
            .slot(),
        check("checkBox_UseRightChannelVoice",
              QT_TRANSLATE_NOOP("CSettingDialog", "录音时采集麦克风右声道声音"), "UseRightChannelVoice"),
        check("checkBox_OnlyUseOurDeviceMic",
              QT_TRANSLATE_NOOP("CSettingDialog", "优先使用产品自带麦克风录音"), "OnlyUseOurDeviceMic")
            .line()
            .slot(),
        check("checkBox_KeepMicrophoneReady", QT_TRANSLATE_NOOP("CSettingDialog", "录音后麦克风保持就绪"),
              "KeepMicrophoneReady")
            .tip(QT_TRANSLATE_NOOP(
                "CSettingDialog",
                "录音后几分钟内再次录音，部分电脑上开始得更快；期间不录音，但系统可能显示麦克风在使用"))
            .slot(),
        choice("comboBox_MICDeviceList", QT_TRANSLATE_NOOP("CSettingDialog", "选择麦克风："), nullptr, {})
            .line()
            .slot(),
        other(ControlKind::Level, "progressBar_MicLevel", QT_TRANSLATE_NOOP("CSettingDialog", "麦克风音量")),
    };
}

} // namespace

std::vector<GroupRow> commonGroups()
{
    return {
        {"groupBox_Voice", Page::Common, QT_TRANSLATE_NOOP("CSettingDialog", "语音设置"), voiceRows()},
        {"groupBox_XunFeiStream", Page::Common,
         QT_TRANSLATE_NOOP("CSettingDialog", "讯飞流式版(不支持WindowsXP系统)"), streamRows(),
         "groupBox_Voice", ShownWhen::XunFei},
        {"groupBox_ThirdParty", Page::Common, QT_TRANSLATE_NOOP("CSettingDialog", "第三方语音输入法"),
         inputMethodRows(), "groupBox_Voice", ShownWhen::InputMethod},
        {"groupBox_Output", Page::Common, QT_TRANSLATE_NOOP("CSettingDialog", " 输出设置"), outputRows()},
    };
}

} // namespace mevo
