#include "base/SettingsFile.h"
#include "state/SettingsTable.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QtTest>

namespace {

const ScratchHome home;
const QString fileName = "MEVOSetting.ini"_s;

/// Every key of the full load, in the order of its reading: its type (nonzero is a number read as a flag,
/// positive a number that counts above 0, stored one that counts when it is there), the value before a load
/// where that is not 0 or empty, and whether a true sticks or the value is written back as read.
const QStringList theKeys = QString::fromLatin1(R"(
TXCurrentVoiceType:text UseTecentZhDialect:bool:0:kept AutoRunApp:text TXASRConvertNum2CNMode:bool
RunAsAdmin:bool MainWinLeft:int MainWinTop:int ASR3CustomCtrlShortCutKey:int ASR3CustomShortCutKey:int
LocalASR3CustomInstallPath:text OnlyUseXunFeiOfflineASR:bool ForceUseXFMore3V:bool
Asr2ScreenIntervalTime:positive HW2ScreenIntervalTime:positive EnableP3Keyboard:int
LocalXunFeiASR3CtrlKey:int LocalXunFeiASR3AltKey:int LocalXunFeiASR3ShiftKey:int
LocalXunFeiASR3ShortcutKey:int LocalEnableASR3:bool LocalUseASR3Index:int:1 HidMainUIWhenASR:bool
ForceUseASR3:bool LocalMustClickRunASR3:bool FirstRunApp:bool ShowVerticalUI:bool ShowTipsDlg:nonzero
SimulateDoubleChannel:bool OnlyUseOurDeviceMic:bool KeepMicrophoneReady:bool XunFeiWebApiCurrentVoiceType:text
BaiDuNoStreamApi_FastVersion:bool EnableXunFeiDialect:bool EnableXunFeiSmallLan:bool
XFSelectDirlect:text XFSelectSmallLan:text ShowXFDialect:int ShowXFSmallLan:int
LocalASR3XunFeiInstallPath:text LocalASR3SougoInstallPath:text LocalEnableThirdpatyVoiceInput:nonzero
RunThirdpartVoiceInputByORV:int Send2ScreenMethod:int Output2Tranditional:nonzero
AddPunctuationWhenEnd:nonzero Juhao2Douhao:bool:1 DontSend2ScreenWhenCmdStatus:bool:1
VoiceImmediateSend:bool:0:sticky VoiceImmediateSend_AltS:bool:0:sticky
VoiceImmediateSend_Enter:bool:0:sticky VoiceImmediateSend_CtrlEnter:bool:0:sticky
VoiceSend:bool:0:sticky VoiceSend_MapWords2Screen:bool:0:sticky VoiceSend_AltS:bool:0:sticky
VoiceSend_Enter:bool:0:sticky VoiceSend_CtrlEnter:bool:0:sticky VoiceSend_AltS_MapWords:text
VoiceSend_Enter_MapWords:text VoiceSend_CtrlEnter_MapWords:text VoiceNewLine:bool:0:sticky
VoiceNewLine_MapWords2Screen:bool:0:sticky VoiceNewLine_Enter:bool:0:sticky
VoiceNewLine_CtrlEnter:bool:0:sticky VoiceNewLine_Enter_MapWords:text
VoiceNewLine_CtrlEnter_MapWords:text VoiceClear:bool:0:sticky VoiceClear_MapWords2Screen:bool:0:sticky
VoiceClear_Backspace:bool:0:sticky VoiceClear_Delete:bool:0:sticky VoiceClear_Backspace_MapWords:text
VoiceClear_Delete_MapWords:text Enable_LongPressForVoiceInput:bool:1:sticky
Enable_OnePressForVoiceInput:bool:0:sticky Check_VadEos:bool VADEOS_CheckTimeout:positive:10
Enable_SwitchFunctionMode:bool SetEnterVoiceTypeMode:text SetEnterVoiceCommandWordMode:text
SetEnterVoiceTranslateMode:text SetEnterVoiceSearchMode:text SetEnterVoiceTypeModeSwitchModeFlags:list
SetEnterVoiceCommandWordModeSwitchModeFlags:list SetEnterVoiceTranslateModeSwitchModeFlags:list
SetEnterVoiceSearchModeSwitchModeFlags:list SetEnterVoiceKeyboardModeSwitchModeFlags:list
Enable_SwitchModeFlagsWord2Screen:bool:1 Enable_CommandWord_Direct:bool:1 Enable_Search_Direct:bool:1
Enable_CmdFlagsWord2Screen_Direct:bool:1 Enable_SearchFlagsWord2Screen_Direct:bool
CmdFlags_Contents_Driect:list SearchFlags_Contents_Driect:list SearchEngines_Baidu:bool
SearchEngines_Sogou:bool SearchEngines_360:bool SearchEngines_Google:bool SearchEngines_Bing:bool
MouseCurrentDPI:positive:2400 MouseCurrentDataRate:positive:125 MosueCurrentWheelSpeed:stored:1
MouseCurrentLeftkeyValue:int MouseCurrentRightKeyValue:int MouseCurrentLeftKeyString:text
MouseCurrentRightKeyString:text DownloadDrvWeb:text UserManual:text Website:text SupportContact:text
SupportEmail:text
)")
                                .simplified()
                                .split(u' ');

struct Key
{
    explicit Key(const QString &written)
        : name(written.section(u':', 0, 0))
        , type(written.section(u':', 1, 1))
        , before(written.section(u':', 2, 2))
        , mark(written.section(u':', 3, 3))
        , isText(type == QLatin1String("text") || type == QLatin1String("list"))
    {
        before = before.isEmpty() && !isText ? "0"_s : before;
    }
    QString name, type, before, mark;
    bool isText;
};

template <typename... Visitors>
struct Overloaded : Visitors...
{
    using Visitors::operator()...;
};
template <typename... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

/// The member of a row as text, whatever its type; a list's words by "|".
QString memberText(const mevo::SettingRow &row, const MainState &state)
{
    return std::visit(Overloaded{[&](QString MainState::*member) { return state.*member; },
                                 [&](QStringList MainState::*member) { return (state.*member).join(u'|'); },
                                 [&](auto member) {
                                     const int value = state.*member;
                                     return QString::number(value);
                                 }},
                      row.member);
}

/// What a file's value makes of a member that held `before`; "-" for a key that is not in the file.
QString loaded(const mevo::SettingRow &row, const QString &before, const QString &stored)
{
    home.remove(fileName);
    if (stored != QLatin1String("-")) {
        home.write(fileName, "[MainSetting]\n" + QByteArray(row.key) + '=' + stored.toUtf8() + '\n');
    }
    MainState state;
    if (!before.isEmpty()) {
        std::visit(
            Overloaded{[&](bool MainState::*member) { state.*member = before.toInt() != 0; },
                       [&](std::atomic<bool> MainState::*member) { state.*member = before.toInt() != 0; },
                       [&](int MainState::*member) { state.*member = before.toInt(); },
                       [&](std::atomic<int> MainState::*member) { state.*member = before.toInt(); },
                       [&](auto) {}},
            row.member);
    }
    mevo::loadSetting(row, mevo::SettingsFile(), state);
    return memberText(row, state);
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { home.remove(fileName); }

    void everyKeyIsThere()
    {
        QStringList names, read;
        for (const QString &key : theKeys) {
            names.append(Key(key).name);
        }
        for (const mevo::SettingRow &row : mevo::settingRows()) {
            read.append(QLatin1String(row.key));
        }
        QCOMPARE(read, names);
    }

    void everyKey_data()
    {
        QTest::addColumn<int>("place");
        for (int place = 0; place < theKeys.size(); ++place) {
            QTest::newRow(qPrintable(Key(theKeys[place]).name)) << place;
        }
    }

    void everyKey()
    {
        QFETCH(int, place);
        const Key key(theKeys[place]);
        const mevo::SettingRow &row = mevo::settingRows()[std::size_t(place)];
        QCOMPARE(memberText(row, MainState()), key.before);
        // Type, then pairs of what the file says ("-" for nothing) and what the member is then, from 1
        // before.
        const QHash<QByteArray, const char *> rules{
            {"bool", "true/1/1/1/false/0/0/0/-/0"},
            {"nonzero", "2/1/true/1/0/0/-/0"},
            {"int", "7/7/0/0/-5/-5/x/0/-/0"},
            {"positive", "7/7/0/1/-5/1/x/1/-/1"},
            {"stored", "2/2/0/0/x/1/-/1"},
            {"text", "甲;乙, 丙/甲;乙, 丙/\" a \"/ a /-/"},
            {"list", "甲;乙, 丙;/甲|乙, 丙|/;/|/-/"},
        };
        const QStringList rule = QString::fromUtf8(rules.value(key.type.toLatin1())).split(u'/');
        QVERIFY(rule.size() > 1);
        for (int i = 0; i < rule.size(); i += 2) {
            const bool sticks = key.mark == QLatin1String("sticky");
            QCOMPARE(loaded(row, "1"_s, rule[i]), sticks ? "1"_s : rule[i + 1]);
        }
        if (key.mark == QLatin1String("sticky")) {
            QCOMPARE(loaded(row, "0"_s, "true"_s), "1"_s);
            QCOMPARE(loaded(row, "0"_s, "false"_s), "0"_s);
        }
        QCOMPARE(row.writeBack, key.mark == QLatin1String("kept"));
    }

    void everyStartWritesTheVersionAndTheStartupEntry()
    {
        home.write(fileName, "[MainSetting]\nMouseCurrentWheelSpeed=2\n");
        MainState state;
        {
            mevo::SettingsFile file;
            mevo::loadSettings(state, file, true);
        }
        QCOMPARE(state.MouseCurrentWheelSpeed.load(), 1); // read under its other spelling only
        QCOMPARE(state.AutoRunApp, "1"_s);
        const QByteArray written = home.read(fileName);
        QVERIFY(written.contains("CurrentVersion=107") && written.contains("AutoRunApp=1"));
    }

    void handWrittenTextsComeBackWhole()
    {
        home.write(fileName,
                   "[MainSetting]\nSearchFlags_Contents_Driect=搜索;查, 一下;;\nSupportContact=甲, 乙\n"
                   "UserManual=\"a,b;c\"\r\nWebsite=http://h/?a=1,2\r\nSupportEmail=\"c,d\\\\\"\n"
                   "Send2ScreenMethod=2 ; 0, 1 or 2\n; a remark, with = and ;\nSearchEngines_Bing=1");
        mevo::SettingsFile().setValue("EnableP3Keyboard"_s, 1); // a write loses nothing either
        MainState state;
        const mevo::SettingsFile file;
        for (const mevo::SettingRow &row : mevo::settingRows()) {
            mevo::loadSetting(row, file, state);
        }
        QCOMPARE(state.SearchFlags_Contents_Driect.join(u'|'), "搜索|查, 一下||"_s);
        QCOMPARE(state.SupportContact, "甲, 乙"_s);
        QCOMPARE(state.UserManual, "a,b;c"_s);
        QCOMPARE(state.Website, "http://h/?a=1,2"_s);
        QCOMPARE(state.SupportEmail, "c,d\\"_s);
        QCOMPARE(state.Send2ScreenMethod, 2);
        QCOMPARE(state.SearchEngines_Bing, true);
    }

    void unofferedInputMethodIsTakenBack()
    {
        home.write(fileName, "[MainSetting]\nLocalUseASR3Index=3\nLocalEnableASR3=true\n");
        MainState state;
        state.ShowASR3Custom = false;
        {
            mevo::SettingsFile file;
            mevo::loadSettings(state, file, false);
        }
        QCOMPARE(state.LocalUseASR3Index, -1);
        QVERIFY(!state.LocalEnableASR3);
        QVERIFY(home.read(fileName).contains("LocalUseASR3Index=-1"));
    }

    void earlySettings()
    {
        MainState state;
        {
            mevo::SettingsFile file;
            file.setValue("PureXunFeiOfflineVersion"_s, true);
            mevo::loadEarlySettings(state, file, true, "/opt/a\\b"_s);
        }
        QVERIFY(!state.PureXunFeiOfflineVersion);
        QCOMPARE(state.XFPKGName, "iFlyIME_Setup3.0.1727.exe"_s);
        QCOMPARE(mevo::SettingsFile().value("EXEPath"_s).toString(), "/opt/a\\\\b"_s);
    }

    void aListEndsAtItsFirstZero()
    {
        mevo::SettingsFile().setValue("CmdFlags_Contents_Driect"_s, ";甲;"_s + QChar(0) + "乙;丙"_s);
        MainState state;
        mevo::SettingsFile file;
        mevo::loadSettings(state, file, false);
        QCOMPARE(state.CmdFlags_Contents_Driect.join(u'|'), "|甲|"_s);
        QCOMPARE(state.AutoRunApp, QString());
    }

    void proxy_data()
    {
        const Rows<QByteArray, bool, int> row; // settings, used, port
        row("nothing set", QByteArray("UseNetworkProxy=true"), false, -1);
        row("blanks", QByteArray("UseNetworkProxy=true\nNetworkProxy_IP=\"  \""), false, -1);
        row("host", QByteArray("UseNetworkProxy=true\nNetworkProxy_IP=\" h \"\nNetworkProxy_Port=80"), true,
            80);
        row("off", QByteArray("NetworkProxy_IP=h"), false, -1);
    }

    void proxy()
    {
        const auto [settings, used, port] = rowOf<QByteArray, bool, int>();
        home.write(fileName, "[NetworkProxy]\n" + settings + '\n');
        MainState state;
        mevo::loadProxySettings(state, mevo::SettingsFile("NetworkProxy"_s));
        QCOMPARE(state.UseNetworkProxy, used);
        QCOMPARE(state.NetworkProxy_Port, port);
        QVERIFY(state.NetworkProxy_IP == state.NetworkProxy_IP.trimmed());
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
