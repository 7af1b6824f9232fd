#include "inputmethods/CustomMethod.h"
#include "inputmethods/InstallerAddress.h"
#include "inputmethods/MethodSetup.h"

#include <QtTest>

using mevo::SetupStep;

Q_DECLARE_METATYPE(mevo::SetupStep)
Q_DECLARE_METATYPE(mevo::SetupFacts)

/// What is decided about input methods, from a row, a path, flags and an address.
class TestInputMethods : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void builtInRows_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("third");
        QTest::addColumn<QStringList>("texts"); ///< registry, value, path, window, class, file, name
        QTest::addColumn<int>("key");
        const QString xunFei = "HKEY_LOCAL_MACHINE\\SOFTWARE\\iFly Info Tek\\iFlyIME";
        QTest::newRow("XunFei, older")
            << 1 << false << QStringList{xunFei,
                                         "Install_Dir_Ver2",
                                         "/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe",
                                         "讯飞语音悬浮窗",
                                         "UIIFlyVoiceFrame",
                                         "iFlyVoice.exe",
                                         "讯飞输入法"}
            << 0x3f;
        QTest::newRow("XunFei, third generation")
            << 1 << true
            << QStringList{xunFei,       "Install_Dir_Ver2", "/iFly Info Tek/iFlyIME/3.0.1725/iFlyVoice.exe",
                           "语音悬浮窗", "BaseGui",          "iFlyVoice.exe",
                           "讯飞输入法"}
            << 0x3f;
        for (const bool third : {false, true}) {
            QTest::addRow("Sogou, %d", int(third))
                << 2 << third
                << QStringList{"HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion"
                               "\\Uninstall\\Sogou Input",
                               "InstallLocation",
                               "/SogouInput/Components/VoiceInput/1.0.0.170/VoiceInput.exe",
                               "搜狗输入法语音输入 ",
                               "CherryWindowClass",
                               "VoiceInput.exe",
                               "讯飞输入法"}
                << 0x3b;
        }
    }
    void builtInRows()
    {
        QFETCH(int, index);
        QFETCH(bool, third);
        QFETCH(int, key);
        const mevo::Asr3Row row = mevo::builtInAsr3Row(index, third);
        QTEST((QStringList{row.ASR3RegInstallPath, row.ASR3RegSearchValue, row.ASR3ExeInstallPath,
                           row.ASR3WindowName, row.ASR3WinClassName, row.ASR3ExeFileName, row.ASR3Name}),
              "texts");
        QCOMPARE(row.ASR3ShortCutKey, key);
        QVERIFY(row.ASR3DownWeb.isEmpty());
    }

    void rowOfTheService_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("key");
        const QString window = "讯飞语音悬浮窗";
        const QString path = "/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe";
        const auto row = [&](const char *name, const char *column, const QJsonValue &value) {
            return &(QTest::newRow(name) << QString(column) << value);
        };
        *row("window", "ASR3WindowName", "悬浮窗") << "悬浮窗"
                                                   << "iFlyVoice.exe" << path << 0x3f;
        *row("no window", "ASR3WindowName", "") << window << "iFlyVoice.exe" << path << 0x3f;
        *row("blank window", "ASR3WindowName", "  ") << window << "iFlyVoice.exe" << path << 0x3f;
        *row("null", "ASR3WindowName", QJsonValue()) << window << "iFlyVoice.exe" << path << 0x3f;
        *row("endless", "ASR3WindowName", QString(5000, 'w')) << window << "iFlyVoice.exe" << path << 0x3f;
        *row("file", "ASR3ExeFileName", "Voice") << window << "Voice" << path << 0x3f;
        *row("file in a folder", "ASR3ExeFileName", "..\\Voice") << window << "iFlyVoice.exe" << path << 0x3f;
        *row("path", "ASR3ExeInstallPath", "/a/b") << window << "iFlyVoice.exe"
                                                   << "/a/b" << 0x3f;
        *row("path that leaves", "ASR3ExeInstallPath", "/a/../../bin/sh")
            << window << "iFlyVoice.exe" << path << 0x3f;
        *row("key", "ASR3ShortCutKey", "66") << window << "iFlyVoice.exe" << path << 66;
        *row("key as a number", "ASR3ShortCutKey", 66) << window << "iFlyVoice.exe" << path << 66;
        *row("key 0", "ASR3ShortCutKey", "0") << window << "iFlyVoice.exe" << path << 0x3f;
        *row("key beyond the keyboard", "ASR3ShortCutKey", "300")
            << window << "iFlyVoice.exe" << path << 0x3f;
        *row("no key", "ASR3ShortCutKey", "F6") << window << "iFlyVoice.exe" << path << 0x3f;
    }
    void rowOfTheService()
    {
        QFETCH(QString, column);
        QFETCH(QJsonValue, value);
        QJsonObject columns{{"ASR3DownWeb", "http://a/b.exe"}, {"ASR3SetupPKGSize", "4294967296"}};
        columns.insert(column, value);
        const mevo::Asr3Row row = mevo::readAsr3Row(columns, mevo::builtInAsr3Row(1, false));
        QTEST(row.ASR3WindowName, "window");
        QTEST(row.ASR3ExeFileName, "file");
        QTEST(row.ASR3ExeInstallPath, "path");
        QTEST(row.ASR3ShortCutKey, "key");
        QCOMPARE(row.ASR3DownWeb, QString("http://a/b.exe"));
        QCOMPARE(row.ASR3SetupPKGSize, Q_INT64_C(4294967296));
    }

    void customMethods_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("description"); ///< key, modifiers, mode, window class
        QTest::addColumn<QString>("expected");        ///< modifiers, usage, hold, class; empty for none
        const QStringList none{"", "", "", ""};
        QTest::newRow("Sogou's") << "C:\\x\\VoiceInput.exe" << none << "0 3b tap ";
        QTest::newRow("XunFei's") << "/opt/iFlyVoice" << none << "0 3f tap ";
        QTest::newRow("Baidu's") << "/opt/SpeechInput.exe" << none << "1 0 tap  baidu";
        QTest::newRow("no path") << "" << QStringList{"F9", "", "", ""} << "";
        QTest::newRow("a folder") << "/opt/" << QStringList{"F9", "", "", ""} << "";
        QTest::newRow("another name") << "/opt/nerd-dictation" << none << "";
        QTest::newRow("a name that only contains one") << "/opt/MySpeechInput" << none << "";
        QTest::newRow("a known name keeps its rules")
            << "/opt/VoiceInput" << QStringList{"F9", "Alt", "hold", "Own"} << "0 3b tap ";
        QTest::newRow("described") << "/opt/talk" << QStringList{"F9", "", "", ""} << "0 42 hold ";
        QTest::newRow("tapped, with a window")
            << "/opt/talk" << QStringList{"f12", "ctrl + ALT", "Tap", " Talk "} << "5 45 tap Talk";
        QTest::newRow("beyond F12") << "/opt/talk" << QStringList{"F13", "", "hold", ""} << "0 68 hold ";
        QTest::newRow("F24") << "/opt/talk" << QStringList{"F24", "", "hold", ""} << "0 73 hold ";
        QTest::newRow("F25") << "/opt/talk" << QStringList{"F25", "", "hold", ""} << "";
        QTest::newRow("a usage") << "/opt/talk" << QStringList{"0x48", "Win,Shift", "tap", ""} << "a 48 tap ";
        QTest::newRow("a key of the table")
            << "/opt/talk" << QStringList{"pause", "", "tap", ""} << "0 48 tap ";
        QTest::newRow("a media key") << "/opt/talk" << QStringList{"mute", "", "tap", ""} << "";
        QTest::newRow("modifiers alone") << "/opt/talk" << QStringList{"", "Super", "", ""} << "8 0 hold ";
        QTest::newRow("unknown modifier") << "/opt/talk" << QStringList{"F9", "Hyper", "", ""} << "";
        QTest::newRow("unknown key") << "/opt/talk" << QStringList{"Any", "", "", ""} << "";
        QTest::newRow("unknown mode") << "/opt/talk" << QStringList{"F9", "", "press", ""} << "";
        QTest::newRow("no usage") << "/opt/talk" << QStringList{"0x0", "Ctrl", "", ""} << "";
        QTest::newRow("a usage of no key") << "/opt/talk" << QStringList{"0x1e0", "", "", ""} << "";
    }
    void customMethods()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, description);
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
        QTEST(text, "expected");
    }

    void steps_data()
    {
        QTest::addColumn<mevo::SetupFacts>("facts");
        QTest::addColumn<SetupStep>("step");
        // index, consent asked, must click, found, forced, offline wanted, installer here, has address
        using F = mevo::SetupFacts;
        QTest::newRow("never asked") << F{1, false, false, true, true, false, false, true}
                                     << SetupStep::AskConsent;
        QTest::newRow("refused before it could be asked")
            << F{1, false, true, true, true, false, false, true} << SetupStep::Ready;
        QTest::newRow("there") << F{2, true, false, true, false, false, false, false} << SetupStep::Ready;
        QTest::newRow("there, on a click")
            << F{2, true, true, true, false, false, false, false} << SetupStep::Ready;
        QTest::newRow("not there, not forced")
            << F{1, true, false, false, false, false, false, true} << SetupStep::FallBack;
        QTest::newRow("not there, forced")
            << F{1, true, false, false, true, false, false, true} << SetupStep::OfferDownload;
        QTest::newRow("refused, forced")
            << F{2, true, true, false, true, false, false, true} << SetupStep::OfferDownload;
        QTest::newRow("nowhere to be had")
            << F{2, true, false, false, true, false, false, false} << SetupStep::NothingToHave;
        QTest::newRow("installer here")
            << F{1, true, false, false, false, true, true, false} << SetupStep::RunInstaller;
        QTest::newRow("installer here, online is enough")
            << F{1, true, false, false, false, false, true, false} << SetupStep::FallBack;
        QTest::newRow("installer here, refused")
            << F{1, true, true, false, false, true, true, false} << SetupStep::FallBack;
        QTest::newRow("installer of the other one")
            << F{2, true, false, false, true, true, true, true} << SetupStep::OfferDownload;
        QTest::newRow("installer not needed")
            << F{1, true, false, true, false, true, true, false} << SetupStep::Ready;
        QTest::newRow("custom, not there")
            << F{3, true, false, false, true, false, false, true} << SetupStep::OfferDownload;
    }
    void steps()
    {
        QFETCH(mevo::SetupFacts, facts);
        QFETCH(SetupStep, step);
        QVERIFY(mevo::nextSetupStep(facts) == step);
    }

    void tables_data()
    {
        QTest::addColumn<bool>("installed");
        QTest::addColumn<bool>("forced");
        QTest::addColumn<bool>("offline");
        QTest::addColumn<QString>("table");
        QTest::newRow("none") << false << false << false << "asr3setting";
        QTest::newRow("installed") << true << false << false << "asr3setting_usexunfeiinputmore30";
        QTest::newRow("forced") << false << true << false << "asr3setting_usexunfeiinputmore30";
        QTest::newRow("offline") << false << false << true << "asr3setting_usexunfeiinputmore30";
    }
    void tables()
    {
        QFETCH(bool, installed);
        QFETCH(bool, forced);
        QFETCH(bool, offline);
        MainState state;
        state.XFVM3 = installed;
        state.ForceUseXFMore3V = forced;
        state.OnlyUseXunFeiOfflineASR = offline;
        QTEST(mevo::asr3Table(mevo::wantsThirdGeneration(state)), "table");
    }

    void rowInForce_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("third");
        QTest::addColumn<bool>("online");
        QTest::addColumn<bool>("hold");
        QTest::addColumn<QString>("window");
        QTest::newRow("XunFei") << 1 << false << true << true << "window";
        QTest::newRow("third generation") << 1 << true << true << true << "window";
        QTest::newRow("third generation, offline") << 1 << true << false << true << "语音悬浮窗";
        QTest::newRow("Sogou, offline") << 2 << true << false << false << "window";
    }
    void rowInForce()
    {
        QFETCH(int, index);
        QFETCH(bool, third);
        QFETCH(bool, online);
        MainState state;
        state.XFVM3 = third;
        state.IsOnline = online;
        state.ASR3HoldToTalk = index == 2; // of the method before
        mevo::Asr3Row row;
        row.ASR3WindowName = "window";
        row.ASR3WinClassName = "class";
        row.ASR3ShortCutKey = 7;
        mevo::applyAsr3Row(state, index, row);
        QTEST(state.ASR3HoldToTalk, "hold");
        QTEST(state.ASR3WindowName, "window");
        QCOMPARE(state.ASR3ShortCutKey, 7);
    }

    void xunFeiInstalled_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<int>("generation"); ///< negative where the row is of the other table
        QTest::addColumn<bool>("there");
        QTest::addColumn<bool>("online");
        QTest::addColumn<bool>("third");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("window");
        const QString row = "行的窗口"; // the service's
        const QString offline = "语音悬浮窗";
        QTest::newRow("second") << "/x" << 2 << true << true << false << "/x/iFlyVoice" << row;
        QTest::newRow("third") << "/x" << 3 << true << true << true << "/x/iFlyVoice" << row;
        QTest::newRow("third, offline") << "/x" << 3 << true << false << true << "/x/iFlyVoice" << offline;
        QTest::newRow("second, offline") << "/x" << 2 << true << false << false << "/x/iFlyVoice" << row;
        QTest::newRow("gone") << "/x" << 3 << false << true << false << "own" << row;
        QTest::newRow("no folder told") << "" << 3 << false << true << true << "own" << row;
        QTest::newRow("second, the row is of the third")
            << "/x" << -2 << true << true << false << "/x/iFlyVoice"
            << "讯飞语音悬浮窗";
        QTest::newRow("third, the row is of the second")
            << "/x" << -3 << true << true << true << "/x/iFlyVoice"
            << "语音悬浮窗";
    }
    void xunFeiInstalled()
    {
        QFETCH(QString, folder);
        QFETCH(int, generation);
        QFETCH(bool, there);
        QFETCH(bool, online);
        MainState state;
        state.XFVM3 = !there;
        state.LocalASR3XunFeiInstallPath = "own";
        const bool otherRow = generation < 0;
        generation = qAbs(generation);
        mevo::Asr3Row row;
        row.ASR3WindowName = "行的窗口";
        QFETCH(bool, third);
        row.thirdGeneration = third != otherRow;
        const QString program = there ? folder + "/iFlyVoice" : QString();
        mevo::applyXunFeiInstallation(state, {folder, generation}, program, online, &row);
        QTEST(state.XFVM3, "third");
        QTEST(state.LocalASR3XunFeiInstallPath, "path");
        QTEST(state.ASR3WindowName, "window");
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
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "http://a.b/c/iFlyIME_Setup.exe"
                               << "iFlyIME_Setup.exe";
        QTest::newRow("query") << "https://a.b/c/x.run?file=/etc/y"
                               << "x.run";
        QTest::newRow("blanks and Chinese") << "http://a.b/%E8%AE%AF%E9%A3%9E%20voice.deb"
                                            << "讯飞 voice.deb";
        QTest::newRow("no name") << "http://a.b/c/"
                                 << "";
        QTest::newRow("no path") << "http://a.b"
                                 << "";
        QTest::newRow("up") << "http://a.b/c/%2E%2E"
                            << "";
        QTest::newRow("a folder in the name") << "http://a.b/c/..%2F..%2Fbin%2Fsh"
                                              << "sh";
        QTest::newRow("a Windows folder in the name") << "http://a.b/c/..%5Cx.exe"
                                                      << "x.exe";
        QTest::newRow("hidden") << "http://a.b/.bashrc"
                                << "";
        QTest::newRow("a line end in the name") << "http://a.b/x%0Ay"
                                                << "";
        QTest::newRow("too long") << "http://a.b/" + QString(300, 'x') << "";
        QTest::newRow("a file") << "file:///etc/passwd"
                                << "";
        QTest::newRow("no address") << "setup.exe"
                                    << "";
        QTest::newRow("empty") << ""
                               << "";
    }
    void addresses()
    {
        QFETCH(QString, address);
        const QUrl url = mevo::installerUrl(address);
        QTEST(mevo::installerFileName(url), "name");
        QCOMPARE(url.isEmpty(), mevo::installerFileName(url).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestInputMethods)
#include "tst_input_methods.moc"
