#include "session/ResultPipeline.h"
#include "session/SessionResults.h"
#include "support/CallLog.h"
#include "support/Rows.h"

#include <QtTest>

namespace {

class RecordingPort : public mevo::PipelinePort
{
public:
    CallLog log;
    bool dialog = false;
    bool dialogClosing = false;
    QStringList commandWords;

    void sendToScreen(const QString &text, const mevo::SessionContext &) override
    {
        log.add("screen "_s + text);
    }
    void trayMessage(const QString &, mevo::MessageIcon, int) override { log.add("tray"_s); }
    void restartAfterRecognition() override { log.add("timer"_s); }
    void stopRecording() override { log.add("stop"_s); }
    void endDeviceSession() override { log.add("end session"_s); }
    void updateMicWin(const QString &) override { ++pictures; }
    void endTipLatch() override { log.add("latch off"_s); }
    void updateStatusButtons() override { log.add("buttons"_s); }
    bool translationDialogExists() const override { return dialog; }
    bool translationDialogClosing() const override { return dialogClosing; }
    void showOnTranslationDialog(const QString &text, const mevo::SessionContext &) override
    {
        log.add("dialog "_s + text);
    }
    void showTranslationDialog() override { log.add("show dialog"_s); }
    void pressTranslateButton() override { log.add("press translate"_s); }
    void voiceSearch(const QString &text) override { log.add("search "_s + text); }
    bool runCommandWord(const QString &word, bool sent, const mevo::SessionContext &) override
    {
        log.add((sent ? "command of a sent text "_s : "command "_s) + word);
        return commandWords.contains(word);
    }
    void reloadEngineChoice() override { log.add("reload"_s); }
    int pictures = 0;
};

struct Desk
{
    MainState state;
    RecordingPort port;
    mevo::ResultPipeline pipeline{state, port};

    Desk()
    {
        state.VoiceTypeMode = true;
        state.OneShotCommandWord = false;
        state.Enable_SwitchModeFlagsWord2Screen = false;
    }
    mevo::SessionContext session() const
    {
        mevo::SessionContext context = state.contextNow();
        context.engine.baidu = true;
        return context;
    }
    /// What a text led to, without the steps that every text takes.
    QString take(const QString &text)
    {
        port.log.clear();
        pipeline.HandleRecResult(text, session());
        QStringList calls = port.log.calls();
        calls.removeAll("latch off"_s);
        return calls.join(QLatin1Char('|'));
    }
};

using Set = std::function<void(Desk &)>;

void mode(Desk &desk, std::atomic<bool> SessionState::*flag)
{
    desk.state.VoiceTypeMode = false;
    desk.state.*flag = true;
}

} // namespace

class TestPipeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsCleaned_data()
    {
        const Rows<bool, bool, QString, QString, QString> row; // addPunctuation, strip, text, out, match
        row("marks of Baidu go", false, true, "你好，世界。", "你好世界", "你好世界");
        row("ASCII marks stay", false, true, "a, b! c?", "a, b! c?", "a, b! c?");
        row("XunFei is left alone", false, false, "你好，世界。", "你好，世界。", "你好，世界。");
        row("punctuation wanted: last character goes from the match", true, true, "打开，浏览器。",
            "打开，浏览器。", "打开浏览器");
        row("a full stop inside and an ASCII question mark stay", true, true, "甲。乙?丙！。",
            "甲。乙?丙！。", "甲。乙?丙");
        row("one character leaves nothing to match", true, true, "好", "好", "");
        row("the last character is a pair", true, true, "好😀", "好😀", "好");
        row("nothing at all", true, true, "", "", "");
    }

    void textIsCleaned()
    {
        const auto [addPunctuation, strip, text, out, match] = rowOf<bool, bool, QString, QString, QString>();
        const auto result = mevo::makeResultText(text, text, addPunctuation, strip);
        QCOMPARE(result.out, out);
        QCOMPARE(result.match, match);
    }

    void markersAreTakenOutUntilNoneIsLeft()
    {
        QCOMPARE(mevo::withoutOverMarker("好__over__的__over__"_s), "好的"_s);
        QCOMPARE(mevo::withoutOverMarker("a__ov__over__er__b_"_s), "ab_"_s);
        QCOMPARE(mevo::withoutOverMarker("__over__over__"_s), "over__"_s);
        const int depth = 200000; // in one pass
        QCOMPARE(mevo::withoutOverMarker("__ov"_s.repeated(depth) + "er__"_s.repeated(depth)), QString());
    }

    void textIsRouted_data()
    {
        const Rows<QString, QString, Set> row; // text, calls, set
        const Set plain = [](Desk &) {};
        row("typing", "你好__over__", "screen 你好", plain);
        row("marker alone", "__over__", "", plain);
        row("full stop is typed twice", "。__over__", "screen 。|screen 。", plain);
        row("question mark once", "？__over__", "screen ？", plain);
        row("exclamation mark once", "！__over__", "screen ！", plain);
        row("marker in the middle", "甲__over__乙", "screen 甲乙", plain);
        row("search", "天气，北京", "search 天气北京",
            [](Desk &d) { mode(d, &SessionState::VoiceSearchMode); });
        row("translate without a dialog", "甲", "", [](Desk &d) { d.state.VoiceTranslateMode = true; });
        const Set translating = [](Desk &d) {
            d.state.VoiceTranslateMode = true;
            d.port.dialog = true;
        };
        row("translate", "甲", "dialog 甲", translating);
        row("translate while the dialog closes", "甲", "screen 甲", [=](Desk &d) {
            translating(d);
            d.port.dialogClosing = true;
        });
        const Set commands = [](Desk &d) {
            mode(d, &SessionState::VoiceCommandWordMode);
            d.port.commandWords = QStringList{"复制"_s};
        };
        row("command word", "复制。", "command 复制", commands);
        row("no command word is typed", "别的", "command 别的|screen 别的", commands);
        row("one command from typing mode", "复制", "buttons|command 复制", [](Desk &d) {
            d.state.OneShotCommandWord = true;
            d.port.commandWords = QStringList{"复制"_s};
        });
        row("command with the dialog open", "别的", "dialog 别的|command 别的", [=](Desk &d) {
            commands(d);
            d.port.dialog = true;
        });
        row("command while the dialog closes", "别的", "screen 别的|command of a sent text 别的",
            [=](Desk &d) {
                commands(d);
                d.port.dialog = d.port.dialogClosing = true;
            });
        row("a text of punctuation is the empty command", "。", "command |screen ", commands);

        const Set directCommand = [](Desk &d) {
            d.state.Enable_CommandWord_Direct = true;
            d.state.CmdFlags_Contents_Driect = QStringList{"执行"_s, "命令"_s, QString()};
            d.state.Enable_CmdFlagsWord2Screen_Direct = true;
            d.port.commandWords = QStringList{"复制"_s};
        };
        row("direct command, typed as well", "执行复制",
            "screen 执行复制|buttons|command of a sent text 复制", directCommand);
        row("direct command, unknown word is not typed twice", "执行乙",
            "screen 执行乙|buttons|command of a sent text 乙", directCommand);
        row("the second direct word", "命令复制", "screen 命令复制|buttons|command of a sent text 复制",
            directCommand);
        row("a direct word alone", "执行", "screen 执行|buttons|command of a sent text ", directCommand);
        row("direct command, not typed", "执行乙", "buttons|command 乙|screen 执行乙", [=](Desk &d) {
            directCommand(d);
            d.state.Enable_CmdFlagsWord2Screen_Direct = false;
        });
        row("direct command while searching comes first", "执行复制",
            "screen 执行复制|buttons|command of a sent text 复制", [=](Desk &d) {
                directCommand(d);
                mode(d, &SessionState::VoiceSearchMode);
                d.state.Enable_Search_Direct = true;
                d.state.SearchFlags_Contents_Driect = QStringList{"执行"_s};
            });
        row("direct command in command mode leaves the buttons", "执行复制",
            "screen 执行复制|command of a sent text 复制", [=](Desk &d) {
                directCommand(d);
                mode(d, &SessionState::VoiceCommandWordMode);
            });
        row("direct command is typed once beside the dialog", "执行复制",
            "buttons|screen 执行复制|command of a sent text 复制", [=](Desk &d) {
                directCommand(d);
                d.port.dialog = d.port.dialogClosing = true;
            });
        for (const bool first : {true, false}) {
            row(first ? "an empty first direct word hides the others"
                      : "an empty direct word hides those behind it",
                "命令复制", "screen 命令复制", [=](Desk &d) {
                    directCommand(d);
                    d.state.CmdFlags_Contents_Driect.insert(first ? 0 : 1, QString());
                });
        }
        row("direct command switched off", "执行复制", "screen 执行复制", [=](Desk &d) {
            directCommand(d);
            d.state.Enable_CommandWord_Direct = false;
        });
        const Set directSearch = [](Desk &d) {
            d.state.Enable_Search_Direct = true;
            d.state.SearchFlags_Contents_Driect = QStringList{"搜索"_s};
        };
        row("direct search", "搜索天气", "search 天气", directSearch);
        row("direct search, typed as well", "搜索天气", "screen 搜索天气|search 天气", [=](Desk &d) {
            directSearch(d);
            d.state.Enable_SearchFlagsWord2Screen_Direct = true;
        });
        row("direct search beside an input method is not typed", "搜索天气", "search 天气", [=](Desk &d) {
            directSearch(d);
            d.state.Enable_SearchFlagsWord2Screen_Direct = d.state.ThirdPartyActive = true;
        });
        row("a word that searches does not switch", "搜索", "search ", [=](Desk &d) {
            directSearch(d);
            d.state.Enable_SwitchFunctionMode = true;
            d.state.SetEnterVoiceTypeModeSwitchModeFlags = QStringList{"搜索"_s};
        });
        row("an empty search word hides those behind it", "搜索天气", "screen 搜索天气", [=](Desk &d) {
            directSearch(d);
            d.state.SearchFlags_Contents_Driect.prepend(QString());
        });
        row("the word inside a sentence is no prefix", "我要搜索", "screen 我要搜索", directSearch);

        const Set switching = [](Desk &d) {
            d.state.Enable_SwitchFunctionMode = true;
            d.state.SetEnterVoiceTypeModeSwitchModeFlags = QStringList{"打字"_s};
            d.state.SetEnterVoiceCommandWordModeSwitchModeFlags = QStringList{"命令"_s};
        };
        row("switch word in a sentence is text", "打字吧", "screen 打字吧", switching);
        row("switching off: a word is a word", "命令", "screen 命令", [=](Desk &d) {
            switching(d);
            d.state.Enable_SwitchFunctionMode = false;
        });
        row("an empty list matches no empty text", "。", "screen ",
            [](Desk &d) { d.state.Enable_SwitchFunctionMode = true; });
        row("the empty word of a list that ends in a semicolon matches an empty text", "。", "buttons|reload",
            [=](Desk &d) {
                switching(d);
                d.state.SetEnterVoiceSearchModeSwitchModeFlags.append(QString());
            });
    }

    void textIsRouted()
    {
        const auto [text, calls, set] = rowOf<QString, QString, Set>();
        Desk desk;
        set(desk);
        QCOMPARE(desk.take(text), calls);
        QVERIFY(desk.state.ResultIdle);
        QVERIFY(desk.state.RecTextBuffer.isEmpty());
    }

    /// A search or a change of mode leaves the mark for the session that a command was asked for.
    void oneShotEndsWithAFullPass_data()
    {
        const Rows<QString, bool> row; // text, stays
        row("command", "复制", false);
        row("direct command", "执行复制", false);
        row("direct search", "搜索天气", true);
        row("mode switch", "打字", true);
    }

    void oneShotEndsWithAFullPass()
    {
        const auto [text, stays] = rowOf<QString, bool>();
        Desk desk;
        desk.state.OneShotCommandWord = true;
        desk.state.CmdFlags_Contents_Driect = QStringList{"执行"_s};
        desk.state.SearchFlags_Contents_Driect = QStringList{"搜索"_s};
        desk.state.Enable_SwitchFunctionMode = true;
        desk.state.SetEnterVoiceTypeModeSwitchModeFlags = QStringList{"打字"_s};
        desk.take(text);
        QCOMPARE(desk.state.OneShotCommandWord.load(), stays);
    }

    void theDoorTellsWordsFromErrors_data()
    {
        const Rows<QString, QString> row; // text, calls
        row("words", "甲__over__", "timer|latch off|screen 甲");
        row("nothing", "", "timer");
        row("over the limit", "门牌11201号__over__", "screen 门牌11201号|tray");
        row("the code at the start is text", "11201", "timer|latch off|screen 11201");
        row("ended by the engine", "甲__AutoOver__", "timer|stop|end session|latch off");
    }

    void theDoorTellsWordsFromErrors()
    {
        const auto [text, calls] = rowOf<QString, QString>();
        Desk desk;
        desk.state.Recording = true;
        desk.state.RecTextBuffer.clear();
        desk.pipeline.showRecText(text, desk.session());
        QCOMPARE(desk.port.log.calls().join(QLatin1Char('|')), calls);
        QCOMPARE(desk.state.Recording.load(), !text.contains(QLatin1String("__AutoOver__")));
    }

    /// A text finds things as they were at its own press, and touches nothing of a session that came later.
    void aTextStaysWithItsOwnSession_data()
    {
        const Rows<Set, Set, QString> row; // atPress, afterwards, calls
        const Set typing = [](Desk &) {};
        const Set commands = [](Desk &d) { mode(d, &SessionState::VoiceCommandWordMode); };
        const Set oneCommand = [](Desk &d) { d.state.OneShotCommandWord = true; };
        const Set searching = [](Desk &d) { mode(d, &SessionState::VoiceSearchMode); };
        const Set back = [](Desk &d) {
            d.state.VoiceCommandWordMode = d.state.VoiceSearchMode = d.state.OneShotCommandWord = false;
            d.state.VoiceTypeMode = true;
        };
        row("typed while commands come", typing, commands, "screen 复制");
        row("typed while one command comes", typing, oneCommand, "screen 复制");
        row("typed while a search comes", typing, searching, "screen 复制");
        row("command before typing", commands, back, "command 复制");
        row("one command before typing", oneCommand, back, "buttons|command 复制");
        row("search before typing", searching, back, "search 复制");
        row(
            "translation whose dialog is gone", [](Desk &d) { d.state.VoiceTranslateMode = true; },
            [](Desk &d) { d.state.VoiceTranslateMode = false; }, "screen 复制");
    }

    void aTextStaysWithItsOwnSession()
    {
        const auto [atPress, afterwards, calls] = rowOf<Set, Set, QString>();
        for (const bool another : {false, true}) {
            Desk desk;
            desk.port.commandWords = QStringList{"复制"_s};
            atPress(desk);
            mevo::SessionContext session = desk.session();
            session.number = desk.state.NewestSession = 1;
            afterwards(desk);
            if (another) {
                desk.state.NewestSession = 2;
                desk.state.Recording = true;
            }
            const bool mark = desk.state.OneShotCommandWord;
            desk.pipeline.showRecText("复制__over__"_s, session);
            QStringList seen = desk.port.log.calls();
            seen.removeAll("timer"_s);
            QCOMPARE(seen.removeAll("latch off"_s), another ? 0 : 1);
            QCOMPARE(seen.join(QLatin1Char('|')), calls);
            QCOMPARE(desk.port.pictures, another ? 0 : 1);
            if (another) {
                QCOMPARE(desk.state.OneShotCommandWord.load(), mark);
                desk.pipeline.showRecText("__AutoOver__"_s, session);
                QVERIFY(desk.state.Recording);
            }
        }
    }

    /// Texts go out in the order of the presses, each once, whatever comes first and whatever comes in
    /// between.
    void resultsComeInTheOrderOfThePresses_data()
    {
        // events ("+" press, "2a" text of session 2, "2." its end), expected
        const Rows<QString, QString> row;
        row("one after another", "+ 1a 1. + 2b 2.", "1a 2b");
        row("the second is faster", "+ + 2b 2. 1a 1.", "1a 2b");
        row("three, backwards", "+ + + 3c 3. 2b 2. 1a 1.", "1a 2b 3c");
        row("the first says nothing", "+ + 2b 1. 2.", "2b");
        row("the middle one says nothing", "+ + + 3c 1a 2. 3. 1.", "1a 3c");
        row("several texts of one", "+ 1a + 2b 1c 1. 2d 2.", "1a 1c 2b 2d");
        row("a text after the end", "+ 1. 1a", "");
        row("two ends", "+ + 1a 1. 1. 2b 2.", "1a 2b");
        row("a next one comes while a text is taken", "+ 1n 1. 2b 2.", "1n 2b");
        row("a text is typed", "+ + 1t 1. 2b 2. !", "1t 2b");
        row("unknown sessions", "7a 7. + 1a 1.", "1a");
    }

    void resultsComeInTheOrderOfThePresses()
    {
        const auto [events, expected] = rowOf<QString, QString>();
        QStringList delivered;
        bool typing = false; // what the text "t" has set off; "!" is its end
        mevo::SessionResults *door = nullptr;
        mevo::SessionResults results(
            [&](const mevo::SessionContext &session, const mevo::SessionText &text) {
                if (text.text ==
                    QLatin1String("n")) { // an event loop runs, and the next session is over in it
                    const int next = door->begin({});
                    door->text(next, {"b"_s, false});
                    QVERIFY(delivered.isEmpty());
                }
                delivered.append(QString::number(session.number) + text.text);
                typing = text.text == QLatin1String("t");
            },
            [&typing] { return typing; });
        door = &results;
        for (const QString &event : events.split(QLatin1Char(' '))) {
            if (event == QLatin1String("+")) {
                results.begin({});
            } else if (event == QLatin1String("!")) {
                QVERIFY(results.carryOn() && delivered.size() == 1);
                typing = false;
                QVERIFY(!results.carryOn());
            } else if (event == QLatin1String("2b") && events.contains(QLatin1Char('n'))) {
                continue; // it has come while the first was taken
            } else if (event.endsWith(QLatin1Char('.'))) {
                results.end(event.at(0).digitValue());
            } else {
                results.text(event.at(0).digitValue(), {event.mid(1), false});
            }
        }
        QCOMPARE(delivered.join(QLatin1Char(' ')), expected);
    }
};

QTEST_GUILESS_MAIN(TestPipeline)
#include "tst_pipeline.moc"
