#include "SlowWindows.h"
#include "keypad/DesktopTheme.h"
#include "keypad/KeyButton.h"
#include "keypad/KeypadHost.h"
#include "keypad/KeypadTables.h"
#include "keypad/KeypadWindow.h"
#include "keypad/WordDoor.h"
#include "support/Rows.h"

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
    return "[0]\nCmdWordContents=%1\nCmdWordTypeIndex=%2\nCommandWords=\"%3\"\nHide=0\n"_s.arg(syllable)
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

/// The key or character of that name, as long as it is shown.
KeyButton *button(const KeypadWindow &window, const QString &name)
{
    for (KeyButton *one : window.findChildren<KeyButton *>()) {
        if (one->accessibleName() == name && one->isVisible()) {
            return one;
        }
    }
    return nullptr;
}

/// A keyboard with one syllable, and what it has typed.
class Keypad
{
public:
    Keypad()
    {
        mevo::CommandRow row;
        row.CmdWordContents = "a";
        row.CommandWords = "1a;2a;3a;4a;5a;6a;7a;8a;9a;啊";
        row.CmdWordTypeIndex = "1";
        state.pinyin().setTable(PinyinTable({row}));
        window.setFixedSize(keypadSize({1280, 700}));
        window.show();
    }
    void click(const QString &name)
    {
        KeyButton *one = button(window, name);
        QVERIFY2(one != nullptr, qPrintable(name));
        QTest::mouseClick(one, Qt::LeftButton);
    }

    FakeOwnWindows desktop;
    KeypadState state;
    bool takes = true; ///< what is typed
    int struck = 0;
    QString typed; ///< texts and the keys' codes, a 0 behind each text
    int hidden = 0;
    KeypadWindow window{state,
                        desktop,
                        {[this](const std::vector<Stroke> &strokes) {
                             for (const Stroke &stroke : strokes) {
                                 struck += takes ? 1 : 0;
                                 typed +=
                                     takes ? stroke.text + QString::number(stroke.virtualKey) : QString();
                             }
                             return takes;
                         },
                         [this] { ++hidden; },
                         [](QPoint) {},
                         {}}};
};

} // namespace

