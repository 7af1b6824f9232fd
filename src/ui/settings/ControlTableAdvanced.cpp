// Page of the direct lanes, the searches, the spoken send keys and the proxy.

#include "ui/settings/ControlTable.h"

#include <QtGlobal>

namespace mevo {

namespace {

using namespace control; // NOLINT(google-build-using-namespace): the rows are nothing but its calls

std::vector<ControlRow> laneRows()
{
    return {
        check("checkBox_Enable_CommandWord_Direct", QT_TRANSLATE_NOOP("CSettingDialog", "命令词直通车"),
              "Enable_CommandWord_Direct"),
        check("checkBox_Enable_CmdFlagsWord2Screen_Direct",
              QT_TRANSLATE_NOOP("CSettingDialog", "命令前缀词上屏"), "Enable_CmdFlagsWord2Screen_Direct")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog",
                                   "执行命令词直通车功能时，语音命令词上屏显示在输入光标处")),
        words(QT_TRANSLATE_NOOP("CSettingDialog", "命令前缀词："), "lineEdit_CmdFlags_Contents_Driect",
              "pushButton_CmdFlags_Direct_Save", "pushButton_CmdFlags_Direct_AddSemicolon", nullptr,
              {"CmdFlags_Contents_Driect"}, {"天王盖地虎;执行命令词;"}),
        check("checkBox_Enable_Search_Direct", QT_TRANSLATE_NOOP("CSettingDialog", "搜索直通车"),
              "Enable_Search_Direct")
            .line(),
        check("checkBox_Enable_SearchFlagsWord2Screen_Direct",
              QT_TRANSLATE_NOOP("CSettingDialog", "搜索前缀词上屏"), "Enable_SearchFlagsWord2Screen_Direct")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "执行搜索直通车功能时，搜索内容上屏显示在输入光标处")),
        words(QT_TRANSLATE_NOOP("CSettingDialog", "搜索前缀词："), "lineEdit_SearchFlags_Contents_Driect",
              "pushButton_SearchFlags_Direct_Save", "pushButton_SearchFlags_Direct_AddSemicolon", nullptr,
              {"SearchFlags_Contents_Driect"}, {"我要搜索;百度搜索;搜一搜;"}),
        check("checkBox_Enable_SwitchFunctionMode", QT_TRANSLATE_NOOP("CSettingDialog", "启用软件功能直通车"),
              "Enable_SwitchFunctionMode")
            .line(),
        check("checkBox_Enable_SwitchModeFlagsWord2Screen",
              QT_TRANSLATE_NOOP("CSettingDialog", "语音标记词上屏"), "Enable_SwitchModeFlagsWord2Screen")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "执行软件直通车功能时，语音命令词上屏显示在输入光标处")),
        choice("comboBox_SwitchVoiceMode", QT_TRANSLATE_NOOP("CSettingDialog", "软件功能选择："), nullptr,
               {QT_TRANSLATE_NOOP("CSettingDialog", "语音打字功能"),
                QT_TRANSLATE_NOOP("CSettingDialog", "语音命令功能"),
                QT_TRANSLATE_NOOP("CSettingDialog", "语音翻译功能"),
                QT_TRANSLATE_NOOP("CSettingDialog", "语音搜索功能"),
                QT_TRANSLATE_NOOP("CSettingDialog", "语音键盘功能"),
                QT_TRANSLATE_NOOP("CSettingDialog", "语音数字键盘功能")})
            .line()
            .slot(),
        words(QT_TRANSLATE_NOOP("CSettingDialog", "语音标记词："), "lineEdit_SwitchModeFlags",
              "pushButton_SwitchModeFlags_Save", "pushButton_SwitchModeFlags_AddSemicolon",
              "comboBox_SwitchVoiceMode",
              {"SetEnterVoiceTypeModeSwitchModeFlags", "SetEnterVoiceCommandWordModeSwitchModeFlags",
               "SetEnterVoiceTranslateModeSwitchModeFlags", "SetEnterVoiceSearchModeSwitchModeFlags",
               "SetEnterVoiceKeyboardModeSwitchModeFlags", "SetEnterVoiceDigitalKeyboardModeSwitchModeFlags"},
              {"切换到语音打字;使用语音打字"}),
        radio("startMode", "radioButton_SetEnterVoiceTypeMode",
              QT_TRANSLATE_NOOP("CSettingDialog", "设置打字模式"), "SetEnterVoiceTypeMode")
            .line(),
        radio("startMode", "radioButton_SetEnterVoiceTranslateMode",
              QT_TRANSLATE_NOOP("CSettingDialog", "设置翻译模式"), "SetEnterVoiceTranslateMode"),
        radio("startMode", "radioButton_SetEnterVoiceCommandWordMode",
              QT_TRANSLATE_NOOP("CSettingDialog", "设置命令词模式"), "SetEnterVoiceCommandWordMode"),
        radio("startMode", "radioButton_SetEnterVoiceSearchMode",
              QT_TRANSLATE_NOOP("CSettingDialog", "设置搜索模式"), "SetEnterVoiceSearchMode"),
        button("pushButton_OpenCmdWordSet", QT_TRANSLATE_NOOP("CSettingDialog", "语音命令词设置")).line(),
    };
}

