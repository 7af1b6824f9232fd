#include "output/PasteShortcut.h"
#include "output/SendPlan.h"
#include "output/TextEffects.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::SendPlan;
using Set = std::function<void(MainState &)>;

class TestSendPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wayAndText_data()
    {
        const Rows<bool, bool, QString, Set> row; // dialog, canPost, outcome (way and text), set
        row("post", false, true, "post 句。", [](MainState &) {});
        row("clipboard when chosen", false, true, "clipboard 句。",
            [](MainState &s) { s.Send2ScreenMethod = 2; });
        row("clipboard when there is no focus", false, true, "clipboard 句。",
            [](MainState &s) { s.FocusWindow = 0; });
        row("clipboard beside the translation dialog", true, true, "clipboard 句。", [](MainState &) {});
        row("clipboard where nothing can be posted", false, false, "clipboard 句。", [](MainState &) {});
        row("method 1 without focus loses the text", false, true, "lost 句。", [](MainState &s) {
            s.Send2ScreenMethod = 1;
            s.FocusWindow = 0;
        });
        row("method 5 without focus loses the text", false, true, "lost 句。", [](MainState &s) {
            s.Send2ScreenMethod = 5;
            s.FocusWindow = 0;
        });
        row("method 5 with focus posts", false, true, "post 句。",
            [](MainState &s) { s.Send2ScreenMethod = 5; });
        row("full stop as comma", false, true, "post 句，",
            [](MainState &s) { s.AddPunctuationWhenEnd = true; });
        row("full stop kept", false, true, "post 句。", [](MainState &s) {
            s.AddPunctuationWhenEnd = true;
            s.Juhao2Douhao = false;
        });
        row("the input method types for itself", false, true, "nothing ", [](MainState &s) {
            s.ThirdPartyActive = true;
            s.VoiceTypeMode = true;
        });
        row("commands are not typed", false, true, "nothing ", [](MainState &s) {
            s.VoiceCommandWordMode = true;
            s.DontSend2ScreenWhenCmdStatus = true;
        });
    }

    void wayAndText()
    {
        const auto [dialog, canPost, outcome, set] = rowOf<bool, bool, QString, Set>();
        MainState state;
        state.FocusWindow = 9;
        set(state);
        const SendPlan plan = mevo::planSend("句。"_s, state, state.contextNow(), dialog, canPost);
        static const QMap<SendPlan::Way, QString> names = {{SendPlan::Way::Post, "post "_s},
                                                           {SendPlan::Way::Clipboard, "clipboard "_s},
                                                           {SendPlan::Way::Nothing, "nothing "_s}};
        const QString way = plan.lostFocus ? "lost "_s : names.value(plan.way);
        QCOMPARE(way + plan.text, outcome);
    }

    void mappedWords_data()
    {
        const Rows<QString, QString, bool, Set> row; // text, expected (shift ctrl alt win usage), typed, set
        const Set send = [](MainState &s) {
            s.VoiceSend = s.VoiceSend_AltS = s.VoiceSend_Enter = s.VoiceSend_CtrlEnter = true;
            s.VoiceSend_AltS_MapWords = "发送;Send It"_s;
            s.VoiceSend_Enter_MapWords = "回车;发送"_s;
            s.VoiceSend_CtrlEnter_MapWords = ""_s;
        };
        const Set sendTyped = [=](MainState &s) {
            send(s);
            s.VoiceSend_MapWords2Screen = true;
        };
        const Set clear = [](MainState &s) {
            s.VoiceClear = s.VoiceClear_Backspace = s.VoiceClear_Delete = true;
            s.VoiceClear_Backspace_MapWords = "退格"_s;
            s.VoiceClear_Delete_MapWords = "删除"_s;
        };
        row("first hit ends it", "发送", "00100016", false, send);
        row("further tests run when the word is typed", "发送", "00100016 00000028", true, sendTyped);
        row("case does not matter", "SEND it", "00100016", false, send);
        row("no word", "发送吧", "", true, send);
        row("backspace", "退格", "0000002a", false, clear);
        row("delete", "删除", "0000004c", false, clear);
        row("last character does not count with punctuation", "回车。", "00000028", false, [=](MainState &s) {
            send(s);
            s.AddPunctuationWhenEnd = true;
        });
        row("group switched off", "发送", "", true, [=](MainState &s) {
            send(s);
            s.VoiceSend = false;
        });
        row("an empty list holds no word", "。", "", true, [=](MainState &s) {
            send(s);
            s.AddPunctuationWhenEnd = true;
        });
    }

    void mappedWords()
    {
        const auto [text, expected, typed, set] = rowOf<QString, QString, bool, Set>();
        MainState state;
        state.FocusWindow = 9;
        set(state);
        const SendPlan plan = mevo::planSend(text, state, state.contextNow(), false, true);
        QStringList keys;
        for (const auto &key : plan.keys) {
            keys.append(QString::asprintf("%d%d%d%d%04x", key.shift, key.ctrl, key.alt, key.win,
                                          static_cast<unsigned>(key.key)));
        }
        QCOMPARE(keys.join(QLatin1Char(' ')), expected);
        QCOMPARE(plan.way == SendPlan::Way::Post, typed);
    }

    void keysGoIntoNoOtherWindow_data()
    {
        const Rows<bool, bool> row; // typed (the word as well), elsewhere
        row("the focus is there", false, false);
        row("it is elsewhere", false, true);
        row("it is elsewhere, and the word is typed", true, true);
    }
    void keysGoIntoNoOtherWindow()
    {
        const auto [typed, elsewhere] = rowOf<bool, bool>();
        MainState state;
        state.VoiceSend = state.VoiceSend_Enter = true;
        state.VoiceSend_Enter_MapWords = "发送"_s;
        state.VoiceSend_MapWords2Screen = typed;
        const SendPlan plan = mevo::planSend("发送"_s, state, state.contextNow(), true, true, elsewhere);
        QCOMPARE(plan.keys.empty(), elsewhere);
        QCOMPARE(plan.keysDropped, elsewhere);
        QCOMPARE(plan.way == SendPlan::Way::Clipboard, typed);
        QVERIFY(!mevo::planSend("句"_s, state, state.contextNow(), true, true, elsewhere).keysDropped);
    }

    void onlyIntoItsOwnWindow_data()
    {
        const Rows<bool, int, mevo::WindowId> row; // dialog, method, only
        row("posted", false, 0, mevo::WindowId(0));
        row("pasted beside the dialog", true, 0, mevo::WindowId(7));
        row("the same, posting asked for", true, 1, mevo::WindowId(7));
        row("the clipboard as chosen", true, 2, mevo::WindowId(0));
    }
    void onlyIntoItsOwnWindow()
    {
        const auto [dialog, method, only] = rowOf<bool, int, mevo::WindowId>();
        MainState state;
        state.Send2ScreenMethod = method;
        mevo::SessionContext session;
        session.window = 9;
        session.pressWindow = 7;
        QCOMPARE(mevo::onlyWindowOf(state, session, dialog), only);
    }

    void whatATranslationKeeps_data()
    {
        // session (number, -1 for none), byHand, typeMode, commandMode
        const Rows<int, bool, bool, bool> row;
        row("a sentence of ours", 5, false, false, true);
        row("one that an input method has heard", 0, false, true, true);
        row("a selection", -1, false, false, true);
        row("a sentence, by hand", 5, true, false, false);
        row("an input method's, by hand", 0, true, false, false);
        row("a selection, by hand", -1, true, false, false);
    }
    void whatATranslationKeeps()
    {
        const auto [session, byHand, typeMode, commandMode] = rowOf<int, bool, bool, bool>();
        mevo::SessionContext context;
        context.number = qMax(0, session);
        context.typeMode = context.commandMode = true;
        const mevo::SessionContext kept = mevo::translationContext(context, session >= 0, byHand);
        QCOMPARE(kept.typeMode, typeMode);
        QCOMPARE(kept.commandMode, commandMode);
        QCOMPARE(kept.number, 0);
    }

    void terminalsPasteInTheirOwnWay_data()
    {
        const Rows<QString, int> row; // windowClass, keys (shift 1, ctrl 2)
        row("unknown", "Gimp", 2);
        row("nothing", QString(), 2);
        row("class", "XTerm", 1);
        row("instance and class", "xterm.Other", 1);
        row("class behind an instance", "my.own.KONSOLE", 3);
        row("a name with dots", "org.wezfurlong.wezterm", 3);
        row("such an instance", "org.wezfurlong.wezterm.x", 3);
        row("instance first", "xterm.konsole", 1);
        row("part of a name", "xterminator", 2);
        row("end of a name", "notxterm", 2);
        row("only dots", QString(4000000, QLatin1Char('.')), 2);
        row("dots before a name", QString(4000000, QLatin1Char('.')) + "kitty"_s, 3);
    }

    void terminalsPasteInTheirOwnWay()
    {
        const auto [windowClass, keys] = rowOf<QString, int>();
        const mevo::PasteShortcut shortcut = mevo::pasteShortcutFor(windowClass);
        QCOMPARE(int(shortcut.shift) + 2 * int(shortcut.ctrl), keys);
        QCOMPARE(shortcut.usage, shortcut.ctrl ? 0x19 : 0x49);
    }

    void copying_data()
    {
        const Rows<QString, QString> row; // windowClass, expected
        row("an editor", "mousepad.Mousepad", "ctrl+43/6");
        row("a terminal with keys of its own", "gnome-terminal-server.Gnome-terminal", "ctrl+shift+43/6");
        row("one without any: Ctrl+C would interrupt what runs there", "xterm.XTerm", "");
        row("another of its kind", "URxvt", "");
    }
    void copying()
    {
        const auto [windowClass, expected] = rowOf<QString, QString>();
        const auto keys = mevo::copyShortcutFor(windowClass);
        QCOMPARE(keys ? QString::asprintf("%s%s%x/%x", keys->ctrl ? "ctrl+" : "", keys->shift ? "shift+" : "",
                                          unsigned(keys->virtualKey), unsigned(keys->usage))
                      : QString(),
                 expected);
    }

    void traditionalOutputChangesCharactersNotWords_data()
    {
        const Rows<QString, QString> row; // simplified, traditional
        row("characters", "汉语听写", "漢語聽寫");
        row("context chooses the character", "头发发现", "頭髮發現");
        row("Taiwan's variant", "里面", "裡面");
        row("words stay", "软件鼠标", "軟件鼠標");
        row("zeros and marks that are not seen",
            QChar(0xfeff) + "汉"_s + QChar(0) + QChar(0xfeff) + "听"_s + QChar(0),
            QChar(0xfeff) + "漢"_s + QChar(0) + QChar(0xfeff) + "聽"_s + QChar(0));
        row("nothing to convert", "ABC 123，。😀𠀀", "ABC 123，。😀𠀀");
    }

    void traditionalOutputChangesCharactersNotWords()
    {
        const auto [simplified, traditional] = rowOf<QString, QString>();
        QCOMPARE(mevo::toTraditional(simplified), traditional);
        MainState state;
        state.FocusWindow = 9;
        state.Output2Tranditional = true;
        QCOMPARE(mevo::planSend(simplified, state, state.contextNow(), false, true).text, traditional);
    }
};

QTEST_GUILESS_MAIN(TestSendPlan)
#include "tst_send_plan.moc"
