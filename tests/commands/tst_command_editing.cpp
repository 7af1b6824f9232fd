// What the editor of the command words decides: forms, shortcuts, searches, faults of rows, one file for all.

#include "base/WholeFile.h"
#include "commands/CommandBundle.h"
#include "commands/CommandFaults.h"
#include "commands/CommandFile.h"
#include "commands/CommandForm.h"
#include "commands/CommandMatcher.h"
#include "commands/CommandTable.h"
#include "state/SettingsState.h"
#include "support/Rows.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace mevo;

namespace {

CommandRow row(const Utf8Text &words, const Utf8Text &contents, CommandType type)
{
    return {"0"_s, words, commandTypeLabel(type), contents, QString()};
}

QString describe(const CommandDiagnosis &diagnosis)
{
    static const char *const names[] = {"empty",   "shadowed", "mode",         "prefix",        "key",
                                        "nothing", "table",    "missing file", "missing folder"};
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
        const Rows<QString, QString, QString> row; // text, boxes, key
        row("all", "Control+Alt+Shift+Win+F4", "CASW", "F4");
        row("no key, no plus at the end", "Alt", "A", "");
        row("key alone", "Enter", "", "Enter");
        row("nothing", "", "", "");
    }
    void shortcutTexts()
    {
        const auto [text, boxes, key] = rowOf<QString, QString, QString>();
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
        const Rows<int, int> row; // view, file
        row("voice keyboard", 0, 1);
        row("pinyin keyboard", 1, 2);
        row("web", 2, 2);
        row("file", 3, 3);
        row("folder", 4, 4);
        row("shortcut", 5, 5);
        row("phrase", 6, 6);
    }
    void rowsLeftUnsavedGoWhereTheyAlwaysWent()
    {
        const auto [view, file] = rowOf<int, int>();
        QCOMPARE(int(commandForm(CommandType(view)).savedOnLeaving), file);
    }

    void searchFindsEachRowOnce()
    {
        const CommandRows rows{row("打开百度;百度搜索", "a", CommandType::Web),
                               row("打开新浪", "b", CommandType::Web), row("百度", "c", CommandType::Web),
                               row("百;度", "d", CommandType::Web)};
        QCOMPARE(searchCommandWords(rows, "百度"_s), (std::vector<int>{0, 2}));
        QVERIFY(searchCommandWords(rows, "度;"_s).empty()); // forms are searched, not what parts them
        QCOMPARE(searchCommandWords(rows, ""_s).size(), rows.size()); // it stands in every form
    }

    void faultsOfRows()
    {
        SettingsState settings;
        settings.Enable_SwitchFunctionMode = true;
        settings.SetEnterVoiceTypeModeSwitchModeFlags = list({"打字"});
        settings.Enable_CommandWord_Direct = true;
        settings.CmdFlags_Contents_Driect = list({"命令"});
        settings.Enable_Search_Direct = false;
        settings.SearchFlags_Contents_Driect = list({"查找"});
        settings.KeyShowNames = list({"A", "Enter"});
        CommandTables tables;
        tables[2] = {row("百度", "www.baidu.com", CommandType::Web),
                     row("五", "wu", CommandType::PinyinKeyboard)};  // strayed; shadows nothing
        tables[1] = {row("家", "jia", CommandType::PinyinKeyboard)}; // not matched: shadows nothing
        tables[6] = {row("家", "1", CommandType::Phrase),       row("百度;地址", "2", CommandType::Phrase),
                     row("百度", "3", CommandType::Phrase),     row("打字", "4", CommandType::Phrase),
                     row("命令打开", "5", CommandType::Phrase), row("查找我", "6", CommandType::Phrase),
                     row("", "7", CommandType::Phrase)};
        tables[5] = {row("一", "Control+Enter", CommandType::Shortcut),
                     row("二", "Control+Entre", CommandType::Shortcut), row("三", "", CommandType::Shortcut),
                     row("四", "Alt", CommandType::Shortcut)};
        tables[3] = {row("五", "/there", CommandType::File), row("六", "/gone", CommandType::File)};
        tables[4] = {row("七", "/gone", CommandType::Directory)};
        const auto exists = [](const QString &path, bool) { return path == "/there"_s; };
        const auto faults = [&](CommandType type) {
            QStringList texts;
            const CommandDiagnoses found = diagnoseCommands(tables, type, false, settings, exists);
            for (const CommandDiagnosis &diagnosis : found[std::size_t(type)]) {
                texts.append(describe(diagnosis));
            }
            return texts;
        };
        QCOMPARE(faults(CommandType::Phrase),
                 list({"", "shadowed(百度,www.baidu.com)", "shadowed(百度,www.baidu.com) inert",
                       "mode(打字,) inert", "prefix(命令打开,命令) inert", "", "empty(,) inert"}));
        QCOMPARE(faults(CommandType::Shortcut), list({"", "key(,Entre) inert", "nothing(,) inert", ""}));
        QCOMPARE(faults(CommandType::File), list({"", "missing file(,/gone) inert"}));
        QCOMPARE(faults(CommandType::Directory), list({"missing folder(,/gone) inert"}));
        QCOMPARE(faults(CommandType::Web), list({"", "table(,拼音键盘) inert"}));
        QCOMPARE(faults(CommandType::PinyinKeyboard), list({""}));
        const CommandDiagnoses all = diagnoseCommands(tables, std::nullopt, false, settings, exists);
        QCOMPARE(describe(all[2].at(1)), "table(,拼音键盘) inert"_s);
        QCOMPARE(describe(all[6].at(3)), "mode(打字,) inert"_s);
        QVERIFY(all[1].empty());
    }

