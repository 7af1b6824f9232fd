#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "service/WebCipher.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
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

const QString consentTitle = "启动第三方语音输入"_s;
const QString xunFeiRow = "使用讯飞语音输入法"_s;
const QString sogouRow = "使用搜狗语音输入法"_s;
const QString customRow = "使用自定义语音输入法"_s;

/// A program with a receiver, a backend that has rows of input methods, and a home of its own with the input
/// methods' files.
class Program
{
public:
    explicit Program(const QByteArray &settings = {})
    {
        // Nothing of the computer's own is found, and nothing of it is written.
        qputenv("XDG_DATA_HOME", user.filePath("share"_s).toUtf8());
        qputenv("XDG_DATA_DIRS", user.filePath("none"_s).toUtf8());
        m_path = qgetenv("PATH");
        qputenv("PATH", user.filePath("bin"_s).toUtf8());
        server.answering = [this](const ScriptedRequest &request) { return answerTo(request); };
        const QByteArray host = server.host().toLatin1();
        home.write("MEVOEndpoints.ini"_s,
                   "[Endpoints]\nBackendUrl=\"http://" + host + "/main?\"\nBackendUrlBk1=\"http://" + host +
                       "/main?\"\nBackendUrlBk2=\"http://" + host +
                       "/main?\"\nBaiduSpeechHost=127.0.0.1:9\nBaiduTokenHost=127.0.0.1:9\n");
        home.write(
            "MEVOSetting.ini"_s,
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
        home.remove("setup.run"_s);
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
    void agree(bool agrees = true) { answer(consentTitle, "同意"_s, agrees ? 0 : 1); }
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
        QFAIL(qPrintable("no row "_s + row));
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
    /// XunFei's method as its own installer leaves it, of that version.
    void installXunFei(const QByteArray &version) const
    {
        file("prog/iFlyVoice.exe"_s);
        file("localLow/iFly Info Tek/iFlyIME/iflyImeCfg.xml"_s,
             "<c><installPath_ver2>" + user.filePath("prog"_s).toUtf8() + "</installPath_ver2><ver>" +
                 version + "</ver></c>");
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
    QJsonObject record{{"IPRecord"_s, "192.0.2.9"_s}};
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
        QJsonObject reply{{"items"_s, 1}, {"result"_s, "107"_s}};
        if (statement.contains(QLatin1String("asr3setting"))) {
            reply = {{"items"_s, methodRow.isEmpty() ? 0 : 1}};
            if (!methodRow.isEmpty()) {
                reply.insert("result0"_s, methodRow);
            }
        } else if (statement.contains(QLatin1String("select * from mevodb.device_serialid"))) {
            reply.insert("result0"_s, record);
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

const QString xunFeiFolder = "localLow/iFly Info Tek/iFlyIME/"_s;
const QByteArray withoutKey = "<c><start_end>enable=0</start_end></c>";

} // namespace

class TestInputMethodHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMethodThatIsThereIsInForce_data()
    {
        const Rows<QString, QString, int, bool, int, QString> row; // row, program, index, hold, key, title
        row("XunFei", xunFeiRow, "bin/iFlyVoice", 1, true, 0x43, "讯飞语音悬浮窗"_s);
        row("Sogou", sogouRow, "bin/VoiceInput", 2, false, 0x3b, "搜狗输入法语音输入 "_s);
    }
    void aMethodThatIsThereIsInForce()
    {
        const auto [row, program, index, hold, key, title] =
            rowOf<QString, QString, int, bool, int, QString>();
        Program p;
        p.agree();
        const QString path = p.file(program);
        const QByteArray ownKey = "<c><start_end>enable=1;keyStr=F10</start_end></c>";
        p.file(xunFeiFolder + "config.xml"_s, ownKey);
        MainWindow &window = p.start();
        p.settle();
        QVERIFY(!window.ThirdPartyActive && p.questions.isEmpty());
        window.RunAsAdmin = p.fake.elevation->marked = true;
        p.choose(row);
        QVERIFY(window.ThirdPartyActive && window.LocalEnableASR3);
        QVERIFY(!window.RunAsAdmin && !p.fake.elevation->marked);
        QCOMPARE(window.LocalUseASR3Index, index);
        QCOMPARE(window.ASR3HoldToTalk, hold);
        QCOMPARE(window.ASR3ShortCutKey, key);
        QCOMPARE(window.ASR3WindowName, title);
        QCOMPARE(index == 1 ? window.LocalASR3XunFeiInstallPath : window.LocalASR3SougoInstallPath, path);
        QVERIFY(p.isChecked(row));
        QCOMPARE(p.asked("同意"_s), 1);
        QCOMPARE(p.contentOf(xunFeiFolder + "config.xml"_s), ownKey);
        QCOMPARE(Program::setting("LocalEnableASR3") + Program::setting("LocalUseASR3Index"),
                 "1%1"_s.arg(index));
        QCOMPARE(p.told("set EnableASR3=1,MustClickRunASR3=0,UseASR3Index=%1 where "
                        "DongleID='02-01-001357'"_s.arg(index))
                     .size(),
                 1);
        QCOMPARE(p.told("set MustClickRunASR3=0 where DongleID='02-01-001357'"_s).size(), 1);
        QVERIFY(window.recorder()->UseTXASRApi && !window.recorder()->BaiDuNoStreamApi); // the idle engine

        p.choose("普通话(腾讯版)"_s);
        QVERIFY(!window.ThirdPartyActive && !window.LocalEnableASR3 && !window.EnableASR3);
        QCOMPARE(p.told("set EnableASR3=0 where DongleID='02-01-001357'"_s).size(), 1);
        p.choose(row); // the question does not come twice
        QVERIFY(window.ThirdPartyActive);
        QCOMPARE(p.asked("同意"_s), 1);
    }

    void aChoiceOfTheSettings_data()
    {
        const Rows<bool, bool, QString> row; // there, forced, told
        row("is there", true, false, "EnableASR3=1,MustClickRunASR3=0 where");
        row("is not there", false, false, "EnableASR3=0,MustClickRunASR3=0 where");
        row("is not fetched", false, true, "EnableASR3=0,MustClickRunASR3=0,UseASR3Index=-1 where");
    }
    /// The record hears of it when the user has answered, and an engine is left where there is no method.
    void aChoiceOfTheSettings()
    {
        const auto [there, forced, told] = rowOf<bool, bool, QString>();
        Program p(forced ? "ForceUseASR3=1\n" : "ForceUseASR3=0\n");
        p.methodRow = {{"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
        p.agree();
        p.answer("提示"_s, "下载"_s, 1);
        if (there) {
            p.file("bin/iFlyVoice"_s);
        }
        MainWindow &window = p.start();
        p.settle();
        window.ForceUseASR3 = forced;
        window.pushBuutton_Setting_clicked();
        p.settle();
        p.statements.clear();
        p.record.insert("EnableASR3"_s, "0"_s);
        p.onQuestion = [&] {
            QVERIFY(window.LocalEnableASR3 && p.told("EnableASR3="_s).isEmpty());
            window.ReadServerInfo(); // the record, which does not know of the choice, does not undo it
            QVERIFY(window.LocalEnableASR3 && p.told("EnableASR3="_s).isEmpty());
        };
        auto *choice = window.findChild<QAbstractButton *>("radioButton_EnableThirdPartyVoiceInput"_s);
        QVERIFY(choice != nullptr);
        choice->click();
        p.settle();
        QCOMPARE(p.asked("同意"_s), 1);
        QCOMPARE(p.asked("下载"_s), int(forced));
        QCOMPARE(window.ThirdPartyActive, there);
        QCOMPARE(window.EnableASR3, there);
        QCOMPARE(window.UseASR3Index, forced && !there ? -1 : 1);
        QCOMPARE(window.recorder()->BaiDuNoStreamApi, !there);
        QCOMPARE(Program::setting("BaiDuNoStreamApi"), QString::number(int(!there)));
        QCOMPARE(Program::setting("LocalEnableASR3"), QString::number(int(there)));
        QCOMPARE(p.told("set "_s + told).size(), 1);
        QCOMPARE(p.told("EnableASR3="_s).size(), 1);
    }

    /// As the menu does it: the window of the method that goes is closed, the one of the method that comes is
    /// brought up.
    void theSettingsChooseAsTheMenuDoes()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file("bin/VoiceInput"_s);
        p.installXunFei("3.0.1727");
        p.file(xunFeiFolder + "config.xml"_s, "<c><start_end>enable=1;keyStr=F6</start_end></c>");
        MainWindow &window = p.start();
        p.choose(sogouRow);
        QVERIFY(window.ThirdPartyActive);
        window.ThirdPartyWindowOpen = true;
        window.BaiduQuotaHit = true;
        p.fake.windowSystem->byTitle.insert(window.ASR3WindowName, 7);
        p.fake.log.clear();
        window.pushBuutton_Setting_clicked();
        window.findChild<QComboBox *>("comboBox_SelectASR3"_s)->setCurrentIndex(0);
        QVERIFY(p.fake.log.has("close window 7"_s) && !window.BaiduQuotaHit);
        p.settle();
        QVERIFY(window.ThirdPartyActive && window.LocalUseASR3Index == 1 && window.UseASR3Index == 1);
        QCOMPARE(p.fake.log.calls("open to type"_s).size(), 1);
    }

    /// A window that was found as another method's says nothing about XunFei's; its name is the service's,
    /// but for a time without a network.
    void theWindowOfXunFei()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file("bin/VoiceInput"_s);
        p.installXunFei("3.0.1727");
        MainWindow &window = p.start();
        p.choose(sogouRow);
        p.fake.windowSystem->byTitle.insert(window.ASR3WindowName, 7); // the user's own
        p.methodRow = {{"ASR3WindowName"_s, "某某窗"_s}};
        p.choose(xunFeiRow);
        QCOMPARE(p.fake.log.calls("open to type"_s).size(), 1);
        QCOMPARE(window.ASR3WindowName, "某某窗"_s);
        window.IsOnline = false;
        window.ReadXunFeiIme();
        QCOMPARE(window.ASR3WindowName, "语音悬浮窗"_s);
        window.IsOnline = true;
        window.ReadXunFeiIme();
        QCOMPARE(window.ASR3WindowName, "某某窗"_s);
    }

    /// Another generation is installed while the service is asked for the row of the one before: that row
    /// comes too late.
    void aLateRowOfAnotherGeneration()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.installXunFei("2.1.1708");
        MainWindow &window = p.start();
        p.settle();
        p.methodRow = {{"ASR3WindowName"_s, "旧窗"_s}};
        p.held = "asr3setting where"_s;
        p.onHeld = [&] {
            p.installXunFei("3.0.1727");
            window.ReadXunFeiIme();
            p.methodRow["ASR3WindowName"_s] = "新窗"_s;
            p.server.answerHeld();
        };
        p.choose(xunFeiRow);
        QTRY_VERIFY(window.ThirdPartyActive);
        QCOMPARE(window.ASR3WindowName, "新窗"_s);
        QCOMPARE(p.told("asr3setting_usexunfeiinputmore30 where ASR3Index=1"_s).size(), 1);
        // What was asked for before says nothing about a generation that is found afterwards.
        p.installXunFei("2.1.1708");
        window.ReadXunFeiIme();
        QCOMPARE(window.ASR3WindowName, "讯飞语音悬浮窗"_s);
    }

    /// The latest choice of the user's is the one that the backend hears, however each was made.
    void theLatestChoiceIsTold()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file("bin/VoiceInput"_s);
        MainWindow &window = p.start();
        p.settle();
        window.IsOnline = false; // nobody hears
        p.choose(sogouRow);
        QCOMPARE(Program::setting("RecordChoicesUntold"), "EnableASR3=1;MustClickRunASR3=0;UseASR3Index=2"_s);
        p.choose("普通话(腾讯版)"_s);
        QCOMPARE(Program::setting("RecordChoicesUntold"), "EnableASR3=0;MustClickRunASR3=0;UseASR3Index=2"_s);
        p.choose(sogouRow);
        p.statements.clear();
        p.record.insert("EnableASR3"_s, "0"_s);
        window.IsOnline = true;
        window.ReadServerInfo();
        QCOMPARE(p.statements.value(0), "update mevodb.device_serialid set EnableASR3=1,MustClickRunASR3=0,"
                                        "UseASR3Index=2 where DongleID='02-01-001357'"_s);
        QCOMPARE(p.told("UseTXAPIPara"_s).size(), 0); // an engine no longer counts
        QCOMPARE(Program::setting("RecordChoicesUntold") + Program::setting("EngineChoiceUntold"), "0"_s);
    }

    /// Without a receiver there is no record that hears a choice: the one that comes does.
    void aChoiceWithoutAReceiver()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.file("bin/VoiceInput"_s);
        MainWindow &window = p.start();
        p.settle();
        const QString identity = window.DongleID;
        window.DongleID.clear();
        p.statements.clear();
        p.choose(sogouRow);
        QVERIFY(window.ThirdPartyActive && p.told("DongleID"_s).isEmpty());
        p.choose("普通话(腾讯版)"_s);
        QVERIFY(p.told("DongleID"_s).isEmpty());
        QCOMPARE(Program::setting("EngineChoiceUntold"), "1"_s);
        window.DongleID = identity;
        window.ReadServerInfo();
        QCOMPARE(p.told("set EnableASR3=0,MustClickRunASR3=0,UseASR3Index=2"_s).size(), 1);
        QCOMPARE(p.told("UseTXAPIPara= '1'"_s).size(), 1);
    }

