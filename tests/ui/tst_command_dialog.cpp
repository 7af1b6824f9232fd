// The editor of the command words, used through its controls.

#include "commands/CommandTable.h"
#include "state/SettingsState.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "ui/Ask.h"
#include "ui/commands/CommandRowsModel.h"
#include "ui/commands/CommandWordDialog.h"
#include "ui/commands/PathLooker.h"
#include "ui/commands/SelectApplication.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSemaphore>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using namespace mevo;

namespace {

const ScratchHome home;

constexpr int yes = 0;
constexpr int no = 1;

struct Words
{
    Utf8Text words;
    Utf8Text contents;
    Utf8Text hide = "0";
};

/// The dialog on tables of a folder of its own, with the questions it asks.
struct Editor
{
    QTemporaryDir folder;
    CommandTable tables{folder.path()};
    SettingsState settings;
    QStringList asked;
    int answer = yes;
    std::function<void()> onQuestion;
    std::unique_ptr<CommandWordDialog> dialog;
    bool closed = false;

    Editor()
    {
        askHook = [this](const Question &question) {
            asked.append(question.text);
            if (onQuestion) {
                onQuestion();
            }
            const bool canBeClosed = question.buttons.size() == 1 || !question.meanings.empty();
            return !canBeClosed ? -2 : question.buttons.size() > 1 ? answer : 0;
        };
    }
    ~Editor()
    {
        dialog.reset();
        askHook = nullptr;
    }
    static CommandRows rowsOf(CommandType type, std::initializer_list<Words> rows)
    {
        CommandRows all;
        for (const Words &row : rows) {
            all.push_back({row.hide, row.words, commandTypeLabel(type), row.contents, QString()});
        }
        return all;
    }
    /// What was saved before the dialog is opened.
    void has(CommandType type, std::initializer_list<Words> rows) const
    {
        QVERIFY(tables.writeTyped(type, rowsOf(type, rows)));
    }
    void open()
    {
        dialog = std::make_unique<CommandWordDialog>(tables, settings);
        QObject::connect(dialog.get(), &CommandWordDialog::closed, [this] { closed = true; });
        dialog->show();
        QCoreApplication::processEvents();
    }
    template <typename Widget = QPushButton>
    Widget *at(const char *name) const
    {
        auto *found = dialog->findChild<Widget *>(QLatin1String(name));
        if (found == nullptr) {
            qFatal("%s is not there", name);
        }
        return found;
    }
    void click(const char *name) const { at<QAbstractButton>(name)->click(); }
    void type(const char *field, const QString &text) const
    {
        at<QLineEdit>(field)->clear();
        QTest::keyClicks(at<QLineEdit>(field), text);
    }
    QTableView *table() const { return at<QTableView>("tableWidget"); }
    QString cell(int number, int column) const
    {
        return table()->model()->index(number, column).data().toString();
    }
    int rows() const { return table()->model()->rowCount(); }
    QStringList words(CommandType type) const
    {
        return textsOf(tables.readTyped(type), &CommandRow::CommandWords);
    }
};

/// A folder in a file's place: no name can be taken there, not even by root.
void block(const QString &path)
{
    QFile::remove(path);
    QVERIFY(QDir().mkpath(path + "/full"_s));
}

/// Answers the file dialog that is about to stand.
void pickInTheDialog(const QString &path)
{
    QTimer::singleShot(0, qApp, [path] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        dialog->findChild<QLineEdit *>("fileNameEdit"_s)->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

const char *const warning = "建议在增加前先查询有没有定义过，如重复定义语音映射词，\n将执行最初定义的功能！";

} // namespace

class tst_command_dialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addEditSaveAndClose()
    {
        Editor editor;
        editor.open();
        QCOMPARE(editor.dialog->windowTitle(), "语音映射词设置"_s);
        QVERIFY(editor.at<QRadioButton>("radioButton_OnlyShowWebype")->isChecked());
        QVERIFY(!editor.at<QLineEdit>("lineEdit_CommandWord")->isEnabled()); // nothing to edit yet
        editor.click("pushButton_AddCmdWord");
        QCOMPARE(editor.asked, QStringList{QString::fromUtf8(warning)});
        QCOMPARE(editor.cell(0, 1), "输入语音映射词"_s);
        QCOMPARE(editor.cell(0, 2), "网页"_s);
        QCOMPARE(editor.cell(0, 3), "输入语音映射词功能"_s);
        editor.type("lineEdit_CommandWord", "baidu"_s);
        editor.click("pushButton_addSemicolon");
        QTest::keyClicks(editor.at<QLineEdit>("lineEdit_CommandWord"), "search"_s);
        editor.type("lineEdit_CmdWordContent", "www.baidu.com"_s);
        QCOMPARE(editor.cell(0, 1), "baidu;search"_s);
        QVERIFY(editor.words(CommandType::Web).isEmpty());
        editor.click("pushButton_SaveCmdWord");
        QCOMPARE(editor.words(CommandType::Web), list({"baidu;search"}));
        QVERIFY(editor.tables.readMerged().empty());
        editor.click("pushButton_Close");
        QVERIFY(editor.closed);
        QCOMPARE(editor.tables.readMerged().at(0).CmdWordContents, "www.baidu.com"_s);
        QVERIFY(!editor.tables.readDraft(CommandType::Web));
    }

    void shortcutsByBoxesAndKey()
    {
        Editor editor;
        home.write("MEVKeysSetting.ini"_s, "[0]\nShowName=A\nVKCode=4\n[1]\nShowName=F5\nVKCode=3e\n");
        editor.has(CommandType::Shortcut, {{"w", "Alt"}, {"x", "Control+F5"}});
        editor.open();
        editor.click("radioButton_OnlyShowShortcutType");
        QVERIFY(editor.at<QCheckBox>("checkBox_Alt")->isChecked());
        QVERIFY(!editor.at<QLineEdit>("lineEdit_CmdWordContent")->isVisible());
        editor.click("checkBox_Win");
        QCOMPARE(editor.cell(0, 3), "Alt+Win"_s);
        editor.at<QComboBox>("comboBox_ShortCutKey")->setCurrentText("A"_s);
        editor.click("checkBox_Alt");
        editor.click("checkBox_Control");
        editor.click("checkBox_Shift");
        QCOMPARE(editor.cell(0, 3), "Control+Shift+Win+A"_s);
        editor.table()->selectRow(1);
        QVERIFY(editor.at<QCheckBox>("checkBox_Control")->isChecked());
        QVERIFY(!editor.at<QCheckBox>("checkBox_Win")->isChecked());
        QCOMPARE(editor.at<QComboBox>("comboBox_ShortCutKey")->currentText(), "F5"_s);
        QCOMPARE(editor.cell(1, 3), "Control+F5"_s); // looking at a row changes nothing
    }

    void keyboardRowsTakeLettersOnly_data()
    {
        const Rows<QString, QString, QString> row; // view, typed, taken
        row("one letter or digit", "radioButton_OnlyShowVoiceKeyboardType", "?a1b", "a");
        row("small letters", "radioButton_OnlyShowPinyinKeyboardType", "aNg1g", "agg");
    }
    void keyboardRowsTakeLettersOnly()
    {
        const auto [view, typed, taken] = rowOf<QString, QString, QString>();
        Editor editor;
        editor.open();
        editor.click(view.toLatin1());
        editor.click("pushButton_AddCmdWord");
        editor.type("lineEdit_CmdWordContent", typed);
        QCOMPARE(editor.cell(0, 3), taken);
    }

    void leavingAViewAsksOnlyAboutAddedRows()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"old", "w"}});
        editor.open();
        editor.click("radioButton_OnlyShowPhraseType");
        QVERIFY(editor.asked.isEmpty());
        editor.click("pushButton_AddCmdWord");
        editor.asked.clear();
        editor.click("radioButton_OnlyShowFileType");
        QCOMPARE(editor.asked, list({"是否要保存前面设置？"}));
        QCOMPARE(editor.words(CommandType::Phrase), list({"输入语音映射词"}));

        editor.click("pushButton_AddCmdWord");
        editor.answer = no;
        editor.click("radioButton_OnlyShowWebype");
        QVERIFY(editor.words(CommandType::File).isEmpty());
        QVERIFY(!editor.tables.readDraft(CommandType::File));

        editor.asked.clear();
        editor.type("lineEdit_CommandWord", "new"_s); // no row added: not asked, and not lost either
        editor.click("radioButton_ShowAll");
        QVERIFY(editor.asked.isEmpty());
        QCOMPARE(editor.words(CommandType::Web), list({"old"}));
        editor.answer = yes;
        editor.click("radioButton_OnlyShowWebype");
        QCOMPARE(editor.asked.size(), 1);
        QCOMPARE(editor.cell(0, 1), "new"_s);
        editor.click("pushButton_SaveCmdWord");
        QCOMPARE(editor.words(CommandType::Web), list({"new"}));
    }

    /// The rows of the voice keyboard go to the table of the pinyin keyboard; what they replace is kept.
    void rowsOfTheVoiceKeyboard()
    {
        Editor editor;
        editor.has(CommandType::PinyinKeyboard, {{"昂", "ang"}});
        editor.open();
        editor.click("radioButton_OnlyShowVoiceKeyboardType");
        editor.click("pushButton_AddCmdWord");
        editor.type("lineEdit_CommandWord", "ay"_s);
        editor.click("radioButton_OnlyShowWebype");
        QCOMPARE(editor.words(CommandType::PinyinKeyboard), list({"ay"}));
        QVERIFY(QFile::exists(editor.tables.typedPath(CommandType::PinyinKeyboard) + ".bak"_s));
        editor.click("radioButton_OnlyShowVoiceKeyboardType"); // offered: yes
        QCOMPARE(editor.cell(0, 1), "ay"_s);
    }

    void allRowsAreToLookAt()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"web", "w"}});
        editor.has(CommandType::Phrase, {{"phrase", "p"}});
        editor.has(CommandType::VoiceKeyboard, {{"ay", "a"}});
        QVERIFY(editor.tables.rebuildMerged());
        editor.open();
        editor.click("radioButton_ShowAll");
        QCOMPARE(editor.rows(), 2); // the keyboards' rows are not among them
        for (const char *name :
             {"pushButton_AddCmdWord", "pushButton_DelCmdWord", "pushButton_SaveCmdWord"}) {
            QVERIFY2(!editor.at<QPushButton>(name)->isEnabled(), name);
        }
        QVERIFY(!editor.at<QLineEdit>("lineEdit_CommandWord")->isEnabled());
        editor.table()->setFocus();
        QTest::keyClick(editor.table(), Qt::Key_Delete);
        QMetaObject::invokeMethod(editor.dialog.get(), "on_pushButton_DelCmdWord_clicked");
        QVERIFY(editor.asked.contains("该类型状态下不能删除，请先切换到相关类型下！"_s));
        QMetaObject::invokeMethod(editor.dialog.get(), "on_pushButton_AddCmdWord_clicked");
        QCOMPARE(editor.asked.last(), "该类型状态下不能增加，将默认切换到网页类型下"_s);
        QVERIFY(editor.at<QRadioButton>("radioButton_OnlyShowWebype")->isChecked());
        QCOMPARE(editor.rows(), 1);
        editor.click("radioButton_ShowAll");
        editor.click("pushButton_Close");
        QCOMPARE(editor.tables.readMerged().size(), std::size_t(3));
    }

    void deletingSavesAtOnce()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"a", "1"}, {"b", "2"}});
        editor.open();
        editor.answer = no;
        editor.click("pushButton_DelCmdWord");
        QCOMPARE(editor.asked, list({"确认删除吗？"}));
        QCOMPARE(editor.words(CommandType::Web).size(), 2);
        editor.answer = yes;
        editor.click("pushButton_DelCmdWord");
        QCOMPARE(editor.words(CommandType::Web), list({"b"}));
        QCOMPARE(editor.at<QLineEdit>("lineEdit_CommandWord")->text(), "b"_s);
        editor.click("pushButton_DelCmdWord");
        QCOMPARE(editor.rows(), 0);
        QVERIFY(editor.words(CommandType::Web).isEmpty());
        QVERIFY(QFile::exists(editor.tables.typedPath(CommandType::Web)));
        QVERIFY(!editor.at<QLineEdit>("lineEdit_CommandWord")->isEnabled());
    }

    void hiddenRowsAndSearch()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"打开百度;百度搜索", "1"}, {"新浪", "2"}, {"百度图片", "3", "1"}});
        editor.open();
        QVERIFY(editor.table()->isRowHidden(2));
        editor.click("checkBox_ShowHideContents");
        QVERIFY(!editor.table()->isRowHidden(2));
        editor.at<QLineEdit>("lineEdit_SearchCmdWord")->setText("百度"_s);
        editor.click("pushButton_SearchCmdWord");
        QCOMPARE(editor.table()->currentIndex().row(), 0);
        QVERIFY(editor.at<QPushButton>("pushButton_SearchCmdWord_Next")->isVisible());
        QVERIFY(!editor.at<QPushButton>("pushButton_SearchCmdWord_Previous")->isVisible());
        editor.click("pushButton_SearchCmdWord_Next");
        QCOMPARE(editor.at<QLineEdit>("lineEdit_CommandWord")->text(), "百度图片"_s);
        QVERIFY(!editor.at<QPushButton>("pushButton_SearchCmdWord_Next")->isVisible());
        editor.click("pushButton_SearchCmdWord_Previous");
        QCOMPARE(editor.table()->currentIndex().row(), 0);
        editor.at<QLineEdit>("lineEdit_SearchCmdWord")->setText("无"_s);
        editor.click("pushButton_SearchCmdWord");
        QCOMPARE(editor.asked, list({"没有发现匹配的语音映射词！"}));
        editor.table()->selectRow(1);
        editor.click("checkBox_Hide");
        editor.click("pushButton_SaveCmdWord");
        QCOMPARE(editor.tables.readTyped(CommandType::Web).at(1).Hide, "1"_s);
    }

    /// Nobody may edit or delete a row that he does not see.
    void noHiddenRowIsCurrent()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"c", "1", "1"}, {"b", "2"}, {"a", "3", "1"}, {"d", "4"}});
        editor.open();
        const auto current = [&editor] { return editor.at<QLineEdit>("lineEdit_CommandWord")->text(); };
        QCOMPARE(current(), "b"_s);
        QMetaObject::invokeMethod(editor.table()->horizontalHeader(), "sectionClicked", Q_ARG(int, 1));
        QCOMPARE(editor.cell(0, 1), "a"_s);
        QCOMPARE(current(), "b"_s);
        editor.click("pushButton_DelCmdWord");
        QCOMPARE(current(), "d"_s);
        editor.click("pushButton_DelCmdWord");
        QCOMPARE(editor.words(CommandType::Web), list({"a", "c"}));
        QCOMPARE(current(), QString());
        QVERIFY(!editor.at<QLineEdit>("lineEdit_CommandWord")->isEnabled());
        editor.asked.clear();
        editor.click("pushButton_DelCmdWord");
        QVERIFY(editor.asked.isEmpty());
        editor.click("checkBox_ShowHideContents");
        QCOMPARE(current(), "a"_s);
        QVERIFY(editor.at<QLineEdit>("lineEdit_CommandWord")->isEnabled());
        editor.click("checkBox_ShowHideContents");
        QCOMPARE(current(), QString());
    }

    void aKeyThatTheListDoesNotHave()
    {
        Editor editor;
        home.write("MEVKeysSetting.ini"_s, "[0]\nShowName=A\nVKCode=4\n");
        editor.has(CommandType::Shortcut, {{"w", "Control+Hyper"}});
        editor.open();
        editor.click("radioButton_OnlyShowShortcutType");
        editor.click("checkBox_Alt");
        QCOMPARE(editor.cell(0, 3), "Control+Alt+Hyper"_s);
        editor.at<QComboBox>("comboBox_ShortCutKey")->setCurrentText("A"_s);
        QCOMPARE(editor.cell(0, 3), "Control+Alt+A"_s);
        editor.click("pushButton_AddCmdWord"); // what a new row says is no key
        editor.click("checkBox_Alt");
        QCOMPARE(editor.cell(1, 3), "Alt"_s);
    }

    void aLongPhraseIsWhole()
    {
        Editor editor;
        const QString poem(70000, QChar(0x8bd7));
        editor.has(CommandType::Phrase, {{"poem", poem}});
        editor.open();
        editor.click("radioButton_OnlyShowPhraseType");
        QCOMPARE(editor.at<QLineEdit>("lineEdit_CmdWordContent")->text(), poem);
    }

    void aClickOnTheCurrentRowShowsIt()
    {
        Editor editor;
        editor.has(CommandType::VoiceKeyboard, {{"ay", "a"}});
        editor.open();
        editor.click("radioButton_OnlyShowVoiceKeyboardType");
        QTest::mouseClick(editor.table()->viewport(), Qt::LeftButton, {},
                          editor.table()->visualRect(editor.table()->model()->index(0, 1)).center());
        {
            const QSignalBlocker unheard(editor.at<QLineEdit>("lineEdit_CommandWord"));
            editor.at<QLineEdit>("lineEdit_CommandWord")->clear();
        }
        QTest::mouseClick(editor.table()->viewport(), Qt::LeftButton, {},
                          editor.table()->visualRect(editor.table()->model()->index(0, 1)).center());
        QCOMPARE(editor.at<QLineEdit>("lineEdit_CommandWord")->text(), "ay"_s);
    }

    /// Rows that wait unsaved stay so, here and in views that are not shown.
    void exportAndImport()
    {
        Editor editor;
        const QString file = editor.folder.filePath("bundle.ini"_s);
        editor.has(CommandType::Web, {{"w", "1"}});
        editor.has(CommandType::Phrase, {{"p", "2"}});
        editor.open();
        pickInTheDialog(file);
        editor.click("pushButton_Export");
        QCOMPARE(editor.asked, QStringList{"已导出到“%1”。"_s.arg(file)});
        for (const CommandType type : {CommandType::Web, CommandType::Phrase}) {
            editor.has(type, {});
        }
        editor.type("lineEdit_CommandWord", "unsaved"_s);
        block(editor.tables.typedPath(CommandType::Phrase));
        editor.asked.clear();
        pickInTheDialog(file);
        editor.click("pushButton_Import");
        QCOMPARE(editor.asked,
                 list({"导入了1条，0条已经有了，0条不能识别。\n“常用短语”没有保存，原来的文件没有改动。"}));
        QCOMPARE(editor.words(CommandType::Web), list({"w"}));
        QCOMPARE(editor.cell(0, 1), "unsaved"_s);
        QCOMPARE(editor.cell(1, 1), "w"_s);
        editor.click("pushButton_SaveCmdWord");
        QCOMPARE(editor.words(CommandType::Web), list({"unsaved", "w"}));
    }

    void whatCannotBeSavedIsKept()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"old", "w"}});
        editor.open();
        editor.type("lineEdit_CommandWord", "new"_s);
        const QString path = editor.tables.typedPath(CommandType::Web);
        block(path);
        editor.click("pushButton_SaveCmdWord");
        const QString notSaved = "语音映射词没有保存，原来的文件没有改动。"_s;
        QCOMPARE(editor.asked, QStringList{notSaved});
        QCOMPARE(editor.cell(0, 1), "new"_s);
        QCOMPARE(editor.tables.readDraft(CommandType::Web)->at(0).CommandWords, "new"_s);

        // Without a draft the window alone has the rows: it neither leaves the view nor closes.
        block(path + ".draft"_s);
        editor.type("lineEdit_CommandWord", "newer"_s);
        editor.asked.clear();
        editor.click("radioButton_OnlyShowFileType");
        QCOMPARE(editor.asked, (QStringList{"是否要保存前面设置？"_s, notSaved}));
        QVERIFY(editor.at<QRadioButton>("radioButton_OnlyShowWebype")->isChecked());
        QCOMPARE(editor.cell(0, 1), "newer"_s);
        editor.asked.clear();
        editor.click("pushButton_Close");
        QCOMPARE(editor.asked, QStringList{notSaved});
        QVERIFY(editor.dialog->isVisible() && !editor.closed);
        QVERIFY(QDir(path + ".draft"_s).removeRecursively() && QDir(path).removeRecursively());
        editor.click("pushButton_Close");
        QVERIFY(editor.closed);
        QCOMPARE(editor.tables.readDraft(CommandType::Web)->at(0).CommandWords, "newer"_s);
    }

    void escapeBringsTheMergedTableUpToDate()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"word", "w"}});
        editor.open();
        QTest::keyClick(editor.dialog.get(), Qt::Key_Escape);
        QVERIFY(!editor.dialog->isVisible());
        QCOMPARE(editor.tables.readMerged().at(0).CommandWords, "word"_s);
    }

    /// A second letter does not put the draft off.
    void whoTypesOnGetsADraft()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"old", "w"}});
        editor.open();
        QElapsedTimer typing;
        typing.start();
        while (!editor.tables.readDraft(CommandType::Web) && typing.elapsed() < 20000) {
            QTest::keyClick(editor.at<QLineEdit>("lineEdit_CommandWord"), Qt::Key_A);
            QTest::qWait(20);
        }
        QVERIFY(editor.tables.readDraft(CommandType::Web));
    }

    /// As a crash does: nothing of the dialog runs any more.
    void aDraftIsOfferedAtTheNextOpening_data()
    {
        const Rows<int, QString, bool> row; // answer, word, kept
        row("wanted", yes, "draft", true);
        row("not wanted", no, "saved", false);
        row("question closed", -1, "draft", true);
    }
    void aDraftIsOfferedAtTheNextOpening()
    {
        const auto [answer, word, kept] = rowOf<int, QString, bool>();
        Editor editor;
        editor.has(CommandType::Web, {{"saved", "w"}});
        editor.tables.writeDraft(CommandType::Web, Editor::rowsOf(CommandType::Web, {{"draft", "w"}}));
        editor.answer = answer;
        editor.open();
        QCOMPARE(editor.asked, list({"上次对“网页”的修改没有保存，要恢复吗？"}));
        QCOMPARE(editor.cell(0, 1), word);
        QCOMPARE(editor.tables.readDraft(CommandType::Web).has_value(), kept);
    }

    void aDialogThatGoesDuringAQuestion_data()
    {
        const Rows<QString> row; // control
        row("add", "pushButton_AddCmdWord");
        row("delete", "pushButton_DelCmdWord");
        row("view", "radioButton_OnlyShowFileType");
    }
    void aDialogThatGoesDuringAQuestion()
    {
        const auto [control] = rowOf<QString>();
        Editor editor;
        editor.has(CommandType::Web, {{"old", "w"}});
        editor.open();
        editor.type("lineEdit_CommandWord", "new"_s);
        editor.onQuestion = [&editor] { editor.dialog.reset(); };
        QPointer<QAbstractButton> button = editor.at<QAbstractButton>(control.toLatin1());
        QMetaObject::invokeMethod(button, "clicked", Q_ARG(bool, true));
        QVERIFY(editor.dialog == nullptr);
        QCOMPARE(editor.words(CommandType::Web), list({"old"}));
        QCOMPARE(editor.tables.readDraft(CommandType::Web)->at(0).CommandWords, "new"_s);
    }

    /// A screen of 1280 x 720 at twice the size.
    void aSmallScreenHasTheButtons()
    {
        Editor editor;
        editor.open();
        editor.dialog->resize(640, 312);
        QCoreApplication::processEvents();
        QVERIFY(editor.dialog->width() <= 640 && editor.dialog->height() <= 312);
        for (const char *name : {"pushButton_AddCmdWord", "pushButton_Close"}) {
            QVERIFY(editor.dialog->rect().contains(
                editor.at<QPushButton>(name)->mapTo(editor.dialog.get(), QPoint(1, 20))));
        }
    }

    void sortingByAColumn()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"b", "1"}, {"a", "2"}});
        editor.open();
        QCOMPARE(editor.cell(0, 1), "b"_s);
        QVERIFY(editor.table()->horizontalHeader()->isSortIndicatorShown());
        QCOMPARE(editor.table()->horizontalHeader()->sortIndicatorSection(), 1);
        QCOMPARE(editor.table()->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
        QMetaObject::invokeMethod(editor.table()->horizontalHeader(), "sectionClicked", Q_ARG(int, 1));
        QCOMPARE(editor.cell(0, 1), "a"_s);
        QCOMPARE(editor.at<QLineEdit>("lineEdit_CmdWordContent")->text(), "2"_s);
    }

    void rowsThatCannotActAreMarked()
    {
        Editor editor;
        editor.has(CommandType::Web, {{"a<b>", "1"}});
        editor.has(CommandType::Phrase, {{"a<b>;", "2"}, {"b", "3"}});
        editor.open();
        const QString tip = "<qt>“a&lt;b&gt;”已经定义过，会执行“1”<br>有一个语音映射词是空的</qt>"_s;
        for (const char *view : {"radioButton_OnlyShowPhraseType", "radioButton_ShowAll"}) {
            editor.click(view);
            const int shadowed = editor.rows() - 2;
            QTRY_COMPARE_WITH_TIMEOUT(editor.cell(shadowed, 4), "不起作用"_s, 20000);
            QCOMPARE(editor.table()->model()->index(shadowed, 4).data(Qt::ToolTipRole).toString(), tip);
            QCOMPARE(editor.cell(shadowed + 1, 4), QString());
            QCOMPARE(editor.table()->model()->index(shadowed + 1, 4).data(Qt::ToolTipRole).toString(),
                     QString());
        }
    }

    void filesThatAreNotThereAreMarked()
    {
        Editor editor;
        editor.has(CommandType::File, {{"a", editor.folder.path()}, {"b", editor.folder.filePath("no"_s)}});
        editor.open();
        editor.click("radioButton_OnlyShowFileType");
        QTRY_COMPARE_WITH_TIMEOUT(editor.cell(1, 4), "不起作用"_s, 20000);
        QCOMPARE(editor.cell(0, 4), QString());
    }

    /// A share that does not answer holds neither who asks nor the other paths.
    void aPathThatHangs()
    {
        QSemaphore stuck;
        std::atomic<int> looks{0};
        std::atomic<bool> cameBack{false};
        auto looker = std::make_unique<PathLooker>(nullptr, [&](const QString &path, bool) {
            ++looks;
            if (path == "/hangs"_s) {
                stuck.acquire();
                cameBack = true;
            }
            return false;
        });
        QSignalSpy looked(looker.get(), &PathLooker::looked);
        QVERIFY(looker->isThere("/hangs"_s, false));
        QVERIFY(looker->isThere("/gone"_s, false));
        QTRY_VERIFY_WITH_TIMEOUT(!looker->isThere("/gone"_s, false), 20000);
        QVERIFY(!looked.isEmpty());
        QVERIFY(looker->isThere("/hangs"_s, false));
        QCOMPARE(looks.load(), 2); // each once, however often it is asked for
        looker->forget();
        QVERIFY(looker->isThere("/gone"_s, false));
        QTRY_COMPARE_WITH_TIMEOUT(looks.load(), 3, 20000);
        looker.reset(); // does not wait for it
        QVERIFY(!cameBack);
        stuck.release();
        QTRY_VERIFY_WITH_TIMEOUT(cameBack.load(), 20000);
    }

    /// In a tree the focus alone makes an item current.
    void anApplicationIsPickedByASelection()
    {
        SelectApplication picker;
        auto *own = picker.findChild<QTreeWidget *>("treeView_User"_s);
        auto *shared = picker.findChild<QTreeWidget *>("treeView_AllUsers"_s);
        for (QTreeWidget *tree : {own, shared}) {
            tree->clear();
            auto *item = new QTreeWidgetItem(tree, {"x"_s});
            item->setData(0, Qt::UserRole, tree->objectName());
        }
        own->setCurrentItem(own->topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
        QCOMPARE(picker.path(), QString());
        own->topLevelItem(0)->setSelected(true);
        QCOMPARE(picker.path(), own->objectName());
        shared->topLevelItem(0)->setSelected(true);
        QCOMPARE(picker.path(), shared->objectName());
        QVERIFY(own->selectedItems().isEmpty());
    }

    void applicationsOfDesktopEntries()
    {
        const QTemporaryDir own;
        const QTemporaryDir shared;
        const auto write = [](const QTemporaryDir &folder, const QString &name, const QByteArray &text) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QFile::WriteOnly) && file.write(text) == text.size());
        };
        write(
            shared, "editor.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Editor\nName[zh_CN]=编辑器\nExec=editor %F\nIcon=edit\n"
            "[Desktop Action New]\nName=New\n");
        write(shared, "hidden.desktop"_s,
              "[Desktop Entry]\nType=Application\nName=H\nExec=h\nNoDisplay=true\n");
        write(shared, "link.desktop"_s, "[Desktop Entry]\nType=Link\nName=L\nURL=x\n");
        write(shared, "broken.desktop"_s, QByteArray("\xff\x00[[[=", 7));
        write(shared, "twice.desktop"_s, "[Desktop Entry]\nType=Application\nName=Shared\nExec=s\n");
        QVERIFY(QDir(shared.path()).mkdir("kde"_s));
        write(shared, "kde/notes.desktop"_s, "[Desktop Entry]\nType=Application\nName=K\\sNotes\nExec=k\n");
        write(shared, "kde/own.desktop"_s, "[Desktop Entry]\nType=Application\nName=Hidden\nExec=k\n");
        write(own, "twice.desktop"_s, "[Desktop Entry]\nType=Application\nName=Own\nExec=o\n");
        write(own, "kde-own.desktop"_s, "[Desktop Entry]\nType=Application\nName=Own too\nExec=o\n");
        const auto entries = applicationEntries({own.path(), shared.path(), "/nowhere"_s}, "zh_CN"_s);
        QStringList names = textsOf(entries, &ApplicationEntry::name);
        names.sort();
        QCOMPARE(names, list({"K Notes", "Own", "Own too", "编辑器"}));
        QCOMPARE(applicationEntries({shared.path()}, "en_US"_s).front().name, "Editor"_s);
    }
};

QTEST_MAIN(tst_command_dialog)
#include "tst_command_dialog.moc"
