#include "commands/LocalProgram.h"
#include "inputmethods/HotKey.h"
#include "inputmethods/Installers.h"
#include "inputmethods/KeyPlan.h"
#include "inputmethods/MethodFiles.h"
#include "inputmethods/Recogniser.h"
#include "support/Rows.h"

#include <QDirIterator>
#include <QDomDocument>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <X11/keysym.h>

using namespace lab;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

bool write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

const QByteArray program = QByteArray("#!/bin/sh\necho I am the program\n") + QByteArray(5000, '\xfe');

/// A user's home with an awkward name, and an installer that is run there.
struct User
{
    QTemporaryDir root;
    QString home = root.filePath("Tom & \"J\" <x> 100% $HOME `id` \\n"_s);

    User() { QDir().mkpath(home); }
    QString at(const char *path) const { return home + QLatin1Char('/') + QLatin1String(path); }
    int install(QByteArray script) const
    {
        const QString file = at("Downloads/setup.run");
        write(file, script);
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME"_s, home);
        environment.remove("XDG_DATA_HOME"_s);
        shell.setProcessEnvironment(environment);
        shell.start("sh"_s, {file});
        return shell.waitForFinished() ? shell.exitCode() : -1;
    }
    /// Paths of all files.
    QStringList files() const
    {
        QStringList found;
        QDirIterator all(home, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            found.append(all.next());
        }
        found.sort();
        return found;
    }
};

} // namespace

class InputMethodsTest : public QObject
{
    Q_OBJECT
private slots:
    /// Keys as a line: "+100" down and "-300" up at a time, "x" another key; what each asks for.
    void keysBecomeDictations_data()
    {
        const Rows<KeyUse, QString, QString> row; // use, keys, asked
        row("held", KeyUse::Hold, "+0 -2000", "begin end");
        row("held, with the presses that a keyboard repeats", KeyUse::Hold, "+0 +500 +530 -2000",
            "begin . . end");
        row("held, then the tap that the receiver adds", KeyUse::Hold, "+0 -2000 +2100 -2300",
            "begin end begin cancel");
        row("tapped", KeyUse::Tap, "+0 -100 +3000 -3100 +5000 -5100", "begin . end . begin .");
        row("tapped slowly", KeyUse::Tap, "+0 -900 +3000 -3900", "begin . end .");
        row("a chord is none of a tapped key's business", KeyUse::Tap, "+0 -100 x +300 -400",
            "begin . . end .");
        row("Ctrl tapped at both ends", KeyUse::TapOrHold, "+0 -100 +3000 -3100", "begin . end .");
        row("Ctrl held", KeyUse::TapOrHold, "+0 -2500 +4000 -6000", "begin end begin end");
        row("Ctrl of a chord", KeyUse::TapOrHold, "+0 x -200 +1000 -1100", "begin cancel . begin .");
        row("others type while it listens", KeyUse::TapOrHold, "+0 -100 x +3000 x -3100",
            "begin . . end . .");
    }

    void keysBecomeDictations()
    {
        const auto [use, keys, asked] = rowOf<KeyUse, QString, QString>();
        HotKey key{KeyUse(use)};
        const char *const names[] = {".", "begin", "end", "cancel"};
        QStringList got;
        for (const QString &word : keys.split(QLatin1Char(' '))) {
            const Dictation step = word == "x"_s                       ? key.otherKey()
                                   : word.startsWith(QLatin1Char('+')) ? key.down(word.mid(1).toInt())
                                                                       : key.up(word.mid(1).toInt());
            got.append(QLatin1String(names[int(step)]));
        }
        QCOMPARE(got.join(QLatin1Char(' ')), asked);
    }

    void aMethodThatBeganByItselfIsEnded()
    {
        HotKey key(KeyUse::Tap);
        key.setListening(true);
        QCOMPARE(key.down(0), Dictation::End);
        QCOMPARE(key.up(100), Dictation::Nothing);
        QVERIFY(!key.isListening());
    }

    void textsBecomeKeys()
    {
        const KeyMap keys{{'h', {43, false}},  {'H', {43, true}},      {'i', {31, false}},
                          {'.', {60, false}},  {'!', {10, true}},      {0xff0d, {36, false}},
                          {0xe9, {99, false}}, {0x1004f60, {77, true}}};
        const KeyPlan plan = planKeys("Hi!\né你好.𠀀"_s, keys);
        const std::vector<KeyStroke> expected = {{43, true},  {31, false}, {10, true}, {36, false},
                                                 {99, false}, {77, true},  {60, false}};
        QVERIFY(plan.strokes == expected);
        QCOMPARE(plan.untypable, 2);
        QCOMPARE(asSentence(" hello  world "_s), "Hello world."_s);
        QCOMPARE(asSentence(QString()), QString());
    }

