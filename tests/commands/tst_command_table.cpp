#include "base/KeyTable.h"
#include "commands/CommandExecution.h"
#include "commands/CommandFile.h"
#include "commands/CommandMatcher.h"
#include "commands/CommandTable.h"
#include "commands/MergedTable.h"
#include "support/FullDisk.h"
#include "support/Messages.h"
#include "support/Rows.h"

#include <QFile>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <optional>

using mevo::CommandRow;
using mevo::CommandRows;
using mevo::CommandType;

namespace {

CommandRow row(CommandType type, const Utf8Text &words, const Utf8Text &contents = "c")
{
    return {"0"_s, words, mevo::commandTypeLabel(type), contents, QString::number(int(type))};
}

/// All cells of all rows; an absent one is "-".
QString shown(const CommandRows &rows)
{
    QStringList lines;
    for (const CommandRow &r : rows) {
        QStringList cells;
        for (const QString &cell :
             {r.Hide, r.CommandWords, r.CmdWordType, r.CmdWordTypeIndex, r.CmdWordContents}) {
            cells.append(cell.isNull() ? "-"_s : cell);
        }
        lines.append(cells.join(u'|'));
    }
    return lines.join(u'\n');
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

/// The table as any other program with Qt's settings sees it.
CommandRows readByQt(const QString &path)
{
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec(QTextCodec::codecForName("UTF-8"));
    const auto cell = [&settings](const char *key) {
        return settings.contains(QLatin1String(key)) ? settings.value(QLatin1String(key)).toString()
                                                     : QString();
    };
    CommandRows rows;
    for (const QString &group : settings.childGroups()) {
        settings.beginGroup(group);
        rows.push_back({cell("Hide"), cell("CommandWords"), cell("CmdWordType"), cell("CmdWordContents"),
                        cell("CmdWordTypeIndex")});
        settings.endGroup();
    }
    return rows;
}

void writeByQt(const QString &path, const CommandRows &rows)
{
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec(QTextCodec::codecForName("UTF-8"));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::pair<const char *, QString> cells[] = {{"Hide", rows[i].Hide},
                                                          {"CommandWords", rows[i].CommandWords},
                                                          {"CmdWordType", rows[i].CmdWordType},
                                                          {"CmdWordTypeIndex", rows[i].CmdWordTypeIndex},
                                                          {"CmdWordContents", rows[i].CmdWordContents}};
        settings.beginGroup(QString::number(i));
        for (const auto &[key, value] : cells) {
            if (!value.isNull()) {
                settings.setValue(QLatin1String(key), value);
            }
        }
        settings.endGroup();
    }
}

QString randomText(QRandomGenerator &random, bool withEmoji)
{
    static const QStringList pieces =
        QString::fromUtf8("好 é ; , = \" \\ @ @@ # [ ] % 1 a f F x z \\n \\x41 ' ?").split(u' ')
        << " "_s
        << "\t"_s
        << "\n"_s << QString(QChar(0)) << QString(QChar(1)) << QString(QChar(0x7f)) << QString::fromUtf8("😀");
    QString text = QLatin1String("");
    for (int left = random.bounded(8); left > 0; --left) {
        text += pieces[random.bounded(pieces.size() - (withEmoji ? 0 : 1))];
    }
    return text;
}

} // namespace

class TestCommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_messages.emplace(); }
    void cleanup() { m_messages.reset(); }

    /// Files go to and fro between this program and whatever else uses Qt's settings.
    void theFormatIsThatOfQtSettings()
    {
        const QTemporaryDir folder;
        QRandomGenerator random(20260101);
        for (int round = 0; round < 200; ++round) {
            CommandRows rows;
            for (int i = 0; i < 13; ++i) {
                rows.push_back(row(CommandType(random.bounded(7)), randomText(random, round % 2 == 1),
                                   randomText(random, round % 2 == 1)));
            }
            const QString path = folder.filePath("%1.ini"_s.arg(round));
            const QByteArray text = mevo::commandFileText(rows);
            if (round % 2 == 0) { // with a codec Qt itself loses an emoji
                writeByQt(path, rows);
                QCOMPARE(text, contentOf(path));
            }
            const QString copy = path + ".copy"_s; // Qt remembers what it wrote itself
            write(copy, text);
            const CommandRows read = mevo::parseCommandFile(text).rows;
            QCOMPARE(shown(read), shown(readByQt(copy)));
            QCOMPARE(read[0].CommandWords, rows[0].CommandWords);
            QCOMPARE(read[4].CmdWordContents, rows[12].CmdWordContents); // "0", "1", "10", "11", "12", "2"
        }
    }

    void oddRowsAreNamedAndHarmNoOther_data()
    {
        // lines (of row 1, between two good rows), cells, fault (empty for a row that is not odd)
        const Rows<QByteArray, QString, QString> row;
        const QByteArray good = "Hide=0\nCmdWordType=网页\nCmdWordTypeIndex=2\nCmdWordContents=a\n";
        const auto words = [](const char *text) { return "0|%1|网页|2|a"_s.arg(QString::fromUtf8(text)); };
        row("typed by hand, no quotes", good + "CommandWords = 复制;copy, now  ; a remark \r\n",
            words("复制;copy, now"), "");
        row("quotes and a remark", good + "CommandWords=\"a;b \" ; remark", words("a;b "), "");
        row("the later of two keys", good + "CommandWords=a\nCommandWords=b", words("b"), "");
        row("no words", good, words("-"), "row 1: no CommandWords");
        row("nothing at all", "", "-|-|-|-|-"_s, "no CmdWordContents");
        row("keys of an inner group", "[1/0]\n" + good, "-|-|-|-|-"_s, "no CommandWords");
        row("unknown number", "CommandWords=a\nCmdWordTypeIndex=07", "-|a|-|07|-"_s,
            "no type has the number \"07\"");
        row("label and number disagree", good + "CommandWords=a\nCmdWordTypeIndex=3", "0|a|网页|3|a"_s,
            "\"网页\" is not the type of that number");
        row("open quote", good + "CommandWords=\"a;b", words("a;b"), "an open quote in CommandWords");
        row("broken encoding", good + "CommandWords=a\xff;b", words("a\uFFFD;b"),
            "CommandWords is not UTF-8");
        row("a line without a value", good + "CommandWords=a\nnonsense", words("a"), "a line without");
        row("a word that nobody says", good + "CommandWords=a;" + QByteArray(1001, 'x'),
            words(("a;" + QByteArray(1001, 'x')).constData()), "a word of 1001 characters");
    }

    void oddRowsAreNamedAndHarmNoOther()
    {
        const auto [lines, cells, fault] = rowOf<QByteArray, QString, QString>();
        const QByteArray other = "\nHide=0\nCommandWords=\"甲;乙\"\nCmdWordType=网页\nCmdWordTypeIndex=2\n"
                                 "CmdWordContents=x\n";
        const auto file =
            mevo::parseCommandFile("\xEF\xBB\xBFstray=1\n[0]" + other + "[1]\n" + lines + "\n[2]" + other);
        QCOMPARE(file.rows.size(), std::size_t(3));
        QCOMPARE(shown({file.rows[1]}), cells);
        QCOMPARE(shown({file.rows[0]}), "0|甲;乙|网页|2|x"_s);
        QCOMPARE(shown({file.rows[2]}), shown({file.rows[0]}));
        QVERIFY2(fault.isEmpty() ? file.faults.isEmpty()
                                 : file.faults.size() == 1 && file.faults[0].contains(fault),
                 qPrintable(file.faults.join(u'/')));
    }

    void aFileThatIsNoTableIsNamed()
    {
        const auto file = mevo::parseCommandFile(QByteArray("\xff\xfe[\0"
                                                            "0\0]\0\n\0",
                                                            10));
        QVERIFY(file.rows.empty() && file.faults.size() == 1);
        QVERIFY(mevo::parseCommandFile("\n ").faults.isEmpty());
        const auto nonsense = mevo::parseCommandFile("[0]\n" + QByteArray("\x01\n").repeated(100000));
        QVERIFY(nonsense.faults.size() == 1 && nonsense.faults[0].size() < 300);
    }

    void theEditorsCellsAreWritten()
    {
        const CommandRows rows{{"1"_s, "a"_s, "快捷键"_s, QString(), "2"_s},
                               {QString(), "b"_s, "别的"_s, QLatin1String(""), "2"_s}};
        QCOMPARE(mevo::commandFileText(rows),
                 QByteArray("[0]\nCmdWordType=快捷键\nCmdWordTypeIndex=5\n"
                            "CommandWords=a\nHide=1\n\n"
                            "[1]\nCmdWordContents=\nCmdWordType=别的\nCommandWords=b\n"));
    }

    void theMergedTableIsMadeInTheOrderOfTheTypes()
    {
        const QTemporaryDir folder;
        const mevo::CommandTable table(folder.path());
        CommandRows many;
        for (int i = 0; i < 12; ++i) {
            many.push_back(row(CommandType::Phrase, QString::number(i)));
        }
        QVERIFY(table.writeTyped(CommandType::Phrase, many));
        QVERIFY(table.writeTyped(CommandType::Web, {row(CommandType::Web, "w")}));
        QVERIFY(table.writeTyped(CommandType::VoiceKeyboard, {row(CommandType::VoiceKeyboard, "k")}));
        QVERIFY(table.rebuildMerged());
        const auto words = [](const CommandRows &rows) {
            return textsOf(rows, &CommandRow::CommandWords).join(u' ');
        };
        // The phrases are sorted as text when their file is read, and all rows once more when the merged is.
        QCOMPARE(words(table.readMerged()), "k w 6 7 8 9 0 1 10 11 2 3 4 5"_s);
        QCOMPARE(words(table.readMerged(CommandType::Web)), "w"_s);
        QCOMPARE(words(table.readTyped(CommandType::Phrase)), "0 1 10 11 2 3 4 5 6 7 8 9"_s);
        // What was saved in the merged file alone goes at the next rebuild.
        QVERIFY(table.writeMerged({row(CommandType::Web, "elsewhere")}));
        QVERIFY(table.rebuildMerged());
        QVERIFY(table.readMerged().size() == 14);
        QVERIFY(table.writeTyped(CommandType::Web, {}) && QFile::exists(table.typedPath(CommandType::Web)));
        QVERIFY(table.readTyped(CommandType::Web).empty() && table.readTyped(CommandType::File).empty());
        QVERIFY(Messages::warnings.isEmpty());
    }

    /// What replaces a table behind the editor's back.
    void theMergedTableFollowsReplacedOnes_data()
    {
        // replaced (names of the tables: w the web pages, m the merged one), noted, behind
        const Rows<QString, bool, bool> row;
        row("nothing", "", true, false);
        row("a typed table", "w", true, true);
        row("the merged one, saved as a whole", "m", true, false);
        row("both: rows of its own stay", "mw", true, false);
        row("a typed table, nothing noted", "w", false, false);
    }
    void theMergedTableFollowsReplacedOnes()
    {
        const auto [replaced, noted, behind] = rowOf<QString, bool, bool>();
        const QTemporaryDir folder;
        const mevo::CommandTable table(folder.path());
        for (const CommandType type : mevo::allCommandTypes) {
            QVERIFY(table.writeTyped(type, {row(type, "as made")}));
        }
        QVERIFY(table.rebuildMerged() && !mevo::isMergedTableBehind(table));
        const QString note = folder.filePath("MEVOCommandTables.json"_s);
        if (!noted) {
            QVERIFY(QFile::remove(note));
        }
        if (replaced.contains(u'w')) {
            QVERIFY(table.writeTyped(CommandType::Web, {row(CommandType::Web, "newer")}));
        }
        if (replaced.contains(u'm')) {
            QVERIFY(table.writeMerged({row(CommandType::Web, "the user's")}));
        }
        QCOMPARE(mevo::isMergedTableBehind(table), behind);
        QVERIFY(table.rebuildMerged() && !mevo::isMergedTableBehind(table));
        QVERIFY(QFile::remove(table.typedPath(CommandType::Web)));
        QVERIFY(!mevo::isMergedTableBehind(table)); // a lost table must not take its rows along
    }

    /// Tables that came with the program, or all at once with a newer one, are known as such.
    void tablesThatBelongTogetherAreNoted()
    {
        const QTemporaryDir folder;
        const mevo::CommandTable table(folder.path());
        for (const char *version : {"one", "two"}) {
            CommandRows all;
            for (const CommandType type : mevo::allCommandTypes) {
                all.push_back(row(type, version));
                QVERIFY(table.writeTyped(type, {all.back()}));
            }
            QVERIFY(table.writeMerged(all));
            QVERIFY(!mevo::isMergedTableBehind(table));
        }
        QVERIFY(table.writeTyped(CommandType::Phrase, {row(CommandType::Phrase, "three")}));
        QVERIFY(mevo::isMergedTableBehind(table));
    }

    void aDiskThatRefusesLeavesTheOldTable()
    {
        const QTemporaryDir folder;
        const mevo::CommandTable table(folder.path());
        QVERIFY(table.writeMerged({row(CommandType::Web, "old")}));
        const QByteArray before = contentOf(table.mergedPath());
        {
            const FullDisk full(4096);
            QVERIFY(!table.writeMerged({row(CommandType::Phrase, "new"_s, QString(100000, u'x'))}));
        }
        QCOMPARE(contentOf(table.mergedPath()), before);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
        QCOMPARE(Messages::warnings.size(), 1);
    }

    void aWordIsMatched_data()
    {
        const Rows<QString, QString> row; // word, contents (of the row, "none" for none)
        row("a form", "百度搜索", "a");
        row("the other form", "打开百度", "a");
        row("with a blank", "打开百度 ", "none");
        row("a part", "百度", "none");
        row("case counts", "Copy", "none");
        row("a blank beside the semicolon belongs to the word", " 副本", "b");
        row("hidden row", "隐藏", "h");
        row("first definition, in the order of text: 10 before 2", "十", "ten");
        row("a keyboard row neither acts nor stops", "键", "seven");
        row("a row of no type neither", "无", "none");
        row("nothing is the form behind a trailing semicolon", "", "b");
    }

    void aWordIsMatched()
    {
        const auto [word, contents] = rowOf<QString, QString>();
        QTemporaryDir folder;
        const mevo::CommandTable table(folder.path());
        CommandRows rows(12, row(CommandType::Web, "-"));
        rows[0] = row(CommandType::Web, "打开百度;百度搜索", "a");
        rows[1] = row(CommandType::Shortcut, "copy; 副本;", "b");
        rows[2] = row(CommandType::File, "十;", "two");
        rows[3] = row(CommandType::File, "隐藏", "h");
        rows[3].Hide = "1"_s;
        rows[4] = row(CommandType::PinyinKeyboard, "键", "four");
        rows[5] = row(CommandType::VoiceKeyboard, "键;十", "five");
        rows[6] = row(CommandType::Web, "无");
        rows[6].CmdWordType = "别的"_s;
        rows[7] = row(CommandType::Phrase, "键", "seven");
        rows[10] = row(CommandType::Directory, "十", "ten");
        QVERIFY(table.writeMerged(rows));
        mevo::CommandMatcher matcher(table.mergedPath());
        const CommandRow *found = matcher.find(word);
        QCOMPARE(found == nullptr ? "none"_s : found->CmdWordContents, contents);
    }

    /// Whatever is done to the file, the next word sees it.
    void anEditIsSeenAtTheNextWord()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("t.ini"_s);
        const QString other = folder.filePath("other.ini"_s);
        const auto table = [](const char *word) {
            return mevo::commandFileText({row(CommandType::Web, QString::fromUtf8(word))});
        };
        const auto setBack = [](const QString &file) {
            QFile aged(file);
            QVERIFY(aged.open(QIODevice::ReadWrite));
            aged.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000), QFileDevice::FileModificationTime);
        };
        mevo::CommandMatcher matcher(path);
        const auto knows = [&matcher](const char *word) {
            return matcher.find(QString::fromUtf8(word)) != nullptr;
        };
        QVERIFY(!knows("a"));
        write(path, table("a"));
        QVERIFY(knows("a"));
        for (const char *word : {"b", "c", "d"}) { // faster than the file system's clock counts
            write(path, table(word));
            QVERIFY(knows(word) && !knows("a"));
        }
        setBack(path);
        // No longer fresh: its times are believed from here on.
        QTRY_VERIFY(QFileInfo(path).metadataChangeTime().msecsTo(QDateTime::currentDateTime()) > 200);
        QVERIFY(knows("d"));
        write(path, table("e")); // same size and, set back, the same time
        setBack(path);
        QVERIFY(knows("e") && !knows("d"));
        write(other, table("f"));
        setBack(other);
        QVERIFY(QFile::remove(path) && QFile::rename(other, path));
        QVERIFY(knows("f") && !knows("e"));
        QVERIFY(QFile::remove(path));
        QVERIFY(!knows("f"));
        QVERIFY(QDir().mkdir(path)); // no file at all
        QVERIFY(!knows("f"));
        QVERIFY(QDir().rmdir(path));
        write(path, table("g"));
        QVERIFY(knows("g"));
    }

    void oddRowsAreNamedOncePerChange()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("t.ini"_s);
        QByteArray text = "[0]\nCommandWords=a\nCmdWordTypeIndex=2\nCmdWordType=网页\nCmdWordContents=b\n";
        for (int i = 1; i < 20; ++i) {
            text += "[" + QByteArray::number(i) + "]\nHide=0\n";
        }
        write(path, text);
        mevo::CommandMatcher matcher(path);
        for (int i = 0; i < 5; ++i) {
            QVERIFY(matcher.find("a"_s) != nullptr);
        }
        QCOMPARE(Messages::warnings.size(), 1);
        QVERIFY2(Messages::warnings[0].contains("row 1: no CmdWordContents"_s) &&
                     Messages::warnings[0].contains("and 14 more"_s),
                 qPrintable(Messages::warnings[0]));
        write(path, text + "\n");
        matcher.find(QString());
        QCOMPARE(Messages::warnings.size(), 2);
    }

    void theShippedTablesAreWhole()
    {
        const mevo::CommandTable shipped(QStringLiteral(MEVO_RESOURCES "/commands"));
        const QTemporaryDir folder;
        const mevo::CommandTable copy(folder.path());
        for (const CommandType type : mevo::allCommandTypes) {
            QVERIFY(QFile::copy(shipped.typedPath(type), copy.typedPath(type)));
            const CommandRows rows = copy.readTyped(type);
            QVERIFY(!rows.empty());
            for (const CommandRow &r : rows) {
                QCOMPARE(mevo::commandTypeOfIndex(r.CmdWordTypeIndex), std::optional<CommandType>(type));
            }
        }
        QVERIFY(copy.rebuildMerged());
        QCOMPARE(contentOf(copy.mergedPath()), contentOf(shipped.mergedPath()));

        QFile keyFile(QStringLiteral(MEVO_RESOURCES "/MEVKeysSetting.ini"));
        QVERIFY(keyFile.open(QIODevice::ReadOnly));
        const mevo::KeyTable keys = mevo::parseKeyTable(keyFile.readAll());
        QSet<QString> words;
        for (const CommandRow &r : shipped.readMerged()) {
            const CommandType type = *mevo::commandTypeOfIndex(r.CmdWordTypeIndex);
            if (type < CommandType::Web) {
                continue;
            }
            for (const QString &word : r.CommandWords.split(u';')) {
                QVERIFY2(!word.isEmpty() && !words.contains(word), qPrintable(r.CommandWords));
                words.insert(word);
            }
            switch (type) {
            case CommandType::Web:
                QVERIFY(mevo::webAddress(r.CmdWordContents).isValid());
                break;
            case CommandType::Shortcut:
                mevo::parseShortcut(r.CmdWordContents, keys.names, keys.codes);
                break;
            case CommandType::Phrase:
                break;
            default:
                QVERIFY2(r.CmdWordContents.startsWith(u'/'), qPrintable(r.CmdWordContents));
            }
        }
        QVERIFY2(Messages::warnings.isEmpty(),
                 qPrintable(Messages::warnings.join(u'\n'))); // no odd row, no unknown key
    }

private:
    std::optional<Messages> m_messages;
};

QTEST_GUILESS_MAIN(TestCommandTable)
#include "tst_command_table.moc"
