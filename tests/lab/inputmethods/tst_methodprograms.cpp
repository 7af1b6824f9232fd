#include "desk/Desktop.h"
#include "desk/SpeechClip.h"
#include "desk/TargetWindow.h"
#include "inputmethods/HotKey.h"
#include "inputmethods/Typist.h"
#include "platform/linux/X11WindowSystem.h"
#include "receiver/XTestKeyboard.h"
#include "support/Ended.h"
#include "support/Rows.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <X11/Xlib.h>

#include <memory>

using namespace mevo::lab;

namespace {

constexpr int patienceMs = 30000;
constexpr quint8 usageF2 = 0x3b, usageF6 = 0x3f;
constexpr quint8 ctrl = 1;

/// A program of the lab's input methods, with settings of its own.
class RunningMethod
{
public:
    RunningMethod(const QByteArray &name, const QByteArray &settingsFile, const QByteArray &settings)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME"_s, m_home.filePath("data"_s));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        if (!settingsFile.isEmpty()) {
            const QString file = m_home.filePath("localLow/"_s + QLatin1String(settingsFile));
            QDir().mkpath(QFileInfo(file).path());
            QFile out(file);
            m_written = out.open(QIODevice::WriteOnly) && out.write(settings) == settings.size();
        }
        m_process.start(QCoreApplication::applicationDirPath() + "/inputmethods/"_s + QLatin1String(name),
                        QStringList());
    }
    ~RunningMethod()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// The program has said it since the last call.
    bool says(const char *text)
    {
        return m_written && QTest::qWaitFor(
                                [&] {
                                    m_said += m_process.readAll();
                                    const int at = m_said.indexOf(text);
                                    m_said.remove(0, at < 0 ? 0 : at + int(qstrlen(text)));
                                    return at >= 0;
                                },
                                patienceMs);
    }
    QByteArray rest() const { return m_said; }
    QProcess &process() { return m_process; }

private:
    QTemporaryDir m_home;
    QProcess m_process;
    QByteArray m_said;
    bool m_written = true;
};

bool speak(const QString &words)
{
    QTemporaryDir folder;
    const QString clip = folder.filePath("clip.wav"_s);
    QString reason;
    return speakIntoFile(words, "rms"_s, clip, &reason) && playIntoMicrophone(clip, &reason);
}

} // namespace

/// The programs themselves, on the private desktop with its microphone, operated by its keyboard.
class MethodProgramsTest : public QObject
{
    Q_OBJECT
private slots:
    void typistTypesShiftedCharacters()
    {
        const auto target = TargetWindow::start("xterm"_s);
        QVERIFY(target);
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        QVERIFY(display != nullptr);
        lab::Typist typist(display.get());
        const auto keyboard = XTestKeyboard::open();
        keyboard->apply({0x02, 0, 0}); // the user leans on Shift
        const QString text = "aB, c?! \"D\" (e) {F} ~G_ @h #i $j %k ^l &m *n +o |p :q <r>."_s;
        QCOMPARE(typist.type(text + "你"_s), int(text.size()));
        QCOMPARE(target->text(text.size(), patienceMs), text);
        keyboard->apply({});
    }

    void eachIsOperatedByItsKey_data()
    {
        // name, settingsFile, settings, window, key, held, begun (by itself)
        const Rows<QByteArray, QByteArray, QByteArray, QString, KeyboardReport, bool, bool> row;
        row("iFlyVoice", "iFlyVoice", "iFly Info Tek/iFlyIME/config.xml",
            "<c><start_end>enable=1;keyStr=F6</start_end></c>", "UIIFlyVoiceFrame", {0, usageF6, 0}, true,
            false);
        row("VoiceInput", "VoiceInput", "", "", "CherryWindowClass", {0, usageF2, 0}, false, true);
        row("SpeechInput", "SpeechInput", "Baidu/BaiduPinyin/SpeechInput.ini", "[Setting]\nHotKey=17\n",
            "SpeechInputFrame", {ctrl, 0, 0}, true, false);
    }