    void settingsNameTheKey_data()
    {
        // kind (X: XunFei's, B: Baidu's, V: XunFei's version), text, expected
        const Rows<QString, QByteArray, unsigned> row;
        row("F6", "X", "<c><a>1</a><start_end>enable=1;keyStr=F6</start_end></c>", XK_F6);
        row("F12", "X", "<c><b><start_end>enable=1;keyStr=F12\n</start_end></b></c>", XK_F12);
        row("switched off", "X", "<c><start_end>enable=0;keyStr=F6</start_end></c>", 0);
        row("with a modifier", "X", "<c><start_end>enable=1;keyStr=Alt+F6</start_end></c>", 0);
        row("no such function key", "X", "<c><start_end>enable=1;keyStr=F0</start_end></c>", 0);
        row("broken", "X", "<c><start_end>enable=1;keyStr=F6</start_end>", 0);
        row("absent", "X", "", 0);
        row("Ctrl", "B", "[Setting]\r\nLastPage=0\r\nHotKey=17\r\n", XK_Control_L);
        row("F2", "B", "[Setting]\nHotKey = 113\n", XK_F2);
        row("another group", "B", "[Setting]\nA=1\n[Other]\nHotKey=17\n", 0);
        row("a letter", "B", "[Setting]\nHotKey=65\n", 0);
        row("third", "V", "<c><ver>3.0.1725</ver></c>", 3);
        row("second", "V", "<c><ver>2.1.1708</ver></c>", 2);
        row("no version", "V", "<c><ver>beta</ver></c>", 0);
    }

    void settingsNameTheKey()
    {
        const auto [kind, text, expected] = rowOf<QString, QByteArray, unsigned>();
        QCOMPARE(kind == "X"_s   ? xunFeiKey(text)
                 : kind == "B"_s ? baiduKey(text)
                                 : unsigned(generationOf(text)),
                 expected);
        QCOMPARE(xunFeiSettings("/home/a/.local/share"_s),
                 "/home/a/.local/localLow/iFly Info Tek/iFlyIME/"_s);
        QCOMPARE(baiduSettings("/home/a/.local/share"_s),
                 "/home/a/.local/localLow/Baidu/BaiduPinyin/SpeechInput.ini"_s);
    }

    void installersPutTheirProgramInPlace_data()
    {
        // installer, program, settings, key (that they have then)
        const Rows<QString, QString, QString, unsigned> row;
        row("XunFei's second", "iFlyIME_Setup.run", "iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice",
            "iFly Info Tek/iFlyIME/config.xml", 0U);
        row("XunFei's third", "iFlyIME_Setup3.run", "iFly Info Tek/iFlyIME/3.0.1725/iFlyVoice",
            "iFly Info Tek/iFlyIME/config.xml", 0U);
        row("Sogou's", "SogouInput_Setup.run", "SogouInput/Components/VoiceInput/1.0.0.170/VoiceInput", "",
            0U);
        row("Baidu's", "BaiduPinyin_Setup.run", "Baidu/BaiduPinyin/SpeechInput",
            "Baidu/BaiduPinyin/SpeechInput.ini", unsigned(XK_F9));
    }

    void installersPutTheirProgramInPlace()
    {
        const auto [installer, program, settings, key] = rowOf<QString, QString, QString, unsigned>();
        const Installer *row = installerNamed(installer);
        QVERIFY(row != nullptr);
        const User user;
        QCOMPARE(user.install(makeInstaller(*row, ::program)), 0);
        const QString path = user.home + "/.local/opt/"_s + program;
        QCOMPARE(contentOf(path), ::program);
        QVERIFY(QFileInfo(path).isExecutable());

        const QString name = QFileInfo(path).fileName();
        const auto entry = mevo::parseDesktopEntry(
            contentOf(user.home + "/.local/share/applications/%1.desktop"_s.arg(name)));
        QCOMPARE(entry.words, QStringList{path});
        if (!settings.isEmpty()) {
            const QString file = user.at(".local/localLow/") + settings;
            QVERIFY(QFile::exists(file));
            QCOMPARE(name == "iFlyVoice"_s ? xunFeiKey(contentOf(file)) : baiduKey(contentOf(file)), key);
            QVERIFY(write(file, "the user's own"));
            QCOMPARE(user.install(makeInstaller(*row, ::program)), 0); // once more, over what is there
            QCOMPARE(contentOf(file), QByteArray("the user's own"));
        }
        if (name == "iFlyVoice"_s) {
            QDomDocument xml;
            const QByteArray told =
                contentOf(user.at(".local/localLow/iFly Info Tek/iFlyIME/iflyImeCfg.xml"));
            QVERIFY(xml.setContent(told));
            QCOMPARE(xml.documentElement().firstChildElement("installPath_ver2"_s).text(),
                     QFileInfo(path).path());
            QCOMPARE(generationOf(told), QByteArray(row->version).left(1).toInt());
        }
    }

    void aFailureLeavesNothing_data()
    {
        const Rows<QString> row; // damage
        for (const char *damage : {"program", "cut", "target", "settings"}) {
            row(damage, QString::fromLatin1(damage));
        }
    }

    void aFailureLeavesNothing()
    {
        const auto [damage] = rowOf<QString>();
        const User user;
        QByteArray script = makeInstaller(*installerNamed("iFlyIME_Setup.run"_s), ::program);
        if (damage == "program"_s) {
            script.replace(script.size() - 200, 4, "AAAA");
        } else if (damage == "cut"_s) {
            script.truncate(script.size() - 400);
        } else { // a file stands where a folder is wanted
            const bool target = damage == "target"_s;
            QVERIFY(write(user.at(target ? ".local/opt" : ".local/localLow/iFly Info Tek"), "in the way"));
        }
        QVERIFY(write(user.at("Downloads/setup.run"), script));
        const QStringList before = user.files();
        QVERIFY(user.install(script) > 0);
        QCOMPARE(user.files(), before);
    }
};

QTEST_GUILESS_MAIN(InputMethodsTest)
#include "tst_inputmethods.moc"
