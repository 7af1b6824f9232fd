// Leaving: the exit that the user asks for, the one that the program takes by itself, and the restart.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "device/DeviceCommands.h"
#include "engines/BaiduSpeech.h"
#include "output/UndeliveredTexts.h"
#include "service/PushChannel.h"
#include "service/isOnl.h"
#include "session/MatchText.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"
#include "window/InputMethods.h"
#include "window/InstanceCalls.h"
#include "window/SettingsHands.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QTimer>

#include <utility>

namespace {

constexpr int sessionsLookMs = 10;
const QString keypadSibling = QStringLiteral("\\KeypadHost.exe");
const QString penPadSibling = QStringLiteral("\\..\\HW\\PenPadHost.exe");

} // namespace

void MainWindow::on_exitAppAction()
{
    walkExit(ExitKind::Asked);
}

void MainWindow::RebootAppDelayTimeout()
{
    AutoRunApp = QStringLiteral("1");
    walkExit(ExitKind::Unasked);
}

void MainWindow::exitByItself()
{
    walkExit(ExitKind::ByItself);
}

/// A sentence that waits for a token goes on only when what has been called from its wait is over, and the
/// exit would be that: it lets that wait end first, for as long as it would wait for the sentence itself.
bool MainWindow::comesLater(ExitKind kind)
{
    if (!InitDone || isLeaving() || !m_baiduSpeech || !m_baiduSpeech->waitsForToken()) {
        return false;
    }
    if (!m_exitWaits.isValid()) {
        m_exitWaits.start();
    } else if (m_exitWaits.hasExpired(exitWaitMs)) {
        return false;
    }
    if (kind != ExitKind::Asked) {
        m_exit.announce();
    }
    QTimer::singleShot(sessionsLookMs, this, [this, kind] { walkExit(kind); });
    return true;
}

void MainWindow::walkExit(ExitKind kind)
{
    if (comesLater(kind)) {
        return;
    }
    m_exitWaits.invalidate();
    switch (m_exit.want(kind)) {
    case mevo::ExitWish::Course::Wait:
        if (m_exit.certain()) {
            QCoreApplication::exit(0); // ends the waits of the construction, also those to come
        }
        return;
    case mevo::ExitWish::Course::CloseQuestion:
        mevo::closeQuestions();
        return;
    case mevo::ExitWish::Course::Ignore:
        return;
    case mevo::ExitWish::Course::Walk:
        break;
    }
    ExitInProgress = true;
    m_changes.hold();
    m_inputMethods->leaveWithoutKeys();
    if (kind == ExitKind::Asked) {
        endMouseSession(); // the question takes the mouse away from the talk window
        m_exit.questionOpens();
        const std::optional<ExitKind> answered = m_exit.questionAnswered(askAboutStartup());
        if (!answered) {
            ExitInProgress = false;
            m_changes.release();
            scheduleDeviceChanges();
            return;
        }
        kind = *answered;
    }
    mevo::closeQuestions();
    if (m_settingsHands) {
        m_settingsHands->storeEdits();
    }
    m_inputMethods->endDownload();
    m_session.endInputMethodPress(); // one of the question's time: its key would stay down at the receiver
    m_sessionHands.finishTaps();
    finishSessions();
    finishCommandWords();
    m_platform.processes->startSibling(keypadSibling, {QStringLiteral("ORVKBAppExit")}, false);
    if (m_countersKnown) {
        sendUsageOnExit(kind == ExitKind::ByItself);
    }
    if (kind != ExitKind::ByItself || DeviceConnected) {
        tearDown();
    }
    if (deviceOpen()) {
        m_device->StopHeartbeat();
        sendMicrophoneLatch(false);
        m_device->DeviceGoodbye();
    }
    if (DeviceConnected) {
        m_device->ReleaseHidDevice();
    }
    m_platform.deviceNotifier->stop();
    if (kind == ExitKind::ByItself &&
        m_platform.windowSystem->findWindow(QString(), QStringLiteral("ORVQuillary")) != 0) {
        m_platform.processes->startSibling(penPadSibling, {QStringLiteral("/close")}, false);
    }
    // The cipher and all that uses it stay to the end of the window: a wait that is open comes back to them.
    closePushSocket();
    close();
    ExitInProgress = false;
    qInfo().noquote() << "Run:" << m_figures.summary();
    QCoreApplication::exit(m_exitCode);
}

