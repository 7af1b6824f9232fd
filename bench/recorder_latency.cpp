// Time from a press to the first sample, and from the release to the hand-over and the closed
// microphone, over 30 sessions with the real recorder on the default microphone, and 30 with the microphone
// kept ready in between; and beside them what a bare client of the sound server needs for its first sample,
// of a new stream and of one that is kept corked.

#include "BarePulse.h"
#include "audio/RecorderFixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

ScratchHome home;

void print(const char *what, std::vector<double> &milliseconds)
{
    std::sort(milliseconds.begin(), milliseconds.end());
    const std::size_t count = milliseconds.size();
    std::printf("%-32s p50 %6.2f  p95 %6.2f  max %6.2f ms\n", what, milliseconds[count / 2],
                milliseconds[count * 95 / 100], milliseconds.back());
}

double sinceMs(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// By turns a session of the recorder and the first samples of the bare clients.
bool record(BarePulse &bare, BarePulse &corked, bool keptReady)
{
    constexpr int Sessions = 30;
    constexpr int PatienceMs = 3000;
    RecorderFixture fixture;
    fixture.state.KeepMicrophoneReady = keptReady;
    std::vector<double> opened, first, handedOver, closed, newFirst, corkedFirst;
    for (int session = -1; session < Sessions; ++session) {
        QEventLoop loop;
        const auto onBlock =
            QObject::connect(&fixture.recorder, &AudioRecorder::SendVolume2MicDlg, &loop, &QEventLoop::quit);
        QTimer::singleShot(PatienceMs, &loop, [&loop] { loop.exit(1); });
        QElapsedTimer timer;
        timer.start();
        fixture.recorder.OnRecordStart();
        const double returned = sinceMs(timer);
        if (loop.exec() != 0) {
            std::fprintf(stderr, "no sound came within %d ms\n", PatienceMs);
            return false;
        }
        const double sample = sinceMs(timer);
        QObject::disconnect(onBlock);

        timer.restart();
        fixture.recorder.OnRecordStop();
        const double handed = sinceMs(timer);
        while (fixture.recorder.isOpen()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, PatienceMs);
        }
        if (session < 0) {
            continue; // none was ready before it
        }
        handedOver.push_back(handed);
        closed.push_back(sinceMs(timer));
        opened.push_back(returned);
        first.push_back(sample);
        newFirst.push_back(bare.firstOfNewStream());
        corkedFirst.push_back(corked.firstOfCorkedStream());
        if (newFirst.back() < 0 || corkedFirst.back() < 0) {
            std::fprintf(stderr, "the bare client hears nothing\n");
            return false;
        }
    }
    std::printf("%d sessions%s\n", Sessions, keptReady ? ", the microphone kept ready" : "");
    print("press to return", opened);
    print("press to first sample", first);
    print("bare client, new stream", newFirst);
    print("bare client, corked stream", corkedFirst);
    print("release to end of hand-over", handedOver);
    print("release to closed microphone", closed);
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    home.write(QStringLiteral("MEVOSetting.ini"), "[MainSetting]\nUseTXASRApi=1\n");
    BarePulse bare, corked;
    return bare.isConnected() && corked.isConnected() && record(bare, corked, false) &&
                   record(bare, corked, true)
               ? 0
               : 1;
}
