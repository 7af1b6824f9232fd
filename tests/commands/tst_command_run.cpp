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
        QTest::newRow("one key") << "K0"
                                 << "100";
        QTest::newRow("modifiers and a key") << "Control+Alt+Shift+Win+K1"
                                             << "shift ctrl alt win 101";
        QTest::newRow("any order") << "K2+Shift"
                                   << "shift 102";
        QTest::newRow("modifier alone") << "Alt"
                                        << "alt 0";
        QTest::newRow("last keyboard key") << "K68"
                                           << "168";
        QTest::newRow("first media key") << "M69"
                                         << "media 169";
        QTest::newRow("the later key counts, media stays") << "M70+K3"
                                                           << "media 103";
        QTest::newRow("unknown name") << "Control+K999"
                                      << "ctrl 0";
        QTest::newRow("an unknown name takes the key away") << "K4+control"
                                                            << "0";
        QTest::newRow("trailing plus") << "Control+K5+"
                                       << "ctrl 0";
        QTest::newRow("blanks count") << "Control + K5"
                                      << "0";
        QTest::newRow("a code that is no number") << "Shift+broken"
                                                  << "shift media 0";
        QTest::newRow("nothing") << ""
                                 << "0";
    }

    void shortcuts()
    {
        QFETCH(QString, contents);
        const WithKeys settings;
        QTEST(shown(mevo::parseShortcut(contents, settings.KeyShowNames, settings.KeyCodes)), "keys");
    }

    void rowsAreCarriedOut_data()
    {
        QTest::addColumn<CommandType>("type");
        QTest::addColumn<QString>("contents");
        QTest::addColumn<bool>("sent");
        QTest::addColumn<QString>("calls");
        using T = CommandType;
        QTest::newRow("web") << T::Web << "https://h/a?b=c" << false << "open https://h/a?b=c";
        QTest::newRow("web, a bare word") << T::Web << "example.com" << true << "open http://example.com";
        QTest::newRow("web, another scheme") << T::Web << "ftp://h/" << false << "open http://ftp//h/";
        QTest::newRow("web, the scheme further on")
            << T::Web << "go?to=https://h" << false << "open go?to=https://h";
        QTest::newRow("web, capitals are no scheme")
            << T::Web << "HTTP://h" << false << "open http://http//h";
        QTest::newRow("web, blanks and Chinese")
            << T::Web << "h/你 好" << false << "open http://h/%E4%BD%A0%20%E5%A5%BD";
        QTest::newRow("file") << T::File << "/a b/c;touch x" << false << "open file:///a%20b/c;touch%20x";
        QTest::newRow("folder, as it stands")
            << T::Directory << "~/文件" << false << "open file:~/%E6%96%87%E4%BB%B6";
        QTest::newRow("shortcut") << T::Shortcut << "Win+K0" << true << "keys win 100";
        QTest::newRow("phrase") << T::Phrase << "你好；\n再见" << false << "screen 你好；\n再见";
        QTest::newRow("phrase whose word is on the screen") << T::Phrase << "你好" << true << "";
        QTest::newRow("voice keyboard") << T::VoiceKeyboard << "a" << false << "";
        QTest::newRow("pinyin keyboard") << T::PinyinKeyboard << "ang" << false << "";
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
        QTest::newRow("none") << ""
                              << "天气"
                              << "";
        QTest::newRow("all, in their order")
            << "bg3sG"
            << "x"
            << "https://www.baidu.com/s?ie=UTF-8&wd=x https://www.sogou.com/webquery=?x "
               "https://www.so.com/s?ie=utf-8&q=x http://www.google.com/search?q=x "
               "https://www.bing.com/search?q=+x";
        QTest::newRow("Chinese and a blank")
            << "b"
            << "北京 天气"
            << "https://www.baidu.com/s?ie=UTF-8&wd=%E5%8C%97%E4%BA%AC%20%E5%A4%A9%E6%B0%94";
        QTest::newRow("nothing to search for") << "G"
                                               << ""
                                               << "http://www.google.com/search?q=";
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
        const auto exec = [](const char *line) {
            return QByteArray("# remark\n[Other]\nExec=wrong\n[Desktop Entry]\nType=Application\nExec=") +
                   line + "\n[Desktop Action new]\nExec=wrong\n";
        };
        QTest::newRow("field codes go") << exec("mousepad --new %U") << "mousepad|--new";
        QTest::newRow("quoted") << exec(R"("/opt/my app/run" "a \\"b\\" \\$c \\\\" 100%%)")
                                << R"(/opt/my app/run|a "b" $c \|100%)";
        QTest::newRow("nothing for a shell") << exec("a;touch x `y` $(z)") << "a;touch|x|`y`|$(z)";
        QTest::newRow("an empty word") << exec(R"(a "" b)") << "a||b";
        QTest::newRow("open quote") << exec(R"(a "b)") << "";
        QTest::newRow("a link") << QByteArray("[Desktop Entry]\nType=Link\nURL=http://h\nExec=a\n") << "";
        QTest::newRow("no entry at all") << QByteArray("\x7f"
                                                       "ELF\0\xff",
                                                       6)
                                         << "";
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
        QTest::newRow("script") << "s" << QByteArray("#!/bin/sh\n") << true << "FILE";
        QTest::newRow("binary") << "b"
                                << QByteArray("\x7f"
                                              "ELFxyz")
                                << true << "FILE";
        QTest::newRow("script that may not run") << "s" << QByteArray("#!/bin/sh\n") << false << "";
        QTest::newRow("text on a disk where all may run") << "t.txt" << QByteArray("text") << true << "";
        QTest::newRow("entry") << "e.desktop" << QByteArray("[Desktop Entry]\nType=Application\nExec=a b\n")
                               << false << "a|b";
        QTest::newRow("broken entry") << "e.desktop" << QByteArray("nonsense") << true << "";
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
