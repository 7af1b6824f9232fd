#include "session/SessionMachine.h"
#include "session/ThirdPartyKeys.h"
#include "support/CallLog.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::SessionMachine;

namespace {

/// Writes down what the session asks for.
class RecordingPort : public mevo::SessionPort
{
public:
    CallLog log;
    qint64 clock = 0;
    mevo::WindowId inputMethodWindow = 0;
    bool dialogTakesKeys = false;
    QStringList running;

    qint64 monotonicMs() const override { return clock; }
    void sleepMs(int milliseconds) override { log.add("sleep %1"_s.arg(milliseconds)); }
    void trayMessage(const QString &text, mevo::MessageIcon, int milliseconds) override
    {
        log.add("message %1 %2"_s.arg(text).arg(milliseconds));
    }
    void logReport(const QString &line) override { lastReport = line; }
    void clearClipboard() override { log.add("clear clipboard"_s); }
    void saveFocusWindow() override { log.add("save focus"_s); }
    void raiseBar() override { log.add("raise"_s); }
    void hideBar() override { log.add("hide bar"_s); }
    void placeBar(int right, int bottom) override { log.add("place %1 %2"_s.arg(right).arg(bottom)); }
    void showTipWindow(bool longPress) override { log.add(longPress ? "tip long press"_s : "tip show"_s); }
    void hideTipWindow() override { log.add("tip hide"_s); }
    void updateMicWin(const QString &picture) override { log.add(picture); }
    void preparePartialResults() override { log.add("partial"_s); }
    bool translationDialogTakesKeys() const override { return dialogTakesKeys; }
    void recordStart() override { log.add("record start"_s); }
    void recordStop() override
    {
        log.add("record stop"_s);
        if (duringStop) {
            std::exchange(duringStop, nullptr)();
        }
    }
    std::function<void()> duringStop; ///< what comes while the recogniser is waited for
    int lookUps = 0;
    mevo::WindowId findInputMethodWindow() override
    {
        ++lookUps;
        return inputMethodWindow;
    }
    void leaveInputMethod() override { log.add("leave"_s); }
    void startXunFeiInputMethod() override { log.add("start xunfei"_s); }
    void startProgram(const QString &path) override { log.add("start "_s + path); }
    bool isProgramRunning(const QString &name) override { return running.contains(name); }
    void awaitInputMethodWindow(const QString &windowClass) override { log.add("await "_s + windowClass); }
    void markInputMethodStarted() override { log.add("mark"_s); }
    void sendDeviceKey(int modifiers, int usage) override
    {
        log.add("key %1 %2"_s.arg(modifiers).arg(usage, 0, 16));
    }
    void tapCustomKey() override
    {
        sendDeviceKey(state->ASR3CustomCtrlShortCutKey, state->ASR3CustomShortCutKey);
        sleepMs(100);
        sendDeviceKey(0, 0);
    }
    const MainState *state = nullptr;
    void startPasteContentTimer() override { log.add("paste timer"_s); }
    void startTapTimer() override { log.add("tap timer"_s); }

    QString lastReport;
};

struct Desk
{
    MainState state;
    RecordingPort port;
    SessionMachine session{state, port};

    Desk()
    {
        port.state = &state;
        state.VoiceTypeMode = true;
        state.DeviceConnected = true;
    }
    void key(int number, int pressed, bool fromTip = false)
    {
        char report[mevo::keyReportSize] = {1, 0x70, static_cast<char>(number), static_cast<char>(pressed)};
        report[15] = fromTip;
        session.process(report);
    }
    /// The report of a key, and what has been asked for since the last look.
    QStringList take(int number, int pressed, bool fromTip = false)
    {
        key(number, pressed, fromTip);
        return calls();
    }
    /// A report that the reader doesn't pass on.
    void refused(int number, int pressed)
    {
        char report[mevo::keyReportSize] = {1, 0x70, static_cast<char>(number), static_cast<char>(pressed)};
        session.refuse(report);
        session.reset();
    }
    QStringList calls()
    {
        const QStringList taken = port.log.calls();
        port.log.clear();
        return taken;
    }
};

/// An input method is in force, and its window is there.
struct MethodDesk : Desk
{
    explicit MethodDesk(bool hold, int index = mevo::thirdPartyXunFei)
    {
        state.ThirdPartyActive = true;
        state.ASR3HoldToTalk = hold;
        state.LocalUseASR3Index = index;
        state.LocalASR3CustomInstallPath = "/opt/VoiceInput"_s;
        state.ASR3CustomShortCutKey = 0x3b;
        port.running = QStringList{"VoiceInput"_s};
        port.inputMethodWindow = 7;
    }
};

/// Voice input is for commands from now on, or for typing again, which is the input method's.
void takeCommands(Desk &desk, bool commands = true)
{
    desk.state.VoiceTypeMode = !commands;
    desk.state.VoiceCommandWordMode = commands;
}

const QStringList ownPress{"clear clipboard"_s, "partial"_s,  "save focus"_s,
                           "raise"_s,           "tip show"_s, ":/rec/MicSpeakPlease.png"_s,
                           "record start"_s};
const QStringList ownRelease{":/rec/MicLongPressSpeaking_NoActive.png"_s, "tip hide"_s, "record stop"_s};
const QString tooQuick = "message 松开按键太快！请长按松开后再正式语音输入！ 1000"_s;

} // namespace

