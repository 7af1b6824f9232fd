// What the editor of the command words decides: forms, shortcuts, searches, faults of rows, one file for all.

#include "base/WholeFile.h"
#include "commands/CommandBundle.h"
#include "commands/CommandFaults.h"
#include "commands/CommandFile.h"
#include "commands/CommandForm.h"
#include "commands/CommandTable.h"
#include "state/SettingsState.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace mevo;

namespace {

QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, int(size));
}

CommandRow row(const QString &words, const QString &contents, CommandType type)
{
    return {"0"_s, words, commandTypeLabel(type), contents, QString()};
}

QString describe(const CommandDiagnosis &diagnosis)
{
    static const char *const names[] = {"empty", "shadowed", "mode",         "prefix",
                                        "key",   "nothing",  "missing file", "missing folder"};
    QStringList texts;
    for (const CommandFault &fault : diagnosis.faults) {
        texts.append("%1(%2,%3)"_s.arg(QLatin1String(names[int(fault.kind)]), fault.word, fault.by));
    }
    return texts.join(QLatin1Char(' ')) + (diagnosis.inert ? " inert"_s : QString());
}

} // namespace

class tst_command_editing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortcutTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("boxes");
        QTest::addColumn<QString>("key");
        QTest::newRow("all") << "Control+Alt+Shift+Win+F4"_s
                             << "CASW"_s
                             << "F4"_s;
        QTest::newRow("no key, no plus at the end") << "Alt"_s
                                                    << "A"_s
                                                    << ""_s;
        QTest::newRow("key alone") << "Enter"_s
                                   << ""_s
                                   << "Enter"_s;
        QTest::newRow("nothing") << ""_s
                                 << ""_s
                                 << ""_s;
    }
    void shortcutTexts()
    {
        QFETCH(QString, text);
        QFETCH(QString, boxes);
        QFETCH(QString, key);
        const ShortcutParts made{boxes.contains(QLatin1Char('C')), boxes.contains(QLatin1Char('A')),
                                 boxes.contains(QLatin1Char('S')), boxes.contains(QLatin1Char('W')), key};
        QCOMPARE(shortcutText(made), text);
        const ShortcutParts read = shortcutParts(text);
        QCOMPARE(QString(QLatin1String(read.control ? "C" : "")) + QLatin1String(read.alt ? "A" : "") +
                     QLatin1String(read.shift ? "S" : "") + QLatin1String(read.win ? "W" : ""),
                 boxes);
        QCOMPARE(read.key, key);
    }

    void rowsLeftUnsavedGoWhereTheyAlwaysWent_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<int>("file");
        QTest::newRow("voice keyboard") << 0 << 1;
        QTest::newRow("pinyin keyboard") << 1 << 2;
        QTest::newRow("web") << 2 << 2;
        QTest::newRow("file") << 3 << 3;
        QTest::newRow("folder") << 4 << 4;
        QTest::newRow("shortcut") << 5 << 5;
        QTest::newRow("phrase") << 6 << 6;
    }
    void rowsLeftUnsavedGoWhereTheyAlwaysWent()
    {
        QFETCH(int, view);
        QFETCH(int, file);
        QCOMPARE(int(commandForm(CommandType(view)).savedOnLeaving), file);
    }

    void searchFindsEachRowOnce()
    {
        const CommandRows rows{
            row("打开百度;百度搜索"_s, "a"_s, CommandType::Web), row("打开新浪"_s, "b"_s, CommandType::Web),
            row("百度"_s, "c"_s, CommandType::Web), row("百;度"_s, "d"_s, CommandType::Web)};
        QCOMPARE(searchCommandWords(rows, "百度"_s), (std::vector<int>{0, 2}));
        QVERIFY(searchCommandWords(rows, "度;"_s).empty()); // forms are searched, not what parts them
        QVERIFY(searchCommandWords(rows, ""_s).empty());
    }

    void faultsOfRows()
    {
        SettingsState settings;
        settings.Enable_SwitchFunctionMode = true;
        settings.SetEnterVoiceTypeModeSwitchModeFlags = QStringList{"打字"_s};
        settings.Enable_CommandWord_Direct = true;
        settings.CmdFlags_Contents_Driect = QStringList{"命令"_s};
        settings.Enable_Search_Direct = false;
        settings.SearchFlags_Contents_Driect = QStringList{"查找"_s};
        settings.KeyShowNames = QStringList{"A"_s, "Enter"_s};
        CommandTables tables;
        tables[2] = {row("百度"_s, "www.baidu.com"_s, CommandType::Web)};
        tables[1] = {row("家"_s, "jia"_s, CommandType::PinyinKeyboard)}; // not matched: shadows nothing
        tables[6] = {
            row("家"_s, "1"_s, CommandType::Phrase),       row("百度;地址"_s, "2"_s, CommandType::Phrase),
            row("百度"_s, "3"_s, CommandType::Phrase),     row("打字"_s, "4"_s, CommandType::Phrase),
            row("命令打开"_s, "5"_s, CommandType::Phrase), row("查找我"_s, "6"_s, CommandType::Phrase),
            row(""_s, "7"_s, CommandType::Phrase)};
        tables[5] = {row("一"_s, "Control+Enter"_s, CommandType::Shortcut),
                     row("二"_s, "Control+Entre"_s, CommandType::Shortcut),
                     row("三"_s, ""_s, CommandType::Shortcut), row("四"_s, "Alt"_s, CommandType::Shortcut)};
        tables[3] = {row("五"_s, "/there"_s, CommandType::File), row("六"_s, "/gone"_s, CommandType::File)};
        tables[4] = {row("七"_s, "/gone"_s, CommandType::Directory)};
        const auto exists = [](const QString &path, bool) { return path == "/there"_s; };
        const auto faults = [&](CommandType type) {
            QStringList texts;
            for (const CommandDiagnosis &diagnosis : diagnoseCommands(tables, type, settings, exists)) {
                texts.append(describe(diagnosis));
            }
            return texts;
        };
        QCOMPARE(
            faults(CommandType::Phrase),
            (QStringList{""_s, "shadowed(百度,www.baidu.com)"_s, "shadowed(百度,www.baidu.com) inert"_s,
                         "mode(打字,) inert"_s, "prefix(命令打开,命令) inert"_s, ""_s, "empty(,) inert"_s}));
        QCOMPARE(faults(CommandType::Shortcut),
                 (QStringList{""_s, "key(,Entre) inert"_s, "nothing(,) inert"_s, ""_s}));
        QCOMPARE(faults(CommandType::File), (QStringList{""_s, "missing file(,/gone) inert"_s}));
        QCOMPARE(faults(CommandType::Directory), (QStringList{"missing folder(,/gone) inert"_s}));
        QCOMPARE(faults(CommandType::Web), (QStringList{""_s}));
        QCOMPARE(faults(CommandType::PinyinKeyboard), (QStringList{""_s}));
    }

    /// "10"_s stands before "2"_s in the merged table.
    void anEarlierRowIsTheOneMatchedFirst()
    {
        CommandTables tables;
        for (int number = 0; number < 12; ++number) {
            tables[2].push_back(row(QString::number(number), QString::number(number), CommandType::Web));
        }
        tables[2][2].CommandWords = "同"_s;
        tables[2][10].CommandWords = "同"_s;
        const auto diagnoses =
            diagnoseCommands(tables, CommandType::Web, {}, [](const QString &, bool) { return true; });
        // Saved, the rows read 0, 1, 10, 11, 2: then numbered anew, 10 is the third of twelve.
        QCOMPARE(describe(diagnoses[2]), "shadowed(同,10) inert"_s);
        QCOMPARE(describe(diagnoses[10]), QString());
    }

    void oneFileForAllTables()
    {
        CommandTables tables;
        tables[2] = {row("百度"_s, "www.baidu.com"_s, CommandType::Web)};
        tables[6] = {row("诗"_s, "床前明月光，\n疑是地上霜。😀"_s, CommandType::Phrase)};
        tables[0] = {row("唉"_s, "a"_s, CommandType::VoiceKeyboard)};
        const QByteArray text = exportCommands(tables);

        const CommandImport fresh = importCommands({}, text);
        QCOMPARE(fresh.added, 3);
        QCOMPARE(fresh.tables[6].at(0).CmdWordContents, tables[6].at(0).CmdWordContents);
        QCOMPARE(fresh.tables[0].at(0).CommandWords, "唉"_s);

        tables[2].push_back(row("新"_s, "new"_s, CommandType::Web));
        const CommandImport again = importCommands(tables, text);
        QCOMPARE(again.added, 0);
        QCOMPARE(again.known, 3);
        QCOMPARE(again.tables[2].size(), std::size_t(2));

        const CommandImport odd = importCommands(tables, "[0]\nCmdWordType=what\nCommandWords=x\n");
        QCOMPARE(odd.refused, 1);
        QCOMPARE(importCommands(tables, QByteArray("\0\xff[[[", 6)).added, 0);
    }

    void draftsAndCopies()
    {
        const QTemporaryDir folder;
        const CommandTable table(folder.path());
        QVERIFY(!table.readDraft(CommandType::Web));
        table.writeDraft(CommandType::Web, {row("草"_s, "x"_s, CommandType::Web)});
        QCOMPARE(table.readDraft(CommandType::Web)->at(0).CommandWords, "草"_s);
        QVERIFY(table.readTyped(CommandType::Web).empty());
        table.writeDraft(CommandType::Web, {}); // an emptied table is a draft too
        QVERIFY(table.readDraft(CommandType::Web));
        table.removeDraft(CommandType::Web);
        QVERIFY(!table.readDraft(CommandType::Web));

        QVERIFY(table.keepCopy(CommandType::Web));
        QVERIFY(table.writeTyped(CommandType::Web, {row("旧"_s, "x"_s, CommandType::Web)}));
        QVERIFY(table.keepCopy(CommandType::Web));
        QVERIFY(table.writeTyped(CommandType::Web, {}));
        QFile copy(table.typedPath(CommandType::Web) + ".bak"_s);
        QVERIFY(copy.open(QFile::ReadOnly));
        QCOMPARE(parseCommandFile(copy.readAll()).rows.at(0).CommandWords, "旧"_s);
        QVERIFY(table.writeTyped(CommandType::Web, {row("二"_s, "x"_s, CommandType::Web)}));
        QVERIFY(table.keepCopy(CommandType::Web));
        QVERIFY(table.keepCopy(CommandType::Web)); // the same content once more
        QFile second(copy.fileName() + "2"_s);
        QVERIFY(second.open(QFile::ReadOnly));
        QCOMPARE(parseCommandFile(second.readAll()).rows.at(0).CommandWords, "二"_s);
        QVERIFY(copy.seek(0));
        QCOMPARE(parseCommandFile(copy.readAll()).rows.at(0).CommandWords, "旧"_s);
        QVERIFY(!QFile::exists(copy.fileName() + "3"_s));
    }

    /// Longer than any table: nobody may read it, but its name could be taken.
    void whatCannotBeReadIsNotReplaced()
    {
        const QTemporaryDir folder;
        const CommandTable table(folder.path());
        const QString path = table.typedPath(CommandType::Web);
        for (const QString &name : {path, path + ".draft"_s}) {
            QFile file(name);
            QVERIFY(file.open(QFile::WriteOnly) && file.resize(largestWholeFile + 1));
        }
        const CommandRows rows{row("新"_s, "x"_s, CommandType::Web)};
        QVERIFY(!table.writeTyped(CommandType::Web, rows));
        QVERIFY(!table.readDraft(CommandType::Web));
        QVERIFY(!table.writeDraft(CommandType::Web, rows));
        QCOMPARE(QFileInfo(path).size(), qint64(largestWholeFile + 1));
    }
};

QTEST_GUILESS_MAIN(tst_command_editing)
#include "tst_command_editing.moc"
