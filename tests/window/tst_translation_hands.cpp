// The translation window in its program: voice keys, sentences, selections, on a platform of fakes with a
// translation service of the test's own.

#include "Program.h"

#include "base/ApplicationFiles.h"
#include "services/LabHttpServer.h"
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
            const QString text = query.queryItemValue(QStringLiteral("q"), QUrl::FullyDecoded);
            asked.append(QStringLiteral("%1 %2>%3")
                             .arg(text, query.queryItemValue(QStringLiteral("from")),
                                  query.queryItemValue(QStringLiteral("to"))));
            const QJsonObject segment{{QStringLiteral("src"), text},
                                      {QStringLiteral("dst"), QLatin1Char('[') + text + QLatin1Char(']')}};
            return ScriptedAnswer::body(
                QJsonDocument(QJsonObject{{QStringLiteral("trans_result"), QJsonArray{segment}}}).toJson());
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
        QFile settings(mevo::appFile(QStringLiteral("MEVOSetting.ini")));
        if (settings.open(QIODevice::Append)) {
            settings.write("[TransSetting]\nSourceLan_currentIndex=1\nDestLan_currentIndex=4\n"
                           "SourceLan_Delimit_currentIndex=5\nSendTransResult2ScreenMode=" +
                           QByteArray::number(delay) + "\n");
        }
        settings.close();
        QFile::remove(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
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
    QStringList calls(const char *prefix) { return program.fake.log.calls(QString::fromUtf8(prefix)); }
    void translateSelections()
    {
        window().pushBuutton_Translate_clicked();
        dialog()->findChild<QCheckBox *>(QStringLiteral("checkBox_Delimit_Translation"))->click();
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
    void nothingGoesIntoAWindowOfOurs_data()
    {
        QTest::addColumn<bool>("closes");
        QTest::newRow("by the button") << false;
        QTest::newRow("at the window's closing") << true;
    }
    void nothingGoesIntoAWindowOfOurs()
    {
        QFETCH(bool, closes);
        Desk desk(closes ? 5 : 10000);
        QDialog other; // such as the settings
        other.show();
        desk.program.fake.windowSystem->foreground = desk.program.fake.windowSystem->focused = other.winId();
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->showRecText(QStringLiteral("你好"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        if (closes) {
            desk.dialog()->on_pushButton_TransClose_clicked();
        } else {
            desk.dialog()->on_pushButton_TransSend_clicked();
        }
        desk.program.settle();
        QCOMPARE(desk.calls("clipboard set"), QStringList());
        QCOMPARE(desk.calls("post"), QStringList());
        QCOMPARE(desk.calls("message 有文字未能输入").size(), 1);
        QFile kept(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        QVERIFY(kept.open(QIODevice::ReadOnly) && kept.readAll().contains("[你好]"));
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
        QCOMPARE(desk.calls("clipboard"), QStringList{QStringLiteral("clipboard clear")});
        desk.window().pushBuutton_Translate_clicked(); // and a new one can be made
        QVERIFY(desk.window().VoiceTranslateMode && desk.dialog()->isVisible());
    }

    /// The sentence goes into the window, its translation into the program in front, by the clipboard.
    void spokenSentence()
    {
        Desk desk;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.dialog()->isVisible());
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        QCOMPARE(desk.service.asked, QStringList{QStringLiteral("你好 zh>en")});
        QVERIFY(desk.calls("post").isEmpty());
        QTRY_COMPARE(desk.calls("clipboard set"), QStringList{QStringLiteral("clipboard set [你好]")});
        QTRY_VERIFY(desk.program.fake.log.has(QStringLiteral("hid send 05 81 04 01 19 00 00 00")));
        QTest::qWait(50);
        QCOMPARE(desk.calls("clipboard set").size(), 1);
    }

    /// Ours in front: the window before it comes back first; one that does not come gets nothing.
    void returnsTheFocusFirst_data()
    {
        QTest::addColumn<bool>("obeys");
        QTest::newRow("it comes") << true;
        QTest::newRow("it does not") << false;
    }
    void returnsTheFocusFirst()
    {
        QFETCH(bool, obeys);
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->HandleGetForeWin();
        desk.program.fake.windowSystem->foreground = desk.dialog()->winId();
        desk.program.fake.windowSystem->obeys = obeys;
        desk.dialog()
            ->findChild<QTextEdit *>(QStringLiteral("textEdit_DestLan"))
            ->setPlainText(QStringLiteral("text"));
        desk.dialog()->on_pushButton_TransSend_clicked();
        desk.program.settle();
        QCOMPARE(desk.calls("activate"), QStringList{QStringLiteral("activate 4000010")});
        QCOMPARE(desk.program.fake.log.has(QStringLiteral("clipboard set text")), obeys);
        QCOMPARE(desk.calls("message 有文字未能输入").size(), obeys ? 0 : 1);
    }

    void takesTheKeyboardFromNobody_data()
    {
        QTest::addColumn<bool>("ours");
        QTest::newRow("somebody types in the settings") << false;
        QTest::newRow("the translation window has it, and the window before does not come") << true;
    }
    /// A sentence has a window of its own, and is typed there beside whatever is in front.
    void takesTheKeyboardFromNobody()
    {
        QFETCH(bool, ours);
        Desk desk(1);
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QDialog settings;
        settings.show();
        auto *windows = desk.program.fake.windowSystem;
        windows->foreground = windows->focused = ours ? desk.dialog()->winId() : settings.winId();
        QTRY_COMPARE(desk.calls("post"), QStringList{QStringLiteral("post 11 [你好]")});
        QCOMPARE(desk.calls("activate").size(), ours ? 1 : 0);
        QCOMPARE(desk.calls("message 有文字未能输入").size() + desk.calls("clipboard set").size(), 0);
    }

    /// What is still on its way at an exit is kept in the order in which it was said.
    void anExitKeepsTheOrder()
    {
        Desk desk(5);
        desk.program.fake.windowSystem->holdPosts = true;
        desk.window().FocusWindow = 0x11;
        desk.window().showRecText(QStringLiteral("一__over__"));
        desk.window().pushBuutton_Translate_clicked();
        desk.window().HidBusy = true; // the clipboard's turn does not come
        desk.dialog()->showRecText(QStringLiteral("二"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[二]"));
        desk.dialog()->on_pushButton_TransSend_clicked();
        desk.dialog()->showRecText(QStringLiteral("三"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[三]"));
        desk.window().exitByItself();
        desk.window().HidBusy = false;
        QFile kept(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QStringList texts;
        for (const QJsonValue &text : QJsonDocument::fromJson(kept.readAll()).array()) {
            texts.append(text[QStringLiteral("text")].toString());
        }
        QCOMPARE(texts, (QStringList{QStringLiteral("一"), QStringLiteral("[二]"), QStringLiteral("[三]")}));
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
        char press[mevo::keyReportSize] = {1, 0x70, 3, 1};
        desk.window().ProcessResult(press);
        desk.program.fake.clipboard->setText(QStringLiteral("听到的"));
        desk.window().exitByItself();
        QFile kept(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll().count("听到的"), 1);
    }

    /// The window of the first text comes late, the second one's is there: they keep their order.
    void textsKeepTheirOrder()
    {
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()->HandleGetForeWin();
        auto *windows = desk.program.fake.windowSystem;
        windows->foreground = desk.dialog()->winId();
        auto *pane = desk.dialog()->findChild<QTextEdit *>(QStringLiteral("textEdit_DestLan"));
        pane->setPlainText(QStringLiteral("first"));
        desk.dialog()->on_pushButton_TransSend_clicked();
        windows->foreground = 0x5000020;
        pane->setPlainText(QStringLiteral("second"));
        desk.dialog()->on_pushButton_TransSend_clicked();
        windows->foreground = 0x4000010;
        QTRY_COMPARE(desk.calls("clipboard set"), (QStringList{QStringLiteral("clipboard set first"),
                                                               QStringLiteral("clipboard set second")}));
        QCOMPARE(desk.calls("message 有文字未能输入").size(), 0);
    }

    /// Keys would go nowhere; but where not all windows can be seen, one may be there.
    void noWindowIsInFront_data()
    {
        QTest::addColumn<bool>("allInSight");
        QTest::newRow("all windows can be seen") << true;
        QTest::newRow("not all") << false;
    }
    void noWindowIsInFront()
    {
        QFETCH(bool, allInSight);
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        desk.program.fake.windowSystem->foreground = 0;
        desk.program.fake.windowSystem->canPost = allInSight;
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QTRY_COMPARE(desk.calls(allInSight ? "message 有文字未能输入" : "clipboard set [你好]").size(), 1);
        QCOMPARE(desk.calls("clipboard set").size(), allInSight ? 0 : 1);
    }

    /// The focus has moved since the press, or moves while the clipboard is in use: the paste key would type
    /// into another window.
    void goesIntoItsOwnWindowAlone_data()
    {
        QTest::addColumn<mevo::WindowId>("focused"); // when the translation is typed
        QTest::addColumn<int>("method");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<QString>("call"); // empty when the text is kept
        const mevo::WindowId editor = 0x11;
        const mevo::WindowId other = 0x22;
        const QString pasted = QStringLiteral("clipboard set [你好]");
        const QString posted = QStringLiteral("post 11 [你好]");
        QTest::newRow("the focus is there") << editor << 0 << false << pasted;
        QTest::newRow("it is elsewhere") << other << 0 << false << posted;
        QTest::newRow("it is elsewhere, and nothing may be posted") << other << 2 << false << QString();
        QTest::newRow("the window closes") << other << 0 << true << posted;
        QTest::newRow("the window closes, and nothing may be posted") << other << 2 << true << QString();
    }
    void goesIntoItsOwnWindowAlone()
    {
        QFETCH(mevo::WindowId, focused);
        QFETCH(int, method);
        QFETCH(bool, closes);
        QFETCH(QString, call);
        Desk desk(closes ? 5 : 1);
        desk.window().Send2ScreenMethod = method;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText(QStringLiteral("你好__over__"));
        desk.program.fake.windowSystem->focused = focused;
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
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
    void keysOfAWordGoNowhereElse_data()
    {
        QTest::addColumn<bool>("elsewhere");
        QTest::newRow("the focus is there") << false;
        QTest::newRow("it is elsewhere") << true;
    }
    void keysOfAWordGoNowhereElse()
    {
        QFETCH(bool, elsewhere);
        Desk desk(1);
        desk.window().VoiceSend = desk.window().VoiceSend_Enter = true;
        desk.window().VoiceSend_Enter_MapWords = QStringLiteral("[发送]");
        desk.window().VoiceSend_MapWords2Screen = false;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText(QStringLiteral("发送__over__"));
        desk.program.fake.windowSystem->focused = elsewhere ? 0x22 : 0x11;
        const QString enter = QStringLiteral("hid send 05 81 04 00 28 00 00 00");
        if (elsewhere) {
            QTRY_COMPARE(desk.calls("message 原来的窗口已失去焦点").size(), 1);
            QVERIFY(!desk.program.fake.log.has(enter));
            QVERIFY(!QFile::exists(mevo::appFile(QStringLiteral("MEVOUndelivered.json"))));
        } else {
            QTRY_VERIFY(desk.program.fake.log.has(enter));
        }
        QCOMPARE(desk.calls("clipboard set") + desk.calls("post"), QStringList());
    }

    void sendsOffWhatWasTypedBesideTheFocus_data()
    {
        QTest::addColumn<bool>("comesBack");
        QTest::newRow("the focus has come back by then") << true;
        QTest::newRow("it is still elsewhere") << false;
    }
    void sendsOffWhatWasTypedBesideTheFocus()
    {
        QFETCH(bool, comesBack);
        Desk desk(1);
        desk.window().VoiceImmediateSend = desk.window().VoiceImmediateSend_Enter = true;
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.window().showRecText(QStringLiteral("你好__over__"));
        auto *windows = desk.program.fake.windowSystem;
        windows->focused = 0x22;
        windows->onPost = [&] { windows->focused = comesBack ? 0x11 : 0x22; };
        QTRY_COMPARE(desk.calls("post").size(), 1);
        desk.program.settle();
        const QString enter = QStringLiteral("hid send 05 81 04 00 28 00 00 00");
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
        auto *pane = desk.dialog()->findChild<QTextEdit *>(QStringLiteral("textEdit_DestLan"));
        for (const char *text : {"first", "second"}) {
            pane->setPlainText(QString::fromLatin1(text));
            desk.dialog()->on_pushButton_TransSend_clicked();
        }
        desk.program.fake.windowSystem->focused = 0x22;
        pane->setPlainText(QStringLiteral("third"));
        desk.dialog()->on_pushButton_TransSend_clicked();
        const auto typed = [&desk] { return desk.calls("clipboard set") + desk.calls("post"); };
        QTRY_COMPARE(typed(),
                     (QStringList{QStringLiteral("clipboard set first"),
                                  QStringLiteral("clipboard set third"), QStringLiteral("post 11 second")}));
    }

    /// The button sends in every mode, what the timer in that mode does not.
    void theButtonSendsInEveryMode_data()
    {
        QTest::addColumn<bool>("spoken");
        QTest::addColumn<bool>("commands"); // else an input method is in force
        QTest::newRow("spoken as a command") << true << true;
        QTest::newRow("a text, among commands") << false << true;
        QTest::newRow("spoken beside an input method") << true << false;
        QTest::newRow("a text, beside an input method") << false << false;
    }
    void theButtonSendsInEveryMode()
    {
        QFETCH(bool, spoken);
        QFETCH(bool, commands);
        Desk desk(10000);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().DontSend2ScreenWhenCmdStatus = true;
        desk.window().ThirdPartyActive = !commands;
        desk.window().VoiceCommandWordMode = commands;
        desk.window().VoiceTypeMode = !commands;
        if (spoken) {
            desk.dialog()->showRecText(QStringLiteral("你好"));
        } else {
            desk.dialog()
                ->findChild<QTextEdit *>(QStringLiteral("textEdit_SourceLan"))
                ->setPlainText(QStringLiteral("你好"));
        }
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        desk.dialog()->on_pushButton_TransSend_clicked();
        QTRY_COMPARE(desk.calls("clipboard set"), QStringList{QStringLiteral("clipboard set [你好]")});
    }

    /// A translation of what is selected is typed by no input method, and goes to where it was selected.
    void aSelectionGoesBackToItsWindow()
    {
        Desk desk(1);
        desk.translateSelections();
        desk.window().ThirdPartyActive = true;
        desk.window().VoiceTypeMode = true;
        desk.program.fake.clipboard->copiedNext = QStringLiteral("selected");
        char press[mevo::keyReportSize] = {1, 0x70, 3, 1};
        desk.dialog()->ProcessResult(press);
        QTRY_COMPARE(desk.translation(), QStringLiteral("[selected]"));
        desk.program.fake.windowSystem->focused = 0x22;
        QTRY_COMPARE(desk.calls("post"), QStringList{QStringLiteral("post 11 [selected]")});
        QVERIFY(desk.calls("clipboard set").isEmpty());
    }

    /// The mode of the press decides over a translation, whichever is in force when it is typed.
    void theModeHasChangedMeanwhile_data()
    {
        QTest::addColumn<bool>("spokenAsCommand");
        QTest::newRow("to commands") << false;
        QTest::newRow("from commands") << true;
    }
    void theModeHasChangedMeanwhile()
    {
        QFETCH(bool, spokenAsCommand);
        Desk desk;
        const auto enterCommands = [&desk](bool commands) {
            desk.window().VoiceCommandWordMode = commands;
            desk.window().VoiceTypeMode = !commands;
        };
        desk.window().DontSend2ScreenWhenCmdStatus = true;
        desk.window().pushBuutton_Translate_clicked();
        enterCommands(spokenAsCommand);
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        enterCommands(!spokenAsCommand);
        if (spokenAsCommand) {
            QTest::qWait(1200);
            QVERIFY(desk.calls("clipboard set").isEmpty());
        } else {
            QTRY_COMPARE(desk.calls("clipboard set"), QStringList{QStringLiteral("clipboard set [你好]")});
        }
    }

    /// What the service refuses for its length: told, and nothing of it lost.
    void longSentences_data()
    {
        QTest::addColumn<int>("characters");
        QTest::addColumn<bool>("translated");
        QTest::newRow("as long as the service takes") << 2000 << true;
        QTest::newRow("one more") << 2001 << false;
        QTest::newRow("so long that the connection is cut") << 10000 << false;
    }
    void longSentences()
    {
        QFETCH(int, characters);
        QFETCH(bool, translated);
        lab::TranslateService service("appid", "key", [](const QJsonObject &) {});
        lab::LabHttpServer server(
            [&service](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
                request.path().endsWith("/translate") ? service.handle(request, reply) : reply({404, {}, {}});
            });
        QVERIFY(server.start(0));
        Desk desk(0, true, QStringLiteral("127.0.0.1:%1").arg(server.serverPort()));
        desk.window().BaiduTranslateAppId = QStringLiteral("appid");
        desk.window().BaiduTranslateKey = QStringLiteral("key");
        desk.window().pushBuutton_Translate_clicked();
        const QString sentence(characters, QChar(u'长'));
        desk.window().showRecText(sentence + QStringLiteral("__over__"));
        if (translated) {
            QTRY_COMPARE(desk.calls("clipboard set"),
                         QStringList{QStringLiteral("clipboard set [zh>en] ") + sentence});
            return;
        }
        QTRY_COMPARE(desk.calls("message 有文字未能输入").size(), 1);
        QVERIFY(desk.calls("clipboard set").isEmpty());
        QFile kept(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(kept.readAll()).count(u'长'), characters);
    }

    void choices_data()
    {
        QTest::addColumn<bool>("changed");
        QTest::addColumn<QString>("clipboard");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("selection");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("putBack");
        QTest::newRow("copied") << true << "new"
                                << "old"
                                << "other"
                                << "new" << true;
        QTest::newRow("copied, nothing there before") << true << "new"
                                                      << ""
                                                      << ""
                                                      << "new" << false;
        QTest::newRow("the same again") << true << "old"
                                        << "old"
                                        << ""
                                        << "old" << false;
        QTest::newRow("no keys, but selected") << false << ""
                                               << "old"
                                               << "selected"
                                               << "selected" << false;
        QTest::newRow("nothing selected") << false << ""
                                          << "old"
                                          << ""
                                          << "old" << false;
        QTest::newRow("a picture was copied") << true << ""
                                              << "old"
                                              << ""
                                              << "" << true;
        QTest::newRow("nothing at all") << false << ""
                                        << ""
                                        << ""
                                        << "" << false;
    }
    void choices()
    {
        QFETCH(bool, changed);
        QFETCH(QString, clipboard);
        QFETCH(QString, before);
        QFETCH(QString, selection);
        const mevo::SelectionChoice choice = mevo::chooseSelection({changed, clipboard, before, selection});
        QTEST(choice.text, "text");
        QTEST(choice.putBack, "putBack");
    }

    /// A voice key copies instead of recording; the clipboard has its text again.
    void selectionByTheReceiver()
    {
        Desk desk(10000);
        desk.translateSelections();
        desk.program.fake.clipboard->putIn(QStringLiteral("before"));
        desk.program.fake.clipboard->copiedNext = QStringLiteral("selected");
        desk.program.key(3, true);
        QTRY_VERIFY(desk.program.fake.log.has(QStringLiteral("hid send 05 81 04 01 06 00 00 00")));
        desk.program.key(3, false);
        QTRY_COMPARE(desk.translation(), QStringLiteral("[selected]"));
        QCOMPARE(desk.service.asked, QStringList{QStringLiteral("selected en>zh")});
        QCOMPARE(desk.program.fake.clipboard->content, QStringLiteral("before"));
        QVERIFY(desk.program.fake.log.has(QStringLiteral("hid send 05 81 04 00 00 00 00 00")));
        QVERIFY(!desk.window().Recording);
    }

    /// Emptying the clipboard while a copy is awaited is not the copy, and nothing old comes back.
    void theClipboardIsEmptiedMeanwhile_data()
    {
        QTest::addColumn<bool>("byCopyingAgain");
        QTest::newRow("by a clear button") << false;
        QTest::newRow("by copying again") << true;
    }
    void theClipboardIsEmptiedMeanwhile()
    {
        QFETCH(bool, byCopyingAgain);
        FakePlatform fake;
        int pressed = 0;
        mevo::SelectionCopy copy(fake.platform, [&pressed] { return ++pressed > 0; });
        fake.clipboard->putIn(QStringLiteral("old"));
        QStringList first, second;
        copy.begin(false, [&first](const QString &text) { first += text; });
        fake.clipboard->clear();
        copy.clipboardEmptied();
        if (byCopyingAgain) {
            copy.begin(true, [&second](const QString &text) { second += text; });
        }
        fake.clipboard->copiedNext = QStringLiteral("new");
        QTRY_COMPARE(byCopyingAgain ? second : first, QStringList{QStringLiteral("new")});
        QCOMPARE(first.size() + second.size(), 1);
        QCOMPARE(pressed, byCopyingAgain ? 2 : 1);
        QCOMPARE(fake.clipboard->content, QStringLiteral("new"));
    }

    /// A terminal that copies by no key gets none, least of all Ctrl+C.
    void selectionInATerminal_data()
    {
        QTest::addColumn<QString>("windowClass");
        QTest::addColumn<QString>("keys");
        QTest::newRow("xterm") << "xterm.XTerm"
                               << "";
        QTest::newRow("konsole") << "konsole.konsole"
                                 << "05 81 04 03 06 00 00 00";
    }
    void selectionInATerminal()
    {
        QFETCH(QString, windowClass);
        QFETCH(QString, keys);
        Desk desk(10000);
        desk.translateSelections();
        desk.program.fake.windowSystem->classOfAll = windowClass;
        desk.program.fake.clipboard->selected = QStringLiteral("marked");
        desk.program.key(3, true);
        QTRY_COMPARE(desk.translation(), QStringLiteral("[marked]"));
        const QStringList pressed = desk.calls("hid send 05 81 04 ").filter(QStringLiteral(" 06 00"));
        QCOMPARE(pressed, keys.isEmpty() ? QStringList() : QStringList{QStringLiteral("hid send ") + keys});
    }

    void nothingSelected()
    {
        Desk desk(10000);
        desk.translateSelections();
        desk.program.fake.clipboard->putIn(QStringLiteral("held"));
        desk.program.key(3, true);
        QTRY_COMPARE(desk.translation(), QStringLiteral("[held]")); // what the clipboard has held all along
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
        desk.program.fake.clipboard->putIn(QStringLiteral("held"));
        desk.program.fake.clipboard->copiedNext = QStringLiteral("");
        desk.program.key(3, true);
        QTRY_VERIFY(desk.program.fake.log.has(QStringLiteral("hid send 05 81 04 01 06 00 00 00")));
        desk.program.settle();
        QTRY_VERIFY(desk.program.fake.log.has(QStringLiteral("clipboard clear")));
        desk.program.settle();
        QVERIFY(desk.service.asked.isEmpty());
        QVERIFY(desk.pane("textEdit_SourceLan").isEmpty());
    }

    /// By the system's voice, in the pane's language; silent once the window has gone.
    void readsAloud()
    {
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        desk.dialog()
            ->findChild<QTextEdit *>(QStringLiteral("textEdit_SourceLan"))
            ->setPlainText(QStringLiteral("你好"));
        desk.dialog()->on_pushButton_SourceLan_tts_clicked();
        QCOMPARE(desk.calls("speak"), QStringList{QStringLiteral("speak cmn 你好")});
        desk.program.fake.log.clear();
        desk.window().pushBuutton_Translate_clicked();
        QVERIFY(desk.program.fake.log.has(QStringLiteral("speech stop")));
    }

    /// The receiver takes the window with it; a sentence that waits to be typed is kept.
    void theReceiverGoes()
    {
        Desk desk(5);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        desk.program.change(mevo::DeviceNotifier::Change::Removal);
        QTRY_VERIFY(desk.dialog() == nullptr);
        QVERIFY(!desk.window().VoiceTranslateMode);
        QCOMPARE(desk.calls("message 有文字未能输入").size(), 1);
    }

    /// The window is closed, or the program left, while the service is silent.
    void endsWhileTheServiceIsSilent_data()
    {
        QTest::addColumn<bool>("leaves");
        QTest::newRow("closed") << false;
        QTest::newRow("left") << true;
    }
    void endsWhileTheServiceIsSilent()
    {
        QFETCH(bool, leaves);
        Desk desk(0);
        desk.service.server.answering = nullptr;
        desk.service.server.fallback = ScriptedAnswer::silence();
        desk.window().pushBuutton_Translate_clicked();
        const int before = desk.service.server.requests.size();
        desk.window().showRecText(QStringLiteral("你好__over__"));
        bool done = false;
        QTimer::singleShot(100, &desk.window(), [&] {
            QVERIFY(desk.service.server.requests.size() > before);
            leaves ? desk.window().exitByItself() : desk.window().pushBuutton_Translate_clicked();
            done = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(done && desk.dialog() == nullptr, 10000);
        if (leaves) { // the sentence is kept for the next run, else typed as it was spoken
            QFile kept(mevo::appFile(QStringLiteral("MEVOUndelivered.json")));
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QCOMPARE(kept.readAll().count("你好"), 1);
            QVERIFY(desk.calls("clipboard set").isEmpty());
        } else {
            QTRY_COMPARE(desk.calls("clipboard set"), QStringList{QStringLiteral("clipboard set 你好")});
        }
    }

    /// Closed with its own window in front: the text goes to the window before, or is kept.
    void closesWithATextThatWaits_data()
    {
        QTest::addColumn<bool>("obeys");
        QTest::newRow("the window before comes") << true;
        QTest::newRow("it does not") << false;
    }
    void closesWithATextThatWaits()
    {
        QFETCH(bool, obeys);
        Desk desk(5);
        desk.window().pushBuutton_Translate_clicked();
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        desk.dialog()->HandleGetForeWin();
        desk.program.fake.windowSystem->foreground = desk.dialog()->winId();
        desk.program.fake.windowSystem->obeys = obeys;
        desk.program.fake.log.clear();
        desk.dialog()->on_pushButton_TransClose_clicked();
        desk.program.settle();
        QTRY_VERIFY(desk.dialog() == nullptr);
        QCOMPARE(desk.calls("activate"), QStringList{QStringLiteral("activate 4000010")});
        QCOMPARE(desk.calls("message 有文字未能输入").size(), obeys ? 0 : 1);
        QCOMPARE(desk.program.fake.log.calls().filter(QStringLiteral("[你好]")).size(), obeys ? 1 : 0);
    }

    /// A question of our own has the keyboard: nothing is typed into it, but after it.
    void waitsForAQuestion()
    {
        Desk desk;
        desk.window().pushBuutton_Translate_clicked();
        QDialog question(&desk.window());
        question.setModal(true);
        question.show();
        desk.window().showRecText(QStringLiteral("你好__over__"));
        QTRY_COMPARE(desk.translation(), QStringLiteral("[你好]"));
        QTest::qWait(1200);
        QVERIFY(desk.calls("clipboard set").isEmpty());
        question.hide();
        QTRY_COMPARE(desk.calls("clipboard set"), QStringList{QStringLiteral("clipboard set [你好]")});
    }

    /// The voice key is held when the selection state is entered, and its release is no longer taken.
    void endsTheSessionThatRuns()
    {
        Desk desk(10000);
        desk.program.key(2, true);
        QTRY_VERIFY(desk.dialog() != nullptr && desk.window().Recording);
        desk.dialog()->findChild<QCheckBox *>(QStringLiteral("checkBox_Delimit_Translation"))->click();
        QVERIFY(!desk.window().Recording);
        QVERIFY(!desk.window().PressPending);
        QVERIFY(desk.window().DelimitTranslation);
    }
};

QTEST_MAIN(TestTranslationHands)
#include "tst_translation_hands.moc"
