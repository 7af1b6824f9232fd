// The translation window in its program: voice keys, sentences, selections, on a platform of fakes with a
// translation service of the test's own.

#include "Program.h"

#include "base/ApplicationFiles.h"
#include "services/LabHttpServer.h"
#include "support/Rows.h"
#include "support/ScriptedHttp.h"
#include "translation/TranslateService.h"
#include "ui/translation/CTransTipDialog.h"
#include "window/SelectionChoice.h"
#include "window/SelectionCopy.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextEdit>
#include <QUrlQuery>

namespace {

/// Answers each text with itself in brackets.
struct Service
{
    ScriptedHttp server;
    QStringList asked; ///< "TEXT FROM>TO"

    Service()
    {
        server.answering = [this](const ScriptedRequest &request) {
            const QUrl url(QString::fromLatin1(request.target));
            if (!url.path().endsWith(QLatin1String("/translate"))) {
                return ScriptedAnswer::body("", 404);
            }
            const QUrlQuery query(url);
            const QString text = query.queryItemValue("q"_s, QUrl::FullyDecoded);
            asked.append(
                "%1 %2>%3"_s.arg(text, query.queryItemValue("from"_s), query.queryItemValue("to"_s)));
            const QJsonObject segment{{"src"_s, text}, {"dst"_s, QLatin1Char('[') + text + QLatin1Char(']')}};
            return ScriptedAnswer::body(
                QJsonDocument(QJsonObject{{"trans_result"_s, QJsonArray{segment}}}).toJson());
        };
    }
};

struct Desk
{
    Service service;
    Program program;

    explicit Desk(int delay = 1, bool plugged = true)
        : Desk(delay, plugged, QString())
    {
    }
    /// `host` is where the services are; empty for the one above.
    Desk(int delay, bool plugged, const QString &host)
        : program(plugged, host.isEmpty() ? service.server.host() : host)
    {
        QFile settings(mevo::appFile("MEVOSetting.ini"_s));
        if (settings.open(QIODevice::Append)) {
            settings.write("[TransSetting]\nSourceLan_currentIndex=1\nDestLan_currentIndex=4\n"
                           "SourceLan_Delimit_currentIndex=5\nSendTransResult2ScreenMode=" +
                           QByteArray::number(delay) + "\n");
        }
        settings.close();
        QFile::remove(mevo::appFile("MEVOUndelivered.json"_s));
        program.fake.windowSystem->foreground = 0x4000010; // our own have small numbers here
        program.start();
        program.fake.log.clear();
    }
    MainWindow &window() { return *program.window; }
    CTransTipDialog *dialog() { return program.window->findChild<CTransTipDialog *>(); }
    QString pane(const char *name)
    {
        return dialog() != nullptr ? dialog()->findChild<QTextEdit *>(QLatin1String(name))->toPlainText()
                                   : QString();
    }
    QString translation() { return pane("textEdit_DestLan"); }
    /// The file of the texts that could not be typed.
    static QByteArray kept()
    {
        QFile file(mevo::appFile("MEVOUndelivered.json"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList calls(const char *prefix) { return program.fake.log.calls(QString::fromUtf8(prefix)); }
    void translateSelections()
    {
        window().pushBuutton_Translate_clicked();
        dialog()->findChild<QCheckBox *>("checkBox_Delimit_Translation"_s)->click();
        program.fake.log.clear();
    }
};

} // namespace

class TestTranslationHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Where no other program's window has ever been in front, a translation goes into none of ours. First of
    /// all: which window was in front last is remembered for the whole run.
    void nothingGoesIntoAWindowOfOurs_data() { flagRows("at the window's closing", "by the button"); }
    void nothingGoesIntoAWindowOfOurs()
    {
        const auto [closes] = rowOf<bool>();
        Desk desk(closes ? 5 : 10000);
        QDialog other; // such as the settings
        other.show();
        desk.program.fake.windowSystem->foreground = desk.program.fake.windowSystem->focused = other.winId();
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->showRecText("你好"_s);
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        if (closes) {
            desk.dialog()->on_pushButton_TransClose_clicked();
        } else {
            desk.dialog()->on_pushButton_TransSend_clicked();
        }
        desk.program.settle();
        QCOMPARE(desk.calls("clipboard set"), QStringList());
        QCOMPARE(desk.calls("post"), QStringList());
        QCOMPARE(desk.calls("message 有文字未能输入").size(), 1);
        QVERIFY(Desk::kept().contains("[你好]"));
    }

    void theButtonOpensAndCloses()
    {
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        QVERIFY(desk.window().VoiceTranslateMode && desk.dialog()->isVisible());
        QVERIFY(desk.program.fake.ownWindows->withoutFocus.contains(desk.dialog()->winId()));
        desk.dialog()->hide();
        desk.window().pushBuutton_Translate_clicked(); // a hidden one comes back
        QVERIFY(desk.window().VoiceTranslateMode && desk.dialog()->isVisible());
        desk.window().DelimitTranslation = true;
        desk.window().pushBuutton_Translate_clicked();
        QTRY_VERIFY(desk.dialog() == nullptr);
        QVERIFY(!desk.window().VoiceTranslateMode && !desk.window().DelimitTranslation);
        QCOMPARE(desk.calls("clipboard"), QStringList{"clipboard clear"_s});
        desk.window().pushBuutton_Translate_clicked(); // and a new one can be made
        QVERIFY(desk.window().VoiceTranslateMode && desk.dialog()->isVisible());
    }

    /// The sentence goes into the window, its translation into the program in front, by the clipboard.
    void spokenSentence()
    {
        Desk desk;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.dialog()->isVisible());
        desk.window().showRecText("你好__over__"_s);
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        QCOMPARE(desk.service.asked, QStringList{"你好 zh>en"_s});
        QVERIFY(desk.calls("post").isEmpty());
        QTRY_COMPARE(desk.calls("clipboard set"), QStringList{"clipboard set [你好]"_s});
        QTRY_VERIFY(desk.program.fake.log.has("hid send 05 81 04 01 19 00 00 00"_s));
        QTest::qWait(50);
        QCOMPARE(desk.calls("clipboard set").size(), 1);
    }

