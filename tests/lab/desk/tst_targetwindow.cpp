#include "desk/DeskRunner.h"
#include "desk/SpeechClip.h"
#include "desk/TargetWindow.h"
#include "receiver/XTestKeyboard.h"
#include "support/Rows.h"

#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace mevo::lab;

namespace {

constexpr int patienceMs = 10000;

} // namespace

/// Real windows, the real XTest keyboard and the virtual microphone of the private desktop.
class TargetWindowTest : public QObject
{
    Q_OBJECT
private slots:
    void takesTypedKeys_data()
    {
        const Rows<QString, QString> row; // kind, lineEnd
        row("xterm", "xterm", "\r");
        row("mousepad", "mousepad", "\n");
        row("featherpad", "featherpad", "\n");
    }
    void takesTypedKeys()
    {
        const auto [kind, lineEnd] = rowOf<QString, QString>();
        const auto target = TargetWindow::start(kind);
        QVERIFY(target);
        QVERIFY(target->hasFocus());
        const auto keyboard = XTestKeyboard::open();
        QVERIFY(keyboard);
        const KeyboardReport keys[] = {
            {0x02, 0x0B, 0}, {0, 0x0C, 0}, {0, 0x28, 0}, {0, 0x2C, 0}, {0x02, 0x1E, 0}};
        for (const KeyboardReport &key : keys)
            keyboard->tap(key);
        const QString expected = "Hi"_s + lineEnd + " !"_s;
        QCOMPARE(target->text(expected.size(), patienceMs), expected);
        keyboard->tap({0, 0x1D, 0});
        QCOMPARE(target->text(expected.size() + 1, patienceMs), expected + QLatin1Char('z'));
        QVERIFY(target->clear());
        QCOMPARE(target->text(0, 0), QString());
        target->stop();
        QCOMPARE(target->processId(), 0);
    }

    void focusMovesBetweenTargets()
    {
        const auto first = TargetWindow::start("xterm"_s);
        const auto second = TargetWindow::start("xterm"_s);
        QVERIFY(first && second);
        QVERIFY(second->hasFocus() && !first->hasFocus());
        QVERIFY(first->focus());
        QVERIFY(first->hasFocus() && !second->hasFocus());
        const auto keyboard = XTestKeyboard::open();
        keyboard->tap({0, 0x04, 0});
        QCOMPARE(first->text(1, patienceMs), "a"_s);
        QCOMPARE(second->text(0, 0), QString());
    }

    void unknownKind()
    {
        QTest::ignoreMessage(QtWarningMsg, "no target window notepad");
        QVERIFY(!TargetWindow::start("notepad"_s));
    }

    void receiverTypesWhatTheProgramTells()
    {
        DeskRunner::Options options;
        options.program = QCoreApplication::applicationDirPath() + "/receiver-probe"_s;
        const auto keyboard = XTestKeyboard::open();
        QVERIFY(keyboard);
        DeskRunner runner(options, keyboard.get());
        const DeskScript script = parseDeskScript("target xterm\n"
                                                  "plug\n"
                                                  "start-program \"feature 05 81 04 02 04 00 00 00\" "
                                                  "\"feature 05 81 04 00 00 00 00 00\" "
                                                  "\"feature 05 81 04 01 19 00 00 00\" "
                                                  "\"feature 05 81 04 00 00 00 00 00\"\n"
                                                  "wait-text \"A\x16\"\n"
                                                  "expect-feature 05 81 04 01 19\n"
                                                  "clear\n"
                                                  "typing off\n"
                                                  "status left 15\n"
                                                  "press left\n"
                                                  "release left\n"
                                                  "typing on\n"
                                                  "press left\n"
                                                  "release left\n"
                                                  "expect-text \"\x1b[3~\"\n"
                                                  "stop-program\n"
                                                  "unplug\n"_s,
                                                  [](const QString &) { return std::optional<QString>(); });
        QVERIFY2(script.valid(), qPrintable(script.error));
        QVERIFY(runner.run(script));
    }

    void clipReachesTheMicrophone()
    {
        QTemporaryDir folder;
        const QString clip = folder.filePath("clip.wav"_s);
        QString reason;
        QVERIFY2(speakIntoFile("hello"_s, "rms"_s, clip, &reason), qPrintable(reason));
        QVERIFY(QFileInfo(clip).size() > 1000);

        QProcess recorder;
        recorder.start("parec"_s,
                       {"--device=vmic"_s, "--format=s16le"_s, "--rate=16000"_s, "--channels=1"_s});
        QVERIFY(recorder.waitForReadyRead(patienceMs));
        QVERIFY2(playIntoMicrophone(clip, &reason), qPrintable(reason));
        QByteArray heard = recorder.readAll();
        const auto loudest = [&heard] {
            int peak = 0;
            for (int i = 0; i + 1 < heard.size(); i += 2)
                peak =
                    std::max(peak, std::abs(int(qint16(quint8(heard.at(i)) | quint8(heard.at(i + 1)) << 8))));
            return peak;
        };
        QTRY_VERIFY_WITH_TIMEOUT((heard += recorder.readAll(), loudest() > 3000), patienceMs);
        recorder.kill();
        recorder.waitForFinished();

        QVERIFY(!speakIntoFile("hello"_s, "nobody"_s, clip, &reason));
        QCOMPARE(reason, "no voice nobody"_s);
        QVERIFY(!playIntoMicrophone(folder.filePath("missing.wav"_s), &reason));
        QVERIFY2(reason.startsWith(QLatin1String("paplay: ")), qPrintable(reason));
    }

    void screenshotIsAPicture()
    {
        const auto target = TargetWindow::start("xterm"_s);
        QVERIFY(target);
        const auto desktop = Desktop::open();
        QVERIFY(desktop->findWindow(QRegularExpression("XTerm"_s)));
        QVERIFY(!desktop->findWindow(QRegularExpression("Notepad"_s)));
        QTemporaryDir folder;
        const QString file = folder.filePath("screen.png"_s);
        QVERIFY(desktop->screenshot(file));
        const QImage picture(file);
        QCOMPARE(picture.size(), QSize(1600, 1000));
        QVERIFY(picture.pixelColor(300, 300) != picture.pixelColor(1500, 900));
        QVERIFY(!desktop->screenshot(folder.filePath("no/such/folder.png"_s)));
    }
};

QTEST_GUILESS_MAIN(TargetWindowTest)
#include "tst_targetwindow.moc"