    /// What the marks say is compared with the matcher's answer, made by the files themselves.
    void anEarlierRowIsTheOneMatchedFirst_data()
    {
        const Rows<int, int, bool> row; // first, second, saved (the table holds these rows as they are read)
        // Read from its file, row 2 of twelve is the one with the number 10, and is numbered 2 in the merged
        // table, which is met as text: 0, 1, 10, 11, 2.
        row("as read, 2 and 10", 2, 10, true);
        row("as read, 3 and 11", 3, 11, true);
        row("as read, 0 and 5", 0, 5, true);
        row("yet to be saved, 2 and 10", 2, 10, false);
        row("yet to be saved, 4 and 11", 4, 11, false);
    }
    void anEarlierRowIsTheOneMatchedFirst()
    {
        const auto [first, second, saved] = rowOf<int, int, bool>();
        const QTemporaryDir folder;
        const CommandTable files(folder.path());
        CommandRows rows;
        for (int number = 0; number < 12; ++number) {
            rows.push_back(row("w%1"_s.arg(number), QString::number(number), CommandType::Web));
        }
        // The numbers in the file that are read at these places.
        static const int readAt[] = {0, 1, 10, 11, 2, 3, 4, 5, 6, 7, 8, 9};
        for (const int place : {first, second}) {
            rows[std::size_t(saved ? readAt[place] : place)].CommandWords = "同"_s;
        }
        QVERIFY(files.writeTyped(CommandType::Web, rows));
        CommandTables tables;
        tables[2] = saved ? files.readTyped(CommandType::Web) : rows;
        QVERIFY(files.rebuildMerged());
        CommandMatcher matcher(files.mergedPath());
        const CommandRow *acts = matcher.find("同"_s);
        QVERIFY(acts != nullptr);
        const auto diagnoses = diagnoseCommands(tables, CommandType::Web, !saved, {},
                                                [](const QString &, bool) { return true; })[2];
        QStringList unmarked;
        for (const int place : {first, second}) {
            if (diagnoses[std::size_t(place)].faults.empty()) {
                unmarked.append(tables[2][std::size_t(place)].CmdWordContents);
            }
        }
        QCOMPARE(unmarked, QStringList{acts->CmdWordContents});
    }

    void oneFileForAllTables_data()
    {
        const Rows<QString, QString> row; // words, content
        row("plain", "百度", "www.baidu.com");
        row("quotes", "说\"引号\"", "\"a\" 'b' \\\" “c”");
        row("line ends", "诗", "床前明月光，\n疑是地上霜。\r\n举头\r低头\n");
        row("signs of the format", "a;b,c=d", "[1]\n;# = , \\x41 %2F @Variant(1) \\");
        row("blanks", " 前后 ", "\t  x  \t");
        row("emoji", "笑😀脸", "👩‍👩‍👧 🇨🇳 𠮷野家");
        row("other writing", "日本語;한국어", "العربية ไทย é ﻿");
        row("nothing", "", "");
        row("control characters", "x", QString(QChar(0)) + QChar(0x1b) + QChar(0x7f) + QChar(0x2028));
        row("long", "长", QString(100000, QChar(0x957f)));
    }
    void oneFileForAllTables()
    {
        const auto [words, content] = rowOf<QString, QString>();
        CommandTables tables;
        for (const CommandType type : {CommandType::Web, CommandType::Phrase, CommandType::VoiceKeyboard}) {
            tables[std::size_t(type)] = {row("before", "1", type), row(words, content, type),
                                         row("behind", "2", type)};
        }
        tables[6][1].Hide = "1"_s;
        const CommandBundle bundle = readCommandBundle(exportCommands(tables));
        QCOMPARE(bundle.refused, 0);
        const QTemporaryDir folder;
        const CommandTable files(folder.path());
        const CommandImport import = importCommands(files, bundle.tables);
        QCOMPARE(import.added, 9);
        QVERIFY(import.failed.empty());
        for (const std::size_t type : {0U, 2U, 6U}) {
            const CommandRows read = files.readTyped(CommandType(type));
            QCOMPARE(read.size(), std::size_t(3));
            QCOMPARE(read[1].CommandWords, words);
            QCOMPARE(read[1].CmdWordContents, content);
            QCOMPARE(read[2].CommandWords, "behind"_s);
        }
        QCOMPARE(files.readTyped(CommandType::Phrase)[1].Hide, "1"_s);
        const CommandImport again = importCommands(files, bundle.tables);
        QCOMPARE(again.added, 0);
        QCOMPARE(again.known, 9);
    }

