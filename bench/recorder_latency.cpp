// Time from a press to the first sample, and from the release to the hand-over and the closed
// microphone, over 30 sessions with the real recorder on the default microphone.

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

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    home.write(QStringLiteral("MEVOSetting.ini"), "[MainSetting]\nUseTXASRApi=1\n");
    constexpr int Sessions = 30;
    constexpr int PatienceMs = 3000;

    RecorderFixture fixture;
    std::vector<double> opened, first, handedOver, closed;
    for (int session = 0; session < Sessions; ++session) {
        QEventLoop loop;
        const auto onBlock =
            QObject::connect(&fixture.recorder, &AudioRecorder::SendVolume2MicDlg, &loop, &QEventLoop::quit);
        QTimer::singleShot(PatienceMs, &loop, [&loop] { loop.exit(1); });
        QElapsedTimer timer;
        timer.start();
        fixture.recorder.OnRecordStart();
        opened.push_back(sinceMs(timer));
        if (loop.exec() != 0) {
            std::fprintf(stderr, "no sound came within %d ms\n", PatienceMs);
            return 1;
        }
        first.push_back(sinceMs(timer));
        QObject::disconnect(onBlock);

        timer.restart();
        fixture.recorder.OnRecordStop();
        handedOver.push_back(sinceMs(timer));
        while (fixture.recorder.isOpen()) {
            application.processEvents(QEventLoop::WaitForMoreEvents, PatienceMs);
        }
        closed.push_back(sinceMs(timer));
    }
    std::printf("%d sessions\n", Sessions);
    print("press to return", opened);
    print("press to first sample", first);
    print("release to end of hand-over", handedOver);
    print("release to closed microphone", closed);
    return 0;
}
