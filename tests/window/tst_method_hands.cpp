#include "support/Rows.h"
#include "window/Program.h"

#include <QAction>
#include <QMenu>

namespace {

const QString hotKey = "hid send 05 81 04 "_s;
const QString xunFei = "/opt/iFly/iFlyVoice"_s;
const QString sogou = "/opt/Sogou/VoiceInput"_s;

/// A program whose input method is set up and ready.
struct Driven : Program
{
    explicit Driven(bool plugged = true)
        : Program(plugged)
    {
        start();
        settle();
        window->VoiceTypeMode = true;
        window->VoiceCommandWordMode = window->VoiceSearchMode = false;
        window->LocalEnableASR3 = window->ThirdPartyActive = true;
        window->LocalMustClickRunASR3 = false;
        window->LocalASR3XunFeiInstallPath = xunFei;
        window->LocalASR3SougoInstallPath = sogou;
        use(1);
        fake.log.clear();
    }
    void use(int index)
    {
        window->LocalUseASR3Index = index;
        window->ASR3HoldToTalk = index == 1;
        window->ASR3ShortCutKey = index == 1 ? 0x3f : 0x3b;
        window->ASR3WinClassName = "Class"_s;
        window->ASR3WindowName = "Title"_s;
    }
    void showWindow(bool there) const
    {
        there ? void(fake.windowSystem->byTitle.insert("Title"_s, 7))
              : void(fake.windowSystem->byTitle.clear());
    }
    void report(bool pressed) const { take(mevo::KeyVoice, pressed); }
    /// What the receiver typed, the waits, and what was done to programs and windows since the last call.
    QString done()
    {
        QStringList found;
        for (QString call : fake.log.calls()) {
            if (call.startsWith(hotKey)) {
                found.append(call.mid(hotKey.size()));
            }
            for (const char *kind : {"sleep ", "start ", "open to type ", "kill ", "close window "}) {
                if (call.startsWith(QLatin1String(kind))) {
                    found.append(call);
                }
            }
        }
        fake.log.clear();
        return found.join(QLatin1String(" | "));
    }
    void choose(const char *label) const
    {
        for (QAction *action : window->languageMenu()->actions()) {
            if (action->text().startsWith(QString::fromUtf8(label))) {
                window->trigerAllAsrLanMenu(action);
                settle();
                return;
            }
        }
        QFAIL("no such row");
    }
};

} // namespace

using Set = std::function<void(Driven &)>;

class TestMethodHands : public QObject
{
    Q_OBJECT

private slots:
    void theReceiverTypesTheKeys_data()
    {
        const Rows<QString, QString, Set> row; // press, release, set
        row("held", "05 3f 00 00 00",
            "00 00 00 00 00 | sleep 100 | 05 41 00 00 00 | sleep 200 | 00 00 00 00 00 | sleep 200 | "
            "00 00 00 00 00",
            [](Driven &d) {
                d.window->LocalXunFeiASR3CtrlKey = 1;
                d.window->LocalXunFeiASR3AltKey = 4;
                d.window->LocalXunFeiASR3ShortcutKey = 0x41;
            });
        row("tapped", "00 3b 00 00 00 | sleep 100 | 00 00 00 00 00",
            "00 3b 00 00 00 | sleep 100 | 00 00 00 00 00", [](Driven &d) { d.use(2); });
        row("custom, tapped", "01 00 00 00 00 | sleep 100 | 00 00 00 00 00",
            "01 00 00 00 00 | sleep 100 | 00 00 00 00 00", [](Driven &d) {
                d.use(3);
                d.window->ShowASR3Custom = true;
                d.window->LocalASR3CustomInstallPath = "/opt/SpeechInput"_s;
                d.fake.processes->running = QStringList{"SpeechInput"_s};
                d.window->ASR3CustomCtrlShortCutKey = 1;
                d.window->ASR3CustomShortCutKey = 0;
            });
        row("held, the window not there",
            "start /opt/iFly/iFlyVoice | sleep 100 | sleep 500 | 00 3f 00 00 00",
            "00 00 00 00 00 | sleep 100 | 00 3f 00 00 00 | sleep 200 | 00 00 00 00 00 | sleep 200 | "
            "00 00 00 00 00",
            [](Driven &d) { d.showWindow(false); });
    }

    void theReceiverTypesTheKeys()
    {
        const auto [press, release, set] = rowOf<QString, QString, Set>();
        Driven program;
        program.showWindow(true);
        set(program);
        program.report(true);
        QCOMPARE(program.done(), press);
        program.report(false);
        const QStringList steps = release.split(" | "_s);
        const int keys = steps.size() - steps.filter("sleep"_s).size();
        QTRY_COMPARE(program.fake.log.calls(hotKey).size(), keys); // a tap comes by a timer
        QCOMPARE(program.done(), release);
        QVERIFY(!program.window->Recording);
    }

    void withoutAReceiverNothingIsTyped()
    {
        Driven program(false);
        program.showWindow(true);
        program.report(true);
        program.report(false);
        QCOMPARE(program.done(), "sleep 100 | sleep 200 | sleep 200"_s);
    }