    void eachIsOperatedByItsKey()
    {
        const auto [name, settingsFile, settings, window, key, holds, begun] =
            rowOf<QByteArray, QByteArray, QByteArray, QString, KeyboardReport, bool, bool>();
        const bool held = holds;
        const auto target = TargetWindow::start("xterm"_s);
        QVERIFY(target);
        const auto keyboard = XTestKeyboard::open();
        const auto desktop = Desktop::open();
        RunningMethod method(name, settingsFile, settings);
        if (begun) {
            QVERIFY(method.says("listening"));
        }
        QVERIFY(method.says("ready"));
        QTRY_VERIFY_WITH_TIMEOUT(desktop->findWindow(QRegularExpression(window)), patienceMs);
        QVERIFY(target->hasFocus()); // it takes none

        const auto press = [&keyboard, held, key = key] {
            keyboard->apply(key);
            if (!held) {
                keyboard->apply({});
            }
        };
        if (!begun) {
            press();
            QVERIFY(method.says("listening"));
        }
        QVERIFY(speak("hello world this is a test"_s));
        held ? keyboard->apply({}) : press();
        QVERIFY2(method.says("typed "), method.rest().constData());
        const QString typed = target->text(5, patienceMs);
        QVERIFY2(typed.startsWith(QLatin1String("Hello world")) && typed.endsWith(QLatin1Char('.')),
                 qPrintable(typed));

        // Another key is nothing to it, and silence is no word.
        keyboard->tap({0, 0x43, 0});
        press();
        QVERIFY(method.says("listening"));
        if (held) {
            QTest::qWait(lab::HotKey::longPressMs + 200); // the subject: how long it is held
            keyboard->apply({});
        } else {
            press();
        }
        QVERIFY(method.says("heard nothing"));
    }

    /// A chord with Ctrl is the user's, and a key that is only sent to a window is nobody's.
    void whatIsNoKeyOfTheirs()
    {
        const auto keyboard = XTestKeyboard::open();
        RunningMethod method("SpeechInput", "Baidu/BaiduPinyin/SpeechInput.ini", "[Setting]\nHotKey=17\n");
        QVERIFY(method.says("ready"));
        keyboard->tap({ctrl, 0x06, 0});
        QVERIFY(method.says("let go"));

        RunningMethod unset("iFlyVoice", "iFly Info Tek/iFlyIME/config.xml",
                            "<c><start_end>enable=0;keyStr=F6</start_end></c>");
        QVERIFY(unset.says("has no hot key"));
        QVERIFY(unset.says("ready"));
        const auto target = TargetWindow::start("xterm"_s);
        QVERIFY(target);
        keyboard->tap({0, usageF6, 0});
        QCOMPARE(target->text(5, patienceMs), "\x1b[17~"_s); // the terminal has it
        QVERIFY(!unset.rest().contains("listening"));
    }

    /// As the program finds and leaves them.
    void theirWindowsAreFoundAndClosed_data()
    {
        // name, version, windowClass, title, closes
        const Rows<QByteArray, QByteArray, QString, QString, bool> row;
        row("XunFei's second", "iFlyVoice", "2.1.1708", "UIIFlyVoiceFrame", "讯飞语音悬浮窗", true);
        row("XunFei's third", "iFlyVoice", "3.0.1725", "BaseGui", "语音悬浮窗", false);
        row("Sogou's", "VoiceInput", "3", "CherryWindowClass", "搜狗输入法语音输入 ", true);
    }

    void theirWindowsAreFoundAndClosed()
    {
        const auto [name, version, windowClass, title, closes] =
            rowOf<QByteArray, QByteArray, QString, QString, bool>();
        mevo::X11WindowSystem windows;
        QCOMPARE(windows.findWindow(windowClass, title), mevo::WindowId(0));
        RunningMethod method(name, "iFly Info Tek/iFlyIME/iflyImeCfg.xml",
                             "<c><ver>" + version + "</ver></c>");
        mevo::WindowId window = 0;
        QTRY_VERIFY_WITH_TIMEOUT((window = windows.findWindow(windowClass, title)) != 0, patienceMs);
        QVERIFY(method.says("ready"));
        QVERIFY(windows.closeWindow(window));
        if (closes) {
            QTRY_COMPARE_WITH_TIMEOUT(windows.findWindow(windowClass, title), mevo::WindowId(0), patienceMs);
            QVERIFY(hasEnded(method.process()));
        } else {
            QVERIFY(method.says("stays"));
            QCOMPARE(windows.findWindow(windowClass, title), window);
        }
    }
};

QTEST_MAIN(MethodProgramsTest)
#include "tst_methodprograms.moc"
