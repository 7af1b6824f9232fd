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
        Started program;
        const QStringList wanted{"hid init"_s, identity, penPad, keypadHide, resetKeys};
        QCOMPARE(program.order(wanted), wanted);
        QCOMPARE(MainWindow::instance(), program.window.get());
        QVERIFY(program.window->InitDone && program.window->DeviceConnected);
        QCOMPARE(program.window->DongleID, "02-01-001357"_s);
        QCOMPARE(program.window->trayPicture(), ":/rec/ORDeviceConnect.png"_s);
        QVERIFY(program.window->VoiceTypeMode && !program.window->VoiceCommandWordMode);
        QVERIFY(!program.window->micTip()->isVisible());
        QCOMPARE(program.fake.hid->openHandles.load(), 2);
        QVERIFY(program.window->languageMenu()->actions().size() > 4);
    }

    void startWithoutAReceiverGoesOn()
    {
        Started program(false);
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
        QCOMPARE(program.window->trayPicture(), ":/rec/ORNoNetwork.png"_s);
        QVERIFY(program.fake.log.has("message 未连接外部网络 (3000)"_s));
        program.fake.networkState->kind = mevo::NetworkState::Connection::Lan;
        program.window->showOnline(2);
        QVERIFY(program.window->IsOnline && program.window->isVisible());
        program.fake.log.clear();
        program.window->showOnline(2);
        QVERIFY(program.fake.log.calls("message"_s).isEmpty());
        program.window->showOnline(-1);
        QVERIFY(!program.window->IsOnline && !program.window->isVisible());
    }

    void littleSpaceIsSaid()
    {
        Program program;
        program.fake.systemFacts->freeMiB = 99;
        program.start();
        QVERIFY(program.fake.log.has("message C盘空间太小，如不清理可能影响软件运行！ (2000)"_s));
    }

    void exitRunsInItsOrder_data()
    {
        // answer, refused (the system makes no entry), needsRights (an input method that runs with the
        // administrator's mark), leaves, startup (what is done about the start at login)
        const Rows<int, bool, bool, bool, QStringList> row;
        const QStringList made{"elevation clear"_s, "startup set 灵犀听写系统.lnk"_s};
        row("yes", 0, false, false, true, made);
        row("yes, but the entry cannot be made", 0, true, false, true, made);
        row("yes, the mark stays", 0, false, true, true, QStringList(made.mid(1)));
        row("back", 1, false, false, false, QStringList());
        row("no", 2, false, false, true, QStringList());
        row("question closed", -1, false, false, false, QStringList());
    }

    void exitRunsInItsOrder()
    {
        const auto [answer, refused, needsRights, leaves, startup] =
            rowOf<int, bool, bool, bool, QStringList>();
        Program program;
        program.answer = answer;
        program.start();
        program.fake.startupEntry->refuses = refused;
        program.window->LocalEnableASR3 = needsRights;
        program.window->LocalUseASR3Index = 1;
        program.fake.log.clear();
        program.window->on_exitAppAction();
        QCOMPARE(program.questions, QStringList{"自动启动软件"_s});
        QVERIFY(!program.window->ExitInProgress);
        QCOMPARE(program.order({"elevation clear"_s, "startup set 灵犀听写系统.lnk"_s}), startup);
        const QString stored = mevo::SettingsFile().value("AutoRunApp"_s).toString();
        QCOMPARE(stored, startup.isEmpty() || refused ? QString() : "1"_s);
        const QStringList wanted{keypadExit, latchOff, goodbye, hidExit};
        QCOMPARE(program.order(wanted), leaves ? wanted : QStringList());
        QCOMPARE(program.window->recorder() == nullptr, leaves);
        if (!leaves) {
            program.take(1, true);
            QVERIFY(program.window->Recording);
        }
    }

    void otherWaysOutAskNothing()
    {
        for (const auto leave : {&MainWindow::RebootAppDelayTimeout, &MainWindow::exitByItself}) {
            Started program;
            program.fake.windowSystem->byTitle["ORVQuillary"_s] = 5;
            program.fake.log.clear();
            (program.window.get()->*leave)();
            QVERIFY(program.questions.isEmpty());
            QVERIFY(program.fake.log.has("hid exit"_s));
            QCOMPARE(program.fake.log.has(penPad + " /close"_s), leave == &MainWindow::exitByItself);
        }
    }

    void whatTheEventLoopIsLeftWith_data()
    {
        const Rows<int, bool, int, bool> row; // code, free, expected, startsAnew
        row("end", 0, true, 0, false);
        row("failure", 3, true, 3, false);
        row("restart", 888, true, 0, true);
        row("second instance", 888, false, 0, false);
    }

    void whatTheEventLoopIsLeftWith()
    {
        const auto [code, free, expected, startsAnew] = rowOf<int, bool, int, bool>();
        Program program;
        program.fake.singleInstance->free = free;
        const WhenRunning leave([code = code] { QApplication::exit(code); });
        const int result = mevo::runProgram(program.fake.platform);
        QCOMPARE(result, expected);
        const QString started = "start "_s + QCoreApplication::applicationFilePath();
        const QStringList wanted{"secrets kept"_s, "lock released"_s, started};
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
        QVERIFY(program.fake.log.calls("start "_s).isEmpty());
        QVERIFY(!program.fake.singleInstance->called); // the door is closed with the event loop
    }

    void mainFunctionDoor()
    {
        Started program;
        program.window->CallMainFunctionSlot(17);
        QCOMPARE(program.window->trayPicture(), ":/rec/ORLowPower.png"_s);
        program.window->CallMainFunctionSlot(18);
        QCOMPARE(program.window->trayPicture(), ":/rec/ORDeviceConnect.png"_s);
        program.window->ResultIdle = false;
        program.window->QuickReleaseCount = program.window->QuickReleaseRun = 4;
        program.window->CallMainFunctionSlot(22);
        QVERIFY(program.window->ResultIdle);
        QCOMPARE(program.window->QuickReleaseCount + program.window->QuickReleaseRun, 0);
        program.take(1, true);
        QVERIFY(program.window->Recording);
        program.window->CallMainFunctionSlot(16);
        QVERIFY(program.fake.log.has("sleep 500"_s));
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
        Started program;
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
        Started program;
        program.fake.log.clear();
        program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal,
                                            "HID#VID_258A&PID_1016&MI_01&Col01"_s);
        QVERIFY(program.window->DeviceConnected);
        program.change(mevo::DeviceNotifier::Change::Removal);
        program.settle();
        QCOMPARE(program.order({keypadHide, goodbye, "hid exit"_s}),
                 QStringList({keypadHide, goodbye, "hid exit"_s}));
        QVERIFY(!program.window->DeviceConnected && program.window->DongleID.isEmpty());
        QVERIFY(program.window->HidInputHandle == nullptr && program.window->HeartbeatTimerId == 0);
        QCOMPARE(program.window->trayPicture(), ":/rec/ORDeviceDisConnect.png"_s);

        program.fake.log.clear();
        program.fake.hid->plug();
        program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival,
                                            "hid#vid_258a&pid_1016&mi_01&col02"_s);
        const qint64 before = program.fake.time->monotonicMs();
        program.settle();
        QVERIFY(program.fake.time->monotonicMs() - before >= 1000); // the keyboard's second is always waited
        QCOMPARE(program.fake.log.calls("sleep"_s), QStringList()); // and blocks nothing
        const QStringList wanted{"hid init"_s, identity, keypadExit, keypadHide, resetKeys};
        QCOMPARE(program.order(wanted), wanted);
        QVERIFY(program.window->DeviceConnected && program.window->HeartbeatTimerId != 0);
        QCOMPARE(program.window->DongleID, "02-01-001357"_s);

        program.fake.log.clear();
        program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Arrival);
        program.settle();
        QCOMPARE(program.fake.log.calls("hid"_s), QStringList{resetKeys});
    }

    void arrivalWithoutAnIdentityEndsTheProgram()
    {
        Started program(false);
        program.change(mevo::DeviceNotifier::Change::Arrival);
        program.settle();
        QCOMPARE(program.fake.log.calls(identity).size(), 1 + 51);
        QCOMPARE(program.questions, QStringList{"错误"_s});
        QVERIFY(program.window->isLeaving() && program.window->recorder() == nullptr);
    }

    void voiceInputClosesAndOpens()
    {
        Started program;
        MainWindow &window = *program.window;
        const QAction *action = nullptr;
        for (const QAction *each : window.findChildren<QAction *>()) {
            action = each->text() == "关闭语音识别"_s ? each : action;
        }
        QVERIFY(action != nullptr);
        const auto take = [&program](const std::function<void()> &step) {
            program.fake.log.clear();
            step();
            QStringList calls = program.fake.log.calls("hid send"_s);
            return calls + program.fake.log.calls("message"_s);
        };
        const auto click = [&window] { window.on_closeASRFuncAction(); };
        char press[mevo::keyReportSize] = {1, 0x70, 1, 1};

        program.fake.hid->sendResult = -1; // refused: it stops there
        QCOMPARE(take(click), QStringList{latchOff});
        QVERIFY(!window.ASRFuncClosed);
        program.fake.hid->sendResult = 8;
        window.ProcessResult(press);
        QVERIFY(window.Recording);
        QCOMPARE(take(click),
                 (QStringList{latchOff, goodbye, "message 3秒后会关闭语音输入识别功能！ (100)"_s}));
        QVERIFY(!window.Recording && !window.micTip()->isVisible()); // the microphone does not stay open
        QCOMPARE(action->text(), "打开语音输入识别"_s);
        QCOMPARE(take([&] { window.ProcessResult(press); }),
                 QStringList{"message 已关闭语音识别功能！ (100)"_s});
        QCOMPARE(take(click), (QStringList{"hid send 05 81 01 00 00 00 00 00"_s,
                                           "message 已打开语音输入识别功能！ (100)"_s}));
        QCOMPARE(action->text(), "关闭语音输入识别"_s);
        window.DeviceConnected = false;
        QCOMPARE(take(click), QStringList());
        QVERIFY(!window.ASRFuncClosed);
    }

    void tipWindowLatchesTheMicrophone_data()
    {
        const Rows<bool, int, bool> row; // plugged, sendResult, records
        row("with a receiver", true, 8, true);
        row("the receiver refuses", true, -1, false);
        row("without a receiver", false, -1, true);
    }

    void tipWindowLatchesTheMicrophone()
    {
        const auto [plugged, sendResult, records] = rowOf<bool, int, bool>();
        Program program(plugged);
        program.start();
        MainWindow &window = *program.window;
        window.ClickCanASR = true;
        window.micTip()->show();
        const auto reports = [&] {
            const QStringList sent = program.fake.log.calls("hid send 05 20"_s);
            program.fake.log.clear();
            return sent;
        };
        const QStringList on = plugged ? QStringList{"hid send 05 20 0c 00 00 00 00 00"_s} : QStringList();
        const auto off = [&, &plugged = plugged](int times) {
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
        QTRY_COMPARE(program.fake.log.calls("hid send 05 20"_s), on);
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
        QFile::remove(mevo::appFile("MEVOUndelivered.json"_s));
        const auto row = [](const Program &program) {
            const auto *menu = program.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
            const QString first = menu->actions().first()->text();
            return first.startsWith("未送达"_s) ? first : QString();
        };
        {
            Started program;
            program.window->FocusWindow = 0x11;
            program.window->recorder()->showRecText("甲乙丙丁__over__"_s);
            QVERIFY(program.fake.log.has("post 11 甲乙丙丁"_s));
            QCOMPARE(row(program), QString());
            program.fake.windowSystem->postLimit = 1;
            program.window->recorder()->showRecText("甲乙丙丁__over__"_s);
            program.fake.windowSystem->postLimit = 0;
            program.window->recorder()->showRecText("戊__over__"_s);
            program.window->Send2ScreenMethod = 1;
            program.window->FocusWindow = 0;
            program.window->recorder()->showRecText("己__over__"_s);
            QCOMPARE(row(program), "未送达的文字(3)"_s);
        }
        Started program;
        QCOMPARE(row(program), "未送达的文字(3)"_s);
        program.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly)
            ->actions()
            .first()
            ->trigger();
        auto *dialog = program.window->findChild<QDialog *>("UndeliveredDialog"_s);
        QVERIFY(dialog->isVisible() && dialog->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
        const auto click = [dialog](const char *button) {
            dialog->findChild<QPushButton *>(QLatin1String(button))->click();
        };
        program.fake.windowSystem->focused = 0x22;
        program.fake.windowSystem->postLimit = 2;
        click("pushButton_Type"); // the rest of the rest keeps its place in the list
        QVERIFY(program.fake.log.has("post 22 乙丙"_s));
        QCOMPARE(row(program), "未送达的文字(3)"_s);
        program.fake.windowSystem->postLimit = -1;
        click("pushButton_Type");
        QVERIFY(program.fake.log.has("post 22 丁"_s));
        QCOMPARE(row(program), "未送达的文字(2)"_s);
        click("pushButton_Copy");
        QCOMPARE(program.fake.clipboard->content, "戊"_s);
        click("pushButton_Remove");
        QCOMPARE(row(program), "未送达的文字(1)"_s);
        click("pushButton_RemoveAll");
        QCOMPARE(row(program), QString());
        QVERIFY(!dialog->isVisible());
        QVERIFY(!QFile::exists(mevo::appFile("MEVOUndelivered.json"_s)));
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
        QFile::remove(mevo::appFile("MEVOUndelivered.json"_s));
        Started program;
        program.fake.windowSystem->postLimit = 1;
        program.fake.windowSystem->postStop = stop;
        program.fake.windowSystem->focused = focused;
        program.window->Send2ScreenMethod = method;
        program.window->FocusWindow = 0x11;
        program.window->recorder()->showRecText("甲😀丙__over__"_s);
        QVERIFY(program.fake.log.has("post 11 甲"_s));
        const auto kept = [] {
            const mevo::UndeliveredTexts file(mevo::appFile("MEVOUndelivered.json"_s));
            return file.count() == 1 ? file.texts()[0].text : QString();
        };
        const QString rest = "😀丙"_s;
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
            program.window->findChild<QPushButton *>("pushButton_Type"_s)->click();
            QCOMPARE(program.fake.clipboard->content, rest);
            QCOMPARE(kept(), rest); // until the window has had it
            QTRY_COMPARE(kept(), QString());
        }
    }

    /// A kept text that waits for its turn at the clipboard when the program ends is there once.
    void anExitKeepsAWaitingPasteOnce()
    {
        QFile::remove(mevo::appFile("MEVOUndelivered.json"_s));
        const QScopedValueRollback<int> wait(MainWindow::exitWaitMs, 20);
        Started program;
        program.fake.windowSystem->postLimit = 0;
        program.window->FocusWindow = 0x11;
        program.window->recorder()->showRecText("甲😀__over__"_s);
        program.window->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly)
            ->actions()
            .first()
            ->trigger();
        program.fake.windowSystem->postStop = mevo::PostStop::Untypable;
        program.window->HidBusy = true; // the receiver types something else
        program.window->findChild<QPushButton *>("pushButton_Type"_s)->click();
        program.window->exitByItself();
        const mevo::UndeliveredTexts file(mevo::appFile("MEVOUndelivered.json"_s));
        QCOMPARE(file.count(), 1);
        QCOMPARE(file.texts()[0].text, "甲😀"_s);
    }

    /// The reader judges a key's mode by what it sees; keys that wait before it may change that.
    void aKeyHasItsOwnModeHoweverManyWait()
    {
        Started program;
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
        Started program;
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
        Started program;
        program.window->Send2ScreenMethod = 2;
        program.window->Send2Screen("甲"_s, 0, 100);
        program.take(1, true);
        QCOMPARE(program.fake.clipboard->content, "甲"_s);
        program.take(1, false);
    }

    /// A paste key that would go nowhere is not struck: the next press would take the text away.
    void aPasteWaitsForAWindow_data()
    {
        // comes, unseen, taken, hangs (from this question on: before the key, behind it), stays (or loses
        // the keyboard before the key comes), reads
        const Rows<bool, bool, bool, int, bool, bool> row;
        constexpr int never = 9;
        row("none has the keyboard", false, false, true, never, true, true);
        row("one gets it", true, false, true, never, true, true);
        row("one that cannot be seen may have it", false, true, true, never, true, true);
        row("the receiver does not take the key", true, false, false, never, true, true);
        row("it loses the keyboard again", true, false, true, never, false, true);
        row("its program hangs", true, false, true, 0, true, true);
        row("its program hangs behind the key", true, false, true, 1, true, true);
        row("it pastes nothing", true, false, true, never, true, false);
        row("nor does one that cannot be seen", false, true, true, never, true, false);
    }

    void aPasteWaitsForAWindow()
    {
        const auto [comes, unseen, taken, hangs, stays, reads] = rowOf<bool, bool, bool, int, bool, bool>();
        QFile::remove(mevo::appFile("MEVOUndelivered.json"_s));
        Started program;
        FakeWindowSystem &windows = *program.fake.windowSystem;
        windows.focused = 0;
        windows.unseen = unseen;
        windows.answers = hangs;
        program.fake.clipboard->isRead = reads;
        program.fake.hid->sendResult = taken ? 8 : -1;
        program.fake.clipboard->onSet = [&, &stays = stays] {
            windows.focused = stays ? windows.focused : 0;
        };
        program.window->Send2ScreenMethod = 2;
        program.window->Send2Screen("甲"_s, 0, 100);
        QCOMPARE(program.fake.log.has("clipboard set 甲"_s), unseen);
        windows.focused = comes ? 0x22 : 0;
        const bool pasted = (comes || unseen) && hangs > 0;
        const bool kept = !pasted || !taken || hangs == 1 || !stays || !reads;
        QTRY_COMPARE(program.fake.log.has("clipboard set 甲"_s), pasted);
        const QString told = "message 有文字未能输入，已保留在菜单的“未送达的文字”中。 (5000)"_s;
        QTRY_COMPARE(program.fake.log.has(told), kept);
        QTRY_VERIFY(!program.window->HidBusy);
        QCOMPARE(QFile::exists(mevo::appFile("MEVOUndelivered.json"_s)), kept);
        QFile::remove(mevo::appFile("MEVOUndelivered.json"_s));
    }

    void pastedTextsWaitForEachOther()
    {
        Started program;
        program.window->Send2ScreenMethod = 2;
        program.fake.log.clear();
        program.window->Send2Screen("甲"_s, 0, 100);
        program.window->Send2Screen("乙"_s, 0, 100);
        const QString second = "clipboard set 乙"_s;
        QTRY_VERIFY(program.fake.log.has(second));
        QTRY_VERIFY(!program.window->HidBusy);
        QStringList seen;
        for (const QString &call : program.fake.log.calls()) {
            if (call.startsWith(QLatin1String("clipboard set")) ||
                call.contains(QLatin1String("81 04 01 19"))) {
                seen.append(call);
            }
        }
        const QString paste = "hid send 05 81 04 01 19 00 00 00"_s;
        QCOMPARE(seen, QStringList({"clipboard set 甲"_s, paste, second, paste}));
    }

    void theBarsButtonsNeverTakeTheFocus()
    {
        Started program;
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
