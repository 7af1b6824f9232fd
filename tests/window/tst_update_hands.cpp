#include "app/RunProgram.h"
#include "audio/AudioRecorder.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "ui/Ask.h"
#include "window/MainWindow.h"
#include "window/UpdateHands.h"

#include <QAbstractButton>
#include <QApplication>
#include <QScopedValueRollback>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const ScratchHome home;

/// A program whose download server offers version 108.
struct Program
{
    FakePlatform fake;
    ScriptedHttp server;
    QList<mevo::Question> questions;
    std::unique_ptr<MainWindow> window;

    Program()
    {
        const QByteArray base = server.url(QStringLiteral("/")).toString().toUtf8();
        home.write(QStringLiteral("MEVOEndpoints.ini"),
                   "[Endpoints]\nBackendUrl=\"" + base + "none?\"\nBackendUrlBk1=\"" + base +
                       "none?\"\nBackendUrlBk2=\"" + base + "none?\"\nVersionCheckUrl=" + base +
                       "v\nManualDownloadUrl=" + base + "m\nBaiduTokenHost=127.0.0.1:9\n");
        home.write(QStringLiteral("MEVOSetting.ini"), "[MainSetting]\nAutoRunApp=1\n");
        server.answering = [](const ScriptedRequest &request) {
            return request.target.contains("ORVAppVer.txt") ? ScriptedAnswer::body("108;;Part;;a.tar.xz")
                                                            : ScriptedAnswer::body("x", 404);
        };
        mevo::askHook = [this](const mevo::Question &question) {
            questions.append(question);
            return 1; // not now
        };
        MainWindow::startWaitMs = 30000; // a loaded machine is no slow service
        window = std::make_unique<MainWindow>(fake.platform);
        window->IsOnline = true;
    }
    ~Program()
    {
        window.reset();
        mevo::askHook = nullptr;
    }
    int checks() const
    {
        return int(
            std::count_if(server.requests.begin(), server.requests.end(), [](const ScriptedRequest &request) {
                return request.target.contains("ORVAppVer.txt");
            }));
    }
};

const QString updater = QStringLiteral("sibling \\..\\PatchRunner.exe");

} // namespace