std::vector<ControlRow> searchRows()
{
    return {
        check("checkBox_SearchEngines_Baidu", QT_TRANSLATE_NOOP("CSettingDialog", "百度"),
              "SearchEngines_Baidu"),
        check("checkBox_SearchEngines_360", QT_TRANSLATE_NOOP("CSettingDialog", "360搜索"),
              "SearchEngines_360"),
        check("checkBox_SearchEngines_Google", QT_TRANSLATE_NOOP("CSettingDialog", "谷歌"),
              "SearchEngines_Google"),
        check("checkBox_SearchEngines_Bing", "Bing", "SearchEngines_Bing"),
        check("checkBox_SearchEngines_Sogou", QT_TRANSLATE_NOOP("CSettingDialog", "搜狗"),
              "SearchEngines_Sogou"),
    };
}

std::vector<ControlRow> sendRows()
{
    return {
        check("checkBox_VoiceImmediateSend", QT_TRANSLATE_NOOP("CSettingDialog", "启用识别完立即发送功能"),
              "VoiceImmediateSend")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog",
                                   "语音识别完上屏后自动发送快捷键，适用于QQ，微信，钉钉等软件"))
            .excludes("checkBox_VoiceSend"),
        radio("immediate", "radioButton_ImmediateSend_ShortCut_AltS", "Alt+S", "VoiceImmediateSend_AltS"),
        radio("immediate", "radioButton_ImmediateSend_ShortCut_Enter", "Enter", "VoiceImmediateSend_Enter"),
        radio("immediate", "radioButton_ImmediateSend_ShortCut_CtrlEnter", "Ctrl+Enter",
              "VoiceImmediateSend_CtrlEnter"),
        check("checkBox_VoiceSend", QT_TRANSLATE_NOOP("CSettingDialog", "启用语音模拟发送功能"), "VoiceSend")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog",
                                   "通过语音命令模拟发送Enter等快捷键，适用于QQ，微信，钉钉等软件"))
            .excludes("checkBox_VoiceImmediateSend")
            .line(),
        radio("send", "radioButton_Send_ShortCut_AltS", "Alt+S", "VoiceSend_AltS"),
        radio("send", "radioButton_Send_ShortCut_Enter", "Enter", "VoiceSend_Enter"),
        radio("send", "radioButton_Send_ShortCut_CtrlEnter", "Ctrl+Enter", "VoiceSend_CtrlEnter"),
        check("checkBox_VoiceSend_MapWords2Screen", QT_TRANSLATE_NOOP("CSettingDialog", "发送映射词上屏"),
              "VoiceSend_MapWords2Screen"),
        words(QT_TRANSLATE_NOOP("CSettingDialog", "发送映射词："), "lineEdit_Send_VoiceMapWords",
              "pushButton_Send_SaveMapWords", "pushButton_Send_AddSemicolon", "send",
              {"VoiceSend_AltS_MapWords", "VoiceSend_Enter_MapWords", "VoiceSend_CtrlEnter_MapWords"}),
        check("checkBox_VoiceNewLine", QT_TRANSLATE_NOOP("CSettingDialog", "语音模拟换行"), "VoiceNewLine")
            .line(),
        radio("newLine", "radioButton_NewLine_ShortCut_Enter", "Enter", "VoiceNewLine_Enter"),
        radio("newLine", "radioButton_NewLine_ShortCut_CtrlEnter", "Ctrl+Enter", "VoiceNewLine_CtrlEnter"),
        check("checkBox_VoiceNewLine_MapWords2Screen", QT_TRANSLATE_NOOP("CSettingDialog", "换行映射词上屏"),
              "VoiceNewLine_MapWords2Screen"),
        words(QT_TRANSLATE_NOOP("CSettingDialog", "换行映射词："), "lineEdit_NewLine_VoiceMapWords",
              "pushButton_NewLine_SaveMapWords", "pushButton_NewLine_AddSemicolon", "newLine",
              {"VoiceNewLine_Enter_MapWords", "VoiceNewLine_CtrlEnter_MapWords"}),
        check("checkBox_VoiceClear", QT_TRANSLATE_NOOP("CSettingDialog", "启用语音模拟删除功能"),
              "VoiceClear")
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "通过语音命令模拟发送退格或删除快捷键"))
            .line(),
        radio("clear", "radioButton_Clear_ShortCut_Backspace", "Backspace", "VoiceClear_Backspace"),
        radio("clear", "radioButton_Clear_ShortCut_Delete", "Delete", "VoiceClear_Delete"),
        check("checkBox_VoiceClear_MapWords2Screen", QT_TRANSLATE_NOOP("CSettingDialog", "删除映射词上屏"),
              "VoiceClear_MapWords2Screen"),
        words(QT_TRANSLATE_NOOP("CSettingDialog", "删除映射词："), "lineEdit_Clear_VoiceMapWords",
              "pushButton_Clear_SaveMapWords", "pushButton_Clear_AddSemicolon", "clear",
              {"VoiceClear_Backspace_MapWords", "VoiceClear_Delete_MapWords"}),
    };
}

