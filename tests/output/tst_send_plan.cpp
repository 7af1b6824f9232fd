#include "output/PasteShortcut.h"
#include "output/SendPlan.h"
#include "output/TextEffects.h"

#include <QtTest>

using mevo::SendPlan;
using Set = std::function<void(MainState &)>;
Q_DECLARE_METATYPE(Set)

class TestSendPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wayAndText_data()
    {
        QTest::addColumn<Set>("set");
        QTest::addColumn<bool>("dialog");
        QTest::addColumn<bool>("canPost");
        QTest::addColumn<QString>("outcome"); // way and text
        const auto row = [](const char *name, const Set &set, const char *outcome, bool dialog = false,
                            bool canPost = true) {
            QTest::newRow(name) << set << dialog << canPost << QString::fromUtf8(outcome);
        };
        row(
            "post", [](MainState &) {}, "post 句。");
        row(
            "clipboard when chosen", [](MainState &s) { s.Send2ScreenMethod = 2; }, "clipboard 句。");
        row(
            "clipboard when there is no focus", [](MainState &s) { s.FocusWindow = 0; }, "clipboard 句。");
        row(
            "clipboard beside the translation dialog", [](MainState &) {}, "clipboard 句。", true);
        row(
            "clipboard where nothing can be posted", [](MainState &) {}, "clipboard 句。", false, false);
        row(
            "method 1 without focus loses the text",
            [](MainState &s) {
                s.Send2ScreenMethod = 1;
                s.FocusWindow = 0;
            },
            "lost 句。");
        row(
            "method 5 without focus loses the text",
            [](MainState &s) {
                s.Send2ScreenMethod = 5;
                s.FocusWindow = 0;
            },
            "lost 句。");
        row(
            "method 5 with focus posts", [](MainState &s) { s.Send2ScreenMethod = 5; }, "post 句。");
        row(
            "full stop as comma", [](MainState &s) { s.AddPunctuationWhenEnd = true; }, "post 句，");
        row(
            "full stop kept",
            [](MainState &s) {
                s.AddPunctuationWhenEnd = true;
                s.Juhao2Douhao = false;
            },
            "post 句。");
        row(
            "the input method types for itself",
            [](MainState &s) {
                s.ThirdPartyActive = true;
                s.VoiceTypeMode = true;
            },
            "nothing ");
        row(
            "commands are not typed",
            [](MainState &s) {
                s.VoiceCommandWordMode = true;
                s.DontSend2ScreenWhenCmdStatus = true;
            },
            "nothing ");
    }

    void wayAndText()
    {
        QFETCH(Set, set);
        QFETCH(bool, dialog);
        QFETCH(bool, canPost);
        MainState state;
        state.FocusWindow = 9;
        set(state);
        const SendPlan plan =
            mevo::planSend(QStringLiteral("句。"), state, state.contextNow(), dialog, canPost);
        static const QMap<SendPlan::Way, QString> names = {
            {SendPlan::Way::Post, QStringLiteral("post ")},
            {SendPlan::Way::Clipboard, QStringLiteral("clipboard ")},
            {SendPlan::Way::Nothing, QStringLiteral("nothing ")}};
        const QString way = plan.lostFocus ? QStringLiteral("lost ") : names.value(plan.way);
        QTEST(way + plan.text, "outcome");
    }

    void mappedWords_data()
    {
        QTest::addColumn<Set>("set");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("keys"); // shift ctrl alt win usage
        QTest::addColumn<bool>("typed");
        const Set send = [](MainState &s) {
            s.VoiceSend = s.VoiceSend_AltS = s.VoiceSend_Enter = s.VoiceSend_CtrlEnter = true;
            s.VoiceSend_AltS_MapWords = QStringLiteral("发送;Send It");
            s.VoiceSend_Enter_MapWords = QStringLiteral("回车;发送");
            s.VoiceSend_CtrlEnter_MapWords = QStringLiteral("");
        };
        const Set sendTyped = [=](MainState &s) {
            send(s);
            s.VoiceSend_MapWords2Screen = true;
        };
        const Set clear = [](MainState &s) {
            s.VoiceClear = s.VoiceClear_Backspace = s.VoiceClear_Delete = true;
            s.VoiceClear_Backspace_MapWords = QStringLiteral("退格");
            s.VoiceClear_Delete_MapWords = QStringLiteral("删除");
        };
        QTest::newRow("first hit ends it") << send << "发送"
                                           << "00100016" << false;
        QTest::newRow("further tests run when the word is typed") << sendTyped << "发送"
                                                                  << "00100016 00000028" << true;
        QTest::newRow("case does not matter") << send << "SEND it"
                                              << "00100016" << false;
        QTest::newRow("no word") << send << "发送吧"
                                 << "" << true;
        QTest::newRow("backspace") << clear << "退格"
                                   << "0000002a" << false;
        QTest::newRow("delete") << clear << "删除"
                                << "0000004c" << false;
        QTest::newRow("last character does not count with punctuation") << Set([=](MainState &s) {
            send(s);
            s.AddPunctuationWhenEnd = true;
        }) << "回车。"
                                                                        << "00000028" << false;
        QTest::newRow("group switched off") << Set([=](MainState &s) {
            send(s);
            s.VoiceSend = false;
        }) << "发送"
                                            << "" << true;
        QTest::newRow("an empty list holds no word") << Set([=](MainState &s) {
            send(s);
            s.AddPunctuationWhenEnd = true;
        }) << "。"
                                                     << "" << true;
    }

    void mappedWords()
    {
        QFETCH(Set, set);
        QFETCH(QString, text);
        QFETCH(bool, typed);
        MainState state;
        state.FocusWindow = 9;
        set(state);
        const SendPlan plan = mevo::planSend(text, state, state.contextNow(), false, true);
        QStringList keys;
        for (const auto &key : plan.keys) {
            keys.append(QString::asprintf("%d%d%d%d%04x", key.shift, key.ctrl, key.alt, key.win,
                                          static_cast<unsigned>(key.key)));
        }
        QTEST(keys.join(QLatin1Char(' ')), "keys");
        QCOMPARE(plan.way == SendPlan::Way::Post, typed);
    }

    void keysGoIntoNoOtherWindow_data()
    {
        QTest::addColumn<bool>("typed"); // the word as well
        QTest::addColumn<bool>("elsewhere");
        QTest::newRow("the focus is there") << false << false;
        QTest::newRow("it is elsewhere") << false << true;
        QTest::newRow("it is elsewhere, and the word is typed") << true << true;
    }
    void keysGoIntoNoOtherWindow()
    {
        QFETCH(bool, typed);
        QFETCH(bool, elsewhere);
        MainState state;
        state.VoiceSend = state.VoiceSend_Enter = true;
        state.VoiceSend_Enter_MapWords = QStringLiteral("发送");
        state.VoiceSend_MapWords2Screen = typed;
        const SendPlan plan =
            mevo::planSend(QStringLiteral("发送"), state, state.contextNow(), true, true, elsewhere);
        QCOMPARE(plan.keys.empty(), elsewhere);
        QCOMPARE(plan.keysDropped, elsewhere);
        QCOMPARE(plan.way == SendPlan::Way::Clipboard, typed);
        QVERIFY(!mevo::planSend(QStringLiteral("句"), state, state.contextNow(), true, true, elsewhere)
                     .keysDropped);
    }

    void onlyIntoItsOwnWindow_data()
    {
        QTest::addColumn<bool>("dialog");
        QTest::addColumn<int>("method");
        QTest::addColumn<mevo::WindowId>("only");
        QTest::newRow("posted") << false << 0 << mevo::WindowId(0);
        QTest::newRow("pasted beside the dialog") << true << 0 << mevo::WindowId(7);
        QTest::newRow("the same, posting asked for") << true << 1 << mevo::WindowId(7);
        QTest::newRow("the clipboard as chosen") << true << 2 << mevo::WindowId(0);
    }
    void onlyIntoItsOwnWindow()
    {
        QFETCH(bool, dialog);
        QFETCH(int, method);
        MainState state;
        state.Send2ScreenMethod = method;
        mevo::SessionContext session;
        session.window = 9;
        session.pressWindow = 7;
        QTEST(mevo::onlyWindowOf(state, session, dialog), "only");
    }

    void whatATranslationKeeps_data()
    {
        QTest::addColumn<int>("session"); // number, -1 for none
        QTest::addColumn<bool>("byHand");
        QTest::addColumn<bool>("typeMode");
        QTest::addColumn<bool>("commandMode");
        QTest::newRow("a sentence of ours") << 5 << false << false << true;
        QTest::newRow("one that an input method has heard") << 0 << false << true << true;
        QTest::newRow("a selection") << -1 << false << false << true;
        QTest::newRow("a sentence, by hand") << 5 << true << false << false;
        QTest::newRow("an input method's, by hand") << 0 << true << false << false;
        QTest::newRow("a selection, by hand") << -1 << true << false << false;
    }
    void whatATranslationKeeps()
    {
        QFETCH(int, session);
        QFETCH(bool, byHand);
        mevo::SessionContext context;
        context.number = qMax(0, session);
        context.typeMode = context.commandMode = true;
        const mevo::SessionContext kept = mevo::translationContext(context, session >= 0, byHand);
        QTEST(kept.typeMode, "typeMode");
        QTEST(kept.commandMode, "commandMode");
        QCOMPARE(kept.number, 0);
    }

    void terminalsPasteInTheirOwnWay_data()
    {
        QTest::addColumn<QString>("windowClass");
        QTest::addColumn<int>("keys"); // shift 1, ctrl 2
        QTest::newRow("unknown") << "Gimp" << 2;
        QTest::newRow("nothing") << QString() << 2;
        QTest::newRow("class") << "XTerm" << 1;
        QTest::newRow("instance and class") << "xterm.Other" << 1;
        QTest::newRow("class behind an instance") << "my.own.KONSOLE" << 3;
        QTest::newRow("a name with dots") << "org.wezfurlong.wezterm" << 3;
        QTest::newRow("such an instance") << "org.wezfurlong.wezterm.x" << 3;
        QTest::newRow("instance first") << "xterm.konsole" << 1;
        QTest::newRow("part of a name") << "xterminator" << 2;
        QTest::newRow("end of a name") << "notxterm" << 2;
        QTest::newRow("only dots") << QString(4000000, QLatin1Char('.')) << 2;
        QTest::newRow("dots before a name")
            << QString(4000000, QLatin1Char('.')) + QStringLiteral("kitty") << 3;
    }

    void terminalsPasteInTheirOwnWay()
    {
        QFETCH(QString, windowClass);
        const mevo::PasteShortcut shortcut = mevo::pasteShortcutFor(windowClass);
        QTEST(int(shortcut.shift) + 2 * int(shortcut.ctrl), "keys");
        QCOMPARE(shortcut.usage, shortcut.ctrl ? 0x19 : 0x49);
    }

    void copying_data()
    {
        QTest::addColumn<QString>("windowClass");
        QTest::addColumn<QString>("keys");
        QTest::newRow("an editor") << "mousepad.Mousepad"
                                   << "ctrl+43/6";
        QTest::newRow("a terminal with keys of its own") << "gnome-terminal-server.Gnome-terminal"
                                                         << "ctrl+shift+43/6";
        QTest::newRow("one without any: Ctrl+C would interrupt what runs there") << "xterm.XTerm"
                                                                                 << "";
        QTest::newRow("another of its kind") << "URxvt"
                                             << "";
    }
    void copying()
    {
        QFETCH(QString, windowClass);
        const auto keys = mevo::copyShortcutFor(windowClass);
        QTEST(keys ? QString::asprintf("%s%s%x/%x", keys->ctrl ? "ctrl+" : "", keys->shift ? "shift+" : "",
                                       unsigned(keys->virtualKey), unsigned(keys->usage))
                   : QString(),
              "keys");
    }

    void traditionalOutputChangesCharactersNotWords_data()
    {
        QTest::addColumn<QString>("simplified");
        QTest::addColumn<QString>("traditional");
        QTest::newRow("characters") << "汉语听写"
                                    << "漢語聽寫";
        QTest::newRow("context chooses the character") << "头发发现"
                                                       << "頭髮發現";
        QTest::newRow("Taiwan's variant") << "里面"
                                          << "裡面";
        QTest::newRow("words stay") << "软件鼠标"
                                    << "軟件鼠標";
        QTest::newRow("zeros and marks that are not seen")
            << QChar(0xfeff) + QStringLiteral("汉") + QChar(0) + QChar(0xfeff) + QStringLiteral("听") +
                   QChar(0)
            << QChar(0xfeff) + QStringLiteral("漢") + QChar(0) + QChar(0xfeff) + QStringLiteral("聽") +
                   QChar(0);
        QTest::newRow("nothing to convert") << "ABC 123，。😀𠀀"
                                            << "ABC 123，。😀𠀀";
    }

    void traditionalOutputChangesCharactersNotWords()
    {
        QFETCH(QString, simplified);
        QTEST(mevo::toTraditional(simplified), "traditional");
        MainState state;
        state.FocusWindow = 9;
        state.Output2Tranditional = true;
        QTEST(mevo::planSend(simplified, state, state.contextNow(), false, true).text, "traditional");
    }
};

QTEST_GUILESS_MAIN(TestSendPlan)
#include "tst_send_plan.moc"