    /// Ours in front: the window before it comes back first; one that does not come gets nothing.
    void returnsTheFocusFirst_data() { flagRows("it comes", "it does not"); }
    void returnsTheFocusFirst()
    {
        const auto [obeys] = rowOf<bool>();
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->HandleGetForeWin();
        desk.program.fake.windowSystem->foreground = desk.dialog()->winId();
        desk.program.fake.windowSystem->obeys = obeys;
        desk.dialog()->findChild<QTextEdit *>("textEdit_DestLan"_s)->setPlainText("text"_s);
        desk.dialog()->on_pushButton_TransSend_clicked();
        desk.program.settle();
        QCOMPARE(desk.calls("activate"), QStringList{"activate 4000010"_s});
        QCOMPARE(desk.program.fake.log.has("clipboard set text"_s), obeys);
        QCOMPARE(desk.calls("message 有文字未能输入").size(), obeys ? 0 : 1);
    }

    void takesTheKeyboardFromNobody_data()
    {
        flagRows("the translation window has it, and the window before does not come",
                 "somebody types in the settings");
    }
    /// A sentence has a window of its own, and is typed there beside whatever is in front.
    void takesTheKeyboardFromNobody()
    {
        const auto [ours] = rowOf<bool>();
        Desk desk(1);
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText("你好__over__"_s);
        QDialog settings;
        settings.show();
        auto *windows = desk.program.fake.windowSystem;
        windows->foreground = windows->focused = ours ? desk.dialog()->winId() : settings.winId();
        QTRY_COMPARE(desk.calls("post"), QStringList{"post 11 [你好]"_s});
        QCOMPARE(desk.calls("activate").size(), ours ? 1 : 0);
        QCOMPARE(desk.calls("message 有文字未能输入").size() + desk.calls("clipboard set").size(), 0);
    }

    /// What is still on its way at an exit is kept in the order in which it was said.
    void anExitKeepsTheOrder()
    {
        Desk desk(5);
        desk.program.fake.windowSystem->holdPosts = true;
        desk.window().FocusWindow = 0x11;
        desk.window().showRecText("一__over__"_s);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().HidBusy = true; // the clipboard's turn does not come
        desk.dialog()->showRecText("二"_s);
        QTRY_COMPARE(desk.translation(), "[二]"_s);
        desk.dialog()->on_pushButton_TransSend_clicked();
        desk.dialog()->showRecText("三"_s);
        QTRY_COMPARE(desk.translation(), "[三]"_s);
        desk.window().exitByItself();
        desk.window().HidBusy = false;
        QStringList texts;
        for (const QJsonValue &text : QJsonDocument::fromJson(Desk::kept()).array()) {
            texts.append(text["text"_s].toString());
        }
        QCOMPARE(texts, (QStringList{"一"_s, "[二]"_s, "[三]"_s}));
    }

