#include "commands/CommandExecution.h"
#include "commands/DirectWords.h"
#include "commands/LocalProgram.h"
#include "commands/SearchAddresses.h"
#include "support/CallLog.h"

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

    void openUrl(const QUrl &url) override
    {
        log.add(QStringLiteral("open ") + QString::fromLatin1(url.toEncoded()));
    }
    void sendToScreen(const QString &text) override { log.add(QStringLiteral("screen ") + text); }
    void playKeys(const KeyCombination &keys) override { log.add(QStringLiteral("keys ") + shown(keys)); }
};

/// 69 keyboard keys, then media keys: "K0" has the code 100, "M69" the code 169, all in base 16.
struct WithKeys : SettingsState
{
    WithKeys()
    {
        for (int i = 0; i < 75; ++i) {
            KeyShowNames.append((i < 69 ? QStringLiteral("K") : QStringLiteral("M")) + QString::number(i));
            KeyCodes.append(QString::number(100 + i));
        }
        KeyShowNames.append(QStringLiteral("broken"));
        KeyCodes.append(QStringLiteral("no number"));
    }
};

} // namespace

Q_DECLARE_METATYPE(CommandType)

class TestCommandRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortcuts_data()
    {
        QTest::addColumn<QString>("contents");
        QTest::addColumn<QString>("keys");
        const auto row = [](const char *name, const char *contents, const char *keys) {
            QTest::newRow(name) << contents << keys;
        };
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
        QFETCH(QString, contents);
        const WithKeys settings;
        QTEST(shown(mevo::parseShortcut(contents, settings.KeyShowNames, settings.KeyCodes)), "keys");
    }

    void unknownKeysAreOneShortLine()
    {
        static QStringList lines;
        qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &line) { lines.append(line); });
        mevo::parseShortcut(QStringLiteral("a\nb+") + QStringLiteral("x+").repeated(10000), {}, {});
        qInstallMessageHandler(nullptr);
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines[0].startsWith(QLatin1String("Commands: no key is called a\\nb, x, x")));
        QVERIFY(lines[0].size() < 250);
    }

    void rowsAreCarriedOut_data()
    {
        QTest::addColumn<CommandType>("type");
        QTest::addColumn<QString>("contents");
        QTest::addColumn<bool>("sent");
        QTest::addColumn<QString>("calls");
        const auto row = [](const char *name, CommandType type, const char *contents, const char *calls,
                            bool sent = false) {
            QTest::newRow(name) << type << QString::fromUtf8(contents) << sent << QString::fromUtf8(calls);
        };
        using T = CommandType;
        row("web", T::Web, "https://h/a?b=c", "open https://h/a?b=c");
        row("web, a bare word", T::Web, "example.com", "open http://example.com", true);
        row("web, another scheme", T::Web, "ftp://h/", "open http://ftp//h/");
        row("web, the scheme further on", T::Web, "go?to=https://h", "open go?to=https://h");
        row("web, capitals are no scheme", T::Web, "HTTP://h", "open http://http//h");
        row("web, blanks and Chinese", T::Web, "h/你 好", "open http://h/%E4%BD%A0%20%E5%A5%BD");
        row("file", T::File, "/a b/c;touch x", "open file:///a%20b/c;touch%20x");
        row("folder, as it stands", T::Directory, "~/文件", "open file:~/%E6%96%87%E4%BB%B6");
        row("shortcut", T::Shortcut, "Win+K0", "keys win 100", true);
        row("phrase", T::Phrase, "你好；\n再见", "screen 你好；\n再见");
        row("phrase whose word is on the screen", T::Phrase, "你好", "", true);
        row("voice keyboard", T::VoiceKeyboard, "a", "");
        row("pinyin keyboard", T::PinyinKeyboard, "ang", "");
    }

    void rowsAreCarriedOut()
    {
        QFETCH(CommandType, type);
        QFETCH(QString, contents);
        QFETCH(bool, sent);
        mevo::CommandRow row;
        row.CmdWordTypeIndex = QString::number(int(type));
        row.CmdWordContents = contents;
        RecordingPort port;
        mevo::runCommand(row, sent, WithKeys(), port);
        QTEST(port.log.calls().join(u'|'), "calls");
    }

    void searches_data()
    {
        QTest::addColumn<QString>("engines");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("addresses");
        const auto row = [](const char *name, const char *engines, const char *text, const char *addresses) {
            QTest::newRow(name) << engines << QString::fromUtf8(text) << addresses;
        };
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
        QFETCH(QString, engines);
        QFETCH(QString, text);
        SettingsState settings;
        settings.SearchEngines_Baidu = engines.contains(u'b');
        settings.SearchEngines_Sogou = engines.contains(u's');
        settings.SearchEngines_360 = engines.contains(u'3');
        settings.SearchEngines_Google = engines.contains(u'G');
        settings.SearchEngines_Bing = engines.contains(u'g');
        QStringList addresses;
        for (const QUrl &url : mevo::searchAddresses(text, settings, {})) {
            addresses.append(QString::fromLatin1(url.toEncoded()));
        }
        QTEST(addresses.join(u' '), "addresses");
    }

    void aSearchHostOfOnesOwn()
    {
        SettingsState settings;
        settings.SearchEngines_Baidu = settings.SearchEngines_Bing = true;
        mevo::EngineEndpoints endpoints;
        endpoints.SearchBaidu = QStringLiteral("127.0.0.1:8");
        endpoints.SearchBing = QStringLiteral("http://127.0.0.1:9");
        const QList<QUrl> urls = mevo::searchAddresses(QStringLiteral("a"), settings, endpoints);
        QCOMPARE(urls, QList<QUrl>({QUrl(QStringLiteral("https://127.0.0.1:8/s?ie=UTF-8&wd=a")),
                                    QUrl(QStringLiteral("http://127.0.0.1:9/search?q=+a"))}));
    }

    void directWords()
    {
        const QStringList words{QStringLiteral("执行"), QString(), QStringLiteral("命令")};
        QCOMPARE(mevo::directPrefixLength(words, QStringLiteral("执行复制")), 2);
        QCOMPARE(mevo::directPrefixLength(words, QStringLiteral("命令复制")), 0);
        QVERIFY(mevo::beginsWithDirectWord(words, QStringLiteral("命令复制")));
        QVERIFY(!mevo::beginsWithDirectWord(words, QStringLiteral("复制命令")));
    }

    void desktopEntries_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("command"); // words joined by "|"
        const auto row = [](const char *name, const char *exec, const char *command) {
            QTest::newRow(name) << QByteArray("# remark\n[Other]\nExec=wrong\n[Desktop Entry]\n"
                                              "Type=Application\nExec=") +
                                       exec + "\n[Desktop Action new]\nExec=wrong\n"
                                << command;
        };
        row("field codes go", "mousepad --new %U", "mousepad|--new");
        row("quoted", R"("/opt/my app/run" "a \\"b\\" \\$c \\\\" 100%%)",
            R"(/opt/my app/run|a "b" $c \|100%)");
        row("nothing for a shell", "a;touch x `y` $(z)", "a;touch|x|`y`|$(z)");
        row("an empty word", R"(a "" b)", "a||b");
        row("a percent sign within quotes", R"("/opt/100%% mine/run" "%s")", "/opt/100% mine/run|%s");
        row("open quote", R"(a "b)", "");
        QTest::newRow("a link") << QByteArray("[Desktop Entry]\nType=Link\nURL=http://h\nExec=a\n") << "";
        QTest::newRow("no entry at all") << QByteArray("\177ELF\0\377", 6) << "";
    }

    void desktopEntries()
    {
        QFETCH(QByteArray, entry);
        QTEST(mevo::parseDesktopEntry(entry).words.join(u'|'), "command");
    }

    void filesThatArePrograms_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("executable");
        QTest::addColumn<QString>("command"); // "FILE" for the file's own path
        const auto row = [](const char *what, const char *name, const char *content, bool executable,
                            const char *command) {
            QTest::newRow(what) << name << QByteArray(content) << executable << command;
        };
        row("script", "s", "#!/bin/sh\n", true, "FILE");
        row("binary", "b", "\177ELFxyz", true, "FILE");
        row("script that may not run", "s", "#!/bin/sh\n", false, "");
        row("text on a disk where all may run", "t.txt", "text", true, "");
        row("entry", "e.desktop", "[Desktop Entry]\nType=Application\nExec=a b\n", false, "a|b");
        row("broken entry", "e.desktop", "nonsense", true, "");
    }

    void filesThatArePrograms()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(bool, executable);
        QFETCH(QString, command);
        const QTemporaryDir folder;
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        file.setPermissions(QFile::ReadOwner | (executable ? QFile::ExeOwner : QFile::Permissions()));
        QCOMPARE(mevo::commandOfLocalFile(file.fileName()).join(u'|'),
                 command.replace(QStringLiteral("FILE"), file.fileName()));
        QVERIFY(mevo::commandOfLocalFile(folder.path()).isEmpty());
        QVERIFY(mevo::commandOfLocalFile(folder.filePath(QStringLiteral("none"))).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCommandRun)
#include "tst_command_run.moc"
