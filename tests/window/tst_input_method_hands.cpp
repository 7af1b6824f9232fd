#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "service/WebCipher.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "ui/Ask.h"
#include "window/MainWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDesktopServices>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QMessageBox>
#include <QProgressDialog>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const ScratchHome home;
const WebCipher cipher;

const QString consentTitle = QStringLiteral("启动第三方语音输入");
const QString xunFeiRow = QStringLiteral("使用讯飞语音输入法");
const QString sogouRow = QStringLiteral("使用搜狗语音输入法");
const QString customRow = QStringLiteral("使用自定义语音输入法");

/// A program with a receiver, a backend that has rows of input methods, and a home of its own with the input
/// methods' files.
class Program
{
public:
    explicit Program(const QByteArray &settings = {})
    {
        // Nothing of the computer's own is found, and nothing of it is written.
        qputenv("XDG_DATA_HOME", user.filePath(QStringLiteral("share")).toUtf8());
        qputenv("XDG_DATA_DIRS", user.filePath(QStringLiteral("none")).toUtf8());
        m_path = qgetenv("PATH");
        qputenv("PATH", user.filePath(QStringLiteral("bin")).toUtf8());
        server.answering = [this](const ScriptedRequest &request) { return answerTo(request); };
        const QByteArray host = server.host().toLatin1();
        home.write(QStringLiteral("MEVOEndpoints.ini"),
                   "[Endpoints]\nBackendUrl=\"http://" + host + "/main?\"\nBackendUrlBk1=\"http://" + host +
                       "/main?\"\nBackendUrlBk2=\"http://" + host +
                       "/main?\"\nBaiduSpeechHost=127.0.0.1:9\nBaiduTokenHost=127.0.0.1:9\n");
        home.write(
            QStringLiteral("MEVOSetting.ini"),
            "[MainSetting]\nAutoRunApp=1\nBaiDuNoStreamApi=1\nUseTXASRApi=0\nBaiDuCurrentVoiceType=1537\n"
            "TXCurrentVoiceType=16k_zh\n" +
                settings);
        fake.hid->plug();
        fake.hid->identityReply = QByteArray::fromHex("010c5713000100020000000000000000");
        mevo::askHook = [this](const mevo::Question &question) {
            questions.append(question);
            if (onQuestion) {
                onQuestion();
            }
            return answers.value(question.title + QLatin1Char('|') + question.buttons.value(0), -1);
        };
    }
    ~Program()
    {
        window.reset();
        mevo::askHook = nullptr;
        qputenv("PATH", m_path);
        home.remove(QStringLiteral("setup.run"));
        QTimer::singleShot(0, qApp, &QCoreApplication::quit); // an exit has told the application to quit
        QCoreApplication::exec();
    }
    Q_DISABLE_COPY(Program)

    MainWindow &start()
    {
        MainWindow::startWaitMs = 30000; // a loaded machine is no slow service
        window = std::make_unique<MainWindow>(fake.platform);
        return *window;
    }
    /// What the user presses in the box with this title and first button.
    void answer(const QString &title, const QString &firstButton, int button)
    {
        answers.insert(title + QLatin1Char('|') + firstButton, button);
    }
    void agree(bool agrees = true) { answer(consentTitle, QStringLiteral("同意"), agrees ? 0 : 1); }
    int asked(const QString &firstButton) const
    {
        return int(std::count_if(questions.begin(), questions.end(), [&](const mevo::Question &question) {
            return question.buttons.value(0) == firstButton;
        }));
    }
    /// Boxes are asked from the event loop, and requests are answered by it.
    void settle() const
    {
        QElapsedTimer quiet;
        int before = -1;
        for (quiet.start(); quiet.elapsed() < 60;) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            const int now = int(statements.size() + questions.size());
            if (now != before) {
                before = now;
                quiet.restart();
            }
        }
    }
    void choose(const QString &row) const
    {
        for (QAction *action : window->languageMenu()->actions()) {
            if (action->text().startsWith(row)) {
                action->trigger();
                settle();
                return;
            }
        }
        QFAIL(qPrintable(QStringLiteral("no row ") + row));
    }
    bool isChecked(const QString &row) const
    {
        const auto rows = window->languageMenu()->actions();
        return std::any_of(rows.begin(), rows.end(), [&](const QAction *action) {
            return action->text().startsWith(row) && action->isChecked();
        });
    }
    /// A file of the user's, made with its folders.
    QString file(const QString &name, const QByteArray &content = "#!/bin/sh\n") const
    {
        const QString path = user.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile made(path);
        made.open(QIODevice::WriteOnly);
        made.write(content);
        made.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    QByteArray contentOf(const QString &name) const
    {
        QFile read(user.filePath(name));
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
    }
    QStringList told(const QString &part) const { return statements.filter(part); }
    static QString setting(const char *key)
    {
        return mevo::SettingsFile().value(QLatin1String(key)).toString();
    }

    FakePlatform fake;
    ScriptedHttp server;
    QTemporaryDir user;
    std::unique_ptr<MainWindow> window;
    QList<mevo::Question> questions;
    std::function<void()> onQuestion;
    QStringList statements;
    QJsonObject methodRow; ///< of the table of input methods; empty for none
    QJsonObject record{{QStringLiteral("IPRecord"), QStringLiteral("192.0.2.9")}};
    QByteArray installer; ///< what "/files/setup.run" is
    QString held;         ///< a statement with this in it waits for server.answerHeld()
    std::function<void()> onHeld;

private:
    ScriptedAnswer answerTo(const ScriptedRequest &request)
    {
        if (request.target.startsWith("/files/")) {
            return installer.isNull() ? ScriptedAnswer::silence() : ScriptedAnswer::body(installer);
        }
        const QByteArray rest = request.target.mid(request.target.indexOf("___") + 3);
        const QString statement = cipher.DecryptString(QString::fromLatin1(rest.right(rest.size() & ~31)));
        statements.append(statement);
        QJsonObject reply{{QStringLiteral("items"), 1}, {QStringLiteral("result"), QStringLiteral("107")}};
        if (statement.contains(QLatin1String("asr3setting"))) {
            reply = {{QStringLiteral("items"), methodRow.isEmpty() ? 0 : 1}};
            if (!methodRow.isEmpty()) {
                reply.insert(QStringLiteral("result0"), methodRow);
            }
        } else if (statement.contains(QLatin1String("select * from mevodb.device_serialid"))) {
            reply.insert(QStringLiteral("result0"), record);
        }
        const QString json = QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact));
        const QByteArray hex = cipher.EncryptString(json).toLatin1();
        const ScriptedAnswer answer =
            ScriptedAnswer::body(QByteArray::number(hex.size()).rightJustified(5, '0') + hex);
        if (!held.isEmpty() && statement.contains(held)) {
            held.clear();
            if (onHeld) {
                QTimer::singleShot(0, &server, onHeld);
            }
            return ScriptedAnswer::late(answer);
        }
        return answer;
    }

    QByteArray m_path;
    QHash<QString, int> answers;
};