    /// An input method copies what it has heard a moment after its key: an exit of that moment keeps it.
    void anExitKeepsWhatAnInputMethodHasHeard()
    {
        Desk desk(5);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().ThirdPartyActive = desk.window().VoiceTypeMode = true;
        desk.window().LocalUseASR3Index = 2;
        desk.program.fake.windowSystem->byTitle.insert(QString(), 7);
        desk.window().ASR3WinClassName.clear();
        desk.window().ASR3WindowName.clear();
        desk.program.take(3, true);
        desk.program.fake.clipboard->setText("听到的"_s);
        desk.window().exitByItself();
        QCOMPARE(Desk::kept().count("听到的"), 1);
    }

    /// The window of the first text comes late, the second one's is there: they keep their order.
    void textsKeepTheirOrder()
    {
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->HandleGetForeWin();
        auto *windows = desk.program.fake.windowSystem;
        windows->foreground = desk.dialog()->winId();
        auto *pane = desk.dialog()->findChild<QTextEdit *>("textEdit_DestLan"_s);
        pane->setPlainText("first"_s);
        desk.dialog()->on_pushButton_TransSend_clicked();
        windows->foreground = 0x5000020;
        pane->setPlainText("second"_s);
        desk.dialog()->on_pushButton_TransSend_clicked();
        windows->foreground = 0x4000010;
        QTRY_COMPARE(desk.calls("clipboard set"),
                     (QStringList{"clipboard set first"_s, "clipboard set second"_s}));
        QCOMPARE(desk.calls("message 有文字未能输入").size(), 0);
    }

    /// Keys would go nowhere; but where not all windows can be seen, one may be there.
    void noWindowIsInFront_data() { flagRows("all windows can be seen", "not all"); }
    void noWindowIsInFront()
    {
        const auto [allInSight] = rowOf<bool>();
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        desk.program.fake.windowSystem->foreground = 0;
        desk.program.fake.windowSystem->canPost = allInSight;
        desk.window().showRecText("你好__over__"_s);
        QTRY_COMPARE(desk.calls(allInSight ? "message 有文字未能输入" : "clipboard set [你好]").size(), 1);
        QCOMPARE(desk.calls("clipboard set").size(), allInSight ? 0 : 1);
    }

    /// The focus has moved since the press, or moves while the clipboard is in use: the paste key would type
    /// into another window.
    void goesIntoItsOwnWindowAlone_data()
    {
        // focused (when the translation is typed), method, closes, call (empty when the text is kept)
        const Rows<mevo::WindowId, int, bool, QString> row;
        const mevo::WindowId editor = 0x11;
        const mevo::WindowId other = 0x22;
        const QString pasted = "clipboard set [你好]"_s;
        const QString posted = "post 11 [你好]"_s;
        row("the focus is there", editor, 0, false, pasted);
        row("it is elsewhere", other, 0, false, posted);
        row("it is elsewhere, and nothing may be posted", other, 2, false, QString());
        row("the window closes", other, 0, true, posted);
        row("the window closes, and nothing may be posted", other, 2, true, QString());
    }
    void goesIntoItsOwnWindowAlone()
    {
        const auto [focused, method, closes, call] = rowOf<mevo::WindowId, int, bool, QString>();
        Desk desk(closes ? 5 : 1);
        desk.window().Send2ScreenMethod = method;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText("你好__over__"_s);
        desk.program.fake.windowSystem->focused = focused;
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        if (closes) {
            desk.dialog()->on_pushButton_TransClose_clicked();
        }
        const auto typed = [&desk] { return desk.calls("clipboard set") + desk.calls("post"); };
        if (call.isEmpty()) {
            QTRY_COMPARE(desk.calls("message 有文字未能输入").size(), 1);
            QCOMPARE(typed(), QStringList());
        } else {
            QTRY_COMPARE(typed(), QStringList{call});
            QCOMPARE(desk.calls("message 有文字未能输入").size(), 0);
        }
    }

