#include "commands/CommandExecution.h"
#include "commands/DirectWords.h"
#include "commands/LocalProgram.h"
#include "commands/SearchAddresses.h"
#include "support/CallLog.h"
#include "support/Messages.h"
#include "support/Rows.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using mevo::CommandType;
using mevo::KeyCombination;

namespace {

QString shown(const KeyCombination &keys)
{
    QString text;
    for (const auto &[flag, name] :
         {std::pair(keys.shift, "shift "), std::pair(keys.ctrl, "ctrl "), std::pair(keys.alt, "alt "),
          std::pair(keys.win, "win "), std::pair(keys.consumerKey, "media ")}) {
        text += flag ? QLatin1String(name) : QLatin1String();
    }
    return text + QString::number(keys.key, 16);
}

class RecordingPort : public mevo::CommandPort
{
public:
    CallLog log;

    void openUrl(const QUrl &url) override { log.add("open "_s + QString::fromLatin1(url.toEncoded())); }
    void sendToScreen(const QString &text) override { log.add("screen "_s + text); }
    void playKeys(const KeyCombination &keys) override { log.add("keys "_s + shown(keys)); }
};

/// 69 keyboard keys, then media keys: "K0" has the code 100, "M69" the code 169, all in base 16.
struct WithKeys : SettingsState
{
    WithKeys()
    {
        for (int i = 0; i < 75; ++i) {
            KeyShowNames.append((i < 69 ? "K"_s : "M"_s) + QString::number(i));
            KeyCodes.append(QString::number(100 + i));
        }
        KeyShowNames.append("broken"_s);
        KeyCodes.append("no number"_s);
    }
};

} // namespace

class TestCommandRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortcuts_data()
    {
        const Rows<QString, QString> row; // contents, keys
        row("one key", "K0", "100");
        row("modifiers and a key", "Control+Alt+Shift+Win+K1", "shift ctrl alt win 101");
        row("any order", "K2+Shift", "shift 102");
        row("modifier alone", "Alt", "alt 0");
        row("last keyboard key", "K68", "168");
        row("first media key", "M69", "media 169");
        row("the later key counts, media stays", "M70+K3", "media 103");
        row("unknown name", "Control+K999", "ctrl 0");
        row("an unknown name takes the key away", "K4+control", "0");
        row("trailing plus", "Control+K5+", "ctrl 0");
        row("blanks count", "Control + K5", "0");
        row("a code that is no number", "Shift+broken", "shift media 0");
        row("nothing", "", "0");
    }

    void shortcuts()
    {
        const auto [contents, keys] = rowOf<QString, QString>();
        const WithKeys settings;
        QCOMPARE(shown(mevo::parseShortcut(contents, settings.KeyShowNames, settings.KeyCodes)), keys);
    }

    void unknownKeysAreOneShortLine()
    {
        const Messages logged;
        mevo::parseShortcut("a\nb+"_s + "x+"_s.repeated(10000), {}, {});
        QCOMPARE(logged.all.size(), 1);
        QVERIFY(logged.all[0].startsWith(QLatin1String("Commands: no key is called a\\nb, x, x")));
        QVERIFY(logged.all[0].size() < 250);
    }

    void rowsAreCarriedOut_data()
    {
        // type, contents, whether the word has been sent to the screen, calls
        const Rows<CommandType, QString, bool, QString> row;
        using T = CommandType;
        row("web", T::Web, "https://h/a?b=c", false, "open https://h/a?b=c");
        row("web, a bare word", T::Web, "example.com", true, "open http://example.com");
        row("web, another scheme", T::Web, "ftp://h/", false, "open http://ftp//h/");
        row("web, the scheme further on", T::Web, "go?to=https://h", false, "open go?to=https://h");
        row("web, capitals are no scheme", T::Web, "HTTP://h", false, "open http://http//h");
        row("web, blanks and Chinese", T::Web, "h/你 好", false, "open http://h/%E4%BD%A0%20%E5%A5%BD");
        row("file", T::File, "/a b/c;touch x", false, "open file:///a%20b/c;touch%20x");
        row("folder, as it stands", T::Directory, "~/文件", false, "open file:~/%E6%96%87%E4%BB%B6");
        row("shortcut", T::Shortcut, "Win+K0", true, "keys win 100");
        row("phrase", T::Phrase, "你好；\n再见", false, "screen 你好；\n再见");
        row("phrase whose word is on the screen", T::Phrase, "你好", true, "");
        row("voice keyboard", T::VoiceKeyboard, "a", false, "");
        row("pinyin keyboard", T::PinyinKeyboard, "ang", false, "");
    }

    void rowsAreCarriedOut()
    {
        const auto [type, contents, sent, calls] = rowOf<CommandType, QString, bool, QString>();
        mevo::CommandRow row;
        row.CmdWordTypeIndex = QString::number(int(type));
        row.CmdWordContents = contents;
        RecordingPort port;
        mevo::runCommand(row, sent, WithKeys(), port);
        QCOMPARE(port.log.calls().join(u'|'), calls);
    }

    void searches_data()
    {
        const Rows<QString, QString, QString> row; // engines, text, addresses
        row("none", "", "天气", "");
        row("all, in their order", "bg3sG", "x",
            "https://www.baidu.com/s?ie=UTF-8&wd=x https://www.sogou.com/webquery=?x "
            "https://www.so.com/s?ie=utf-8&q=x http://www.google.com/search?q=x "
            "https://www.bing.com/search?q=+x");
        row("Chinese and a blank", "b", "天 气", "https://www.baidu.com/s?ie=UTF-8&wd=%E5%A4%A9%20%E6%B0%94");
        row("signs of an address", "bg", "C# 教程&100%+a=1?/%41",
            "https://www.baidu.com/s?ie=UTF-8&wd=C%23%20%E6%95%99%E7%A8%8B%26100%25%2Ba=1?/%2541 "
            "https://www.bing.com/search?q=+C%23%20%E6%95%99%E7%A8%8B%26100%25%2Ba=1?/%2541");
        row("nothing to search for", "G", "", "http://www.google.com/search?q=");
    }

    void searches()
    {
        const auto [engines, text, addresses] = rowOf<QString, QString, QString>();
        SettingsState settings;
        settings.SearchEngines_Baidu = engines.contains(u'b');
        settings.SearchEngines_Sogou = engines.contains(u's');
        settings.SearchEngines_360 = engines.contains(u'3');
        settings.SearchEngines_Google = engines.contains(u'G');
        settings.SearchEngines_Bing = engines.contains(u'g');
        const auto address = [](const QUrl &url) { return QString::fromLatin1(url.toEncoded()); };
        QCOMPARE(textsOf(mevo::searchAddresses(text, settings, {}), address).join(u' '), addresses);
    }

    void aSearchHostOfOnesOwn()
    {
        SettingsState settings;
        settings.SearchEngines_Baidu = settings.SearchEngines_Bing = true;
        mevo::EngineEndpoints endpoints;
        endpoints.SearchBaidu = "127.0.0.1:8"_s;
        endpoints.SearchBing = "http://127.0.0.1:9"_s;
        const QList<QUrl> urls = mevo::searchAddresses("a"_s, settings, endpoints);
        QCOMPARE(urls, QList<QUrl>({QUrl("https://127.0.0.1:8/s?ie=UTF-8&wd=a"_s),
                                    QUrl("http://127.0.0.1:9/search?q=+a"_s)}));
    }

    void directWords()
    {
        const QStringList words{"执行"_s, QString(), "命令"_s};
        QCOMPARE(mevo::directPrefixLength(words, "执行复制"_s), 2);
        QCOMPARE(mevo::directPrefixLength(words, "命令复制"_s), 0);
        QVERIFY(mevo::beginsWithDirectWord(words, "命令复制"_s));
        QVERIFY(!mevo::beginsWithDirectWord(words, "复制命令"_s));
    }

    void desktopEntries_data()
    {
        const Rows<QByteArray, QString> table; // entry, command (words joined by "|")
        const auto row = [&table](const char *name, const QByteArray &exec, const char *command) {
            table(name,
                  "# remark\n[Other]\nExec=wrong\n[Desktop Entry]\nType=Application\nExec=" + exec +
                      "\n[Desktop Action new]\nExec=wrong\n",
                  command);
        };
        row("field codes go", "mousepad --new %U", "mousepad|--new");
        row("quoted", R"("/opt/my app/run" "a \\"b\\" \\$c \\\\" 100%%)",
            R"(/opt/my app/run|a "b" $c \|100%)");
        row("nothing for a shell", "a;touch x `y` $(z)", "a;touch|x|`y`|$(z)");
        row("an empty word", R"(a "" b)", "a||b");
        row("a percent sign within quotes", R"("/opt/100%% mine/run" "%s")", "/opt/100% mine/run|%s");
        row("open quote", R"(a "b)", "");
        table("a link", "[Desktop Entry]\nType=Link\nURL=http://h\nExec=a\n", "");
        table("no entry at all", QByteArray("\177ELF\0\377", 6), "");
    }

    void desktopEntries()
    {
        const auto [entry, command] = rowOf<QByteArray, QString>();
        QCOMPARE(mevo::parseDesktopEntry(entry).words.join(u'|'), command);
    }

    void filesThatArePrograms_data()
    {
        // name, content, executable, command ("FILE" for the file's own path)
        const Rows<QString, QByteArray, bool, QString> row;
        row("script", "s", "#!/bin/sh\n", true, "FILE");
        row("binary", "b", "\177ELFxyz", true, "FILE");
        row("script that may not run", "s", "#!/bin/sh\n", false, "");
        row("text on a disk where all may run", "t.txt", "text", true, "");
        row("entry", "e.desktop", "[Desktop Entry]\nType=Application\nExec=a b\n", false, "a|b");
        row("broken entry", "e.desktop", "nonsense", true, "");
    }

    void filesThatArePrograms()
    {
        auto [name, content, executable, command] = rowOf<QString, QByteArray, bool, QString>();
        const QTemporaryDir folder;
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        file.setPermissions(QFile::ReadOwner | (executable ? QFile::ExeOwner : QFile::Permissions()));
        QCOMPARE(mevo::commandOfLocalFile(file.fileName()).join(u'|'),
                 command.replace("FILE"_s, file.fileName()));
        QVERIFY(mevo::commandOfLocalFile(folder.path()).isEmpty());
        QVERIFY(mevo::commandOfLocalFile(folder.filePath("none"_s)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCommandRun)
#include "tst_command_run.moc"
