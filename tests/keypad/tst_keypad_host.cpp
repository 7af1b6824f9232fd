#include "keypad/DesktopTheme.h"
#include "keypad/KeyButton.h"
#include "keypad/KeypadTables.h"
#include "keypad/KeypadWindow.h"
#include "support/FakePlatform.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QtTest>

#include <QLocalSocket>

#include <cstdio>

using namespace mevo::keypad;

namespace {

constexpr int waitMs = 30000;

QByteArray table(const QString &syllable, const QString &texts, int type = 1)
{
    return QStringLiteral("[0]\nCmdWordContents=%1\nCmdWordTypeIndex=%2\nCommandWords=\"%3\"\nHide=0\n")
        .arg(syllable)
        .arg(type)
        .arg(texts)
        .toUtf8();
}

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

/// Answers as a desktop's settings portal.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Portal()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal"))
    {
        m_bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllSlots);
        m_bus.registerService("org.freedesktop.portal.Desktop");
    }
    ~Portal() override { QDBusConnection::disconnectFromBus("portal"); }
    void change(uint to)
    {
        scheme = to;
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                                         "org.freedesktop.portal.Settings", "SettingChanged");
        signal << "org.freedesktop.appearance"
               << "color-scheme" << QVariant::fromValue(QDBusVariant(scheme));
        m_bus.send(signal);
    }
    uint scheme = 1;

public Q_SLOTS:
    QDBusVariant Read(const QString &, const QString &)
    {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme)));
    }

private:
    QDBusConnection m_bus;
};

/// Starts the program with one word, and says what it ended with.
int start(const QString &word, QByteArray *said = nullptr)
{
    QProcess process;
    process.start(MEVO_KEYPAD, word.isEmpty() ? QStringList() : QStringList{word});
    if (!process.waitForFinished(waitMs)) {
        return -1;
    }
    if (said != nullptr) {
        *said = process.readAllStandardError();
    }
    return process.exitCode();
}

QByteArray shownWindows()
{
    QProcess process;
    process.start("xdotool", {"search", "--onlyvisible", "--name", "^On-screen keyboard$"});
    process.waitForFinished(waitMs);
    return process.readAllStandardOutput().trimmed();
}

} // namespace