using Set = std::function<void(Desk &)>;

class TestSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressIsTakenOrNot_data()
    {
        const Rows<int, QStringList, Set> add; // key, calls, set
        const Set nothing = [](Desk &) {};
        for (int key : {1, 2, 3, 6, 8, 14, 16}) {
            add(rowName("key %d", key), key, ownPress, nothing);
        }
        for (int key : {0, 4, 5, 7, 15, 17, 255}) {
            add(rowName("no voice key %d", key), key, QStringList(), nothing);
        }
        const auto row = [&](const char *name, const QStringList &calls, const Set &set) {
            add(name, 1, calls, set);
        };
        row("quota of Baidu", {}, [](Desk &d) { d.state.BaiduQuotaHit = true; });
        row("quota of XunFei", {}, [](Desk &d) { d.state.XunFeiQuotaHit = true; });
        row("quota of Tencent", {}, [](Desk &d) { d.state.TencentQuotaHit = true; });
        row("closed recognition", {"message 已关闭语音识别功能！ 100"_s},
            [](Desk &d) { d.state.ASRFuncClosed = true; });
        row("result under way", {}, [](Desk &d) { d.state.ResultIdle = false; });
        row("press to be ignored", ownPress.mid(0, 1), [](Desk &d) { d.state.QuickReleaseCount = 2; });
        row("release under way", ownPress.mid(0, 1), [](Desk &d) { d.state.KeyUpBusy = true; });
        row("clipboard method saves no focus", QStringList(ownPress.mid(0, 2)) + ownPress.mid(3),
            [](Desk &d) { d.state.Send2ScreenMethod = 2; });
        row("tip window already up", QStringList(ownPress.mid(0, 4)) + ownPress.mid(5),
            [](Desk &d) { d.state.MicWinShown = true; });
        row("translation dialog takes the key", ownPress.mid(0, 4), [](Desk &d) {
            d.state.DelimitTranslation = true;
            d.port.dialogTakesKeys = true;
        });
        row("our own input method window is closed first",
            QStringList(ownPress.mid(0, 1)) + QStringList{"leave"_s} + ownPress.mid(1), [](Desk &d) {
                d.port.inputMethodWindow = 7;
                d.state.ThirdPartyWindowOpen = true;
            });
        row("the newer XunFei window is left open", ownPress, [](Desk &d) {
            d.port.inputMethodWindow = 7;
            d.state.ThirdPartyWindowOpen = true;
            d.state.XFVM3 = true;
        });
        row("input method on, but the mode is commands", ownPress, [](Desk &d) {
            d.state.ThirdPartyActive = true;
            takeCommands(d);
        });
    }

    /// The first word waits while the windows of the desktop are asked for their names.
    void aPressLooksForNoWindow()
    {
        Desk desk;
        desk.port.inputMethodWindow = 7;
        desk.key(8, 1);
        QCOMPARE(desk.port.lookUps, 0);
        QCOMPARE(desk.calls(), ownPress);
    }

    void pressIsTakenOrNot()
    {
        const auto [key, calls, set] = rowOf<int, QStringList, Set>();
        Desk desk;
        set(desk);
        QCOMPARE(desk.take(key, 1), calls);
        QCOMPARE(desk.state.Recording.load(), calls.contains("record start"_s));
        QCOMPARE(desk.state.PressPending.load(), desk.state.Recording.load());
        QVERIFY(!desk.state.KeyDownBusy && !desk.state.KeyDownHeld);
    }

    void pressAndReleaseWalkTheStates()
    {
        Desk desk;
        desk.state.RecTextBuffer = "left over"_s;
        desk.state.PartialResultCount = 3;
        QCOMPARE(desk.take(1, 1), ownPress);
        QVERIFY(desk.state.MicWinShown && !desk.state.OneShotCommandWord);
        QVERIFY(desk.state.RecTextBuffer.isEmpty() && desk.state.PartialResultCount == 0);
        desk.port.clock += 1500;
        QCOMPARE(desk.take(1, 0), ownRelease);
        QVERIFY(!desk.state.Recording && !desk.state.PressPending && !desk.state.KeyUpBusy);
        QVERIFY(!desk.state.MicWinShown);
        QCOMPARE(desk.take(1, 0), QStringList());
        desk.key(6, 1);
        QVERIFY(desk.state.OneShotCommandWord);
        QCOMPARE(desk.port.lastReport, "MEVOInput:GetHIDData :01 70 06 01 00\n"_s);
    }

    void theTipWindowStaysWhenItTalksItself()
    {
        Desk desk;
        QVERIFY(desk.take(3, 1, true).contains("tip long press"_s));
        desk.port.clock += 1500;
        QVERIFY(!desk.take(1, 0, true).contains("tip hide"_s));
        QVERIFY(desk.state.MicWinShown && desk.state.MouseSession);
        desk.key(1, 1);
        QVERIFY(!desk.state.MouseSession);
    }

    void fourthShortReleaseWarnsAndCostsAPress()
    {
        Desk desk;
        for (int i = 1; i <= 4; ++i) {
            desk.key(1, 1);
            desk.port.clock += 999;
            desk.calls();
            desk.key(1, 0);
            const QStringList calls = desk.calls();
            QCOMPARE(calls.contains(tooQuick), i == 4);
            QVERIFY(calls.contains("record stop"_s));
        }
        QCOMPARE(desk.state.QuickReleaseCount.load(), 1);
        QVERIFY(!desk.take(1, 1).contains("record start"_s));
        desk.port.clock += 1000;
        desk.key(1, 0);
        QCOMPARE(desk.state.QuickReleaseRun.load(), 0);
        QVERIFY(desk.take(1, 1).contains("record start"_s));
    }

    void theNextPressMayComeDuringRecognition()
    {
        Desk desk;
        desk.key(1, 1);
        desk.port.clock += 1500;
        bool taken = false;
        desk.port.duringStop = [&] {
            QVERIFY(!desk.state.KeyUpBusy && !desk.state.Recording);
            desk.key(1, 1);
            taken = desk.state.Recording;
        };
        desk.key(1, 0);
        QVERIFY(taken);
        QVERIFY(desk.state.Recording && desk.state.PressPending && !desk.state.KeyUpBusy);
    }

    /// The key counts as down after a reset, and its release may still come.
    void resetStopsTheRecorderAndLeavesTheKeyDown()
    {
        for (const bool refusedToo : {false, true}) {
            Desk desk;
            desk.key(1, 1);
            desk.state.QuickReleaseCount = 3;
            desk.state.ResultIdle = false;
            desk.calls();
            desk.session.reset();
            QCOMPARE(desk.calls(), ownRelease);
            QVERIFY(desk.state.Recording && desk.state.PressPending && desk.state.ResultIdle);
            QVERIFY(!desk.state.MicWinShown);
            QCOMPARE(desk.state.QuickReleaseCount.load(), 0);
            desk.port.clock += 2000;
            desk.refused(6, 0);
            QVERIFY(desk.state.Recording);
            desk.calls();
            refusedToo ? desk.refused(1, 0) : desk.key(1, 0);
            QCOMPARE(desk.calls().mid(0, 3), ownRelease);
            QVERIFY(!desk.state.Recording && !desk.state.PressPending && !desk.state.KeyUpBusy);
        }
    }

    /// A second key while one is held: what was said under the first is recognised, and the release of the
    /// first does not end what is being said under the second.
    void aSecondKeyEndsTheFirstOnesSession_data()
    {
        const Rows<bool, bool> row; // firstGoesFirst, byTipWindow (the second press)
        for (const bool first : {true, false}) {
            row(qPrintable(
                    QString::asprintf("key, %s", first ? "the first goes first" : "the second goes first")),
                first, false);
            row(rowName("tip window, %s", first ? "the first goes first" : "the second goes first"), first,
                true);
        }
    }

    void aSecondKeyEndsTheFirstOnesSession()
    {
        const auto [firstGoesFirst, byTipWindow] = rowOf<bool, bool>();
        Desk desk;
        desk.take(1, 1);
        desk.port.clock += 1500;
        desk.key(byTipWindow ? 3 : 6, 1, byTipWindow);
        QStringList again(ownPress);
        again.removeAll("tip show"_s);
        again.insert(1, "record stop"_s); // before anything of the first one is put away
        QCOMPARE(desk.calls(), again);
        desk.port.clock += 1500;
        const auto releaseSecond = [&, &byTipWindow = byTipWindow] {
            QCOMPARE(desk.take(byTipWindow ? 1 : 6, 0, byTipWindow).count("record stop"_s), 1);
        };
        if (!firstGoesFirst) {
            releaseSecond();
        }
        QCOMPARE(desk.take(1, 0), QStringList());
        QCOMPARE(desk.state.Recording.load(), firstGoesFirst);
        if (firstGoesFirst) {
            releaseSecond();
        }
        QVERIFY(!desk.state.Recording && !desk.state.KeyUpBusy);
        // Nothing is left of it for the next session.
        desk.key(1, 1);
        desk.port.clock += 1500;
        desk.key(1, 0);
        QVERIFY(!desk.state.Recording);
    }

    /// A press that was ignored has a release as well, and that is not the one of the session that runs.
    void anIgnoredPressEndsNothing()
    {
        Desk desk;
        desk.key(1, 1);
        desk.state.QuickReleaseCount = 1;
        desk.take(6, 1);
        desk.port.clock += 1500;
        QCOMPARE(desk.take(6, 0), QStringList());
        QVERIFY(desk.state.Recording);
        desk.key(1, 0);
        QVERIFY(!desk.state.Recording);
    }

    /// The mode may change between press and release, and the road that the press has taken is walked to its
    /// end.
    void aReleaseWalksTheRoadOfItsPress()
    {
        Desk desk;
        desk.state.ThirdPartyActive = true;
        takeCommands(desk);
        desk.key(6, 1);
        QVERIFY(desk.state.Recording);
        takeCommands(desk, false);
        desk.calls();
        QVERIFY(desk.take(6, 0).contains("record stop"_s));
        takeCommands(desk);
        // A session that was reset and never released does not keep the input method's key down.
        desk.key(6, 1);
        desk.session.reset();
        desk.state.ASR3HoldToTalk = true;
        takeCommands(desk, false);
        desk.take(1, 1);
        QCOMPARE(desk.take(1, 0).mid(0, 2), (QStringList{"paste timer"_s, "key 0 0"_s}));
        desk.state.Recording = false;
        // Without one of the two methods of a window there is no hot key to type.
        desk.state.LocalUseASR3Index = mevo::thirdPartyNone;
        desk.key(1, 1);
        QVERIFY(desk.state.Recording);
        desk.state.Recording = false;
        desk.calls();
        QCOMPARE(desk.take(1, 0), QStringList());
    }

    /// A method that has been left while its key was held does not leave the key down.
    void aHeldHotKeyIsLetGo_data()
    {
        const Rows<Set> row; // meanwhile
        row("another engine", [](Desk &d) { d.state.ThirdPartyActive = false; });
        row("another mode", [](Desk &d) {
            d.state.VoiceTypeMode = false;
            d.state.VoiceSearchMode = true;
        });
        row("a method that is tapped", [](Desk &d) {
            d.state.LocalUseASR3Index = mevo::thirdPartySogou;
            d.state.ASR3HoldToTalk = false;
        });
        row("a custom one that the record has withdrawn", [](Desk &d) {
            d.state.LocalUseASR3Index = mevo::thirdPartyCustom;
            d.state.ShowASR3Custom = false;
        });
    }

    void aHeldHotKeyIsLetGo()
    {
        const auto [meanwhile] = rowOf<Set>();
        MethodDesk desk(true);
        QCOMPARE(desk.take(1, 1).last(), "key 0 3f"_s);
        meanwhile(desk);
        QCOMPARE(desk.take(1, 0), QStringList{"key 0 0"_s}); // and another method is not begun
        QCOMPARE(desk.state.QuickReleaseRun.load(), 0);
        QVERIFY(desk.take(1, 0).filter("key "_s).isEmpty()); // once
    }

    /// Another key begins a session of an own engine while the input method's is held: that session ends with
    /// its own key.
    void aSessionBesideAHeldHotKeyIsItsOwn_data() { flagRows("held", "tapped"); }
    void aSessionBesideAHeldHotKeyIsItsOwn()
    {
        const auto [hold] = rowOf<bool>();
        MethodDesk desk(hold);
        desk.take(1, 1);
        takeCommands(desk);
        QCOMPARE(desk.take(6, 1).filter("key "_s), hold ? QStringList{"key 0 0"_s} : QStringList());
        desk.key(1, 0);
        QVERIFY(desk.state.Recording);
        QVERIFY(desk.calls().isEmpty());
        desk.key(6, 0);
        QVERIFY(!desk.state.Recording);
    }

    /// The other way round: the own session ends with the press that is the input method's.
    void anInputMethodsPressEndsASession()
    {
        MethodDesk desk(true);
        takeCommands(desk);
        desk.key(6, 1);
        QVERIFY(desk.state.Recording);
        desk.calls();
        takeCommands(desk, false);
        desk.key(1, 1);
        QVERIFY(!desk.state.Recording);
        QCOMPARE(desk.calls(),
                 (QStringList{"clear clipboard"_s, "key 0 3f"_s, "record stop"_s, "tip hide"_s}));
        QVERIFY(desk.take(6, 0).isEmpty());
        QCOMPARE(desk.take(1, 0).mid(0, 2), (QStringList{"paste timer"_s, "key 0 0"_s}));
    }

    /// Begun while the source pane of the translation window had the keyboard, released when it has it no
    /// longer: the microphone does not stay open.
    void theTranslationWindowTakesTheKeysMeanwhile()
    {
        Desk desk;
        desk.state.DelimitTranslation = true;
        desk.key(1, 1);
        QVERIFY(desk.state.Recording);
        desk.calls();
        desk.port.dialogTakesKeys = true;
        QCOMPARE(desk.take(1, 0), ownRelease);
        QVERIFY(!desk.state.Recording && !desk.state.PressPending && !desk.state.KeyUpBusy);
    }

    /// The release can no longer come: the input method is told all the same, once.
    void anInputMethodsPressIsEnded_data()
    {
        const Rows<bool, bool, bool, QStringList> row; // pressed, hold, leftSince, first
        row("held", true, true, false, QStringList{"paste timer"_s, "key 0 0"_s});
        row("tapped", true, false, false, QStringList{"paste timer"_s, "tap timer"_s});
        row("held, and left since", true, true, true, QStringList{"key 0 0"_s});
        row("tapped, and left since", true, false, true, QStringList{"tap timer"_s});
        row("no press", false, true, false, QStringList());
    }
    void anInputMethodsPressIsEnded()
    {
        const auto [pressed, hold, leftSince, first] = rowOf<bool, bool, bool, QStringList>();
        MethodDesk desk(hold);
        if (pressed) {
            desk.take(1, 1);
        }
        desk.state.ThirdPartyActive = !leftSince;
        desk.session.endInputMethodPress();
        QCOMPARE(QStringList(desk.calls().mid(0, 2)), first);
        desk.session.endInputMethodPress();
        QVERIFY(desk.calls().isEmpty());
    }

    void aPressEndsWithoutItsRelease_data()
    {
        const Rows<Set, bool, QStringList> row; // instead, hold, calls
        const Set reset = [](Desk &d) { d.refused(1, 0); };
        const Set allowance = [](Desk &d) {
            d.state.TencentQuotaHit = true;
            d.key(1, 0);
            d.state.TencentQuotaHit = false;
        };
        const Set closed = [](Desk &d) {
            d.state.ThirdPartyActive = false;
            d.state.ASRFuncClosed = true;
            d.key(1, 0);
        };
        const QString letGo = "key 0 0"_s;
        const QStringList held{"paste timer"_s, letGo};
        const QStringList tapped{"paste timer"_s, "tap timer"_s};
        row("reset, held", reset, true, held);
        row("reset, tapped", reset, false, tapped);
        row("allowance used up, held", allowance, true, held);
        row("allowance used up, tapped", allowance, false, tapped);
        row("left, and recognition closed", closed, true,
            QStringList{letGo, "message 已关闭语音识别功能！ 100"_s});
    }
    /// Something else comes, or the release is not taken: the input method hears of it all the same, once.
    void aPressEndsWithoutItsRelease()
    {
        const auto [instead, hold, calls] = rowOf<Set, bool, QStringList>();
        MethodDesk desk(hold);
        desk.take(1, 1);
        instead(desk);
        QCOMPARE(QStringList(desk.calls().mid(0, calls.size())), calls);
        desk.state.ASRFuncClosed = false;
        desk.state.ThirdPartyActive = true;
        QVERIFY(desk.take(1, 0).isEmpty()); // it comes after all
        desk.take(1, 1);
        QCOMPARE(desk.take(1, 0).mid(0, 1), QStringList{"paste timer"_s});
    }

    void aReleaseWithoutItsPressIsNoInputMethods_data()
    {
        const Rows<int> row; // index
        row("Sogou", int(mevo::thirdPartySogou));
        row("custom", int(mevo::thirdPartyCustom));
    }
    /// A press that came while a result was being handled has begun nothing that a tap could end.
    void aReleaseWithoutItsPressIsNoInputMethods()
    {
        const auto [index] = rowOf<int>();
        MethodDesk desk(false, index);
        desk.port.clock = 5000;
        desk.state.ResultIdle = false;
        desk.key(1, 1);
        desk.state.ResultIdle = true;
        QVERIFY(desk.take(1, 0).isEmpty());
    }

    void aClickHasStartedIt_data()
    {
        // index, program (of the custom method), hold, passed (since its window is there, ms), typed (by
        // the first press)
        const Rows<int, QString, bool, int, bool> row;
        row("Sogou", 2, "", false, 9999, false);
        row("long ago", 2, "", false, 10000, true);
        row("XunFei, which is held", 1, "", true, 1000, true);
        row("custom", 3, "/opt/VoiceInput", false, 1000, false);
        row("custom, which does not listen by itself", 3, "/opt/SpeechInput", false, 1000, true);
    }
    /// A fresh window of a tapped method listens: the first press goes on with that, as it does with a window
    /// that it starts itself.
    void aClickHasStartedIt()
    {
        const auto [index, program, hold, passed, typed] = rowOf<int, QString, bool, int, bool>();
        MethodDesk desk(hold, index);
        desk.state.LocalASR3CustomInstallPath = program;
        desk.port.running = QStringList{"VoiceInput"_s, "SpeechInput"_s};
        desk.session.inputMethodStartedByClick();
        desk.port.clock += 7000; // until its window is there
        if (index != mevo::thirdPartyCustom) {
            QVERIFY(!desk.port.log.calls().filter("await "_s).isEmpty());
            desk.session.inputMethodCame();
        }
        desk.calls();
        desk.port.clock += passed;
        QCOMPARE(!desk.take(1, 1).filter("key "_s).isEmpty(), typed);
        desk.key(1, 0);
        const QStringList release = desk.calls();
        QVERIFY(release.contains("tap timer"_s) || !release.filter("key "_s).isEmpty());
        QVERIFY(!desk.take(1, 1).filter("key "_s).isEmpty()); // from now on as ever
    }

    void aClickIsOver_data()
    {
        const Rows<Set> row; // since
        row("another method", [](Desk &d) { d.state.LocalUseASR3Index = mevo::thirdPartyXunFei; });
        row("its window has been closed", [](Desk &d) { d.session.inputMethodLeft(); });
        row("the receiver was pulled out", [](Desk &d) { d.session.receiverGone(); });
    }
    void aClickIsOver()
    {
        const auto [since] = rowOf<Set>();
        MethodDesk desk(false, mevo::thirdPartySogou);
        desk.session.inputMethodStartedByClick();
        since(desk);
        QCOMPARE(desk.take(1, 1).filter("key "_s).size(), 2);
    }

    void aReceiverIsPulledOutOfAPress_data()
    {
        const Rows<int, bool, int, bool> row; // index, hold, away (ms), typed (by the press after it)
        row("tapped", int(mevo::thirdPartySogou), false, 5000, false);
        row("tapped, custom", int(mevo::thirdPartyCustom), false, 5000, false);
        row("silent by now", int(mevo::thirdPartySogou), false, 60000, true);
        row("held", int(mevo::thirdPartySogou), true, 5000, true);
        row("held, custom", int(mevo::thirdPartyCustom), true, 5000, true);
    }
    /// Nobody can tap the method's key again; the first tap after it would end what still listens.
    void aReceiverIsPulledOutOfAPress()
    {
        const auto [index, hold, away, typed] = rowOf<int, bool, int, bool>();
        MethodDesk desk(false, index);
        desk.state.ASR3HoldToTalk = desk.state.ASR3CustomHoldToTalk = hold;
        desk.state.LocalASR3CustomInstallPath = "/opt/talk"_s;
        desk.port.running = QStringList{"talk"_s};
        QVERIFY(!desk.take(1, 1).filter("key "_s).isEmpty());
        desk.session.receiverGone();
        desk.port.clock += away;
        QCOMPARE(!desk.take(1, 1).filter("key "_s).isEmpty(), typed);
        desk.key(1, 0);
        const QStringList release = desk.calls();
        QVERIFY(release.contains("tap timer"_s) || !release.filter("key "_s).isEmpty());
        QVERIFY(!desk.take(1, 1).filter("key "_s).isEmpty()); // from now on as ever
    }

    /// The window that a click brings up is not there yet.
    void aPressComesBeforeTheClicksWindow()
    {
        Desk desk;
        desk.state.ThirdPartyActive = desk.state.LocalMustClickRunASR3 = true;
        desk.state.LocalUseASR3Index = mevo::thirdPartySogou;
        desk.session.inputMethodStartedByClick();
        QVERIFY(desk.take(1, 1).filter("key "_s).isEmpty());
        QVERIFY(desk.take(1, 0).contains("tap timer"_s));
    }

    void aTappedMethodIsEndedWhateverHasCome_data()
    {
        const Rows<int, QStringList, Set> row; // index, calls (at the release), meanwhile
        const QStringList timer{"tap timer"_s};
        const QStringList tap{"key 0 3b"_s, "sleep 100"_s, "key 0 0"_s};
        const Set otherMode = [](Desk &d) {
            d.state.VoiceTypeMode = false;
            d.state.VoiceSearchMode = true;
        };
        row("another mode", 2, timer, otherMode);
        row("another engine", 2, timer, [](Desk &d) { d.state.ThirdPartyActive = false; });
        row("another mode, and its window has gone", 2, QStringList(), [otherMode](Desk &d) {
            otherMode(d);
            d.port.inputMethodWindow = 0;
        });
        row("another method, which is not begun", 2, QStringList(),
            [](Desk &d) { d.state.LocalUseASR3Index = mevo::thirdPartyCustom; });
        row("custom, which knows no modes", 3, tap, otherMode);
        row("custom, withdrawn", 3, tap, [](Desk &d) { d.state.ShowASR3Custom = false; });
        row("custom, withdrawn and ended", 3, QStringList(), [](Desk &d) {
            d.state.ShowASR3Custom = false;
            d.port.running.clear();
        });
    }
    /// It would go on listening, and its next press would end it instead of beginning.
    void aTappedMethodIsEndedWhateverHasCome()
    {
        const auto [index, calls, meanwhile] = rowOf<int, QStringList, Set>();
        MethodDesk desk(false, index);
        desk.take(1, 1);
        meanwhile(desk);
        QCOMPARE(desk.take(1, 0), calls);
        desk.session.endInputMethodPress(); // nothing is left of it
        QVERIFY(desk.calls().isEmpty());
    }

    /// The press of an own engine comes while a tapped method listens: that is ended, behind the recorder's
    /// beginning, and its window is closed by a later press only.
    void aTappedMethodIsEndedByASession()
    {
        MethodDesk desk(false, mevo::thirdPartySogou);
        desk.state.ThirdPartyWindowOpen = true;
        desk.take(1, 1);
        takeCommands(desk);
        QCOMPARE(desk.take(6, 1), ownPress + QStringList{"tap timer"_s});
        desk.take(6, 0);
        QCOMPARE(desk.take(6, 1).value(1), "leave"_s);
    }

    void aSecondKeyWhileATappedMethodListens_data()
    {
        const Rows<int, bool> row; // index, running (at the first press)
        for (const int index : {2, 3}) {
            for (const bool running : {true, false}) {
                row(rowName("method %d, %s", index, running ? "runs" : "is started"), index, running);
            }
        }
    }
    /// A second tap would end it, and the release begin it anew.
    void aSecondKeyWhileATappedMethodListens()
    {
        const auto [index, running] = rowOf<int, bool>();
        Desk desk;
        desk.state.ThirdPartyActive = desk.state.ShowASR3Custom = true;
        desk.state.LocalUseASR3Index = index;
        desk.state.LocalASR3SougoInstallPath = desk.state.LocalASR3CustomInstallPath = "/opt/VoiceInput"_s;
        desk.state.ASR3CustomShortCutKey = 0x3b;
        const auto run = [&desk] {
            desk.port.running = QStringList{"VoiceInput"_s};
            desk.port.inputMethodWindow = 7;
        };
        if (running) {
            run();
        }
        QCOMPARE(desk.take(1, 1).filter("key "_s).size(), running ? 2 : 0);
        run();
        QVERIFY(desk.take(3, 1).filter("key "_s).isEmpty());
        QVERIFY(desk.take(1, 0).isEmpty());
        QVERIFY(desk.take(3, 0).contains(index == 2 ? "tap timer"_s : "key 0 3b"_s));
        // It has ended in between: then it is begun as ever.
        desk.key(1, 1);
        desk.port.running.clear();
        desk.port.inputMethodWindow = 0;
        desk.calls();
        QVERIFY(desk.take(3, 1).contains("start /opt/VoiceInput"_s));
    }

    void aLostReleaseCostsNoPress_data()
    {
        const Rows<int> row; // index
        row("Sogou", 2);
        row("custom", 3);
    }
    /// The method has fallen silent since: the next press of the same key begins it anew.
    void aLostReleaseCostsNoPress()
    {
        const auto [index] = rowOf<int>();
        MethodDesk desk(false, index);
        for (int press = 0; press < 2; ++press) {
            QCOMPARE(desk.take(1, 1).filter("key "_s), (QStringList{"key 0 3b"_s, "key 0 0"_s}));
        }
    }

    /// While a result is being handled a second key is told to the session, but ends nothing.
    void aKeyThatIsNotTakenEndsNoOther_data() { flagRows("held", "tapped"); }
    void aKeyThatIsNotTakenEndsNoOther()
    {
        const auto [hold] = rowOf<bool>();
        MethodDesk desk(hold);
        desk.take(1, 1);
        for (const int pressed : {1, 0}) {
            desk.refused(6, pressed);
            QCOMPARE(desk.calls(), QStringList{"record stop"_s});
        }
        QCOMPARE(desk.take(1, 0).value(1), hold ? "key 0 0"_s : "tap timer"_s);
    }

    /// While the input method's key is held no other key's release lets it go: neither of one whose press was
    /// not taken nor of one that it has overtaken.
    void onlyItsOwnKeyEndsAnInputMethodsPress()
    {
        MethodDesk desk(true);
        desk.take(1, 1);
        QVERIFY(desk.take(8, 0).isEmpty());
        desk.key(3, 1); // the later one has it now
        desk.calls();
        QVERIFY(desk.take(1, 0).isEmpty());
        QCOMPARE(desk.take(3, 0).mid(0, 2), (QStringList{"paste timer"_s, "key 0 0"_s}));
        desk.key(3, 1);
        desk.key(1, 1);
        desk.take(1, 0);
        QVERIFY(desk.take(3, 0).isEmpty()); // overtaken, and nothing is held any more
    }

    void aCustomMethodsKeyWaitsForItsWindow_data() { flagRows("held", "tapped"); }
    /// However long it takes to start: what is typed before its window is there is lost.
    void aCustomMethodsKeyWaitsForItsWindow()
    {
        const auto [hold] = rowOf<bool>();
        Desk desk;
        desk.state.ThirdPartyActive = desk.state.ShowASR3Custom = true;
        desk.state.LocalUseASR3Index = mevo::thirdPartyCustom;
        desk.state.LocalASR3CustomInstallPath = "/opt/talk"_s;
        desk.state.ASR3CustomShortCutKey = 0x42;
        desk.state.ASR3CustomHoldToTalk = hold;
        desk.state.ASR3CustomWinClassName = "Talk"_s;
        const QStringList start{"clear clipboard"_s, "start /opt/talk"_s, "await Talk"_s};
        const QStringList tap{"key 0 42"_s, "sleep 100"_s, "key 0 0"_s};
        QCOMPARE(desk.take(1, 1), start);
        desk.session.inputMethodCame();
        QCOMPARE(desk.calls(), hold ? QStringList(tap.mid(0, 1)) : tap);
        desk.session.inputMethodCame(); // once
        QVERIFY(desk.calls().isEmpty());
        QCOMPARE(desk.take(1, 0), hold ? QStringList(tap.mid(2)) : tap);
        // Let go before it is there: neither end of the key is typed.
        QCOMPARE(desk.take(1, 1), start);
        desk.key(1, 0);
        desk.session.inputMethodCame();
        QVERIFY(desk.calls().isEmpty());
        // A second sentence before it is there waits as well.
        desk.key(1, 1);
        desk.key(1, 0);
        desk.port.running = QStringList{"talk"_s};
        desk.calls();
        QCOMPARE(desk.take(1, 1), QStringList(start.mid(0, 1)));
        desk.session.inputMethodCame();
        QCOMPARE(desk.calls(), hold ? QStringList(tap.mid(0, 1)) : tap);
        desk.take(1, 0);
        desk.port.running.clear();
        // The receiver is pulled out, and put in again before it is there: nobody would let the key go.
        desk.take(1, 1);
        desk.session.receiverGone();
        desk.session.inputMethodCame();
        QVERIFY(desk.take(1, 0).isEmpty());
        // Another method has taken its place meanwhile.
        desk.take(1, 1);
        desk.state.ThirdPartyActive = false;
        desk.session.inputMethodCame();
        QVERIFY(desk.take(1, 0).filter("key "_s).isEmpty());
    }

    void aReleaseWithoutItsPressKeepsTheKeyBusy()
    {
        Desk desk;
        desk.state.Recording = true;
        desk.port.clock = 5000;
        QCOMPARE(desk.take(1, 0), QStringList());
        QVERIFY(desk.state.KeyUpBusy);
    }

    void oddReportsAreIgnored_data()
    {
        const Rows<QByteArray> row; // report
        row("other marker", QByteArray("\x01\x20\x01\x01", 4));
        row("neither press nor release", QByteArray("\x01\x70\x01\x02", 4));
        row("all ones", QByteArray(16, '\xff'));
        row("zeros", QByteArray());
    }

    void oddReportsAreIgnored()
    {
        auto [report] = rowOf<QByteArray>();
        Desk desk;
        report.resize(mevo::keyReportSize);
        desk.session.process(report.constData());
        QCOMPARE(desk.calls(), QStringList());
    }

    void inputMethodIsDrivenByItsHotKey_data()
    {
        const Rows<QString, QString, Set> row; // press, release, set
        row("XunFei open, hold", "clear clipboard|key 5 3f",
            "paste timer|key 0 0|sleep 100|key 5 3f|sleep 200|key 0 0|sleep 200|key 0 0", [](Desk &d) {
                d.port.inputMethodWindow = 7;
                d.state.ASR3HoldToTalk = true;
                d.state.LocalXunFeiASR3CtrlKey = 1;
                d.state.LocalXunFeiASR3AltKey = 4;
            });
        row("XunFei not running, tap",
            "clear clipboard|place 299 389|tip hide|start xunfei|mark|hide bar|sleep 100",
            "paste timer|tap timer", [](Desk &d) {
                d.state.LocalASR3XunFeiInstallPath = "/x/iFlyVoice"_s;
                d.state.HidMainUIWhenASR = true;
            });
        row("XunFei not installed, tap", "clear clipboard|place 299 389|key 0 3b|sleep 100|key 0 0",
            "paste timer|tap timer", [](Desk &) {});
        row("Sogou not running, hold",
            "clear clipboard|place 299 319|start /s/sogou|mark|sleep 100|sleep 500|key 0 3b",
            "paste timer|key 0 0|sleep 100|key 0 3b|sleep 200|key 0 0|sleep 200|key 0 0", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartySogou;
                d.state.LocalASR3SougoInstallPath = "/s/sogou"_s;
                d.state.ASR3HoldToTalk = true;
                d.state.ASR3ShortCutKey = 0x3b;
            });
        row("Sogou open, tap with its own key", "clear clipboard|place 299 319|key 0 40|sleep 100|key 0 0",
            "paste timer|tap timer", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartySogou;
                d.port.inputMethodWindow = 7;
                d.state.LocalXunFeiASR3ShortcutKey = 0x40;
            });
        row("custom method, started first",
            "clear clipboard|start C:\\x\\SpeechInput.exe|sleep 100|sleep 500|key 2 41|sleep 100|key 0 0",
            "key 2 41|sleep 100|key 0 0", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartyCustom;
                d.state.LocalASR3CustomInstallPath = "C:\\x\\SpeechInput.exe"_s;
                d.state.ASR3CustomCtrlShortCutKey = 2;
                d.state.ASR3CustomShortCutKey = 0x41;
            });
        row("XunFei not running, which only a click may start", "clear clipboard|place 299 389|key 0 3f",
            "paste timer|key 0 0|sleep 100|key 0 3f|sleep 200|key 0 0|sleep 200|key 0 0", [](Desk &d) {
                d.state.LocalASR3XunFeiInstallPath = "/x/iFlyVoice"_s;
                d.state.LocalMustClickRunASR3 = d.state.ASR3HoldToTalk = true;
            });
        row("Ctrl and Shift of the same bit", "clear clipboard|key 0 3f",
            "paste timer|key 0 0|sleep 100|key 0 43|sleep 200|key 0 0|sleep 200|key 0 0", [](Desk &d) {
                d.port.inputMethodWindow = 7;
                d.state.ASR3HoldToTalk = true;
                d.state.LocalXunFeiASR3CtrlKey = d.state.LocalXunFeiASR3ShiftKey = 2;
                d.state.LocalXunFeiASR3ShortcutKey = 0x43;
            });
        row("custom method without a suffix",
            "clear clipboard|start /opt/SpeechInput|sleep 100|sleep 500|key 1 0|sleep 100|key 0 0",
            "key 1 0|sleep 100|key 0 0", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartyCustom;
                d.state.LocalASR3CustomInstallPath = "/opt/SpeechInput"_s;
                d.state.ASR3CustomCtrlShortCutKey = 1;
                d.state.ASR3CustomShortCutKey = 0;
            });
        row("custom method that is held, started first",
            "clear clipboard|start /opt/dictate|sleep 100|sleep 500|key 5 45", "key 0 0", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartyCustom;
                d.state.LocalASR3CustomInstallPath = "/opt/dictate"_s;
                d.state.ASR3CustomHoldToTalk = true;
                d.state.ASR3CustomCtrlShortCutKey = 5;
                d.state.ASR3CustomShortCutKey = 0x45;
            });
        row("custom method that only a click may start", "clear clipboard|key 0 3b|sleep 100|key 0 0",
            "key 0 3b|sleep 100|key 0 0", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartyCustom;
                d.state.LocalASR3CustomInstallPath = "/opt/VoiceInput"_s;
                d.state.LocalMustClickRunASR3 = true;
                d.state.ASR3CustomShortCutKey = 0x3b;
            });
        row("custom method that listens by itself once started",
            "clear clipboard|start /x/VoiceInput.exe|sleep 100", "key 0 0|sleep 100|key 0 0", [](Desk &d) {
                d.state.LocalUseASR3Index = mevo::thirdPartyCustom;
                d.state.LocalASR3CustomInstallPath = "/x/VoiceInput.exe"_s;
            });
    }

    void inputMethodIsDrivenByItsHotKey()
    {
        const auto [press, release, set] = rowOf<QString, QString, Set>();
        Desk desk;
        desk.state.ThirdPartyActive = true;
        set(desk);
        QCOMPARE(desk.take(1, 1).join(QLatin1Char('|')), press);
        QVERIFY(!desk.state.Recording);
        QCOMPARE(desk.take(1, 0).join(QLatin1Char('|')), release);
    }
};

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