std::vector<ControlRow> proxyRows()
{
    const char *const group = "NetworkProxy";
    return {
        check("checkBox_NetworkProxy", QT_TRANSLATE_NOOP("CSettingDialog", " 启用代理上网"),
              "UseNetworkProxy")
            .in(group)
            .slot(),
        text("lineEdit_NetworkProxy_IP", QT_TRANSLATE_NOOP("CSettingDialog", "代理服务器："),
             "NetworkProxy_IP")
            .in(group)
            .line()
            .slot(),
        text("lineEdit_NetworkProxy_Port", QT_TRANSLATE_NOOP("CSettingDialog", "端口："), "NetworkProxy_Port")
            .in(group)
            .slot(),
        text("lineEdit_NetworkProxy_UserName", QT_TRANSLATE_NOOP("CSettingDialog", "用户名："),
             "NetworkProxy_UserName")
            .in(group)
            .line()
            .slot(),
        secret("lineEdit_NetworkProxy_Password", QT_TRANSLATE_NOOP("CSettingDialog", "密码："),
               "NetworkProxy_Password")
            .in(group)
            .slot(),
    };
}

std::vector<ControlRow> otherRows()
{
    return {
        check("checkBox_AutoRunApp_2", QT_TRANSLATE_NOOP("CSettingDialog", "开机自动启动软件")).slot(),
        check("checkBox_ShowTipsDlg", QT_TRANSLATE_NOOP("CSettingDialog", "识别错误时弹出窗口"),
              "ShowTipsDlg"),
    };
}

} // namespace

std::vector<GroupRow> advancedGroups()
{
    return {
        {"groupBox_DirectLanes", Page::Advanced, QT_TRANSLATE_NOOP("CSettingDialog", "功能直通车"),
         laneRows()},
        {"groupBox_SearchEngines", Page::Advanced,
         QT_TRANSLATE_NOOP("CSettingDialog", "语音搜索默认搜索引擎"), searchRows()},
        {"groupBox_VoiceSend", Page::Advanced,
         QT_TRANSLATE_NOOP("CSettingDialog", "语音打字状态下语音模拟发送/删除设置"), sendRows()},
        {"groupBox_NetworkProxy", Page::Advanced,
         QT_TRANSLATE_NOOP("CSettingDialog", "代理上网设置(非熟悉的用户请不要设置）"), proxyRows()},
        {"groupBox_Other", Page::Advanced, QT_TRANSLATE_NOOP("CSettingDialog", "其他设置"), otherRows()},
    };
}

} // namespace mevo