class TestKeypadHost : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;
    KeyButton *button(KeypadWindow &window, const QString &name)
    {
        for (KeyButton *one : window.findChildren<KeyButton *>()) {
            if (one->accessibleName() == name && one->isVisible()) {
                return one;
            }
        }
        return nullptr;
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("MEVO_HOME", m_home.path().toUtf8());
        qputenv("LANG", "en_US.UTF-8");
        qunsetenv("LC_ALL");
    }

    void tablesAreReadAgain()
    {
        QTemporaryDir parent;
        const QString folder = parent.filePath("tables");
        const QString pinyin = folder + "/MEVOInputCmdWordTable_PinyinKeyboard.ini";
        const QString voice = folder + "/MEVOInputCmdWordTable_VoiceKeyboard.ini";
        QString first, word;
        KeypadTables tables(
            [&](const KeypadTables::Content &content) {
                const auto found = content.pinyin.candidates("a");
                first = found.empty() ? QString("-") : found.front().text;
                word = content.words.of('b').value(0);
            },
            folder);
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("-"), waitMs); // not even a folder
        QVERIFY(QDir().mkpath(folder));
        write(pinyin, table("a", "啊;阿"));
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("啊"), waitMs);
        write(pinyin, table("a", "阿;啊")); // of the same size
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("阿"), waitMs);
        for (const QString &text :
             {QString("呵"), QString("锕"), QString("嗄")}) { // watched after a replacement, too
            write(folder + "/new", table("a", text));
            QCOMPARE(std::rename(qPrintable(folder + "/new"), qPrintable(pinyin)), 0);
            QTRY_COMPARE_WITH_TIMEOUT(first, text, waitMs);
        }
        write(voice, table("b", "玻", 0));
        QTRY_COMPARE_WITH_TIMEOUT(word, QString("玻"), waitMs);
        write(pinyin, QByteArray("\0[[\xff\"=\n[1", 11) + QByteArray(100000, '\xfe'));
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("-"), waitMs);
        write(pinyin, table("a", "啊"));
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("啊"), waitMs);
        QVERIFY(QFile::remove(pinyin));
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("-"), waitMs);
        QCOMPARE(word, QString("玻"));
    }

    void darkOrLight()
    {
        QVERIFY(mevo::keypad::isDark(1, Qt::white) && !mevo::keypad::isDark(2, Qt::black));
        QVERIFY(mevo::keypad::isDark(0, Qt::black) && !mevo::keypad::isDark({}, Qt::white));
        Portal portal;
        int changes = 0;
        DesktopTheme theme([&changes] { ++changes; });
        QVERIFY(!theme.isDark()); // as the toolkit, until the portal has answered
        QTRY_VERIFY_WITH_TIMEOUT(theme.isDark(), waitMs);
        portal.change(2);
        QTRY_VERIFY_WITH_TIMEOUT(!theme.isDark(), waitMs);
        QPalette black = QGuiApplication::palette();
        black.setColor(QPalette::Window, Qt::black);
        portal.change(0);
        QGuiApplication::setPalette(black);
        QTRY_VERIFY_WITH_TIMEOUT(theme.isDark(), waitMs);
        QGuiApplication::setPalette(QPalette(QColor(Qt::white)));
        QTRY_VERIFY_WITH_TIMEOUT(!theme.isDark(), waitMs);
        QCOMPARE(changes, 4);
    }

    void theWindow()
    {
        FakeOwnWindows desktop;
        KeypadState state;
        mevo::CommandRow row;
        row.CmdWordContents = "a";
        row.CommandWords = "1a;2a;3a;4a;5a;6a;7a;8a;9a;啊";
        row.CmdWordTypeIndex = "1";
        state.pinyin().setTable(PinyinTable({row}));
        QString typed;
        int hidden = 0;
        KeypadWindow window(state, desktop,
                            {[&typed](const std::vector<Stroke> &strokes) {
                                 for (const Stroke &stroke : strokes) {
                                     typed += stroke.text + QString::number(stroke.virtualKey);
                                 }
                             },
                             [&hidden] { ++hidden; }, [](QPoint) {}});
        window.setFixedSize(keypadSize({1280, 700}));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(desktop.withoutFocus.contains(window.winId()) && !window.isActiveWindow());
        for (KeyButton *one : window.findChildren<KeyButton *>()) {
            QVERIFY2(!one->isVisible() || !one->accessibleName().isEmpty(), qPrintable(one->text()));
            QCOMPARE(one->focusPolicy(), Qt::NoFocus);
        }
        const auto click = [&](const QString &name) {
            KeyButton *one = button(window, name);
            QVERIFY2(one != nullptr, qPrintable(name));
            QTest::mouseClick(one, Qt::LeftButton);
        };
        click("q");
        click("上档");
        QVERIFY(button(window, "上档")->isActive() && button(window, "q") == nullptr);
        click("Q");
        click("退格");
        click("拼音");
        click("a");
        click("2a");
        QCOMPARE(typed, QString("q0Q0") + "8" + "2a0");
        click("a");
        click("下一页");
        click("啊");
        QVERIFY(typed.endsWith("啊0"));
        QVERIFY(button(window, "下一页") == nullptr); // there is nothing to turn
        click("隐藏键盘");
        QCOMPARE(hidden, 1);
        window.close();
        QVERIFY(window.isVisible()); // hiding is not its own doing
        QCOMPARE(hidden, 2);

        // Each state of a key can be told from the others, and dark from light.
        KeyButton *key = button(window, "w");
        const QImage plain = key->grab().toImage();
        QTest::mouseMove(key);
        QTRY_VERIFY_WITH_TIMEOUT(key->grab().toImage() != plain, waitMs);
        const QImage hovered = key->grab().toImage();
        QTest::mousePress(key, Qt::LeftButton);
        const QImage pressed = key->grab().toImage();
        QVERIFY(pressed != hovered && pressed != plain);
        QTest::mouseRelease(key, Qt::LeftButton);
        window.setDark(true);
        QVERIFY(window.grab().toImage().pixelColor(3, 3).lightness() < 60);
    }

    void aHeldKeyStrikesAgain()
    {
        FakeOwnWindows desktop;
        KeypadState state;
        int struck = 0;
        KeypadWindow window(state, desktop,
                            {[&struck](const std::vector<Stroke> &) { ++struck; }, [] {}, [](QPoint) {}});
        window.setFixedSize(keypadSize({1280, 700}));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        KeyButton *key = button(window, "退格");
        QTest::mousePress(key, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(struck >= 3, waitMs);
        QTest::mouseRelease(key, Qt::LeftButton);
    }

    void aSecondStartHandsItsWordIn()
    {
        QByteArray said;
        QCOMPARE(start("ORVKBAppHode", &said), 2);
        QCOMPARE(said, QByteArray("KeypadHost: unknown word: ORVKBAppHode (--help lists the words)\n"));
        QCOMPARE(start("ORVKBAppExit"), 0); // none runs, and none stays
        QProcess first;
        first.start(MEVO_KEYPAD, {"ORVKBAppHide"});
        QVERIFY(first.waitForStarted(waitMs));
        QCOMPARE(start("ORVKBAppShowOrHide"), 0); // while the first is still starting, too
        QTRY_VERIFY_WITH_TIMEOUT(!shownWindows().isEmpty(), waitMs);
        QCOMPARE(start("ORVKBAppHide"), 0);
        QTRY_VERIFY_WITH_TIMEOUT(shownWindows().isEmpty(), waitMs);
        QCOMPARE(start("ORVKBAppHide"), 0);
        QCOMPARE(start(QString()), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!shownWindows().isEmpty(), waitMs);
        QCOMPARE(start("ORVKBAppExit"), 0);
        QVERIFY(first.waitForFinished(waitMs));
        QCOMPARE(first.exitCode(), 0);
    }

    void aWordThatIsNone()
    {
        QProcess first;
        first.start(MEVO_KEYPAD, {"ORVKBAppHide"});
        const QString path = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/mevokeypad.words";
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path), waitMs);
        for (const QByteArray &text : {QByteArray("rubbish\n"), QByteArray(100000, 'x')}) {
            QLocalSocket socket;
            socket.connectToServer(path);
            QVERIFY(socket.waitForConnected(waitMs));
            socket.write(text);
            QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QLocalSocket::UnconnectedState, waitMs);
            QVERIFY(socket.readAll().isEmpty());
        }
        QCOMPARE(start("ORVKBAppExit"), 0);
        QVERIFY(first.waitForFinished(waitMs));
    }

    void aKilledOneLeavesRoom()
    {
        QProcess first, second;
        first.start(MEVO_KEYPAD, {"ORVKBAppShowOrHide"});
        QTRY_VERIFY_WITH_TIMEOUT(!shownWindows().isEmpty(), waitMs);
        first.kill();
        QVERIFY(first.waitForFinished(waitMs));
        second.start(MEVO_KEYPAD, {"ORVKBAppShowOrHide"});
        QTRY_VERIFY_WITH_TIMEOUT(!shownWindows().isEmpty(), waitMs);
        QCOMPARE(start("ORVKBAppExit"), 0);
        QVERIFY(second.waitForFinished(waitMs));
    }

    void theDisplayGoes()
    {
        QProcess server, keypad;
        server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp"});
        QVERIFY(server.waitForReadyRead(waitMs));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", ":" + QString::fromLatin1(server.readLine()).trimmed());
        environment.insert("XDG_RUNTIME_DIR", m_home.path());
        keypad.setProcessEnvironment(environment);
        keypad.start(MEVO_KEYPAD, {"ORVKBAppShowOrHide"});
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_home.filePath("mevokeypad.words")), waitMs);
        server.kill();
        QVERIFY(server.waitForFinished(waitMs));
        QVERIFY(keypad.waitForFinished(waitMs));
        QCOMPARE(keypad.exitStatus(), QProcess::NormalExit);
        keypad.start(MEVO_KEYPAD, {"ORVKBAppShowOrHide"});
        QVERIFY(keypad.waitForFinished(waitMs));
        QCOMPARE(keypad.exitCode(), 1);
        QVERIFY(keypad.readAllStandardError().contains("there is no X display"));
    }
};

QTEST_MAIN(TestKeypadHost)
#include "tst_keypad_host.moc"
