#include "inputmethods/CustomMethod.h"
#include "inputmethods/InstallerAddress.h"
#include "inputmethods/MethodSetup.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::SetupStep;

/// What is decided about input methods, from a row, a path, flags and an address.
class TestInputMethods : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void builtInRows_data()
    {
        // index, third, texts (registry, value, path, window, class, file, name), key
        const Rows<int, bool, QStringList, int> row;
        const QString xunFei = "HKEY_LOCAL_MACHINE\\SOFTWARE\\iFly Info Tek\\iFlyIME";
        row("XunFei, older", 1, false,
            QStringList{xunFei, "Install_Dir_Ver2", "/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe",
                        "讯飞语音悬浮窗", "UIIFlyVoiceFrame", "iFlyVoice.exe", "讯飞输入法"},
            0x3f);
        row("XunFei, third generation", 1, true,
            QStringList{xunFei, "Install_Dir_Ver2", "/iFly Info Tek/iFlyIME/3.0.1725/iFlyVoice.exe",
                        "语音悬浮窗", "BaseGui", "iFlyVoice.exe", "讯飞输入法"},
            0x3f);
        for (const bool third : {false, true}) {
            row(rowName("Sogou, %d", int(third)), 2, third,
                QStringList{"HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion"
                            "\\Uninstall\\Sogou Input",
                            "InstallLocation", "/SogouInput/Components/VoiceInput/1.0.0.170/VoiceInput.exe",
                            "搜狗输入法语音输入 ", "CherryWindowClass", "VoiceInput.exe", "讯飞输入法"},
                0x3b);
        }
    }
    void builtInRows()
    {
        const auto [index, third, texts, key] = rowOf<int, bool, QStringList, int>();
        const mevo::Asr3Row row = mevo::builtInAsr3Row(index, third);
        QCOMPARE((QStringList{row.ASR3RegInstallPath, row.ASR3RegSearchValue, row.ASR3ExeInstallPath,
                              row.ASR3WindowName, row.ASR3WinClassName, row.ASR3ExeFileName, row.ASR3Name}),
                 texts);
        QCOMPARE(row.ASR3ShortCutKey, key);
        QVERIFY(row.ASR3DownWeb.isEmpty());
    }

    void rowOfTheService_data()
    {
        const Rows<QString, QJsonValue, QString>
            row; // column, value, read (in its place; "" for what stands)
        row("window", "ASR3WindowName", "悬浮窗", "悬浮窗");
        row("no window", "ASR3WindowName", "", "");
        row("blank window", "ASR3WindowName", "  ", "");
        row("null", "ASR3WindowName", QJsonValue(), "");
        row("endless", "ASR3WindowName", QString(5000, 'w'), "");
        row("file", "ASR3ExeFileName", "Voice", "Voice");
        row("file in a folder", "ASR3ExeFileName", "..\\Voice", "");
        row("path", "ASR3ExeInstallPath", "/a/b", "/a/b");
        row("path that leaves", "ASR3ExeInstallPath", "/a/../../bin/sh", "");
        row("key", "ASR3ShortCutKey", "66", "66");
        row("key as a number", "ASR3ShortCutKey", 66, "66");
        row("key 0", "ASR3ShortCutKey", "0", "");
        row("key beyond the keyboard", "ASR3ShortCutKey", "300", "");
        row("no key", "ASR3ShortCutKey", "F6", "");
    }
    void rowOfTheService()
    {
        const auto [column, value, read] = rowOf<QString, QJsonValue, QString>();
        QJsonObject columns{{"ASR3DownWeb", "http://a/b.exe"}, {"ASR3SetupPKGSize", "4294967296"}};
        columns.insert(column, value);
        const mevo::Asr3Row row = mevo::readAsr3Row(columns, mevo::builtInAsr3Row(1, false));
        QHash<QString, QString> expected{
            {"ASR3WindowName", "讯飞语音悬浮窗"},
            {"ASR3ExeFileName", "iFlyVoice.exe"},
            {"ASR3ExeInstallPath", "/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe"},
            {"ASR3ShortCutKey", "63"}};
        if (!read.isEmpty()) {
            expected[column] = read;
        }
        QCOMPARE(row.ASR3WindowName, expected["ASR3WindowName"]);
        QCOMPARE(row.ASR3ExeFileName, expected["ASR3ExeFileName"]);
        QCOMPARE(row.ASR3ExeInstallPath, expected["ASR3ExeInstallPath"]);
        QCOMPARE(QString::number(row.ASR3ShortCutKey), expected["ASR3ShortCutKey"]);
        QCOMPARE(row.ASR3DownWeb, QString("http://a/b.exe"));
        QCOMPARE(row.ASR3SetupPKGSize, Q_INT64_C(4294967296));
    }

    void customMethods_data()
    {
        // path, description (key, modifiers, mode, window class), expected (modifiers, usage, hold, class;
        // empty for none)
        const Rows<QString, QStringList, QString> row;
        const QStringList none{"", "", "", ""};
        row("Sogou's", "C:\\x\\VoiceInput.exe", none, "0 3b tap ");
        row("XunFei's", "/opt/iFlyVoice", none, "0 3f tap ");
        row("Baidu's", "/opt/SpeechInput.exe", none, "1 0 tap  baidu");
        row("no path", "", QStringList{"F9", "", "", ""}, "");
        row("a folder", "/opt/", QStringList{"F9", "", "", ""}, "");
        row("another name", "/opt/nerd-dictation", none, "");
        row("a name that only contains one", "/opt/MySpeechInput", none, "");
        row("a known name keeps its rules", "/opt/VoiceInput", QStringList{"F9", "Alt", "hold", "Own"},
            "0 3b tap ");
        row("described", "/opt/talk", QStringList{"F9", "", "", ""}, "0 42 hold ");
        row("tapped, with a window", "/opt/talk", QStringList{"f12", "ctrl + ALT", "Tap", " Talk "},
            "5 45 tap Talk");
        row("beyond F12", "/opt/talk", QStringList{"F13", "", "hold", ""}, "0 68 hold ");
        row("F24", "/opt/talk", QStringList{"F24", "", "hold", ""}, "0 73 hold ");
        row("F25", "/opt/talk", QStringList{"F25", "", "hold", ""}, "");
        row("a usage", "/opt/talk", QStringList{"0x48", "Win,Shift", "tap", ""}, "a 48 tap ");
        row("a key of the table", "/opt/talk", QStringList{"pause", "", "tap", ""}, "0 48 tap ");
        row("a media key", "/opt/talk", QStringList{"mute", "", "tap", ""}, "");
        row("modifiers alone", "/opt/talk", QStringList{"", "Super", "", ""}, "8 0 hold ");
        row("unknown modifier", "/opt/talk", QStringList{"F9", "Hyper", "", ""}, "");
        row("unknown key", "/opt/talk", QStringList{"Any", "", "", ""}, "");
        row("unknown mode", "/opt/talk", QStringList{"F9", "", "press", ""}, "");
        row("no usage", "/opt/talk", QStringList{"0x0", "Ctrl", "", ""}, "");
        row("a usage of no key", "/opt/talk", QStringList{"0x1e0", "", "", ""}, "");
    }
    void customMethods()
    {
        const auto [path, description, expected] = rowOf<QString, QStringList, QString>();
        mevo::KeyTable keys;
        for (int i = 0; i < 69; ++i) { // the keyboard's come first, media keys behind them
            keys.names.append(i == 40 ? QString("Pause") : QString("Key%1").arg(i));
            keys.codes.append(i == 40 ? "48" : "4");
        }
        keys.names.append("Mute");
        keys.codes.append("e2");
        const auto method =
            mevo::customMethod(path, {description[0], description[1], description[2], description[3]}, keys);
        QString text;
        if (method) {
            text = QString("%1 %2 %3 %4%5")
                       .arg(method->modifiers, 0, 16)
                       .arg(method->usage, 0, 16)
                       .arg(QString(method->hold ? "hold" : "tap"), method->windowClass,
                            QString(method->baidu ? " baidu" : ""));
        }
        QCOMPARE(text, expected);
    }

    void steps_data()
    {
        // facts, step (index, consent asked, must click, found, forced, offline wanted, installer here, has
        // address)
        const Rows<mevo::SetupFacts, SetupStep> row;
        using F = mevo::SetupFacts;
        row("never asked", F{1, false, false, true, true, false, false, true}, SetupStep::AskConsent);
        row("refused before it could be asked", F{1, false, true, true, true, false, false, true},
            SetupStep::Ready);
        row("there", F{2, true, false, true, false, false, false, false}, SetupStep::Ready);
        row("there, on a click", F{2, true, true, true, false, false, false, false}, SetupStep::Ready);
        row("not there, not forced", F{1, true, false, false, false, false, false, true},
            SetupStep::FallBack);
        row("not there, forced", F{1, true, false, false, true, false, false, true},
            SetupStep::OfferDownload);
        row("refused, forced", F{2, true, true, false, true, false, false, true}, SetupStep::OfferDownload);
        row("nowhere to be had", F{2, true, false, false, true, false, false, false},
            SetupStep::NothingToHave);
        row("installer here", F{1, true, false, false, false, true, true, false}, SetupStep::RunInstaller);
        row("installer here, online is enough", F{1, true, false, false, false, false, true, false},
            SetupStep::FallBack);
        row("installer here, refused", F{1, true, true, false, false, true, true, false},
            SetupStep::FallBack);
        row("installer of the other one", F{2, true, false, false, true, true, true, true},
            SetupStep::OfferDownload);
        row("installer not needed", F{1, true, false, true, false, true, true, false}, SetupStep::Ready);
        row("custom, not there", F{3, true, false, false, true, false, false, true},
            SetupStep::OfferDownload);
    }
    void steps()
    {
        const auto [facts, step] = rowOf<mevo::SetupFacts, SetupStep>();
        QVERIFY(mevo::nextSetupStep(facts) == step);
    }

    void tables_data()
    {
        const Rows<bool, bool, bool, QString> row; // installed, forced, offline, table
        row("none", false, false, false, "asr3setting");
        row("installed", true, false, false, "asr3setting_usexunfeiinputmore30");
        row("forced", false, true, false, "asr3setting_usexunfeiinputmore30");
        row("offline", false, false, true, "asr3setting_usexunfeiinputmore30");
    }
    void tables()
    {
        const auto [installed, forced, offline, table] = rowOf<bool, bool, bool, QString>();
        MainState state;
        state.XFVM3 = installed;
        state.ForceUseXFMore3V = forced;
        state.OnlyUseXunFeiOfflineASR = offline;
        QCOMPARE(mevo::asr3Table(mevo::wantsThirdGeneration(state)), table);
    }

    void rowInForce_data()
    {
        const Rows<int, bool, bool, bool, QString> row; // index, third, online, hold, window
        row("XunFei", 1, false, true, true, "window");
        row("third generation", 1, true, true, true, "window");
        row("third generation, offline", 1, true, false, true, "语音悬浮窗");
        row("Sogou, offline", 2, true, false, false, "window");
    }
    void rowInForce()
    {
        const auto [index, third, online, hold, window] = rowOf<int, bool, bool, bool, QString>();
        MainState state;
        state.XFVM3 = third;
        state.IsOnline = online;
        state.ASR3HoldToTalk = index == 2; // of the method before
        mevo::Asr3Row row;
        row.ASR3WindowName = "window";
        row.ASR3WinClassName = "class";
        row.ASR3ShortCutKey = 7;
        mevo::applyAsr3Row(state, index, row);
        QCOMPARE(state.ASR3HoldToTalk, hold);
        QCOMPARE(state.ASR3WindowName, window);
        QCOMPARE(state.ASR3ShortCutKey, 7);
    }

    void xunFeiInstalled_data()
    {
        // folder, generation (negative where the row is of the other table), there, online, third, path,
        // window
        const Rows<QString, int, bool, bool, bool, QString, QString> add;
        const QString row = "行的窗口"; // the service's
        const QString offline = "语音悬浮窗";
        add("second", "/x", 2, true, true, false, "/x/iFlyVoice", row);
        add("third", "/x", 3, true, true, true, "/x/iFlyVoice", row);
        add("third, offline", "/x", 3, true, false, true, "/x/iFlyVoice", offline);
        add("second, offline", "/x", 2, true, false, false, "/x/iFlyVoice", row);
        add("gone", "/x", 3, false, true, false, "own", row);
        add("no folder told", "", 3, false, true, true, "own", row);
        add("second, the row is of the third", "/x", -2, true, true, false, "/x/iFlyVoice", "讯飞语音悬浮窗");
        add("third, the row is of the second", "/x", -3, true, true, true, "/x/iFlyVoice", "语音悬浮窗");
    }
    void xunFeiInstalled()
    {
        auto [folder, generation, there, online, third, path, window] =
            rowOf<QString, int, bool, bool, bool, QString, QString>();
        MainState state;
        state.XFVM3 = !there;
        state.LocalASR3XunFeiInstallPath = "own";
        const bool otherRow = generation < 0;
        generation = qAbs(generation);
        mevo::Asr3Row row;
        row.ASR3WindowName = "行的窗口";
        row.thirdGeneration = third != otherRow;
        const QString program = there ? folder + "/iFlyVoice" : QString();
        mevo::applyXunFeiInstallation(state, {folder, generation}, program, online, &row);
        QCOMPARE(state.XFVM3, third);
        QCOMPARE(state.LocalASR3XunFeiInstallPath, path);
        QCOMPARE(state.ASR3WindowName, window);
        state.ASR3WindowName = "另一个窗口"; // of another method, or nobody knows a row
        state.LocalUseASR3Index = 2;
        mevo::applyXunFeiInstallation(state, {folder, generation}, program, online, &row);
        QCOMPARE(state.ASR3WindowName, QString("另一个窗口"));
        state.LocalUseASR3Index = 1;
        mevo::applyXunFeiInstallation(state, {folder, generation}, program, true, nullptr);
        QCOMPARE(state.ASR3WindowName, QString("另一个窗口"));
    }

    void addresses_data()
    {
        const Rows<QString, QString> row; // address, name
        row("plain", "http://a.b/c/iFlyIME_Setup.exe", "iFlyIME_Setup.exe");
        row("query", "https://a.b/c/x.run?file=/etc/y", "x.run");
        row("blanks and Chinese", "http://a.b/%E8%AE%AF%E9%A3%9E%20voice.deb", "讯飞 voice.deb");
        row("no name", "http://a.b/c/", "");
        row("no path", "http://a.b", "");
        row("up", "http://a.b/c/%2E%2E", "");
        row("a folder in the name", "http://a.b/c/..%2F..%2Fbin%2Fsh", "sh");
        row("a Windows folder in the name", "http://a.b/c/..%5Cx.exe", "x.exe");
        row("hidden", "http://a.b/.bashrc", "");
        row("a line end in the name", "http://a.b/x%0Ay", "");
        row("too long", "http://a.b/" + QString(300, 'x'), "");
        row("a file", "file:///etc/passwd", "");
        row("no address", "setup.exe", "");
        row("empty", "", "");
    }
    void addresses()
    {
        const auto [address, name] = rowOf<QString, QString>();
        const QUrl url = mevo::installerUrl(address);
        QCOMPARE(mevo::installerFileName(url), name);
        QCOMPARE(url.isEmpty(), mevo::installerFileName(url).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestInputMethods)
#include "tst_input_methods.moc"
