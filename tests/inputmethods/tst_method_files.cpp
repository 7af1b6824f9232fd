#include "inputmethods/EntryPrograms.h"
#include "inputmethods/MethodSearch.h"
#include "inputmethods/SpeechInputIni.h"
#include "inputmethods/XunFeiIme.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::XunFeiConfigured;

namespace {

class NoRegistry : public mevo::Registry
{
public:
    std::optional<QString> value(const QString &path, const QString &name) const override
    {
        const auto found = values.constFind(path + '|' + name);
        return found == values.constEnd() ? std::nullopt : std::optional<QString>(*found);
    }
    QHash<QString, QString> values;
};

void write(const QString &path, const QByteArray &content, QFile::Permissions permissions = {})
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    if (permissions != QFile::Permissions()) {
        file.setPermissions(permissions);
    }
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr auto program = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto readWrite = QFile::ReadOwner | QFile::WriteOwner;
constexpr auto readOnly = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;

bool isWritable(const QString &path)
{
    return (QFile::permissions(path) & QFile::WriteOwner) != 0;
}

} // namespace

/// Input methods' own files and programs, in a folder of the test.
class TestMethodFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void places()
    {
        QCOMPARE(mevo::xunFeiFolder("/h/.local/share", false),
                 QString("/h/.local/localLow/iFly Info Tek/iFlyIME/"));
        QCOMPARE(mevo::xunFeiFolder("/u/s/app", true), QString("/u/localLow/iFly Info Tek/iFlyIME/"));
        QCOMPARE(mevo::speechInputIniPath("/u/app", false),
                 QString("/u/localLow/Baidu/BaiduPinyin/SpeechInput.ini"));
        QCOMPARE(mevo::speechInputIniPath("/u/s/app", true),
                 QString("/u/localLow/Baidu/BaiduPinyin/SpeechInput.ini"));
    }

    void installedVersion_data()
    {
        // xml, expected (folder and generation; empty when it cannot be read)
        const Rows<QByteArray, QString> row;
        row("third", "<c><installPath_ver2>C:\\x y</installPath_ver2><ver>3.0.1727</ver></c>", "C:\\x y 3");
        row("version first", "<c><ver> 2.1 </ver><installPath_ver2>/o</installPath_ver2></c>", "/o 2");
        row("no version", "<c><installPath_ver2>/o</installPath_ver2></c>", "/o 0");
        row("a version that is none", "<c><ver>v3</ver></c>", " 0");
        row("an empty one", "<c><ver/></c>", " 0");
        row("not a child of the root", "<c><d><ver>3</ver></d></c>", " 0");
        row("cut off", "<c><ver>3</ver>", "");
        row("no XML", "[ver]\nver=3", "");
        row("empty", "", "");
        row("entities without end",
            "<!DOCTYPE c [<!ENTITY a \"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\"><!ENTITY b "
            "\"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY d "
            "\"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY e "
            "\"&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;\">]><c><ver>&e;</ver></c>",
            "");
    }
    void installedVersion()
    {
        const auto [xml, expected] = rowOf<QByteArray, QString>();
        const auto found = mevo::parseIflyImeCfg(xml);
        QCOMPARE(found ? found->folder + ' ' + QString::number(found->generation) : QString(), expected);
    }

    void offlineMode_data()
    {
        const Rows<QByteArray, int> row; // xml, expected (-1 when it is not told)
        row("offline", QByteArray("<c><a><offline_recognizer_mode>2</offline_recognizer_mode></a></c>"), 1);
        row("online", QByteArray("<c><offline_recognizer_mode>1</offline_recognizer_mode></c>"), 0);
        row("not there", QByteArray("<c/>"), -1);
        row("broken", QByteArray("<c><offline_recognizer_mode>2"), -1);
    }
    void offlineMode()
    {
        const auto [xml, expected] = rowOf<QByteArray, int>();
        const auto mode = mevo::xunFeiOfflineMode(xml);
        QCOMPARE(mode ? int(*mode) : -1, expected);
    }

    void keyTexts_data()
    {
        const Rows<QString, int> row; // text, usage
        row("F1", "enable=1;keyStr=F1", 0x3a);
        row("F2", "enable=1;keyStr=F2", 0x3b);
        row("F6", "enable=1;keyStr=F6", 0x3f);
        row("F9", "enable=1;keyStr=F9", 0x42);
        row("F10", "enable=1;keyStr=F10", 0x43);
        row("F11", "enable=1;keyStr=F11;", 0x44);
        row("F12", "enable=1;keyStr=F12;more=F1", 0x45);
        row("with a modifier", "enable=1;keyStr=Ctrl+F7", 0x40);
        row("with two", "enable=1;keyStr=Ctrl+Alt+F10", 0x43);
        row("a letter", "enable=1;keyStr=Ctrl+A", 0);
        row("none", "enable=1;keyStr=", 0);
        row("another part", "enable=F6", 0);
    }
    void keyTexts()
    {
        const auto [text, usage] = rowOf<QString, int>();
        QCOMPARE(mevo::usageOfKeyText(text), usage);
    }

    void hotKey_data()
    {
        // before (null for no file), permissions, mayChange, result, usage, after (null when it stays),
        // writable
        const Rows<QByteArray, int, bool, XunFeiConfigured, int, QByteArray, bool> row;
        const QByteArray off = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<config>\n <name>讯飞</name>"
                               "<keys><start_end>enable=0;keyStr=F3</start_end></keys>\n</config>\n";
        const QByteArray set = "<?xml version='1.0' encoding='UTF-8'?>\n<config>\n    <name>讯飞</name>\n"
                               "    <keys>\n        <start_end>enable=1;keyStr=F6</start_end>\n    </keys>\n"
                               "</config>\n";
        const QByteArray f10 = "<c><start_end>enable=1;keyStr=F10</start_end></c>";
        const QByteArray empty = "<c><start_end/></c>";
        const int rw = int(readWrite);
        const int ro = int(readOnly);
        row("switched off", off, rw, true, XunFeiConfigured::Changed, 0x3f, set, false);
        row("read-only", off, ro, true, XunFeiConfigured::Changed, 0x3f, set, false);
        row("made read-only by us", off, int(QFile::ReadOwner), true, XunFeiConfigured::Changed, 0x3f, set,
            false);
        row("empty", empty, rw, true, XunFeiConfigured::Changed, 0x3f,
            QByteArray("<c>\n    <start_end>enable=1;keyStr=F6</start_end>\n</c>\n"), false);
        row("a key of its own", f10, rw, true, XunFeiConfigured::AsItStands, 0x43, QByteArray(), true);
        row("a key of its own, read-only", f10, ro, true, XunFeiConfigured::AsItStands, 0x43, QByteArray(),
            false);
        row("not permitted", off, rw, false, XunFeiConfigured::AsItStands, 0, QByteArray(), true);
        row("not permitted, read-only", f10, ro, false, XunFeiConfigured::AsItStands, 0x43, QByteArray(),
            false);
        row("no such element", QByteArray("<c><start>1</start></c>"), rw, true, XunFeiConfigured::Impossible,
            0, QByteArray(), true);
        row("cut off", off.chopped(12), rw, true, XunFeiConfigured::Impossible, 0, QByteArray(), true);
        row("cut off, read-only", off.chopped(12), ro, true, XunFeiConfigured::Impossible, 0, QByteArray(),
            false);
        row("binary", QByteArray("\x00\xff\x01<", 4), rw, true, XunFeiConfigured::Impossible, 0, QByteArray(),
            true);
        row("no content", QByteArray(""), rw, true, XunFeiConfigured::Impossible, 0, QByteArray(), true);
        row("no file", QByteArray(), rw, true, XunFeiConfigured::Impossible, 0, QByteArray(), false);
    }
    void hotKey()
    {
        const auto [before, permissions, mayChange, result, usage, after, writable] =
            rowOf<QByteArray, int, bool, XunFeiConfigured, int, QByteArray, bool>();
        const QTemporaryDir folder;
        const QString path = folder.filePath("config.xml");
        if (!before.isNull()) {
            write(path, before, QFile::Permissions(permissions));
        }
        const mevo::XunFeiConfiguration configured = mevo::configureXunFeiFile(path, mayChange);
        QVERIFY(configured.result == result);
        QCOMPARE(configured.usage, usage);
        QCOMPARE(read(path), after.isNull() ? before : after);
        QCOMPARE(isWritable(path), writable);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), before.isNull() ? 0 : 1);
        if (result == XunFeiConfigured::Changed) {
            QVERIFY(mevo::configureXunFeiFile(path, true).result == XunFeiConfigured::AsItStands);
        }
    }

    void otherConfiguration_data()
    {
        const Rows<QByteArray, bool, bool> row; // source (null for none), there, done
        row("exchanged", QByteArray("<c>new</c>"), true, true);
        row("none yet", QByteArray("<c>new</c>"), false, true);
        row("nothing prepared", QByteArray(), true, false);
        row("broken", QByteArray("<c>"), true, false);
    }
    void otherConfiguration()
    {
        const auto [source, there, done] = rowOf<QByteArray, bool, bool>();
        const QTemporaryDir folder;
        const QString path = folder.filePath("config.xml");
        if (there) {
            write(path, "<c>old</c>", QFile::ReadOwner);
        }
        if (!source.isNull()) {
            write(folder.filePath("new.xml"), source);
        }
        QCOMPARE(mevo::replaceXunFeiConfig(folder.filePath("new.xml"), path).isEmpty(), done);
        QCOMPARE(read(path), done ? source : QByteArray("<c>old</c>"));
        QCOMPARE(isWritable(path), !there);
        QVERIFY(!mevo::replaceXunFeiConfig(folder.filePath("new.xml"), folder.filePath("no/config.xml"))
                     .isEmpty());
        QVERIFY(!QFileInfo::exists(folder.filePath("no")));
    }

    void baidu_data()
    {
        // before (null for no file), done, after (null when it stays)
        const Rows<QByteArray, bool, QByteArray> row;
        const QByteArray whole = "[Setting]\nHotKey=17\nLastPage=0\nLaunchTime=1\n";
        row("no file", QByteArray(), true, whole);
        row("as it should be", whole, true, QByteArray());
        row("another key, others' lines",
            QByteArray("; mine\r\n[Other]\r\nHotKey=3\r\n[Setting]\r\nSkin=\xc4\xe3\r\nHotKey=18\r\n"), true,
            QByteArray("; mine\r\n[Other]\r\nHotKey=3\r\n[Setting]\r\nSkin=\xc4\xe3\r\nHotKey=17\r\n"
                       "LastPage=0\r\nLaunchTime=1\r\n"));
        row("UTF-16", QByteArray("\xff\xfe[\0S\0", 6), false, QByteArray());
    }
    void baidu()
    {
        const auto [before, done, after] = rowOf<QByteArray, bool, QByteArray>();
        const QTemporaryDir folder;
        const QString path = folder.filePath("Baidu/BaiduPinyin/SpeechInput.ini");
        if (!before.isNull()) {
            write(path, before);
        }
        QCOMPARE(mevo::configureSpeechInput(path), done);
        QCOMPARE(read(path), after.isNull() ? before : after);
    }

    void search_data()
    {
        // files, registry, own, found (below the folder of the test)
        const Rows<QStringList, QString, QString, QString> row;
        const QString path = "opt/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe";
        row("nowhere", QStringList{"bin/other"}, "", "", "");
        row("registry first", QStringList{"reg/iFlyVoice.exe", "own/iFlyVoice.exe", path, "bin/iFlyVoice"},
            "reg", "own/iFlyVoice.exe", "reg/iFlyVoice.exe");
        row("below the registry's folder", QStringList{"reg/iFlyIME/2.1.1708/iFlyVoice.exe"}, "reg", "",
            "reg/iFlyIME/2.1.1708/iFlyVoice.exe");
        row("then the own path", QStringList{"own/voice", path}, "reg", "own/voice", "own/voice");
        row("the own folder", QStringList{"own/iFlyVoice"}, "", "own", "own/iFlyVoice");
        row("the own path is gone", QStringList{path, "bin/iFlyVoice"}, "", "own/iFlyVoice.exe", path);
        row("without the suffix", QStringList{path.chopped(4)}, "", "", path.chopped(4));
        row("a command", QStringList{"bin/iFlyVoice"}, "", "", "bin/iFlyVoice");
        row("a desktop entry", QStringList{"apps/x.desktop", "else/where/iFlyVoice"}, "", "",
            "else/where/iFlyVoice");
        row("a desktop entry of what is gone", QStringList{"apps/x.desktop"}, "", "", "");
        row("no program", QStringList{"bin/iFlyVoice.txt", "-bin/iFlyVoice"}, "", "", "");
        row("a folder of that name", QStringList{"bin/iFlyVoice/x"}, "", "", "");
    }
    void search()
    {
        const auto [files, registry, own, found] = rowOf<QStringList, QString, QString, QString>();
        const QTemporaryDir folder;
        const mevo::Asr3Row row = mevo::builtInAsr3Row(1, false);
        for (const QString &file : files) {
            if (file.endsWith(".desktop")) {
                write(folder.filePath("apps/0.desktop"),
                      "[Desktop Entry]\nType=Application\nExec=iFlyVoice\n");
                write(folder.filePath(file), "[Desktop Entry]\nType=Application\nExec=\"" +
                                                 folder.filePath("else/where/iFlyVoice").toUtf8() +
                                                 "\" %U\n");
            } else if (file.startsWith('-')) {
                write(folder.filePath(file.mid(1)), "text", readWrite);
            } else {
                write(folder.filePath(file), "#!/bin/sh\n", program);
            }
        }
        NoRegistry entries;
        if (!registry.isEmpty()) {
            entries.values.insert(row.ASR3RegInstallPath + '|' + row.ASR3RegSearchValue,
                                  folder.filePath(registry));
        }
        mevo::EntryPrograms known;
        const QString result =
            mevo::findInputMethod(row, own.isEmpty() ? QString() : folder.filePath(own), entries,
                                  {{folder.filePath("opt")},
                                   {folder.filePath("bin")},
                                   {folder.filePath("none"), folder.filePath("apps")}},
                                  known);
        QCOMPARE(result, found.isEmpty() ? QString() : folder.filePath(found));
    }

    /// The menu asks at each building; hundreds of entries are read again only when there may be others.
    void entriesAreReadWhenTheyChange()
    {
        const QTemporaryDir folder;
        const QStringList folders{folder.filePath("later"), folder.filePath("apps")};
        const auto entry = [&folder](const QString &name, const QString &starts) {
            write(folder.filePath(name),
                  "[Desktop Entry]\nType=Application\nExec=" + folder.filePath(starts).toUtf8() + "\n");
        };
        mevo::EntryPrograms known;
        entry("apps/x.desktop", "VoiceInput");
        QCOMPARE(known.find("VoiceInput", folders, {}), QString()); // no program yet
        write(folder.filePath("VoiceInput"), "#!/bin/sh\n", program);
        QCOMPARE(known.find("VoiceInput", folders, {}), folder.filePath("VoiceInput"));
        QCOMPARE(known.readings(), 1);
        QCOMPARE(known.find("iFlyVoice", folders, {}), QString());
        QCOMPARE(known.find("iFlyVoice", folders, {}), QString());
        QCOMPARE(known.readings(), 2);
        write(folder.filePath("iFlyVoice"), "#!/bin/sh\n", program);
        entry("apps/kde/y.desktop", "iFlyVoice"); // in a folder below
        QCOMPARE(known.find("iFlyVoice", folders, {}), folder.filePath("iFlyVoice"));
        QVERIFY(QFile::remove(folder.filePath("apps/kde/y.desktop")));
        QCOMPARE(known.find("iFlyVoice", folders, {}), QString());
        entry("later/z.desktop", "iFlyVoice"); // and in one that was not there
        QCOMPARE(known.find("iFlyVoice", folders, {}), folder.filePath("iFlyVoice"));
    }

    void tools()
    {
        const QTemporaryDir folder;
        write(folder.filePath("reg/iFlyIMEConfig.exe"), "", program);
        write(folder.filePath("own/iFlyIMEConfig"), "", program);
        const mevo::Asr3Row row = mevo::builtInAsr3Row(1, false);
        NoRegistry registry;
        const auto tool = [&] {
            return mevo::toolOfMethod("iFlyIMEConfig.exe", row, folder.filePath("own/iFlyVoice"), registry);
        };
        QCOMPARE(tool(), folder.filePath("own/iFlyIMEConfig"));
        registry.values.insert(row.ASR3RegInstallPath + '|' + row.ASR3RegSearchValue, folder.filePath("reg"));
        QCOMPARE(tool(), folder.filePath("reg/iFlyIMEConfig.exe"));
        QVERIFY(mevo::toolOfMethod("other.exe", row, {}, registry).isEmpty());
    }

    void programs_data()
    {
        const Rows<QString, bool> row; // path, there
        row("as it is", "%1/talk", true);
        row("suffix too many", "%1/talk.exe", true);
        row("the other separator", "%1\\sub\\..\\talk", true);
        row("a folder", "%1", false);
        row("a text", "%1/text", false);
        row("relative", "talk", false);
        row("of Windows", "C:\\x\\talk.exe", false);
        row("empty", "", false);
    }
    void programs()
    {
        const auto [path, there] = rowOf<QString, bool>();
        const QTemporaryDir folder;
        write(folder.filePath("talk"), "#!/bin/sh\n", program);
        write(folder.filePath("text"), "text", readWrite);
        QCOMPARE(!mevo::programAt(path.contains('%') ? path.arg(folder.path()) : path).isEmpty(), there);
    }
};

QTEST_GUILESS_MAIN(TestMethodFiles)
#include "tst_method_files.moc"