/// False when the user wants to stay.
bool MainWindow::askAboutStartup()
{
    if (!AutoRunApp.isEmpty() || RunAsAdmin) {
        return true;
    }
    enum Answer { Yes, Back, No };
    const int answer = mevo::ask(this, {tr("自动启动软件"),
                                        tr("下次开机是否自动启动语音软件?"),
                                        {tr("是"), tr("返回"), tr("否")},
                                        false,
                                        {mevo::Answer::Yes, mevo::Answer::Back, mevo::Answer::No}});
    if (answer == Yes) {
        startAtLogin();
    }
    return answer == Yes || answer == No;
}

bool MainWindow::isQuiet() const
{
    return !Recording && !PressPending && ResultIdle && !m_results.isUnderWay() && !isTyping() &&
           !m_sessionHands.awaitsPasteContent() && !ExitInProgress;
}

void MainWindow::whenQuiet(const char *what, const std::function<void()> &then, int waitedMs)
{
    if (m_exit.certain()) {
        return;
    }
    const bool quiet = isQuiet();
    if (!quiet && waitedMs < quietWaitMs) {
        QTimer::singleShot(quietLookMs, this,
                           [this, what, then, waitedMs] { whenQuiet(what, then, waitedMs + quietLookMs); });
        return;
    }
    if (!quiet) {
        qWarning("%s: no quiet moment has come, it goes on all the same", what);
    }
    then();
}

/// What has been said still counts: it is recognised and typed, or kept.
void MainWindow::finishSessions()
{
    endRunningSession();
    if (!m_recorder->isOpen()) {
        finishXunFeiEarly(); // it has kept silent for long, and its session would never end
    }
    const auto done = [this] {
        return !m_results.isUnderWay() && !isTyping() && !m_sessionHands.awaitsPasteContent();
    };
    if (!done()) {
        QEventLoop loop;
        QTimer look;
        connect(&look, &QTimer::timeout, &loop, [&] {
            if (done()) {
                loop.quit();
            }
        });
        look.start(sessionsLookMs);
        // Whoever still waits for a token has had the time, see comesLater().
        QTimer::singleShot(m_baiduSpeech->waitsForToken() ? 0 : exitWaitMs, &loop, &QEventLoop::quit);
        loop.exec();
    }
    finishXunFeiEarly();
    m_sessionHands.finishPasteContent();
    // In the order in which it was said: what has come farthest is the oldest.
    for (const auto &post : std::exchange(m_postsUnderWay, {})) {
        keepForNextRun(post.second); // whole: how much of it has gone is not known yet
    }
    const bool pasteTaken = !std::exchange(m_pasteSettles, false);
    if (!pasteTaken) {
        keepForNextRun(m_pasteText); // its window has not come to reading the clipboard, which goes with us
    }
    for (const PendingPaste &paste : std::exchange(m_pendingPastes, {})) {
        keepForNextRun(paste.text);
        if (paste.done) {
            paste.done(false);
        }
    }
    for (const QString &text : m_translationHands.takeUnsent()) {
        keepForNextRun(text);
    }
    for (const mevo::SessionText &text : m_results.takeWaiting()) {
        keepForNextRun(text.asItStands ? text.text : mevo::withoutOverMarker(text.text));
    }
    m_sessionsFinished = true;
    tellPasteDone(pasteTaken);
    m_instanceCalls->finish();
}

void MainWindow::keepForNextRun(const QString &text)
{
    if (!text.isEmpty()) {
        qWarning("Exit: %d characters are kept as undelivered", text.size());
        storeUndelivered(text);
    }
}

void MainWindow::tearDown()
{
    m_topMost->stop();
    m_afterRecognition->stop();
    m_afterRecognition->deleteLater();
    m_afterRecognition = nullptr;
    m_online->disconnect();
    m_online->deleteLater();
    m_online = nullptr;

    m_device->StopIdentityRead();
    stopReader();

    m_micTip->close();
    m_micTip->disconnect();
    m_micTip->deleteLater();
    m_micTip = nullptr;
    m_translationHands.retire();
    if (m_settingsHands) {
        m_settingsHands->close();
    }

    closeXunFeiSocket();
    m_recorder->disconnect();
    m_recorder->DeleyCloseMicTimer();
    m_retiredRecorder = std::exchange(m_recorder, nullptr); // a recognition that is open comes back to it
    m_network->disconnect();
    m_network->deleteLater();
    m_network = nullptr;
    m_platform.notifications->attach(nullptr);
    m_tray->hide();
    m_tray->deleteLater();
    m_tray = nullptr;
}
