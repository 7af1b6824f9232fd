// The translation window with a program that a test plays.

#include "base/SettingsFile.h"
#include "support/CallLog.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "ui/translation/CTransTipDialog.h"
#include "ui/translation/TransWindowHost.h"

#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTextEdit>
#include <QTranslator>
#include <QtTest>

#include <algorithm>

namespace {

const ScratchHome home;
constexpr mevo::WindowId editorWindow = 0x70000077; ///< none of the test's own

/// Answers each translation with the text in brackets, unless a test says otherwise.
struct FakeHost : mevo::TransWindowHost
{
    QPair<bool, QString> translate(const QString &text, const QString &to, const QString &from) override
    {
        log.add("translate %1 %2>%3"_s.arg(text, from, to));
        if (duringTranslation) {
            std::exchange(duringTranslation, nullptr)();
        }
        return fails ? qMakePair(false, text) : qMakePair(true, QLatin1Char('[') + text + QLatin1Char(']'));
    }
    mevo::SessionContext sentenceSession() const override
    {
        mevo::SessionContext session;
        session.number = ++sessions;
        session.pressWindow = pressWindow;
        return session;
    }
    bool resultIdle() const override { return idle; }
    mevo::WindowId foregroundWindow() override { return foreground; }
    void typeText(const mevo::SentTranslation &translation) override
    {
        sent = translation;
        typedSessions.append(translation.session ? translation.session->number : 0);
        log.add("type "_s + translation.text +
                (translation.front != 0 ? " into %1"_s.arg(translation.front, 0, 16) : QString()));
    }
    void keepText(const QString &text) override { log.add("keep "_s + text); }
    void takeFocus() override { log.add("take focus"_s); }
    void neverTakeFocus() override {}
    void giveFocusTo(mevo::WindowId window) override { log.add("focus to %1"_s.arg(window, 0, 16)); }
    void setDelimitTranslation(bool on) override { log.add(on ? "delimit on"_s : "delimit off"_s); }
    void copySelection(bool emptied, mevo::WindowId, const Copied &copied) override
    {
        log.add(emptied ? "copy emptied"_s : "copy"_s);
        onCopied = [this, copied](const QString &text) { copied(text, selectionWindow); };
    }
    void clearClipboard() override { log.add("clear clipboard"_s); }
    void readAloud(mevo::Pane pane, const QString &text, const mevo::PaneReading &reading) override
    {
        log.add("read %1 %2 %3 %4"_s.arg(pane == mevo::Pane::Source ? "source"_s : "dest"_s, text,
                                         reading.online ? "online"_s : "offline"_s, reading.language) +
                " vol%1 spd%2 pit%3 per%4"_s.arg(reading.voice.volume)
                    .arg(reading.voice.speed)
                    .arg(reading.voice.tone)
                    .arg(reading.voice.reader));
    }
    void stopReading() override { log.add("stop reading"_s); }
    void tell(const QString &title, const QString &text) override
    {
        log.add("tell "_s + title + QLatin1Char('|') + text);
    }
    void closing(const std::vector<mevo::SpokenText> &untold) override
    {
        QStringList texts;
        for (const mevo::SpokenText &spoken : untold) {
            texts.append(spoken.text);
            typedSessions.append(spoken.session.number);
        }
        log.add("closing"_s + (texts.isEmpty() ? QString() : QLatin1Char(' ') + texts.join(u'|')));
    }
    void closed() override
    {
        log.add("closed"_s);
        if (onClosed) {
            onClosed();
        }
    }

    CallLog log;
    bool idle = true;
    bool fails = false;
    mevo::WindowId foreground = editorWindow;
    mevo::WindowId pressWindow = 0;          ///< of a sentence
    mevo::WindowId selectionWindow = 0;      ///< of what is copied
    mevo::SentTranslation sent;              ///< the last one
    mutable int sessions = 0;                ///< sentences so far
    QList<int> typedSessions;                ///< of what was typed, or told at the closing; 0 for none
    std::function<void()> duringTranslation; ///< once
    std::function<void(const QString &)> onCopied;
    std::function<void()> onClosed;
};

struct Window
{
    FakeHost host;
    std::unique_ptr<CTransTipDialog> dialog;