    void theCustomKeyIsTypedOnce()
    {
        Driven program;
        program.window->ASR3CustomCtrlShortCutKey = 3;
        program.window->ASR3CustomShortCutKey = 0x6a;
        program.window->TimeOutDelaySendCustom();
        QCOMPARE(program.done(), "03 6a 00 00 00 | sleep 100 | 00 00 00 00 00"_s);
    }

    void theThirdXunFeiIsStartedToType()
    {
        Driven program;
        MainWindow &window = *program.window;
        window.XFVM3 = true;
        program.fake.processes->broken.append(xunFei);
        window.StartXunFeiWindow();
        QCOMPARE(program.done(), "open to type /opt/iFly/iFlyVoice"_s);
        QVERIFY(!window.Asr3WindowFound && !window.ThirdPartyWindowOpen);
        program.fake.processes->broken.clear();
        window.StartXunFeiWindow(); // the next one tries again
        QVERIFY(window.Asr3WindowFound && window.ThirdPartyWindowOpen);
        window.RunThirdpartVoiceInputByORV = 0;
        QCOMPARE(program.fake.log.calls("message 正在启动讯飞麦克风窗口"_s).size(), 1);
        QCOMPARE(program.done(), "open to type /opt/iFly/iFlyVoice"_s);
        program.showWindow(true);
        window.StartXunFeiWindow();
        QCOMPARE(program.done(), QString());
        QVERIFY(window.Asr3WindowFound);
        program.showWindow(false);
        window.StartXunFeiWindow(); // what was found once may have gone
        QCOMPARE(program.done(), "open to type /opt/iFly/iFlyVoice"_s);

        // It has been killed: the press looks, and starts it.
        window.Asr3WindowFound = true;
        program.report(true);
        QCOMPARE(program.done(),
                 "open to type /opt/iFly/iFlyVoice | sleep 100 | sleep 500 | 00 3f 00 00 00"_s);
        QCOMPARE(window.RunThirdpartVoiceInputByORV, 1);
        program.report(false);
        window.XFOfflineMode = true;
        window.Asr3WindowFound = false;
        program.fake.log.clear();
        window.StartXunFeiWindow();
        QVERIFY(program.fake.log.calls("message"_s).isEmpty());
    }

    void anExitLetsTheKeyGo_data()
    {
        const Rows<int, bool, QString> row; // index, released (its tap is still to come), done
        row("held", 1, false,
            "00 00 00 00 00 | sleep 100 | 00 3f 00 00 00 | sleep 200 | "
            "00 00 00 00 00 | sleep 200 | 00 00 00 00 00 | close window 7");
        row("tapped", 2, false, "sleep 200 | 00 3b 00 00 00 | sleep 100 | 00 00 00 00 00 | close window 7");
        row("tapped, just released", 2, true,
            "sleep 200 | 00 3b 00 00 00 | sleep 100 | 00 00 00 00 00 | close window 7");
    }

    /// The receiver outlives the program, and would go on holding the key. The method hears the end of what
    /// was said while its window is there; afterwards the key would be anybody's.
    void anExitLetsTheKeyGo()
    {
        const auto [index, released, done] = rowOf<int, bool, QString>();
        Driven program;
        program.use(index);
        program.showWindow(true);
        program.window->ThirdPartyWindowOpen = true;
        program.report(true);
        if (released) {
            program.report(false);
        }
        program.done();
        program.window->exitByItself();
        QCOMPARE(program.done().left(done.size()), done);
        program.settle();
        QVERIFY(program.fake.log.calls(hotKey).isEmpty());
    }

    void aClickBeginsWhatThePressGoesOnWith()
    {
        Driven program;
        program.use(2);
        program.window->pushButton_Mic_clicked();
        QCOMPARE(program.done(), "start /opt/Sogou/VoiceInput"_s);
        program.showWindow(true);
        program.report(true);
        QCOMPARE(program.done(), QString());
        program.report(false);
        QTRY_COMPARE(program.fake.log.calls(hotKey).size(), 2);
        QCOMPARE(program.done(), "00 3b 00 00 00 | sleep 100 | 00 00 00 00 00"_s);
    }

    /// The same when another engine is chosen, with a window of the user's own, too.
    void aChoiceLetsTheKeyGo_data()
    {
        const Rows<bool, QString> row; // ours, done
        row("ours", true, "sleep 200 | 00 3b 00 00 00 | sleep 100 | 00 00 00 00 00 | close window 7");
        row("the user's own", false, "sleep 200 | 00 3b 00 00 00 | sleep 100 | 00 00 00 00 00");
    }
    void aChoiceLetsTheKeyGo()
    {
        const auto [ours, done] = rowOf<bool, QString>();
        Driven program;
        program.use(2);
        program.showWindow(true);
        program.window->ThirdPartyWindowOpen = ours;
        program.report(true);
        program.done();
        program.choose("普通话(腾讯版)");
        QCOMPARE(program.done(), done);
        program.report(false);
        program.settle();
        QCOMPARE(program.done(), QString());
    }