    /// Nor do the keys of a word that means some.
    void keysOfAWordGoNowhereElse_data() { flagRows("it is elsewhere", "the focus is there"); }
    void keysOfAWordGoNowhereElse()
    {
        const auto [elsewhere] = rowOf<bool>();
        Desk desk(1);
        desk.window().VoiceSend = desk.window().VoiceSend_Enter = true;
        desk.window().VoiceSend_Enter_MapWords = "[发送]"_s;
        desk.window().VoiceSend_MapWords2Screen = false;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText("发送__over__"_s);
        desk.program.fake.windowSystem->focused = elsewhere ? 0x22 : 0x11;
        const QString enter = "hid send 05 81 04 00 28 00 00 00"_s;
        if (elsewhere) {
            QTRY_COMPARE(desk.calls("message 原来的窗口已失去焦点").size(), 1);
            QVERIFY(!desk.program.fake.log.has(enter));
            QVERIFY(!QFile::exists(mevo::appFile("MEVOUndelivered.json"_s)));
        } else {
            QTRY_VERIFY(desk.program.fake.log.has(enter));
        }
        QCOMPARE(desk.calls("clipboard set") + desk.calls("post"), QStringList());
    }

    void sendsOffWhatWasTypedBesideTheFocus_data()
    {
        flagRows("the focus has come back by then", "it is still elsewhere");
    }
    void sendsOffWhatWasTypedBesideTheFocus()
    {
        const auto [comesBack] = rowOf<bool>();
        Desk desk(1);
        desk.window().VoiceImmediateSend = desk.window().VoiceImmediateSend_Enter = true;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText("你好__over__"_s);
        auto *windows = desk.program.fake.windowSystem;
        windows->focused = 0x22;
        windows->onPost = [&, &comesBack = comesBack] { windows->focused = comesBack ? 0x11 : 0x22; };
        QTRY_COMPARE(desk.calls("post").size(), 1);
        desk.program.settle();
        const QString enter = "hid send 05 81 04 00 28 00 00 00"_s;
        if (comesBack) {
            QTRY_VERIFY(desk.program.fake.log.has(enter));
        } else {
            QVERIFY(!desk.program.fake.log.has(enter));
        }
    }

    /// By the button into the window that has the focus at the click, also when that is left before the turn
    /// of the text has come; and they keep their order.
    void theFocusMovesBehindAPaste()
    {
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        auto *pane = desk.dialog()->findChild<QTextEdit *>("textEdit_DestLan"_s);
        for (const char *text : {"first", "second"}) {
            pane->setPlainText(QString::fromLatin1(text));
            desk.dialog()->on_pushButton_TransSend_clicked();
        }
        desk.program.fake.windowSystem->focused = 0x22;
        pane->setPlainText("third"_s);
        desk.dialog()->on_pushButton_TransSend_clicked();
        const auto typed = [&desk] { return desk.calls("clipboard set") + desk.calls("post"); };
        QTRY_COMPARE(typed(),
                     (QStringList{"clipboard set first"_s, "clipboard set third"_s, "post 11 second"_s}));
    }

    /// The button sends in every mode, what the timer in that mode does not.
    void theButtonSendsInEveryMode_data()
    {
        const Rows<bool, bool> row; // spoken, commands (else an input method is in force)
        row("spoken as a command", true, true);
        row("a text, among commands", false, true);
        row("spoken beside an input method", true, false);
        row("a text, beside an input method", false, false);
    }
    void theButtonSendsInEveryMode()
    {
        const auto [spoken, commands] = rowOf<bool, bool>();
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().DontSend2ScreenWhenCmdStatus = true;
        desk.window().ThirdPartyActive = !commands;
        desk.window().VoiceCommandWordMode = commands;
        desk.window().VoiceTypeMode = !commands;
        if (spoken) {
            desk.dialog()->showRecText("你好"_s);
        } else {
            desk.dialog()->findChild<QTextEdit *>("textEdit_SourceLan"_s)->setPlainText("你好"_s);
        }
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        desk.dialog()->on_pushButton_TransSend_clicked();
        QTRY_COMPARE(desk.calls("clipboard set"), QStringList{"clipboard set [你好]"_s});
    }

