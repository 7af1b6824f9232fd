// What the editor of the command words decides: forms, shortcuts, searches, faults of rows, one file for all.

#include "base/WholeFile.h"
#include "commands/CommandBundle.h"
#include "commands/CommandFaults.h"
#include "commands/CommandFile.h"
#include "commands/CommandForm.h"
#include "commands/CommandMatcher.h"
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
        QCOMPARE(searchCommandWords(rows, ""_s).size(), rows.size()); // it stands in every form
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
        tables[2] = {row("百度"_s, "www.baidu.com"_s, CommandType::Web),
                     row("五"_s, "wu"_s, CommandType::PinyinKeyboard)};  // strayed; shadows nothing
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
            const CommandDiagnoses found = diagnoseCommands(tables, type, false, settings, exists);
            for (const CommandDiagnosis &diagnosis : found[std::size_t(type)]) {
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
        QCOMPARE(faults(CommandType::Web), (QStringList{""_s, "table(,拼音键盘) inert"_s}));
        QCOMPARE(faults(CommandType::PinyinKeyboard), (QStringList{""_s}));
        const CommandDiagnoses all = diagnoseCommands(tables, std::nullopt, false, settings, exists);
        QCOMPARE(describe(all[2].at(1)), "table(,拼音键盘) inert"_s);
        QCOMPARE(describe(all[6].at(3)), "mode(打字,) inert"_s);
        QVERIFY(all[1].empty());
    }

    /// What the marks say is compared with the matcher's answer, made by the files themselves.
    void anEarlierRowIsTheOneMatchedFirst_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::addColumn<bool>("saved"); ///< the table holds these rows as they are read
        // Read from its file, row 2 of twelve is the one with the number 10, and is numbered 2 in the merged
        // table, which is met as text: 0, 1, 10, 11, 2.
        QTest::newRow("as read, 2 and 10") << 2 << 10 << true;
        QTest::newRow("as read, 3 and 11") << 3 << 11 << true;
        QTest::newRow("as read, 0 and 5") << 0 << 5 << true;
        QTest::newRow("yet to be saved, 2 and 10") << 2 << 10 << false;
        QTest::newRow("yet to be saved, 4 and 11") << 4 << 11 << false;
    }
    void anEarlierRowIsTheOneMatchedFirst()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        QFETCH(bool, saved);
        const QTemporaryDir folder;
        const CommandTable files(folder.path());
        CommandRows rows;
        for (int number = 0; number < 12; ++number) {
            rows.push_back(row("w%1"_s.arg(number), QString::number(number), CommandType::Web));
        }
        const auto share = [&](CommandRows &table) {
            for (const int number : {first, second}) {
                table[std::size_t(number)].CommandWords = "同"_s;
            }
        };
        CommandTables tables;
        if (saved) {
            // The numbers in the file that are read at these places.
            static const int readAt[] = {0, 1, 10, 11, 2, 3, 4, 5, 6, 7, 8, 9};
            for (const int place : {first, second}) {
                rows[std::size_t(readAt[place])].CommandWords = "同"_s;
            }
            QVERIFY(files.writeTyped(CommandType::Web, rows));
            tables[2] = files.readTyped(CommandType::Web);
        } else {
            share(rows);
            tables[2] = rows;
            QVERIFY(files.writeTyped(CommandType::Web, rows));
        }
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
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("content");
        QTest::newRow("plain") << "百度"_s
                               << "www.baidu.com"_s;
        QTest::newRow("quotes") << "说\"引号\""_s
                                << "\"a\" 'b' \\\" “c”"_s;
        QTest::newRow("line ends") << "诗"_s
                                   << "床前明月光，\n疑是地上霜。\r\n举头\r低头\n"_s;
        QTest::newRow("signs of the format") << "a;b,c=d"_s
                                             << "[1]\n;# = , \\x41 %2F @Variant(1) \\"_s;
        QTest::newRow("blanks") << " 前后 "_s
                                << "\t  x  \t"_s;
        QTest::newRow("emoji") << "笑😀脸"_s
                               << "👩‍👩‍👧 🇨🇳 𠮷野家"_s;
        QTest::newRow("other writing") << "日本語;한국어"_s
                                       << "العربية ไทย é ﻿"_s;
        QTest::newRow("nothing") << ""_s
                                 << ""_s;
        QTest::newRow("control characters")
            << "x"_s << QString(QChar(0)) + QChar(0x1b) + QChar(0x7f) + QChar(0x2028);
        QTest::newRow("long") << "长"_s << QString(100000, QChar(0x957f));
    }
    void oneFileForAllTables()
    {
        QFETCH(QString, words);
        QFETCH(QString, content);
        CommandTables tables;
        for (const CommandType type : {CommandType::Web, CommandType::Phrase, CommandType::VoiceKeyboard}) {
            tables[std::size_t(type)] = {row("before"_s, "1"_s, type), row(words, content, type),
                                         row("behind"_s, "2"_s, type)};
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
        QVERIFY(files.writeTyped(CommandType::Web, {row("有"_s, "1"_s, CommandType::Web)}));
        QVERIFY(files.writeDraft(CommandType::Web, {row("草"_s, "2"_s, CommandType::Web)}));
        QVERIFY(QDir().mkpath(files.typedPath(CommandType::Phrase))); // nothing can be written there
        CommandTables rows;
        rows[2] = {row("有"_s, "1"_s, CommandType::Web), row("新"_s, "3"_s, CommandType::Web)};
        rows[6] = {row("诗"_s, "4"_s, CommandType::Phrase)};
        rows[3] = {row("文"_s, "/5"_s, CommandType::File)};
        const CommandImport import = importCommands(files, rows);
        QVERIFY(import.failed == std::vector<CommandType>{CommandType::Phrase});
        QCOMPARE(import.added, 2);
        QCOMPARE(import.known, 1);
        const auto words = [](const CommandRows &table) {
            QStringList all;
            for (const CommandRow &each : table) {
                all.append(each.CommandWords);
            }
            return all;
        };
        QCOMPARE(words(files.readTyped(CommandType::Web)), (QStringList{"有"_s, "新"_s}));
        QCOMPARE(words(*files.readDraft(CommandType::Web)), (QStringList{"草"_s, "有"_s, "新"_s}));
        QCOMPARE(words(files.readTyped(CommandType::File)), QStringList{"文"_s});
        QVERIFY(!files.readDraft(CommandType::File));
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