    /// A press of an own engine closes the window, but not under a method that has still to hear that the
    /// user has stopped.
    void aSessionLeavesTheWindow()
    {
        Driven program;
        MainWindow &window = *program.window;
        program.use(2);
        program.showWindow(true);
        window.ThirdPartyWindowOpen = window.Asr3WindowFound = true;
        program.report(true);
        program.report(false);
        program.done();
        window.VoiceTypeMode = false;
        window.VoiceCommandWordMode = true;
        program.report(true);
        QVERIFY(window.Recording);
        program.report(false);
        QCOMPARE(program.done(), QString());
        QTRY_COMPARE(program.fake.log.calls(hotKey).size(), 2);
        QCOMPARE(program.done(), "00 3b 00 00 00 | sleep 100 | 00 00 00 00 00"_s);
        program.report(true);
        QCOMPARE(program.done(), "close window 7"_s);
        QVERIFY(!window.ThirdPartyWindowOpen && !window.Asr3WindowFound);
        program.report(false);
    }

    /// The reader doesn't pass it on while a result is being handled: the method's key goes up, another's
    /// ends nothing.
    void aReleaseThatIsNotPassedOn()
    {
        Driven program;
        program.showWindow(true);
        program.key(1, true);
        QTRY_COMPARE(program.fake.log.calls(hotKey).size(), 1);
        program.window->ResultIdle = false;
        program.key(6, false);
        QTRY_VERIFY(program.window->ResultIdle);
        QCOMPARE(program.fake.log.calls(hotKey).size(), 1);
        program.window->ResultIdle = false;
        program.key(1, false);
        QTRY_VERIFY(program.window->ResultIdle);
        QCOMPARE(program.fake.log.calls(hotKey).size(), 5);
    }

    void aCloudEngineLeavesTheWindow_data()
    {
        const Rows<QString, Set> row; // done, set
        row("XunFei", "close window 7", [](Driven &) {});
        row("XunFei's third", "kill iFlyVoice.exe", [](Driven &d) { d.window->XFVM3 = true; });
        row("Sogou beside it", "close window 7", [](Driven &d) {
            d.window->XFVM3 = true;
            d.use(2);
        });
        row("the user's own", "", [](Driven &d) { d.window->ThirdPartyWindowOpen = false; });
        row("gone", "", [](Driven &d) { d.showWindow(false); });
    }

    void aCloudEngineLeavesTheWindow()
    {
        const auto [done, set] = rowOf<QString, Set>();
        Driven program;
        program.showWindow(true);
        program.window->ThirdPartyWindowOpen = true;
        set(program);
        program.choose("普通话(腾讯版)");
        QCOMPARE(program.done(), done);
        QVERIFY(!program.window->ThirdPartyActive && !program.window->LocalEnableASR3);
        QCOMPARE(program.window->ThirdPartyWindowOpen,
                 done.isEmpty() && program.window->ThirdPartyWindowOpen);
    }

    void theMicrophoneButtonIsClicked_data()
    {
        const Rows<QString, bool, Set> row; // done, open (afterwards), set
        row("nothing open", "start /opt/iFly/iFlyVoice", true, [](Driven &) {});
        row("Sogou", "start /opt/Sogou/VoiceInput", true, [](Driven &d) { d.use(2); });
        row("refused to be started unasked", "start /opt/iFly/iFlyVoice", true,
            [](Driven &d) { d.window->LocalMustClickRunASR3 = true; });
        row("open", "close window 7", false, [](Driven &d) {
            d.window->ThirdPartyWindowOpen = true;
            d.showWindow(true);
        });
        row("the third, open", "kill iFlyVoice.exe", false, [](Driven &d) {
            d.window->ThirdPartyWindowOpen = d.window->XFVM3 = true;
            d.showWindow(true);
        });
        row("cannot be started", "start /opt/iFly/iFlyVoice", false,
            [](Driven &d) { d.fake.processes->broken.append(xunFei); });
        row("killed by others", "start /opt/iFly/iFlyVoice", true,
            [](Driven &d) { d.window->ThirdPartyWindowOpen = true; });
    }

    void theMicrophoneButtonIsClicked()
    {
        const auto [done, open, set] = rowOf<QString, bool, Set>();
        Driven program;
        set(program);
        program.window->MicWinShown = true; // by a click before a method was chosen
        program.window->pushButton_Mic_clicked();
        const QStringList said = program.fake.log.calls("message 正在首次启动讯飞麦克风窗口"_s);
        QCOMPARE(program.done(), done);
        QCOMPARE(program.window->ThirdPartyWindowOpen, open);
        QVERIFY(!program.window->MicWinShown);
        QCOMPARE(!said.isEmpty(), open && done.contains("iFlyVoice"_s));
    }
};

QTEST_MAIN(TestMethodHands)
#include "tst_method_hands.moc"