    /// A translation of what is selected is typed by no input method, and goes to where it was selected.
    void aSelectionGoesBackToItsWindow()
    {
        Desk desk(1);
        desk.translateSelections();
        desk.window().ThirdPartyActive = true;
        desk.window().VoiceTypeMode = true;
        desk.program.fake.clipboard->copiedNext = "selected"_s;
        char press[mevo::keyReportSize] = {1, 0x70, 3, 1};
        desk.dialog()->ProcessResult(press);
        QTRY_COMPARE(desk.translation(), "[selected]"_s);
        desk.program.fake.windowSystem->focused = 0x22;
        QTRY_COMPARE(desk.calls("post"), QStringList{"post 11 [selected]"_s});
        QVERIFY(desk.calls("clipboard set").isEmpty());
    }

    /// The mode of the press decides over a translation, whichever is in force when it is typed.
    void theModeHasChangedMeanwhile_data() { flagRows("from commands", "to commands"); }
    void theModeHasChangedMeanwhile()
    {
        const auto [spokenAsCommand] = rowOf<bool>();
        Desk desk;
        const auto enterCommands = [&desk](bool commands) {
            desk.window().VoiceCommandWordMode = commands;
            desk.window().VoiceTypeMode = !commands;
        };
        desk.window().DontSend2ScreenWhenCmdStatus = true;
        desk.window().pushBuutton_Translate_clicked();
        enterCommands(spokenAsCommand);
        desk.window().showRecText("你好__over__"_s);
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        enterCommands(!spokenAsCommand);
        if (spokenAsCommand) {
            QTest::qWait(1200);
            QVERIFY(desk.calls("clipboard set").isEmpty());
        } else {
            QTRY_COMPARE(desk.calls("clipboard set"), QStringList{"clipboard set [你好]"_s});
        }
    }

    /// What the service refuses for its length: told, and nothing of it lost.
    void longSentences_data()
    {
        const Rows<int, bool> row; // characters, translated
        row("as long as the service takes", 2000, true);
        row("one more", 2001, false);
        row("so long that the connection is cut", 10000, false);
    }
    void longSentences()
    {
        const auto [characters, translated] = rowOf<int, bool>();
        lab::TranslateService service("appid", "key", [](const QJsonObject &) {});
        lab::LabHttpServer server(
            [&service](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
                request.path().endsWith("/translate") ? service.handle(request, reply) : reply({404, {}, {}});
            });
        QVERIFY(server.start(0));
        Desk desk(0, true, "127.0.0.1:%1"_s.arg(server.serverPort()));
        desk.window().BaiduTranslateAppId = "appid"_s;
        desk.window().BaiduTranslateKey = "key"_s;
        desk.window().pushBuutton_Translate_clicked();
        const QString sentence(characters, QChar(u'长'));
        desk.window().showRecText(sentence + "__over__"_s);
        if (translated) {
            QTRY_COMPARE(desk.calls("clipboard set"), QStringList{"clipboard set [zh>en] "_s + sentence});
            return;
        }
        QTRY_COMPARE(desk.calls("message 有文字未能输入").size(), 1);
        QVERIFY(desk.calls("clipboard set").isEmpty());
        QCOMPARE(QString::fromUtf8(Desk::kept()).count(u'长'), characters);
    }

    void choices_data()
    {
        // changed, clipboard, before, selection, text, putBack
        const Rows<bool, QString, QString, QString, QString, bool> row;
        row("copied", true, "new", "old", "other", "new", true);
        row("copied, nothing there before", true, "new", "", "", "new", false);
        row("the same again", true, "old", "old", "", "old", false);
        row("no keys, but selected", false, "", "old", "selected", "selected", false);
        row("nothing selected", false, "", "old", "", "old", false);
        row("a picture was copied", true, "", "old", "", "", true);
        row("nothing at all", false, "", "", "", "", false);
    }
    void choices()
    {
        const auto [changed, clipboard, before, selection, text, putBack] =
            rowOf<bool, QString, QString, QString, QString, bool>();
        const mevo::SelectionChoice choice = mevo::chooseSelection({changed, clipboard, before, selection});
        QCOMPARE(choice.text, text);
        QCOMPARE(choice.putBack, putBack);
    }

