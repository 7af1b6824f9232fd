// Age of a block of sound when XunFei's service has it: from the read of the microphone, and from the moment
// at which its last sample was due by the session's own clock (its first block on time). The real recorder
// on the default microphone, the real socket, and the lab's service on a thread of its own.
// xunfei_latency [SECONDS [DELAY_MS]]: DELAY_MS holds the handshake back, to see what is lost meanwhile.

#include "audio/RecorderFixture.h"
#include "engines/XunFeiHost.h"
#include "engines/XunFeiStream.h"
#include "recognisers/XunFeiService.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>
#include <QUrlQuery>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace {

ScratchHome home;

double nowMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// A recorder's host that streams, and notes when each middle frame left.
class StreamingHost : public FakeHost, public mevo::XunFeiHost
{
public:
    using FakeHost::FakeHost;
    void openXunFeiSocket() override { stream->ConnectXFWebApi(); }
    bool xunFeiConnected() const override { return state->XFWebSocketConnected; }
    void sendXunFeiFrame(const QByteArray &block, int status) override
    {
        if (status == AudioRecorder::STATUS_CONTINUE) {
            read.push_back(nowMs());
        }
        stream->sendFrame(block, status);
    }
    void closeXunFeiSocket() override { stream->close(); }
    bool dynamicCorrection() const override { return false; }
    void handleXunFeiText(const QString &) override { answered = true; }
    void showXunFeiText(const QString &) override {}
    void xunFeiAnswered() override {}
    void showPartialText(const QString &) override {}
    void hidePartialText() override {}
    void showXunFeiLanguage() override {}
    void flushXunFeiCount() override {}
    void closeXunFeiRecording() override {}

    mevo::XunFeiStream *stream = nullptr;
    MainState *state = nullptr;
    std::vector<double> read;
    bool answered = false;
};

/// The service on its own thread, and when it had each middle frame with how much sound.
class ServiceThread : public QThread
{
public:
    explicit ServiceThread(int handshakeDelayMs)
        : m_delayMs(handshakeDelayMs)
    {
    }
    void run() override
    {
        lab::XunFeiService service(
            {{QStringLiteral("a"), QStringLiteral("k"), QStringLiteral("s")}}, {QStringLiteral("localhost")},
            [this](const QJsonObject &note) {
                if (note.value(QStringLiteral("event")) == QLatin1String("frame") &&
                    note.value(QStringLiteral("status")).toInt() == AudioRecorder::STATUS_CONTINUE) {
                    arrived.push_back(nowMs());
                    soundMs.push_back(note.value(QStringLiteral("audioBytes")).toInt() / 32.0);
                    blockMs.push_back(note.value(QStringLiteral("bytes")).toInt() / 32.0);
                }
            });
        QUrlQuery delay;
        delay.addQueryItem(QStringLiteral("fault"), QStringLiteral("handshake-delay"));
        delay.addQueryItem(QStringLiteral("value"), QString::number(m_delayMs));
        if (m_delayMs > 0) {
            service.control(delay);
        }
        service.start(0);
        port = service.serverPort();
        exec();
    }
    std::atomic<int> port{0};
    std::vector<double> arrived, soundMs, blockMs;

private:
    int m_delayMs;
};

void print(const char *what, std::vector<double> milliseconds)
{
    std::sort(milliseconds.begin(), milliseconds.end());
    const std::size_t count = milliseconds.size();
    std::printf("%-36s p50 %6.2f  p95 %6.2f  max %6.2f ms\n", what, milliseconds[count / 2],
                milliseconds[count * 95 / 100], milliseconds.back());
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int seconds = arguments.size() > 1 ? arguments.at(1).toInt() : 20;
    home.write(QStringLiteral("MEVOSetting.ini"), "[MainSetting]\nUseXunFeiWebApi=1\nUseTXASRApi=0\n");

    ServiceThread service(arguments.value(2).toInt());
    service.start();
    while (service.port == 0) {
        QThread::yieldCurrentThread();
    }
    ListeningPlatform fakes;
    MainState state;
    StreamingHost host(fakes.log);
    fakes.time->start = QDateTime::currentDateTimeUtc();
    state.XunFeiAppId = QStringLiteral("a");
    state.XunFeiApiKey = QStringLiteral("k");
    state.XunFeiApiSecret = QStringLiteral("s");
    state.XunFeiWebApiCurrentVoiceType = QStringLiteral("mandarin");
    mevo::EngineEndpoints endpoints;
    endpoints.XunFeiSignHost = QStringLiteral("localhost");
    endpoints.XunFeiSocketHost = QStringLiteral("127.0.0.1:%1").arg(service.port.load());
    mevo::XunFeiStream stream(state, *fakes.time, endpoints, host);
    host.stream = &stream;
    host.state = &state;
    AudioRecorder recorder(state, fakes.platform, host);

    recorder.OnRecordStart();
    QTimer::singleShot(seconds * 1000, &recorder, &AudioRecorder::OnRecordStop);
    const double end = nowMs() + seconds * 1000 + 3000;
    while (!host.answered && nowMs() < end) {
        application.processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    recorder.DeleyCloseMicTimer();
    service.quit();
    service.wait();
    const std::size_t count = std::min(host.read.size(), service.arrived.size());
    if (count < 2 || host.read.size() != service.arrived.size()) {
        std::fprintf(stderr, "%zu blocks were sent, %zu came\n", host.read.size(), service.arrived.size());
        return 1;
    }
    std::vector<double> sinceRead, sinceDue, oldest;
    double onTime = service.arrived[0] - service.soundMs[0];
    for (std::size_t i = 1; i < count; ++i) {
        onTime = std::min(onTime, service.arrived[i] - service.soundMs[i]);
    }
    for (std::size_t i = 0; i < count; ++i) {
        sinceRead.push_back(service.arrived[i] - host.read[i]);
        sinceDue.push_back(service.arrived[i] - service.soundMs[i] - onTime);
        oldest.push_back(sinceDue.back() + service.blockMs[i]);
    }
    std::printf("%zu blocks in %d s\n", count, seconds);
    print("read to arrival", sinceRead);
    print("last sample due to arrival", sinceDue);
    print("first sample due to arrival", oldest);
    return 0;
}
