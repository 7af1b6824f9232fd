#include "desk/DeskRunner.h"
#include "desk/SpeechClip.h"
#include "desk/TargetWindow.h"
#include "receiver/XTestKeyboard.h"

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
    void takesTypedKeys_data();
    void takesTypedKeys();
    void focusMovesBetweenTargets();
    void unknownKind();
    void receiverTypesWhatTheProgramTells();
    void clipReachesTheMicrophone();
    void screenshotIsAPicture();
};

void TargetWindowTest::takesTypedKeys_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("lineEnd");
    QTest::newRow("xterm") << QStringLiteral("xterm") << QStringLiteral("\r");
    QTest::newRow("mousepad") << QStringLiteral("mousepad") << QStringLiteral("\n");
    QTest::newRow("featherpad") << QStringLiteral("featherpad") << QStringLiteral("\n");
}

void TargetWindowTest::takesTypedKeys()
{
    QFETCH(QString, kind);
    QFETCH(QString, lineEnd);
    const auto target = TargetWindow::start(kind);
    QVERIFY(target);
    QVERIFY(target->hasFocus());
    const auto keyboard = XTestKeyboard::open();
    QVERIFY(keyboard);
    const KeyboardReport keys[] = {
        {0x02, 0x0B, 0}, {0, 0x0C, 0}, {0, 0x28, 0}, {0, 0x2C, 0}, {0x02, 0x1E, 0}};
    for (const KeyboardReport &key : keys)
        keyboard->tap(key);
    const QString expected = QStringLiteral("Hi") + lineEnd + QStringLiteral(" !");
    QCOMPARE(target->text(expected.size(), patienceMs), expected);
    keyboard->tap({0, 0x1D, 0});
    QCOMPARE(target->text(expected.size() + 1, patienceMs), expected + QLatin1Char('z'));
    QVERIFY(target->clear());
    QCOMPARE(target->text(0, 0), QString());
    target->stop();
    QCOMPARE(target->processId(), 0);
}

void TargetWindowTest::focusMovesBetweenTargets()
{
    const auto first = TargetWindow::start(QStringLiteral("xterm"));
    const auto second = TargetWindow::start(QStringLiteral("xterm"));
    QVERIFY(first && second);
    QVERIFY(second->hasFocus() && !first->hasFocus());
    QVERIFY(first->focus());
    QVERIFY(first->hasFocus() && !second->hasFocus());
    const auto keyboard = XTestKeyboard::open();
    keyboard->tap({0, 0x04, 0});
    QCOMPARE(first->text(1, patienceMs), QStringLiteral("a"));
    QCOMPARE(second->text(0, 0), QString());
}

void TargetWindowTest::unknownKind()
{
    QTest::ignoreMessage(QtWarningMsg, "no target window notepad");
    QVERIFY(!TargetWindow::start(QStringLiteral("notepad")));
}

void TargetWindowTest::receiverTypesWhatTheProgramTells()
{
    DeskRunner::Options options;
    options.program = QCoreApplication::applicationDirPath() + QStringLiteral("/receiver-probe");
    const auto keyboard = XTestKeyboard::open();
    QVERIFY(keyboard);
    DeskRunner runner(options, keyboard.get());
    const DeskScript script =
        parseDeskScript(QStringLiteral("target xterm\n"
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
                                       "unplug\n"),
                        [](const QString &) { return std::optional<QString>(); });
    QVERIFY2(script.valid(), qPrintable(script.error));
    QVERIFY(runner.run(script));
}

void TargetWindowTest::clipReachesTheMicrophone()
{
    QTemporaryDir folder;
    const QString clip = folder.filePath(QStringLiteral("clip.wav"));
    QString reason;
    QVERIFY2(speakIntoFile(QStringLiteral("hello"), QStringLiteral("rms"), clip, &reason),
             qPrintable(reason));
    QVERIFY(QFileInfo(clip).size() > 1000);

    QProcess recorder;
    recorder.start(QStringLiteral("parec"),
                   {QStringLiteral("--device=vmic"), QStringLiteral("--format=s16le"),
                    QStringLiteral("--rate=16000"), QStringLiteral("--channels=1")});
    QVERIFY(recorder.waitForReadyRead(patienceMs));
    QVERIFY2(playIntoMicrophone(clip, &reason), qPrintable(reason));
    QByteArray heard = recorder.readAll();
    const auto loudest = [&heard] {
        int peak = 0;
        for (int i = 0; i + 1 < heard.size(); i += 2)
            peak = std::max(peak, std::abs(int(qint16(quint8(heard.at(i)) | quint8(heard.at(i + 1)) << 8))));
        return peak;
    };
    QTRY_VERIFY_WITH_TIMEOUT((heard += recorder.readAll(), loudest() > 3000), patienceMs);
    recorder.kill();
    recorder.waitForFinished();

    QVERIFY(!speakIntoFile(QStringLiteral("hello"), QStringLiteral("nobody"), clip, &reason));
    QCOMPARE(reason, QStringLiteral("no voice nobody"));
    QVERIFY(!playIntoMicrophone(folder.filePath(QStringLiteral("missing.wav")), &reason));
    QVERIFY2(reason.startsWith(QLatin1String("paplay: ")), qPrintable(reason));
}

void TargetWindowTest::screenshotIsAPicture()
{
    const auto target = TargetWindow::start(QStringLiteral("xterm"));
    QVERIFY(target);
    const auto desktop = Desktop::open();
    QVERIFY(desktop->findWindow(QRegularExpression(QStringLiteral("XTerm"))));
    QVERIFY(!desktop->findWindow(QRegularExpression(QStringLiteral("Notepad"))));
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("screen.png"));
    QVERIFY(desktop->screenshot(file));
    const QImage picture(file);
    QCOMPARE(picture.size(), QSize(1600, 1000));
    QVERIFY(picture.pixelColor(300, 300) != picture.pixelColor(1500, 900));
    QVERIFY(!desktop->screenshot(folder.filePath(QStringLiteral("no/such/folder.png"))));
}

QTEST_GUILESS_MAIN(TargetWindowTest)
#include "tst_targetwindow.moc"