    /// A voice key copies instead of recording; the clipboard has its text again.
    void selectionByTheReceiver()
    {
        Desk desk(10000);
        desk.translateSelections();
        desk.program.fake.clipboard->putIn("before"_s);
        desk.program.fake.clipboard->copiedNext = "selected"_s;
        desk.program.key(3, true);
        QTRY_VERIFY(desk.program.fake.log.has("hid send 05 81 04 01 06 00 00 00"_s));
        desk.program.key(3, false);
        QTRY_COMPARE(desk.translation(), "[selected]"_s);
        QCOMPARE(desk.service.asked, QStringList{"selected en>zh"_s});
        QCOMPARE(desk.program.fake.clipboard->content, "before"_s);
        QVERIFY(desk.program.fake.log.has("hid send 05 81 04 00 00 00 00 00"_s));
        QVERIFY(!desk.window().Recording);
    }

    /// Emptying the clipboard while a copy is awaited is not the copy, and nothing old comes back.
    void theClipboardIsEmptiedMeanwhile_data() { flagRows("by copying again", "by a clear button"); }
    void theClipboardIsEmptiedMeanwhile()
    {
        const auto [byCopyingAgain] = rowOf<bool>();
        FakePlatform fake;
        int pressed = 0;
        mevo::SelectionCopy copy(fake.platform, [&pressed] { return ++pressed > 0; });
        fake.clipboard->putIn("old"_s);
        QStringList first, second;
        copy.begin(false, [&first](const QString &text) { first += text; });
        fake.clipboard->clear();
        copy.clipboardEmptied();
        if (byCopyingAgain) {
            copy.begin(true, [&second](const QString &text) { second += text; });
        }
        fake.clipboard->copiedNext = "new"_s;
        QTRY_COMPARE(byCopyingAgain ? second : first, QStringList{"new"_s});
        QCOMPARE(first.size() + second.size(), 1);
        QCOMPARE(pressed, byCopyingAgain ? 2 : 1);
        QCOMPARE(fake.clipboard->content, "new"_s);
    }

    /// A terminal that copies by no key gets none, least of all Ctrl+C.
    void selectionInATerminal_data()
    {
        const Rows<QString, QString> row; // windowClass, keys
        row("xterm", "xterm.XTerm", "");
        row("konsole", "konsole.konsole", "05 81 04 03 06 00 00 00");
    }
    void selectionInATerminal()
    {
        const auto [windowClass, keys] = rowOf<QString, QString>();
        Desk desk(10000);
        desk.translateSelections();
        desk.program.fake.windowSystem->classOfAll = windowClass;
        desk.program.fake.clipboard->selected = "marked"_s;
        desk.program.key(3, true);
        QTRY_COMPARE(desk.translation(), "[marked]"_s);
        const QStringList pressed = desk.calls("hid send 05 81 04 ").filter(" 06 00"_s);
        QCOMPARE(pressed, keys.isEmpty() ? QStringList() : QStringList{"hid send "_s + keys});
    }

    void nothingSelected()
    {
        Desk desk(10000);
        desk.translateSelections();
        desk.program.fake.clipboard->putIn("held"_s);
        desk.program.key(3, true);
        QTRY_COMPARE(desk.translation(), "[held]"_s); // what the clipboard has held all along
        desk.dialog()->on_pushButton_ClearTransSource_clicked();
        desk.dialog()->on_pushButton_ClearTransDest_clicked();
        desk.program.key(3, true);
        desk.program.settle();
        QTest::qWait(50);
        QVERIFY(desk.translation().isEmpty());
        QCOMPARE(desk.service.asked.size(), 1);
    }

    /// What is selected is no text: what the clipboard held has nothing to do with it.
    void aPictureIsSelected()
    {
        Desk desk(1);
        desk.translateSelections();
        desk.program.fake.clipboard->putIn("held"_s);
        desk.program.fake.clipboard->copiedNext = ""_s;
        desk.program.key(3, true);
        QTRY_VERIFY(desk.program.fake.log.has("hid send 05 81 04 01 06 00 00 00"_s));
        desk.program.settle();
        QTRY_VERIFY(desk.program.fake.log.has("clipboard clear"_s));
        desk.program.settle();
        QVERIFY(desk.service.asked.isEmpty());
        QVERIFY(desk.pane("textEdit_SourceLan").isEmpty());
    }