class TestKeypadHost : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;

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
                const auto found = content.pinyin.candidates("vvv");
                first = found.empty() ? QString("-") : found.front().text;
                word = content.words.of('b').value(0);
            },
            folder);
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("-"), waitMs); // not even a folder
        QVERIFY(QDir().mkpath(folder));
        write(pinyin, table("vvv", "啊;阿"));
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("啊"), waitMs);
        write(pinyin, table("vvv", "阿;啊")); // of the same size
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("阿"), waitMs);
        for (const QString &text :
             {QString("呵"), QString("锕"), QString("嗄")}) { // watched after a replacement, too
            write(folder + "/new", table("vvv", text));
            QCOMPARE(std::rename(qPrintable(folder + "/new"), qPrintable(pinyin)), 0);
            QTRY_COMPARE_WITH_TIMEOUT(first, text, waitMs);
        }
        write(voice, table("b", "玻", 0));
        QTRY_COMPARE_WITH_TIMEOUT(word, QString("玻"), waitMs);
        write(pinyin, QByteArray("\0[[\xff\"=\n[1", 9) + QByteArray(100000, '\xfe'));
        QTRY_COMPARE_WITH_TIMEOUT(first, QString("-"), waitMs);
        write(pinyin, table("vvv", "啊"));
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
        Keypad keypad;
        KeypadWindow &window = keypad.window;
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(keypad.desktop.withoutFocus.contains(window.winId()) && !window.isActiveWindow());
        for (KeyButton *one : window.findChildren<KeyButton *>()) {
            QVERIFY2(!one->isVisible() || !one->accessibleName().isEmpty(), qPrintable(one->text()));
            QCOMPARE(one->focusPolicy(), Qt::NoFocus);
        }
        keypad.click("q");
        keypad.click("上档");
        QVERIFY(button(window, "上档")->isActive() && button(window, "q") == nullptr);
        keypad.click("Q");
        keypad.click("退格");
        keypad.click("拼音");
        keypad.click("a");
        keypad.click("2a");
        QCOMPARE(keypad.typed, QString("q0Q0") + "8" + "2a0");
        keypad.click("a");
        keypad.click("下一页");
        keypad.click("啊");
        QVERIFY(keypad.typed.endsWith("啊0"));
        QVERIFY(button(window, "下一页") == nullptr); // there is nothing to turn
        keypad.click("隐藏键盘");
        QCOMPARE(keypad.hidden, 1);
        window.close();
        QVERIFY(window.isVisible()); // hiding is not its own doing
        QCOMPARE(keypad.hidden, 2);

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

    void aHeldKeyStrikesAgainUntilItGoes()
    {
        Keypad keypad;
        KeypadWindow &window = keypad.window;
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        KeyButton *key = button(window, "退格");
        QTest::mousePress(key, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(keypad.struck >= 3, waitMs);
        window.hide();
        QVERIFY(!key->isDown());
        const int before = keypad.struck;
        int others = 0; // of a key that strikes as often and is still held
        KeyButton other(KeyButton::Look::Key, nullptr);
        other.setAutoRepeat(true);
        other.setAutoRepeatDelay(key->autoRepeatInterval());
        other.setAutoRepeatInterval(key->autoRepeatInterval());
        connect(&other, &QAbstractButton::clicked, this, [&others] { ++others; });
        other.setDown(true);
        QTRY_VERIFY_WITH_TIMEOUT(others >= 4, waitMs);
        QCOMPARE(keypad.struck, before);
        window.show();
        QVERIFY(!key->isDown());
    }

    void whatCannotBeTypedIsKept()
    {
        Keypad keypad;
        keypad.takes = false;
        const KeypadWindow &window = keypad.window;
        const KeypadState &state = keypad.state;
        keypad.click("拼音");
        keypad.click("a");
        keypad.click("下一页");
        for (const QString &name :
             {QString("啊"), QString("空格"), QString("回车"), QString("，"), QString("拼音")}) {
            const QImage before = keypad.window.grab().toImage();
            keypad.click(name);
            QCOMPARE(state.pinyin().letters(), QString("a"));
            QVERIFY(state.isPinyin() && button(window, "啊") != nullptr); // the page is the same, too
            if (name == "啊") {
                QVERIFY(keypad.window.grab().toImage() != before); // it is said
            }
        }
        keypad.click("上档");
        keypad.click("B");
        QCOMPARE(state.pinyin().letters(), QString("a"));
        QVERIFY(state.isShifted());
        keypad.click("上档");
        keypad.takes = true;
        keypad.click("啊");
        QCOMPARE(keypad.typed, QString("啊0"));
        QVERIFY(!state.pinyin().isActive());
    }

    void exitWaitsForWhatIsTyped_data()
    {
        // steps (keys to be clicked, and the words below), posted, said
        const Rows<QStringList, QStringList, QString> row;
        const QString lost = "Keypad: ends with a syllable of 2 letters that was not chosen from";
        row("nothing", QStringList{"Exit", "closed", "ended"}, QStringList{}, "");
        row("a text and a key behind it", QStringList{"a", "b", "退格", "Exit", "closed", "takes", "ended"},
            QStringList{"post 11 a", "post 11 b", "key down 8", "key up 8"}, "");
        row("a program that takes nothing", QStringList{"hangs", "a", "b", "退格", "Exit", "closed", "ended"},
            QStringList{"post 11 a"}, "Keypad: ends while a text is on its way; dropped behind it: 2");
        row("a syllable",
            QStringList{"拼音", "n", "i", "Exit", "Hide", "Exit", "shown", "泥", "closed", "takes", "ended"},
            QStringList{"post 11 泥"}, "");
        row("a syllable that is taken back",
            QStringList{"拼音", "n", "i", "Exit", "shown", "退格", "shown", "退格", "closed", "ended"},
            QStringList{}, "");
        row("a syllable that is left alone",
            QStringList{"leaves", "拼音", "n", "i", "Exit", "closed", "takes", "ended"},
            QStringList{"post 11 ni"}, "");
        row("a syllable that is left alone and fits nowhere",
            QStringList{"leaves", "拼音", "n", "i", "nowhere", "Exit", "closed", "ended"}, QStringList{},
            lost);
        row("a syllable that is hidden",
            QStringList{"拼音", "n", "i", "Exit", "ShowOrHide", "closed", "ended"}, QStringList{}, lost);
        row("a syllable that was hidden before",
            QStringList{"拼音", "n", "i", "隐藏键盘", "Exit", "closed", "ended"}, QStringList{}, lost);
        row("the session ends", QStringList{"拼音", "n", "i", "Signal", "closed", "ended"}, QStringList{},
            lost);
    }
    void exitWaitsForWhatIsTyped()
    {
        auto [steps, posted, said] = rowOf<QStringList, QStringList, QString>();
        write(m_home.filePath("MEVOInputCmdWordTable_PinyinKeyboard.ini"), table("ni", "你;泥"));
        CallLog log;
        SlowWindows windows(log);
        FakeKeyboard keyboard(log);
        FakeOwnWindows desktop;
        KeypadExit::Limits limits{10 * waitMs, 10 * waitMs};
        if (steps.removeOne("leaves")) {
            limits.composingMs = 1;
        }
        if (steps.removeOne("hangs")) {
            limits.typingMs = 1;
        }
        KeypadHost host(windows, keyboard, desktop, limits);
        QSignalSpy closed(&host, &KeypadHost::closed), ended(&host, &KeypadHost::ended);
        host.carryOut(Wish::ShowOrHide);
        KeypadWindow *window = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            window = window != nullptr ? window : qobject_cast<KeypadWindow *>(widget);
        }
        QVERIFY(window != nullptr && QTest::qWaitForWindowExposed(window));
        if (steps.contains("nowhere")) {
            QTest::ignoreMessage(QtWarningMsg, "Keypad: no window has the focus, nothing is typed");
        }
        if (!said.isEmpty()) {
            QTest::ignoreMessage(QtWarningMsg, qPrintable(said));
        }
        for (const QString &step : steps) {
            if (step == "Exit" || step == "Hide" || step == "ShowOrHide") {
                host.carryOut(*wishOf("ORVKBApp" + step));
            } else if (step == "Signal") {
                host.endSoon();
            } else if (step == "closed") {
                QTRY_COMPARE_WITH_TIMEOUT(closed.size(), 1, waitMs);
                QVERIFY(!host.isShown());
            } else if (step == "ended") {
                QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, waitMs);
            } else if (step == "shown") {
                QVERIFY(host.isShown() && closed.isEmpty());
            } else if (step == "takes") {
                QVERIFY(ended.isEmpty());
                windows.takeAll();
            } else if (step == "nowhere") {
                windows.focused = 0;
            } else {
                QTRY_VERIFY2_WITH_TIMEOUT(button(*window, step) != nullptr, qPrintable(step), waitMs);
                QTest::mouseClick(button(*window, step), Qt::LeftButton);
            }
        }
        QCOMPARE(log.calls(), posted);
    }

    void noWordCouldBeHeard()
    {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath("mevokeypad.words/in-the-way"));
        QProcess keypad;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_RUNTIME_DIR", folder.path());
        keypad.setProcessEnvironment(environment);
        keypad.start(MEVO_KEYPAD, {"ORVKBAppShowOrHide"});
        QVERIFY(keypad.waitForFinished(waitMs));
        QCOMPARE(keypad.exitCode(), 1);
        const QByteArray said = keypad.readAllStandardError();
        QVERIFY2(said.contains("Keypad: cannot listen at") && said.contains("KeypadHost: "),
                 said.constData());
    }

    void aSecondStartHandsItsWordIn()
    {
        QByteArray said;
        QCOMPARE(start("ORVKBAppHode", &said), 2);
        QCOMPARE(said, QByteArray("KeypadHost: unknown word: ORVKBAppHode (--help lists the words)\n"));
        QCOMPARE(start("ORVKBAppExit"), 0); // none runs, and none stays
        QProcess first;
        first.start(MEVO_KEYPAD, {"ORVKBAppHide"});
        // Of two that start in one moment either may be the first: it is once it has its door.
        const QString door = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/mevokeypad.words";
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(door), waitMs);
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

    /// A word that comes just as the keyboard ends is not told that it has been taken.
    void aWordThatFindsTheDoorClosed()
    {
        WordDoor door;
        QVERIFY(door.enter(Wish::Hide, waitMs) == WordDoor::Outcome::First);
        int heard = 0;
        QVERIFY(door.listen([&door, &heard](Wish) {
            ++heard;
            door.close();
        }));
        QLocalSocket first, second;
        for (QLocalSocket *socket : {&first, &second}) {
            socket->connectToServer(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/mevokeypad.words");
            QVERIFY(socket->waitForConnected(waitMs));
            socket->write("ORVKBAppExit\n");
            QVERIFY(socket->flush());
        }
        for (const QLocalSocket *socket : {&first, &second}) {
            QTRY_COMPARE_WITH_TIMEOUT(socket->state(), QLocalSocket::UnconnectedState, waitMs);
        }
        QCOMPARE(heard, 1);
        QCOMPARE(first.readAll(), QByteArray("taken\n"));
        QVERIFY(second.readAll().isEmpty());
        QCOMPARE(start("ORVKBAppExit"), 0); // as the first one
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