const QString xunFeiFolder = QStringLiteral("localLow/iFly Info Tek/iFlyIME/");
const QByteArray withoutKey = "<c><start_end>enable=0</start_end></c>";

} // namespace

class TestInputMethodHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMethodThatIsThereIsInForce_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("hold");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("window");
        QTest::newRow("XunFei") << xunFeiRow << "bin/iFlyVoice" << 1 << true << 0x43
                                << QStringLiteral("讯飞语音悬浮窗");
        QTest::newRow("Sogou") << sogouRow << "bin/VoiceInput" << 2 << false << 0x3b
                               << QStringLiteral("搜狗输入法语音输入 ");
    }
    void aMethodThatIsThereIsInForce()
    {
        QFETCH(QString, row);
        QFETCH(QString, program);
        QFETCH(int, index);
        Program p;
        p.agree();
        const QString path = p.file(program);
        const QByteArray ownKey = "<c><start_end>enable=1;keyStr=F10</start_end></c>";
        p.file(xunFeiFolder + QStringLiteral("config.xml"), ownKey);
        MainWindow &window = p.start();
        p.settle();
        QVERIFY(!window.ThirdPartyActive && p.questions.isEmpty());
        window.RunAsAdmin = p.fake.elevation->marked = true;
        p.choose(row);
        QVERIFY(window.ThirdPartyActive && window.LocalEnableASR3);
        QVERIFY(!window.RunAsAdmin && !p.fake.elevation->marked);
        QCOMPARE(window.LocalUseASR3Index, index);
        QTEST(window.ASR3HoldToTalk, "hold");
        QTEST(window.ASR3ShortCutKey, "key");
        QTEST(window.ASR3WindowName, "window");
        QCOMPARE(index == 1 ? window.LocalASR3XunFeiInstallPath : window.LocalASR3SougoInstallPath, path);
        QVERIFY(p.isChecked(row));
        QCOMPARE(p.asked(QStringLiteral("同意")), 1);
        QCOMPARE(p.contentOf(xunFeiFolder + QStringLiteral("config.xml")), ownKey);
        QCOMPARE(Program::setting("LocalEnableASR3") + Program::setting("LocalUseASR3Index"),
                 QStringLiteral("1%1").arg(index));
        QCOMPARE(p.told(QStringLiteral("set EnableASR3=1,MustClickRunASR3=0,UseASR3Index=%1 where "
                                       "DongleID='02-01-001357'")
                            .arg(index))
                     .size(),
                 1);
        QCOMPARE(p.told(QStringLiteral("set MustClickRunASR3=0 where DongleID='02-01-001357'")).size(), 1);
        QVERIFY(window.recorder()->UseTXASRApi && !window.recorder()->BaiDuNoStreamApi); // the idle engine

        p.choose(QStringLiteral("普通话(腾讯版)"));
        QVERIFY(!window.ThirdPartyActive && !window.LocalEnableASR3 && !window.EnableASR3);
        QCOMPARE(p.told(QStringLiteral("set EnableASR3=0 where DongleID='02-01-001357'")).size(), 1);
        p.choose(row); // the question does not come twice
        QVERIFY(window.ThirdPartyActive);
        QCOMPARE(p.asked(QStringLiteral("同意")), 1);
    }

    void aChoiceOfTheSettings_data()
    {
        QTest::addColumn<bool>("there");
        QTest::addColumn<bool>("forced");
        QTest::addColumn<QString>("told");
        QTest::newRow("is there") << true << false << "EnableASR3=1,MustClickRunASR3=0 where";
        QTest::newRow("is not there") << false << false << "EnableASR3=0,MustClickRunASR3=0 where";
        QTest::newRow("is not fetched")
            << false << true << "EnableASR3=0,MustClickRunASR3=0,UseASR3Index=-1 where";
    }
    /// The record hears of it when the user has answered, and an engine is left where there is no method.
    void aChoiceOfTheSettings()
    {
        QFETCH(bool, there);
        QFETCH(bool, forced);
        Program p(forced ? "ForceUseASR3=1\n" : "ForceUseASR3=0\n");
        p.methodRow = {
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        p.agree();
        p.answer(QStringLiteral("提示"), QStringLiteral("下载"), 1);
        if (there) {
            p.file(QStringLiteral("bin/iFlyVoice"));
        }
        MainWindow &window = p.start();
        p.settle();
        window.ForceUseASR3 = forced;
        window.pushBuutton_Setting_clicked();
        p.settle();
        p.statements.clear();
        p.record.insert(QStringLiteral("EnableASR3"), QStringLiteral("0"));
        p.onQuestion = [&] {
            QVERIFY(window.LocalEnableASR3 && p.told(QStringLiteral("EnableASR3=")).isEmpty());
            window.ReadServerInfo(); // the record, which does not know of the choice, does not undo it
            QVERIFY(window.LocalEnableASR3 && p.told(QStringLiteral("EnableASR3=")).isEmpty());
        };
        auto *choice =
            window.findChild<QAbstractButton *>(QStringLiteral("radioButton_EnableThirdPartyVoiceInput"));
        QVERIFY(choice != nullptr);
        choice->click();
        p.settle();
        QCOMPARE(p.asked(QStringLiteral("同意")), 1);
        QCOMPARE(p.asked(QStringLiteral("下载")), int(forced));
        QCOMPARE(window.ThirdPartyActive, there);
        QCOMPARE(window.EnableASR3, there);
        QCOMPARE(window.UseASR3Index, forced && !there ? -1 : 1);
        QCOMPARE(window.recorder()->BaiDuNoStreamApi, !there);
        QCOMPARE(Program::setting("BaiDuNoStreamApi"), QString::number(int(!there)));
        QCOMPARE(Program::setting("LocalEnableASR3"), QString::number(int(there)));
        QFETCH(QString, told);
        QCOMPARE(p.told(QStringLiteral("set ") + told).size(), 1);
        QCOMPARE(p.told(QStringLiteral("EnableASR3=")).size(), 1);
    }

    /// As the menu does it: the window of the method that goes is closed, the one of the method that comes is
    /// brought up.
    void theSettingsChooseAsTheMenuDoes()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file(QStringLiteral("bin/VoiceInput"));
        p.file(QStringLiteral("prog/iFlyVoice.exe"));
        p.file(xunFeiFolder + QStringLiteral("iflyImeCfg.xml"),
               "<c><installPath_ver2>" + p.user.filePath(QStringLiteral("prog")).toUtf8() +
                   "</installPath_ver2><ver>3.0.1727</ver></c>");
        p.file(xunFeiFolder + QStringLiteral("config.xml"),
               "<c><start_end>enable=1;keyStr=F6</start_end></c>");
        MainWindow &window = p.start();
        p.choose(sogouRow);
        QVERIFY(window.ThirdPartyActive);
        window.ThirdPartyWindowOpen = true;
        window.BaiduQuotaHit = true;
        p.fake.windowSystem->byTitle.insert(window.ASR3WindowName, 7);
        p.fake.log.clear();
        window.pushBuutton_Setting_clicked();
        window.findChild<QComboBox *>(QStringLiteral("comboBox_SelectASR3"))->setCurrentIndex(0);
        QVERIFY(p.fake.log.has(QStringLiteral("close window 7")) && !window.BaiduQuotaHit);
        p.settle();
        QVERIFY(window.ThirdPartyActive && window.LocalUseASR3Index == 1 && window.UseASR3Index == 1);
        QCOMPARE(p.fake.log.calls(QStringLiteral("open to type")).size(), 1);
    }

    /// A window that was found as another method's says nothing about XunFei's; its name is the service's,
    /// but for a time without a network.
    void theWindowOfXunFei()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file(QStringLiteral("bin/VoiceInput"));
        p.file(QStringLiteral("prog/iFlyVoice.exe"));
        p.file(xunFeiFolder + QStringLiteral("iflyImeCfg.xml"),
               "<c><installPath_ver2>" + p.user.filePath(QStringLiteral("prog")).toUtf8() +
                   "</installPath_ver2><ver>3.0.1727</ver></c>");
        MainWindow &window = p.start();
        p.choose(sogouRow);
        p.fake.windowSystem->byTitle.insert(window.ASR3WindowName, 7); // the user's own
        p.methodRow = {{QStringLiteral("ASR3WindowName"), QStringLiteral("某某窗")}};
        p.choose(xunFeiRow);
        QCOMPARE(p.fake.log.calls(QStringLiteral("open to type")).size(), 1);
        QCOMPARE(window.ASR3WindowName, QStringLiteral("某某窗"));
        window.IsOnline = false;
        window.ReadXunFeiIme();
        QCOMPARE(window.ASR3WindowName, QStringLiteral("语音悬浮窗"));
        window.IsOnline = true;
        window.ReadXunFeiIme();
        QCOMPARE(window.ASR3WindowName, QStringLiteral("某某窗"));
    }

    /// Another generation is installed while the service is asked for the row of the one before: that row
    /// comes too late.
    void aLateRowOfAnotherGeneration()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file(QStringLiteral("prog/iFlyVoice.exe"));
        const auto install = [&p](const QByteArray &version) {
            p.file(xunFeiFolder + QStringLiteral("iflyImeCfg.xml"),
                   "<c><installPath_ver2>" + p.user.filePath(QStringLiteral("prog")).toUtf8() +
                       "</installPath_ver2><ver>" + version + "</ver></c>");
        };
        install("2.1.1708");
        MainWindow &window = p.start();
        p.settle();
        p.methodRow = {{QStringLiteral("ASR3WindowName"), QStringLiteral("旧窗")}};
        p.held = QStringLiteral("asr3setting where");
        p.onHeld = [&] {
            install("3.0.1727");
            window.ReadXunFeiIme();
            p.methodRow[QStringLiteral("ASR3WindowName")] = QStringLiteral("新窗");
            p.server.answerHeld();
        };
        p.choose(xunFeiRow);
        QTRY_VERIFY(window.ThirdPartyActive);
        QCOMPARE(window.ASR3WindowName, QStringLiteral("新窗"));
        QCOMPARE(p.told(QStringLiteral("asr3setting_usexunfeiinputmore30 where ASR3Index=1")).size(), 1);
        // What was asked for before says nothing about a generation that is found afterwards.
        install("2.1.1708");
        window.ReadXunFeiIme();
        QCOMPARE(window.ASR3WindowName, QStringLiteral("讯飞语音悬浮窗"));
    }

    /// The latest choice of the user's is the one that the backend hears, however each was made.
    void theLatestChoiceIsTold()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file(QStringLiteral("bin/VoiceInput"));
        MainWindow &window = p.start();
        p.settle();
        window.IsOnline = false; // nobody hears
        p.choose(sogouRow);
        QCOMPARE(Program::setting("RecordChoicesUntold"),
                 QStringLiteral("EnableASR3=1;MustClickRunASR3=0;UseASR3Index=2"));
        p.choose(QStringLiteral("普通话(腾讯版)"));
        QCOMPARE(Program::setting("RecordChoicesUntold"),
                 QStringLiteral("EnableASR3=0;MustClickRunASR3=0;UseASR3Index=2"));
        p.choose(sogouRow);
        p.statements.clear();
        p.record.insert(QStringLiteral("EnableASR3"), QStringLiteral("0"));
        window.IsOnline = true;
        window.ReadServerInfo();
        QCOMPARE(p.statements.value(0),
                 QStringLiteral("update mevodb.device_serialid set EnableASR3=1,MustClickRunASR3=0,"
                                "UseASR3Index=2 where DongleID='02-01-001357'"));
        QCOMPARE(p.told(QStringLiteral("UseTXAPIPara")).size(), 0); // an engine no longer counts
        QCOMPARE(Program::setting("RecordChoicesUntold") + Program::setting("EngineChoiceUntold"),
                 QStringLiteral("0"));
    }

    /// Without a receiver there is no record that hears a choice: the one that comes does.
    void aChoiceWithoutAReceiver()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file(QStringLiteral("bin/VoiceInput"));
        MainWindow &window = p.start();
        p.settle();
        const QString identity = window.DongleID;
        window.DongleID.clear();
        p.statements.clear();
        p.choose(sogouRow);
        QVERIFY(window.ThirdPartyActive && p.told(QStringLiteral("DongleID")).isEmpty());
        p.choose(QStringLiteral("普通话(腾讯版)"));
        QVERIFY(p.told(QStringLiteral("DongleID")).isEmpty());
        QCOMPARE(Program::setting("EngineChoiceUntold"), QStringLiteral("1"));
        window.DongleID = identity;
        window.ReadServerInfo();
        QCOMPARE(p.told(QStringLiteral("set EnableASR3=0,MustClickRunASR3=0,UseASR3Index=2")).size(), 1);
        QCOMPARE(p.told(QStringLiteral("UseTXAPIPara= '1'")).size(), 1);
    }

    /// The row of the method that was set up last is not that of another.
    void anotherMethodIsFetchedByItsOwnRow()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.methodRow = {
            {QStringLiteral("ASR3Name"), QStringLiteral("某某")},
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        p.file(QStringLiteral("bin/VoiceInput"));
        MainWindow &window = p.start();
        p.choose(sogouRow);
        p.choose(QStringLiteral("普通话(腾讯版)"));
        window.LocalUseASR3Index = 1; // chosen since, and not set up
        p.methodRow[QStringLiteral("ASR3Name")] = QStringLiteral("另一个");
        p.statements.clear();
        window.DownloadInputMethod();
        QCOMPARE(p.told(QStringLiteral("asr3setting where ASR3Index=1")).size(), 1);
        QTRY_VERIFY(window.findChild<QProgressDialog *>() != nullptr);
        QCOMPARE(window.findChild<QProgressDialog *>()->labelText(),
                 QStringLiteral("正在下载 另一个 过程中，请稍候......"));
        QCOMPARE(window.ASR3Name, QStringLiteral("某某")); // of messages about the one that was set up
    }

    /// The button of the settings, while no custom program is named.
    void aCustomMethodIsFetchedWithoutAPath()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.installer = "#!/bin/sh\n";
        MainWindow &window = p.start();
        window.LocalUseASR3Index = 3;
        window.DownloadInputMethod();
        QCOMPARE(p.fake.log.calls(QStringLiteral("message 该语音输入法没有可下载的安装程序！")).size(), 1);
        p.methodRow = {
            {QStringLiteral("ASR3ExeFileName"), QStringLiteral("SpeechInput.exe")},
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        window.DownloadInputMethod();
        QTRY_VERIFY(p.fake.log.has(QStringLiteral("start ") + home.path(QStringLiteral("setup.run"))));
        QCOMPARE(Program::setting("LocalASR3CustomInstallPath"), QStringLiteral("SpeechInput"));
        const QString program = p.file(QStringLiteral("elsewhere/SpeechInput"));
        p.file(QStringLiteral("share/applications/a.desktop"),
               "[Desktop Entry]\nType=Application\nExec=" + program.toUtf8() + "\n");
        p.choose(customRow);
        QVERIFY(window.ThirdPartyActive);
        QCOMPARE(window.LocalASR3CustomInstallPath, program);
    }

    void consent_data()
    {
        QTest::addColumn<int>("answer"); ///< 0 yes, 1 no, -1 the box was closed, which is no yes
        QTest::newRow("agreed") << 0;
        QTest::newRow("refused") << 1;
        QTest::newRow("closed") << -1;
    }
    /// Another program's settings are changed by a yes alone.
    void consent()
    {
        QFETCH(int, answer);
        Program p;
        p.answer(consentTitle, QStringLiteral("同意"), answer);
        p.file(QStringLiteral("bin/iFlyVoice"));
        const QString config = xunFeiFolder + QStringLiteral("config.xml");
        p.file(config, withoutKey);
        p.onQuestion = [&] {
            if (p.questions.size() == 1) {
                QCOMPARE(p.contentOf(config), withoutKey);
                QVERIFY(!p.window->ThirdPartyActive);
            }
        };
        MainWindow &window = p.start();
        p.choose(xunFeiRow);
        const mevo::Question &question = p.questions[0];
        QCOMPARE(question.title, consentTitle);
        QVERIFY(question.text.startsWith(
            QStringLiteral("同意：允许自动调用第三方语音输入法，包括自动下载与安装")));
        QCOMPARE(question.buttons, (QStringList{QStringLiteral("同意"), QStringLiteral("不同意")}));
        QVERIFY(window.ThirdPartyActive);
        QCOMPARE(window.LocalMustClickRunASR3, answer != 0);
        QCOMPARE(p.contentOf(config).contains("keyStr=F6"), answer == 0);
        QCOMPARE(Program::setting("LocalMustClickRunASR3"), QString::number(int(answer != 0)));
        QCOMPARE(p.told(QStringLiteral("set MustClickRunASR3=%1").arg(int(answer != 0))).size(), 1);
        p.questions.clear();
        window.SetupAsr3();
        p.settle();
        QCOMPARE(p.asked(QStringLiteral("同意")), 0);
        p.choose(QStringLiteral("普通话(腾讯版)"));
        p.window.reset(); // also in a later run
        p.start();
        p.settle();
        QCOMPARE(p.asked(QStringLiteral("同意")), 0);
        p.answer(consentTitle, QStringLiteral("同意"), 0);
        p.choose(xunFeiRow); // whoever has not answered may think it over
        QCOMPARE(p.asked(QStringLiteral("同意")), int(answer < 0));
        QCOMPARE(Program::setting("LocalMustClickRunASR3"), QString::number(int(answer == 1)));
    }

    void aChangedHotKey_data()
    {
        QTest::addColumn<int>("restart"); ///< 0 now, 1 later
        QTest::addColumn<int>("how");
        QTest::addColumn<QString>("started"); ///< last part of its path
        QTest::addColumn<QString>("recorded");
        QTest::newRow("restart") << 0 << -1 << ""
                                 << "";
        QTest::newRow("later, later") << 1 << 2 << ""
                                      << "0";
        QTest::newRow("later, closed") << 1 << -1 << ""
                                       << "0";
        QTest::newRow("later, settings") << 1 << 1 << "iFlyIMEConfig"
                                         << "1";
    }
    void aChangedHotKey()
    {
        QFETCH(int, restart);
        QFETCH(int, how);
        QFETCH(QString, started);
        Program p("ThirdPartyConsentAsked=1\n");
        p.answer(QStringLiteral("提示"), QStringLiteral("立即重启"), restart);
        p.answer(QStringLiteral("提示"), QStringLiteral("查看如何设置"), how);
        p.file(QStringLiteral("prog/iFlyVoice.exe"));
        p.file(QStringLiteral("prog/iFlyIMEConfig"));
        p.file(xunFeiFolder + QStringLiteral("iflyImeCfg.xml"),
               "<c><installPath_ver2>" + p.user.filePath(QStringLiteral("prog")).toUtf8() +
                   "</installPath_ver2><ver>3.0.1727</ver></c>");
        p.file(xunFeiFolder + QStringLiteral("config.xml"), withoutKey);
        MainWindow &window = p.start();
        window.FirstRunApp = true;
        mevo::SettingsFile().setValue(QStringLiteral("FirstRunApp"), 1);
        p.choose(xunFeiRow);
        QVERIFY(window.ThirdPartyActive && window.XFVM3);
        QCOMPARE(Program::setting("XFVM3"), QStringLiteral("1"));
        QCOMPARE(window.ASR3ShortCutKey, 0x3f);
        QCOMPARE(p.asked(QStringLiteral("立即重启")), 1);
        QCOMPARE(p.told(QStringLiteral("asr3setting_usexunfeiinputmore30 where ASR3Index=1")).size(), 1);
        QTRY_COMPARE(p.fake.log.has(QStringLiteral("restart computer")), restart == 0);
        QCOMPARE(Program::setting("FirstRunApp"), QStringLiteral("0")); // the next start leaves the choice
        QCOMPARE(p.asked(QStringLiteral("查看如何设置")), restart);
        QCOMPARE(
            p.fake.log.calls(QStringLiteral("message 初始化软件成功，如有问题，请尝试重新打开软件！")).size(),
            restart);
        QTEST(Program::setting("RunThirdpartVoiceInputByORV"), "recorded");
        while (p.fake.time->pendingCalls() > 0) {
            p.settle();
        }
        QCOMPARE(p.fake.log.calls(QStringLiteral("start ")),
                 started.isEmpty() ? QStringList()
                                   : QStringList{QStringLiteral("start ") +
                                                 p.user.filePath(QStringLiteral("prog/") + started)});
    }

    void aMethodThatIsMissing_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<bool>("forced");
        QTest::addColumn<bool>("address");
        QTest::addColumn<int>("answer"); ///< of the offer; -2 when there is none
        QTest::addColumn<QString>("message");
        QTest::newRow("not forced") << sogouRow << false << true << -2
                                    << QStringLiteral("message 某某没有安装，因没有设置强制使用该语音输入，"
                                                      "将自动切换到其它语音识别接口！ (3000)");
        QTest::newRow("nowhere to be had")
            << sogouRow << true << false << -2 << QStringLiteral("message 某某没有安装，服务器");
        QTest::newRow("not now") << sogouRow << true << true << 1 << "";
        QTest::newRow("the offer is closed") << sogouRow << true << true << -1 << "";
        QTest::newRow("custom, not now") << customRow << true << true << 1 << "";
        QTest::newRow("custom, nowhere to be had")
            << customRow << true << false << -2 << QStringLiteral("message 某某没有安装，服务器");
    }
    void aMethodThatIsMissing()
    {
        QFETCH(QString, row);
        QFETCH(bool, forced);
        QFETCH(bool, address);
        QFETCH(int, answer);
        QFETCH(QString, message);
        Program p(QByteArray("LocalASR3CustomInstallPath=SpeechInput\nThirdPartyConsentAsked=1\n") +
                  (forced ? "ForceUseASR3=1\n" : ""));
        p.methodRow = {{QStringLiteral("ASR3Name"), QStringLiteral("某某")}};
        if (row == customRow) {
            p.methodRow.insert(QStringLiteral("ASR3ExeFileName"), QStringLiteral("SpeechInput.exe"));
        }
        if (address) {
            p.methodRow.insert(QStringLiteral("ASR3DownWeb"),
                               p.server.url(QStringLiteral("/files/setup.run")).toString());
        }
        p.answer(QStringLiteral("提示"), QStringLiteral("下载"), answer);
        MainWindow &window = p.start();
        p.choose(row);
        QVERIFY(!window.ThirdPartyActive);
        QCOMPARE(p.questions.size(), answer == -2 ? 0 : 1);
        if (answer != -2) {
            QCOMPARE(p.questions[0].text, QStringLiteral("点击'下载'按钮将安装某某,安装时请按提示操作！"));
            QCOMPARE(p.questions[0].buttons,
                     (QStringList{QStringLiteral("下载"), QStringLiteral("暂不下载")}));
        }
        QCOMPARE(p.fake.log.calls(message).size() > 0, true);
        QVERIFY(!window.LocalEnableASR3 && !p.isChecked(row));
        QCOMPARE(window.LocalUseASR3Index, -1);
        // A refusal holds for the next start; otherwise the method may be there by then.
        QCOMPARE(Program::setting("LocalEnableASR3") + Program::setting("LocalUseASR3Index"),
                 answer == -2 ? QStringLiteral("1%1").arg(row == customRow ? 3 : 2) : QStringLiteral("0-1"));
        QCOMPARE(p.told(QStringLiteral("set EnableASR3=0,MustClickRunASR3=0,UseASR3Index=-1 where")).size(),
                 int(answer != -2));
        QVERIFY(window.recorder()->UseTXASRApi);
    }

    void anotherMethodIsChosenMeanwhile_data()
    {
        QTest::addColumn<bool>("download"); ///< of the first one is under way, else it is offered
        QTest::newRow("while the first one is offered") << false;
        QTest::newRow("while the first one is fetched") << true;
    }
    /// It is offered when the first one is out of the way.
    void anotherMethodIsChosenMeanwhile()
    {
        QFETCH(bool, download);
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\nForceUseXFMore3V=1\n");
        p.methodRow = {
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        MainWindow &window = p.start();
        mevo::askHook = nullptr; // the real boxes
        const auto press = [&window](int button) {
            QTRY_VERIFY(window.findChild<QMessageBox *>() != nullptr);
            window.findChild<QMessageBox *>()->buttons().value(button)->click();
            QTRY_VERIFY(window.findChild<QMessageBox *>() == nullptr ||
                        window.findChild<QMessageBox *>()->isVisible());
        };
        p.choose(sogouRow);
        if (download) {
            press(0);
            QTRY_VERIFY(window.findChild<QProgressDialog *>() != nullptr);
        }
        p.choose(xunFeiRow);
        QCOMPARE(window.findChildren<QMessageBox *>().size(), int(!download));
        if (download) {
            Q_EMIT window.findChild<QProgressDialog *>()->canceled();
            p.settle();
        } else {
            press(0); // of the first one's box: it is not fetched any more
            p.settle();
            QVERIFY(window.findChild<QProgressDialog *>() == nullptr);
        }
        QTRY_COMPARE(window.findChildren<QMessageBox *>().size(), 1);
        QVERIFY(window.findChild<QMessageBox *>()->text().contains(QStringLiteral("支持离线语音识别")));
        press(1);
        QTRY_VERIFY(!window.LocalEnableASR3 && window.LocalUseASR3Index == -1);
    }

    void offlineText()
    {
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\nForceUseXFMore3V=1\n");
        p.methodRow = {{QStringLiteral("ASR3DownWeb"), QStringLiteral("http://127.0.0.1:9/setup.run")}};
        p.start();
        p.choose(xunFeiRow);
        QCOMPARE(p.questions.value(0).text,
                 QStringLiteral("点击'下载'按钮将安装讯飞输入法(支持离线语音识别),安装时请按提示操作！"));
    }

    void rowsSayWhatIsMissing_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("message");
        QTest::newRow("XunFei") << xunFeiRow << QStringLiteral("message 没有找到讯飞语音输入法的程序");
        QTest::newRow("Sogou") << sogouRow << QStringLiteral("message 没有找到搜狗语音输入法的程序");
        QTest::newRow("custom") << customRow
                                << QStringLiteral(
                                       "message 没有找到自定义语音输入法的程序 /opt/none/SpeechInput.exe");
    }
    /// No program, and nowhere to have one from.
    void rowsSayWhatIsMissing()
    {
        QFETCH(QString, row);
        QFETCH(QString, message);
        Program p;
        MainWindow &window = p.start();
        window.LocalASR3CustomInstallPath = QStringLiteral("/opt/none/SpeechInput.exe");
        window.BaiduQuotaHit = true;
        window.BackendReachable = false;
        window.BuildAsrLanMenu(false, false);
        p.statements.clear();
        const QByteArray before = home.read(QStringLiteral("MEVOSetting.ini"));
        const auto rows = window.languageMenu()->actions();
        QVERIFY(std::any_of(rows.begin(), rows.end(), [&row](const QAction *action) {
            return action->text() == row + QStringLiteral("（未安装）");
        }));
        p.choose(row);
        QCOMPARE(p.fake.log.calls(message).size(), 1);
        QCOMPARE(home.read(QStringLiteral("MEVOSetting.ini")), before);
        QVERIFY(!window.LocalEnableASR3 && window.BaiduQuotaHit && !p.isChecked(row));
        QVERIFY(p.statements.isEmpty() && p.questions.isEmpty());
    }

    void customMethods_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("description");
        QTest::addColumn<QString>("expected"); ///< modifiers, usage, hold, window class; empty for no row
        QTest::newRow("Baidu's") << "prog/SpeechInput" << QByteArray() << "1 0 0 ";
        QTest::newRow("Sogou's") << "prog/VoiceInput" << QByteArray() << "0 59 0 ";
        QTest::newRow("another") << "prog/talk" << QByteArray() << "";
        QTest::newRow("described")
            << "prog/talk"
            << QByteArray("\n[CustomInputMethod]\nKey=F9\nModifiers=Ctrl+Alt\nMode=hold\nWindowClass=Talk\n")
            << "5 66 1 Talk";
    }
    void customMethods()
    {
        QFETCH(QString, program);
        QFETCH(QByteArray, description);
        QFETCH(QString, expected);
        Program p;
        p.agree();
        const QString path = p.file(program);
        home.write(QStringLiteral("MEVOSetting.ini"), home.read(QStringLiteral("MEVOSetting.ini")) +
                                                          "LocalASR3CustomInstallPath=" + path.toUtf8() +
                                                          "\n" + description);
        MainWindow &window = p.start();
        const auto rows = window.languageMenu()->actions();
        QCOMPARE(std::any_of(rows.begin(), rows.end(),
                             [](const QAction *action) { return action->text() == customRow; }),
                 !expected.isEmpty());
        if (expected.isEmpty()) {
            return;
        }
        p.choose(customRow);
        QVERIFY(window.ThirdPartyActive && p.isChecked(customRow));
        QCOMPARE(QStringLiteral("%1 %2 %3 %4")
                     .arg(window.ASR3CustomCtrlShortCutKey)
                     .arg(window.ASR3CustomShortCutKey)
                     .arg(int(window.ASR3CustomHoldToTalk))
                     .arg(window.ASR3CustomWinClassName),
                 expected);
        QCOMPARE(Program::setting("ASR3CustomShortCutKey"), QString::number(window.ASR3CustomShortCutKey));
        QCOMPARE(p.contentOf(QStringLiteral("localLow/Baidu/BaiduPinyin/SpeechInput.ini")),
                 program.endsWith(QLatin1String("SpeechInput"))
                     ? QByteArray("[Setting]\nHotKey=17\nLastPage=0\nLaunchTime=1\n")
                     : QByteArray());
    }

    void theDownload_data()
    {
        QTest::addColumn<bool>("comes");
        QTest::addColumn<bool>("opens");
        QTest::newRow("comes, and installs it") << true << true;
        QTest::newRow("comes, and nothing opens it") << true << false;
        QTest::newRow("is cancelled") << false << true;
    }
    void theDownload()
    {
        QFETCH(bool, comes);
        QFETCH(bool, opens);
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\nLocalEnableThirdpatyVoiceInput=1\n");
        p.methodRow = {
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        p.answer(QStringLiteral("提示"), QStringLiteral("下载"), 0);
        p.installer = comes ? QByteArray("#!/bin/sh\n") : QByteArray();
        MainWindow &window = p.start();
        QVERIFY(window.LocalEnableThirdpatyVoiceInput);
        const QString target = home.path(QStringLiteral("setup.run"));
        if (!opens) {
            p.fake.processes->broken.append(target);
        }
        p.choose(sogouRow);
        if (!comes) {
            QTRY_VERIFY(window.findChild<QProgressDialog *>() != nullptr);
            auto *progress = window.findChild<QProgressDialog *>();
            QVERIFY(progress->isVisible());
            QCOMPARE(progress->windowTitle(), QStringLiteral("下载"));
            QCOMPARE(progress->labelText(), QStringLiteral("正在下载 讯飞输入法 过程中，请稍候......"));
            Q_EMIT progress->canceled();
            p.settle();
            QVERIFY(!window.LocalEnableThirdpatyVoiceInput);
            QCOMPARE(p.told(QStringLiteral("set EnableThirdpatyVoiceInput=0 where DongleID='02-01-001357'"))
                         .size(),
                     1);
            QVERIFY(!QFile::exists(target) && !QFile::exists(target + QStringLiteral(".part")));
            return;
        }
        if (!opens) {
            QTRY_COMPARE(p.questions.size(), 2);
            QVERIFY(p.questions[1].text.endsWith(target));
            return;
        }
        QTRY_VERIFY(p.fake.log.has(QStringLiteral("start ") + target));
        p.file(QStringLiteral("bin/VoiceInput")); // as the installer would
        QTRY_VERIFY_WITH_TIMEOUT(window.ThirdPartyActive, 20000);
        QCOMPARE(window.LocalASR3SougoInstallPath, p.user.filePath(QStringLiteral("bin/VoiceInput")));
    }

    void theInstallerBesideTheProgram()
    {
        Program p("ThirdPartyConsentAsked=1\nOnlyUseXunFeiOfflineASR=1\n");
        home.write(QStringLiteral("iFlyIME_Setup.exe"), "MZ");
        const auto remove = qScopeGuard([] { home.remove(QStringLiteral("iFlyIME_Setup.exe")); });
        MainWindow &window = p.start();
        const QString start = QStringLiteral("start ") + home.path(QStringLiteral("iFlyIME_Setup.exe"));
        QTimer installer; // the clock of the fakes does not wait
        installer.callOnTimeout([&] {
            if (p.fake.log.has(start)) {
                installer.stop();
                QVERIFY(window.LocalEnableASR3 && !window.ThirdPartyActive);
                p.file(QStringLiteral("bin/iFlyVoice"));
            }
        });
        installer.start(0);
        p.choose(xunFeiRow);
        QCOMPARE(p.fake.log.calls(start).size(), 1);
        QCOMPARE(p.fake.log.calls(QStringLiteral("message 将安装讯飞输入法，需手动点击")).size(), 1);
        QTRY_VERIFY(window.ThirdPartyActive);
        QCOMPARE(p.fake.log.calls(start).size(), 1);
    }

    void theInstallerBesideTheProgramCannotBeStarted()
    {
        Program p("ThirdPartyConsentAsked=1\nOnlyUseXunFeiOfflineASR=1\n");
        home.write(QStringLiteral("iFlyIME_Setup.exe"), "MZ");
        const auto remove = qScopeGuard([] { home.remove(QStringLiteral("iFlyIME_Setup.exe")); });
        MainWindow &window = p.start();
        p.fake.processes->broken.append(home.path(QStringLiteral("iFlyIME_Setup.exe")));
        p.choose(xunFeiRow);
        QVERIFY(p.fake.log.calls(QStringLiteral("message 将安装讯飞输入法")).isEmpty());
        QCOMPARE(p.fake.log.calls(QStringLiteral("message 讯飞输入法没有安装，因没有设置强制使用")).size(),
                 1);
        QVERIFY(!window.LocalEnableASR3);
    }

    void offlineAlways_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("prepared");
        QTest::addColumn<bool>("changed");
        QTest::newRow("restart") << 0 << true << true;
        QTest::newRow("by hand") << 1 << true << true;
        QTest::newRow("cancelled") << 2 << true << false;
        QTest::newRow("closed") << -1 << true << false;
        QTest::newRow("no file prepared") << 0 << false << false;
    }
    void offlineAlways()
    {
        QFETCH(int, answer);
        QFETCH(bool, prepared);
        QFETCH(bool, changed);
        Program p;
        p.answer(QStringLiteral("提示"), QStringLiteral("自动重启电脑"), answer);
        p.file(xunFeiFolder + QStringLiteral("config.xml"), withoutKey);
        MainWindow &window = p.start();
        if (prepared) {
            home.write(QStringLiteral("configXFOffline.xml"), "<c>offline</c>");
        }
        const auto remove = qScopeGuard([] { home.remove(QStringLiteral("configXFOffline.xml")); });
        window.UseXunFeiOfflineOnly(true);
        p.settle();
        QCOMPARE(p.questions.value(0).text,
                 QStringLiteral("重启电脑该功能才生效;\t\n取消：点击此按钮，将退出并保持以前配置"));
        QCOMPARE(p.contentOf(xunFeiFolder + QStringLiteral("config.xml")),
                 changed ? QByteArray("<c>offline</c>") : withoutKey);
        QCOMPARE(window.OnlyUseXunFeiOfflineASR && window.PureXunFeiOfflineVersion, changed);
        QCOMPARE(Program::setting("OnlyUseXunFeiOfflineASR"), changed ? QStringLiteral("1") : QString());
        QCOMPARE(p.fake.log.has(QStringLiteral("restart computer")), answer == 0 && changed);
    }

    void aStartWithAMethod()
    {
        Program p("ThirdPartyConsentAsked=1\nLocalEnableASR3=1\nLocalUseASR3Index=2\n");
        p.file(QStringLiteral("bin/VoiceInput"));
        p.record.insert(QStringLiteral("EnableASR3"), QStringLiteral("1"));
        MainWindow &window = p.start();
        QVERIFY(window.ThirdPartyActive && p.isChecked(sogouRow) && p.questions.isEmpty());
        QCOMPARE(p.told(QStringLiteral("asr3setting where ASR3Index=2")).size(), 1); // it is asked for once
        p.record.insert(QStringLiteral("EnableASR3"), QStringLiteral("0"));
        window.ReadServerInfo();
        QVERIFY(!window.ThirdPartyActive && !window.LocalEnableASR3);
    }

    void whatComesDuringASetUp_data()
    {
        QTest::addColumn<QString>("held"); ///< the statement that is being waited for
        QTest::addColumn<QString>("what");
        for (const char *held : {"asr3setting", "UseASR3Index=2", "MustClickRunASR3=0 where"}) {
            for (const char *what : {"exit", "removal", "another row", "a set-up"}) {
                QTest::addRow("%s, %s", held, what) << QString::fromLatin1(held) << QString::fromLatin1(what);
            }
        }
    }
    void whatComesDuringASetUp()
    {
        QFETCH(QString, held);
        QFETCH(QString, what);
        Program p;
        p.agree();
        p.file(QStringLiteral("bin/VoiceInput"));
        MainWindow &window = p.start();
        bool came = false;
        p.held = held;
        p.onHeld = [&] {
            came = true;
            if (what == QLatin1String("exit")) {
                window.exitByItself();
            } else if (what == QLatin1String("removal")) {
                p.fake.hid->unplug();
                p.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
            } else if (what == QLatin1String("another row")) {
                p.choose(QStringLiteral("英语(讯飞版)"));
            } else {
                window.SetupAsr3();
            }
            p.server.answerHeld();
        };
        p.choose(sogouRow);
        p.settle();
        QVERIFY(came);
        if (what == QLatin1String("exit")) {
            QVERIFY(window.isLeaving() && window.recorder() == nullptr);
        } else if (what == QLatin1String("another row")) {
            QVERIFY(!window.ThirdPartyActive && !window.LocalEnableASR3 &&
                    window.recorder()->UseXunFeiWebApi);
            QVERIFY(!p.isChecked(sogouRow));
        } else {
            QVERIFY(window.ThirdPartyActive && p.isChecked(sogouRow));
        }
    }

    void whatComesWhileTheUserIsAsked_data()
    {
        QTest::addColumn<QString>("button"); ///< first one of the box that stands
        QTest::addColumn<bool>("exit");      ///< else the receiver is pulled out and put in again
        for (const char *button : {"同意", "下载"}) {
            for (const bool exit : {true, false}) {
                QTest::addRow("%s, %s", button, exit ? "exit" : "receiver")
                    << QString::fromUtf8(button) << exit;
            }
        }
    }
    /// The real boxes: they hold nothing up, an exit takes them along, and one of each stands.
    void whatComesWhileTheUserIsAsked()
    {
        QFETCH(QString, button);
        QFETCH(bool, exit);
        const bool offer = button == QStringLiteral("下载");
        Program p(offer ? "ThirdPartyConsentAsked=1\nForceUseASR3=1\n" : "");
        p.methodRow = {
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        if (!offer) {
            p.file(QStringLiteral("bin/VoiceInput"));
        }
        MainWindow &window = p.start();
        mevo::askHook = nullptr;
        p.choose(sogouRow);
        QTRY_VERIFY(window.findChild<QMessageBox *>() != nullptr);
        const QMessageBox *box = window.findChild<QMessageBox *>();
        QVERIFY(box->isVisible() && !box->isModal());
        QCOMPARE(box->buttons().value(0)->text(), button);
        if (exit) {
            window.exitByItself();
            p.settle();
            QVERIFY(window.isLeaving());
            p.window.reset();
            QVERIFY(p.told(QStringLiteral("set MustClickRunASR3=")).isEmpty());
            return;
        }
        p.fake.hid->unplug();
        p.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
        p.settle();
        p.fake.hid->plug();
        p.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival);
        QTRY_VERIFY(window.deviceOpen());
        window.SetupAsr3();
        p.settle();
        QCOMPARE(window.findChildren<QMessageBox *>().size(), 1);
        window.findChild<QMessageBox *>()->buttons().value(0)->click();
        if (offer) {
            QTRY_VERIFY(window.findChild<QProgressDialog *>() != nullptr);
        } else {
            QTRY_VERIFY(window.ThirdPartyActive);
        }
    }

    void anExitDuringTheDownload_data()
    {
        QTest::addColumn<bool>("exit");
        QTest::newRow("exit") << true;
        QTest::newRow("receiver") << false;
    }
    void anExitDuringTheDownload()
    {
        QFETCH(bool, exit);
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\n");
        p.methodRow = {
            {QStringLiteral("ASR3DownWeb"), p.server.url(QStringLiteral("/files/setup.run")).toString()}};
        p.answer(QStringLiteral("提示"), QStringLiteral("下载"), 0);
        MainWindow &window = p.start();
        p.choose(sogouRow);
        const QString part = home.path(QStringLiteral("setup.run.part"));
        QTRY_VERIFY(QFile::exists(part));
        if (exit) {
            window.exitByItself();
            QVERIFY(!QFile::exists(part));
            p.settle();
            QVERIFY(window.findChild<QProgressDialog *>() == nullptr);
            return;
        }
        p.fake.hid->unplug();
        p.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
        p.settle();
        QVERIFY(QFile::exists(part) && window.findChild<QProgressDialog *>() != nullptr); // it goes on
        p.questions.clear();
        window.SetupAsr3(); // and is not offered once more
        p.settle();
        QVERIFY(p.questions.isEmpty());
    }
};

QTEST_MAIN(TestInputMethodHands)
#include "tst_input_method_hands.moc"