    /// By the system's voice, in the pane's language; silent once the window has gone.
    void readsAloud()
    {
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->findChild<QTextEdit *>("textEdit_SourceLan"_s)->setPlainText("你好"_s);
        desk.dialog()->on_pushButton_SourceLan_tts_clicked();
        QCOMPARE(desk.calls("speak"), QStringList{"speak cmn 你好"_s});
        desk.program.fake.log.clear();
        desk.window().pushBuutton_Translate_clicked();
        QVERIFY(desk.program.fake.log.has("speech stop"_s));
    }

    /// The receiver takes the window with it; a sentence that waits to be typed is kept.
    void theReceiverGoes()
    {
        Desk desk(5);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().showRecText("你好__over__"_s);
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        desk.program.change(mevo::DeviceNotifier::Change::Removal);
        QTRY_VERIFY(desk.dialog() == nullptr);
        QVERIFY(!desk.window().VoiceTranslateMode);
        QCOMPARE(desk.calls("message 有文字未能输入").size(), 1);
    }

    /// The window is closed, or the program left, while the service is silent.
    void endsWhileTheServiceIsSilent_data() { flagRows("left", "closed"); }
    void endsWhileTheServiceIsSilent()
    {
        const auto [leaves] = rowOf<bool>();
        Desk desk(0);
        desk.service.server.answering = nullptr;
        desk.service.server.fallback = ScriptedAnswer::silence();
        desk.window().pushBuutton_Translate_clicked();
        const int before = desk.service.server.requests.size();
        desk.window().showRecText("你好__over__"_s);
        bool done = false;
        QTimer::singleShot(100, &desk.window(), [&, &leaves = leaves] {
            QVERIFY(desk.service.server.requests.size() > before);
            leaves ? desk.window().exitByItself() : desk.window().pushBuutton_Translate_clicked();
            done = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(done && desk.dialog() == nullptr, 10000);
        if (leaves) { // the sentence is kept for the next run, else typed as it was spoken
            QCOMPARE(Desk::kept().count("你好"), 1);
            QVERIFY(desk.calls("clipboard set").isEmpty());
        } else {
            QTRY_COMPARE(desk.calls("clipboard set"), QStringList{"clipboard set 你好"_s});
        }
    }

    /// Closed with its own window in front: the text goes to the window before, or is kept.
    void closesWithATextThatWaits_data() { flagRows("the window before comes", "it does not"); }
    void closesWithATextThatWaits()
    {
        const auto [obeys] = rowOf<bool>();
        Desk desk(5);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().showRecText("你好__over__"_s);
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        desk.dialog()->HandleGetForeWin();
        desk.program.fake.windowSystem->foreground = desk.dialog()->winId();
        desk.program.fake.windowSystem->obeys = obeys;
        desk.program.fake.log.clear();
        desk.dialog()->on_pushButton_TransClose_clicked();
        desk.program.settle();
        QTRY_VERIFY(desk.dialog() == nullptr);
        QCOMPARE(desk.calls("activate"), QStringList{"activate 4000010"_s});
        QCOMPARE(desk.calls("message 有文字未能输入").size(), obeys ? 0 : 1);
        QCOMPARE(desk.program.fake.log.calls().filter("[你好]"_s).size(), obeys ? 1 : 0);
    }

    /// A question of our own has the keyboard: nothing is typed into it, but after it.
    void waitsForAQuestion()
    {
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        QDialog question(&desk.window());
        question.setModal(true);
        question.show();
        desk.window().showRecText("你好__over__"_s);
        QTRY_COMPARE(desk.translation(), "[你好]"_s);
        QTest::qWait(1200);
        QVERIFY(desk.calls("clipboard set").isEmpty());
        question.hide();
        QTRY_COMPARE(desk.calls("clipboard set"), QStringList{"clipboard set [你好]"_s});
    }

    /// The voice key is held when the selection state is entered, and its release is no longer taken.
    void endsTheSessionThatRuns()
    {
        Desk desk(10000);
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.dialog()->findChild<QCheckBox *>("checkBox_Delimit_Translation"_s)->click();
        QVERIFY(!desk.window().Recording);
        QVERIFY(!desk.window().PressPending);
        QVERIFY(desk.window().DelimitTranslation);
    }
};

QTEST_MAIN(TestTranslationHands)
#include "tst_translation_hands.moc"
