#include "base/SettingsFile.h"
#include "state/SettingsTable.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QtTest>

namespace {

const ScratchHome home;
const QString fileName = QStringLiteral("MEVOSetting.ini");

template <typename... Visitors>
struct Overloaded : Visitors...
{
    using Visitors::operator()...;
};
template <typename... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

/// The member of a row as text, whatever its type.
QString memberText(const mevo::SettingRow &row, const MainState &state)
{
    return std::visit(Overloaded{[&](QString MainState::*member) { return state.*member; },
                                 [&](QStringList MainState::*member) { return (state.*member).join(u';'); },
                                 [&](auto member) {
                                     const int value = state.*member;
                                     return QString::number(value);
                                 }},
                      row.member);
}

bool isFlag(const mevo::SettingRow &row)
{
    return std::holds_alternative<bool MainState::*>(row.member) ||
           std::holds_alternative<std::atomic<bool> MainState::*>(row.member);
}

bool isText(const mevo::SettingRow &row)
{
    return std::holds_alternative<QString MainState::*>(row.member);
}

bool isList(const mevo::SettingRow &row)
{
    return std::holds_alternative<QStringList MainState::*>(row.member);
}

/// A value that differs from every default.
QString sample(const mevo::SettingRow &row)
{
    return isFlag(row)                  ? QStringLiteral("1")
           : isText(row) || isList(row) ? QStringLiteral("甲;乙")
                                        : QStringLiteral("7");
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { home.remove(fileName); }

    void everyRowRoundTrips_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < mevo::settingRows().size(); ++i) {
            QTest::newRow(mevo::settingRows()[i].key) << int(i);
        }
    }

    void everyRowRoundTrips()
    {
        QFETCH(int, row);
        const mevo::SettingRow &setting = mevo::settingRows()[static_cast<std::size_t>(row)];
        mevo::SettingsFile().setValue(QLatin1String(setting.key), sample(setting));
        MainState state;
        const mevo::SettingsFile file;
        mevo::loadSetting(setting, file, state);
        QCOMPARE(memberText(setting, state), sample(setting));
    }

    void absentKeys()
    {
        const mevo::SettingsFile file;
        for (const mevo::SettingRow &row : mevo::settingRows()) {
            MainState state;
            const QString before = memberText(row, state);
            mevo::loadSetting(row, file, state);
            const bool keeps = row.sticky || row.kind == mevo::SettingKind::Positive;
            const QString empty = isText(row) || isList(row) ? QString() : QStringLiteral("0");
            QVERIFY2(memberText(row, state) == (keeps ? before : empty), row.key);
        }
    }

    void stickyPositiveAndListRules()
    {
        home.write(fileName,
                   "[MainSetting]\nVoiceSend=false\nAsr2ScreenIntervalTime=-5\nHW2ScreenIntervalTime=0\n"
                   "Juhao2Douhao=false\nMouseCurrentWheelSpeed=2\nOutput2Tranditional=2\n");
        MainState state;
        state.VoiceSend = true;
        state.Asr2ScreenIntervalTime = 40;
        state.HW2ScreenIntervalTime = 30;
        {
            mevo::SettingsFile file;
            mevo::loadSettings(state, file, true);
        }
        QVERIFY(state.VoiceSend);
        QCOMPARE(state.Asr2ScreenIntervalTime.load(), 40);
        QCOMPARE(state.HW2ScreenIntervalTime, 30);
        QVERIFY(!state.Juhao2Douhao);
        QCOMPARE(state.MouseCurrentWheelSpeed.load(), 1); // read under its other spelling only
        QVERIFY(state.Output2Tranditional);
        QVERIFY(state.CmdFlags_Contents_Driect.isEmpty());
        QCOMPARE(state.AutoRunApp, QStringLiteral("1"));
        const QByteArray written = home.read(fileName);
        QVERIFY(written.contains("CurrentVersion=107") && written.contains("AutoRunApp=1"));
    }

    void handWrittenTextsComeBackWhole()
    {
        home.write(fileName,
                   "[MainSetting]\nSearchFlags_Contents_Driect=搜索;查, 一下;;\nSupportContact=甲, 乙\n"
                   "UserManual=\"a,b;c\"\r\nWebsite=http://h/?a=1,2\r\nSupportEmail=\"c,d\\\\\"\n"
                   "Send2ScreenMethod=2 ; 0, 1 or 2\n; a remark, with = and ;\nSearchEngines_Bing=1");
        mevo::SettingsFile().setValue(QStringLiteral("EnableP3Keyboard"), 1); // a write loses nothing either
        MainState state;
        const mevo::SettingsFile file;
        for (const mevo::SettingRow &row : mevo::settingRows()) {
            mevo::loadSetting(row, file, state);
        }
        QCOMPARE(state.SearchFlags_Contents_Driect.join(u'|'), QStringLiteral("搜索|查, 一下||"));
        QCOMPARE(state.SupportContact, QStringLiteral("甲, 乙"));
        QCOMPARE(state.UserManual, QStringLiteral("a,b;c"));
        QCOMPARE(state.Website, QStringLiteral("http://h/?a=1,2"));
        QCOMPARE(state.SupportEmail, QStringLiteral("c,d\\"));
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
            file.setValue(QStringLiteral("PureXunFeiOfflineVersion"), true);
            mevo::loadEarlySettings(state, file, true, QStringLiteral("/opt/a\\b"));
        }
        QVERIFY(!state.PureXunFeiOfflineVersion);
        QCOMPARE(state.XFPKGName, QStringLiteral("iFlyIME_Setup3.0.1727.exe"));
        QCOMPARE(mevo::SettingsFile().value(QStringLiteral("EXEPath")).toString(),
                 QStringLiteral("/opt/a\\\\b"));
    }

    void aListEndsAtItsFirstZero()
    {
        mevo::SettingsFile().setValue(QStringLiteral("CmdFlags_Contents_Driect"),
                                      QStringLiteral(";甲;") + QChar(0) + QStringLiteral("乙;丙"));
        MainState state;
        mevo::SettingsFile file;
        mevo::loadSettings(state, file, false);
        QCOMPARE(state.CmdFlags_Contents_Driect.join(u'|'), QStringLiteral("|甲|"));
        QCOMPARE(state.AutoRunApp, QString());
    }

    void proxy_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<bool>("used");
        QTest::addColumn<int>("port");
        QTest::newRow("nothing set") << QByteArray("UseNetworkProxy=true") << false << -1;
        QTest::newRow("blanks") << QByteArray("UseNetworkProxy=true\nNetworkProxy_IP=\"  \"") << false << -1;
        QTest::newRow("host") << QByteArray(
                                     "UseNetworkProxy=true\nNetworkProxy_IP=\" h \"\nNetworkProxy_Port=80")
                              << true << 80;
        QTest::newRow("off") << QByteArray("NetworkProxy_IP=h") << false << -1;
    }

    void proxy()
    {
        QFETCH(QByteArray, settings);
        home.write(fileName, "[NetworkProxy]\n" + settings + '\n');
        MainState state;
        mevo::loadProxySettings(state, mevo::SettingsFile(QStringLiteral("NetworkProxy")));
        QTEST(state.UseNetworkProxy, "used");
        QTEST(state.NetworkProxy_Port, "port");
        QVERIFY(state.NetworkProxy_IP == state.NetworkProxy_IP.trimmed());
    }

    void nothingIsLostByABrokenFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("no INI") << QByteArray("MainSetting]\nx = = y\n[[[\n\x01\x02");
        QTest::newRow("half a file") << QByteArray("[MainSetting]\nUserManual=\"abc");
        QTest::newRow("half a character") << QByteArray("[MainSetting]\nSupportContact=\xe7\x94");
        QTest::newRow("zeros") << QByteArray(64, '\0');
        QTest::newRow("other encoding") << QByteArray("[MainSetting]\nSupportContact=\xc4\xe3\xba\xc3\n");
    }

    void nothingIsLostByABrokenFile()
    {
        QFETCH(QByteArray, content);
        home.write(fileName, content);
        home.remove(fileName + QStringLiteral(".broken"));
        QVERIFY(mevo::SettingsFile().value(QStringLiteral("Send2ScreenMethod")).toInt() == 0);
        mevo::SettingsFile().setValue(QStringLiteral("Send2ScreenMethod"), 2);
        QCOMPARE(mevo::SettingsFile().value(QStringLiteral("Send2ScreenMethod")).toInt(), 2);
        const QByteArray kept = home.read(fileName + QStringLiteral(".broken"));
        QCOMPARE(kept, content);
    }

    void aSecondBrokenFileKeepsTheFirstOnesCopy()
    {
        home.remove(fileName + QStringLiteral(".broken"));
        home.remove(fileName + QStringLiteral(".broken2"));
        for (const QByteArray &content : {QByteArray("first\n"), QByteArray("the second\n")}) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read whole")));
            home.write(fileName, content);
            mevo::SettingsFile().setValue(QStringLiteral("Send2ScreenMethod"), 2);
        }
        QCOMPARE(home.read(fileName + QStringLiteral(".broken")), QByteArray("first\n"));
        QCOMPARE(home.read(fileName + QStringLiteral(".broken2")), QByteArray("the second\n"));
    }

    void aFileThatCannotBeWrittenIsSaid()
    {
        QVERIFY(QDir().mkpath(home.path(QStringLiteral("folder.ini"))));
        const QString path = home.path(QStringLiteral("folder.ini"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("folder.ini")));
        mevo::SettingsFile file(QStringLiteral("MainSetting"), path);
        file.setValue(QStringLiteral("a"), 1);
        QVERIFY(!file.save());
        QVERIFY(QDir(path).exists());
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
