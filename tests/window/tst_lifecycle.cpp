#include "app/RunProgram.h"
#include "audio/AudioRecorder.h"
#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "output/UndeliveredTexts.h"
#include "session/KeyReport.h"
#include "support/Rows.h"
#include "ui/MicTipDialog.h"
#include "window/Program.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QtTest>

using namespace calls; // NOLINT(google-build-using-namespace)

class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startRunsInItsOrder()
    {
        Program program;
        program.start();
        const QStringList wanted{QStringLiteral("hid init"), identity, penPad, keypadHide, resetKeys};
        QCOMPARE(program.order(wanted), wanted);
        QCOMPARE(MainWindow::instance(), program.window.get());
        QVERIFY(program.window->InitDone && program.window->DeviceConnected);
        QCOMPARE(program.window->DongleID, QStringLiteral("02-01-001357"));
        QCOMPARE(program.window->trayPicture(), QStringLiteral(":/rec/ORDeviceConnect.png"));
        QVERIFY(program.window->VoiceTypeMode && !program.window->VoiceCommandWordMode);
        QVERIFY(!program.window->micTip()->isVisible());
        QCOMPARE(program.fake.hid->openHandles.load(), 2);
        QVERIFY(program.window->languageMenu()->actions().size() > 4);
    }

    void startWithoutAReceiverGoesOn()
    {
        Program program(false);
        program.start();
        QVERIFY(program.window->InitDone);
        QVERIFY(program.window->DongleID.isEmpty());
        QVERIFY(program.fake.hid->sent().isEmpty());
    }

    void startOffline()
    {
        Program program;
        program.fake.networkState->kind = mevo::NetworkState::Connection::None;
        program.start();
        QVERIFY(!program.window->IsOnline);
        QCOMPARE(program.window->trayPicture(), QStringLiteral(":/rec/ORNoNetwork.png"));
        QVERIFY(program.fake.log.has(QStringLiteral("message 未连接外部网络 (3000)")));
        program.fake.networkState->kind = mevo::NetworkState::Connection::Lan;
        program.window->showOnline(2);
        QVERIFY(program.window->IsOnline && program.window->isVisible());
        program.fake.log.clear();
        program.window->showOnline(2);
        QVERIFY(program.fake.log.calls(QStringLiteral("message")).isEmpty());
        program.window->showOnline(-1);
        QVERIFY(!program.window->IsOnline && !program.window->isVisible());
    }

    void littleSpaceIsSaid()
    {
        Program program;
        program.fake.systemFacts->freeMiB = 99;
        program.start();
        QVERIFY(
            program.fake.log.has(QStringLiteral("message C盘空间太小，如不清理可能影响软件运行！ (2000)")));
    }

    void exitRunsInItsOrder_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("refused");     ///< the system makes no entry
        QTest::addColumn<bool>("needsRights"); ///< an input method that runs with the administrator's mark
        QTest::addColumn<bool>("leaves");
        QTest::addColumn<QStringList>("startup"); ///< what is done about the start at login
        const QStringList made{QStringLiteral("elevation clear"),
                               QStringLiteral("startup set 灵犀听写系统.lnk")};
        QTest::newRow("yes") << 0 << false << false << true << made;
        QTest::newRow("yes, but the entry cannot be made") << 0 << true << false << true << made;
        QTest::newRow("yes, the mark stays") << 0 << false << true << true << QStringList(made.mid(1));
        QTest::newRow("back") << 1 << false << false << false << QStringList();
        QTest::newRow("no") << 2 << false << false << true << QStringList();
        QTest::newRow("question closed") << -1 << false << false << false << QStringList();
    }

    void exitRunsInItsOrder()
    {
        QFETCH(int, answer);
        QFETCH(bool, refused);
        QFETCH(bool, needsRights);
        QFETCH(bool, leaves);
        QFETCH(QStringList, startup);
        Program program;
        program.answer = answer;
        program.start();
        program.fake.startupEntry->refuses = refused;
        program.window->LocalEnableASR3 = needsRights;
        program.window->LocalUseASR3Index = 1;
        program.fake.log.clear();
        program.window->on_exitAppAction();
        QCOMPARE(program.questions, QStringList{QStringLiteral("自动启动软件")});
        QVERIFY(!program.window->ExitInProgress);
        QCOMPARE(program.order(
                     {QStringLiteral("elevation clear"), QStringLiteral("startup set 灵犀听写系统.lnk")}),
                 startup);
        const QString stored = mevo::SettingsFile().value(QStringLiteral("AutoRunApp")).toString();
        QCOMPARE(stored, startup.isEmpty() || refused ? QString() : QStringLiteral("1"));
        const QStringList wanted{keypadExit, latchOff, goodbye, hidExit};
        QCOMPARE(program.order(wanted), leaves ? wanted : QStringList());
        QCOMPARE(program.window->recorder() == nullptr, leaves);
        if (!leaves) {
            char press[mevo::keyReportSize] = {1, 0x70, 1, 1};
            program.window->ProcessResult(press);
            QVERIFY(program.window->Recording);
        }
    }

    void otherWaysOutAskNothing()
    {
        for (const auto leave : {&MainWindow::RebootAppDelayTimeout, &MainWindow::exitByItself}) {
            Program program;
            program.start();
            program.fake.windowSystem->byTitle[QStringLiteral("ORVQuillary")] = 5;
            program.fake.log.clear();
            (program.window.get()->*leave)();
            QVERIFY(program.questions.isEmpty());
            QVERIFY(program.fake.log.has(QStringLiteral("hid exit")));
            QCOMPARE(program.fake.log.has(penPad + QStringLiteral(" /close")),
                     leave == &MainWindow::exitByItself);
        }
    }

    void whatTheEventLoopIsLeftWith_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("free");
        QTest::addColumn<int>("result");
        QTest::addColumn<bool>("startsAnew");
        QTest::newRow("end") << 0 << true << 0 << false;
        QTest::newRow("failure") << 3 << true << 3 << false;
        QTest::newRow("restart") << 888 << true << 0 << true;
        QTest::newRow("second instance") << 888 << false << 0 << false;
    }

    void whatTheEventLoopIsLeftWith()
    {
        QFETCH(int, code);
        QFETCH(bool, free);
        Program program;
        program.fake.singleInstance->free = free;
        const WhenRunning leave([code] { QApplication::exit(code); });
        const int result = mevo::runProgram(program.fake.platform);
        QTEST(result, "result");
        const QString started = QStringLiteral("start ") + QCoreApplication::applicationFilePath();
        const QStringList wanted{QStringLiteral("secrets kept"), QStringLiteral("lock released"), started};
        QFETCH(bool, startsAnew);
        QCOMPARE(program.order(wanted), startsAnew ? wanted : QStringList());
    }

    void aSecondStartOpensTheMenu()
    {
        Program program;
        const WhenRunning again([&program] {
            program.fake.singleInstance->startAgain();
            auto *menu = MainWindow::instance()->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
            QVERIFY(menu != nullptr && menu->isVisible() && menu->activeAction() != nullptr);
            menu->hide();
            QApplication::exit(0);
        });
        QCOMPARE(mevo::runProgram(program.fake.platform), 0);
    }

    /// Nothing but the question can be had while it stands, and what the user answers to it counts.
    void aSecondStartWhileTheExitIsAskedAbout_data()
    {
        QTest::addColumn<QByteArray>("what");
        QTest::newRow("plain") << QByteArray("show");
        QTest::newRow("talk window") << QByteArray("talk");
        QTest::newRow("settings") << QByteArray("settings");
    }
    void aSecondStartWhileTheExitIsAskedAbout()
    {
        QFETCH(QByteArray, what);
        Program program;
        program.onQuestion = [&] {
            program.fake.singleInstance->startAgain(what);
            QCOMPARE(program.fake.singleInstance->answers.size(), 1);
            QVERIFY(program.fake.singleInstance->answers.first().contains("refused"));
        };
        const WhenRunning leave([] { MainWindow::instance()->on_exitAppAction(); });
        QCOMPARE(mevo::runProgram(program.fake.platform), 0);
        QCOMPARE(program.questions.size(), 1);
        QVERIFY(program.fake.log.calls(QStringLiteral("start ")).isEmpty());
        QVERIFY(!program.fake.singleInstance->called); // the door is closed with the event loop
    }

    void mainFunctionDoor()
    {
        Program program;
        program.start();
        program.window->CallMainFunctionSlot(17);
        QCOMPARE(program.window->trayPicture(), QStringLiteral(":/rec/ORLowPower.png"));
        program.window->CallMainFunctionSlot(18);
        QCOMPARE(program.window->trayPicture(), QStringLiteral(":/rec/ORDeviceConnect.png"));
        program.window->ResultIdle = false;
        program.window->QuickReleaseCount = program.window->QuickReleaseRun = 4;
        program.window->CallMainFunctionSlot(22);
        QVERIFY(program.window->ResultIdle);
        QCOMPARE(program.window->QuickReleaseCount + program.window->QuickReleaseRun, 0);
        char press[mevo::keyReportSize] = {1, 0x70, 1, 1};
        program.window->ProcessResult(press);
        QVERIFY(program.window->Recording);
        program.window->CallMainFunctionSlot(16);
        QVERIFY(program.fake.log.has(QStringLiteral("sleep 500")));
        QVERIFY(!program.window->Recording);
        const QMenu *menu = program.window->languageMenu();
        program.window->recorder()->BaiDuNoStreamApi = false;
        program.window->CallMainFunctionSlot(21);
        QCOMPARE(program.window->languageMenu(), menu);
        program.window->recorder()->BaiDuNoStreamApi = true;
        program.window->CallMainFunctionSlot(21);
        QVERIFY(program.window->languageMenu() != menu);
        for (const int index : {-1, 0, 15, 19, 20, 23, 1000}) {
            program.window->CallMainFunctionSlot(index);
        }
    }

    void keepOnTop()
    {
        Program program;
        program.start();
        program.window->show();
        program.window->setWndTopMostTimeout();
        QVERIFY(program.window->isVisible());
        program.window->DeviceConnected = false;
        program.window->HidBusy = true;
        program.window->setWndTopMostTimeout();
        QVERIFY(program.window->isVisible()); // not while a key is typed
        program.window->HidBusy = false;
        program.window->NoDeviceMode = true;
        program.window->setWndTopMostTimeout();
        QVERIFY(program.window->isVisible());
        program.window->NoDeviceMode = false;
        program.window->setWndTopMostTimeout();
        QVERIFY(!program.window->isVisible());
    }

    void removalAndArrival()
    {
        Program program;
        program.start();
        program.fake.log.clear();
        program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal,
                                            QStringLiteral("HID#VID_258A&PID_1016&MI_01&Col01"));
        QVERIFY(program.window->DeviceConnected);
        program.change(mevo::DeviceNotifier::Change::Removal);
        program.settle();
        QCOMPARE(program.order({keypadHide, goodbye, QStringLiteral("hid exit")}),
                 QStringList({keypadHide, goodbye, QStringLiteral("hid exit")}));
        QVERIFY(!program.window->DeviceConnected && program.window->DongleID.isEmpty());
        QVERIFY(program.window->HidInputHandle == nullptr && program.window->HeartbeatTimerId == 0);
        QCOMPARE(program.window->trayPicture(), QStringLiteral(":/rec/ORDeviceDisConnect.png"));

        program.fake.log.clear();
        program.fake.hid->plug();
        program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival,
                                            QStringLiteral("hid#vid_258a&pid_1016&mi_01&col02"));
        const qint64 before = program.fake.time->monotonicMs();
        program.settle();
        QVERIFY(program.fake.time->monotonicMs() - before >= 1000); // the keyboard's second is always waited
        QCOMPARE(program.fake.log.calls(QStringLiteral("sleep")), QStringList()); // and blocks nothing
        const QStringList wanted{QStringLiteral("hid init"), identity, keypadExit, keypadHide, resetKeys};
        QCOMPARE(program.order(wanted), wanted);
        QVERIFY(program.window->DeviceConnected && program.window->HeartbeatTimerId != 0);
        QCOMPARE(program.window->DongleID, QStringLiteral("02-01-001357"));

        program.fake.log.clear();
        program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival);
        program.settle();
        QCOMPARE(program.fake.log.calls(QStringLiteral("hid")), QStringList{resetKeys});
    }

    void arrivalWithoutAnIdentityEndsTheProgram()
    {
        Program program(false);
        program.start();
        program.change(mevo::DeviceNotifier::Change::Arrival);
        program.settle();
        QCOMPARE(program.fake.log.calls(identity).size(), 1 + 51);
        QCOMPARE(program.questions, QStringList{QStringLiteral("错误")});
        QVERIFY(program.window->isLeaving() && program.window->recorder() == nullptr);
    }

    void aKeyReportReachesTheSession()
    {
        Program program;
        program.start();
        program.fake.hid->push(QByteArray::fromHex("01700101000000000000000000000000"));
        QTRY_VERIFY(program.window->Recording);
        program.fake.hid->push(QByteArray::fromHex("01700100000000000000000000000000"));
        QTRY_VERIFY(!program.window->Recording);
        program.fake.hid->push(QByteArray::fromHex("01700601000000000000000000000000"));
        QTRY_VERIFY(program.window->VoiceCommandWordMode && !program.window->VoiceTypeMode);
    }

    void voiceInputClosesAndOpens()
    {
        Program program;
        program.start();
        MainWindow &window = *program.window;
        const QAction *action = nullptr;
        for (const QAction *each : window.findChildren<QAction *>()) {
            action = each->text() == QStringLiteral("关闭语音识别") ? each : action;
        }
        QVERIFY(action != nullptr);
        const auto take = [&program](const std::function<void()> &step) {
            program.fake.log.clear();
            step();
            QStringList calls = program.fake.log.calls(QStringLiteral("hid send"));
            return calls + program.fake.log.calls(QStringLiteral("message"));
        };
        const auto click = [&window] { window.on_closeASRFuncAction(); };
        char press[mevo::keyReportSize] = {1, 0x70, 1, 1};

        program.fake.hid->sendResult = -1; // refused: it stops there
        QCOMPARE(take(click), QStringList{latchOff});
        QVERIFY(!window.ASRFuncClosed);
        program.fake.hid->sendResult = 8;
        window.ProcessResult(press);
        QVERIFY(window.Recording);
        QCOMPARE(take(click), (QStringList{latchOff, goodbye,
                                           QStringLiteral("message 3秒后会关闭语音输入识别功能！ (100)")}));
        QVERIFY(!window.Recording && !window.micTip()->isVisible()); // the microphone does not stay open
        QCOMPARE(action->text(), QStringLiteral("打开语音输入识别"));
        QCOMPARE(take([&] { window.ProcessResult(press); }),
                 QStringList{QStringLiteral("message 已关闭语音识别功能！ (100)")});
        QCOMPARE(take(click), (QStringList{QStringLiteral("hid send 05 81 01 00 00 00 00 00"),
                                           QStringLiteral("message 已打开语音输入识别功能！ (100)")}));
        QCOMPARE(action->text(), QStringLiteral("关闭语音输入识别"));
        window.DeviceConnected = false;
        QCOMPARE(take(click), QStringList());
        QVERIFY(!window.ASRFuncClosed);
    }

    void tipWindowLatchesTheMicrophone_data()
    {
        QTest::addColumn<bool>("plugged");
        QTest::addColumn<int>("sendResult");
        QTest::addColumn<bool>("records");
        QTest::newRow("with a receiver") << true << 8 << true;
        QTest::newRow("the receiver refuses") << true << -1 << false;
        QTest::newRow("without a receiver") << false << -1 << true;
    }

    void tipWindowLatchesTheMicrophone()
    {
        QFETCH(bool, plugged);
        QFETCH(int, sendResult);
        QFETCH(bool, records);
        Program program(plugged);
        program.start();
        MainWindow &window = *program.window;
        window.ClickCanASR = true;
        window.micTip()->show();
        const auto reports = [&] {
            const QStringList sent = program.fake.log.calls(QStringLiteral("hid send 05 20"));
            program.fake.log.clear();
            return sent;
        };
        const QStringList on =
            plugged ? QStringList{QStringLiteral("hid send 05 20 0c 00 00 00 00 00")} : QStringList();
        const auto off = [&](int times) {
            QStringList list;
            for (int i = 0; plugged && i < times; ++i) {
                list.append(latchOff);
            }
            return list;
        };
        reports();
        program.fake.hid->sendResult = sendResult;
        QTest::mousePress(window.micTip(), Qt::RightButton);
        QCOMPARE(reports(), on);
        QCOMPARE(window.Recording.load(), records);
        QCOMPARE(window.MicLatched.load(), records); // a latch without a session would only bar the keys
        if (records) {
            QTest::mousePress(window.micTip(), Qt::RightButton);
            QCOMPARE(reports(), off(2));
            QVERIFY(!window.Recording && !window.MicLatched);
        }
        QTest::mousePress(window.micTip(), Qt::LeftButton);
        QTRY_COMPARE(program.fake.log.calls(QStringLiteral("hid send 05 20")), on);
        QTRY_COMPARE(window.Recording.load(), records);
        reports();
        QTest::mouseRelease(window.micTip(), Qt::LeftButton);
        QCOMPARE(reports(), records ? off(1) : QStringList()); // nothing had started
        QVERIFY(!window.Recording);
    }

    /// What no window has taken waits in the list, survives the program, and goes from there into the window
    /// that has the focus then.
    void textIsPostedAndWhatDoesNotGoIsKept()
    {
        QFile::remove(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        const auto row = [](const Program &program) {
            const auto *menu = program.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
            const QString first = menu->actions().first()->text();
            return first.startsWith(QStringLiteral("未送达")) ? first : QString();
        };
        {
            Program program;
            program.start();
            program.window->FocusWindow = 0x11;
            program.window->recorder()->showRecText(QStringLiteral("甲乙丙丁__over__"));
            QVERIFY(program.fake.log.has(QStringLiteral("post 11 甲乙丙丁")));
            QCOMPARE(row(program), QString());
            program.fake.windowSystem->postLimit = 1;
            program.window->recorder()->showRecText(QStringLiteral("甲乙丙丁__over__"));
            program.fake.windowSystem->postLimit = 0;
            program.window->recorder()->showRecText(QStringLiteral("戊__over__"));
            program.window->Send2ScreenMethod = 1;
            program.window->FocusWindow = 0;
            program.window->recorder()->showRecText(QStringLiteral("己__over__"));
            QCOMPARE(row(program), QStringLiteral("未送达的文字(3)"));
        }
        Program program;
        program.start();
        QCOMPARE(row(program), QStringLiteral("未送达的文字(3)"));
        program.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly)
            ->actions()
            .first()
            ->trigger();
        auto *dialog = program.window->findChild<QDialog *>(QStringLiteral("UndeliveredDialog"));
        QVERIFY(dialog->isVisible() && dialog->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
        const auto click = [dialog](const char *button) {
            dialog->findChild<QPushButton *>(QLatin1String(button))->click();
        };
        program.fake.windowSystem->focused = 0x22;
        program.fake.windowSystem->postLimit = 2;
        click("pushButton_Type"); // the rest of the rest keeps its place in the list
        QVERIFY(program.fake.log.has(QStringLiteral("post 22 乙丙")));
        QCOMPARE(row(program), QStringLiteral("未送达的文字(3)"));
        program.fake.windowSystem->postLimit = -1;
        click("pushButton_Type");
        QVERIFY(program.fake.log.has(QStringLiteral("post 22 丁")));
        QCOMPARE(row(program), QStringLiteral("未送达的文字(2)"));
        click("pushButton_Copy");
        QCOMPARE(program.fake.clipboard->content, QStringLiteral("戊"));
        click("pushButton_Remove");
        QCOMPARE(row(program), QStringLiteral("未送达的文字(1)"));
        click("pushButton_RemoveAll");
        QCOMPARE(row(program), QString());
        QVERIFY(!dialog->isVisible());
        QVERIFY(!QFile::exists(mevo::appFile(QStringLiteral("MEVOUndelivered.json"))));
    }

    /// What a program takes from no key is pasted into it.
    void charactersThatNoKeyTypesArePasted_data()
    {
        const Rows<mevo::PostStop, int, mevo::WindowId, bool> row; // stop, method, focused, pasted
        using Stop = mevo::PostStop;
        row("pasted", Stop::Untypable, 0, 0x11, true);
        row("the program hangs", Stop::Hung, 0, 0x11, false);
        row("without the clipboard", Stop::Untypable, 1, 0x11, false);
        row("another window has the focus", Stop::Untypable, 0, 0x22, false);
    }
    void charactersThatNoKeyTypesArePasted()
    {
        const auto [stop, method, focused, pasted] = rowOf<mevo::PostStop, int, mevo::WindowId, bool>();
        QFile::remove(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        Program program;
        program.start();
        program.fake.windowSystem->postLimit = 1;
        program.fake.windowSystem->postStop = stop;
        program.fake.windowSystem->focused = focused;
        program.window->Send2ScreenMethod = method;
        program.window->FocusWindow = 0x11;
        program.window->recorder()->showRecText(QStringLiteral("甲😀丙__over__"));
        QVERIFY(program.fake.log.has(QStringLiteral("post 11 甲")));
        const auto kept = [] {
            const mevo::UndeliveredTexts file(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
            return file.count() == 1 ? file.texts()[0].text : QString();
        };
        const QString rest = QStringLiteral("😀丙");
        QCOMPARE(program.fake.clipboard->content == rest, pasted);
        QCOMPARE(kept(), pasted ? QString() : rest);
        // And from the list of what was kept.
        program.fake.windowSystem->postLimit = 0;
        program.fake.windowSystem->postStop = mevo::PostStop::Untypable;
        program.window->Send2ScreenMethod = 0;
        QTRY_VERIFY(!program.window->HidBusy);
        if (!pasted) {
            program.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly)
                ->actions()
                .first()
                ->trigger();
            program.window->findChild<QPushButton *>(QStringLiteral("pushButton_Type"))->click();
            QCOMPARE(program.fake.clipboard->content, rest);
            QCOMPARE(kept(), QString());
        }
    }

    /// The reader judges a key's mode by what it sees; keys that wait before it may change that.
    void aKeyHasItsOwnModeHoweverManyWait()
    {
        Program program;
        program.start();
        program.settle();
        const int seen = program.fake.hid->reads;
        for (const char *report : {"\1\x70\6\1", "\1\x70\6\0", "\1\x70\1\1"}) {
            program.fake.hid->push(QByteArray(report, 4) + QByteArray(12, '\0'));
        }
        // Without the event loop: all three are read before the first is taken.
        while (program.fake.hid->reads < seen + 5) {
            QThread::yieldCurrentThread();
        }
        QTRY_VERIFY(program.window->Recording && program.window->VoiceTypeMode);
        QVERIFY(!program.window->VoiceCommandWordMode && !program.window->OneShotCommandWord);
    }

    /// A latch stands for a session; without one it would keep the device's keys away for nothing.
    void aPressThatIsNotTakenLeavesNoLatch()
    {
        Program program;
        program.start();
        MainWindow &window = *program.window;
        window.ClickCanASR = true;
        window.micTip()->show();
        window.QuickReleaseCount = 1;
        program.fake.log.clear();
        QTest::mousePress(window.micTip(), Qt::RightButton);
        QVERIFY(!window.MicLatched && !window.Recording);
        QVERIFY(program.fake.log.has(latchOff));
        QTest::mousePress(window.micTip(), Qt::RightButton);
        QVERIFY(window.MicLatched && window.Recording);
        window.micTip()->hide(); // as the bar's microphone button does
        QTRY_VERIFY(!window.MicLatched && !window.Recording);
    }

    /// A press must not take a text away that is still on its way through the clipboard.
    void thePressLeavesAPasteItsClipboard()
    {
        Program program;
        program.start();
        program.window->Send2ScreenMethod = 2;
        program.window->Send2Screen(QStringLiteral("甲"), 0, 100);
        char press[mevo::keyReportSize] = {1, 0x70, 1, 1};
        program.window->ProcessResult(press);
        QCOMPARE(program.fake.clipboard->content, QStringLiteral("甲"));
        char release[mevo::keyReportSize] = {1, 0x70, 1, 0};
        program.window->ProcessResult(release);
    }

    /// A paste key that would go nowhere is not struck: the next press would take the text away.
    void aPasteWaitsForAWindow_data()
    {
        QTest::addColumn<bool>("comes");
        QTest::addColumn<bool>("unseen");
        QTest::addColumn<bool>("taken");
        QTest::addColumn<int>("hangs");  // from this question on: before the key, behind it
        QTest::addColumn<bool>("stays"); // or loses the keyboard before the key comes
        QTest::addColumn<bool>("reads");
        constexpr int never = 9;
        QTest::newRow("none has the keyboard") << false << false << true << never << true << true;
        QTest::newRow("one gets it") << true << false << true << never << true << true;
        QTest::newRow("one that cannot be seen may have it")
            << false << true << true << never << true << true;
        QTest::newRow("the receiver does not take the key")
            << true << false << false << never << true << true;
        QTest::newRow("it loses the keyboard again") << true << false << true << never << false << true;
        QTest::newRow("its program hangs") << true << false << true << 0 << true << true;
        QTest::newRow("its program hangs behind the key") << true << false << true << 1 << true << true;
        QTest::newRow("it pastes nothing") << true << false << true << never << true << false;
        QTest::newRow("nor does one that cannot be seen") << false << true << true << never << true << false;
    }

    void aPasteWaitsForAWindow()
    {
        QFETCH(bool, comes);
        QFETCH(bool, unseen);
        QFETCH(bool, taken);
        QFETCH(int, hangs);
        QFETCH(bool, stays);
        QFETCH(bool, reads);
        QFile::remove(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        Program program;
        program.start();
        FakeWindowSystem &windows = *program.fake.windowSystem;
        windows.focused = 0;
        windows.unseen = unseen;
        windows.answers = hangs;
        program.fake.clipboard->isRead = reads;
        program.fake.hid->sendResult = taken ? 8 : -1;
        program.fake.clipboard->onSet = [&] { windows.focused = stays ? windows.focused : 0; };
        program.window->Send2ScreenMethod = 2;
        program.window->Send2Screen(QStringLiteral("甲"), 0, 100);
        QCOMPARE(program.fake.log.has(QStringLiteral("clipboard set 甲")), unseen);
        windows.focused = comes ? 0x22 : 0;
        const bool pasted = (comes || unseen) && hangs > 0;
        const bool kept = !pasted || !taken || hangs == 1 || !stays || !reads;
        QTRY_COMPARE(program.fake.log.has(QStringLiteral("clipboard set 甲")), pasted);
        const QString told =
            QStringLiteral("message 有文字未能输入，已保留在菜单的“未送达的文字”中。 (5000)");
        QTRY_COMPARE(program.fake.log.has(told), kept);
        QTRY_VERIFY(!program.window->HidBusy);
        QCOMPARE(QFile::exists(mevo::appFile(QStringLiteral("MEVOUndelivered.json"))), kept);
        QFile::remove(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
    }

    void pastedTextsWaitForEachOther()
    {
        Program program;
        program.start();
        program.window->Send2ScreenMethod = 2;
        program.fake.log.clear();
        program.window->Send2Screen(QStringLiteral("甲"), 0, 100);
        program.window->Send2Screen(QStringLiteral("乙"), 0, 100);
        const QString second = QStringLiteral("clipboard set 乙");
        QTRY_VERIFY(program.fake.log.has(second));
        QTRY_VERIFY(!program.window->HidBusy);
        QStringList seen;
        for (const QString &call : program.fake.log.calls()) {
            if (call.startsWith(QLatin1String("clipboard set")) ||
                call.contains(QLatin1String("81 04 01 19"))) {
                seen.append(call);
            }
        }
        const QString paste = QStringLiteral("hid send 05 81 04 01 19 00 00 00");
        QCOMPARE(seen, QStringList({QStringLiteral("clipboard set 甲"), paste, second, paste}));
    }

    void theBarsButtonsNeverTakeTheFocus()
    {
        Program program;
        program.start();
        QVERIFY(program.window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
        const auto buttons = program.window->findChildren<QPushButton *>();
        QVERIFY(buttons.size() >= 8);
        for (const QPushButton *button : buttons) {
            QCOMPARE(button->focusPolicy(), Qt::NoFocus);
            QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
        }
    }
};

QTEST_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