    /// With zh to en for sentences and en to zh for selections, typed after `delay` seconds.
    explicit Window(int delay = 10000, const QByteArray &settings = {})
    {
        home.write("MEVOSetting.ini"_s,
                   "[TransSetting]\nSendTransResult2ScreenMode=" + QByteArray::number(delay) +
                       "\nSourceLan_currentIndex=1\nDestLan_currentIndex=4\n"
                       "SourceLan_Delimit_currentIndex=5\nDestLan_Delimit_currentIndex=0\n" +
                       settings);
        dialog = std::make_unique<CTransTipDialog>(host);
        host.onClosed = [this] { dialog.release()->deleteLater(); };
        dialog->show();
    }
    template <class Widget>
    Widget *find(const char *name) const
    {
        auto *widget = dialog->findChild<Widget *>(QLatin1String(name));
        Q_ASSERT(widget != nullptr);
        return widget;
    }
    QTextEdit *source() const { return find<QTextEdit>("textEdit_SourceLan"); }
    QTextEdit *dest() const { return find<QTextEdit>("textEdit_DestLan"); }
    void click(const char *button) const { find<QPushButton>(button)->click(); }
    /// The calls that begin with that word.
    QStringList calls(const char *verb) const
    {
        return host.log.calls().filter(QRegularExpression(QLatin1Char('^') + QLatin1String(verb) + "\\b"_s));
    }
    QString pair() const
    {
        return find<QLabel>("label_SourceLan")->text() + QLatin1Char('>') +
               find<QLabel>("label_DestLan")->text();
    }
    void pressLabel(const char *name) const { QTest::mousePress(find<QLabel>(name), Qt::LeftButton); }
    /// The cursor is in the source pane, as after a click into it.
    void typeInSource() const
    {
        QApplication::setActiveWindow(dialog.get());
        source()->setFocus();
        QVERIFY(dialog->sourceHasFocus());
    }
    void hears(const Utf8Text &sentence) const { dialog->showRecText(sentence); }
    /// The lower pane comes to have that text.
    void shows(const Utf8Text &text) const { QTRY_COMPARE(dest()->toPlainText(), QString(text)); }
    void translates(const Utf8Text &sentence) const
    {
        hears(sentence);
        shows(u'[' + sentence + u']');
    }
    /// By a voice key in the selection state, or by the button, with that text selected.
    void select(const Utf8Text &text, bool byKey = true)
    {
        if (!byKey) {
            click("pushButton_SelectDelimit");
            return host.onCopied(text);
        }
        auto *box = find<QCheckBox>("checkBox_Delimit_Translation");
        if (!box->isChecked()) {
            box->click();
        }
        char press[16] = {1, 0x70, 3, 1};
        dialog->ProcessResult(press);
        host.onCopied(text);
    }
    static QString stored(const char *key)
    {
        return mevo::SettingsFile("TransSetting"_s).value(QLatin1String(key)).toString();
    }
};

QStringList rowsOf(const QComboBox *box)
{
    QStringList rows;
    for (int i = 0; i < box->count(); ++i) {
        rows.append(box->itemText(i));
    }
    return rows;
}

} // namespace

class TestTransTipDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lists()
    {
        const Window window;
        const QString rows =
            "自动(auto) 中文(zh) 文言文(wyw) 粤语(yue) 繁体(cht) 英语(en) 日语(jp) 韩语(kor) "
            "法语(fra) 俄语(ru) 西班牙语(spa) 波兰语(pl) 葡萄牙语(pt) 德语(de) 泰语(th) 捷克语(cs) "
            "阿拉伯语(ara) 越南语(vie) 意大利语(it) 希腊语(el) 荷兰语(nl) 丹麦语(dan) 瑞典语(swe) "
            "芬兰语(fin) 匈牙利语(hu) 罗马尼亚语(rom) 保加利亚语(bul) 爱沙尼亚语(est) 斯洛文尼亚语(slo)"_s;
        const QStringList all = rows.split(u' ');
        QCOMPARE(rowsOf(window.find<QComboBox>("comboBox_SourceLan_Delimit")), all);
        QCOMPARE(rowsOf(window.find<QComboBox>("comboBox_DestLan_Delimit")), all.mid(1));
        QCOMPARE(rowsOf(window.find<QComboBox>("comboBox_DestLan")), all.mid(1));
        QCOMPARE(rowsOf(window.find<QComboBox>("comboBox_SourceLan")), all.mid(0, 6));
        const auto *box = window.find<QComboBox>("comboBox_DestLan");
        QCOMPARE(box->iconSize(), QSize(20, 50));
        QVERIFY(!box->itemIcon(5).pixmap(20, 14).isNull());
        QVERIFY(box->itemIcon(5).pixmap(20, 14).toImage() != box->itemIcon(6).pixmap(20, 14).toImage());
        QCOMPARE(rowsOf(window.find<QComboBox>("comboBox_TTS_Volume")).join(u' '),
                 "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15"_s);
        for (const char *name : {"comboBox_TTS_Speed", "comboBox_TTS_Tone"}) {
            QCOMPARE(rowsOf(window.find<QComboBox>(name)).join(u' '), "0 1 2 3 4 5 6 7 8 9"_s);
        }
        QCOMPARE(rowsOf(window.find<QComboBox>("comboBox_TTS_Reader")).join(u' '),
                 "女声 男声 度逍遥 度丫丫"_s);
    }

    /// A window without settings, or with broken ones, has the first row of each list.
    void settingsThatAreNone_data()
    {
        const Rows<QByteArray> row; // settings
        row("none", "");
        row("out of range",
            "SourceLan_currentIndex=6\nDestLan_currentIndex=28\nTTS_Volume=16\nTTS_Reader=-1\n"
            "SourceLan_Delimit_currentIndex=x\n");
    }
    void settingsThatAreNone()
    {
        const auto [settings] = rowOf<QByteArray>();
        home.write("MEVOSetting.ini"_s, "[TransSetting]\n" + settings);
        FakeHost host;
        CTransTipDialog dialog(host);
        dialog.showRecText("甲"_s);
        QTRY_COMPARE(host.log.calls().filter("type"_s), list({"type [甲]"}));
        QCOMPARE(host.log.calls().first(), "translate 甲 auto>zh"_s);
    }

    /// Each control writes its key at once, and a window made after it shows the same.
    void settingsAreKept()
    {
        Window window(3);
        const struct
        {
            const char *box;
            const char *key;
            int row;
        } boxes[] = {
            {"comboBox_SourceLan", "SourceLan_currentIndex", 5},
            {"comboBox_DestLan", "DestLan_currentIndex", 5},
            {"comboBox_SourceLan_Delimit", "SourceLan_Delimit_currentIndex", 28},
            {"comboBox_DestLan_Delimit", "DestLan_Delimit_currentIndex", 27},
            {"comboBox_TTS_Volume", "TTS_Volume", 15},
            {"comboBox_TTS_Speed", "TTS_Speed", 9},
            {"comboBox_TTS_Tone", "TTS_Tone", 4},
            {"comboBox_TTS_Reader", "TTS_Reader", 2},
        };
        for (const auto &[box, key, row] : boxes) {
            window.find<QComboBox>(box)->setCurrentIndex(row);
            QCOMPARE(Window::stored(key), QString::number(row));
        }
        for (const char *key : {"OnlineTTSFirst", "AutoReadSourceResult", "AutoReadDestResult"}) {
            window.find<QCheckBox>((QByteArray("checkBox_") + key).constData())->click();
            QCOMPARE(Window::stored(key), "true"_s);
        }
        QCOMPARE(Window::stored("AutoReadSourceResult"), "false"_s); // one takes the other off
        window.find<QMenu>("sendMenu")->actions().last()->trigger();
        QCOMPARE(Window::stored("SendTransResult2ScreenMode"), "10000"_s);
        QCOMPARE(window.find<QPushButton>("pushButton_TransSendSet")->text(), "手动点击上屏"_s);
        window.dest()->setPlainText("x"_s);
        window.click("pushButton_DestLan_tts");
        QCOMPARE(window.calls("read"), list({"read dest x online jp vol15 spd9 pit4 per3"}));

        FakeHost host;
        CTransTipDialog second(host);
        second.findChild<QPushButton *>("pushButton_SourceLan_tts"_s)->click();
        QCOMPARE(host.log.calls(), list({"read source  online en vol15 spd9 pit4 per4"}));
        second.show();
        QVERIFY(second.findChild<QCheckBox *>("checkBox_AutoReadDestResult"_s)->isChecked());
        QVERIFY(!second.findChild<QCheckBox *>("checkBox_AutoReadSourceResult"_s)->isChecked());
    }

    void sentenceIsTranslatedAndTyped_data()
    {
        const Rows<int, bool> row; // delay, visibleAfter
        row("at once", 0, false);
        row("after a second", 1, true);
    }
    void sentenceIsTranslatedAndTyped()
    {
        const auto [delay, visibleAfter] = rowOf<int, bool>();
        Window window(delay);
        window.hears("你好");
        QElapsedTimer sinceThen;
        sinceThen.start();
        window.shows("[你好]");
        QTRY_COMPARE(window.calls("type"), list({"type [你好]"}));
        QVERIFY(sinceThen.elapsed() >= delay * 1000 - 50);
        QCOMPARE(window.calls("translate"), list({"translate 你好 zh>en"}));
        QCOMPARE(window.dialog->isVisible(), visibleAfter);
    }

    void byHand()
    {
        Window window;
        window.translates("你好");
        window.dialog->onIntervelSendResultTimeout(); // of a delay of hours
        QVERIFY(window.calls("type").isEmpty());
        window.dest()->setPlainText("Hello!"_s); // corrected
        window.click("pushButton_TransSend");
        QCOMPARE(window.calls("type"), list({"type Hello!"}));
    }

    void failureLeavesThePanes()
    {
        Window window(0);
        window.dest()->setPlainText("before"_s);
        window.host.fails = true;
        window.hears("你好");
        QTRY_COMPARE(window.calls("translate").size(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(window.source()->toPlainText(), "你好"_s);
        QCOMPARE(window.dest()->toPlainText(), "before"_s);
        QVERIFY(window.calls("type").isEmpty());
        QCOMPARE(window.calls("keep"), list({"keep 你好"})); // what was spoken
        QVERIFY(window.dialog->isVisible());
    }

    /// A sentence that has no translation can be corrected until another text comes, then it is kept.
    void failedSentence_data()
    {
        const Rows<QString, QStringList> row; // then, kept
        row("the next sentence", "spoken", {"keep 一"});
        row("the next sentence, with the cursor here", "spoken here", {"keep 一"});
        row("a selection", "selected", {"keep 一"});
        row("corrected", "typed", {});
        row("cleared", "cleared", {});
    }
    void failedSentence()
    {
        const auto [then, kept] = rowOf<QString, QStringList>();
        Window window(1);
        window.host.fails = true;
        window.hears("一");
        QTRY_COMPARE(window.calls("translate").size(), 1);
        QVERIFY(window.calls("keep").isEmpty());
        window.host.fails = false;
        if (then.endsWith(QLatin1String("here"))) {
            window.typeInSource();
        }
        if (then.startsWith(QLatin1String("spoken"))) {
            window.hears("二");
        } else if (then == "selected"_s) {
            window.select("二");
        } else if (then == "typed"_s) {
            window.typeInSource();
            QTest::keyClick(window.source(), Qt::Key_A);
        } else {
            window.click("pushButton_ClearTransSource");
        }
        QCOMPARE(window.calls("keep"), kept);
        QVERIFY(!window.dialog->takeUnsent().contains("一"_s));
    }

    void failedSentenceIsUnsent()
    {
        Window window(1);
        window.host.fails = true;
        window.hears("一");
        QTRY_COMPARE(window.calls("translate").size(), 1);
        QCOMPARE(window.dialog->takeUnsent(), list({"一"}));
    }

    /// The delay has ended while the user typed here: the translation is not lost to the next one.
    void translationThatTheCursorHasHeldUp_data()
    {
        const Rows<bool, QStringList> row; // stillTyping, calls
        row("the cursor has left", false, {"type [一]"});
        row("it is there still", true, {"keep [一]"});
    }
    void translationThatTheCursorHasHeldUp()
    {
        const auto [stillTyping, calls] = rowOf<bool, QStringList>();
        Window window(1);
        window.typeInSource();
        window.translates("一");
        QTest::qWait(1200);
        QVERIFY(window.calls("type").isEmpty());
        window.find<QMenu>("sendMenu")->actions().at(5)->trigger(); // the next one waits for long
        if (!stillTyping) {
            window.dialog->setFocus();
            QVERIFY(!window.dialog->sourceHasFocus());
        }
        window.translates("二");
        QCOMPARE(window.calls("type") + window.calls("keep"), calls);
        QCOMPARE(window.dialog->takeUnsent(), list({"[二]"}));
    }

    /// A selection takes the place of a translation that waits to be typed: typing that now would replace
    /// what is selected, so it is kept.
    void selectionWhileATranslationWaits_data()
    {
        const Rows<int, bool, QStringList> row; // delay, byKey, kept
        row("by the key", 5, true, {"keep [一]"});
        row("by the button", 5, false, {"keep [一]"});
        row("one that is sent by hand", 10000, true, {});
    }
    void selectionWhileATranslationWaits()
    {
        const auto [delay, byKey, kept] = rowOf<int, bool, QStringList>();
        Window window(delay);
        window.translates("一");
        window.select("word", byKey);
        window.shows("[word]");
        QCOMPARE(window.calls("keep"), kept);
        QVERIFY(window.calls("type").isEmpty());
        QVERIFY(window.dialog->takeUnsent().isEmpty());
    }

    /// A selection takes the place of a sentence whose translation is still awaited.
    void selectionWhileTheAnswerIsAwaited_data() { flagRows("by the key", "by the button"); }
    void selectionWhileTheAnswerIsAwaited()
    {
        const auto [byKey] = rowOf<bool>();
        Window window(5);
        window.host.duringTranslation = [&window, byKey = byKey] { window.select("word", byKey); };
        window.hears("一");
        window.shows("[word]");
        QCOMPARE(window.calls("keep"), list({"keep 一"}));
        QVERIFY(window.dialog->takeUnsent().isEmpty());
    }

    /// The result of a session is still being dealt with: the window goes, and the text follows.
    void waitsForTheResultBefore()
    {
        Window window(0);
        window.host.idle = false;
        window.hears("你好");
        QTRY_VERIFY(!window.dialog->isVisible());
        QVERIFY(window.calls("type").isEmpty());
        window.host.idle = true;
        QTRY_COMPARE(window.calls("type"), list({"type [你好]"}));
    }

    /// Sentences that come while the one before is translated, or waits to be typed: each once, in order.
    void sentencesFollowEachOther()
    {
        Window window(1);
        window.host.duringTranslation = [&window] {
            window.hears("二");
            QCoreApplication::processEvents();
            window.hears("三");
        };
        window.hears("一");
        QTRY_COMPARE(window.calls("type"), (list({"type [一]", "type [二]", "type [三]"})));
        QCOMPARE(window.calls("translate").size(), 3);
        QCOMPARE(window.host.typedSessions, (QList<int>{1, 2, 3}));
        QTest::qWait(1200); // the delays of the first two would have ended by now
        QCOMPARE(window.calls("type").size(), 3);
    }

    /// Each text is told with the session that it was spoken in, a text that was not spoken with none.
    void sessionsOfTheTexts()
    {
        Window window(5);
        window.translates("一");
        window.click("pushButton_TransSend");
        window.click("pushButton_TransSend"); // once more
        window.select("word");
        window.shows("[word]");
        window.click("pushButton_TransSend");
        QCOMPARE(window.host.typedSessions, (QList<int>{1, 1, 0}));
        window.translates("二");
        window.hears("三");
        window.hears("四");
        window.host.typedSessions.clear();
        window.click("pushButton_TransClose");
        QCOMPARE(window.calls("closing"), list({"closing [二]|三|四"}));
        QCOMPARE(window.host.typedSessions, (QList<int>{2, 3, 4}));
    }

    /// By itself a translation goes to where its text came from, by hand to where the user works by then.
    void windowOfATranslation_data()
    {
        const Rows<QString, bool, int> row; // origin, byHand, own
        row("spoken", "spoken", false, 0x51);
        row("selected", "selected", false, 0x52);
        row("selected, by the window's button", "button", false, 0x52);
        row("typed behind a sentence", "typed", false, 0);
        row("spoken, by hand", "spoken", true, 0);
        row("selected, by hand", "selected", true, 0);
    }
    void windowOfATranslation()
    {
        const auto [origin, byHand, own] = rowOf<QString, bool, int>();
        Window window(byHand ? 10000 : 1);
        window.host.pressWindow = 0x51;
        window.host.selectionWindow = 0x52;
        window.dialog->showRecText("一"_s);
        if (origin == QLatin1String("selected")) {
            window.select("word"_s);
        } else if (origin == QLatin1String("button")) {
            window.click("pushButton_SelectDelimit");
            window.host.onCopied("word"_s);
        } else if (origin == QLatin1String("typed")) {
            window.source()->setPlainText("word"_s);
        }
        const QString text = origin == QLatin1String("spoken") ? "[一]"_s : "[word]"_s;
        QTRY_COMPARE(window.dest()->toPlainText(), text);
        if (byHand) {
            window.click("pushButton_TransSend");
        }
        QTRY_COMPARE(window.host.sent.text, text);
        QCOMPARE(window.host.sent.byHand, byHand);
        QCOMPARE(int(window.host.sent.own), own);
    }

    /// A question has the keyboard when the next translation comes: the one that waits is not typed over it.
    void theNextSentenceWhileAQuestionStands()
    {
        Window window(1);
        window.translates("一");
        window.host.idle = false;
        window.translates("二");
        QCOMPARE(window.calls("keep"), list({"keep [一]"}));
        QVERIFY(window.calls("type").isEmpty());
        window.host.idle = true;
        QTRY_COMPARE(window.calls("type"), list({"type [二]"}));
    }

    void textThatChangesMeanwhile()
    {
        Window window;
        window.host.duringTranslation = [&window] {
            window.source()->setPlainText("ab"_s);
            QCoreApplication::processEvents();
        };
        window.source()->setPlainText("a"_s);
        window.shows("[ab]");
        QCOMPARE(window.calls("translate"), (list({"translate a zh>en", "translate ab zh>en"})));
    }

    void withTheCursorInTheSourceNothingIsSent()
    {
        Window window(1);
        window.typeInSource();
        window.source()->setPlainText("abc"_s);
        window.shows("[abc]");
        window.click("pushButton_TransSend");
        QTest::qWait(1200);
        QVERIFY(window.calls("type").isEmpty());
        QVERIFY(window.dialog->sourceHasFocus());
    }

    void clickIntoTheSourceTakesTheKeyboard()
    {
        Window window;
        QTest::mouseClick(window.dest()->viewport(), Qt::LeftButton);
        QTest::mouseClick(window.find<QPushButton>("pushButton_ClearTransDest"), Qt::LeftButton);
        QVERIFY(window.calls("take").isEmpty());
        QTest::mouseClick(window.source()->viewport(), Qt::LeftButton);
        QCOMPARE(window.calls("take"), list({"take focus"}));
        window.typeInSource();
        window.host.foreground = window.dialog->winId();
        QTest::keyClick(window.source(), Qt::Key_Escape); // ends the typing, not the window
        QVERIFY(!window.dialog->sourceHasFocus());
        QVERIFY(window.dialog->isVisible());
        QCOMPARE(window.calls("focus"), list({"focus to 70000077"}));
    }

    void returnsToTheWindowBefore_data()
    {
        const Rows<bool, bool, QString> row; // by hand, another window of ours, typed
        row("this window in front", true, false, "type [x] into 70000077");
        row("another of ours", true, true, "type [x] into 70000077");
        row("this window, by itself", false, false, "type [x] into 70000077");
        row("another, where somebody may be typing", false, true, "type [x]");
    }
    /// Ours in front: the text goes to where the user was before, but takes the keyboard from nobody.
    void returnsToTheWindowBefore()
    {
        const auto [byHand, another, typed] = rowOf<bool, bool, QString>();
        Window window(byHand ? 10000 : 0);
        QDialog settings;
        settings.show();
        window.dialog->HandleGetForeWin();
        window.host.foreground = another ? settings.winId() : window.dialog->winId();
        window.translates("x");
        if (byHand) {
            window.click("pushButton_TransSend");
        }
        QCOMPARE(window.calls("type"), QStringList{typed});
    }

    void swapping()
    {
        Window window;
        QCOMPARE(window.pair(), "中文>英文"_s);
        window.pressLabel("label_DestLan");
        QCOMPARE(window.pair(), "英文>中文"_s);
        QCOMPARE(Window::stored("SourceLan_currentIndex"), "5"_s);
        QCOMPARE(Window::stored("DestLan_currentIndex"), "0"_s);
        window.hears("a");
        QTRY_COMPARE(window.calls("translate"), list({"translate a en>zh"}));
        window.pressLabel("label_SourceLan");
        window.find<QComboBox>("comboBox_DestLan")->setCurrentIndex(5);
        QCOMPARE(window.pair(), "中文>日语"_s);
        window.pressLabel("label_SourceLan"); // no recogniser hears Japanese
        QCOMPARE(window.pair(), "中文>日语"_s);
        QCOMPARE(Window::stored("DestLan_currentIndex"), "5"_s);
        window.find<QCheckBox>("checkBox_Delimit_Translation")->click();
        window.find<QComboBox>("comboBox_SourceLan_Delimit")->setCurrentIndex(6);
        window.pressLabel("label_SourceLan");
        QCOMPARE(window.pair(), "中文>日语"_s);
        QCOMPARE(Window::stored("DestLan_Delimit_currentIndex"), "5"_s);
    }

    void selectionState()
    {
        Window window;
        char press[16] = {1, 0x70, 3, 1};
        window.dialog->ProcessResult(press); // means nothing yet
        QVERIFY(window.host.log.calls().isEmpty());
        window.find<QCheckBox>("checkBox_Delimit_Translation")->click();
        QCOMPARE(window.host.log.calls(),
                 (list({"delimit on", "tell 禁用语音|进入划词翻译状态下，语音输入将被禁止！"})));
        QCOMPARE(window.pair(), "英文>中文"_s);
        window.dialog->ProcessResult(press);
        window.host.onCopied(Utf8Text("selected"));
        window.shows("[selected]");
        QCOMPARE(window.calls("translate"), list({"translate selected en>zh"}));

        window.host.log.clear();
        window.dialog->ProcessResult(press); // nothing is selected, and the clipboard is empty
        window.host.onCopied(QString());
        QVERIFY(window.source()->toPlainText().isEmpty() && window.dest()->toPlainText().isEmpty());
        QCOMPARE(window.host.log.calls(), (list({"copy", "clear clipboard", "delimit on", "copy emptied"})));
        window.host.onCopied(Utf8Text("late"));
        window.shows("[late]");

        window.typeInSource();
        window.host.log.clear();
        window.dialog->ProcessResult(press); // the cursor here does not matter
        QCOMPARE(window.calls("copy"), list({"copy"}));
        window.find<QCheckBox>("checkBox_Delimit_Translation")->click();
        QCOMPARE(window.calls("delimit"), list({"delimit off"}));
        QCOMPARE(window.pair(), "中文>英文"_s);
    }

    void wordsByTheButton()
    {
        Window window;
        window.dest()->setPlainText("one two"_s);
        window.dest()->selectAll();
        window.click("pushButton_SelectDelimit");
        QCOMPARE(window.source()->toPlainText(), "one two"_s);
        QVERIFY(!window.dialog->delimitMode());
        window.click("pushButton_SelectDelimit");
        QVERIFY(window.dialog->delimitMode());
        QVERIFY(window.find<QCheckBox>("checkBox_Delimit_Translation")->isChecked());
        QVERIFY(window.source()->toPlainText().isEmpty());
        window.host.onCopied(Utf8Text("word"));
        window.shows("[word]");
    }

    void readingAloud()
    {
        Window window(10000, "AutoReadDestResult=1\nTTS_Volume=5\n");
        window.hears("你好 世界");
        QTRY_COMPARE(window.calls("read"), list({"read dest [你好 世界] offline en vol5 spd0 pit0 per0"}));
        window.host.log.clear();
        window.dest()->find("世界"_s, QTextDocument::FindBackward);
        QTextCursor cursor(window.dest()->document());
        cursor.setPosition(1);
        cursor.setPosition(3, QTextCursor::KeepAnchor);
        window.dest()->setTextCursor(cursor);
        window.click("pushButton_SourceLan_tts"); // the selection, once, whichever button
        window.click("pushButton_SourceLan_tts");
        QCOMPARE(window.calls("read"), (list({"read source 你好 offline zh vol5 spd0 pit0 per0",
                                              "read source 你好 世界 offline zh vol5 spd0 pit0 per0"})));
        window.host.log.clear();
        window.click("pushButton_ClearTransDest");
        window.click("pushButton_DestLan_tts");
        QCOMPARE(window.host.log.calls(),
                 (list({"clear clipboard", "read dest  offline en vol5 spd0 pit0 per0"})));
    }

    /// The next sentence is shown before the first one's time to be read has come.
    void sentencesThatFollowAreAllRead_data()
    {
        const Rows<QByteArray, QStringList> row; // setting, read
        row("as they were spoken", "AutoReadSourceResult=1\n",
            {"read source 一 offline zh", "read source 二 offline zh"});
        row("their translations", "AutoReadDestResult=1\n",
            {"read dest [一] offline en", "read dest [二] offline en"});
    }
    void sentencesThatFollowAreAllRead()
    {
        const auto [setting, read] = rowOf<QByteArray, QStringList>();
        Window window(10000, setting);
        window.host.duringTranslation = [&window] { window.hears("二"); };
        window.hears("一");
        QTRY_COMPARE(window.calls("read").size(), 2);
        QCOMPARE(window.calls("read").replaceInStrings(" vol0 spd0 pit0 per0"_s, QString()), read);
    }

    void delayIsChosenMeanwhile()
    {
        Window window(1);
        window.translates("你好");
        window.find<QMenu>("sendMenu")->actions().last()->trigger(); // by hand
        QTest::qWait(1200);
        QVERIFY(window.calls("type").isEmpty());
        window.find<QMenu>("sendMenu")->actions().first()->trigger();
        QCOMPARE(window.calls("tell"), list({"tell 立即上屏|如关闭立即上屏功能，请重新打开翻译窗口并关闭"}));
        QTRY_COMPARE(window.calls("type"), list({"type [你好]"})); // what waits is meant as well
    }

    /// What has been spoken and not typed is handed on; one that is sent by hand has been seen.
    void closing_data()
    {
        const Rows<int, QString> row; // delay, told
        row("waits to be typed", 1, "closing [你好]");
        row("by hand", 10000, "closing");
    }
    void closing()
    {
        const auto [delay, told] = rowOf<int, QString>();
        Window window(delay);
        window.translates("你好");
        window.host.log.clear();
        const QPointer<CTransTipDialog> dialog(window.dialog.get());
        window.click("pushButton_TransClose");
        QCOMPARE(window.host.log.calls(),
                 (QStringList{"clear clipboard"_s, told, "stop reading"_s, "closed"_s}));
        QTRY_VERIFY(dialog.isNull());
        QTest::qWait(1200);
        QVERIFY(window.calls("type").isEmpty());
    }

    /// The answer comes to a window that has gone; the sentences that it has not translated are told.
    void closesWhileTheAnswerIsAwaited_data() { flagRows("gone by then", "closed, not yet gone"); }
    void closesWhileTheAnswerIsAwaited()
    {
        const auto [atOnce] = rowOf<bool>(); // it is destroyed before the wait ends
        Window window(0);
        if (atOnce) {
            window.host.onClosed = [&window] { window.dialog.reset(); };
        }
        window.host.duringTranslation = [&window] {
            window.hears("二");
            window.dialog->close(); // as a window manager asks for it
        };
        window.hears("一");
        QTRY_COMPARE(window.calls("closing"), list({"closing 一|二"}));
        QTRY_VERIFY(window.dialog == nullptr);
        QVERIFY(window.calls("type").isEmpty());
    }

    /// Nothing that is typed by itself: the sentences are kept.
    void closesByHandWhileTheAnswerIsAwaited()
    {
        Window window;
        window.host.duringTranslation = [&window] {
            window.hears("二");
            window.dialog->close();
        };
        window.hears("一");
        QTRY_COMPARE(window.calls("closing"), list({"closing"}));
        QCOMPARE(window.calls("keep"), list({"keep 一", "keep 二"}));
    }

    /// What an exit has taken is not shown or typed by the answer that comes after it.
    void unsentWhileTheAnswerIsAwaited()
    {
        Window window(0);
        QStringList taken;
        window.host.duringTranslation = [&] { taken = window.dialog->takeUnsent(); };
        window.hears("一");
        QTRY_COMPARE(taken, list({"一"}));
        QCoreApplication::processEvents();
        QVERIFY(window.calls("type").isEmpty());
        QVERIFY(window.dest()->toPlainText().isEmpty());
    }

    void unsentTexts_data()
    {
        const Rows<int> row; // delay
        row("after a delay", 5);
        row("by hand", 10000);
    }
    void unsentTexts()
    {
        const auto [delay] = rowOf<int>();
        Window window(delay);
        window.translates("一");
        window.hears("二");
        window.hears("三");
        QCOMPARE(window.dialog->takeUnsent(), (list({"[一]", "二", "三"})));
        QVERIFY(window.dialog->takeUnsent().isEmpty());
    }

    /// Each text has the room that it asks for, in both states, with the settings away and open. Where
    /// MEVO_PICTURES names a folder the windows are left there to be looked at.
    void nothingIsCutOff_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("simplified Chinese") << "";
        QTest::newRow("traditional Chinese") << "cht";
        QTest::newRow("English") << "en";
    }
    void nothingIsCutOff()
    {
        QFETCH(QString, language);
        QTranslator translator;
        if (!language.isEmpty()) {
            QVERIFY(translator.load(":/translations/%1.qm"_s.arg(language)));
            QCoreApplication::installTranslator(&translator);
        }
        const QString pictures = qEnvironmentVariable("MEVO_PICTURES");
        for (const bool selection : {false, true}) {
            Window window;
            if (selection) {
                window.find<QCheckBox>("checkBox_Delimit_Translation")->click();
            }
            window.find<QComboBox>("comboBox_DestLan_Delimit")->setCurrentIndex(27); // the longest name
            window.find<QComboBox>("comboBox_DestLan")->setCurrentIndex(27);
            window.source()->setPlainText("今天天气很好，我们去公园吧。"_s);
            QTRY_VERIFY(!window.dest()->toPlainText().isEmpty());
            for (const bool open : {false, true}) {
                if (open) {
                    window.find<QCheckBox>("checkBox_ShowSetTransLan")->click();
                }
                QCoreApplication::processEvents();
                for (QAction *choice : window.find<QMenu>("sendMenu")->actions()) {
                    choice->setChecked(true);
                    window.find<QPushButton>("pushButton_TransSendSet")->setText(choice->text());
                    QCoreApplication::processEvents();
                    for (const QWidget *widget : window.dialog->findChildren<QWidget *>()) {
                        const bool hasText = qobject_cast<const QLabel *>(widget) != nullptr ||
                                             qobject_cast<const QAbstractButton *>(widget) != nullptr;
                        if (!hasText || !widget->isVisible() ||
                            widget->property("text").toString().isEmpty()) { // a picture
                            continue;
                        }
                        const int room = widget->width();
                        QVERIFY2(
                            room >= widget->minimumSizeHint().width() &&
                                room >= std::min(widget->sizeHint().width(), widget->maximumWidth()),
                            qPrintable("%1 \"%2\": %3 of %4"_s
                                           .arg(widget->objectName(), widget->property("text").toString())
                                           .arg(room)
                                           .arg(widget->sizeHint().width())));
                        QVERIFY2(window.dialog->rect().contains(
                                     QRect(widget->mapTo(window.dialog.get(), QPoint()), widget->size())),
                                 qPrintable(widget->objectName()));
                    }
                }
                if (!pictures.isEmpty()) {
                    QVERIFY(window.dialog->grab().save("%1/%2-%3-%4-%5.png"_s.arg(
                        pictures, language.isEmpty() ? "zh"_s : language,
                        selection ? "selection"_s : "voice"_s, open ? "open"_s : "closed"_s,
                        QString::number(window.dialog->devicePixelRatioF()))));
                }
            }
        }
        QCoreApplication::removeTranslator(&translator);
    }

    void settingsOpen()
    {
        const Window window;
        QCOMPARE(window.dialog->size(), QSize(0x1c7, 0xe6));
        auto *open = window.find<QCheckBox>("checkBox_ShowSetTransLan");
        window.dialog->move(10, 100000);
        open->click();
        QCOMPARE(window.dialog->size(), QSize(0x1c7, 0x22b));
        QVERIFY(window.dialog->screen()->availableGeometry().contains(window.dialog->pos()));
        QVERIFY(window.find<QComboBox>("comboBox_DestLan")->isVisible());
        open->click();
        QCOMPARE(window.dialog->size(), QSize(0x1c7, 0xe6));
    }

    /// A screen that was plugged in since the window was made changes its size.
    void aScreenThatCameLater()
    {
        const Window window;
        QScreen *screen = QGuiApplication::primaryScreen();
        screen->disconnect(window.dialog.get()); // as if it had not been there
        Q_EMIT qGuiApp->screenAdded(screen);
        window.dialog->move(10, 100000);
        QTRY_VERIFY(screen->availableGeometry().contains(window.dialog->geometry()));
        window.dialog->move(10, 100000);
        Q_EMIT screen->availableGeometryChanged(screen->availableGeometry());
        QTRY_VERIFY(screen->availableGeometry().contains(window.dialog->geometry()));
    }

    void oddTexts_data()
    {
        const Rows<QString> row; // text
        row("emoji", "😀👍🏽");
        row("right to left", "مرحبا بالعالم");
        row("lines", "一\n二\n三");
        row("markup", "<b>&amp;</b>");
        row("long", QString(10000, QChar(u'长')));
    }
    void oddTexts()
    {
        const auto [text] = rowOf<QString>();
        Window window(0);
        window.dialog->showRecText(text);
        QTRY_COMPARE(window.calls("type"), QStringList{"type ["_s + text + QLatin1Char(']')});
        QCOMPARE(window.calls("translate"), QStringList{"translate "_s + text + " zh>en"_s});
    }
};

QTEST_MAIN(TestTransTipDialog)
#include "tst_trans_tip_dialog.moc"