    void whatIsNoBundle()
    {
        const CommandBundle odd =
            readCommandBundle("[0]\nCmdWordType=what\nCommandWords=x\n[1]\nCmdWordType=网页\n");
        QCOMPARE(odd.refused, 1);
        QCOMPARE(odd.tables[2].size(), std::size_t(1));
        const CommandBundle nonsense = readCommandBundle(QByteArray("\0\xff[[[", 6));
        QCOMPARE(nonsense.refused, 0);
        for (const CommandRows &table : nonsense.tables) {
            QVERIFY(table.empty());
        }
    }

    /// Unsaved rows neither lose what is imported when they are saved later nor are saved by it.
    void anImportReachesDraftsAndFailsByType()
    {
        const QTemporaryDir folder;
        const CommandTable files(folder.path());
        QVERIFY(files.writeTyped(CommandType::Web, {row("有", "1", CommandType::Web)}));
        QVERIFY(files.writeDraft(CommandType::Web, {row("草", "2", CommandType::Web)}));
        QVERIFY(QDir().mkpath(files.typedPath(CommandType::Phrase))); // nothing can be written there
        CommandTables rows;
        rows[2] = {row("有", "1", CommandType::Web), row("新", "3", CommandType::Web)};
        rows[6] = {row("诗", "4", CommandType::Phrase)};
        rows[3] = {row("文", "/5", CommandType::File)};
        const CommandImport import = importCommands(files, rows);
        QVERIFY(import.failed == std::vector<CommandType>{CommandType::Phrase});
        QCOMPARE(import.added, 2);
        QCOMPARE(import.known, 1);
        const auto words = [](const CommandRows &table) { return textsOf(table, &CommandRow::CommandWords); };
        QCOMPARE(words(files.readTyped(CommandType::Web)), list({"有", "新"}));
        QCOMPARE(words(*files.readDraft(CommandType::Web)), list({"草", "有", "新"}));
        QCOMPARE(words(files.readTyped(CommandType::File)), list({"文"}));
        QVERIFY(!files.readDraft(CommandType::File));
    }

    void draftsAndCopies()
    {
        const QTemporaryDir folder;
        const CommandTable table(folder.path());
        QVERIFY(!table.readDraft(CommandType::Web));
        table.writeDraft(CommandType::Web, {row("草", "x", CommandType::Web)});
        QCOMPARE(table.readDraft(CommandType::Web)->at(0).CommandWords, "草"_s);
        QVERIFY(table.readTyped(CommandType::Web).empty());
        table.writeDraft(CommandType::Web, {}); // an emptied table is a draft too
        QVERIFY(table.readDraft(CommandType::Web));
        table.removeDraft(CommandType::Web);
        QVERIFY(!table.readDraft(CommandType::Web));

        QVERIFY(table.keepCopy(CommandType::Web));
        QVERIFY(table.writeTyped(CommandType::Web, {row("旧", "x", CommandType::Web)}));
        QVERIFY(table.keepCopy(CommandType::Web));
        QVERIFY(table.writeTyped(CommandType::Web, {}));
        QFile copy(table.typedPath(CommandType::Web) + ".bak"_s);
        QVERIFY(copy.open(QFile::ReadOnly));
        QCOMPARE(parseCommandFile(copy.readAll()).rows.at(0).CommandWords, "旧"_s);
        QVERIFY(table.writeTyped(CommandType::Web, {row("二", "x", CommandType::Web)}));
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
        const CommandRows rows{row("新", "x", CommandType::Web)};
        QVERIFY(!table.writeTyped(CommandType::Web, rows));
        QVERIFY(!table.readDraft(CommandType::Web));
        QVERIFY(!table.writeDraft(CommandType::Web, rows));
        QCOMPARE(QFileInfo(path).size(), qint64(largestWholeFile + 1));
    }
};

QTEST_GUILESS_MAIN(tst_command_editing)
#include "tst_command_editing.moc"