class TestUpdateHands : public QObject
{
    Q_OBJECT

private:
    const QTemporaryDir m_runtime;

private Q_SLOTS:
    /// Whether an updater is at work is a matter of this test alone.
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path())); }

    void permissions()
    {
        Program program;
        MainWindow &window = *program.window;
        window.AutoUpdateSwitch = 0; // by a record that came after the start
        window.CheckUpdateTimeout();
        window.ManualUpdateSwitch = 0;
        window.CheckUpdateFromSettings(true);
        window.AutoUpdateSwitch = 1;
        window.ManualCheck = true; // of an earlier check
        window.CheckUpdateTimeout();
        QTRY_COMPARE(program.questions.size(), 1);
        QCOMPARE(program.checks(), 1);
        QVERIFY(program.server.requests.last().target.startsWith("/v/"));
        QCOMPARE(program.questions[0].title, QStringLiteral("灵犀听写更新"));
        QCOMPARE(program.questions[0].buttons,
                 QStringList({QStringLiteral("立即更新"), QStringLiteral("暂时不更新")}));
        window.ForceUpdate = 1;
        window.CheckUpdateTimeout();
        QTRY_VERIFY(program.questions.size() >= 2);
        QCOMPARE(program.questions[1].buttons, QStringList(QStringLiteral("立即更新")));
        // However it is closed, the archive is fetched, which is not there.
        QTRY_COMPARE(program.questions.size(), 3);
        QCOMPARE(program.questions[2].title, QStringLiteral("提示!"));
    }

    /// A start clears what an earlier run, killed in the middle of a download, has left, and says so once.
    void theStartTellsOfAnUnfinishedUpdate()
    {
        QFile rest(QCoreApplication::applicationDirPath() + QStringLiteral("/../.update-part"));
        QVERIFY(rest.open(QIODevice::WriteOnly));
        const auto told = [](const Program &program) {
            return std::count_if(
                program.questions.begin(), program.questions.end(), [](const mevo::Question &question) {
                    return question.text == QStringLiteral("上次的更新没有下载完成，程序没有更新。");
                });
        };
        {
            const Program program;
            QVERIFY(!rest.exists());
            QTRY_COMPARE(told(program), 1);
        }
        const Program program;
        QCoreApplication::processEvents();
        QCOMPARE(told(program), 0);
    }

    /// The button of the settings page asks by name, whatever the record's switches say, and is answered.
    void theButtonIsAnswered()
    {
        Program program;
        program.server.answering = [](const ScriptedRequest &) {
            return ScriptedAnswer::body("107;;Part;;a.tar.xz");
        };
        MainWindow &window = *program.window;
        window.ManualUpdateSwitch = 0;
        window.pushBuutton_Setting_clicked();
        window.findChild<QAbstractButton *>(QStringLiteral("pushButton_CheckUpdate"))->click();
        const auto *notice = window.findChild<QAbstractButton *>(QStringLiteral("pushButton_UpdateNotice"));
        QTRY_COMPARE(notice->text(), QStringLiteral("已是最新版本"));
        window.IsOnline = false;
        window.findChild<QAbstractButton *>(QStringLiteral("pushButton_CheckUpdate"))->click();
        QCOMPARE(program.fake.log.calls(QStringLiteral("message 没有网络连接")).size(), 1);
        QVERIFY(program.questions.isEmpty());
    }

    void fromTheSettings()
    {
        Program program;
        MainWindow &window = *program.window;
        QSignalSpy notices(&window, &MainWindow::updateNoticeChanged);
        window.ManualUpdateSwitch = 1;
        window.CheckUpdateFromSettings(false);
        QTRY_COMPARE(notices.size(), 1);
        QCOMPARE(notices[0][0].toString(), QStringLiteral("新版本软件已提供，点击此处可以在线更新"));
        QVERIFY(window.UpdateNotified && program.questions.isEmpty());
        QVERIFY(program.server.requests.last().target.startsWith("/m/"));
        window.CheckUpdateFromSettings(true);
        QTRY_COMPARE(program.questions.size(), 1);
    }

    /// What the program does by itself may fail in silence, a click may not.
    void aClickOnTheNoticeIsAnswered()
    {
        Program program;
        MainWindow &window = *program.window;
        window.ManualUpdateSwitch = 1;
        window.IsOnline = false;
        const auto told = [&program] { return program.fake.log.calls(QStringLiteral("message ")); };
        const int before = told().size();
        window.CheckUpdateFromSettings(false);
        QCOMPARE(told().size(), before);
        window.CheckUpdateFromSettings(true);
        QCOMPARE(program.fake.log.calls(QStringLiteral("message 没有网络连接")).size(), 1);
        window.IsOnline = true;
        program.server.answering = [](const ScriptedRequest &) { return ScriptedAnswer::body("nonsense"); };
        window.CheckUpdateFromSettings(true);
        QTRY_COMPARE(program.fake.log.calls(QStringLiteral("message 更新服务器没有给出")).size(), 1);
    }

    /// The exit for an update waits for the end of what the user is saying, but not for ever.
    void handsOverBetweenSessions_data() { flagRows("the session ends", "it never does"); }
    void handsOverBetweenSessions()
    {
        const auto [ends] = rowOf<bool>();
        const QScopedValueRollback<int> look(MainWindow::quietLookMs, 5);
        const QScopedValueRollback<int> wait(MainWindow::quietWaitMs, ends ? 60000 : 100);
        Program program;
        MainWindow &window = *program.window;
        mevo::UpdateHands hands(window);
        QVector<bool> answers;
        const auto answer = [&answers](bool started) { answers.append(started); };
        window.ResultIdle = false;
        hands.handOver(answer);
        QVERIFY(answers.isEmpty() && window.recorder() != nullptr);
        if (ends) {
            QTest::qWait(50);
            QVERIFY(program.fake.log.calls().filter(updater).isEmpty());
            window.ResultIdle = true;
        }
        QTRY_COMPARE(answers, QVector<bool>{true});
        QVERIFY(window.recorder() == nullptr && window.isHandedOver());
        const QStringList calls = program.fake.log.calls();
        QVERIFY(calls.indexOf(updater) <
                calls.indexOf(QStringLiteral("sibling \\KeypadHost.exe ORVKBAppExit")));
        hands.handOver(answer); // once more, when everything has gone
        QCOMPARE(program.fake.log.calls().filter(updater).size(), 1);
    }

    /// A folder without an updater beside it is not ours to exchange, and one whose updater does not start is
    /// left as it is: the download page opens.
    void withoutAnUpdater()
    {
        Program program;
        MainWindow &window = *program.window;
        mevo::UpdateHands hands(window);
        QVERIFY(!hands.isForeignInstallation());
        program.fake.processes->notInstalled.append(QStringLiteral("\\..\\PatchRunner.exe"));
        QVERIFY(hands.isForeignInstallation());
        QVector<bool> answers;
        hands.handOver([&answers](bool started) { answers.append(started); });
        QCOMPARE(answers, QVector<bool>{false});
        QVERIFY(window.recorder() != nullptr && !window.isHandedOver());
        QCOMPARE(program.questions.size(), 2); // that there is none, and that there is no page either
    }

    /// The updater waits for the end of the program, and starts it: nobody else does.
    void nothingStartsItAnew()
    {
        Program program;
        program.window.reset();
        QTimer running;
        running.callOnTimeout([&] {
            MainWindow *const window = MainWindow::instance();
            if (window != nullptr && window->InitDone) {
                running.stop();
                mevo::UpdateHands hands(*window);
                hands.handOver([](bool) {});
                program.fake.singleInstance->startAgain(); // a user who misses it
                QApplication::exit(MainWindow::restartCode);
            }
        });
        running.start(1);
        // An exit of an earlier program has left the application as one whose waits end at once.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        mevo::runProgram(program.fake.platform);
        QCOMPARE(program.fake.log.calls().filter(updater).size(), 1);
        QCOMPARE(program.fake.log.calls(QStringLiteral("start ")), QStringList());
    }
};

QTEST_MAIN(TestUpdateHands)
#include "tst_update_hands.moc"
