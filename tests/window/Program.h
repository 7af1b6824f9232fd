#pragma once

#include "session/KeyReport.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "ui/Ask.h"
#include "window/MainWindow.h"

#include <QDir>
#include <QWindow>
#include <QtTest>

/// Has a folder as the working folder, until the test program ends.
struct WorkingFolder
{
    explicit WorkingFolder(const QString &path) { QDir::setCurrent(path); }
    ~WorkingFolder() { QDir::setCurrent(QDir::rootPath()); }
    Q_DISABLE_COPY(WorkingFolder)
};

/// A program on a platform of fakes, with a receiver plugged in. `host` is where all its services are; on
/// nobody's port every request fails at once.
struct Program
{
    static constexpr int back = 1; ///< answers of the exit's question
    static constexpr int leave = 2;

    FakePlatform fake;
    std::unique_ptr<MainWindow> window;
    QStringList questions;
    int answer = leave;
    std::function<void()> onQuestion; ///< runs while a question stands

    explicit Program(bool plugged = true, const QString &host = QStringLiteral("127.0.0.1:9"))
    {
        static const ScratchHome home;
        static const WorkingFolder folder(home.path({})); // what is read aloud is kept there
        static const bool numbersApart = numberOurWindowsHigher();
        Q_UNUSED(numbersApart)
        MainWindow::exitWaitMs = 50;
        MainWindow::startWaitMs = 30000; // what happens in its waits is looked at
        const QByteArray at = host.toLatin1();
        home.write(QStringLiteral("MEVOEndpoints.ini"),
                   "[Endpoints]\nBackendUrl=\"http://" + at + "/mevowebapi?\"\nBackendUrlBk1=\"http://" + at +
                       "/mevowebapi?\"\nBackendUrlBk2=\"http://" + at +
                       "/mevowebapi?\"\nBaiduSpeechHost=\"http://" + at + "\"\nBaiduTokenHost=\"http://" +
                       at + "\"\nTranslateHost=\"http://" + at + "\"\nBaiduTtsHost=\"http://" + at + "\"\n");
        home.write(QStringLiteral("MEVOSetting.ini"),
                   "[MainSetting]\nBaiDuNoStreamApi=1\nUseTXASRApi=0\nBaiDuCurrentVoiceType=1537\n"
                   "FirstStartShown=1\n");
        if (plugged) {
            plug();
        }
        mevo::askHook = [this](const mevo::Question &question) {
            questions.append(question.title);
            if (onQuestion) {
                onQuestion();
            }
            return answer;
        };
        // An exit before it, of another program, has left the application as one whose waits end at once.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }
    ~Program()
    {
        window.reset();
        mevo::askHook = nullptr;
    }
    Q_DISABLE_COPY(Program)

    void plug()
    {
        fake.hid->plug();
        fake.hid->identityReply = QByteArray::fromHex("010c5713000100020000000000000000");
    }
    void start() { window = std::make_unique<MainWindow>(fake.platform); }
    /// Pulls the receiver out, or puts it in, with the system's report.
    void change(mevo::DeviceNotifier::Change change)
    {
        change == mevo::DeviceNotifier::Change::Arrival ? fake.hid->plug() : fake.hid->unplug();
        fake.deviceNotifier->report(change);
    }
    /// Lets all happen that waits for the event loop or for the clock.
    void settle() const
    {
        do {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        } while (fake.time->pendingCalls() > 0);
        QCoreApplication::processEvents();
    }
    /// The calls among `wanted` in the order in which they were made, each once.
    QStringList order(const QStringList &wanted) const
    {
        QStringList seen;
        for (const QString &call : fake.log.calls()) {
            if (wanted.contains(call) && !seen.contains(call)) {
                seen.append(call);
            }
        }
        return seen;
    }
    /// The windows of other programs have small numbers here, which none of ours is to get.
    static bool numberOurWindowsHigher()
    {
        for (int i = 0; i < 0x40; ++i) {
            QWindow().create();
        }
        return true;
    }
    /// The session has such a report from the reader.
    void take(int number, bool down) const
    {
        char report[mevo::keyReportSize] = {1, char(mevo::keyReportMarker), char(number), char(down)};
        window->ProcessResult(report);
    }
    /// A key of the receiver goes down or up.
    void key(int number, bool down) const
    {
        QByteArray report(mevo::keyReportSize, '\0');
        report[0] = 1;
        report[1] = char(mevo::keyReportMarker);
        report[2] = char(number);
        report[3] = char(down);
        fake.hid->push(report);
    }
};

/// One that has started.
struct Started : Program
{
    explicit Started(bool plugged = true)
        : Program(plugged)
    {
        start();
    }
};

namespace calls {

inline const QString identity = QStringLiteral("hid send 05 2c 00 00 00 00 00 00");
inline const QString resetKeys = QStringLiteral("hid send 05 81 04 00 00 00 00 00");
inline const QString heartbeat = QStringLiteral("hid send 05 81 01 00 00 00 00 00");
inline const QString latchOff = QStringLiteral("hid send 05 20 08 00 00 00 00 00");
inline const QString goodbye = QStringLiteral("hid send 05 81 07 00 00 00 00 00");
inline const QString hidExit = QStringLiteral("hid exit");
inline const QString keypadHide = QStringLiteral("sibling \\KeypadHost.exe ORVKBAppHide");
inline const QString keypadExit = QStringLiteral("sibling \\KeypadHost.exe ORVKBAppExit");
inline const QString penPad = QStringLiteral("sibling \\..\\HW\\PenPadHost.exe");

} // namespace calls

/// Acts once the program has started and its event loop turns; the construction turns loops of its own.
class WhenRunning : public QTimer
{
public:
    explicit WhenRunning(std::function<void()> action)
    {
        callOnTimeout([this, action = std::move(action)] {
            const MainWindow *window = MainWindow::instance();
            if (window != nullptr && window->InitDone) {
                stop();
                action();
            }
        });
        start(1);
    }
};
