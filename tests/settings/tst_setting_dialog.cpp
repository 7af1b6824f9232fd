#include "settings/DialogFixture.h"
#include "settings/List.h"
#include "state/SettingsTable.h"
#include "support/Rows.h"
#include "ui/settings/ControlTable.h"

#include <QAccessible>
#include <QCheckBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTranslator>

namespace {

#define LIVE(member) [](const MainState &state) { return bool(state.member); }

/// A check box that writes a key and sets a member.
struct Box
{
    const char *name;
    const char *key;
    bool (*live)(const MainState &); ///< null where the program keeps none
    bool number = false;             ///< stored as 1 and 0
    const char *group = "MainSetting";
};

const std::vector<Box> boxes{
    {"checkBox_Check_VadEos", "Check_VadEos", LIVE(Check_VadEos)},
    {"checkBox_HidMainUIWhenASR", "HidMainUIWhenASR", LIVE(HidMainUIWhenASR)},
    {"checkBox_EnableXunFeiDialect", "EnableXunFeiDialect", LIVE(EnableXunFeiDialect)},
    {"checkBox_EnableXunFeiSmallLan", "EnableXunFeiSmallLan", LIVE(EnableXunFeiSmallLan)},
    {"checkBox_ForceUseASR3", "ForceUseASR3", LIVE(ForceUseASR3)},
    {"checkBox_AsrOffline", "ForceUseXFMore3V", LIVE(ForceUseXFMore3V)},
    {"checkBox_EnableP3Keyboard", "EnableP3Keyboard", LIVE(EnableP3Keyboard), true},
    {"checkBox_DontSend2ScreenWhenCmdStatus", "DontSend2ScreenWhenCmdStatus",
     LIVE(DontSend2ScreenWhenCmdStatus)},
    {"checkBox_SimulateDoubleChannel", "SimulateDoubleChannel", LIVE(SimulateDoubleChannel)},
    {"checkBox_OnlyUseOurDeviceMic", "OnlyUseOurDeviceMic", LIVE(OnlyUseOurDeviceMic)},
    {"checkBox_KeepMicrophoneReady", "KeepMicrophoneReady", LIVE(KeepMicrophoneReady)},
    {"checkBox_UseRightChannelVoice", "UseRightChannelVoice", nullptr},
    {"checkBox_TXASRConvertNum2CNMode", "TXASRConvertNum2CNMode", LIVE(TXASRConvertNum2CNMode)},
    {"checkBox_AddPunctuationWhenEnd", "AddPunctuationWhenEnd", LIVE(AddPunctuationWhenEnd), true},
    {"checkBox_Juhao2Douhao", "Juhao2Douhao", LIVE(Juhao2Douhao)},
    {"checkBox_Output2Tranditional", "Output2Tranditional", LIVE(Output2Tranditional), true},
    {"checkBox_Enable_CommandWord_Direct", "Enable_CommandWord_Direct", LIVE(Enable_CommandWord_Direct)},
    {"checkBox_Enable_CmdFlagsWord2Screen_Direct", "Enable_CmdFlagsWord2Screen_Direct",
     LIVE(Enable_CmdFlagsWord2Screen_Direct)},
    {"checkBox_Enable_Search_Direct", "Enable_Search_Direct", LIVE(Enable_Search_Direct)},
    {"checkBox_Enable_SearchFlagsWord2Screen_Direct", "Enable_SearchFlagsWord2Screen_Direct",
     LIVE(Enable_SearchFlagsWord2Screen_Direct)},
    {"checkBox_Enable_SwitchFunctionMode", "Enable_SwitchFunctionMode", LIVE(Enable_SwitchFunctionMode)},
    {"checkBox_Enable_SwitchModeFlagsWord2Screen", "Enable_SwitchModeFlagsWord2Screen",
     LIVE(Enable_SwitchModeFlagsWord2Screen)},
    {"checkBox_SearchEngines_Baidu", "SearchEngines_Baidu", LIVE(SearchEngines_Baidu)},
    {"checkBox_SearchEngines_360", "SearchEngines_360", LIVE(SearchEngines_360)},
    {"checkBox_SearchEngines_Google", "SearchEngines_Google", LIVE(SearchEngines_Google)},
    {"checkBox_SearchEngines_Bing", "SearchEngines_Bing", LIVE(SearchEngines_Bing)},
    {"checkBox_SearchEngines_Sogou", "SearchEngines_Sogou", LIVE(SearchEngines_Sogou)},
    {"checkBox_VoiceImmediateSend", "VoiceImmediateSend", LIVE(VoiceImmediateSend)},
    {"checkBox_VoiceSend", "VoiceSend", LIVE(VoiceSend)},
    {"checkBox_VoiceSend_MapWords2Screen", "VoiceSend_MapWords2Screen", LIVE(VoiceSend_MapWords2Screen)},
    {"checkBox_VoiceNewLine", "VoiceNewLine", LIVE(VoiceNewLine)},
    {"checkBox_VoiceNewLine_MapWords2Screen", "VoiceNewLine_MapWords2Screen",
     LIVE(VoiceNewLine_MapWords2Screen)},
    {"checkBox_VoiceClear", "VoiceClear", LIVE(VoiceClear)},
    {"checkBox_VoiceClear_MapWords2Screen", "VoiceClear_MapWords2Screen", LIVE(VoiceClear_MapWords2Screen)},
    {"checkBox_ShowTipsDlg", "ShowTipsDlg", LIVE(ShowTipsDlg), true},
};

/// Boxes whose effect is tested by itself.
const QStringList otherBoxes =
    "checkBox_BaiduNotStreamRestApi checkBox_UseXunFeiWebApi checkBox_EnableThirdPartyVoiceInput "
    "checkBox_EnableTecentAsr_zh_dialect checkBox_EnableXunFeiDwa checkBox_RunAsAdmin "
    "checkBox_OnlyUseXunFeiOfflineASR checkBox_NetworkProxy checkBox_AutoRunApp_2"_s.split(u' ');

struct RadioButton
{
    const char *name;
    const char *key;
};

const std::vector<std::vector<RadioButton>> radioGroups{
    {{"radioButton_LongPressForVoiceInput", "Enable_LongPressForVoiceInput"},
     {"radioButton_OnePressForVoiceInput", "Enable_OnePressForVoiceInput"}},
    {{"radioButton_SetEnterVoiceTypeMode", "SetEnterVoiceTypeMode"},
     {"radioButton_SetEnterVoiceTranslateMode", "SetEnterVoiceTranslateMode"},
     {"radioButton_SetEnterVoiceCommandWordMode", "SetEnterVoiceCommandWordMode"},
     {"radioButton_SetEnterVoiceSearchMode", "SetEnterVoiceSearchMode"}},
    {{"radioButton_ImmediateSend_ShortCut_AltS", "VoiceImmediateSend_AltS"},
     {"radioButton_ImmediateSend_ShortCut_Enter", "VoiceImmediateSend_Enter"},
     {"radioButton_ImmediateSend_ShortCut_CtrlEnter", "VoiceImmediateSend_CtrlEnter"}},
    {{"radioButton_Send_ShortCut_AltS", "VoiceSend_AltS"},
     {"radioButton_Send_ShortCut_Enter", "VoiceSend_Enter"},
     {"radioButton_Send_ShortCut_CtrlEnter", "VoiceSend_CtrlEnter"}},
    {{"radioButton_NewLine_ShortCut_Enter", "VoiceNewLine_Enter"},
     {"radioButton_NewLine_ShortCut_CtrlEnter", "VoiceNewLine_CtrlEnter"}},
    {{"radioButton_Clear_ShortCut_Backspace", "VoiceClear_Backspace"},
     {"radioButton_Clear_ShortCut_Delete", "VoiceClear_Delete"}},
};

const QStringList otherRadioButtons =
    "radioButton_BaiduNotStreamRestApi radioButton_UseXunFeiWebApi radioButton_TXAsrAPI "
    "radioButton_EnableThirdPartyVoiceInput radioButton_Mouse_SetDPI800 radioButton_Mouse_SetDPI1600 "
    "radioButton_Mouse_SetDPI2400 radioButton__Mouse_SetDataRate125 radioButton__Mouse_SetDataRate250 "
    "radioButton__Mouse_SetDataRate500 radioButton__Mouse_SetWheelSpeed_Low "
    "radioButton__Mouse_SetWheelSpeed_Standard radioButton__Mouse_SetWheelSpeed_Fast"_s.split(u' ');

/// A field of words with what picks the key that it shows.
struct Words
{
    const char *name;
    const char *save;
    const char *semicolon;
    const char *picker; ///< a radio button, or the choice of a function
    int item;           ///< of the choice
    const char *key;
    QString (*live)(const MainState &);
};

#define WORDS(member) [](const MainState &state) { return state.member.join(QLatin1Char('|')); }
#define TEXT(member)                                                                                         \
    [](const MainState &state) { return QString(state.member).replace(QLatin1Char(';'), QLatin1Char('|')); }

const char *const functions = "comboBox_SwitchVoiceMode";
const char *const modeWords = "lineEdit_SwitchModeFlags";
const char *const modeSave = "pushButton_SwitchModeFlags_Save";
const char *const modeSemicolon = "pushButton_SwitchModeFlags_AddSemicolon";

const std::vector<Words> wordFields{
    {"lineEdit_CmdFlags_Contents_Driect", "pushButton_CmdFlags_Direct_Save",
     "pushButton_CmdFlags_Direct_AddSemicolon", nullptr, 0, "CmdFlags_Contents_Driect",
     WORDS(CmdFlags_Contents_Driect)},
    {"lineEdit_SearchFlags_Contents_Driect", "pushButton_SearchFlags_Direct_Save",
     "pushButton_SearchFlags_Direct_AddSemicolon", nullptr, 0, "SearchFlags_Contents_Driect",
     WORDS(SearchFlags_Contents_Driect)},
    {modeWords, modeSave, modeSemicolon, functions, 0, "SetEnterVoiceTypeModeSwitchModeFlags",
     WORDS(SetEnterVoiceTypeModeSwitchModeFlags)},
    {modeWords, modeSave, modeSemicolon, functions, 1, "SetEnterVoiceCommandWordModeSwitchModeFlags",
     WORDS(SetEnterVoiceCommandWordModeSwitchModeFlags)},
    {modeWords, modeSave, modeSemicolon, functions, 2, "SetEnterVoiceTranslateModeSwitchModeFlags",
     WORDS(SetEnterVoiceTranslateModeSwitchModeFlags)},
    {modeWords, modeSave, modeSemicolon, functions, 3, "SetEnterVoiceSearchModeSwitchModeFlags",
     WORDS(SetEnterVoiceSearchModeSwitchModeFlags)},
    {modeWords, modeSave, modeSemicolon, functions, 4, "SetEnterVoiceKeyboardModeSwitchModeFlags",
     WORDS(SetEnterVoiceKeyboardModeSwitchModeFlags)},
    {modeWords, modeSave, modeSemicolon, functions, 5, "SetEnterVoiceDigitalKeyboardModeSwitchModeFlags",
     nullptr},
    {"lineEdit_Send_VoiceMapWords", "pushButton_Send_SaveMapWords", "pushButton_Send_AddSemicolon",
     "radioButton_Send_ShortCut_AltS", 0, "VoiceSend_AltS_MapWords", TEXT(VoiceSend_AltS_MapWords)},
    {"lineEdit_Send_VoiceMapWords", "pushButton_Send_SaveMapWords", "pushButton_Send_AddSemicolon",
     "radioButton_Send_ShortCut_Enter", 0, "VoiceSend_Enter_MapWords", TEXT(VoiceSend_Enter_MapWords)},
    {"lineEdit_Send_VoiceMapWords", "pushButton_Send_SaveMapWords", "pushButton_Send_AddSemicolon",
     "radioButton_Send_ShortCut_CtrlEnter", 0, "VoiceSend_CtrlEnter_MapWords",
     TEXT(VoiceSend_CtrlEnter_MapWords)},
    {"lineEdit_NewLine_VoiceMapWords", "pushButton_NewLine_SaveMapWords", "pushButton_NewLine_AddSemicolon",
     "radioButton_NewLine_ShortCut_Enter", 0, "VoiceNewLine_Enter_MapWords",
     TEXT(VoiceNewLine_Enter_MapWords)},
    {"lineEdit_NewLine_VoiceMapWords", "pushButton_NewLine_SaveMapWords", "pushButton_NewLine_AddSemicolon",
     "radioButton_NewLine_ShortCut_CtrlEnter", 0, "VoiceNewLine_CtrlEnter_MapWords",
     TEXT(VoiceNewLine_CtrlEnter_MapWords)},
    {"lineEdit_Clear_VoiceMapWords", "pushButton_Clear_SaveMapWords", "pushButton_Clear_AddSemicolon",
     "radioButton_Clear_ShortCut_Backspace", 0, "VoiceClear_Backspace_MapWords",
     TEXT(VoiceClear_Backspace_MapWords)},
    {"lineEdit_Clear_VoiceMapWords", "pushButton_Clear_SaveMapWords", "pushButton_Clear_AddSemicolon",
     "radioButton_Clear_ShortCut_Delete", 0, "VoiceClear_Delete_MapWords", TEXT(VoiceClear_Delete_MapWords)},
};

const QStringList otherFields =
    "lineEdit_ASR3XunFeiInstallPath lineEdit_ASR3SougoInstallPath lineEdit_ASR3CustomInstallPath "
    "lineEdit_NetworkProxy_IP lineEdit_NetworkProxy_Port lineEdit_NetworkProxy_UserName "
    "lineEdit_NetworkProxy_Password lineEdit_OwnBaiduApiKey lineEdit_OwnBaiduSecretKey "
    "lineEdit_OwnTencentSecretId lineEdit_OwnTencentSecretKey lineEdit_OwnXunFeiAppId "
    "lineEdit_OwnXunFeiApiKey lineEdit_OwnXunFeiApiSecret lineEdit_OwnBaiduTranslateAppId "
    "lineEdit_OwnBaiduTranslateKey"_s.split(u' ');

const QStringList choices = "comboBox_VADEOS_CheckTimeout comboBox_SelectASR3 comboBox_Send2ScreenMethod "
                            "comboBox_MICDeviceList comboBox_SwitchVoiceMode comboBox_MouseCustomLeftKey "
                            "comboBox_MouseCustomRightKey"_s.split(u' ');

/// A button and what it asks of the program.
const std::vector<std::pair<const char *, const char *>> callButtons{
    {"pushButton_ASR3DownWeb", "download 2"},
    {"pushButton_OpenXunFeiInputSetting", "tool iFlyIMEConfig.exe"},
    {"pushButton_OpenXunFeiInputHW", "tool iFlyHandwriting.exe"},
    {"pushButton_OpenCmdWordSet", "words"},
    {"pushButton_GetDongleID", "dongle"},
    {"pushButton_GetMouseID", "mouse"},
    {"pushButton_CheckUpdate", "update button"},
    {"pushButton_UpdateNotice", "update notice"},
    {"pushButton_DrvDownload", "page https://example.org/driver"},
    {"pushButton_Manual", "page https://example.org/manual"},
    {"pushButton_WebAddress", "page http://example.org"},
    {"pushButton_FirstStart", "first start"},
};

const QStringList otherButtons =
    "pushButton_XFWebApiSelectDialect pushButton_XFWebApiSelectSmallLan "
    "pushButton_BrowseASR3XunFeiInstallPath pushButton_BrowseASR3SougoInstallPath "
    "pushButton_BrowseASR3CustomInstallPath pushButton_ReadPowerLevel pushButton_ReadPowerLevel_2 "
    "pushButton_CheckOwnBaidu pushButton_RemoveOwnBaidu pushButton_CheckOwnTencent "
    "pushButton_RemoveOwnTencent pushButton_CheckOwnXunFei pushButton_RemoveOwnXunFei "
    "pushButton_CheckOwnBaiduTranslate pushButton_RemoveOwnBaiduTranslate"_s.split(u' ');

/// Settings that slots of the dialog, its choosers or the mouse write.
const QStringList keysOfSlots =
    "TXCurrentVoiceType UseTecentZhDialect AutoRunApp RunAsAdmin LocalEnableASR3 LocalUseASR3Index "
    "XFSelectDirlect XFSelectSmallLan MouseCurrentDPI MouseCurrentDataRate MosueCurrentWheelSpeed "
    "MouseCurrentLeftkeyValue MouseCurrentRightKeyValue MouseCurrentLeftKeyString "
    "MouseCurrentRightKeyString"_s.split(u' ');

/// Settings without a control: what the bar, its menus and the record set, and what only the file does.
const QStringList keysWithoutControl =
    "MainWinLeft MainWinTop ShowVerticalUI FirstRunApp BaiDuNoStreamApi_FastVersion "
    "XunFeiWebApiCurrentVoiceType ShowXFDialect ShowXFSmallLan DownloadDrvWeb UserManual Website "
    "SupportContact SupportEmail ASR3CustomCtrlShortCutKey ASR3CustomShortCutKey "
    "Asr2ScreenIntervalTime HW2ScreenIntervalTime LocalXunFeiASR3CtrlKey LocalXunFeiASR3AltKey "
    "LocalXunFeiASR3ShiftKey LocalXunFeiASR3ShortcutKey LocalMustClickRunASR3 "
    "LocalEnableThirdpatyVoiceInput RunThirdpartVoiceInputByORV"_s.split(u' ');

/// An input method is in force, and everything that the record can hide is shown.
void showAll(Opened &opened)
{
    opened.state.ShowXFDialect = opened.state.ShowXFSmallLan = 1;
    opened.state.ShowPowerLevel = true;
    opened.state.PowerLevel = 2;
    opened.state.LocalEnableASR3 = true;
    opened.state.LocalUseASR3Index = 2;
    opened.state.DownloadDrvWeb = "https://example.org/driver"_s;
    opened.state.UserManual = "https://example.org/manual"_s;
    opened.state.Website = "http://example.org"_s;
    opened.host.figures = "figures"_s;
}

QStringList sorted(QStringList list)
{
    list.removeDuplicates();
    list.sort();
    return list;
}

template <class T>
QStringList namesOf(const QDialog &dialog, const char *prefix)
{
    QStringList names;
    for (const T *widget : dialog.findChildren<T *>()) {
        if (widget->objectName().startsWith(QLatin1String(prefix))) {
            names.append(widget->objectName());
        }
    }
    return sorted(names);
}

} // namespace

class TestSettingDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// What this file writes out is all that there is.
    void theListIsWhole()
    {
        const Opened opened(QByteArray(), showAll);
        QStringList names = otherBoxes;
        for (const Box &box : boxes) {
            names.append(QLatin1String(box.name));
        }
        QCOMPARE(namesOf<QCheckBox>(*opened.dialog, "checkBox"), sorted(names));
        names = otherRadioButtons;
        for (const auto &group : radioGroups) {
            for (const RadioButton &button : group) {
                names.append(QLatin1String(button.name));
            }
        }
        QCOMPARE(namesOf<QRadioButton>(*opened.dialog, "radioButton"), sorted(names));
        names = otherFields;
        QStringList buttons = otherButtons;
        for (const Words &words : wordFields) {
            names.append(QLatin1String(words.name));
            buttons << QLatin1String(words.save) << QLatin1String(words.semicolon);
        }
        for (const auto &button : callButtons) {
            buttons.append(QLatin1String(button.first));
        }
        QCOMPARE(namesOf<QLineEdit>(*opened.dialog, "lineEdit"), sorted(names));
        QCOMPARE(namesOf<QPushButton>(*opened.dialog, "pushButton"), sorted(buttons));
        QCOMPARE(namesOf<QComboBox>(*opened.dialog, "comboBox"), sorted(choices));
    }

    /// No setting is without a control unnoticed.
    void everySettingHasItsControl()
    {
        QStringList without;
        for (const mevo::SettingRow &row : mevo::settingRows()) {
            without.append(QLatin1String(row.key));
        }
        for (const mevo::GroupRow &group : mevo::controlGroups()) {
            for (const mevo::ControlRow &row : group.rows) {
                without.removeAll(QLatin1String(row.key));
                for (const char *key : row.keys) {
                    without.removeAll(QLatin1String(key));
                }
            }
        }
        QCOMPARE(sorted(without), sorted(keysOfSlots + keysWithoutControl));
    }

    void titlesAndTips()
    {
        const Opened opened(QByteArray(), showAll);
        const auto *pages = opened.find<QTabWidget>("tabWidget_Setting");
        QCOMPARE(pages->tabText(0) + pages->tabText(1) + pages->tabText(2), " 常用设置高级设置硬件设置"_s);
        const std::vector<std::pair<const char *, const char *>> titles{
            {"groupBox_Voice", "语音设置"},
            {"groupBox_XunFeiStream", "讯飞流式版(不支持WindowsXP系统)"},
            {"groupBox_Output", " 输出设置"},
            {"groupBox_DirectLanes", "功能直通车"},
            {"groupBox_SearchEngines", "语音搜索默认搜索引擎"},
            {"groupBox_NetworkProxy", "代理上网设置(非熟悉的用户请不要设置）"},
            {"groupBox_VoiceSend", "语音打字状态下语音模拟发送/删除设置"},
            {"groupBox_Mouse", " 鼠标设置"},
            {"groupBox_DataRate", "回报率"},
            {"groupBox_WheelSpeed", "滚轮"},
            {"groupBox_Software", " 软件下载"}};
        for (const auto &title : titles) {
            QCOMPARE(opened.find<QGroupBox>(title.first)->title(), QString::fromUtf8(title.second));
        }
        const std::vector<std::pair<const char *, const char *>> tips{
            {"comboBox_Send2ScreenMethod", "识别结果上屏方式有三种，如识别结果无法上屏，请尝试切换另一种"},
            {"checkBox_DontSend2ScreenWhenCmdStatus", "语音命令词模式下识别结果是否显示在屏幕上"},
            {"checkBox_VoiceImmediateSend", "语音识别完上屏后自动发送快捷键，适用于QQ，微信，钉钉等软件"},
            {"checkBox_VoiceSend", "通过语音命令模拟发送Enter等快捷键，适用于QQ，微信，钉钉等软件"},
            {"checkBox_VoiceClear", "通过语音命令模拟发送退格或删除快捷键"},
            {"checkBox_EnableXunFeiDwa", "动态修订功能指边说话加出结果，可以修订之前错误结果"},
            {"checkBox_Check_VadEos", "打开语音时，支持最大静音时间，如超过，则自动开始识别"},
            {"comboBox_SelectASR3", "选择相应输入法，暂时支持两种"},
            {"pushButton_ASR3DownWeb", "手动点击下载最新版本第三方输入法"},
            {"checkBox_Enable_SwitchModeFlagsWord2Screen",
             "执行软件直通车功能时，语音命令词上屏显示在输入光标处"},
            {"checkBox_Enable_SearchFlagsWord2Screen_Direct",
             "执行搜索直通车功能时，搜索内容上屏显示在输入光标处"},
            {"checkBox_Enable_CmdFlagsWord2Screen_Direct",
             "执行命令词直通车功能时，语音命令词上屏显示在输入光标处"}};
        for (const auto &tip : tips) {
            QCOMPARE(opened.find<QWidget>(tip.first)->toolTip(), QString::fromUtf8(tip.second));
        }
    }

    void aBoxWritesItsKeyAndItsMember_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            QTest::newRow(boxes[i].name) << int(i);
        }
    }

    void aBoxWritesItsKeyAndItsMember()
    {
        QFETCH(int, index);
        const Box &box = boxes.at(std::size_t(index));
        const QByteArray off = box.number ? "0" : "false";
        const QByteArray on = box.number ? "1" : "true";
        const Opened opened(QByteArray(box.key) + "=" + off + "\n", showAll);
        QVERIFY(!opened.isOn(box.name));
        opened.click(box.name);
        QVERIFY(opened.isOn(box.name));
        QCOMPARE(Opened::stored(box.key), QString::fromLatin1(on));
        QVERIFY(box.live == nullptr || box.live(opened.state));
        opened.dialog->updateUI(); // what it shows comes from there
        QVERIFY(opened.isOn(box.name));
        opened.click(box.name);
        QVERIFY(!opened.isOn(box.name));
        QCOMPARE(Opened::stored(box.key), QString::fromLatin1(off));
        QVERIFY(box.live == nullptr || !box.live(opened.state)); // those too that a load only raises
    }

    void aGroupOfRadioButtonsWritesAllItsKeys_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < radioGroups.size(); ++i) {
            QTest::newRow(radioGroups[i].front().key) << int(i);
        }
    }

    void aGroupOfRadioButtonsWritesAllItsKeys()
    {
        QFETCH(int, index);
        const auto &group = radioGroups.at(std::size_t(index));
        const Opened opened;
        for (const RadioButton &chosen : {group.back(), group.front()}) {
            opened.click(chosen.name);
            opened.dialog->updateUI();
            for (const RadioButton &each : group) {
                const bool on = qstrcmp(each.name, chosen.name) == 0;
                QCOMPARE(Opened::stored(each.key), on ? "true"_s : "false"_s);
                QCOMPARE(opened.isOn(each.name), on);
            }
        }
    }

    void sendingAtOnceAndByWordExcludeEachOther()
    {
        const Opened opened("VoiceImmediateSend=true\n");
        opened.click("checkBox_VoiceSend");
        QVERIFY(!opened.isOn("checkBox_VoiceImmediateSend") && !opened.state.VoiceImmediateSend);
        QCOMPARE(Opened::stored("VoiceImmediateSend"), "false"_s);
        opened.click("checkBox_VoiceImmediateSend");
        QVERIFY(!opened.isOn("checkBox_VoiceSend") && !opened.state.VoiceSend);
        QCOMPARE(Opened::stored("VoiceSend"), "false"_s);
        opened.click("checkBox_VoiceImmediateSend"); // off again leaves the other alone
        QVERIFY(!opened.isOn("checkBox_VoiceSend"));
    }

    void choicesWriteNumbers()
    {
        const Opened opened("VADEOS_CheckTimeout=10\nSend2ScreenMethod=1\n");
        QCOMPARE(opened.find<QComboBox>("comboBox_VADEOS_CheckTimeout")->currentText(), "10"_s);
        QCOMPARE(opened.find<QComboBox>("comboBox_Send2ScreenMethod")->currentText(), "消息"_s);
        opened.pick("comboBox_VADEOS_CheckTimeout", 3);
        QCOMPARE(Opened::stored("VADEOS_CheckTimeout"), "4"_s);
        QCOMPARE(opened.state.VADEOS_CheckTimeout, 4);
        opened.pick("comboBox_Send2ScreenMethod", 2);
        QCOMPARE(Opened::stored("Send2ScreenMethod"), "2"_s);
        QCOMPARE(opened.state.Send2ScreenMethod, 2);
    }

    void wordsAreSaved_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < wordFields.size(); ++i) {
            QTest::newRow(wordFields[i].key) << int(i);
        }
    }

    void wordsAreSaved()
    {
        QFETCH(int, index);
        const Words &words = wordFields.at(std::size_t(index));
        const Opened opened(QByteArray(words.key) + "=\"甲;乙\"\n");
        if (words.picker == functions) {
            opened.pick(functions, words.item);
        } else if (words.picker != nullptr) {
            opened.click(words.picker);
        }
        QCOMPARE(opened.find<QLineEdit>(words.name)->text(), "甲;乙"_s);
        opened.find<QLineEdit>(words.name)->setFocus();
        opened.click(words.semicolon);
        opened.type(words.name, "C"_s);
        QCOMPARE(Opened::stored(words.key), "甲;乙"_s);
        opened.click(words.save);
        QCOMPARE(Opened::stored(words.key), "甲;乙;C"_s);
        QVERIFY(words.live == nullptr || words.live(opened.state) == "甲|乙|C"_s);
        QVERIFY(opened.questions.isEmpty()); // the buttons of the field need none
    }

    void wordsThatAreLeftAreAskedAbout_data()
    {
        const Rows<int, QString, QString> row; // answer, shown, stored
        row("yes", 0, "甲X", "甲X");
        row("no", 1, "甲", "甲");
        row("closed", -1, "甲X", "甲"); // and nothing is lost
    }

    void wordsThatAreLeftAreAskedAbout()
    {
        const auto [answer, shown, stored] = rowOf<int, QString, QString>();
        Opened opened("CmdFlags_Contents_Driect=甲\n");
        opened.answer = answer;
        opened.type("lineEdit_CmdFlags_Contents_Driect", "X"_s);
        opened.find<QLineEdit>("lineEdit_SearchFlags_Contents_Driect")->setFocus();
        QCOMPARE(opened.questions, QStringList("是否要保存？"_s));
        QCOMPARE(opened.find<QLineEdit>("lineEdit_CmdFlags_Contents_Driect")->text(), shown);
        QCOMPARE(Opened::stored("CmdFlags_Contents_Driect"), stored);
        opened.find<QLineEdit>("lineEdit_CmdFlags_Contents_Driect")->setFocus();
        opened.find<QLineEdit>("lineEdit_SearchFlags_Contents_Driect")->setFocus();
        QCOMPARE(opened.questions.size(), 1); // not again before more is typed
    }

    void wordsBeingEditedAreNeverLost_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("the dialog is closed") << 0;
        QTest::newRow("the receiver goes or the program ends") << 1;
        QTest::newRow("the dialog is deleted") << 2;
        QTest::newRow("other words are wanted") << 3;
    }

    void wordsBeingEditedAreNeverLost()
    {
        QFETCH(int, end);
        Opened opened("VoiceSend_Enter=true\nVoiceSend_Enter_MapWords=甲\nVoiceSend_AltS_MapWords=乙\n");
        opened.type("lineEdit_Send_VoiceMapWords", ";X"_s);
        opened.dialog->updateUI(); // a record that is read meanwhile
        QCOMPARE(opened.find<QLineEdit>("lineEdit_Send_VoiceMapWords")->text(), "甲;X"_s);
        switch (end) {
        case 0:
            opened.dialog->close();
            break;
        case 1:
            opened.dialog.release()->retire();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            break;
        case 2:
            opened.dialog.reset();
            break;
        default:
            opened.find("radioButton_Send_ShortCut_AltS")->click();
            QCOMPARE(opened.find<QLineEdit>("lineEdit_Send_VoiceMapWords")->text(), "乙"_s);
        }
        QCOMPARE(Opened::stored("VoiceSend_Enter_MapWords"), "甲;X"_s);
        QCOMPARE(Opened::stored("VoiceSend_AltS_MapWords"), "乙"_s);
        QCOMPARE(opened.state.VoiceSend_Enter_MapWords, "甲;X"_s);
    }

    /// The receiver is pulled out while the dialog asks.
    void aDialogThatGoesWhileItAsks()
    {
        Opened opened("CmdFlags_Contents_Driect=甲\n");
        const QPointer<CSettingDialog> dialog(opened.dialog.release());
        opened.onQuestion = [&] {
            dialog->retire();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!dialog.isNull()); // a slot of its own still runs
        };
        auto *words = dialog->findChild<QLineEdit *>("lineEdit_CmdFlags_Contents_Driect"_s);
        dialog->findChild<QTabWidget *>()->setCurrentIndex(1);
        words->setFocus();
        QTest::keyClicks(words, "X"_s);
        dialog->findChild<QLineEdit *>("lineEdit_SearchFlags_Contents_Driect"_s)->setFocus();
        QCOMPARE(opened.questions.size(), 1);
        QCOMPARE(Opened::stored("CmdFlags_Contents_Driect"), "甲X"_s);
        QTRY_VERIFY(dialog.isNull());
    }

    void absentWordsAreShownAndNotStored()
    {
        Opened opened;
        QCOMPARE(opened.find<QLineEdit>("lineEdit_CmdFlags_Contents_Driect")->text(),
                 "天王盖地虎;执行命令词;"_s);
        QCOMPARE(opened.find<QLineEdit>("lineEdit_SearchFlags_Contents_Driect")->text(),
                 "我要搜索;百度搜索;搜一搜;"_s);
        QCOMPARE(opened.find<QLineEdit>(modeWords)->text(), "切换到语音打字;使用语音打字"_s);
        opened.pick(functions, 1);
        QCOMPARE(opened.find<QLineEdit>(modeWords)->text(), QString());
        opened.dialog->close();
        QCOMPARE(Opened::stored("CmdFlags_Contents_Driect"), "absent"_s);
        QVERIFY(opened.state.CmdFlags_Contents_Driect.isEmpty());
    }

    void anEngineIsTheOnlyOne_data()
    {
        // button, call, flags (Baidu, Tencent, XunFei, input method, its number)
        const Rows<QString, QString, QString> row;
        const auto add = [&](const char *button, const char *call, const char *flags) {
            row(button, button, call, flags);
        };
        add("radioButton_BaiduNotStreamRestApi", "engine 0", "1 0 0 0 -1");
        add("checkBox_BaiduNotStreamRestApi", "engine 0", "1 0 0 0 -1");
        add("radioButton_TXAsrAPI", "engine 1", "0 1 0 0 -1");
        add("radioButton_UseXunFeiWebApi", "engine 2", "0 0 1 0 -1");
        add("checkBox_UseXunFeiWebApi", "engine 2", "0 0 1 0 -1");
        add("radioButton_EnableThirdPartyVoiceInput", "method 2", "0 0 0 1 2");
        add("checkBox_EnableThirdPartyVoiceInput", "method 2", "0 0 0 1 2");
    }

    void anEngineIsTheOnlyOne()
    {
        const auto [button, call, flags] = rowOf<QString, QString, QString>();
        for (const bool fromBaidu : {true, false}) {
            const Opened opened("LocalUseASR3Index=2\n", [fromBaidu](Opened &it) {
                it.host.recorder.BaiDuNoStreamApi = fromBaidu;
                it.host.recorder.UseTXASRApi = !fromBaidu;
            });
            opened.click(qPrintable(button));
            QCOMPARE(opened.host.calls.value(0), call);
            const QStringList stored{Opened::stored("BaiDuNoStreamApi"), Opened::stored("UseTXASRApi"),
                                     Opened::stored("UseXunFeiWebApi"), Opened::stored("LocalEnableASR3"),
                                     Opened::stored("LocalUseASR3Index")};
            QCOMPARE(stored.join(QLatin1Char(' ')), flags);
            const RecorderState &recorder = opened.host.recorder;
            const QStringList live{
                QString::number(recorder.BaiDuNoStreamApi), QString::number(recorder.UseTXASRApi),
                QString::number(recorder.UseXunFeiWebApi), QString::number(opened.state.LocalEnableASR3),
                QString::number(opened.state.LocalUseASR3Index)};
            QCOMPARE(live.join(QLatin1Char(' ')), flags);
            const QStringList marked{QString::number(opened.isOn("radioButton_BaiduNotStreamRestApi")),
                                     QString::number(opened.isOn("radioButton_TXAsrAPI")),
                                     QString::number(opened.isOn("radioButton_UseXunFeiWebApi")),
                                     QString::number(opened.isOn("radioButton_EnableThirdPartyVoiceInput"))};
            QCOMPARE(marked.join(QLatin1Char(' ')), flags.left(7));
            QCOMPARE(opened.find<QGroupBox>("groupBox_ThirdParty")->isEnabled(),
                     flags.mid(6, 1) == QLatin1String("1"));
        }
    }

    void anInputMethodThatCannotBeSetUpLeavesTheEngine()
    {
        const Opened opened(QByteArray(), [](Opened &it) { it.host.methodsWork = false; });
        opened.click("radioButton_EnableThirdPartyVoiceInput");
        QVERIFY(opened.isOn("radioButton_TXAsrAPI") &&
                !opened.isOn("radioButton_EnableThirdPartyVoiceInput"));
        QVERIFY(opened.host.recorder.UseTXASRApi && !opened.state.LocalEnableASR3);
    }

    /// What a method that is not there can be had with can be used once it has been chosen.
    void aMethodThatIsMissingCanBeHad()
    {
        Opened opened(QByteArray(), [](Opened &it) {
            showAll(it);
            it.state.LocalEnableASR3 = false;
            it.state.LocalUseASR3Index = it.state.UseASR3Index = -1; // as a fresh installation has it
            it.host.methodsWork = false;
            it.host.recorder.UseTXASRApi = true;
        });
        const auto *group = opened.find<QGroupBox>("groupBox_ThirdParty");
        QVERIFY(!group->isEnabled());
        opened.click("radioButton_EnableThirdPartyVoiceInput");
        QCOMPARE(opened.host.take(), list({"method 1"}));
        QVERIFY(opened.isOn("radioButton_TXAsrAPI") && group->isEnabled());
        opened.pick("comboBox_SelectASR3", 1);
        QCOMPARE(opened.host.take(), (list({"record UseASR3Index=2", "method 2"})));
        QVERIFY(group->isEnabled()); // and the box shows what the user wants
        QCOMPARE(opened.find<QComboBox>("comboBox_SelectASR3")->currentIndex(), 1);
        opened.click("pushButton_ASR3DownWeb");
        QCOMPARE(opened.host.take(), list({"download 2"}));
        opened.replace("lineEdit_ASR3XunFeiInstallPath", "/opt/other"_s);
        opened.find("checkBox_ForceUseASR3")->setFocus();
        QCOMPARE(opened.host.take(), list({"path"}));
        opened.host.methodsWork = true;
        opened.replace("lineEdit_ASR3SougoInstallPath", "/opt/there"_s);
        opened.find("checkBox_ForceUseASR3")->setFocus();
        QCOMPARE(opened.host.take(), list({"method 2"})); // which was chosen, and may be there now
        QVERIFY(opened.isOn("radioButton_EnableThirdPartyVoiceInput"));
        opened.click("radioButton_TXAsrAPI");
        QVERIFY(!group->isEnabled());
        opened.host.methodsWork = false;
        opened.click("radioButton_EnableThirdPartyVoiceInput");
        opened.dialog->hide();
        opened.dialog->show();
        QVERIFY(!group->isEnabled());
    }

    void theMethodThatIsShown_data()
    {
        const Rows<int, int, int> row; // local, record, shown (place in the list)
        row("in force or the last one", 2, 1, 1);
        row("what the record would use", -1, 2, 1);
        row("the first", -1, -1, 0);
        row("custom, which is not offered", 3, 2, 1);
    }
    void theMethodThatIsShown()
    {
        const auto [local, record, shown] = rowOf<int, int, int>();
        const Opened opened(QByteArray(), [local = local, record = record](Opened &it) {
            it.state.LocalUseASR3Index = local;
            it.state.UseASR3Index = record;
            it.state.ShowASR3Custom = false;
        });
        QCOMPARE(opened.find<QComboBox>("comboBox_SelectASR3")->currentIndex(), shown);
        QVERIFY(opened.host.calls.isEmpty());
    }

    void thePathOfAMethodIsLookedFor_data()
    {
        const Rows<QString, QString> row; // button, title
        row("XunFei", "pushButton_BrowseASR3XunFeiInstallPath", "选择语音输入法安装路径");
        row("Sogou", "pushButton_BrowseASR3SougoInstallPath", "选择语音输入法安装路径");
        row("custom", "pushButton_BrowseASR3CustomInstallPath", "选择自定义语音输入法安装路径");
    }
    void thePathOfAMethodIsLookedFor()
    {
        const auto [button, title] = rowOf<QString, QString>();
        const Opened opened(QByteArray(), showAll);
        opened.click(qPrintable(button));
        auto *finder = opened.dialog->findChild<QFileDialog *>();
        QVERIFY(finder != nullptr);
        QCOMPARE(finder->windowTitle(), title);
    }

    void streamingIsRefusedOnOldSystems()
    {
        const Opened opened(QByteArray(), [](Opened &it) { it.host.xpClass = true; });
        QVERIFY(!opened.isShown("radioButton_UseXunFeiWebApi") && !opened.isShown("groupBox_XunFeiStream"));
        opened.find("checkBox_UseXunFeiWebApi")->click();
        QVERIFY(opened.host.calls.isEmpty() && !opened.isOn("checkBox_UseXunFeiWebApi"));
    }

    void engineExtras()
    {
        const Opened opened(QByteArray(), showAll);
        opened.click("checkBox_EnableXunFeiDwa");
        QCOMPARE(Opened::stored("EnableXunFeiWebApiDwa"), "1"_s);
        QVERIFY(opened.host.recorder.EnableXunFeiWebApiDwa);
        opened.click("checkBox_EnableTecentAsr_zh_dialect");
        QCOMPARE(opened.state.TXCurrentVoiceType, "16k_zh_dialect"_s);
        QCOMPARE(Opened::stored("TXCurrentVoiceType"), "16k_zh_dialect"_s);
        opened.click("checkBox_EnableTecentAsr_zh_dialect");
        QCOMPARE(Opened::stored("TXCurrentVoiceType"), "16k_zh"_s);
        QCOMPARE(Opened::stored("UseTecentZhDialect"), "0"_s);
        QCOMPARE(opened.host.calls, (list({"dialect 1", "tip 腾讯语音支", "dialect 0"})));
    }

    /// The record is told what it holds as well.
    void theRecordIsTold()
    {
        Opened opened(QByteArray(), showAll);
        opened.click("checkBox_ForceUseASR3");
        QCOMPARE(opened.host.take(), list({"record ForceUseASR3=1"}));
        opened.pick("comboBox_SelectASR3", 2);
        QVERIFY(opened.host.calls.contains("record UseASR3Index=3"_s) &&
                opened.host.calls.contains("method 3"_s));
        QCOMPARE(Opened::stored("LocalUseASR3Index"), "3"_s);
        opened.host.calls.clear();
        opened.click("checkBox_AsrOffline");
        QCOMPARE(opened.host.take(), (list({"record ForceUseXFMore3V=1", "restart"})));
    }

    void buttonsAskTheProgram_data()
    {
        const Rows<QString, QString> row; // button, call
        for (const auto &button : callButtons) {
            row(button.first, button.first, QString::fromLatin1(button.second));
        }
    }

    void buttonsAskTheProgram()
    {
        const auto [button, call] = rowOf<QString, QString>();
        Opened opened(QByteArray(), showAll);
        opened.dialog->setUpdateNotice("newer"_s);
        opened.click(qPrintable(button));
        QCOMPARE(opened.host.calls, QStringList(call));
        QVERIFY(call != QLatin1String("dongle") ||
                opened.find<QLabel>("label_DongleID")->text() == QLatin1String("02-01-001357"));
    }

    void pagesThatAreNoneAreNotOffered()
    {
        const Opened opened(QByteArray(), [](Opened &it) {
            it.state.DownloadDrvWeb = "file:///etc/passwd"_s;
            it.state.UserManual = "example"_s;
        });
        for (const char *button : {"pushButton_DrvDownload", "pushButton_Manual", "pushButton_WebAddress"}) {
            QVERIFY(!opened.find(button)->isEnabled());
        }
    }

    void whatTheSystemRefusesIsTakenBack()
    {
        Opened opened(QByteArray(), showAll);
        const QStringList names =
            list({"checkBox_RunAsAdmin", "checkBox_AutoRunApp_2", "checkBox_OnlyUseXunFeiOfflineASR"});
        for (const QString &name : names) {
            opened.host.refuses = true;
            opened.click(qPrintable(name));
            QVERIFY2(!opened.isOn(qPrintable(name)), qPrintable(name));
            opened.host.refuses = false;
            opened.click(qPrintable(name));
            QVERIFY2(opened.isOn(qPrintable(name)), qPrintable(name));
        }
        QCOMPARE(opened.host.calls, (list({"administrator 1", "administrator 1", "login 1", "login 1",
                                           "offline 1", "offline 1"})));
    }

    void visibilityByTheRecord_data()
    {
        const Rows<QStringList, int> row; // hidden (while the flag is off, and shown while it is on), flag
        const auto add = [&](const char *name, int flag, const QStringList &hidden) {
            row(name, hidden, flag);
        };
        add("ShowBaiduI", 0, list({"radioButton_BaiduNotStreamRestApi"}));
        add("ShowTXI", 1, list({"radioButton_TXAsrAPI"}));
        add("ShowTecentZhDialect", 2, list({"checkBox_EnableTecentAsr_zh_dialect"}));
        add("ShowXFWebApi", 3, list({"radioButton_UseXunFeiWebApi", "checkBox_EnableXunFeiDwa"}));
        add("ShowASR3UI", 4, list({"radioButton_EnableThirdPartyVoiceInput", "groupBox_ThirdParty"}));
        add("ShowASR3Custom", 5,
            list({"lineEdit_ASR3CustomInstallPath", "pushButton_BrowseASR3CustomInstallPath"}));
        add("ShowPowerLevel", 6, list({"groupBox_PowerLevel", "pushButton_ReadPowerLevel_2"}));
        add("ShowXFDialect", 7, list({"checkBox_EnableXunFeiDialect", "pushButton_XFWebApiSelectDialect"}));
        add("ShowXFSmallLan", 8,
            list({"checkBox_EnableXunFeiSmallLan", "pushButton_XFWebApiSelectSmallLan"}));
    }

    void visibilityByTheRecord()
    {
        const auto [hidden, flag] = rowOf<QStringList, int>();
        Opened opened(QByteArray(), showAll);
        const auto set = [&, &flag = flag](bool on) {
            bool EnginePermissions::*const flags[] = {
                &EnginePermissions::ShowBaiduI,          &EnginePermissions::ShowTXI,
                &EnginePermissions::ShowTecentZhDialect, &EnginePermissions::ShowXFWebApi,
                &EnginePermissions::ShowASR3UI,          &EnginePermissions::ShowASR3Custom};
            if (flag < 6) {
                opened.state.*flags[flag] = on;
            } else if (flag == 6) {
                opened.state.ShowPowerLevel = on;
            } else {
                (flag == 7 ? opened.state.ShowXFDialect : opened.state.ShowXFSmallLan) = on;
            }
            opened.dialog->updateUI();
        };
        for (const bool on : {false, true}) {
            set(on);
            for (const QString &name : hidden) {
                QVERIFY2(opened.isShown(qPrintable(name)) == on, qPrintable(name));
            }
            QCOMPARE(opened.find<QComboBox>("comboBox_SelectASR3")->count(), flag == 5 && !on ? 2 : 3);
        }
    }

    void aHiddenEngineIsLeft()
    {
        const Opened opened("UseTecentZhDialect=1\n", [](Opened &it) {
            it.host.recorder.BaiDuNoStreamApi = true;
            it.host.recorder.UseTXASRApi = false;
            it.state.ShowBaiduI = false;
            it.state.ShowTecentZhDialect = false;
        });
        QVERIFY(opened.host.recorder.UseTXASRApi && !opened.host.recorder.BaiDuNoStreamApi);
        QVERIFY(opened.isOn("radioButton_TXAsrAPI") && !opened.isOn("checkBox_EnableTecentAsr_zh_dialect"));
        QCOMPARE(Opened::stored("UseTXASRApi"), "1"_s);
    }

    void productsThatLackThings()
    {
        Opened opened;
        QVERIFY(opened.find<QGroupBox>("groupBox_Mouse")->isEnabled());
        {
            mevo::SettingsFile settings;
            settings.setValue("NoMouse"_s, 1);
            settings.setValue("NoDirectLanes"_s, 1);
        }
        opened.dialog->updateUI();
        QCOMPARE(opened.find<QGroupBox>("groupBox_Mouse")->title(), "鼠标设置(不适用于此产品)"_s);
        QVERIFY(!opened.find<QGroupBox>("groupBox_Mouse")->isEnabled());
        QCOMPARE(opened.find<QGroupBox>("groupBox_DirectLanes")->title(), "软件功能直通车(不适用此产品)"_s);
    }

    void theMouse()
    {
        Opened opened(QByteArray(), [](Opened &it) {
            it.state.MouseCurrentDPI = 800;
            it.state.MouseCurrentDataRate = 500;
            it.state.MouseCurrentWheelSpeed = 0;
            it.state.MouseCurrentLeftKeyValue = 15;
            it.state.MouseCurrentRightKeyValue = 77; // none that the list has
        });
        QVERIFY(opened.isOn("radioButton_Mouse_SetDPI800") &&
                opened.isOn("radioButton__Mouse_SetDataRate500") &&
                opened.isOn("radioButton__Mouse_SetWheelSpeed_Low"));
        QCOMPARE(opened.find<QComboBox>("comboBox_MouseCustomLeftKey")->currentText(), "删除"_s);
        QCOMPARE(opened.find<QComboBox>("comboBox_MouseCustomRightKey")->currentText(), "自定义"_s);
        for (const char *name :
             {"radioButton_Mouse_SetDPI1600", "radioButton_Mouse_SetDPI2400",
              "radioButton__Mouse_SetDataRate250", "radioButton__Mouse_SetDataRate125",
              "radioButton__Mouse_SetWheelSpeed_Fast", "radioButton__Mouse_SetWheelSpeed_Standard"}) {
            opened.click(name);
        }
        QCOMPARE(opened.host.take(),
                 (list({"MouseCurrentDPI 1", "MouseCurrentDPI 2", "MouseCurrentDataRate 1",
                        "MouseCurrentDataRate 0", "MouseCurrentWheelSpeed 2", "MouseCurrentWheelSpeed 1"})));
        opened.pick("comboBox_MouseCustomLeftKey", 1);
        opened.pick("comboBox_MouseCustomRightKey", 0);
        QCOMPARE(opened.host.calls.last(), "right 麦克风"_s);
        QVERIFY(opened.host.calls.contains("left 麦克风(F6)"_s));
        QStringList items;
        for (int i = 0; i < opened.find<QComboBox>("comboBox_MouseCustomLeftKey")->count(); ++i) {
            items.append(opened.find<QComboBox>("comboBox_MouseCustomLeftKey")->itemText(i));
        }
        QCOMPARE(items.join(QLatin1Char(' ')),
                 "麦克风 麦克风(F6) 语音打字 语音搜索 语音命令 语音翻译 删除 回桌面 前进 后退 "
                 "长按中键上滚 长按中键下滚 自定义"_s);
    }

    /// The receiver goes and comes back, and its battery is told, while the page is open.
    void theReceiverWhileTheDialogIsOpen()
    {
        Opened opened(QByteArray(), showAll);
        QVERIFY(opened.isShown("pushButton_ReadPowerLevel_2"));
        opened.state.PowerLevel = -1;
        opened.state.DeviceConnected = false;
        QTRY_VERIFY(!opened.find<QGroupBox>("groupBox_Mouse")->isEnabled());
        QVERIFY(!opened.isShown("pushButton_ReadPowerLevel_2"));
        QVERIFY(!opened.find("pushButton_GetDongleID")->isEnabled());
        opened.state.PowerLevel = 3;
        opened.state.DeviceConnected = true;
        QTRY_VERIFY(opened.find<QGroupBox>("groupBox_Mouse")->isEnabled());
        QVERIFY(opened.isShown("pushButton_ReadPowerLevel_2"));
        QVERIFY(!opened.find<QPushButton>("pushButton_ReadPowerLevel_2")->icon().isNull());
        QVERIFY(opened.host.calls.isEmpty()); // nothing of this is the user's doing
    }

    void microphones()
    {
        Opened opened;
        auto *box = opened.find<QComboBox>("comboBox_MICDeviceList");
        QCOMPARE(box->currentText(), "Webcam"_s);
        QCOMPARE(box->itemText(box->count() - 1), "打开声音控制面板"_s);
        opened.pick("comboBox_MICDeviceList", 1);
        QCOMPARE(opened.host.take(), list({"microphone QMZ mouse"}));
        opened.host.refuses = true;
        QTest::keyClick(box, Qt::Key_Home);
        QCOMPARE(box->currentText(), "QMZ mouse"_s); // put back
        opened.host.refuses = false;
        opened.host.calls.clear();
        opened.host.input = "Webcam"_s;
        opened.click("checkBox_OnlyUseOurDeviceMic");
        QCOMPARE(opened.host.take(), list({"microphone QMZ mouse"}));
        QVERIFY(!box->isEnabled());
        QCOMPARE(box->currentText(), "QMZ mouse"_s);
        opened.click("checkBox_OnlyUseOurDeviceMic");
        QVERIFY(box->isEnabled() && opened.host.take().isEmpty());
        opened.click("checkBox_SimulateDoubleChannel");
        QCOMPARE(opened.host.take(), list({"channels 1"}));
        opened.click("checkBox_KeepMicrophoneReady");
        QVERIFY(opened.host.take().isEmpty());
        opened.click("checkBox_KeepMicrophoneReady");
        QCOMPARE(opened.host.take(), list({"let go"})); // at once
        box->setFocus();
        QTest::keyClick(box, Qt::Key_End);
        QCOMPARE(opened.host.take(), list({"sound"}));
        QCOMPARE(box->currentText(), "QMZ mouse"_s);
    }

    void theLevelMovesWhileTheDialogIsOpen()
    {
        Opened opened;
        QTRY_VERIFY(opened.host.heard);
        opened.host.heard(7);
        QCOMPARE(opened.find<QProgressBar>("progressBar_MicLevel")->value(), 7);
        opened.dialog->close();
        QVERIFY(!opened.host.heard); // the microphone is not listened to any more
    }

    void theProxy()
    {
        const Opened opened("[NetworkProxy]\nUseNetworkProxy=false\n");
        opened.click("checkBox_NetworkProxy");
        const char *const group = "NetworkProxy";
        QCOMPARE(Opened::stored("UseNetworkProxy", group), "true"_s);
        QVERIFY(!opened.state.UseNetworkProxy); // there is nothing yet to go by
        opened.replace("lineEdit_NetworkProxy_IP", " proxy.example "_s);
        opened.replace("lineEdit_NetworkProxy_Port", "x30y80"_s);
        opened.replace("lineEdit_NetworkProxy_UserName", "me"_s);
        opened.replace("lineEdit_NetworkProxy_Password", "p;w"_s);
        QCOMPARE(opened.find<QLineEdit>("lineEdit_NetworkProxy_Password")->echoMode(), QLineEdit::Password);
        opened.find("checkBox_NetworkProxy")->setFocus();
        QCOMPARE(Opened::stored("NetworkProxy_Port", group), "3080"_s);
        QCOMPARE(Opened::stored("NetworkProxy_Password", group), "p;w"_s);
        QVERIFY(opened.state.UseNetworkProxy);
        QCOMPARE(opened.state.NetworkProxy_IP, "proxy.example"_s);
        QCOMPARE(opened.state.NetworkProxy_Port, 3080);
        QCOMPARE(opened.state.NetworkProxy_UserName, "me"_s);
        opened.replace("lineEdit_NetworkProxy_Port", QString());
        opened.dialog->close(); // in the middle of it
        QCOMPARE(opened.state.NetworkProxy_Port, -1);
        opened.dialog->show();
        opened.click("checkBox_NetworkProxy");
        QVERIFY(!opened.state.UseNetworkProxy);
        QCOMPARE(Opened::stored("UseNetworkProxy", group), "false"_s);
    }

    void pathsAreStoredWhenTheyAreLeft()
    {
        const Opened opened("LocalASR3SougoInstallPath=/opt/old\n", showAll);
        opened.replace("lineEdit_ASR3SougoInstallPath", "/opt/new"_s);
        QCOMPARE(Opened::stored("LocalASR3SougoInstallPath"), "/opt/old"_s);
        opened.find("checkBox_ForceUseASR3")->setFocus();
        QCOMPARE(Opened::stored("LocalASR3SougoInstallPath"), "/opt/new"_s);
        QCOMPARE(opened.state.LocalASR3SougoInstallPath, "/opt/new"_s);
        QCOMPARE(opened.host.calls, list({"path"})); // and looked at at once
    }

    void theUpdateNotice()
    {
        Opened opened;
        auto *notice = opened.find<QPushButton>("pushButton_UpdateNotice");
        QVERIFY(!opened.isShown("pushButton_UpdateNotice"));
        opened.dialog->setUpdateNotice("newer"_s);
        QVERIFY(opened.isShown("pushButton_UpdateNotice") && notice->isEnabled());
        opened.dialog->setUpdateNotice(QString());
        QVERIFY(!opened.isShown("pushButton_UpdateNotice"));
        opened.click("pushButton_CheckUpdate");
        opened.dialog->setUpdateNotice(QString()); // who asks is answered
        QCOMPARE(notice->text(), "已是最新版本"_s);
        opened.dialog->hide();
        opened.dialog->show();
        QVERIFY(opened.host.calls.contains("update opened"_s));
    }

    /// Making, showing and refilling write nothing, whatever the file holds.
    void fillingWritesNothing_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("nonsense") << QByteArray(
            "VADEOS_CheckTimeout=forty\nSend2ScreenMethod=99\nLocalUseASR3Index=-7\nMouseCurrentDPI=3\n"
            "Juhao2Douhao=perhaps\nEnableP3Keyboard=x\nCmdFlags_Contents_Driect=\nVoiceSend_AltS=true\n"
            "VoiceSend_Enter=true\nSetEnterVoiceTypeMode=\"\n[NetworkProxy]\nNetworkProxy_Port=abc\n");
    }

    void fillingWritesNothing()
    {
        QFETCH(QByteArray, settings);
        QByteArray before;
        Opened opened(settings, [&](Opened &it) {
            it.state.LocalUseASR3Index = -7;
            before = Opened::home().read("MEVOSetting.ini"_s);
        });
        opened.dialog->updateUI();
        opened.dialog->hide();
        opened.dialog->show();
        opened.dialog->close();
        QCOMPARE(Opened::home().read("MEVOSetting.ini"_s), before);
        QVERIFY(opened.questions.isEmpty());
    }

    /// What cannot go to the disk counts in this run.
    void aFileThatCannotBeWritten()
    {
        Opened opened("Juhao2Douhao=false\n");
        QFile::setPermissions(QFileInfo(Opened::home().path("x"_s)).path(),
                              QFile::ReadOwner | QFile::ExeOwner);
        opened.click("checkBox_Juhao2Douhao");
        QVERIFY(opened.state.Juhao2Douhao && opened.isOn("checkBox_Juhao2Douhao"));
        opened.dialog->updateUI();
        QVERIFY(opened.isOn("checkBox_Juhao2Douhao"));
        QFile::setPermissions(QFileInfo(Opened::home().path("x"_s)).path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        opened.click("checkBox_AddPunctuationWhenEnd");
        QVERIFY(Opened::home().read("MEVOSetting.ini"_s).contains("Juhao2Douhao=true"));
    }

    void theProgramEndsMeanwhile()
    {
        Opened opened(QByteArray(), showAll);
        opened.host.ending = true;
        opened.click("radioButton_TXAsrAPI");
        opened.click("checkBox_EnableXunFeiDwa");
        opened.dialog->updateUI();
        QVERIFY(opened.host.calls.isEmpty());
    }

    /// By the Tab key alone every control that can be used is reached, and a reader has a name for it.
    void theKeyboardAndReaders()
    {
        const Opened opened(QByteArray(), showAll);
        auto *pages = opened.find<QTabWidget>("tabWidget_Setting");
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            QSet<QWidget *> reached;
            for (int i = 0; i < 400; ++i) {
                QTest::keyClick(opened.dialog->focusWidget() != nullptr ? opened.dialog->focusWidget()
                                                                        : opened.dialog.get(),
                                Qt::Key_Tab);
                reached.insert(opened.dialog->focusWidget());
            }
            const QList<QWidget *> widgets = pages->widget(page)->findChildren<QWidget *>();
            for (QWidget *widget : widgets) {
                const bool control = qobject_cast<QAbstractButton *>(widget) != nullptr ||
                                     qobject_cast<QComboBox *>(widget) != nullptr ||
                                     qobject_cast<QLineEdit *>(widget) != nullptr;
                if (!control || !widget->isVisible() || !widget->isEnabled()) {
                    continue;
                }
                auto *radio = qobject_cast<QRadioButton *>(widget);
                const bool byArrow = radio != nullptr && radio->group() != nullptr; // from its neighbour
                QVERIFY2(byArrow || reached.contains(widget), qPrintable(widget->objectName()));
                QVERIFY2(!QAccessible::queryAccessibleInterface(widget)
                              ->text(QAccessible::Name)
                              .trimmed()
                              .isEmpty(),
                         qPrintable(widget->objectName()));
            }
        }
    }

    /// It fits a screen of 1280 x 720 at twice the size, and no line is cut off at the right.
    void itFitsSmallScreens_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("simplified Chinese") << "";
        QTest::newRow("traditional Chinese") << "cht";
        QTest::newRow("English") << "en";
    }

    void itFitsSmallScreens()
    {
        QFETCH(QString, language);
        QTranslator translator;
        if (!language.isEmpty()) {
            QVERIFY(translator.load(":/translations/%1.qm"_s.arg(language)));
            QCoreApplication::installTranslator(&translator);
        }
        {
            const Opened opened(QByteArray(), showAll);
            opened.dialog->resize(640, 330);
            auto *pages = opened.find<QTabWidget>("tabWidget_Setting");
            for (int page = 0; page < pages->count(); ++page) {
                pages->setCurrentIndex(page);
                QCoreApplication::processEvents();
                const auto *area = static_cast<QScrollArea *>(pages->widget(page));
                QVERIFY2(area->widget()->width() <= area->viewport()->width(),
                         qPrintable("page %1 is %2 wide"_s.arg(page).arg(area->widget()->width())));
            }
            QVERIFY(opened.dialog->width() <= 640);
        }
        QCoreApplication::removeTranslator(&translator);
    }

    void openingsLeaveNothingBehind()
    {
        const Opened opened(QByteArray(), showAll);
        const int objects = opened.dialog->findChildren<QObject *>().size();
        for (int i = 0; i < 200; ++i) {
            opened.dialog->close();
            opened.dialog->present(nullptr);
            QCoreApplication::processEvents();
        }
        QCOMPARE(opened.dialog->findChildren<QObject *>().size(), objects);
    }
};

QTEST_MAIN(TestSettingDialog)
#include "tst_setting_dialog.moc"