    /// The row of the method that was set up last is not that of another.
    void anotherMethodIsFetchedByItsOwnRow()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.methodRow = {{"ASR3Name"_s, "某某"_s},
                       {"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
        p.file("bin/VoiceInput"_s);
        MainWindow &window = p.start();
        p.choose(sogouRow);
        p.choose("普通话(腾讯版)"_s);
        window.LocalUseASR3Index = 1; // chosen since, and not set up
        p.methodRow["ASR3Name"_s] = "另一个"_s;
        p.statements.clear();
        window.DownloadInputMethod();
        QCOMPARE(p.told("asr3setting where ASR3Index=1"_s).size(), 1);
        QTRY_VERIFY(window.findChild<QProgressDialog *>() != nullptr);
        QCOMPARE(window.findChild<QProgressDialog *>()->labelText(),
                 "正在下载 另一个 过程中，请稍候......"_s);
        QCOMPARE(window.ASR3Name, "某某"_s); // of messages about the one that was set up
    }

    /// The button of the settings, while no custom program is named.
    void aCustomMethodIsFetchedWithoutAPath()
    {
        Program p("ThirdPartyConsentAsked=1\n");
        p.installer = "#!/bin/sh\n";
        MainWindow &window = p.start();
        window.LocalUseASR3Index = 3;
        window.DownloadInputMethod();
        QCOMPARE(p.fake.log.calls("message 该语音输入法没有可下载的安装程序！"_s).size(), 1);
        p.methodRow = {{"ASR3ExeFileName"_s, "SpeechInput.exe"_s},
                       {"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
        window.DownloadInputMethod();
        QTRY_VERIFY(p.fake.log.has("start "_s + home.path("setup.run"_s)));
        QCOMPARE(Program::setting("LocalASR3CustomInstallPath"), "SpeechInput"_s);
        const QString program = p.file("elsewhere/SpeechInput"_s);
        p.file("share/applications/a.desktop"_s,
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
        p.answer(consentTitle, "同意"_s, answer);
        p.file("bin/iFlyVoice"_s);
        const QString config = xunFeiFolder + "config.xml"_s;
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
        QVERIFY(question.text.startsWith("同意：允许自动调用第三方语音输入法，包括自动下载与安装"_s));
        QCOMPARE(question.buttons, (QStringList{"同意"_s, "不同意"_s}));
        QVERIFY(window.ThirdPartyActive);
        QCOMPARE(window.LocalMustClickRunASR3, answer != 0);
        QCOMPARE(p.contentOf(config).contains("keyStr=F6"), answer == 0);
        QCOMPARE(Program::setting("LocalMustClickRunASR3"), QString::number(int(answer != 0)));
        QCOMPARE(p.told("set MustClickRunASR3=%1"_s.arg(int(answer != 0))).size(), 1);
        p.questions.clear();
        window.SetupAsr3();
        p.settle();
        QCOMPARE(p.asked("同意"_s), 0);
        p.choose("普通话(腾讯版)"_s);
        p.window.reset(); // also in a later run
        p.start();
        p.settle();
        QCOMPARE(p.asked("同意"_s), 0);
        p.answer(consentTitle, "同意"_s, 0);
        p.choose(xunFeiRow); // whoever has not answered may think it over
        QCOMPARE(p.asked("同意"_s), int(answer < 0));
        QCOMPARE(Program::setting("LocalMustClickRunASR3"), QString::number(int(answer == 1)));
    }

    void aChangedHotKey_data()
    {
        // restart (0 now, 1 later), how, started (last part of its path), recorded
        const Rows<int, int, QString, QString> row;
        row("restart", 0, -1, "", "");
        row("later, later", 1, 2, "", "0");
        row("later, closed", 1, -1, "", "0");
        row("later, settings", 1, 1, "iFlyIMEConfig", "1");
    }
    void aChangedHotKey()
    {
        const auto [restart, how, started, recorded] = rowOf<int, int, QString, QString>();
        Program p("ThirdPartyConsentAsked=1\n");
        p.answer("提示"_s, "立即重启"_s, restart);
        p.answer("提示"_s, "查看如何设置"_s, how);
        p.file("prog/iFlyIMEConfig"_s);
        p.installXunFei("3.0.1727");
        p.file(xunFeiFolder + "config.xml"_s, withoutKey);
        MainWindow &window = p.start();
        window.FirstRunApp = true;
        mevo::SettingsFile().setValue("FirstRunApp"_s, 1);
        p.choose(xunFeiRow);
        QVERIFY(window.ThirdPartyActive && window.XFVM3);
        QCOMPARE(Program::setting("XFVM3"), "1"_s);
        QCOMPARE(window.ASR3ShortCutKey, 0x3f);
        QCOMPARE(p.asked("立即重启"_s), 1);
        QCOMPARE(p.told("asr3setting_usexunfeiinputmore30 where ASR3Index=1"_s).size(), 1);
        QTRY_COMPARE(p.fake.log.has("restart computer"_s), restart == 0);
        QCOMPARE(Program::setting("FirstRunApp"), "0"_s); // the next start leaves the choice
        QCOMPARE(p.asked("查看如何设置"_s), restart);
        QCOMPARE(p.fake.log.calls("message 初始化软件成功，如有问题，请尝试重新打开软件！"_s).size(),
                 restart);
        QCOMPARE(Program::setting("RunThirdpartVoiceInputByORV"), recorded);
        while (p.fake.time->pendingCalls() > 0) {
            p.settle();
        }
        QCOMPARE(p.fake.log.calls("start "_s),
                 started.isEmpty() ? QStringList()
                                   : QStringList{"start "_s + p.user.filePath("prog/"_s + started)});
    }

    void aMethodThatIsMissing_data()
    {
        // row, forced, address, answer (of the offer; -2 when there is none), message
        const Rows<QString, bool, bool, int, QString> row;
        row("not forced", sogouRow, false, true, -2,
            "message 某某没有安装，因没有设置强制使用该语音输入，"
            "将自动切换到其它语音识别接口！ (3000)"_s);
        row("nowhere to be had", sogouRow, true, false, -2, "message 某某没有安装，服务器"_s);
        row("not now", sogouRow, true, true, 1, "");
        row("the offer is closed", sogouRow, true, true, -1, "");
        row("custom, not now", customRow, true, true, 1, "");
        row("custom, nowhere to be had", customRow, true, false, -2, "message 某某没有安装，服务器"_s);
    }
    void aMethodThatIsMissing()
    {
        const auto [row, forced, address, answer, message] = rowOf<QString, bool, bool, int, QString>();
        Program p(QByteArray("LocalASR3CustomInstallPath=SpeechInput\nThirdPartyConsentAsked=1\n") +
                  (forced ? "ForceUseASR3=1\n" : ""));
        p.methodRow = {{"ASR3Name"_s, "某某"_s}};
        if (row == customRow) {
            p.methodRow.insert("ASR3ExeFileName"_s, "SpeechInput.exe"_s);
        }
        if (address) {
            p.methodRow.insert("ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString());
        }
        p.answer("提示"_s, "下载"_s, answer);
        MainWindow &window = p.start();
        p.choose(row);
        QVERIFY(!window.ThirdPartyActive);
        QCOMPARE(p.questions.size(), answer == -2 ? 0 : 1);
        if (answer != -2) {
            QCOMPARE(p.questions[0].text, "点击'下载'按钮将安装某某,安装时请按提示操作！"_s);
            QCOMPARE(p.questions[0].buttons, (QStringList{"下载"_s, "暂不下载"_s}));
        }
        QCOMPARE(p.fake.log.calls(message).size() > 0, true);
        QVERIFY(!window.LocalEnableASR3 && !p.isChecked(row));
        QCOMPARE(window.LocalUseASR3Index, -1);
        // A refusal holds for the next start; otherwise the method may be there by then.
        QCOMPARE(Program::setting("LocalEnableASR3") + Program::setting("LocalUseASR3Index"),
                 answer == -2 ? "1%1"_s.arg(row == customRow ? 3 : 2) : "0-1"_s);
        QCOMPARE(p.told("set EnableASR3=0,MustClickRunASR3=0,UseASR3Index=-1 where"_s).size(),
                 int(answer != -2));
        QVERIFY(window.recorder()->UseTXASRApi);
    }

    void anotherMethodIsChosenMeanwhile_data()
    {
        flagRows("while the first one is fetched", "while the first one is offered");
    }
    /// It is offered when the first one is out of the way.
    void anotherMethodIsChosenMeanwhile()
    {
        const auto [download] = rowOf<bool>(); // of the first one is under way, else it is offered
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\nForceUseXFMore3V=1\n");
        p.methodRow = {{"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
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
        QVERIFY(window.findChild<QMessageBox *>()->text().contains("支持离线语音识别"_s));
        press(1);
        QTRY_VERIFY(!window.LocalEnableASR3 && window.LocalUseASR3Index == -1);
    }

    void offlineText()
    {
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\nForceUseXFMore3V=1\n");
        p.methodRow = {{"ASR3DownWeb"_s, "http://127.0.0.1:9/setup.run"_s}};
        p.start();
        p.choose(xunFeiRow);
        QCOMPARE(p.questions.value(0).text,
                 "点击'下载'按钮将安装讯飞输入法(支持离线语音识别),安装时请按提示操作！"_s);
    }

    void rowsSayWhatIsMissing_data()
    {
        const Rows<QString, QString> row; // row, message
        row("XunFei", xunFeiRow, "message 没有找到讯飞语音输入法的程序"_s);
        row("Sogou", sogouRow, "message 没有找到搜狗语音输入法的程序"_s);
        row("custom", customRow, "message 没有找到自定义语音输入法的程序 /opt/none/SpeechInput.exe"_s);
    }
    /// No program, and nowhere to have one from.
    void rowsSayWhatIsMissing()
    {
        const auto [row, message] = rowOf<QString, QString>();
        Program p;
        MainWindow &window = p.start();
        window.LocalASR3CustomInstallPath = "/opt/none/SpeechInput.exe"_s;
        window.BaiduQuotaHit = true;
        window.BackendReachable = false;
        window.BuildAsrLanMenu(false, false);
        p.statements.clear();
        const QByteArray before = home.read("MEVOSetting.ini"_s);
        const auto rows = window.languageMenu()->actions();
        QVERIFY(std::any_of(rows.begin(), rows.end(), [&row = row](const QAction *action) {
            return action->text() == row + "（未安装）"_s;
        }));
        p.choose(row);
        QCOMPARE(p.fake.log.calls(message).size(), 1);
        QCOMPARE(home.read("MEVOSetting.ini"_s), before);
        QVERIFY(!window.LocalEnableASR3 && window.BaiduQuotaHit && !p.isChecked(row));
        QVERIFY(p.statements.isEmpty() && p.questions.isEmpty());
    }

    void customMethods_data()
    {
        // program, description, expected (modifiers, usage, hold, window class; empty for no row)
        const Rows<QString, QByteArray, QString> row;
        row("Baidu's", "prog/SpeechInput", QByteArray(), "1 0 0 ");
        row("Sogou's", "prog/VoiceInput", QByteArray(), "0 59 0 ");
        row("another", "prog/talk", QByteArray(), "");
        row("described", "prog/talk",
            QByteArray("\n[CustomInputMethod]\nKey=F9\nModifiers=Ctrl+Alt\nMode=hold\nWindowClass=Talk\n"),
            "5 66 1 Talk");
    }
    void customMethods()
    {
        const auto [program, description, expected] = rowOf<QString, QByteArray, QString>();
        Program p;
        p.agree();
        const QString path = p.file(program);
        home.write("MEVOSetting.ini"_s, home.read("MEVOSetting.ini"_s) + "LocalASR3CustomInstallPath=" +
                                            path.toUtf8() + "\n" + description);
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
        QCOMPARE("%1 %2 %3 %4"_s.arg(window.ASR3CustomCtrlShortCutKey)
                     .arg(window.ASR3CustomShortCutKey)
                     .arg(int(window.ASR3CustomHoldToTalk))
                     .arg(window.ASR3CustomWinClassName),
                 expected);
        QCOMPARE(Program::setting("ASR3CustomShortCutKey"), QString::number(window.ASR3CustomShortCutKey));
        QCOMPARE(p.contentOf("localLow/Baidu/BaiduPinyin/SpeechInput.ini"_s),
                 program.endsWith(QLatin1String("SpeechInput"))
                     ? QByteArray("[Setting]\nHotKey=17\nLastPage=0\nLaunchTime=1\n")
                     : QByteArray());
    }

    void theDownload_data()
    {
        const Rows<bool, bool> row; // comes, opens
        row("comes, and installs it", true, true);
        row("comes, and nothing opens it", true, false);
        row("is cancelled", false, true);
    }
    void theDownload()
    {
        const auto [comes, opens] = rowOf<bool, bool>();
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\nLocalEnableThirdpatyVoiceInput=1\n");
        p.methodRow = {{"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
        p.answer("提示"_s, "下载"_s, 0);
        p.installer = comes ? QByteArray("#!/bin/sh\n") : QByteArray();
        MainWindow &window = p.start();
        QVERIFY(window.LocalEnableThirdpatyVoiceInput);
        const QString target = home.path("setup.run"_s);
        if (!opens) {
            p.fake.processes->broken.append(target);
        }
        p.choose(sogouRow);
        if (!comes) {
            QTRY_VERIFY(window.findChild<QProgressDialog *>() != nullptr);
            auto *progress = window.findChild<QProgressDialog *>();
            QVERIFY(progress->isVisible());
            QCOMPARE(progress->windowTitle(), "下载"_s);
            QCOMPARE(progress->labelText(), "正在下载 讯飞输入法 过程中，请稍候......"_s);
            Q_EMIT progress->canceled();
            p.settle();
            QVERIFY(!window.LocalEnableThirdpatyVoiceInput);
            QCOMPARE(p.told("set EnableThirdpatyVoiceInput=0 where DongleID='02-01-001357'"_s).size(), 1);
            QVERIFY(!QFile::exists(target) && !QFile::exists(target + ".part"_s));
            return;
        }
        if (!opens) {
            QTRY_COMPARE(p.questions.size(), 2);
            QVERIFY(p.questions[1].text.endsWith(target));
            return;
        }
        QTRY_VERIFY(p.fake.log.has("start "_s + target));
        p.file("bin/VoiceInput"_s); // as the installer would
        QTRY_VERIFY_WITH_TIMEOUT(window.ThirdPartyActive, 20000);
        QCOMPARE(window.LocalASR3SougoInstallPath, p.user.filePath("bin/VoiceInput"_s));
    }

    void theInstallerBesideTheProgram()
    {
        Program p("ThirdPartyConsentAsked=1\nOnlyUseXunFeiOfflineASR=1\n");
        home.write("iFlyIME_Setup.exe"_s, "MZ");
        const auto remove = qScopeGuard([] { home.remove("iFlyIME_Setup.exe"_s); });
        MainWindow &window = p.start();
        const QString start = "start "_s + home.path("iFlyIME_Setup.exe"_s);
        QTimer installer; // the clock of the fakes does not wait
        installer.callOnTimeout([&] {
            if (p.fake.log.has(start)) {
                installer.stop();
                QVERIFY(window.LocalEnableASR3 && !window.ThirdPartyActive);
                p.file("bin/iFlyVoice"_s);
            }
        });
        installer.start(0);
        p.choose(xunFeiRow);
        QCOMPARE(p.fake.log.calls(start).size(), 1);
        QCOMPARE(p.fake.log.calls("message 将安装讯飞输入法，需手动点击"_s).size(), 1);
        QTRY_VERIFY(window.ThirdPartyActive);
        QCOMPARE(p.fake.log.calls(start).size(), 1);
    }

    void theInstallerBesideTheProgramCannotBeStarted()
    {
        Program p("ThirdPartyConsentAsked=1\nOnlyUseXunFeiOfflineASR=1\n");
        home.write("iFlyIME_Setup.exe"_s, "MZ");
        const auto remove = qScopeGuard([] { home.remove("iFlyIME_Setup.exe"_s); });
        MainWindow &window = p.start();
        p.fake.processes->broken.append(home.path("iFlyIME_Setup.exe"_s));
        p.choose(xunFeiRow);
        QVERIFY(p.fake.log.calls("message 将安装讯飞输入法"_s).isEmpty());
        QCOMPARE(p.fake.log.calls("message 讯飞输入法没有安装，因没有设置强制使用"_s).size(), 1);
        QVERIFY(!window.LocalEnableASR3);
    }

    void offlineAlways_data()
    {
        const Rows<int, bool, bool> row; // answer, prepared, changed
        row("restart", 0, true, true);
        row("by hand", 1, true, true);
        row("cancelled", 2, true, false);
        row("closed", -1, true, false);
        row("no file prepared", 0, false, false);
    }
    void offlineAlways()
    {
        const auto [answer, prepared, changed] = rowOf<int, bool, bool>();
        Program p;
        p.answer("提示"_s, "自动重启电脑"_s, answer);
        p.file(xunFeiFolder + "config.xml"_s, withoutKey);
        MainWindow &window = p.start();
        if (prepared) {
            home.write("configXFOffline.xml"_s, "<c>offline</c>");
        }
        const auto remove = qScopeGuard([] { home.remove("configXFOffline.xml"_s); });
        window.UseXunFeiOfflineOnly(true);
        p.settle();
        QCOMPARE(p.questions.value(0).text,
                 "重启电脑该功能才生效;\t\n取消：点击此按钮，将退出并保持以前配置"_s);
        QCOMPARE(p.contentOf(xunFeiFolder + "config.xml"_s),
                 changed ? QByteArray("<c>offline</c>") : withoutKey);
        QCOMPARE(window.OnlyUseXunFeiOfflineASR && window.PureXunFeiOfflineVersion, changed);
        QCOMPARE(Program::setting("OnlyUseXunFeiOfflineASR"), changed ? "1"_s : QString());
        QCOMPARE(p.fake.log.has("restart computer"_s), answer == 0 && changed);
    }

    void aStartWithAMethod()
    {
        Program p("ThirdPartyConsentAsked=1\nLocalEnableASR3=1\nLocalUseASR3Index=2\n");
        p.file("bin/VoiceInput"_s);
        p.record.insert("EnableASR3"_s, "1"_s);
        MainWindow &window = p.start();
        QVERIFY(window.ThirdPartyActive && p.isChecked(sogouRow) && p.questions.isEmpty());
        QCOMPARE(p.told("asr3setting where ASR3Index=2"_s).size(), 1); // it is asked for once
        p.record.insert("EnableASR3"_s, "0"_s);
        window.ReadServerInfo();
        QVERIFY(!window.ThirdPartyActive && !window.LocalEnableASR3);
    }

    void whatComesDuringASetUp_data()
    {
        const Rows<QString, QString> row; // held (the statement that is being waited for), what
        for (const char *held : {"asr3setting", "UseASR3Index=2", "MustClickRunASR3=0 where"}) {
            for (const char *what : {"exit", "removal", "another row", "a set-up"}) {
                row(rowName("%s, %s", held, what), QString::fromLatin1(held), QString::fromLatin1(what));
            }
        }
    }
    void whatComesDuringASetUp()
    {
        const auto [held, what] = rowOf<QString, QString>();
        Program p;
        p.agree();
        p.file("bin/VoiceInput"_s);
        MainWindow &window = p.start();
        bool came = false;
        p.held = held;
        p.onHeld = [&, &what = what] {
            came = true;
            if (what == QLatin1String("exit")) {
                window.exitByItself();
            } else if (what == QLatin1String("removal")) {
                p.fake.hid->unplug();
                p.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
            } else if (what == QLatin1String("another row")) {
                p.choose("英语(讯飞版)"_s);
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
        // button (first one of the box that stands), exit (else the receiver is pulled out and put in
        // again)
        const Rows<QString, bool> row;
        for (const char *button : {"同意", "下载"}) {
            for (const bool exit : {true, false}) {
                row(rowName("%s, %s", button, exit ? "exit" : "receiver"), QString::fromUtf8(button), exit);
            }
        }
    }
    /// The real boxes: they hold nothing up, an exit takes them along, and one of each stands.
    void whatComesWhileTheUserIsAsked()
    {
        const auto [button, exit] = rowOf<QString, bool>();
        const bool offer = button == "下载"_s;
        Program p(offer ? "ThirdPartyConsentAsked=1\nForceUseASR3=1\n" : "");
        p.methodRow = {{"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
        if (!offer) {
            p.file("bin/VoiceInput"_s);
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
            QVERIFY(p.told("set MustClickRunASR3="_s).isEmpty());
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

    void anExitDuringTheDownload_data() { flagRows("exit", "receiver"); }
    void anExitDuringTheDownload()
    {
        const auto [exit] = rowOf<bool>();
        Program p("ThirdPartyConsentAsked=1\nForceUseASR3=1\n");
        p.methodRow = {{"ASR3DownWeb"_s, p.server.url("/files/setup.run"_s).toString()}};
        p.answer("提示"_s, "下载"_s, 0);
        MainWindow &window = p.start();
        p.choose(sogouRow);
        const QString part = home.path("setup.run.part"_s);
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
